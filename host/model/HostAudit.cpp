#include "host/model/HostAudit.h"

#include <algorithm>
#include <unordered_set>

#include "host/src/YxDbConstraints/GroupData.h"
#include "host/src/yxdb/ObjectData.h"

namespace holdfast {

namespace {

using Findings = std::vector<std::string>;

template <class List, class Element>
bool contains(const List& list, const Element& element) {
    return std::find(list.begin(), list.end(), element) != list.end();
}

void auditReactors(const HostProcess& host, const YxDbObject& object, Findings& findings) {
    const std::string name = host.nameOf(&object);
    for (const YxDbObjectId& reactor : HostAccess::reactors(object)) {
        const YxDbObject* target = HostAccess::peek(reactor);
        if (target == nullptr || HostAccess::isErased(reactor))
            findings.push_back(name + " has a reactor that is erased");
        else if (target->isKindOf(YxDbAssocDependency::desc()) &&
                 HostAccess::objectOf(static_cast<const YxDbAssocDependency&>(*target)) != object.objectId())
            findings.push_back(name + " has the reactor " + host.nameOf(target) + ", which depends on another object");
    }
}

void auditDependency(const HostProcess& host, const YxDbAssocDependency& dependency, Findings& findings) {
    const YxDbObject* object = HostAccess::peek(HostAccess::objectOf(dependency));
    if (object == nullptr)
        return;  // detached
    if (HostAccess::isErased(object->objectId()))
        findings.push_back(host.nameOf(&dependency) + " depends on the erased " + host.nameOf(object));
    else if (HostAccess::reactorCount(*object, dependency.objectId()) != 1)
        findings.push_back(host.nameOf(&dependency) + " does not stand once among the reactors of " +
                           host.nameOf(object));
}

void auditConstraint(const HostProcess& host, const YxDbConstraintGroupData& group, const YxGeomConstraint& constraint,
                     Findings& findings) {
    const std::string name = host.nameOf(&constraint);
    for (const YxConstrainedGeometry* geometry : HostAccess::geometries(constraint)) {
        if (group.node(geometry->nodeId()) != geometry)
            findings.push_back(name + " names a geometry that is not in its group");
        else if (!contains(HostAccess::connected(*geometry), &constraint))
            findings.push_back(name + " is unknown to one of its geometries");
    }
    const YxCompositeConstraint* owner = HostAccess::owner(constraint);
    if (owner != nullptr && !contains(HostAccess::members(*owner), &constraint))
        findings.push_back(name + " is unknown to its composite");
}

void auditGeometry(const HostProcess& host, const YxDbConstraintGroupData& group, const YxConstrainedGeometry& geometry,
                   Findings& findings) {
    for (const YxGeomConstraint* constraint : HostAccess::connected(geometry))
        if (HostAccess::isDeleted(*constraint))
            findings.push_back("a geometry still names the deleted " + host.nameOf(constraint));
    if (geometry.isKindOf(YxConstrainedImplicitPoint::desc())) {
        const auto& point = static_cast<const YxConstrainedImplicitPoint&>(geometry);
        if (group.node(point.constrainedCurveId()) == nullptr)
            findings.push_back("an implicit point names a curve that is not in its group");
    } else if (HostAccess::isErased(HostAccess::dependencyOf(geometry))) {
        findings.push_back("a geometry stands on an erased dependency");
    }
}

void auditGroup(const HostProcess& host, const YxDbAssoc2dConstraintGroup& group, Findings& findings) {
    const YxDbConstraintGroupData& nodes = HostAccess::data(group);
    for (const YxConstrainedGeometry* geometry : nodes.geometries())
        auditGeometry(host, nodes, *geometry, findings);
    for (const YxGeomConstraint* constraint : nodes.liveConstraints())
        auditConstraint(host, nodes, *constraint, findings);
}

void auditObject(const HostProcess& host, const YxDbObject& object, Findings& findings) {
    auditReactors(host, object, findings);
    if (object.isKindOf(YxDbAssocDependency::desc()))
        auditDependency(host, static_cast<const YxDbAssocDependency&>(object), findings);
    if (object.isKindOf(YxDbAssoc2dConstraintGroup::desc()))
        auditGroup(host, static_cast<const YxDbAssoc2dConstraintGroup&>(object), findings);
}

std::unordered_set<const YxDbObject*> ownedCopies(HostProcess& host) {
    std::unordered_set<const YxDbObject*> owned;
    for (const YxDbObjectId& id : HostAccess::allIds(host.database())) {
        YxDbObject* object = HostAccess::peek(id);
        if (object->isKindOf(YxDbAssoc2dConstraintGroup::desc())) {
            const auto& adopted =
                HostAccess::adopted(*HostAccess::header(static_cast<YxDbAssoc2dConstraintGroup&>(*object)));
            owned.insert(adopted.begin(), adopted.end());
        }
    }
    return owned;
}

}  // namespace

std::vector<std::string> auditNetwork(const HostProcess& host) {
    Findings findings;
    for (const YxDbObjectId& id : HostAccess::allIds(host.database()))
        if (!HostAccess::isErased(id))
            auditObject(host, *HostAccess::peek(id), findings);
    return findings;
}

std::vector<std::string> auditHost(HostProcess& host) {
    const bool watched = host.isWatched();
    host.watch(false);
    Findings findings = host.misuses();
    for (const YxDbObjectId& id : HostAccess::allIds(host.database())) {
        const YxDbObject& object = *HostAccess::peek(id);
        if (const int opens = HostAccess::openCount(object); opens > 0)
            findings.push_back(host.nameOf(&object) + " is left open " + std::to_string(opens) + " times");
    }
    const auto owned = ownedCopies(host);
    for (const YxDbObject* copy : hostState().copies)
        if (!owned.contains(copy))
            findings.push_back(std::string("a copy of a ") + copy->isA()->name() + " belongs to nobody");
    const Findings network = auditNetwork(host);
    findings.insert(findings.end(), network.begin(), network.end());
    host.watch(watched);
    return findings;
}

}  // namespace holdfast
