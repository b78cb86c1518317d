// The constraints of a drawing: built in the host, found, changed, deleted, and told as they are now.

#include <algorithm>
#include <stdexcept>

#include "document/Places.h"
#include "host/model/entities/EntityAccess.h"
#include "host/model/entities/SegmentNames.h"
#include "hosting/Drawing.h"
#include "hosting/HostConstraints.h"
#include "hosting/NamedSegments.h"

namespace holdfast::hosting {

namespace {

bool isPolyline(const YxDbObject& object) {
    return object.isKindOf(YxDbPolyline::desc());
}

bool hasPolyline(const Place& place) {
    return place.kind >= PlaceKind::segment;
}

/// A mirrored arc has its ends exchanged.
bool isEnd(const Place& place) {
    return place.kind == PlaceKind::start || place.kind == PlaceKind::end;
}

}  // namespace

BuiltPlace Drawing::builtPlace(const Place& place, const Constraint& constraint, std::size_t index) const {
    const auto found = m_entities.find(place.entity);
    if (found == m_entities.end())
        throw std::invalid_argument("constraint " + constraint.id + " names the unknown entity " + place.entity);
    // In an angle the end of a line only says which way its direction runs.
    const bool directionOnly = constraint.type == ConstraintType::angle && index < 2 && !hasPolyline(place);
    // Of the shape only its kind counts, which is the one last written: reading a long polyline for each of its
    // constraints would take the square of its length.
    const KnownEntity& known = found->second;
    return directionOnly ? wholeOf(known.id, known.original.shape) : placeIn(known.id, known.original.shape, place);
}

YxGeomConstraint* Drawing::build(const Constraint& constraint, std::size_t number) {
    std::vector<YxConstrainedGeometry*> geometries;
    for (std::size_t i = 0; i < constraint.refs.size(); ++i)
        geometries.push_back(&m_builder.geometry(group(), builtPlace(constraint.refs[i], constraint, i)));
    YxGeomConstraint& made = addHostConstraint(group(), constraint, geometries);
    m_constraintNumbers.emplace(&made, number);
    m_process.name(&made, constraint.id);
    return &made;
}

bool Drawing::hasParameter(std::string_view name) const {
    return std::any_of(m_notes.parameters.begin(), m_notes.parameters.end(),
                       [&](const Parameter& parameter) { return parameter.name == name; });
}

/// Ids stay taken. The number depends on those alone that were given, and not on what has come and gone besides: a
/// drawing that was written in between goes on in the same way.
std::string Drawing::freeConstraintId() const {
    for (std::size_t number = m_nextConstraintNumber;; ++number)
        if (std::string id = "k" + std::to_string(number); !m_constraintIndex.contains(id) && !hasParameter(id))
            return id;
}

std::string Drawing::addConstraint(Constraint constraint) {
    const HostProcess::Scope bound(m_process);
    if (constraint.id.empty())
        constraint.id = freeConstraintId();
    const std::size_t added = m_constraints.size();
    m_constraintsBefore.emplace(added, std::nullopt);
    m_isTouched = true;
    addKnown(constraint, added);
    ownMembers(constraint);
    return constraint.id;
}

bool Drawing::hasConstraint(std::string_view id) const {
    const auto found = m_constraintIndex.find(std::string(id));
    if (found == m_constraintIndex.end())
        return false;
    return !isDeleted(m_constraints[found->second]);
}

bool Drawing::isDeleted(const KnownConstraint& known) const {
    return known.isGone || (known.host == nullptr ? known.isDropped : HostAccess::isDeleted(*known.host));
}

std::optional<Constraint> Drawing::constraint(std::string_view id) const {
    const HostProcess::Scope bound(m_process);
    const auto found = m_constraintIndex.find(std::string(id));
    if (found == m_constraintIndex.end())
        return std::nullopt;
    Segments segments;
    return currentConstraint(m_constraints[found->second], segments);
}

std::string Drawing::constraintCalled(std::string_view word) const {
    if (hasConstraint(word))
        return std::string(word);
    for (const KnownConstraint& known : m_constraints)
        if (!known.original.name.empty() && known.original.name == word && hasConstraint(known.original.id))
            return known.original.id;
    return {};
}

std::vector<std::string> Drawing::constraintIds() const {
    std::vector<std::string> ids;
    for (const KnownConstraint& known : m_constraints)
        if (!isDeleted(known))
            ids.push_back(known.original.id);
    return ids;
}

std::string Drawing::constraintId(const YxGeomConstraint* constraint) const {
    const auto found = m_constraintNumbers.find(constraint);
    return found == m_constraintNumbers.end() ? "" : m_constraints[found->second].original.id;
}

const YxDbAssocGeomDependency* Drawing::dependencyOf(const YxConstrainedGeometry& geometry) const {
    const YxConstrainedGeometry* curve = &geometry;
    if (geometry.isKindOf(YxConstrainedImplicitPoint::desc())) {
        const auto& point = static_cast<const YxConstrainedImplicitPoint&>(geometry);
        curve = HostAccess::curveOf(group(), point);
    }
    if (curve == nullptr)  // it went with its dependency
        return nullptr;
    const YxDbObjectId id = HostAccess::dependencyOf(*curve);
    return HostAccess::isErased(id) ? nullptr : static_cast<const YxDbAssocGeomDependency*>(HostAccess::peek(id));
}

Place Drawing::placeOf(const YxConstrainedGeometry& geometry) const {
    const HostProcess::Scope bound(m_process);
    Segments segments;
    return placeOf(geometry, segments);
}

Place Drawing::placeOf(const YxConstrainedGeometry& geometry, Segments& segments) const {
    const YxDbAssocGeomDependency* dependency = dependencyOf(geometry);
    if (dependency == nullptr)
        return {};
    const YxDbObjectId object = HostAccess::objectOf(*dependency);
    const std::string name = nameOf(object);
    if (name.empty())
        return {};
    const auto& resident = static_cast<const YxDbEntity&>(*HostAccess::peek(object));
    const int segment =
        isPolyline(resident) ? segments.segmentOf(*dependency, static_cast<const YxDbPolyline&>(resident)) : 0;
    return placeFrom(name, resident, geometry, segment);
}

bool Drawing::isLost(const YxConstrainedGeometry& geometry, Segments& segments) const {
    const YxDbAssocGeomDependency* dependency = dependencyOf(geometry);
    if (dependency == nullptr || HostAccess::status(*dependency) == kSegmentRemovedAssocStatus)
        return true;
    const YxDbObjectId object = HostAccess::objectOf(*dependency);
    if (HostAccess::isErased(object))
        return true;
    const auto& resident = static_cast<const YxDbEntity&>(*HostAccess::peek(object));
    return isPolyline(resident) && segments.segmentOf(*dependency, static_cast<const YxDbPolyline&>(resident)) < 0;
}

void Drawing::removeConstraint(std::string_view id) {
    const HostProcess::Scope bound(m_process);
    KnownConstraint& known = knownConstraint(id);
    if (known.host == nullptr) {
        noteConstraint(m_constraintIndex.find(std::string(id))->second);
        known.isDropped = true;
        for (const std::string& member : known.original.members)
            if (hasConstraint(member) && knownConstraint(member).host == nullptr)
                removeConstraint(member);
    } else if (!HostAccess::isDeleted(*known.host)) {
        noteDeletions(Deletion::By::module);
        HostAccess::deleteConstraint(group(), HostAccess::topLevel(*known.host));
        noteDeletions(Deletion::By::host);
    }
}

void Drawing::setMeasure(std::string_view id, double value) {
    KnownConstraint& known = knownConstraint(id);
    noteConstraint(m_constraintIndex.find(std::string(id))->second);
    known.original.value = value;
    if (known.host != nullptr && !HostAccess::isDeleted(*known.host)) {
        auto& dimension = static_cast<YxDimensionConstraint&>(*known.host);
        HostAccess::setDimension(dimension, dimension.kind(), value, known.original.driving);
    }
}

void Drawing::setDriving(std::string_view id, bool driving) {
    KnownConstraint& known = knownConstraint(id);
    noteConstraint(m_constraintIndex.find(std::string(id))->second);
    known.original.driving = driving;
    if (known.host == nullptr || HostAccess::isDeleted(*known.host))
        return;
    auto& dimension = static_cast<YxDimensionConstraint&>(*known.host);
    HostAccess::setDimension(dimension, dimension.kind(), dimension.value(), driving);
    for (const Place& place : known.original.refs)
        if (const auto on = m_entities.find(place.entity); driving && on != m_entities.end())
            m_unsolved.insert(on->second.number);
}

void Drawing::setActive(const std::vector<std::string>& ids, bool active) {
    const HostProcess::Scope bound(m_process);
    noteDeletions(Deletion::By::module);
    std::vector<std::pair<std::size_t, Constraint>> switched;
    Segments segments;
    for (const std::string& id : ids)
        if (std::optional<Constraint> now = currentConstraint(knownConstraint(id), segments)) {
            now->active = active;
            switched.emplace_back(m_constraintIndex.find(id)->second, std::move(*now));
        }
    for (const auto& [number, constraint] : switched) {
        noteConstraint(number);
        YxGeomConstraint* host = m_constraints[number].host;
        m_constraintNumbers.erase(host);  // that it goes is no deletion
        if (host != nullptr && !HostAccess::isDeleted(*host))
            HostAccess::deleteConstraint(group(), HostAccess::topLevel(*host));
        for (const Place& place : constraint.refs) {
            m_switchedOff[place.entity].erase(number);
            if (const auto on = m_entities.find(place.entity); active && on != m_entities.end())
                m_unsolved.insert(on->second.number);
        }
    }
    noteDeletions(Deletion::By::module);
    for (const auto& [number, constraint] : switched)
        addKnown(constraint, number);
    for (const auto& [number, constraint] : switched)
        ownMembers(constraint);
}

void Drawing::setFormula(std::string_view id, const std::string& formula) {
    KnownConstraint& known = knownConstraint(id);
    const std::size_t number = m_constraintIndex.find(std::string(id))->second;
    noteConstraint(number);
    known.original.formula = formula;
    m_calculated.insert(number);
}

std::vector<std::string> Drawing::calculated() const {
    std::vector<std::string> ids;
    for (const std::size_t number : m_calculated)
        if (number < m_constraints.size())
            if (const KnownConstraint& known = m_constraints[number];
                !known.original.formula.empty() && !isDeleted(known))
                ids.push_back(known.original.id);
    return ids;
}

void Drawing::setParameters(std::vector<Parameter> parameters) {
    if (!m_parametersBefore)
        m_parametersBefore = m_notes.parameters;
    m_notes.parameters = std::move(parameters);
    m_isTouched = true;
}

int Drawing::dropLostConstraints() {
    const HostProcess::Scope bound(m_process);
    noteDeletions(Deletion::By::module);
    std::unordered_map<const void*, bool> lostOf;  // by geometry
    Segments segments;
    int dropped = 0;
    for (YxGeomConstraint* constraint : touchedInHost()) {
        if (HostAccess::isDeleted(*constraint))
            continue;
        const auto& geometries = HostAccess::geometries(*constraint);
        const auto lost =
            std::find_if(geometries.begin(), geometries.end(), [&](const YxConstrainedGeometry* geometry) {
                const auto [known, isNew] = lostOf.try_emplace(geometry, false);
                if (isNew)
                    known->second = isLost(*geometry, segments);
                return known->second;
            });
        if (lost == geometries.end())
            continue;
        const Place at = placeBefore(*constraint, static_cast<std::size_t>(lost - geometries.begin()));
        if (HostAccess::deleteConstraint(group(), HostAccess::topLevel(*constraint)) == Yxrt::eOk)
            ++dropped;
        noteDeletions(Deletion::By::lostPlace, at);
    }
    return dropped;
}

bool Drawing::hasPlaces(const Constraint& constraint) const {
    return std::all_of(constraint.refs.begin(), constraint.refs.end(), [&](const Place& place) {
        return m_entities.contains(place.entity) && hasPlace(shape(place.entity), place);
    });
}

/// Where the host has a constraint, in the places of the document.
void Drawing::takePlaces(Constraint& constraint, const YxGeomConstraint& host, Segments& segments) const {
    const auto& geometries = HostAccess::geometries(host);
    for (std::size_t i = 0; i < constraint.refs.size() && i < geometries.size(); ++i) {
        const Place place = placeOf(*geometries[i], segments);
        Place& known = constraint.refs[i];
        if (place.entity != known.entity || hasPolyline(place) || (isEnd(place) && isEnd(known)))
            known = place;
    }
}

std::optional<Constraint> Drawing::currentConstraint(const KnownConstraint& known, Segments& segments) const {
    const bool isOff = known.host == nullptr;  // the host does not know it
    if (isDeleted(known) || (isOff && !hasPlaces(known.original)))
        return std::nullopt;
    Constraint now = known.original;
    std::erase_if(now.members, [&](const std::string& member) { return !hasConstraint(member); });
    if (isOff)
        return now;
    takePlaces(now, *known.host, segments);
    if (known.host->isKindOf(YxDimensionConstraint::desc()))
        now.value = static_cast<const YxDimensionConstraint*>(known.host)->value();
    return now;
}

}  // namespace holdfast::hosting
