#pragma once

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <holdfast/solver/Sketch.h>

#include "solver/src/Uses.h"
#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver {

/// The flat sketch that the solver works on, and the numbers that its users know entities and constraints by.
struct Sketch::Impl {
    detail::SketchData data;
    std::vector<Constraint> kinds;    ///< of data.constraints, with the values of now
    std::vector<int> entityOf;        ///< by id: number in data, -1 once it is removed
    std::vector<int> constraintOf;    ///< by id
    std::vector<int> idOfEntity;      ///< by number in data
    std::vector<int> idOfConstraint;  ///< by number in data
    unsigned revision = 0;            ///< counts what would make a drag's equations wrong

    int find(EntityId id) const { return numberIn(entityOf, id.number()); }
    int find(ConstraintId id) const { return numberIn(constraintOf, id.number()); }
    EntityId entityId(int number) const { return EntityId(idOfEntity[detail::at(number)]); }
    ConstraintId constraintId(int number) const { return ConstraintId(idOfConstraint[detail::at(number)]); }

    /// What the id's point is to the solver; the entity is there. A point that it does not have is found by pointAt.
    detail::SketchPlace placeOf(PointId point) const;

    /// Removes the entities and constraints that are marked, by their numbers; a constraint goes with its entities.
    /// When memory runs out nothing has changed. Cost: linear in the sketch.
    void removeMarked(const std::vector<char>& isGone, const std::vector<char>& isConstraintGone);

private:
    static int numberIn(const std::vector<int>& numbers, int id) {
        return id < 0 || id >= static_cast<int>(numbers.size()) ? -1 : numbers[detail::at(id)];
    }
};

/// The way to the inside of a sketch for the functions beside it.
struct SketchAccess {
    static Sketch::Impl& of(Sketch& sketch) { return *sketch.m_impl; }
    static const Sketch::Impl& of(const Sketch& sketch) { return *sketch.m_impl; }
};

using SketchImpl = std::remove_reference_t<decltype(SketchAccess::of(std::declval<Sketch&>()))>;

Error noSuch(EntityId entity);
Error noSuch(ConstraintId constraint);

/// What an exception of the solver says, without the name of the constraint that it begins with.
std::string withoutName(const std::string& message);

}  // namespace holdfast::solver
