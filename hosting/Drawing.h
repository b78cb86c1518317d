#pragma once

#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "document/DrawingChange.h"
#include "document/DrawingExtent.h"
#include "host/model/HostBuilder.h"
#include "host/model/HostProcess.h"
#include "hosting/Deletion.h"
#include "hosting/OpenReferences.h"
#include "hosting/Uses.h"

namespace holdfast::hosting {

/// As many constraints as it takes to reach all that hangs together.
inline constexpr int kAllSteps = std::numeric_limits<int>::max();

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
    /// The same for one whose entities and constraints have their orders from a drawing that was open before. Orders
    /// that `next` counts beyond those are left free.
    Drawing(const OrderedDocument& ordered, const NextOrders& next);
    ~Drawing();
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    /// The drawing as it is now; linear in it.
    Document document() const;

    /// What differs from the drawing as it was when it was opened, or when its changes were taken last. Cost: what was
    /// touched, with the constraints on it.
    DrawingChange change();
    /// From now on changes are those since this one, which change() has told just now. What throws leaves it untaken.
    void take(const DrawingChange& change);
    NextOrders next() const;
    /// The drawing is to be as a change leaves it, which leads from what was taken last, or has just been taken. What
    /// the change names is opened anew, with the constraints on it; nothing else is looked at. Then `next` counts on.
    /// When this throws the drawing is of no more use.
    void put(const DrawingChange& change, const NextOrders& next);
    /// The surroundings of a change that was not taken yet.
    EditedPart editedPart(const DrawingChange& change) const;
    /// True when neither the host nor anybody else has changed anything since changes were taken last.
    bool isUntouched() const;

    /// Entities by number, ascending, and the constraints that bind them, as they are now.
    struct Part {
        Document document;
        /// How an entity lies in the part: from one at the border constraints lead out of it, next to it are the outer.
        enum class Scope : char { inner, outer, border };
        std::vector<Scope> reach;  ///< by entity
        bool isCut = false;        ///< some entity is at the border
    };
    /// What can be reached from some entities over at most so many constraints. Fixed entities lead nowhere; neither do
    /// those with very many constraints that are none of the first.
    Part partAround(const std::vector<std::string>& names, int steps) const;
    /// Some entities, every constraint on them, and the entities that these hold on, as they are now. Names that no
    /// entity has are passed over. Cost: what is answered.
    Document around(const std::vector<std::string>& names) const;
    /// The entities whose constraints may not hold, as far as nobody has said that they do; all of them after opening.
    std::optional<std::vector<std::string>> unsolved();
    /// All binding constraints hold now.
    void markSolved();

    /// What unsolved() goes by, for putting it back after something that is taken back, too: what is solved next looks
    /// at the same part of the drawing then.
    struct ToSolve {
        bool isAll = true;
        std::set<std::size_t> numbers;  ///< of entities
    };
    ToSolve toSolve();
    void takeToSolve(ToSolve toSolve);
    /// Length of the diagonal of the box around the drawing, which tolerances are relative to.
    double extent();

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
    /// The entities of which an end, a vertex, a control point or a centre may lie in a window, in drawing order, as
    /// they were taken or written last. Cost: one look at each box of some hundred entities, and those that reach in.
    std::vector<std::string> namesNear(const Box& window) const;
    bool isFixed(std::string_view name) const;
    bool isConstruction(std::string_view name) const;
    /// How an entity is drawn; of an unknown one the usual look.
    const Look& look(std::string_view name) const;
    const std::vector<Layer>& layers() const { return m_notes.layers; }
    /// What is drawn and is no entity. Other commands than those of references leave it alone.
    const OpenReferences& references() const { return m_references; }
    OpenReferences& references() { return m_references; }

    /// Adds an entity with the attributes of `like` (construction, look) under a fresh name derived from
    /// `like`'s, or "n1", "n2", ... without one. Returns the name.
    std::string add(const Shape& shape, std::string_view like = {});
    /// A name that no entity has: the kind of the shape and a number.
    std::string freeNameFor(const Shape& shape);
    /// Adds an entity under its own name; no other may have that.
    void add(const Entity& entity);
    /// Gives a resident entity another shape. An entity of another kind of shape takes its place in the host, under
    /// the same name and with the same reactors. Throws std::invalid_argument for a name that no entity has, and
    /// std::runtime_error when the host does not open the entity; it is as it was then.
    void write(std::string_view name, const Shape& shape);
    /// Erases an entity with its dependencies and the constraints on it. Throws std::invalid_argument for a name that
    /// no entity has.
    void erase(std::string_view name);

