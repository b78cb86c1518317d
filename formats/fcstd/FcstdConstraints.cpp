#include "formats/fcstd/FcstdConstraints.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "document/Names.h"
#include "document/Places.h"
#include "formats/fcstd/FcstdShapes.h"
#include "geometry/Angles.h"
#include "geometry/ConstraintKinds.h"

namespace holdfast::formats {
namespace {

using Kind = FcstdKind;

constexpr double kMeeting = 1e-7;  // millimetres: what the program takes for one point

constexpr std::string_view kNames[] = {
    "None",      "Coincident",        "Horizontal", "Vertical",      "Parallel", "Tangent", "Distance",
    "DistanceX", "DistanceY",         "Angle",      "Perpendicular", "Radius",   "Equal",   "PointOnObject",
    "Symmetric", "InternalAlignment", "SnellsLaw",  "Block",         "Diameter", "Weight",
};

struct RefNames {
    const char *geometry, *point;
};
constexpr RefNames kRefNames[] = {{"First", "FirstPos"}, {"Second", "SecondPos"}, {"Third", "ThirdPos"}};

struct Role {
    FcstdAlignment alignment;
    std::string_view name;
};
constexpr Role kRoles[] = {{FcstdAlignment::majorDiameter, "major_diameter"},
                           {FcstdAlignment::minorDiameter, "minor_diameter"},
                           {FcstdAlignment::focus1, "focus1"},
                           {FcstdAlignment::focus2, "focus2"}};

/// Kinds that both sides have in the same form.
struct Pair {
    Kind theirs;
    ConstraintType ours;
};
constexpr Pair kPairs[] = {{Kind::coincident, ConstraintType::coincident},
                           {Kind::horizontal, ConstraintType::horizontal},
                           {Kind::vertical, ConstraintType::vertical},
                           {Kind::parallel, ConstraintType::parallel},
                           {Kind::tangent, ConstraintType::tangent},
                           {Kind::distance, ConstraintType::distance},
                           {Kind::distanceX, ConstraintType::distanceX},
                           {Kind::distanceY, ConstraintType::distanceY},
                           {Kind::angle, ConstraintType::angle},
                           {Kind::perpendicular, ConstraintType::perpendicular},
                           {Kind::radius, ConstraintType::radius},
                           {Kind::equal, ConstraintType::equal},
                           {Kind::pointOnObject, ConstraintType::pointOnCurve},
                           {Kind::symmetric, ConstraintType::symmetric},
                           {Kind::alignment, ConstraintType::internal},
                           {Kind::block, ConstraintType::fixed},
                           {Kind::diameter, ConstraintType::diameter}};

const Pair* pairOf(Kind kind) {
    const auto* found =
        std::find_if(std::begin(kPairs), std::end(kPairs), [&](const Pair& pair) { return pair.theirs == kind; });
    return found == std::end(kPairs) ? nullptr : found;
}

Kind theirKind(ConstraintType type) {
    const auto* found =
        std::find_if(std::begin(kPairs), std::end(kPairs), [&](const Pair& pair) { return pair.ours == type; });
    return found == std::end(kPairs) ? Kind::none : found->theirs;
}

Place originPlace() {
    return {.entity = "origin"};
}

class ConstraintReader {
public:
    ConstraintReader(const pugi::xml_node& record, const FcstdPlaces& places,
                     const std::function<const Shape*(const std::string& entity)>& shapes)
        : m_record(record), m_places(places), m_shapes(shapes), m_refs(refsIn(record)) {}

    std::optional<Constraint> read() {
        const Pair* pair = pairOf(static_cast<Kind>(integerIn(m_record, "Type")));
        if (pair == nullptr)
            return std::nullopt;
        m_found.type = pair->ours;
        if (!takePlaces() || !takeRole())
            return std::nullopt;
        refine();
        takeValue();
        return m_found;
    }

private:
    /// What stands in no direction is a point, also of an axis.
    bool takePlaces() {
        for (const FcstdRef ref : m_refs) {
            if (ref.isNothing())
                continue;
            const std::optional<Place> place = m_places(ref, m_found.type == ConstraintType::angle);
            if (!place)
                return false;
            m_found.refs.push_back(*place);
        }
        return !m_found.refs.empty();
    }

    bool takeRole() {
        if (m_found.type != ConstraintType::internal)
            return true;
        const auto alignment = static_cast<FcstdAlignment>(integerIn(m_record, "InternalAlignmentType"));
        for (const Role& role : kRoles)
            if (role.alignment == alignment)
                m_found.role = role.name;
        return !m_found.role.empty();
    }

    bool isLine(const Place& place) const {
        const Shape* shape = m_shapes(place.entity);
        return place.kind == PlaceKind::whole && shape != nullptr && isStraight(*shape);
    }

