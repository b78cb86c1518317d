#pragma once

#include <map>

#include "solver/src/Uses.h"
#include "solver/src/sketch/Connections.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::solver::detail {

/// The entities that some constraints and targets are about, as a sketch of their own, with these constraints. Cost:
/// linear in what is taken, times the logarithm of the sketch's entities.
class Extract {
public:
    Extract(const SketchData& sketch, std::span<const int> constraints, std::span<const Target> targets = {});

    /// The same of entities with constraints that hold on them, and on others that are taken after them.
    Extract(const SketchData& sketch, const Surroundings& part);

    const SketchData& sketch() const { return m_sketch; }
    SketchData& sketch() { return m_sketch; }
    const std::vector<Target>& targets() const { return m_targets; }
    std::span<const int> taken() const { return m_taken; }  ///< the entities' numbers there, by number here

private:
    void takeAll(std::span<const int> constraints, std::span<const Target> targets);
    int valueOf(int value) const;
    void take(int number);
    void takeValues(SketchEntity& entity);
    void takeConstraint(SketchConstraint constraint);

    const SketchData& m_source;
    SketchData m_sketch;
    std::map<int, int> m_numbers;  ///< of entities: there, here
    std::vector<int> m_taken;
    std::vector<Target> m_targets;
};

}  // namespace holdfast::solver::detail
