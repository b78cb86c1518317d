#pragma once

#include <array>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include <holdfast/solver/Constraints.h>
#include <holdfast/solver/Dual.h>

namespace holdfast::solver {

/// A ResidualFunction from a functor that is written once, for numbers and for dual numbers:
///
///     struct TriangleArea {
///         double area, length;
///         template <class T>
///         void operator()(std::span<const T, 6> p, std::span<T, 1> rows) const {
///             const T twice = (p[2] - p[0]) * (p[5] - p[1]) - (p[3] - p[1]) * (p[4] - p[0]);
///             rows[0] = (twice * 0.5 - area) / length;  // by a length, so that the row is one
///         }
///     };
///     const auto added = sketch.add(makeResidual<6, 1>(TriangleArea{12.0, 5.0}, {startOf(a), startOf(b),
///     startOf(c)}));
///
/// The functor must not throw and has no state that calls change.
template <int Inputs, int Rows, class Functor>
class FunctorResidual final : public ResidualFunction {
public:
    static_assert(Inputs >= 1 && Inputs <= kMaxInputs, "a residual reads 1 to 20 numbers");
    static_assert(Rows >= 1 && Rows <= kMaxRows, "a residual has 1 to 3 rows");

    explicit FunctorResidual(Functor functor) : m_functor(std::move(functor)) {}

    int inputCount() const noexcept override { return Inputs; }
    int rowCount() const noexcept override { return Rows; }

    void evaluate(const double* inputs, double* rows) const noexcept override {
        m_functor(std::span<const double, Inputs>(inputs, Inputs), std::span<double, Rows>(rows, Rows));
    }

    void linearise(const double* inputs, double* rows, double* slopes) const noexcept override {
        std::array<Dual<Inputs>, Inputs> seeds;
        for (int k = 0; k < Inputs; ++k)
            seeds[static_cast<std::size_t>(k)] = Dual<Inputs>::variable(inputs[k], k);
        std::array<Dual<Inputs>, Rows> out;
        m_functor(std::span<const Dual<Inputs>, Inputs>(seeds), std::span<Dual<Inputs>, Rows>(out));
        for (std::size_t row = 0; row < out.size(); ++row) {
            rows[row] = out[row].value;
            for (std::size_t k = 0; k < seeds.size(); ++k)
                slopes[row * seeds.size() + k] = out[row].slope[k];
        }
    }

private:
    Functor m_functor;
};

/// A constraint of the user's own, ready to be added: its functor reads the points, two numbers each, then the
/// entities, all numbers of each.
template <int Inputs, int Rows, class Functor>
OwnResidual makeResidual(Functor functor, std::vector<PointId> points, std::vector<EntityId> entities = {}) {
    return {std::move(points), std::move(entities),
            std::make_shared<const FunctorResidual<Inputs, Rows, Functor>>(std::move(functor))};
}

}  // namespace holdfast::solver
