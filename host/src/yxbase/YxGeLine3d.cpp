#include <yxbase/YxGeLine3d.h>

#include <cmath>

namespace {

/// a b - c d with one rounding error (Jeannerod, Louvet, Muller: Further analysis of Kahan's algorithm, 2013). Far from
/// the line's points the plain difference would be off by more than the tolerance.
double differenceOfProducts(double a, double b, double c, double d) {
    const double cd = c * d;
    return std::fma(a, b, -cd) + std::fma(-c, d, cd);
}

YxGeVector3d exactCross(const YxGeVector3d& a, const YxGeVector3d& b) {
    return {differenceOfProducts(a.y, b.z, a.z, b.y), differenceOfProducts(a.z, b.x, a.x, b.z),
            differenceOfProducts(a.x, b.y, a.y, b.x)};
}

}  // namespace

YxGeLinearEnt3d::YxGeLinearEnt3d(const YxGePoint3d& point, const YxGeVector3d& direction)
    : m_point(point), m_direction(direction) {}

bool YxGeLinearEnt3d::isOn(const YxGePoint3d& point, const YxGeTol& tol) const {
    const YxGeVector3d offset = point - m_point;
    const double length = m_direction.length();
    if (length <= tol.equalPoint())
        return offset.length() <= tol.equalPoint();
    return exactCross(offset, m_direction).length() <= tol.equalPoint() * length;
}

YxGeLine3d::YxGeLine3d(const YxGePoint3d& first, const YxGePoint3d& second) : YxGeLinearEnt3d(first, second - first) {}
