#pragma once

#include <optional>
#include <span>

#include <holdfast/solver/Solve.h>

#include "solver/src/api/SketchImpl.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::solver {

/// Options that make no sense.
std::optional<Error> faultOf(const SolveOptions& options);

/// The limits of one solve, from now on.
detail::Budget budgetOf(const SolveOptions& options);

/// Why a solve ended whose budget has run out.
Ending endingOf(detail::Budget::Overrun overrun);

/// The two values of a point that can be moved, the first of which is returned, or why it cannot.
Result<int> handleOf(const SketchImpl& sketch, PointId point);

/// The numbers of the values that the targets ask for, two for each.
Result<std::vector<detail::Target>> targetsOf(const SketchImpl& sketch, std::span<const Target> targets);

/// The solver's result in the sketch's ids.
SolveResult resultOf(const SketchImpl& sketch, const detail::SolveResult& result, const detail::Budget& budget);

SolveResult invalid(Error error);

/// While it lives the sketch has the options' tolerance, and branches are chosen by where its entities are now.
class Preparation {
public:
    Preparation(detail::SketchData& data, double tolerance) : m_data(data) {
        m_data.takeReference();
        m_data.tolerance = tolerance;
    }
    ~Preparation() { m_data.tolerance = detail::SketchData::kTolerance; }
    Preparation(const Preparation&) = delete;
    Preparation& operator=(const Preparation&) = delete;

private:
    detail::SketchData& m_data;
};

/// Puts the sketch's numbers and these dimensions' values back, unless they are to be kept: what throws leaves the
/// sketch as it was.
class Undoing {
public:
    Undoing(detail::SketchData& data, std::span<const detail::ValueGoal> dimensions)
        : m_data(data), m_before(data.values), m_dimensions(dimensions.begin(), dimensions.end()) {
        for (detail::ValueGoal& each : m_dimensions)
            each.goal = data.constraints[detail::at(each.constraint)].value;
    }
    ~Undoing() {
        if (m_isKept)
            return;
        m_data.values.swap(m_before);
        for (const detail::ValueGoal& each : m_dimensions)
            m_data.constraints[detail::at(each.constraint)].value = each.goal;
    }
    Undoing(const Undoing&) = delete;
    Undoing& operator=(const Undoing&) = delete;

    void keep() { m_isKept = true; }

private:
    detail::SketchData& m_data;
    std::vector<double> m_before;
    std::vector<detail::ValueGoal> m_dimensions;
    bool m_isKept = false;
};

}  // namespace holdfast::solver
