#pragma once

#include <map>

#include "workbench/evaluator/Solve.h"

namespace holdfast {

/// The elements that some constraints and targets are about, as a figure of their own, with these constraints. Cost:
/// linear in what is taken, times the logarithm of the figure's elements.
class Extract {
public:
    Extract(const Figure& figure, std::span<const int> constraints, std::span<const Target> targets = {});

    const Figure& figure() const { return m_figure; }
    Figure& figure() { return m_figure; }
    const std::vector<Target>& targets() const { return m_targets; }

private:
    int entityOfValue(int value) const;
    int valueOf(int value) const;
    void take(int number);
    void takeValues(FigureEntity& entity);
    void takeConstraint(FigureConstraint constraint);

    const Figure& m_source;
    Figure m_figure;
    std::map<int, int> m_numbers;  ///< of elements: there, here
    std::vector<Target> m_targets;
};

}  // namespace holdfast