    /// Kinds that are several of ours, by what they hold between.
    void refine() {
        std::vector<Place>& refs = m_found.refs;
        const auto isCentre = [](const Place& place) { return place.kind == PlaceKind::centre; };
        if (m_found.type == ConstraintType::coincident && std::all_of(refs.begin(), refs.end(), isCentre))
            m_found.type = ConstraintType::concentric;
        if (m_found.type == ConstraintType::tangent && refs.size() == 2 && isLine(refs[0]) && isLine(refs[1]))
            m_found.type = ConstraintType::collinear;
        const bool isGap = m_found.type == ConstraintType::distanceX || m_found.type == ConstraintType::distanceY;
        if (isGap && refs.size() == 1)
            refs = isLine(refs[0])
                       ? std::vector<Place>{{refs[0].entity, PlaceKind::start}, {refs[0].entity, PlaceKind::end}}
                       : std::vector<Place>{originPlace(), refs[0]};
    }

    void takeValue() {
        m_found.active = integerIn(m_record, "IsActive", 1) != 0;
        m_found.name = m_record.attribute("Name").value();
        if (!isDimension(m_found.type))
            return;
        m_found.value = numberIn(m_record, "Value");
        m_found.driving = integerIn(m_record, "IsDriving", 1) != 0;
    }

    pugi::xml_node m_record;
    const FcstdPlaces& m_places;
    const std::function<const Shape*(const std::string& entity)>& m_shapes;
    FcstdRefs m_refs;
    Constraint m_found;
};

class ConstraintTerms {
public:
    using RefOf = std::function<std::optional<FcstdRef>(const Place& place)>;

    ConstraintTerms(const Constraint& constraint, const EntityIndex& entities, const RefOf& refOf, bool isNewer)
        : m_constraint(constraint), m_entities(entities), m_refOf(refOf), m_isNewer(isNewer) {
        m_terms.kind = theirKind(constraint.type);
        m_terms.value = constraint.value;
    }

    std::optional<FcstdConstraint> terms() {
        if (!takePlaces() || !refine() || m_terms.kind == Kind::none)
            return std::nullopt;
        return m_terms;
    }

private:
    bool takePlaces() {
        if (m_constraint.refs.size() > m_terms.refs.size())
            return false;
        for (std::size_t i = 0; i < m_constraint.refs.size(); ++i) {
            const std::optional<FcstdRef> ref = m_refOf(m_constraint.refs[i]);
            if (!ref)
                return false;
            m_terms.refs[i] = *ref;
        }
        return true;
    }

    const Shape& shapeOf(std::size_t place) const { return m_entities.find(m_constraint.refs[place].entity)->shape; }
    bool isWhole(std::size_t place) const {
        return m_terms.refs[place].point == FcstdRef::whole && !m_terms.refs[place].isNothing();
    }
    bool isLine(std::size_t place) const { return isWhole(place) && isStraight(shapeOf(place)); }
    bool isPoint(std::size_t place) const { return m_terms.refs[place].point != FcstdRef::whole; }

    bool refine() {
        switch (m_constraint.type) {
            case ConstraintType::concentric:
                m_terms.kind = Kind::coincident;
                return true;
            case ConstraintType::collinear:
                m_terms.kind = Kind::tangent;
                return true;
            case ConstraintType::midpoint:
                return refineMidpoint();
            case ConstraintType::internal:
                return refineRole();
            case ConstraintType::fixed:
                return refineFixed();
            case ConstraintType::symmetric:
                return refineSymmetry();
            case ConstraintType::tangent:
            case ConstraintType::perpendicular:
                return refineContact();
            case ConstraintType::distance:
                return refineDistance();
            case ConstraintType::angle:
                return refineAngle();
            default:
                return true;
        }
    }

    /// Only whole entities can be.
    bool refineFixed() {
        if (std::holds_alternative<PointShape>(shapeOf(0)))
            m_terms.refs[0].point = FcstdRef::whole;
        return isWhole(0);
    }

    /// Points that meet on their mirror line have no direction in which to be apart: solvers that look at it stumble.
    bool refineSymmetry() {
        const auto placeOf = [this](std::size_t i) { return pointAt(shapeOf(i), m_constraint.refs[i]); };
        if (!isPoint(0) || !isPoint(1))
            return false;
        const std::optional<Vec2> first = placeOf(0), second = placeOf(1);
        if (isLine(2) && first && second && distance(*first, *second) < kMeeting) {
            m_terms.kind = Kind::coincident;
            m_terms.refs[2] = {};
        }
        return true;
    }

    /// The ends of the line mirror each other at its middle.
    bool refineMidpoint() {
        const int line = m_terms.refs[1].geometry;
        m_terms.kind = Kind::symmetric;
        m_terms.refs = {FcstdRef{line, FcstdRef::start}, FcstdRef{line, FcstdRef::end}, m_terms.refs[0]};
        return true;
    }

    bool refineRole() {
        m_terms.alignment = alignmentOf(m_constraint.role);
        return m_terms.alignment != FcstdAlignment::none;
    }

    /// Where one end touches a whole curve, the end comes first. Whole splines touch nothing there.
    bool refineContact() {
        if (m_constraint.refs.size() == 2 && isPoint(1) && !isPoint(0))
            std::swap(m_terms.refs[0], m_terms.refs[1]);
        const bool isAnywhere = m_constraint.refs.size() == 2 && isWhole(0) && isWhole(1);
        return !isAnywhere ||
               !(std::holds_alternative<SplineShape>(shapeOf(0)) || std::holds_alternative<SplineShape>(shapeOf(1)));
    }