    /// Adds a constraint of the document's form; it gets a fresh id when it has none, and may have that of one that was
    /// deleted. The members of a composite are there. Returns the id.
    std::string addConstraint(Constraint constraint);
    bool hasConstraint(std::string_view id) const;
    /// A constraint as it is now; nothing for an id that none has, or has no longer.
    std::optional<Constraint> constraint(std::string_view id) const;
    /// The id of the constraint that a user calls so: its id, or the name that a dimension was given. Empty: none.
    /// Cost: linear in the constraints for a name that is no id.
    std::string constraintCalled(std::string_view word) const;
    /// An id that no constraint has or had.
    std::string freeConstraintId() const;
    /// Ids of all constraints, in the order in which they were added.
    std::vector<std::string> constraintIds() const;
    /// Deletes a constraint of the document, with the composite that owns it. Throws std::invalid_argument for an id
    /// that the drawing never had.
    void removeConstraint(std::string_view id);
    /// What was deleted since changes were taken last, in that order; members of a composite behind it, those that came
    /// back included. Asked between two steps of a command, it tells what each has deleted.
    const std::vector<Deletion>& deletions();
    /// A deleted constraint where it would stand now; nothing when one of its places is gone, or when it is there.
    std::optional<Constraint> deletedConstraint(std::string_view id) const;
    /// Puts a deleted constraint back where deletedConstraint sees it, under its id and in its order. False, and
    /// nothing changes, where that sees none. A composite comes back without members.
    bool restoreConstraint(std::string_view id);
    /// Gives a dimension another value; the id has to be that of one.
    void setMeasure(std::string_view id, double value);
    /// Has a dimension hold the drawing, or measure it only.
    void setDriving(std::string_view id, bool driving);
    /// Switches constraints off, so that they hold nothing and are only told, or on again; a composite with all of its
    /// members. A dimension that is switched on has to have the value that it measures.
    void setActive(const std::vector<std::string>& ids, bool active);
    /// Gives a dimension the formula that its value is calculated from, or none; the value stays as it is.
    void setFormula(std::string_view id, const std::string& formula);
    /// Ids of the dimensions with a formula, in the order in which they were added. Cost: as many as ever had one.
    std::vector<std::string> calculated() const;

    const std::vector<Parameter>& parameters() const { return m_notes.parameters; }
    bool hasParameter(std::string_view name) const;
    const std::string& lengthUnit() const { return m_notes.lengthUnit; }
    /// Cost: all parameters.
    void setParameters(std::vector<Parameter> parameters);
    /// Deletes the constraints whose place is gone: their dependency has the status of a removed segment, or names a
    /// segment that its polyline no longer has, or stands on an erased entity. Returns how many went. Looks at what was
    /// touched since changes were taken last.
    int dropLostConstraints();
    /// Makes the corner coincidences of a polyline's neighbouring constrained segments.
    void tieCorners(std::string_view polyline);

    /// The id of the document's constraint behind one of the host's; empty for those that the host made itself.
    std::string constraintId(const YxGeomConstraint* constraint) const;
    /// Where a constrained geometry lies now, in the document's terms.
    Place placeOf(const YxConstrainedGeometry& geometry) const;

private:
    struct KnownEntity {
        Entity original;                      // as read or last written: attributes, and the shape to the last digit
        std::unique_ptr<Shape> originalRead;  // what the host made of that shape, where it is another one
        YxDbObjectId id;
        std::size_t number = 0;  // in m_numbered, and the order in changes

        void takeRead(Shape read);
        bool isRead(const Shape& now) const { return now == (originalRead ? *originalRead : original.shape); }
    };
    struct KnownConstraint {
        Constraint original;
        YxGeomConstraint* host = nullptr;   // null for a switched-off constraint
        std::unique_ptr<Constraint> taken;  // as the changes tell it, where that is not the original
        bool isGone = true;                 // for the changes; also true of a number that nothing has
        bool isDropped = false;             // a switched-off one that was deleted
    };

