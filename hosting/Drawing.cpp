#include "hosting/Drawing.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "document/ConstraintNumbers.h"
#include "document/Names.h"
#include "document/Places.h"
#include "host/model/entities/EntityAccess.h"
#include "host/model/entities/SegmentNames.h"
#include "host/model/state/ObjectHandles.h"
#include "hosting/HostConstraints.h"
#include "hosting/HostOpening.h"
#include "hosting/HostShapes.h"
#include "hosting/NamedSegments.h"

namespace holdfast::hosting {

namespace {

/// The first copy of a is a_2.
constexpr int kFirstNumber = 2;

bool carriesConstraints(const YxDbAssoc2dConstraintGroup& group, const YxDbObjectId& dependency) {
    const YxConstrainedGeometry* geometry = HostAccess::geometryOn(group, dependency);
    return geometry != nullptr && HostAccess::isConstrained(group, *geometry);
}

Document notesOf(const Document& document) {
    return {.name = document.name,
            .source = document.source,
            .license = document.license,
            .lengthUnit = document.lengthUnit,
            .plane = document.plane,
            .entities = {},
            .constraints = {},
            .parameters = document.parameters,
            .layers = document.layers,
            .references = {},
            .constraintNumbers = document.constraintNumbers};
}

}  // namespace

Drawing::Drawing(const Document& document)
    : m_builder(m_process.database()), m_notes(notesOf(document)), m_references(document.references) {
    open(document, nullptr);
}

Drawing::Drawing(const OrderedDocument& ordered, const NextOrders& next)
    : m_builder(m_process.database()),
      m_notes(notesOf(ordered.document)),
      m_references(ordered.document.references, &ordered.referenceOrders) {
    open(ordered.document, &ordered);
    m_numbered.resize(std::max(m_numbered.size(), next.entity));
    m_constraints.resize(std::max(m_constraints.size(), next.constraint));
    m_nextConstraintNumber = std::max(m_nextConstraintNumber, next.constraintId);
    m_references.countOnFrom(std::max(m_references.next(), next.reference));
}

Drawing::~Drawing() {
    HostAccess::tellChanges(m_process.database(), nullptr);
}

void Drawing::open(const Document& document, const OrderedDocument* orders) {
    m_process.watch(false);
    m_group = m_builder.addGroup();
    m_entities.reserve(document.entities.size());
    m_numbered.reserve(document.entities.size());
    for (std::size_t i = 0; i < document.entities.size(); ++i)
        addEntity(document.entities[i], orders == nullptr ? i : orders->entityOrders[i]);
    m_constraints.reserve(document.constraints.size());
    m_nextConstraintNumber = std::max(document.constraintNumbers, constraintNumbersTold(document)) + 1;
    for (std::size_t i = 0; i < document.constraints.size(); ++i)
        addKnown(document.constraints[i], orders == nullptr ? i : orders->constraintOrders[i]);
    // Members may be written before or after the constraint that owns them.
    for (const Constraint& constraint : document.constraints)
        ownMembers(constraint);
    for (const Entity& entity : document.entities)
        if (std::holds_alternative<PolylineShape>(entity.shape))
            tieCorners(entity.id);
    // What opening makes besides, numbers of vertices, is told as a change of the first edit.
    for (const KnownEntity* known : m_numbered)
        if (known != nullptr && std::holds_alternative<PolylineShape>(known->original.shape))
            noteEntity(*known);
    m_isTouched = false;
    HostAccess::tellChanges(m_process.database(), &m_hostChanges);
}

void Drawing::KnownEntity::takeRead(Shape read) {
    if (read == original.shape)
        originalRead.reset();
    else
        originalRead = std::make_unique<Shape>(std::move(read));
}

void Drawing::addKnown(const Constraint& constraint, std::size_t number) {
    m_constraintIndex.insert_or_assign(constraint.id, number);
    m_constraints.resize(std::max(m_constraints.size(), number + 1));
    m_nextConstraintNumber = std::max(m_nextConstraintNumber, constraintNumberOf(constraint.id) + 1);
    KnownConstraint& known = m_constraints[number];
    known.original = constraint;
    known.taken.reset();
    known.isGone = known.isDropped = false;
    if (!constraint.formula.empty())
        m_calculated.insert(number);
    known.host = constraint.active ? build(constraint, number) : nullptr;
    if (!constraint.active)
        for (const Place& place : constraint.refs)
            m_switchedOff[place.entity].insert(number);
}

/// A composite gets its members, as far as the host has them.
void Drawing::ownMembers(const Constraint& constraint) {
    for (const std::string& member : constraint.members) {
        YxGeomConstraint* owner = knownConstraint(constraint.id).host;
        YxGeomConstraint* owned = knownConstraint(member).host;
        if (owner != nullptr && owned != nullptr)
            HostAccess::own(static_cast<YxCompositeConstraint&>(*owner), *owned);
    }
}

void Drawing::addEntity(const Entity& entity, std::size_t number) {
    std::unique_ptr<YxDbEntity> made = makeEntity(entity.shape);
    const YxDbObject* object = made.get();
    Shape read = readShape(*made);
    const YxDbObjectId id = m_builder.add(std::move(made));
    KnownEntity& known = m_entities[entity.id];
    known.original = entity;
    known.takeRead(std::move(read));
    known.id = id;
    known.number = number;
    const std::size_t handle = handleOf(object);
    m_byHandle.resize(std::max(m_byHandle.size(), handle + 1));
    m_byHandle[handle] = &known;
    m_numbered.resize(std::max(m_numbered.size(), number + 1));
    m_numbered[number] = &known;
    m_extent.touch(number);
    tieFixed(known);
}

void Drawing::tieFixed(const KnownEntity& known) {
    if (!known.original.fixed)
        return;
    YxConstrainedGeometry& geometry = m_builder.geometry(group(), wholeOf(known.id, known.original.shape));
    HostAccess::setInternal(m_builder.constrain<YxFixedConstraint>(group(), {&geometry}), true);
}

YxDbObjectId Drawing::id(std::string_view name) const {
    const auto found = m_entities.find(std::string(name));
    return found == m_entities.end() ? YxDbObjectId() : found->second.id;
}

std::string Drawing::nameOf(const YxDbObjectId& id) const {
    const KnownEntity* known = knownOf(HostAccess::peek(id));
    return known == nullptr ? "" : known->original.id;
}

const Drawing::KnownEntity* Drawing::knownOf(const YxDbObject* object) const {
    const std::size_t handle = handleOf(object);
    return handle < m_byHandle.size() ? m_byHandle[handle] : nullptr;
}

std::vector<std::string> Drawing::names() const {
    std::vector<std::string> names;
    names.reserve(m_entities.size());
    for (const KnownEntity* known : m_numbered)
        if (known != nullptr)
            names.push_back(known->original.id);
    return names;
}

std::vector<std::string> Drawing::namesNear(const Box& window) const {
    std::vector<std::string> names;
    m_extent.forThoseNear(
        window, m_numbered.size(), [this](std::size_t number) { return knownShape(number); },
        [&](std::size_t number) { names.push_back(m_numbered[number]->original.id); });
    return names;
}

YxDbEntity& Drawing::entity(std::string_view name) const {
    YxDbObject* object = HostAccess::peek(id(name));
    if (object == nullptr)
        throw std::invalid_argument("there is no entity " + std::string(name));
    return static_cast<YxDbEntity&>(*object);
}

Shape Drawing::shape(std::string_view name) const {
    const HostProcess::Scope bound(m_process);
    const YxDbEntity& resident = entity(name);
    const KnownEntity& known = m_entities.find(std::string(name))->second;  // it has an entity
    Shape now = readShape(resident);
    return known.isRead(now) ? known.original.shape : now;
}

bool Drawing::isFixed(std::string_view name) const {
    const auto found = m_entities.find(std::string(name));
    return found != m_entities.end() && found->second.original.fixed;
}

const Look& Drawing::look(std::string_view name) const {
    static const SharedLook usual;
    const auto found = m_entities.find(std::string(name));
    return found == m_entities.end() ? *usual : *found->second.original.look;
}

bool Drawing::isConstruction(std::string_view name) const {
    const auto found = m_entities.find(std::string(name));
    return found != m_entities.end() && found->second.original.construction;
}

std::string Drawing::freshName(const std::string& base) {
    for (int& number = m_nextNumbers.try_emplace(base, kFirstNumber).first->second;; ++number) {
        std::string name = base + "_" + std::to_string(number);
        if (!m_entities.contains(name))
            return name;
    }
}

/// A name that is free again is the next one of its base, if it has the lowest number.
void Drawing::releaseName(const std::string& name) {
    const std::size_t bar = name.rfind('_');
    if (bar == std::string::npos)
        return;
    int number = 0;
    const char *first = name.data() + bar + 1, *last = name.data() + name.size();
    const auto [end, error] = std::from_chars(first, last, number);
    const auto next = m_nextNumbers.find(name.substr(0, bar));
    if (error == std::errc() && end == last && number >= kFirstNumber && next != m_nextNumbers.end())
        next->second = std::min(next->second, number);
}

std::string Drawing::add(const Shape& shape, std::string_view like) {
    const HostProcess::Scope bound(m_process);
    Entity entity;
    const auto model = m_entities.find(std::string(like));
    if (model != m_entities.end()) {
        const Entity& original = model->second.original;
        entity.construction = original.construction;
        entity.look = original.look;
    }
    entity.id = freshName(like.empty() ? "n" : std::string(like));
    entity.shape = shape;
    add(entity);
    return entity.id;
}

std::string Drawing::freeNameFor(const Shape& shape) {
    const std::string base(typeName(shape));
    for (int& number = m_nextNumbers.try_emplace(base + " alone", 1).first->second;; ++number)
        if (std::string name = base + std::to_string(number); !m_entities.contains(name))
            return name;
}

void Drawing::add(const Entity& entity) {
    const HostProcess::Scope bound(m_process);
    addEntity(entity, m_numbered.size());
    m_before.emplace(m_numbered.size() - 1, std::nullopt);
    m_unsolved.insert(m_numbered.size() - 1);
    m_isTouched = true;
}

Drawing::KnownEntity& Drawing::known(std::string_view name) {
    const auto found = m_entities.find(std::string(name));
    if (found == m_entities.end())
        throw std::invalid_argument("there is no entity " + std::string(name));
    return found->second;
}

Drawing::KnownConstraint& Drawing::knownConstraint(std::string_view id) {
    const auto found = m_constraintIndex.find(std::string(id));
    if (found == m_constraintIndex.end())
        throw std::invalid_argument("there is no constraint " + std::string(id));
    return m_constraints[found->second];
}

void Drawing::write(std::string_view name, const Shape& shape) {
    const HostProcess::Scope bound(m_process);
    KnownEntity& known = this->known(name);
    noteEntity(known);
    YxDbObject* resident = HostAccess::peek(known.id);
    if (sameHostKind(readShape(static_cast<YxDbEntity&>(*resident)), shape)) {
        const auto open = opened<YxDbEntity>(known.id, YxDb::kForWrite);
        writeShape(*open, shape);
        known.original.shape = shape;
        known.takeRead(readShape(*open));
        return;
    }
    std::unique_ptr<YxDbEntity> successor = makeEntity(shape);
    known.original.shape = shape;
    known.takeRead(readShape(*successor));
    replace(known, std::move(successor));
    // Geometry of the former kind would not fit the new one; what still carries constraints stays.
    for (const YxDbObjectId& reactor : HostAccess::reactors(*HostAccess::peek(known.id)))
        if (!carriesConstraints(group(), reactor))
            HostAccess::eraseDependency(reactor);
}

void Drawing::erase(std::string_view name) {
    const HostProcess::Scope bound(m_process);
    KnownEntity& erased = known(name);
    noteEntity(erased);
    noteDeletions(Deletion::By::module);
    takeOut(erased);
    noteDeletions(Deletion::By::erasure, {erased.original.id, PlaceKind::whole, 0});
    drop(erased);
}

/// Another object stands for an entity in the host. Where the former one was there may soon be one more.
void Drawing::replace(const KnownEntity& known, std::unique_ptr<YxDbEntity> successor) {
    m_builder.forget(static_cast<const YxDbEntity&>(*HostAccess::peek(known.id)));
    HostAccess::replaceObject(known.id, std::move(successor));
}

/// Nothing of the network hangs on an entity any more.
void Drawing::takeOut(const KnownEntity& known) {
    const auto& resident = static_cast<const YxDbEntity&>(*HostAccess::peek(known.id));
    for (const auto& [owner, constraint] : constraintsOn(resident))
        HostAccess::deleteConstraint(*owner, constraint);
    for (const YxDbObjectId& reactor : HostAccess::reactors(resident))
        HostAccess::eraseDependency(reactor);
}

void Drawing::drop(const KnownEntity& known) {
    HostAccess::erase(known.id);
    m_byHandle[handleOf(HostAccess::peek(known.id))] = nullptr;
    m_extent.touch(known.number);
    m_numbered[known.number] = nullptr;
    const auto gone = m_entities.extract(std::string(known.original.id));
    releaseName(gone.key());
}

void Drawing::tieCorners(std::string_view polyline) {
    const HostProcess::Scope bound(m_process);
    m_builder.addCornerCoincidences(group(), id(polyline));
}

Document Drawing::document() const {
    const HostProcess::Scope bound(m_process);
    Document document = m_notes;
    document.entities.reserve(m_entities.size());
    for (std::size_t number = 0; number < m_numbered.size(); ++number)
        if (std::optional<Entity> entity = currentEntity(number))
            document.entities.push_back(std::move(*entity));
    Segments segments;
    for (const KnownConstraint& known : m_constraints)
        if (std::optional<Constraint> now = currentConstraint(known, segments))
            document.constraints.push_back(std::move(*now));
    keepConstraintNumbers(document, next().constraintId - 1);
    return document;
}

}  // namespace holdfast::hosting
