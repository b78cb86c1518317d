#include "host/model/NetworkAudit.h"

#include <unordered_map>
#include <unordered_set>

#include <yxdb/YxDbPolyline.h>

#include "host/model/entities/SegmentNames.h"
#include "host/model/state/HostCall.h"
#include "host/src/YxDbConstraints/GroupData.h"

namespace holdfast {

namespace {

class NetworkAudit {
public:
    explicit NetworkAudit(const HostProcess& host) : m_host(host) {}

    std::vector<std::string> run() {
        for (const YxDbObjectId& id : HostAccess::allIds(m_host.database()))
            if (!HostAccess::isErased(id))
                auditObject(*HostAccess::peek(id));
        return std::move(m_findings);
    }

private:
    using Nodes = YxDbConstraintGroupData;
    using Constraints = std::vector<YxGeomConstraint*>;

    void auditObject(const YxDbObject& object);
    void auditReactors(const YxDbObject& object);
    void auditDependency(const YxDbAssocDependency& dependency);
    void auditGroup(const YxDbAssoc2dConstraintGroup& group);
    void auditGeometry(const Nodes& nodes, const YxConstrainedGeometry& geometry);
    void auditConstraint(const Nodes& nodes, const YxGeomConstraint& constraint);
    void auditMembers(const Nodes& nodes, const YxCompositeConstraint& composite);
    /// Whether a geometry's or a composite's list holds the constraint. The list is read once and kept as a set.
    bool lists(const YxGraphNode& owner, const Constraints& listed, const YxGeomConstraint& constraint);

    std::string nameOf(const YxRxObject& object) const { return m_host.nameOf(&object); }
    void complain(const std::string& finding) { m_findings.push_back(finding); }

