#include <yxbase/YxGeMatrix3d.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "host/src/yxbase/SumOfProducts.h"

using holdfast::Product;

namespace {

YxGeVector3d column(const YxGeMatrix3d& m, int index) {
    return {m(0, index), m(1, index), m(2, index)};
}

double tripleProduct(const YxGeVector3d& a, const YxGeVector3d& b, const YxGeVector3d& c) {
    return a.crossProduct(b).dotProduct(c);
}

/// Moves the fixed point of a linear transform from the origin to the centre.
void setTranslationAbout(YxGeMatrix3d& matrix, const YxGePoint3d& centre) {
    const YxGeVector3d fixed = centre - YxGePoint3d::kOrigin;
    const YxGeVector3d offset = fixed - matrix * fixed;
    matrix(0, 3) = offset.x;
    matrix(1, 3) = offset.y;
    matrix(2, 3) = offset.z;
}

bool orthogonal(const YxGeVector3d& a, const YxGeVector3d& b, const YxGeTol& tol) {
    return std::abs(a.dotProduct(b)) <= tol.equalVector();
}

}  // namespace

const YxGeMatrix3d YxGeMatrix3d::kIdentity;

YxGeMatrix3d::YxGeMatrix3d() {
    setToIdentity();
}

YxGeMatrix3d& YxGeMatrix3d::setToIdentity() {
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < 4; ++col)
            entry[row][col] = row == col ? 1.0 : 0.0;
    return *this;
}

YxGeMatrix3d& YxGeMatrix3d::setToTranslation(const YxGeVector3d& offset) {
    setToIdentity();
    entry[0][3] = offset.x;
    entry[1][3] = offset.y;
    entry[2][3] = offset.z;
    return *this;
}

/// Rodrigues' rotation formula. The diagonal is written u u + c (1 - u u), which is exactly 1 along a coordinate axis.
YxGeMatrix3d& YxGeMatrix3d::setToRotation(double angle, const YxGeVector3d& axis, const YxGePoint3d& centre) {
    setToIdentity();
    const YxGeVector3d u = axis.normal();
    if (u.x == 0.0 && u.y == 0.0 && u.z == 0.0)
        return *this;
    const double unit[3] = {u.x, u.y, u.z};
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const double cross[3][3] = {{0.0, -u.z, u.y}, {u.z, 0.0, -u.x}, {-u.y, u.x, 0.0}};
    for (int row = 0; row < 3; ++row)
        for (int col = 0; col < 3; ++col) {
            const double along = unit[row] * unit[col];
            entry[row][col] = row == col ? along + c * (1.0 - along) : (1.0 - c) * along + s * cross[row][col];
        }
    setTranslationAbout(*this, centre);
    return *this;
}

YxGeMatrix3d& YxGeMatrix3d::preMultBy(const YxGeMatrix3d& left) {
    YxGeMatrix3d product;
    for (int row = 0; row < 4; ++row)
        for (int col = 0; col < 4; ++col) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k)
                sum += left.entry[row][k] * entry[k][col];
            product.entry[row][col] = holdfast::orSumOfProducts(
                sum, Product{left(row, 0), entry[0][col]}, Product{left(row, 1), entry[1][col]},
                Product{left(row, 2), entry[2][col]}, Product{left(row, 3), entry[3][col]});
        }
    return *this = product;
}

bool YxGeMatrix3d::isSingular(const YxGeTol& tol) const {
    const YxGeVector3d columns[3] = {column(*this, 0), column(*this, 1), column(*this, 2)};
    for (const YxGeVector3d& each : columns)
        if (each.isZeroLength(tol))
            return true;
    return std::abs(tripleProduct(columns[0].normal(), columns[1].normal(), columns[2].normal())) <= tol.equalVector();
}

bool YxGeMatrix3d::isUniScaledOrtho(const YxGeTol& tol) const {
    const YxGeVector3d columns[3] = {column(*this, 0), column(*this, 1), column(*this, 2)};
    const double lengths[3] = {columns[0].length(), columns[1].length(), columns[2].length()};
    const auto [shortest, longest] = std::minmax_element(std::begin(lengths), std::end(lengths));
    if (*shortest <= tol.equalVector() || *longest - *shortest > tol.equalVector() * *longest)
        return false;
    const YxGeVector3d x = columns[0].normal();
    const YxGeVector3d y = columns[1].normal();
    const YxGeVector3d z = columns[2].normal();
    return orthogonal(x, y, tol) && orthogonal(y, z, tol) && orthogonal(z, x, tol);
}

double YxGeMatrix3d::det() const {
    const YxGeVector3d x = column(*this, 0);
    const YxGeVector3d y = column(*this, 1);
    const YxGeVector3d z = column(*this, 2);
    const double plain = tripleProduct(x, y, z);
    if (!std::isnan(plain))
        return plain;
    // Too large on the way: the volume of the unit columns tells at least zero and the sign.
    const double ofUnits = tripleProduct(x.normal(), y.normal(), z.normal());
    return ofUnits == 0.0 ? 0.0 : ofUnits * x.length() * y.length() * z.length();
}

bool YxGeMatrix3d::isEqualTo(const YxGeMatrix3d& other, const YxGeTol& tol) const {
    for (int col = 0; col < 3; ++col)
        if (!column(*this, col).isEqualTo(column(other, col), tol))
            return false;
    if ((column(*this, 3) - column(other, 3)).length() > tol.equalPoint())
        return false;
    return std::equal(entry[3], entry[3] + 4, other.entry[3],
                      [&tol](double a, double b) { return std::abs(a - b) <= tol.equalVector(); });
}

YxGePoint3d operator*(const YxGeMatrix3d& m, const YxGePoint3d& p) {
    const auto image = [&](int row) {
        const double plain = m(row, 0) * p.x + m(row, 1) * p.y + m(row, 2) * p.z + m(row, 3);
        return holdfast::orSumOfProducts(plain, Product{m(row, 0), p.x}, Product{m(row, 1), p.y},
                                         Product{m(row, 2), p.z}, Product{m(row, 3), 1.0});
    };
    return {image(0), image(1), image(2)};
}

YxGeVector3d operator*(const YxGeMatrix3d& m, const YxGeVector3d& v) {
    const auto image = [&](int row) { return YxGeVector3d(m(row, 0), m(row, 1), m(row, 2)).dotProduct(v); };
    return {image(0), image(1), image(2)};
}
