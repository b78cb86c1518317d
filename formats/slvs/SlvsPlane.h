#pragma once

#include <optional>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/slvs/SlvsRecords.h"
#include "geometry/Vec2.h"

namespace holdfast::formats {

/// An axis of a sketch: its entity's name in drawings, and whether something points the other way.
struct SlvsAxis {
    bool isX = true;
    bool isReversed = false;
};

/// The plane in which a group draws, in space.
class SlvsPlane {
public:
    /// Nothing where the file does not say where the plane is.
    static std::optional<SlvsPlane> of(const SlvsFile& file, SlvsHandle workplane);

    /// Where a point of space is seen in the plane.
    Vec2 seen(const SlvsPoint& point) const;
    /// The axis along which a normal stands; nothing for another direction and for what is no normal.
    std::optional<SlvsAxis> alongNormal(const SlvsFile& file, SlvsHandle normal) const;
    /// The axis that another plane, upright on this one, cuts out of it; reversed where its normal points to the
    /// negative side. Nothing for one that does not go through the origin along an axis.
    std::optional<SlvsAxis> cutBy(const SlvsFile& file, SlvsHandle workplane) const;

    /// As drawings say it; nothing for the world's own.
    std::optional<Plane> inWorld() const;

private:
    SlvsPoint m_origin{}, m_x{1.0, 0.0, 0.0}, m_y{0.0, 1.0, 0.0};
};

}  // namespace holdfast::formats
