#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "document/Document.h"
#include "host/model/HostBuilder.h"
#include "host/model/HostProcess.h"
#include "hosting/Uses.h"

namespace holdfast::hosting {

/// A drawing opened in a host process of its own: its entities live in the working database, its constraints in one
/// constraint group. Several may be open at once. The process is current on the thread that opens it, and during each
/// operation here; who asks the host itself makes it current where it may not be so any more.
///
/// Reading a document in and out again gives an equal document: names, notes and switched-off constraints are kept
/// here, geometry and network come from the database. Reference geometry that the drawing may not move carries an
/// internal fixed constraint; corners of polylines carry the host's implied coincidences, which are not written out.
class Drawing {
public:
    /// The document has passed checkDocument.
    explicit Drawing(const Document& document);
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    /// The drawing as it is now; linear in it.
    Document document() const;

    HostProcess& process() { return m_process; }
    const HostProcess& process() const { return m_process; }
    YxDbObjectId groupId() const { return m_group; }
    YxDbAssoc2dConstraintGroup& group() const { return HostBuilder::group(m_group); }

    /// Null for a name that no entity has, or no longer has.
    YxDbObjectId id(std::string_view name) const;
    std::string nameOf(const YxDbObjectId& id) const;
    std::vector<std::string> names() const;
    /// The shape of an entity as it is now; the name has to exist.
    Shape shape(std::string_view name) const;
    YxDbEntity& entity(std::string_view name) const;
    bool isFixed(std::string_view name) const;

    /// Adds an entity with the attributes of `like` (construction) under a fresh name derived from `like`'s, or "n1",
    /// "n2", ... without one. Returns the name.
    std::string add(const Shape& shape, std::string_view like = {});
    /// Gives a resident entity another shape. An entity of another kind of shape takes its place in the host, under
    /// the same name and with the same reactors.
    void write(std::string_view name, const Shape& shape);
    /// Erases an entity with its dependencies and the constraints on it.
    void erase(std::string_view name);

    /// Adds a constraint of the document's form; it gets a fresh id when it has none, and may have that of one that was
    /// deleted. Returns the id.
    std::string addConstraint(Constraint constraint);
    bool hasConstraint(std::string_view id) const;
    /// Deletes a constraint of the document, with the composite that owns it.
    void removeConstraint(std::string_view id);
    /// Gives a dimension another value; the id has to be that of one.
    void setMeasure(std::string_view id, double value);
    /// Deletes the constraints whose place is gone: their dependency has the status of a removed segment, or names a
    /// segment that its polyline no longer has, or stands on an erased entity. Returns how many went.
    int dropLostConstraints();
    /// Makes the corner coincidences of a polyline's neighbouring constrained segments.
    void tieCorners(std::string_view polyline);

    /// The id of the document's constraint behind one of the host's; empty for those that the host made itself.
    std::string constraintId(const YxGeomConstraint* constraint) const;
    /// Where a constrained geometry lies now, in the document's terms.
    Place placeOf(const YxConstrainedGeometry& geometry) const;

private:
    struct KnownEntity {
        Entity original;     // as read or last written: attributes, and the shape to the last digit
        Shape originalRead;  // what the host made of that shape
        YxDbObjectId id;
        std::size_t order = 0;  // key in m_order
    };
    struct KnownConstraint {
        Constraint original;
        YxGeomConstraint* host = nullptr;  // null for a switched-off constraint
    };

    void addEntity(const Entity& entity);
    /// Each throws std::invalid_argument for a name or id that the drawing does not have.
    KnownEntity& known(std::string_view name);
    KnownConstraint& knownConstraint(std::string_view id);
    YxGeomConstraint* build(const Constraint& constraint);
    BuiltPlace builtPlace(const Place& place, const Constraint& constraint, std::size_t index) const;
    class Segments;

    std::optional<Constraint> currentConstraint(const KnownConstraint& known, Segments& segments) const;
    Place placeOf(const YxConstrainedGeometry& geometry, Segments& segments) const;
    bool hasPlaces(const Constraint& constraint) const;
    bool isLost(const YxConstrainedGeometry& geometry, Segments& segments) const;
    const YxDbAssocGeomDependency* dependencyOf(const YxConstrainedGeometry& geometry) const;
    std::string freshName(const std::string& base);
    void releaseName(const std::string& name);
    std::string freshConstraintId();

    HostProcess m_process;
    HostBuilder m_builder;
    YxDbObjectId m_group;
    Document m_notes;                            // name, source, licence, units, plane; no entities, no constraints
    std::map<std::size_t, std::string> m_order;  // names, as they were drawn
    std::size_t m_nextOrder = 0;
    std::unordered_map<std::string, KnownEntity> m_entities;
    std::unordered_map<std::string, int> m_nextNumbers;  // by base: below it, no number of a fresh name is free
    std::unordered_map<const YxDbObject*, std::string> m_names;
    std::vector<KnownConstraint> m_constraints;
    std::unordered_map<std::string, std::size_t> m_constraintIndex;
    std::size_t m_nextConstraintNumber = 1;  // ids of constraints stay taken
    std::unordered_map<const YxGeomConstraint*, std::string> m_constraintIds;
};

}  // namespace holdfast::hosting