    bool refineDistance() {
        if (m_constraint.refs.size() == 1)
            return isLine(0) || m_isNewer;
        const bool hasLine = isLine(0) || isLine(1), areLines = isLine(0) && isLine(1);
        const bool hasPoint = isPoint(0) || isPoint(1), arePoints = isPoint(0) && isPoint(1);
        if (isPoint(1) && !isPoint(0))
            std::swap(m_terms.refs[0], m_terms.refs[1]);
        return arePoints || (hasPoint && hasLine) || (m_isNewer && !areLines);
    }

    /// One direction has no other end: that is half a turn away.
    bool refineAngle() {
        if (m_constraint.refs.size() != 1)
            return true;
        if (m_terms.refs[0].point == FcstdRef::end)
            m_terms.value = *m_constraint.value > 0.0 ? *m_constraint.value - kPi : *m_constraint.value + kPi;
        m_terms.refs[0].point = FcstdRef::whole;
        return true;
    }

    const Constraint& m_constraint;
    const EntityIndex& m_entities;
    const RefOf& m_refOf;
    bool m_isNewer;
    FcstdConstraint m_terms;
};

void putText(pugi::xml_node record, const char* name, const std::string& value) {
    pugi::xml_attribute attribute = record.attribute(name);
    if (attribute.empty())
        attribute = record.append_attribute(name);
    attribute.set_value(value.c_str());
}

void putWhole(pugi::xml_node record, const char* name, int value) {
    putText(record, name, std::to_string(value));
}

/// Newer documents list the same once more.
void putLists(pugi::xml_node record, const FcstdRefs& refs) {
    if (record.attribute("ElementIds").empty())
        return;
    std::string ids, points;
    for (const FcstdRef ref : refs) {
        ids += (ids.empty() ? "" : " ") + std::to_string(ref.geometry);
        points += (points.empty() ? "" : " ") + std::to_string(ref.point);
    }
    putText(record, "ElementIds", ids);
    putText(record, "ElementPositions", points);
}

}  // namespace

std::string spokenKind(int kind) {
    return kind > 0 && kind < static_cast<int>(std::size(kNames)) ? std::string(kNames[kind])
                                                                  : "kind " + std::to_string(kind);
}

FcstdAlignment alignmentOf(std::string_view role) {
    for (const Role& each : kRoles)
        if (each.name == role)
            return each.alignment;
    return FcstdAlignment::none;
}

FcstdRefs refsIn(const pugi::xml_node& record) {
    FcstdRefs refs;
    for (std::size_t i = 0; i < refs.size(); ++i)
        refs[i] = {integerIn(record, kRefNames[i].geometry, FcstdRef::kNothing),
                   integerIn(record, kRefNames[i].point, FcstdRef::whole)};
    return refs;
}

void putRefs(pugi::xml_node record, const FcstdRefs& refs) {
    if (refs == refsIn(record))
        return;
    for (std::size_t i = 0; i < refs.size(); ++i) {
        putWhole(record, kRefNames[i].geometry, refs[i].geometry);
        putWhole(record, kRefNames[i].point, refs[i].point);
    }
    putLists(record, refs);
}

std::optional<Constraint> constraintIn(const pugi::xml_node& record, const FcstdPlaces& places,
                                       const std::function<const Shape*(const std::string& entity)>& shapes) {
    return ConstraintReader(record, places, shapes).read();
}

std::optional<FcstdConstraint> inFcstdTerms(const Constraint& constraint, const EntityIndex& entities,
                                            const std::function<std::optional<FcstdRef>(const Place& place)>& refs,
                                            bool isNewer) {
    return ConstraintTerms(constraint, entities, refs, isNewer).terms();
}

void putTerms(pugi::xml_node record, const FcstdConstraint& terms) {
    putWhole(record, "Type", static_cast<int>(terms.kind));
    if (terms.kind == Kind::alignment) {
        putWhole(record, "InternalAlignmentType", static_cast<int>(terms.alignment));
        putWhole(record, "InternalAlignmentIndex", integerIn(record, "InternalAlignmentIndex", -1));
    }
    // What a contact says here is on which side it is; 0 has the program look.
    putNumber(record, "Value", terms.value.value_or(0.0));
    putRefs(record, terms.refs);
}

pugi::xml_node addConstraint(pugi::xml_node list) {
    pugi::xml_node record = list.append_child("Constrain");
    putText(record, "Name", "");
    for (const char* zero : {"Type", "Value"})
        putWhole(record, zero, 0);
    for (const RefNames& names : kRefNames) {
        putWhole(record, names.geometry, FcstdRef::kNothing);
        putWhole(record, names.point, FcstdRef::whole);
    }
    constexpr int usualDistance = 10;  // of a label from what it measures
    putWhole(record, "LabelDistance", usualDistance);
    putWhole(record, "LabelPosition", 0);
    putWhole(record, "IsDriving", 1);
    putWhole(record, "IsInVirtualSpace", 0);
    putWhole(record, "IsActive", 1);
    return record;
}

}  // namespace holdfast::formats
