#pragma once

#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/residuals/Equation.h"

namespace holdfast::solver::detail {

/// Lists of numbers, one list after the other in one block.
struct ListTable {
    std::vector<int> starts{0};
    std::vector<int> items;

    std::span<const int> operator[](int list) const {
        const auto from = static_cast<std::size_t>(starts[static_cast<std::size_t>(list)]);
        const auto to = static_cast<std::size_t>(starts[static_cast<std::size_t>(list) + 1]);
        return std::span(items).subspan(from, to - from);
    }
};

/// From pairs (list, item): list i holds its items in the order of the pairs. Linear cost.
ListTable tabulate(int listCount, std::span<const std::pair<int, int>> pairs);

/// How a value hangs on an unknown: value = sign * unknown + offset; unknown -1: it is the constant offset.
struct ValueLink {
    int unknown = -1;
    double sign = 1.0;
    double offset = 0.0;
};

/// A constraint whose equations, some or all, other constraints imply already.
struct SpareCount {
    int constraint = -1;
    int equations = 0;
};

/// A constraint that contradicts others, found while values were merged.
struct Contradiction {
    int constraint = -1;      ///< -1: a rule that belongs to an entity
    std::vector<int> others;  ///< the constraints that it contradicts
};

/// One intrinsic size of an entity, as an equation that keeps it: exactly, or as a wish that may be missed.
struct SizeRow {
    int equation = -1;
    int entity = -1;
    /// The length of a straight piece; a size of something round or of a whole shape; the sweep of an arc, which
    /// follows from where its neighbours lead to; or no size: where it is turned to.
    enum class Kind { length, bend, sweep, turn } kind = Kind::length;
};

/// A sketch as unknowns and equations: what coincides, lies level or has a given size is merged to one unknown, the
/// rest are equations. Made once for a sketch and its constraints; where the entities are does not matter to it except
/// for the choice of branches, which the sketch's reference decides.
struct EquationSystem {
    double size = 1.0;       ///< extent of the sketch: all tolerances are relative to it
    double tolerance = 0.0;  ///< in lengths: what counts as satisfied
    double aim = 0.0;        ///< what iterations strive for

    std::vector<double> values;     ///< the sketch's values, then contact parameters and constants of the equations
    std::vector<double> reference;  ///< the same where the edit began
    int figureValueCount = 0;
    std::vector<int> entityOfValue;  ///< for each of the sketch's values
    std::vector<double> metric;      ///< how far geometry moves when the value changes by one

    EquationSet set;
    std::vector<ValueLink> links;  ///< for each value
    int unknownCount = 0;
    ListTable valuesOfUnknown;
    ListTable equationsOfUnknown;

    std::vector<SpareCount> spares;  ///< found while merging
    std::vector<Contradiction> contradictions;
    std::vector<std::pair<int, int>> constraintEquations;  ///< (constraint, equation), ascending

    /// Equations whose curves must keep running the same way (tangent ends): the sense they had at the reference.
    struct Sense {
        int equation = -1;
        bool isForward = true;
    };
    std::vector<Sense> senses;
    /// Drops those of curves that were not tangent at the reference: there the sense may be chance.
    void dropDoubtfulSenses();

    std::vector<SizeRow> sizes;  ///< that are kept, in the order of the shapes asked for

    /// More of it than the sketch's values hangs on where the entities are now. Constants of fixed entities do anyway.
    bool readsNow = false;

    /// The unknown's value as the mean of the values merged in it.
    double meanOf(int unknown) const;
    /// The same from other values than those of now.
    double meanOf(int unknown, std::span<const double> from) const;

    /// Writes the unknown into the values merged in it.
    void assign(int unknown, double x);

    /// Sum of squared metrics of the values merged in the unknown: its weight in the movement.
    double weightOf(int unknown) const;

    /// Largest absolute residual of an equation at the values of now.
    double residualOf(int equation) const;
    /// The same at other values.
    double residualOf(int equation, std::span<const double> from) const;
};

/// Entities that have a value merged in one of the unknowns, ascending.
std::vector<int> entitiesOf(const EquationSystem& system, std::span<const int> unknowns);

/// An entity whose intrinsic sizes (lengths, radii, bulges, swept angles) are to stay as they are at the reference,
/// and how much a change of each counts in the movement; 0: it stays exactly.
struct KeptShape {
    int entity = -1;
    double lengthWeight = 0.0;
    double bendWeight = 0.0;
    double turnWeight = 0.0;  ///< 0: it may turn freely

    bool operator==(const KeptShape&) const = default;
};

struct KeptSizes {
    std::vector<KeptShape> shapes;
    // By number of the size, those of all shapes counted on; may be shorter.
    std::vector<char> isFirm;      ///< stays exactly
    std::vector<double> emphasis;  ///< how much more it counts than its weight says
    double sparedBelow = 0.0;      ///< smaller ones count more, by how much smaller they are
    std::vector<int> spared{};     ///< entities, ascending, whose sizes count as much more as any may
    bool sparesFirst = false;      ///< those before all other sizes

    bool operator==(const KeptSizes&) const = default;
};

/// Shapes whose sizes stay exactly; they may turn.
inline KeptSizes keptExactly(std::span<const int> entities) {
    KeptSizes sizes;
    for (const int entity : entities)
        sizes.shapes.push_back({entity, 0.0, 0.0, 0.0});
    return sizes;
}

/// Builds the equations of the constraints listed, which all bind; throws SketchError for one that its entities cannot
/// have.
EquationSystem buildSystem(const SketchData& sketch, std::span<const int> constraints, const KeptSizes& sizes = {});

/// The same with nothing merged: every constraint as equations, for measuring how far each is from holding.
EquationSystem buildPlainSystem(const SketchData& sketch, std::span<const int> constraints);

/// All constraints of the sketch that bind, merged.
EquationSystem buildSystem(const SketchData& sketch);

/// Numbers of all constraints that bind.
std::vector<int> bindingConstraints(const SketchData& sketch);

}  // namespace holdfast::solver::detail
