#include "host/src/yxbase/SumOfProducts.h"

#include <algorithm>
#include <cmath>

namespace holdfast {
namespace {

/// As a mantissa and a power of two, which cannot overflow.
struct Scaled {
    double mantissa = 0.0;
    int exponent = -10000;  // of zero: below that of any other product
};

Scaled scaled(const Product& product) {
    int exponentOfA = 0;
    int exponentOfB = 0;
    const double mantissa = std::frexp(product.a, &exponentOfA) * std::frexp(product.b, &exponentOfB);
    return mantissa == 0.0 ? Scaled() : Scaled{mantissa, exponentOfA + exponentOfB};
}

}  // namespace

double sumOfProducts(const Product& first, const Product& second, const Product& third, const Product& fourth) {
    const Scaled terms[] = {scaled(first), scaled(second), scaled(third), scaled(fourth)};
    const int largest = std::max({terms[0].exponent, terms[1].exponent, terms[2].exponent, terms[3].exponent});
    double sum = 0.0;
    for (const Scaled& each : terms)
        sum += std::ldexp(each.mantissa, each.exponent - largest);
    return std::ldexp(sum, largest);
}

}  // namespace holdfast
