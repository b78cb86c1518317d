// How a part of a drawing is put into another state: by opening it anew, from the values that it is to have.

#include <map>
#include <utility>

#include "host/model/entities/EntityGeometry.h"
#include "hosting/Drawing.h"
#include "hosting/HostShapes.h"
#include "hosting/NamedSegments.h"

namespace holdfast::hosting {

/// The entities that a change names, with all constraints on them. A composite is taken out and made as a whole, with
/// its members wherever they are.
class Drawing::Reopening {
public:
    Reopening(Drawing& drawing, const DrawingChange& change) : m_drawing(drawing), m_change(change) {
        for (const ConstraintChange& constraint : change.constraints)
            want(constraint.order, constraint.after);
        for (const EntityChange& entity : change.entities)
            if (const KnownEntity* known = knownAt(entity.order))
                for (const std::size_t number : m_drawing.numbersOn(*known))
                    wantAsItIs(number);
        for (std::size_t head = 0; head < m_queue.size(); ++head)
            wantRelativesOf(m_queue[head]);
    }

    void run() {
        takeOut();
        for (const EntityChange& entity : m_change.entities)
            if (KnownEntity* known = knownAt(entity.order); known != nullptr && !entity.after)
                m_drawing.drop(*known);
        for (const EntityChange& entity : m_change.entities)
            if (entity.after)
                putEntity(*entity.after, entity.order);
        for (const auto& [number, constraint] : m_wanted)
            putConstraint(constraint, number);
        for (const auto& [number, constraint] : m_wanted)
            if (constraint)
                m_drawing.ownMembers(*constraint);
        for (const EntityChange& entity : m_change.entities)
            if (entity.after && std::holds_alternative<PolylineShape>(entity.after->shape))
                m_drawing.tieCorners(entity.after->id);
    }

private:
    KnownEntity* knownAt(std::size_t number) const {
        return number < m_drawing.m_numbered.size() ? m_drawing.m_numbered[number] : nullptr;
    }

    /// Null when there is none in the host now.
    YxGeomConstraint* hostAt(std::size_t number) const {
        if (number >= m_drawing.m_constraints.size())
            return nullptr;
        YxGeomConstraint* host = m_drawing.m_constraints[number].host;
        return host == nullptr || HostAccess::isDeleted(*host) ? nullptr : host;
    }

    void want(std::size_t number, const std::optional<Constraint>& constraint) {
        if (m_wanted.emplace(number, constraint).second)
            m_queue.push_back(number);
    }

    void wantAsItIs(std::size_t number) {
        if (!m_wanted.contains(number))
            want(number, m_drawing.currentConstraint(m_drawing.m_constraints[number], m_segments));
    }

    void wantRelativesOf(std::size_t number) {
        if (YxGeomConstraint* host = hostAt(number))
            wantFamilyOf(*HostAccess::topLevel(*host));
        const std::optional<Constraint> constraint = m_wanted.at(number);
        for (const std::string& member : constraint ? constraint->members : std::vector<std::string>())
            if (const auto known = m_drawing.m_constraintIndex.find(member); known != m_drawing.m_constraintIndex.end())
                wantAsItIs(known->second);
    }

    void wantFamilyOf(const YxGeomConstraint& host) {
        const auto known = m_drawing.m_constraintNumbers.find(&host);
        if (known != m_drawing.m_constraintNumbers.end())
            wantAsItIs(known->second);
        if (host.isKindOf(YxCompositeConstraint::desc()))
            for (const YxGeomConstraint* member : HostAccess::members(static_cast<const YxCompositeConstraint&>(host)))
                wantFamilyOf(*member);
    }

    void takeOut() {
        for (const auto& [number, constraint] : m_wanted)
            if (YxGeomConstraint* host = hostAt(number))
                HostAccess::deleteConstraint(m_drawing.group(), HostAccess::topLevel(*host));
        for (const EntityChange& entity : m_change.entities)
            if (const KnownEntity* known = knownAt(entity.order))
                m_drawing.takeOut(*known);
    }

    void putEntity(const Entity& entity, std::size_t number) {
        KnownEntity* known = knownAt(number);
        if (known == nullptr)
            return m_drawing.addEntity(entity, number);
        std::unique_ptr<YxDbEntity> made = makeEntity(entity.shape);
        Shape read = readShape(*made);
        m_drawing.replace(*known, std::move(made));
        known->original = entity;
        known->takeRead(std::move(read));
        m_drawing.m_extent.touch(number);
        m_drawing.tieFixed(*known);
    }

    void putConstraint(const std::optional<Constraint>& constraint, std::size_t number) {
        if (number < m_drawing.m_constraints.size()) {
            KnownConstraint& known = m_drawing.m_constraints[number];
            m_drawing.m_constraintNumbers.erase(known.host);
            known.taken.reset();
            known.isGone = true;
        }
        if (constraint)
            m_drawing.addKnown(*constraint, number);
    }

    Drawing& m_drawing;
    const DrawingChange& m_change;
    std::map<std::size_t, std::optional<Constraint>> m_wanted;  // by number
    std::vector<std::size_t> m_queue;                           // of what has not been asked for its relatives
    Segments m_segments;
};

NextOrders Drawing::next() const {
    return {m_numbered.size(), m_constraints.size(), m_nextConstraintNumber, m_references.next()};
}

/// What is behind the next numbers is gone by now, and its names are free.
void Drawing::countOnFrom(const NextOrders& next) {
    m_numbered.resize(next.entity);
    for (std::size_t number = next.constraint; number < m_constraints.size(); ++number) {
        const auto known = m_constraintIndex.find(m_constraints[number].original.id);
        if (known != m_constraintIndex.end() && known->second == number)
            m_constraintIndex.erase(known);
        m_constraintNumbers.erase(m_constraints[number].host);
    }
    m_constraints.resize(next.constraint);
    m_nextConstraintNumber = next.constraintId;
    m_unsolved.erase(m_unsolved.lower_bound(next.entity), m_unsolved.end());
}

void Drawing::put(const DrawingChange& change, const NextOrders& next) {
    const HostProcess::Scope bound(m_process);
    m_isTouched = true;
    if (change.parameters)
        m_notes.parameters = change.parameters->after;
    m_parametersBefore.reset();
    m_references.put(change.references, next.reference);
    Reopening(*this, change).run();
    collect();
    countOnFrom(next);
    m_before.clear();
    m_constraintsBefore.clear();
    m_touchedInHost.clear();
    m_hostChanges.deletions.clear();
    m_deletions.clear();
    // As after opening, the numbers of vertices are told as a change of the next edit.
    for (const EntityChange& entity : change.entities)
        if (entity.after && std::holds_alternative<PolylineShape>(entity.after->shape))
            noteEntity(*m_numbered[entity.order]);
    m_isTouched = false;
}

}  // namespace holdfast::hosting
