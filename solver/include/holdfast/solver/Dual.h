#pragma once

#include <array>
#include <cmath>

namespace holdfast::solver {

/// A number with its exact derivatives by N others (forward mode automatic differentiation: A. Griewank and
/// A. Walther, Evaluating Derivatives, chapter 3). Fixed size: no memory is fetched while equations are evaluated.
template <int N>
struct Dual {
    double value;
    std::array<double, N> slope;

    Dual() : Dual(0.0) {}
    Dual(double constant) : value(constant), slope{} {}  // NOLINT(google-explicit-constructor): mixes with duals

    static Dual variable(double x, int index) {
        Dual result(x);
        result.slope[static_cast<std::size_t>(index)] = 1.0;
        return result;
    }

    Dual& operator+=(const Dual& b) { return *this = *this + b; }
    Dual& operator-=(const Dual& b) { return *this = *this - b; }
    Dual& operator*=(const Dual& b) { return *this = *this * b; }

    friend Dual operator-(const Dual& a) { return a.mapped(-a.value, -1.0); }
    friend Dual operator+(const Dual& a, const Dual& b) { return combined(a.value + b.value, a, 1.0, b, 1.0); }
    friend Dual operator-(const Dual& a, const Dual& b) { return combined(a.value - b.value, a, 1.0, b, -1.0); }
    friend Dual operator*(const Dual& a, const Dual& b) { return combined(a.value * b.value, a, b.value, b, a.value); }
    friend Dual operator/(const Dual& a, const Dual& b) {
        const double quotient = a.value / b.value;
        return combined(quotient, a, 1.0 / b.value, b, -quotient / b.value);
    }
    friend Dual operator+(const Dual& a, double b) { return a.mapped(a.value + b, 1.0); }
    friend Dual operator-(const Dual& a, double b) { return a.mapped(a.value - b, 1.0); }
    friend Dual operator*(const Dual& a, double b) { return a.mapped(a.value * b, b); }
    friend Dual operator*(double a, const Dual& b) { return b.mapped(a * b.value, a); }
    friend Dual operator/(const Dual& a, double b) { return a.mapped(a.value / b, 1.0 / b); }

    /// f(x) from the values of f and of its derivative.
    Dual mapped(double f, double derivative) const {
        Dual result(f, Unset{});
        for (std::size_t i = 0; i < N; ++i)
            result.slope[i] = derivative * slope[i];
        return result;
    }

    /// f(x, y) from the values of f and of its two partial derivatives.
    static Dual combined(double f, const Dual& x, double byX, const Dual& y, double byY) {
        Dual result(f, Unset{});
        for (std::size_t i = 0; i < N; ++i)
            result.slope[i] = byX * x.slope[i] + byY * y.slope[i];
        return result;
    }

private:
    struct Unset {};

    /// For results whose slopes are all set at once: setting them to 0 before would cost as much again.
    Dual(double f, Unset) : value(f) {}  // NOLINT(cppcoreguidelines-pro-type-member-init)
};

inline double valueOf(double x) {
    return x;
}
template <int N>
double valueOf(const Dual<N>& x) {
    return x.value;
}

/// Square root; at 0 its slope is taken as 0, so that a vector of no length gives no infinite derivative.
template <int N>
Dual<N> sqrt(const Dual<N>& x) {
    const double root = std::sqrt(x.value);
    return x.mapped(root, root > 0.0 ? 0.5 / root : 0.0);
}

template <int N>
Dual<N> sin(const Dual<N>& x) {
    return x.mapped(std::sin(x.value), std::cos(x.value));
}

template <int N>
Dual<N> cos(const Dual<N>& x) {
    return x.mapped(std::cos(x.value), -std::sin(x.value));
}

/// At 0 its slope is 0.
template <int N>
Dual<N> abs(const Dual<N>& x) {
    return x.mapped(std::abs(x.value), x.value > 0.0 ? 1.0 : x.value < 0.0 ? -1.0 : 0.0);
}

template <int N>
Dual<N> exp(const Dual<N>& x) {
    const double power = std::exp(x.value);
    return x.mapped(power, power);
}

template <int N>
Dual<N> log(const Dual<N>& x) {
    return x.mapped(std::log(x.value), 1.0 / x.value);
}

template <int N>
Dual<N> atan(const Dual<N>& x) {
    return x.mapped(std::atan(x.value), 1.0 / (1.0 + x.value * x.value));
}

template <int N>
Dual<N> atan2(const Dual<N>& y, const Dual<N>& x) {
    const double square = x.value * x.value + y.value * y.value;
    const double inverse = square > 0.0 ? 1.0 / square : 0.0;
    return Dual<N>::combined(std::atan2(y.value, x.value), y, x.value * inverse, x, -y.value * inverse);
}

}  // namespace holdfast::solver
