#pragma once

#include <cmath>

namespace holdfast {

struct Product {
    double a = 0.0;
    double b = 0.0;
};

/// The sum of up to four products of finite factors, rounded as if no product were too large: infinite when the sum
/// itself is, never NaN.
double sumOfProducts(const Product& first, const Product& second, const Product& third = {},
                     const Product& fourth = {});

/// What plain arithmetic gave for a sum of products, or that sum where it took one infinity from another.
template <class... Products>
double orSumOfProducts(double plain, const Products&... products) {
    return std::isnan(plain) ? sumOfProducts(products...) : plain;
}

}  // namespace holdfast