    const HostProcess& m_host;
    std::vector<std::string> m_findings;
    std::unordered_map<const YxGraphNode*, std::unordered_set<const YxGeomConstraint*>> m_listed;
};

void NetworkAudit::auditObject(const YxDbObject& object) {
    auditReactors(object);
    if (object.isKindOf(YxDbAssocDependency::desc()))
        auditDependency(static_cast<const YxDbAssocDependency&>(object));
    if (object.isKindOf(YxDbAssoc2dConstraintGroup::desc()))
        auditGroup(static_cast<const YxDbAssoc2dConstraintGroup&>(object));
}

void NetworkAudit::auditReactors(const YxDbObject& object) {
    for (const YxDbObjectId& reactor : HostAccess::reactors(object)) {
        const YxDbObject* target = HostAccess::peek(reactor);
        if (target == nullptr || HostAccess::isErased(reactor))
            complain(nameOf(object) + " has a reactor that is erased");
        else if (target->isKindOf(YxDbAssocDependency::desc()) &&
                 HostAccess::objectOf(static_cast<const YxDbAssocDependency&>(*target)) != HostAccess::idOf(object))
            complain(nameOf(object) + " has the reactor " + nameOf(*target) + ", which depends on another object");
    }
}

void NetworkAudit::auditDependency(const YxDbAssocDependency& dependency) {
    const YxDbObjectId id = HostAccess::objectOf(dependency);
    const YxDbObject* object = HostAccess::peek(id);
    if (object == nullptr)
        return;  // detached
    if (HostAccess::isErased(id))
        complain(nameOf(dependency) + " depends on the erased " + nameOf(*object));
    else if (HostAccess::reactorCount(*object, HostAccess::idOf(dependency)) != 1)
        complain(nameOf(dependency) + " does not stand once among the reactors of " + nameOf(*object));
}

void NetworkAudit::auditGroup(const YxDbAssoc2dConstraintGroup& group) {
    const Nodes& nodes = HostAccess::data(group);
    for (const YxConstrainedGeometry* geometry : nodes.geometries())
        auditGeometry(nodes, *geometry);
    for (const YxGeomConstraint* constraint : nodes.liveConstraints())
        auditConstraint(nodes, *constraint);
}

void NetworkAudit::auditGeometry(const Nodes& nodes, const YxConstrainedGeometry& geometry) {
    for (const YxGeomConstraint* constraint : HostAccess::connected(geometry))
        if (nodes.node(HostAccess::nodeId(*constraint)) != constraint)
            complain("a geometry names " + nameOf(*constraint) + ", which is not in its group");
    if (geometry.isKindOf(YxConstrainedImplicitPoint::desc())) {
        if (nodes.node(HostAccess::curveId(static_cast<const YxConstrainedImplicitPoint&>(geometry))) == nullptr)
            complain("an implicit point names a curve that is not in its group");
    } else if (HostAccess::isErased(HostAccess::dependencyOf(geometry))) {
        complain("a geometry stands on an erased dependency");
    }
}

void NetworkAudit::auditConstraint(const Nodes& nodes, const YxGeomConstraint& constraint) {
    for (const YxConstrainedGeometry* geometry : HostAccess::geometries(constraint)) {
        if (geometry == nullptr || nodes.node(HostAccess::nodeId(*geometry)) != geometry)
            complain(nameOf(constraint) + " names a geometry that is not in its group");
        else if (!lists(*geometry, HostAccess::connected(*geometry), constraint))
            complain(nameOf(constraint) + " is unknown to one of its geometries");
    }
    const YxCompositeConstraint* owner = HostAccess::owner(constraint);
    if (owner != nullptr && !lists(*owner, HostAccess::members(*owner), constraint))
        complain(nameOf(constraint) + " is unknown to its composite");
    if (constraint.isKindOf(YxCompositeConstraint::desc()))
        auditMembers(nodes, static_cast<const YxCompositeConstraint&>(constraint));
}

void NetworkAudit::auditMembers(const Nodes& nodes, const YxCompositeConstraint& composite) {
    for (const YxGeomConstraint* member : HostAccess::members(composite)) {
        if (nodes.node(HostAccess::nodeId(*member)) != member)
            complain(nameOf(composite) + " owns " + nameOf(*member) + ", which is not in its group");
        else if (HostAccess::owner(*member) != &composite)
            complain(nameOf(composite) + " owns " + nameOf(*member) + ", which names another owner");
    }
}

bool NetworkAudit::lists(const YxGraphNode& owner, const Constraints& listed, const YxGeomConstraint& constraint) {
    const auto [known, isNew] = m_listed.try_emplace(&owner);
    if (isNew)
        known->second.insert(listed.begin(), listed.end());
    return known->second.contains(&constraint);
}

}  // namespace

std::vector<std::string> auditNetwork(const HostProcess& host) {
    const HostProcess::Scope bound(host);
    const Unwatched unwatched;
    return NetworkAudit(host).run();
}

std::vector<std::string> auditSegments(const HostProcess& host) {
    const HostProcess::Scope bound(host);
    const Unwatched unwatched;
    std::vector<std::string> findings;
    for (const YxDbObjectId& id : HostAccess::allIds(host.database())) {
        const YxDbObject& object = *HostAccess::peek(id);
        if (HostAccess::isErased(id) || !object.isKindOf(YxDbPolyline::desc()))
            continue;
        const SegmentNames names(static_cast<const YxDbPolyline&>(object));
        for (const YxDbObjectId& reactor : HostAccess::reactors(object)) {
            const YxDbObject* target = HostAccess::peek(reactor);
            if (target == nullptr || !target->isKindOf(YxDbAssocGeomDependency::desc()))
                continue;
            const auto& dependency = static_cast<const YxDbAssocGeomDependency&>(*target);
            if (HostAccess::status(dependency) != kSegmentRemovedAssocStatus && names.segmentOf(dependency) < 0)
                findings.push_back(host.nameOf(target) + " names no segment of " + host.nameOf(&object));
        }
    }
    return findings;
}

}  // namespace holdfast
