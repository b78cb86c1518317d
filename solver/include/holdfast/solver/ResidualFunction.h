#pragma once

namespace holdfast::solver {

/// Equations F(inputs) = 0 that a user adds. The sketch shares it and calls it from whichever thread solves: it has to
/// be without state, must not throw, and gives the same rows for the same inputs. See makeResidual for the easy way.
class ResidualFunction {
public:
    static constexpr int kMaxRows = 3;     ///< equations of one function
    static constexpr int kMaxInputs = 20;  ///< numbers that one function reads

    ResidualFunction() = default;
    ResidualFunction(const ResidualFunction&) = delete;
    ResidualFunction& operator=(const ResidualFunction&) = delete;
    virtual ~ResidualFunction() = default;

    virtual int inputCount() const noexcept = 0;  ///< 1 to kMaxInputs
    virtual int rowCount() const noexcept = 0;    ///< 1 to kMaxRows

    /// The rows. They ought to be lengths: a row that changes by about as much as a point moves is kept to the same
    /// tolerance as all others.
    virtual void evaluate(const double* inputs, double* rows) const noexcept = 0;

    /// The rows and their derivatives: slopes[row * inputCount() + k] by input k.
    virtual void linearise(const double* inputs, double* rows, double* slopes) const noexcept = 0;
};

}  // namespace holdfast::solver
