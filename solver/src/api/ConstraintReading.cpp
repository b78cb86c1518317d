#include "solver/src/api/ConstraintReading.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>
#include <optional>

#include "solver/src/diagnosis/Extract.h"
#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/residuals/Operands.h"

namespace holdfast::solver {

using detail::at;

namespace {

using Type = geometry::ConstraintType;

/// A kind in words and as the solver knows it. The row of each kind stands at its place in the variant.
struct Row {
    std::string_view name, takes;
    Type type;
};

// clang-format off
constexpr Row kRows[] = {
    {"coincident",            "two points",                                                     Type::coincident},
    {"concentric",            "two of circles, arcs, arc segments, ellipses, elliptical arcs",  Type::concentric},
    {"point on curve",        "a point and a curve; of a polyline one segment",                 Type::pointOnCurve},
    {"fixed point",           "a point",                                                        Type::fixed},
    {"fixed curve",           "a curve",                                                        Type::fixed},
    {"horizontal",            "a line",                                                         Type::horizontal},
    {"vertical",              "a line",                                                         Type::vertical},
    {"horizontal points",     "two points",                                                     Type::horizontal},
    {"vertical points",       "two points",                                                     Type::vertical},
    {"midpoint",              "a point, and a line, an arc or a segment",                       Type::midpoint},
    {"symmetric",             "two points and a line",                                          Type::symmetric},
    {"symmetric about point", "three points",                                                   Type::symmetric},
    {"symmetric curves",      "two lines, two circles or two ellipses, and a line",             Type::symmetric},
    {"parallel",              "two lines",                                                      Type::parallel},
    {"perpendicular",         "two lines, or a line and a circle",                              Type::perpendicular},
    {"perpendicular at",      "two curves and a point on both",                                 Type::perpendicular},
    {"perpendicular ends",    "two ends of curves",                                             Type::perpendicular},
    {"collinear",             "two lines",                                                      Type::collinear},
    {"tangent",               "two curves, not both lines",                                     Type::tangent},
    {"tangent at",            "two curves and a point on both",                                 Type::tangent},
    {"tangent ends",          "two ends of curves",                                             Type::tangent},
    {"tangent end",           "an end of a curve, and another curve",                           Type::tangent},
    {"smooth",                "two ends of curves",                                             Type::g2Smooth},
    {"equal",                 "two lines with ends, two circles or two ellipses",               Type::equal},
    {"major diameter",        "a line and an ellipse",                                          Type::internal},
    {"minor diameter",        "a line and an ellipse",                                          Type::internal},
    {"focus",                 "a point and an ellipse",                                         Type::internal},
    {"distance",              "two points, and a length of 0 or more",                          Type::distance},
    {"point-curve distance",  "a point, a line or a circle, and a length of 0 or more",         Type::distance},
    {"curve distance",        "a line and a circle, or two circles, and a length of 0 or more", Type::distance},
    {"line distance",         "two lines, and a length of 0 or more",                           Type::distance},
    {"distance x",            "two points and a length",                                        Type::distanceX},
    {"distance y",            "two points and a length",                                        Type::distanceY},
    {"length",                "a line, a segment or an arc, and a length of 0 or more",         Type::distance},
    {"radius",                "a circle, an arc or an arc segment, and a length above 0",       Type::radius},
    {"diameter",              "a circle, an arc or an arc segment, and a length above 0",       Type::diameter},
    {"direction",             "a line and an angle",                                            Type::angle},
    {"sweep",                 "an arc or an arc segment, and an angle",                         Type::angle},
    {"angle",                 "two lines and an angle",                                         Type::angle},
    {"angle at",              "two curves, a point on both, and an angle",                      Type::angle},
    {"own residual",          "points and entities with as many numbers as its function reads", Type::coincident},
};
// clang-format on
static_assert(std::size(kRows) == std::variant_size_v<Constraint>, "one row for each kind");

const Row& rowOf(const Constraint& constraint) {
    return kRows[constraint.index()];
}

// The members of each kind, visited in their order.
template <class K, class V>
void visitMembers(K& k, V&& visit) {
    using Kind = std::remove_const_t<K>;
    if constexpr (std::is_same_v<Kind, OwnResidual>) {
        for (const PointId point : k.points)
            visit(point);
        for (const EntityId entity : k.entities)
            visit(entity);
    } else if constexpr (requires { k.axis; }) {
        visit(k.first), visit(k.second), visit(k.axis);
    } else if constexpr (requires { k.centre; }) {
        visit(k.first), visit(k.second), visit(k.centre);
    } else if constexpr (requires { k.first, k.point; }) {
        visit(k.first), visit(k.second), visit(k.point);
    } else if constexpr (requires { k.first; }) {
        visit(k.first), visit(k.second);
    } else if constexpr (requires { k.point, k.curve; }) {
        visit(k.point), visit(k.curve);
    } else if constexpr (requires { k.end, k.curve; }) {
        visit(k.end), visit(k.curve);
    } else if constexpr (requires { k.line, k.ellipse; }) {
        visit(k.line), visit(k.ellipse);
    } else if constexpr (requires { k.point, k.ellipse; }) {
        visit(k.point), visit(k.ellipse);
    } else if constexpr (requires { k.point; }) {
        visit(k.point);
    } else if constexpr (requires { k.curve; }) {
        visit(k.curve);
    } else if constexpr (requires { k.line; }) {
        visit(k.line);
    } else if constexpr (requires { k.circle; }) {
        visit(k.circle);
    } else {
        visit(k.arc);
    }
    if constexpr (requires { k.value; })
        visit(k.value);
}

/// Collects the places that a constraint names.
class Reading {
public:
    Reading(const SketchImpl& sketch, detail::SketchConstraint& constraint, bool wantsCentres)
        : m_sketch(sketch), m_constraint(constraint), m_wantsCentres(wantsCentres) {}

