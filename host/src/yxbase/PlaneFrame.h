#pragma once

#include <yxbase/YxGePoint3d.h>

namespace holdfast {

/// The right-handed unit axes in which the angles of an arc are measured.
struct PlaneFrame {
    YxGeVector3d x;
    YxGeVector3d y;
    YxGeVector3d z;

    YxGeVector3d directionAt(double angle) const;
    /// The angle in [-pi, pi] of what of a vector lies in the plane; 0 when nothing does.
    double angleOf(const YxGeVector3d& direction) const;
};

/// z along the normal and x along the reference as far as it lies in the plane. A zero normal counts as the z axis; a
/// reference along the normal is replaced by a coordinate axis that lies across it.
PlaneFrame planeFrame(const YxGeVector3d& normal, const YxGeVector3d& reference);

/// The frame of entities that store a normal and angles only: x is the world's x axis, or its opposite when the normal
/// points down.
PlaneFrame planeFrame(const YxGeVector3d& normal);

}  // namespace holdfast
