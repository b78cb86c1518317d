// What a drawing knows about its changes since somebody asked, and the parts of it that they concern.

#include <algorithm>

#include "host/model/entities/EntityGeometry.h"
#include "hosting/Drawing.h"
#include "hosting/HostConstraints.h"
#include "hosting/NamedSegments.h"

namespace holdfast::hosting {

namespace {

/// In a search that does not go far: an entity with more constraints holds too many others together to be led through:
/// a border line, a datum.
constexpr std::size_t kHub = 64;

bool isLostPlace(const Place& place) {
    return place.entity.empty() || place.index < 0;
}

bool binds(const Constraint& constraint) {
    return constraint.driving && constraint.active && constraint.type != ConstraintType::composite;
}

}  // namespace

void Drawing::noteEntity(const KnownEntity& known) {
    m_before.try_emplace(known.number, known.original);
    m_unsolved.insert(known.number);
    m_extent.touch(known.number);
    m_isTouched = true;
}

void Drawing::noteConstraint(std::size_t number) {
    m_constraintsBefore.try_emplace(number, takenConstraint(number));
    m_isTouched = true;
}

void Drawing::noteConstraintsOf(const YxConstrainedGeometry& geometry) {
    for (YxGeomConstraint* constraint : HostAccess::connected(geometry))
        m_touchedInHost.insert(constraint);
}

void Drawing::noteConstraintsOn(const YxDbEntity& entity) {
    for (const YxConstrainedGeometry* geometry : geometriesOf(entity))
        noteConstraintsOf(*geometry);
}

void Drawing::collectFrom(const YxDbObject& object) {
    if (const KnownEntity* known = knownOf(&object)) {
        noteEntity(*known);
        noteConstraintsOn(static_cast<const YxDbEntity&>(object));
        return;
    }
    if (!object.isKindOf(YxDbAssocGeomDependency::desc()))
        return;
    const auto& dependency = static_cast<const YxDbAssocGeomDependency&>(object);
    if (const KnownEntity* on = knownOf(HostAccess::peek(HostAccess::objectOf(dependency))))
        m_unsolved.insert(on->number);
    const YxConstrainedGeometry* geometry = HostAccess::geometryOn(group(), HostAccess::idOf(object));
    if (geometry == nullptr)
        return;
    noteConstraintsOf(*geometry);
    for (const YxConstrainedGeometry* point : HostAccess::pointsOf(group(), *geometry))
        noteConstraintsOf(*point);
}

/// Running twice over the same changes does no harm: it is done again when memory ran out on the way.
void Drawing::collect() {
    if (m_hostChanges.empty())
        return;
    m_isTouched = true;
    for (YxDbStub* stub : m_hostChanges.objects)
        if (const YxDbObject* object = HostAccess::peek(HostAccess::idOf(stub)))
            collectFrom(*object);
    for (const YxGeomConstraint* constraint : m_hostChanges.constraints) {
        m_touchedInHost.insert(const_cast<YxGeomConstraint*>(constraint));
        if (HostAccess::isDeleted(*constraint))
            continue;
        for (const YxConstrainedGeometry* geometry : HostAccess::geometries(*constraint))
            if (const auto on = m_entities.find(placeOf(*geometry).entity); on != m_entities.end())
                m_unsolved.insert(on->second.number);
    }
    m_hostChanges.clear();
}

std::vector<YxGeomConstraint*> Drawing::touchedInHost() {
    collect();
    for (const auto& [number, before] : m_before)
        if (const KnownEntity* known = m_numbered[number])
            noteConstraintsOn(static_cast<const YxDbEntity&>(*HostAccess::peek(known->id)));
    std::vector<YxGeomConstraint*> touched(m_touchedInHost.begin(), m_touchedInHost.end());
    std::sort(touched.begin(), touched.end(), [](const YxGeomConstraint* a, const YxGeomConstraint* b) {
        return HostAccess::nodeId(*a) < HostAccess::nodeId(*b);
    });
    return touched;
}

bool Drawing::isUntouched() const {
    return !m_isTouched && m_hostChanges.empty() && m_references.isUntouched();
}

std::optional<Entity> Drawing::currentEntity(std::size_t number) const {
    const KnownEntity* known = m_numbered[number];
    if (known == nullptr)
        return std::nullopt;
    Entity entity = known->original;
    entity.shape = shape(entity.id);
    return entity;
}

std::optional<Constraint> Drawing::takenConstraint(std::size_t number) const {
    const KnownConstraint& known = m_constraints[number];
    if (known.isGone)
        return std::nullopt;
    return known.taken ? *known.taken : known.original;
}

/// Numbers of the document's constraints that stand on an entity in the host, each once, ascending.
std::vector<std::size_t> Drawing::numbersOn(const KnownEntity& known) const {
    std::vector<std::size_t> numbers;
    for (const YxConstrainedGeometry* geometry :
         geometriesOf(static_cast<const YxDbEntity&>(*HostAccess::peek(known.id))))
        for (const YxGeomConstraint* constraint : HostAccess::connected(*geometry))
            if (const auto found = m_constraintNumbers.find(constraint); found != m_constraintNumbers.end())
                numbers.push_back(found->second);
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

DrawingChange Drawing::change() {
    const HostProcess::Scope bound(m_process);
    std::set<std::size_t> numbers;
    for (const YxGeomConstraint* constraint : touchedInHost())
        if (const auto found = m_constraintNumbers.find(constraint); found != m_constraintNumbers.end())
            numbers.insert(found->second);
    for (const auto& [number, before] : m_constraintsBefore)
        numbers.insert(number);
    DrawingChange change;
    for (const auto& [number, before] : m_before) {
        const std::optional<Entity> now = currentEntity(number);
        if (before)
            if (const auto off = m_switchedOff.find(before->id); off != m_switchedOff.end())
                numbers.insert(off->second.begin(), off->second.end());
        if (before != now)
            change.entities.push_back({number, before, now});
    }
    Segments segments;
    for (const std::size_t number : numbers) {
        std::optional<Constraint> before = constraintBefore(number);
        std::optional<Constraint> now = currentConstraint(m_constraints[number], segments);
        if (before != now)
            change.constraints.push_back({number, std::move(before), std::move(now)});
    }
    if (m_parametersBefore && *m_parametersBefore != m_notes.parameters)
        change.parameters = ParametersChange{*m_parametersBefore, m_notes.parameters};
    change.references = m_references.change();
    return change;
}

/// Everything that takes memory comes before anything that changes what is known.
void Drawing::commit(const DrawingChange& change) {
    std::vector<std::pair<KnownEntity*, Shape>> shapes;
    for (const EntityChange& entity : change.entities)
        if (entity.after)
            shapes.emplace_back(&known(entity.after->id), entity.after->shape);
    std::vector<std::pair<KnownConstraint*, std::unique_ptr<Constraint>>> constraints;
    for (const ConstraintChange& each : change.constraints) {
        KnownConstraint& known = m_constraints[each.order];
        const bool differs = each.after && *each.after != known.original;
        constraints.emplace_back(&known, differs ? std::make_unique<Constraint>(*each.after) : nullptr);
    }
    for (auto& [entity, shape] : shapes)
        if (entity->original.shape != shape) {  // else what was written stands, with what the host made of it
            entity->original.shape = std::move(shape);
            entity->originalRead.reset();
        }
    for (std::size_t i = 0; i < constraints.size(); ++i) {
        constraints[i].first->taken = std::move(constraints[i].second);
        constraints[i].first->isGone = !change.constraints[i].after;
    }
}

void Drawing::take(const DrawingChange& change) {
    commit(change);
    m_parametersBefore.reset();
    m_references.take();
    m_before.clear();
    m_constraintsBefore.clear();
    m_touchedInHost.clear();
    m_deletions.clear();
    m_hostChanges.deletions.clear();
    m_isTouched = false;
}

EditedPart Drawing::editedPart(const DrawingChange& change) const {
    const HostProcess::Scope bound(m_process);
    std::map<std::size_t, EntityChange> entities;
    std::map<std::size_t, ConstraintChange> constraints;
    for (const ConstraintChange& each : change.constraints)
        constraints.emplace(each.order, each);
    Segments segments;
    for (const EntityChange& each : change.entities) {
        entities.emplace(each.order, each);
        const auto found = each.after ? m_entities.find(each.after->id) : m_entities.end();
        if (found == m_entities.end())
            continue;
        for (const std::size_t number : numbersOn(found->second))
            if (const auto now = currentConstraint(m_constraints[number], segments))
                constraints.try_emplace(number, ConstraintChange{number, now, now});
    }
    const auto takeEntities = [&](const std::optional<Constraint>& constraint) {
        for (const Place& place : constraint ? constraint->refs : std::vector<Place>())
            if (const auto found = m_entities.find(place.entity); found != m_entities.end()) {
                const auto now = currentEntity(found->second.number);
                entities.try_emplace(found->second.number, EntityChange{found->second.number, now, now});
            }
    };
    EditedPart part;
    for (const auto& [order, constraint] : constraints) {
        takeEntities(constraint.before);
        takeEntities(constraint.after);
        if (constraint.before)
            part.before.constraints.push_back(*constraint.before);
        if (constraint.after)
            part.after.constraints.push_back(*constraint.after);
    }
    for (const auto& [order, entity] : entities) {
        if (entity.before)
            part.before.entities.push_back(*entity.before);
        if (entity.after)
            part.after.entities.push_back(*entity.after);
    }
    for (const ReferenceChange& reference : change.references) {
        if (reference.before)
            part.before.references.push_back(*reference.before);
        if (reference.after)
            part.after.references.push_back(*reference.after);
    }
    return part;
}

std::optional<std::vector<std::string>> Drawing::unsolved() {
    const HostProcess::Scope bound(m_process);
    collect();
    if (m_allUnsolved)
        return std::nullopt;
    std::vector<std::string> names;
    for (const std::size_t number : m_unsolved)
        if (m_numbered[number] != nullptr)
            names.push_back(m_numbered[number]->original.id);
    return names;
}

void Drawing::markSolved() {
    const HostProcess::Scope bound(m_process);
    collect();
    m_allUnsolved = false;
    m_unsolved.clear();
}

Drawing::ToSolve Drawing::toSolve() {
    const HostProcess::Scope bound(m_process);
    collect();
    return {m_allUnsolved, m_unsolved};
}

void Drawing::takeToSolve(ToSolve toSolve) {
    const HostProcess::Scope bound(m_process);
    collect();
    m_allUnsolved = toSolve.isAll;
    m_unsolved = std::move(toSolve.numbers);
}

double Drawing::extent() {
    return m_extent.diagonal(m_numbered.size(), [this](std::size_t number) { return knownShape(number); });
}

/// Walks from entity to entity over the constraints that bind them, nearest first.
class Drawing::Search {
public:
    Search(const Drawing& drawing, int steps) : m_drawing(drawing), m_steps(steps) {}

    void begin(const std::vector<std::string>& names) {
        for (const std::string& name : names)
            if (const auto found = m_drawing.m_entities.find(name); found != m_drawing.m_entities.end())
                reach(found->second, 0);
    }

    Part run() {
        for (std::size_t head = 0; head < m_queue.size(); ++head)
            visit(*m_queue[head]);
        return part();
    }

private:
    void reach(const KnownEntity& known, int depth) {
        if (m_depths.emplace(known.number, depth).second)
            m_queue.push_back(&known);
    }

    void visit(const KnownEntity& known) {
        const int depth = m_depths.at(known.number);
        if (known.original.fixed && depth > 0)
            return;
        const std::vector<std::size_t> on = m_drawing.numbersOn(known);
        if (on.empty())
            return;
        const bool isHub = on.size() > kHub && m_steps <= static_cast<int>(kHub);
        if (depth >= m_steps || (isHub && depth > 0)) {
            m_unvisited.insert(known.number);
            return;
        }
        for (const std::size_t number : on)
            if (const auto [entry, isNew] = m_constraints.try_emplace(number); isNew)
                follow(number, entry->second, depth);
    }

    void follow(std::size_t number, std::optional<Constraint>& constraint, int depth) {
        constraint = m_drawing.currentConstraint(m_drawing.m_constraints[number], m_segments);
        if (!constraint || !binds(*constraint) ||
            std::any_of(constraint->refs.begin(), constraint->refs.end(), isLostPlace)) {
            constraint.reset();
            return;
        }
        for (const Place& place : constraint->refs)
            reach(m_drawing.m_entities.find(place.entity)->second, depth + 1);
    }

    Part part() {
        Part part;
        for (const auto& [number, depth] : m_depths) {
            part.document.entities.push_back(*m_drawing.currentEntity(number));
            part.reach.push_back(m_unvisited.contains(number) ? Part::Scope::border
                                 : depth + 1 >= m_steps       ? Part::Scope::outer
                                                              : Part::Scope::inner);
        }
        part.isCut = !m_unvisited.empty();
        for (auto& [number, constraint] : m_constraints)
            if (constraint)
                part.document.constraints.push_back(std::move(*constraint));
        return part;
    }

    const Drawing& m_drawing;
    int m_steps;
    Segments m_segments;
    std::map<std::size_t, int> m_depths;
    std::vector<const KnownEntity*> m_queue;
    std::map<std::size_t, std::optional<Constraint>> m_constraints;
    std::unordered_set<std::size_t> m_unvisited;
};

Drawing::Part Drawing::partAround(const std::vector<std::string>& names, int steps) const {
    const HostProcess::Scope bound(m_process);
    Search search(*this, steps);
    search.begin(names);
    return search.run();
}

Document Drawing::around(const std::vector<std::string>& names) const {
    const HostProcess::Scope bound(m_process);
    std::set<std::size_t> entities, constraints;
    for (const std::string& name : names) {
        const auto found = m_entities.find(name);
        if (found == m_entities.end() || !entities.insert(found->second.number).second)
            continue;
        const std::vector<std::size_t> on = numbersOn(found->second);
        constraints.insert(on.begin(), on.end());
        if (const auto off = m_switchedOff.find(name); off != m_switchedOff.end())
            constraints.insert(off->second.begin(), off->second.end());
    }
    Document document;
    Segments segments;
    for (const std::size_t number : constraints)
        if (std::optional<Constraint> now = currentConstraint(m_constraints[number], segments)) {
            for (const Place& place : now->refs)
                if (const auto found = m_entities.find(place.entity); found != m_entities.end())
                    entities.insert(found->second.number);
            document.constraints.push_back(std::move(*now));
        }
    for (const std::size_t number : entities)
        document.entities.push_back(*currentEntity(number));
    return document;
}

}  // namespace holdfast::hosting
