#include "host/src/yxdb/curves/Similarity.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace holdfast {
namespace {

bool isFiniteAndAffine(const YxGeMatrix3d& matrix) {
    const double* first = &matrix.entry[0][0];
    if (!std::all_of(first, first + 16, [](double value) { return std::isfinite(value); }))
        return false;
    return matrix(3, 0) == 0.0 && matrix(3, 1) == 0.0 && matrix(3, 2) == 0.0 && matrix(3, 3) == 1.0;
}

/// Rotation matrices have columns a rounding error away from 1; lengths shall not drift with every turn.
double withoutRounding(double scale) {
    return std::abs(scale - 1.0) <= 8.0 * std::numeric_limits<double>::epsilon() ? 1.0 : scale;
}

}  // namespace

std::optional<Similarity> similarity(const YxGeMatrix3d& matrix) {
    if (!isFiniteAndAffine(matrix) || !matrix.isUniScaledOrtho() || matrix.isSingular())
        return std::nullopt;
    const double scale = (matrix * YxGeVector3d::kXAxis).length();
    return Similarity{withoutRounding(scale), matrix.det() < 0.0};
}

PlaneFrame imageOf(const PlaneFrame& frame, const YxGeMatrix3d& matrix) {
    const YxGeVector3d x = (matrix * frame.x).normal();
    const YxGeVector3d y = (matrix * frame.y).normal();
    return {x, y, x.crossProduct(y).normal()};
}

double angleShift(const PlaneFrame& image) {
    return planeFrame(image.z).angleOf(image.x);
}

}  // namespace holdfast
