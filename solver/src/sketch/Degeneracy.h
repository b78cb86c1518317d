#pragma once

#include <optional>

#include "solver/src/Uses.h"
#include "solver/src/residuals/EquationSystem.h"

namespace holdfast::solver::detail {

/// An entity that a solution has degenerate, although every equation holds.
struct Degeneracy {
    int entity = -1;      ///< or -1
    int constraint = -1;  ///< the tangency that turned over, or -1
    std::string what;     ///< "line g3 would have no length"
};

/// The first of the entities that has collapsed (no length, no radius: below 1e-6 of the sketch's size) or turned
/// inside out (an arc's sweep that passed through none or a full turn, a bulge that changed sign, an ellipse whose
/// minor axis has become the longer one), judged against the sketch's reference. An entity that was so at the
/// reference is not held against the solution. A margin above 1 calls bigger entities collapsed too, by that factor.
/// The values now are the sketch's, and size is its size. Passed are the values of a place on the way here: what has
/// turned inside out is seen from there, as a sweep that grows step by step may grow by more than half a turn; empty:
/// from the reference.
std::optional<Degeneracy> findFlaw(const SketchData& sketch, std::span<const double> now, double size,
                                   std::span<const int> entities, double margin = 1.0,
                                   std::span<const double> passed = {});
inline std::optional<Degeneracy> findFlaw(const SketchData& sketch, const EquationSystem& system,
                                          std::span<const int> entities, double margin = 1.0,
                                          std::span<const double> passed = {}) {
    return findFlaw(sketch, system.values, system.size, entities, margin, passed);
}

/// What an edit asks of an entity.
enum class Asked : char {
    nothing,
    radius,  ///< of an arc its radius or its centre: the sweep may not shrink
    sizes    ///< its sizes may shrink
};

/// The first of the entities of which a length, a radius or a sweep has shrunk below this part of what it was at the
/// reference, or of which a point has gone beyond all bounds: 1e4 times the sketch's size from where it was.
/// asked: by number of the entity, what may shrink; may be shorter.
std::optional<Degeneracy> findRuined(const SketchData& sketch, std::span<const double> now, double size,
                                     std::span<const int> entities, std::span<const Asked> asked, double least);
inline std::optional<Degeneracy> findRuined(const SketchData& sketch, const EquationSystem& system,
                                            std::span<const int> entities, std::span<const Asked> asked, double least) {
    return findRuined(sketch, system.values, system.size, entities, asked, least);
}

/// True when a length, a radius or a sweep of one of the entities is below this part of what it was at the reference.
/// Values of the sketch.
bool haveShrunk(const SketchData& sketch, std::span<const int> entities, std::span<const double> now, double least);

/// The first of the entities that is a line, or has a straight segment, that now runs against its direction before:
/// turned by more than a right angle; or an arc of which one end has as good as changed sides: it sweeps a right angle
/// more or less. Both are values of the sketch.
int findReversed(const SketchData& sketch, std::span<const int> entities, std::span<const double> before,
                 std::span<const double> now);

/// Which of the system's senses belong to the equations.
std::vector<int> sensesOf(const EquationSystem& system, std::span<const int> equations);

/// The first of these senses that is lost: the tangent curves now run against each other, or with each other, unlike
/// before.
std::optional<Degeneracy> findTurnedTangency(const SketchData& sketch, const EquationSystem& system,
                                             std::span<const int> senses);

}  // namespace holdfast::solver::detail