    /// std::invalid_argument with the name for one that nothing has.
    KnownEntity& known(std::string_view name);
    /// Null for an object that is no entity of the drawing, and for null.
    const KnownEntity* knownOf(const YxDbObject* object) const;
    /// Null for a number that nothing has.
    const Shape* knownShape(std::size_t number) const {
        return m_numbered[number] == nullptr ? nullptr : &m_numbered[number]->original.shape;
    }
    KnownConstraint& knownConstraint(std::string_view id);
    void open(const Document& document, const OrderedDocument* orders);
    void addEntity(const Entity& entity, std::size_t number);
    bool isDeleted(const KnownConstraint& known) const;
    void tieFixed(const KnownEntity& known);
    void takeOut(const KnownEntity& known);
    void drop(const KnownEntity& known);
    void replace(const KnownEntity& known, std::unique_ptr<YxDbEntity> successor);
    void addKnown(const Constraint& constraint, std::size_t number);
    void ownMembers(const Constraint& constraint);
    class Reopening;
    void countOnFrom(const NextOrders& next);
    void noteEntity(const KnownEntity& known);
    void noteConstraint(std::size_t number);
    void collect();
    void collectFrom(const YxDbObject& object);
    void noteConstraintsOf(const YxConstrainedGeometry& geometry);
    void noteConstraintsOn(const YxDbEntity& entity);
    std::optional<Entity> currentEntity(std::size_t number) const;
    std::optional<Constraint> takenConstraint(std::size_t number) const;
    std::optional<Constraint> constraintBefore(std::size_t number) const;
    void noteDeletions(Deletion::By by, const Place& at = {});
    Place placeBefore(const YxGeomConstraint& constraint, std::size_t geometry) const;
    std::vector<std::size_t> numbersOn(const KnownEntity& known) const;
    std::vector<YxGeomConstraint*> touchedInHost();
    void commit(const DrawingChange& change);
    class Search;
    YxGeomConstraint* build(const Constraint& constraint, std::size_t number);
    BuiltPlace builtPlace(const Place& place, const Constraint& constraint, std::size_t index) const;
    class Segments;

    std::optional<Constraint> currentConstraint(const KnownConstraint& known, Segments& segments) const;
    void takePlaces(Constraint& constraint, const YxGeomConstraint& host, Segments& segments) const;
    Place placeOf(const YxConstrainedGeometry& geometry, Segments& segments) const;
    bool hasPlaces(const Constraint& constraint) const;
    bool isLost(const YxConstrainedGeometry& geometry, Segments& segments) const;
    const YxDbAssocGeomDependency* dependencyOf(const YxConstrainedGeometry& geometry) const;
    std::string freshName(const std::string& base);
    void releaseName(const std::string& name);

    HostProcess m_process;
    HostBuilder m_builder;
    YxDbObjectId m_group;
    Document m_notes;  // name, source, licence, units, plane, parameters; no entities, no constraints
    OpenReferences m_references;
    std::unordered_map<std::string, KnownEntity> m_entities;
    std::unordered_map<std::string, int> m_nextNumbers;  // by base: below it, no number of a fresh name is free
    std::vector<KnownEntity*> m_numbered;        // as they were drawn; null for erased ones and those that never were
    std::vector<const KnownEntity*> m_byHandle;  // null for what is no entity of the drawing
    std::vector<KnownConstraint> m_constraints;
    std::size_t m_nextConstraintNumber = 1;  // ids of constraints stay taken
    std::unordered_map<std::string, std::size_t> m_constraintIndex;
    std::unordered_map<const YxGeomConstraint*, std::size_t> m_constraintNumbers;
    std::unordered_map<std::string, std::set<std::size_t>> m_switchedOff;  // by entity
    std::set<std::size_t> m_calculated;  // numbers of those that have, or had, a formula

    // What has changed since somebody asked.
    HostChanges m_hostChanges;
    std::map<std::size_t, std::optional<Entity>> m_before;  // touched entities by number
    std::map<std::size_t, std::optional<Constraint>> m_constraintsBefore;
    std::unordered_set<YxGeomConstraint*> m_touchedInHost;
    std::vector<Deletion> m_deletions;
    std::optional<std::vector<Parameter>> m_parametersBefore;
    bool m_isTouched = false;
    bool m_allUnsolved = true;
    std::set<std::size_t> m_unsolved;
    mutable DrawingExtent m_extent;
};

}  // namespace holdfast::hosting