    std::optional<Error> error;

    void operator()(PointId point) {
        if (!contains(point.entity()))
            return;
        const detail::SketchPlace place = m_sketch.placeOf(point);
        if (!detail::pointAt(m_sketch.data, place) && !error)
            error = Error{"there is no such point", toString(point), "name a point that the entity has"};
        m_constraint.refs.push_back(place);
    }
    void operator()(CurveId curve) {
        using enum geometry::PlaceKind;
        if (!contains(curve.entity()) || !hasSegment(curve))
            return;
        const geometry::PlaceKind ofEntity = m_wantsCentres ? centre : whole;
        const geometry::PlaceKind ofSegment = m_wantsCentres ? segmentCentre : segment;
        m_constraint.refs.push_back(
            {m_sketch.find(curve.entity()), curve.isSegment() ? ofSegment : ofEntity, std::max(curve.segment(), 0)});
    }
    void operator()(EntityId entity) { (*this)(CurveId(entity)); }
    void operator()(const Value& value) { m_constraint.value = value; }

private:
    bool contains(EntityId entity) {
        const bool isThere = m_sketch.find(entity) >= 0;
        if (!isThere && !error)
            error = noSuch(entity);
        return isThere;
    }

    bool hasSegment(CurveId curve) {
        const detail::SketchEntity& entity = m_sketch.data.entities[detail::at(m_sketch.find(curve.entity()))];
        const bool isThere = !curve.isSegment() ||
                             (entity.kind == detail::EntityKind::polyline && curve.segment() < entity.segmentCount());
        if (!isThere && !error)
            error = Error{"there is no such segment", toString(curve), "polylines have segments, counted from 0"};
        return isThere;
    }

