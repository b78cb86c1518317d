#pragma once

#include "hosting/Uses.h"
#include "hosting/evaluator/Evaluation.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::hosting {

/// What becomes of an edit that the constraints do not allow as it is meant.
enum class WhenInfeasible {
    refuse,     ///< the user's values or nothing
    keepSizes,  ///< as near as it can be with the edited elements' sizes kept, if possible
    yield       ///< as near as it can be
};

/// What an edit asks of a sketch, whichever command it comes from.
struct EditRequest {
    std::vector<Target> targets{};        ///< the user's values; empty: only the constraints count
    std::vector<Target> kept{};           ///< values of edited elements that stay where the constraints let them
    std::vector<int> edited{};            ///< elements that the edit is about
    std::vector<ValueGoal> dimensions{};  ///< dimensions that get another value
    std::vector<int> added{};             ///< constraints that are new
    WhenInfeasible whenInfeasible = WhenInfeasible::refuse;

    /// Asks for all values of an element as a shape has them. A shape of another layout asks for nothing.
    void ask(const SketchData& sketch, int entity, const Shape& shape);

    /// Keeps what is not asked of the edited elements at these values of the sketch.
    void keepOthers(const SketchData& sketch, const std::vector<double>& values);
};

/// Moves the sketch as the request asks; when it cannot be, the sketch stays as it is and the result names what stands
/// in the way. Throws SketchError as solve does.
SolveResult meet(SketchData& sketch, const EditRequest& request);

/// How far the sketch is from the request's targets, at worst, in drawing units (angles: radians).
double shortfallOf(const SketchData& sketch, const EditRequest& request);

/// How far the dimensions of a solve that failed could be led; none when it did not fail, or led none.
std::vector<LedDimension> ledDimensions(const SketchData& sketch, const SolveResult& result);

}  // namespace holdfast::hosting
