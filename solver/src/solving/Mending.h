#pragma once

#include "solver/src/Uses.h"
#include "solver/src/solving/Trying.h"

namespace holdfast::solver::detail {

/// Brings a sketch to hold that is far off and that no straight way has mended. What is smaller than what is amiss may
/// lie the wrong way round by chance alone: so tangencies that do not hold may turn over here, and short distances
/// change sides. What held keeps its sense, and nothing collapses or turns inside out, measured by the reference.
class Mending {
public:
    /// The sketch is the caller's, and other than it was only for as long as a call takes.
    Mending(SketchData& sketch, Trying& trying, Task task);

    /// The first sound answer from where the sketch is; else one that is not solved.
    Answer fromHere();
    /// From other beginnings, of which many may be tried: for what is not known to contradict itself. `best` is what
    /// fromHere() gave.
    Answer anew(Answer best);

private:
    Answer inShape();
    Answer withoutDoubtful();
    Answer again(const Answer& failed, int number);
    Answer from(const std::vector<double>& values, std::vector<double> sides);
    Answer soundly(Answer answer) const;
    std::vector<int> doubtfulSides() const;
    std::vector<int> brokenAt(const std::vector<double>& values) const;
    std::vector<int> entitiesAmiss(const Answer& failed) const;

    SketchData& m_sketch;
    Trying& m_trying;
    Task m_task;
    std::vector<double> m_aims;
    std::vector<double> m_sides;  ///< where the sides are read off
    double m_amiss = 0.0;         ///< by how much the worst constraint missed at first
};

}  // namespace holdfast::solver::detail
