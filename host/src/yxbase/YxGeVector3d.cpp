#include <yxbase/YxGeVector3d.h>

#include <algorithm>
#include <cmath>

#include <yxbase/YxGeMatrix3d.h>

#include "host/src/yxbase/SumOfProducts.h"

using holdfast::Product;

constinit const YxGeVector3d YxGeVector3d::kIdentity{};
constinit const YxGeVector3d YxGeVector3d::kXAxis{1.0, 0.0, 0.0};
constinit const YxGeVector3d YxGeVector3d::kYAxis{0.0, 1.0, 0.0};
constinit const YxGeVector3d YxGeVector3d::kZAxis{0.0, 0.0, 1.0};

namespace {

/// Squares in this range neither overflow nor lose digits below the smallest normal number.
bool keepsItsDigits(double squaredLength) {
    return squaredLength > 1e-280 && squaredLength < 1e300;
}

double squaredLength(const YxGeVector3d& v) {
    return v.x * v.x + v.y * v.y + v.z * v.z;
}

/// a b - c d.
double minor(double a, double b, double c, double d) {
    return holdfast::orSumOfProducts(a * b - c * d, Product{a, b}, Product{-c, d});
}

double largestComponent(const YxGeVector3d& v) {
    return std::max({std::abs(v.x), std::abs(v.y), std::abs(v.z)});
}

/// The same direction with a largest component in [1/2, 1). The power of two costs no digit.
YxGeVector3d scaledToOne(const YxGeVector3d& v) {
    int exponent = 0;
    std::frexp(largestComponent(v), &exponent);
    return {std::ldexp(v.x, -exponent), std::ldexp(v.y, -exponent), std::ldexp(v.z, -exponent)};
}

}  // namespace

double YxGeVector3d::length() const {
    const double squared = squaredLength(*this);
    return keepsItsDigits(squared) ? std::sqrt(squared) : std::hypot(x, y, z);
}

YxGeVector3d YxGeVector3d::normal() const {
    const double squared = squaredLength(*this);
    if (keepsItsDigits(squared)) {
        const double length = std::sqrt(squared);
        return {x / length, y / length, z / length};
    }
    const bool finite = std::isfinite(x) && std::isfinite(y) && std::isfinite(z);
    if (!finite || largestComponent(*this) == 0.0)
        return *this;  // nothing to scale; what is not finite stays so
    return scaledToOne(*this).normal();
}

double YxGeVector3d::dotProduct(const YxGeVector3d& other) const {
    const double plain = x * other.x + y * other.y + z * other.z;
    return holdfast::orSumOfProducts(plain, Product{x, other.x}, Product{y, other.y}, Product{z, other.z});
}

YxGeVector3d YxGeVector3d::crossProduct(const YxGeVector3d& other) const {
    return {minor(y, other.z, z, other.y), minor(z, other.x, x, other.z), minor(x, other.y, y, other.x)};
}

double YxGeVector3d::angleTo(const YxGeVector3d& other) const {
    const YxGeVector3d a = normal();
    const YxGeVector3d b = other.normal();
    if (largestComponent(a) == 0.0 || largestComponent(b) == 0.0)
        return 0.0;
    return std::atan2(a.crossProduct(b).length(), a.dotProduct(b));
}

bool YxGeVector3d::isEqualTo(const YxGeVector3d& other, const YxGeTol& tol) const {
    return (*this - other).length() <= tol.equalVector();
}

bool YxGeVector3d::isParallelTo(const YxGeVector3d& other, const YxGeTol& tol) const {
    if (isZeroLength(tol) || other.isZeroLength(tol))
        return false;
    return normal().crossProduct(other.normal()).length() <= tol.equalVector();
}

bool YxGeVector3d::isZeroLength(const YxGeTol& tol) const {
    return length() <= tol.equalVector();
}

YxGeVector3d& YxGeVector3d::transformBy(const YxGeMatrix3d& matrix) {
    return *this = matrix * *this;
}
