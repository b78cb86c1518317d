#pragma once

#include <optional>

#include <yxbase/YxGeMatrix3d.h>

#include "host/src/yxbase/PlaneFrame.h"

namespace holdfast {

/// What a transform that keeps all angles does to lengths and to the sense of rotation.
struct Similarity {
    double scale = 1.0;
    bool mirrors = false;
};

/// Nothing for a transform that shears, stretches in one direction, flattens, is not affine or is not finite: no entity
/// follows such a transform, because its kind or its data could not say the result.
std::optional<Similarity> similarity(const YxGeMatrix3d& matrix);

/// The image of the plane of an entity: x and y are the images of the old axes, z the normal about which they turn
/// right-handed. A mirroring transform so turns the normal round, and angles keep their sign.
PlaneFrame imageOf(const PlaneFrame& frame, const YxGeMatrix3d& matrix);

/// By how much angles grow when they are measured in the frame of the image's normal instead of in the image's axes.
double angleShift(const PlaneFrame& image);

}  // namespace holdfast
