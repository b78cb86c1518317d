#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/model/HostAudit.h"
#include "host/model/HostBuilder.h"
#include "host/model/HostProcess.h"

namespace holdfast {

/// A small drawing with its constraint network, written as text and printed back as text.
///
/// Statements stand one a line or are separated by semicolons; // begins a comment; angles are degrees, or radians as
/// 0.5rad; a third coordinate may follow the other two (1,2,3).
///   line a 0,0 10,0              ray r 0,0 dir 1,0            xline x 0,0 dir 0,1        point q 1,1
///   circle c centre 0,0 radius 3                              arc k centre 0,0 radius 5 from 0 to 90
///   ellipse e centre 0,0 major 4,0 ratio 0.5 [from 0 to 90]   text t 0,0 rotation 30 "abc"     mtext m 0,0 height 3
///   spline s degree 3 at 0,0 1,1 2,0 3,1 [knots 0 0 0 0 1 1 1 1] [weights 1 1 2 1] [periodic]
///   polyline p 0,0#11 10,0#12^0.5 10,10 [closed]              # identifier, ^ bulge of the segment that starts there
///   circles, arcs, ellipses and texts may end with: normal down, or normal 0,0,1
///   [name:] [internal] [implied] KIND PLACE ...               a constraint, named c1, c2, ... unless it has a name
///   composite { STATEMENT; ... }                              smooth s.end t.start, or smooth { STATEMENT; ... }
///   corners p      the implied coincidences between neighbouring constrained segments, which no text makes by itself
///   dependency p[2]       with geometry, although no constraint names it          bare dependency a     without
///   reactor a             one that is no geometry dependency
///   group second          a further group, for what follows    ucs 1,0 0,1        ucs paper 1,0 0,1     paper
/// KIND: coincident on fixed horizontal vertical parallel perpendicular collinear tangent concentric equal equalradius
/// symmetric midpoint, helper ROLE, and distance distancex distancey radius diameter angle PLACE ... = value
/// [measured]. PLACE: a, a.start, a.end, a.mid, a.centre, s.control3, t.position, and of polylines p[1], p[1].end:
/// segments from 1.
class Scene {
public:
    /// Throws SceneError, a std::invalid_argument, that says which statement is wrong, why, and what is expected.
    explicit Scene(std::string_view text);
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    HostProcess& process() { return m_process; }
    HostFaults& host() { return m_process.faults(); }
    HostBuilder& builder() { return m_builder; }

    /// Null for a name that the scene does not have.
    YxDbObjectId id(std::string_view name) const;
    /// The resident entity, not opened.
    template <class T = YxDbEntity>
    T* entity(std::string_view name) const {
        YxDbObject* object = HostAccess::peek(id(name));
        return object != nullptr && object->isKindOf(T::desc()) ? static_cast<T*>(object) : nullptr;
    }
    YxGeomConstraint* constraint(std::string_view name) const;
    YxDbAssoc2dConstraintGroup& group() const { return HostBuilder::group(m_groups.front().second); }
    YxDbAssoc2dConstraintGroup& group(std::string_view name) const;
    YxDbObjectId groupId() const { return m_groups.front().second; }
    /// The dependency on an entity or a segment ("a", "p[2]") as the scene was built; it keeps that name when it moves.
    YxDbAssocGeomDependency* dependency(std::string_view place) const;
    YxConstrainedGeometry* geometry(std::string_view place) const;

    /// A further group, which `group(name)` finds.
    YxDbObjectId addGroup(std::string name);
    /// The scene knows a further resident object by this name from now on.
    void nameObject(const YxDbObjectId& id, std::string name);
    /// Adds an entity to the database under a name.
    YxDbObjectId add(std::string name, std::unique_ptr<YxDbEntity> entity);

    /// What is left, in group order: "coincident a.start b.start; fixed a". Members stand inside their composite.
    std::string constraints() const;
    std::string constraints(std::string_view group) const;
    /// Every dependency with the part of which entity it names now, its identifiers and a status other than 0:
    /// "p[1]: p 11-12; p[2]: s 12-13 status 5".
    std::string dependencies() const;
    /// The vertices of a polyline: "0,0#11 10,0#12^0.5 closed".
    std::string vertices(std::string_view polyline) const;
    /// The whole scene in the form in which it can be read again.
    std::string text() const;
    std::string journal() const { return m_process.journal().text(); }

    /// A fault by the names of the scene: nothing opens it any more.
    void refuseOpen(std::string_view name);
    void serviceDown() { m_process.setConstraintServiceUp(false); }

    /// What is not in order with the host; empty when all is well.
    std::vector<std::string> audit();

private:
    friend class SceneReader;
    friend class ScenePrinter;

    void nameDependency(const std::string& place, const YxDbObjectId& id);
    /// An entity, a group, a dependency by its place, or a constraint; null for a name that the scene does not have.
    const YxRxObject* objectNamed(std::string_view name) const;
    /// False when the name is taken.
    bool nameConstraint(YxGeomConstraint& constraint, const std::string& name);

    using NamedId = std::pair<std::string, YxDbObjectId>;
    HostProcess m_process;
    HostBuilder m_builder;
    std::vector<NamedId> m_groups;   // in order; the first is "group"
    std::vector<NamedId> m_objects;  // the entities in order
    std::unordered_map<std::string, YxDbObjectId> m_ids;
    std::vector<NamedId> m_dependencies;  // in order
    std::unordered_map<std::string, YxDbObjectId> m_dependencyNamed;
    std::unordered_set<const YxDbStub*> m_namedDependencies;
    std::unordered_map<std::string, YxGeomConstraint*> m_constraints;
    std::unordered_map<const YxGeomConstraint*, std::string> m_constraintNames;
};

}  // namespace holdfast