    const SketchImpl& m_sketch;
    detail::SketchConstraint& m_constraint;
    bool m_wantsCentres;  ///< concentric names curves and means their centres
};

detail::EllipseHelper helperOf(const Constraint& constraint) {
    if (std::holds_alternative<MajorDiameter>(constraint))
        return detail::EllipseHelper::majorDiameter;
    if (std::holds_alternative<MinorDiameter>(constraint))
        return detail::EllipseHelper::minorDiameter;
    return std::holds_alternative<Focus>(constraint) ? detail::EllipseHelper::focus1 : detail::EllipseHelper::none;
}

bool isSamePlace(const detail::SketchPlace& a, const detail::SketchPlace& b) {
    return a.entity == b.entity && a.kind == b.kind && a.index == b.index;
}

bool isLine(const SketchImpl& sketch, const detail::SketchPlace& place) {
    return detail::lineAt(sketch.data, detail::curveOf(place)).has_value();
}

Error misplaced(const Constraint& constraint, const std::string& places) {
    return {std::string(nameOfKind(constraint)) + " cannot hold on " + places, describe(constraint),
            "it takes " + std::string(takenBy(constraint))};
}

/// What the equations themselves do not find fault with.
std::string_view faultIn(const SketchImpl& sketch, const Constraint& constraint, const detail::SketchConstraint& read) {
    if (!std::isfinite(read.value))
        return "its value is not a finite number";
    const auto* own = std::get_if<OwnResidual>(&constraint);
    if (own != nullptr && !own->function)
        return "it has no function";
    if (own != nullptr &&
        (own->function->inputCount() < 1 || own->function->inputCount() > ResidualFunction::kMaxInputs ||
         own->function->rowCount() < 1 || own->function->rowCount() > ResidualFunction::kMaxRows))
        return "its function has too few or too many inputs or rows";
    if (own == nullptr && read.refs.size() >= 2 && isSamePlace(read.refs[0], read.refs[1]))
        return "it names the same thing twice";
    if (std::holds_alternative<LineDistance>(constraint) &&
        !(isLine(sketch, read.refs[0]) && isLine(sketch, read.refs[1])))
        return "it joins what is no line";
    if (std::holds_alternative<Sweep>(constraint) && !(read.value > 0.0 && read.value < 2 * std::numbers::pi))
        return "an arc spans more than nothing and less than a full turn";
    return {};
}

}  // namespace

std::string_view nameOfKind(const Constraint& constraint) {
    return rowOf(constraint).name;
}

std::string_view takenBy(const Constraint& constraint) {
    return rowOf(constraint).takes;
}

std::string describe(const Constraint& constraint) {
    std::string text(nameOfKind(constraint));
    const char* before = " of ";
    const auto list = [&](const auto& member) {
        if constexpr (!std::is_same_v<std::decay_t<decltype(member)>, Value>) {
            text += before + toString(member);
            before = ", ";
        }
    };
    std::visit([&](const auto& kind) { visitMembers(kind, list); }, constraint);
    return text;
}

Value* valueIn(Constraint& constraint) {
    return std::visit(
        [](auto& kind) -> Value* {
            if constexpr (requires { kind.value; })
                return &kind.value;
            else
                return nullptr;
        },
        constraint);
}

Result<detail::SketchConstraint> readConstraint(const SketchImpl& sketch, const Constraint& constraint) {
    detail::SketchConstraint read;
    read.type = rowOf(constraint).type;
    read.helper = helperOf(constraint);
    Reading reading(sketch, read, std::holds_alternative<Concentric>(constraint));
    std::visit([&](const auto& kind) { visitMembers(kind, reading); }, constraint);
    if (reading.error)
        return Error{reading.error->what + ": " + reading.error->where, describe(constraint), reading.error->remedy};
    if (const std::string_view fault = faultIn(sketch, constraint, read); !fault.empty())
        return Error{std::string(fault), describe(constraint), "it takes " + std::string(takenBy(constraint))};
    if (const auto* own = std::get_if<OwnResidual>(&constraint))
        read.own = own->function;
    return read;
}

std::optional<Error> faultOfEquations(const SketchImpl& sketch, int number, const Constraint& constraint,
                                      double value) {
    try {
        detail::Extract extract(sketch.data, {&number, 1});
        extract.sketch().takeReference();
        extract.sketch().constraints.front().value = value;
        extract.sketch().constraints.front().active = true;
        extract.sketch().constraints.front().driving = true;
        const int first = 0;
        detail::buildPlainSystem(extract.sketch(), {&first, 1});
    } catch (const detail::PlaceError& e) {
        return misplaced(constraint, e.places());
    } catch (const detail::SketchError& e) {
        return Error{withoutName(e.what()), describe(constraint), "it takes " + std::string(takenBy(constraint))};
    }
    return std::nullopt;
}

Result<int> dimensionFor(const SketchImpl& sketch, ConstraintId dimension, double value) {
    const int number = sketch.find(dimension);
    if (number < 0)
        return noSuch(dimension);
    Constraint changed = sketch.kinds[at(number)];
    Value* const now = valueIn(changed);
    if (now == nullptr)
        return Error{"it is no dimension and has no value", describe(changed), "add a dimension"};
    *now = value;
    if (const auto read = readConstraint(sketch, changed); !read)
        return read.error();
    if (auto fault = faultOfEquations(sketch, number, changed, value))
        return *std::move(fault);
    return number;
}

void giveValue(SketchImpl& sketch, int dimension, double value) {
    Value* const stored = valueIn(sketch.kinds[at(dimension)]);
    assert(stored != nullptr);
    *stored = value;
    sketch.data.constraints[at(dimension)].value = value;
}

}  // namespace holdfast::solver
