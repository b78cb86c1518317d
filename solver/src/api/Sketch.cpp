#include <holdfast/solver/Sketch.h>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>

#include "solver/src/api/ConstraintReading.h"
#include "solver/src/api/EntityChecks.h"
#include "solver/src/diagnosis/Extract.h"
#include "solver/src/residuals/EquationSystem.h"
#include "solver/src/residuals/Operands.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::solver {

using detail::at;

namespace {

/// Takes back what was being appended when memory ran out.
class Appending {
public:
    explicit Appending(SketchImpl& sketch)
        : m_sketch(sketch),
          m_entities(sketch.data.entities.size()),
          m_splines(sketch.data.splines.size()),
          m_constraints(sketch.data.constraints.size()),
          m_values(sketch.data.values.size()),
          m_entityIds(sketch.entityOf.size()),
          m_constraintIds(sketch.constraintOf.size()) {}
    ~Appending() {
        if (m_isDone)
            return;
        shorten(m_sketch.data.entities, m_entities);
        shorten(m_sketch.data.splines, m_splines);
        shorten(m_sketch.data.constraints, m_constraints);
        shorten(m_sketch.data.values, m_values);
        shorten(m_sketch.data.reference, m_values);
        shorten(m_sketch.kinds, m_constraints);
        shorten(m_sketch.idOfEntity, m_entities);
        shorten(m_sketch.idOfConstraint, m_constraints);
        shorten(m_sketch.entityOf, m_entityIds);
        shorten(m_sketch.constraintOf, m_constraintIds);
    }
    Appending(const Appending&) = delete;
    Appending& operator=(const Appending&) = delete;

    void finish() { m_isDone = true; }

private:
    template <class T>
    static void shorten(std::vector<T>& list, std::size_t size) {
        if (list.size() > size)
            list.erase(list.begin() + static_cast<std::ptrdiff_t>(size), list.end());
    }

    SketchImpl& m_sketch;
    std::size_t m_entities, m_splines, m_constraints, m_values, m_entityIds, m_constraintIds;
    bool m_isDone = false;
};

/// add: appends the entity, whose name it is given, to the data.
template <class Add>
Result<EntityId> append(SketchImpl& sketch, std::optional<Error> fault, Add add) {
    if (fault)
        return *std::move(fault);
    Appending appending(sketch);
    const EntityId id(static_cast<int>(sketch.entityOf.size()));
    try {
        const int number = add(sketch.data, toString(id));
        sketch.idOfEntity.push_back(id.number());
        sketch.entityOf.push_back(number);
    } catch (const std::runtime_error& e) {
        return Error{withoutName(e.what()), "entity", "see the description of the entity"};
    }
    appending.finish();
    ++sketch.revision;
    return id;
}

/// Why the solver cannot have this constraint of its sketch; nothing when it can.
std::optional<Error> faultOfEquations(const SketchImpl& sketch, int number, const Constraint& constraint) {
    try {
        detail::Extract extract(sketch.data, {&number, 1});
        extract.sketch().takeReference();
        extract.sketch().constraints.front().active = true;
        extract.sketch().constraints.front().driving = true;
        const int first = 0;
        detail::buildPlainSystem(extract.sketch(), {&first, 1});
    } catch (const detail::SketchError& e) {
        return Error{withoutName(e.what()), describe(constraint), "it takes " + std::string(takenBy(constraint))};
    }
    return std::nullopt;
}

/// Removes the entities and constraints that are marked. Cost: linear in the sketch.
void compact(SketchImpl& sketch, const std::vector<char>& isGone, const std::vector<char>& isConstraintGone) {
    SketchImpl kept;
    kept.entityOf.assign(sketch.entityOf.size(), -1);
    kept.constraintOf.assign(sketch.constraintOf.size(), -1);
    kept.revision = sketch.revision + 1;
    detail::SketchData& from = sketch.data;
    for (std::size_t i = 0; i < from.entities.size(); ++i) {
        if (isGone[i])
            continue;
        detail::SketchEntity entity = from.entities[i];
        const auto first = from.values.begin() + entity.firstValue;
        const int shift = static_cast<int>(kept.data.values.size()) - entity.firstValue;
        kept.data.values.insert(kept.data.values.end(), first, first + entity.valueCount);
        entity.firstValue += shift;
        for (int& bulge : entity.bulgeValues)
            bulge = bulge < 0 ? bulge : bulge + shift;
        if (entity.spline >= 0) {
            kept.data.splines.push_back(from.splines[at(entity.spline)]);
            entity.spline = static_cast<int>(kept.data.splines.size()) - 1;
        }
        kept.entityOf[at(sketch.idOfEntity[i])] = static_cast<int>(kept.data.entities.size());
        kept.idOfEntity.push_back(sketch.idOfEntity[i]);
        kept.data.entities.push_back(std::move(entity));
    }
    for (std::size_t c = 0; c < from.constraints.size(); ++c) {
        if (isConstraintGone[c])
            continue;
        detail::SketchConstraint constraint = from.constraints[c];
        for (detail::SketchPlace& place : constraint.refs)
            place.entity = kept.entityOf[at(sketch.idOfEntity[at(place.entity)])];
        kept.constraintOf[at(sketch.idOfConstraint[c])] = static_cast<int>(kept.data.constraints.size());
        kept.idOfConstraint.push_back(sketch.idOfConstraint[c]);
        kept.kinds.push_back(sketch.kinds[c]);
        kept.data.constraints.push_back(std::move(constraint));
    }
    kept.data.takeReference();
    sketch = std::move(kept);
}

/// The operand reads its values, and only them, from a list of their own.
Vec2 evaluatePoint(const detail::SketchData& data, detail::Operand point) {
    std::vector<double> values;
    for (int& input : point.inputs) {
        values.push_back(data.values[at(input)]);
        input = static_cast<int>(values.size()) - 1;
    }
    const int zero = static_cast<int>(values.size());
    values.push_back(0.0);
    detail::EquationSet set;
    set.splines = &data.splines;
    detail::Equation form;
    form.residualKind = detail::ResidualKind::samePoint;
    form.rows = 2;
    set.add(form, {detail::Operand{detail::OperandKind::point, {zero, zero}, {}}, point});
    const auto rows = detail::residuals(set, set.equations.front(), values);
    return {rows[0], rows[1]};
}

}  // namespace

detail::SketchPlace Sketch::Impl::placeOf(PointId point) const {
    using enum geometry::PlaceKind;
    using Place = PointId::Place;
    const int number = find(point.entity());
    assert(number >= 0);
    const detail::SketchEntity& entity = data.entities[at(number)];
    switch (point.place()) {
        case Place::self:
            return {number, whole, 0};
        case Place::start:
            return {number, start, 0};
        case Place::end:
            return {number, geometry::PlaceKind::end, 0};
        case Place::centre:
            return {number, centre, 0};
        case Place::middle:
            return {number, mid, 0};
        case Place::control:
            return {number, control, point.index()};
        case Place::vertex:
            // The last vertex of an open polyline begins no segment.
            if (point.index() > 0 && point.index() == entity.segmentCount() && !entity.closed)
                return {number, segmentEnd, point.index() - 1};
            return {number, segmentStart, point.index()};
        case Place::segmentMiddle:
            return {number, segmentMid, point.index()};
        case Place::segmentCentre:
            break;
    }
    return {number, segmentCentre, point.index()};
}

Sketch::Sketch() : m_impl(std::make_unique<Impl>()) {}
Sketch::~Sketch() = default;
Sketch::Sketch(const Sketch& other) : m_impl(std::make_unique<Impl>(*other.m_impl)) {}
Sketch::Sketch(Sketch&& other) noexcept = default;
Sketch& Sketch::operator=(Sketch&& other) noexcept = default;

Sketch& Sketch::operator=(const Sketch& other) {
    if (this != &other)
        m_impl = std::make_unique<Impl>(*other.m_impl);
    return *this;
}

Result<EntityId> Sketch::addPoint(Vec2 position) {
    return append(*m_impl, faultOf(position, 0.0, "point"),
                  [&](detail::SketchData& data, std::string name) { return data.addPoint(std::move(name), position); });
}

Result<EntityId> Sketch::addLine(Vec2 start, Vec2 end) {
    return append(*m_impl, faultOf(geometry::LineShape{start, end}), [&](detail::SketchData& data, std::string name) {
        return data.addLine(std::move(name), start, end);
    });
}

Result<EntityId> Sketch::addRay(Vec2 base, double angle) {
    return append(*m_impl, faultOf(base, angle, "ray"), [&](detail::SketchData& data, std::string name) {
        return data.addRay(std::move(name), base, angle);
    });
}

Result<EntityId> Sketch::addXline(Vec2 base, double angle) {
    return append(*m_impl, faultOf(base, angle, "unbounded line"), [&](detail::SketchData& data, std::string name) {
        return data.addXline(std::move(name), base, angle);
    });
}

Result<EntityId> Sketch::addCircle(Vec2 centre, double radius) {
    return append(
        *m_impl, faultOf(geometry::CircleShape{centre, radius}),
        [&](detail::SketchData& data, std::string name) { return data.addCircle(std::move(name), centre, radius); });
}

Result<EntityId> Sketch::addArc(Vec2 centre, double radius, double startAngle, double endAngle) {
    const geometry::ArcShape arc{centre, radius, startAngle, endAngle};
    return append(*m_impl, faultOf(arc),
                  [&](detail::SketchData& data, std::string name) { return data.addArc(std::move(name), arc); });
}

Result<EntityId> Sketch::addEllipse(Vec2 centre, Vec2 majorAxis, double ratio) {
    return append(*m_impl, faultOf(geometry::EllipticalArcShape{centre, majorAxis, ratio, 0.0, 1.0}, "ellipse"),
                  [&](detail::SketchData& data, std::string name) {
                      return data.addEllipse(std::move(name), {centre, majorAxis, ratio});
                  });
}

Result<EntityId> Sketch::addEllipticalArc(Vec2 centre, Vec2 majorAxis, double ratio, double startAngle,
                                          double endAngle) {
    const geometry::EllipticalArcShape arc{centre, majorAxis, ratio, startAngle, endAngle};
    return append(*m_impl, faultOf(arc, "elliptical arc"), [&](detail::SketchData& data, std::string name) {
        return data.addEllipticalArc(std::move(name), arc);
    });
}

Result<EntityId> Sketch::addSpline(const SplineData& spline) {
    return append(*m_impl, faultOf(spline), [&](detail::SketchData& data, std::string name) {
        return data.addSpline(std::move(name), shapeOf(spline));
    });
}

Result<EntityId> Sketch::addPolyline(const PolylineData& polyline) {
    return append(*m_impl, faultOf(polyline), [&](detail::SketchData& data, std::string name) {
        return data.addPolyline(std::move(name), shapeOf(polyline));
    });
}

Result<EntityId> Sketch::addText(Vec2 position, double angle, double height) {
    auto fault = faultOf(position, angle, "text");
    if (!fault && !(height > 0.0 && std::isfinite(height)))
        fault = Error{"its height is not above 0", "text", "give a finite height above 0"};
    return append(*m_impl, std::move(fault), [&](detail::SketchData& data, std::string name) {
        return data.addText(std::move(name), position, angle, height);
    });
}

Result<std::vector<ConstraintId>> Sketch::remove(EntityId entity) {
    const int number = m_impl->find(entity);
    if (number < 0)
        return noSuch(entity);
    std::vector<char> isGone(m_impl->data.entities.size(), 0), isConstraintGone(m_impl->data.constraints.size(), 0);
    isGone[at(number)] = 1;
    std::vector<ConstraintId> removed;
    for (std::size_t c = 0; c < isConstraintGone.size(); ++c) {
        const auto& refs = m_impl->data.constraints[c].refs;
        if (std::none_of(refs.begin(), refs.end(), [&](const auto& place) { return place.entity == number; }))
            continue;
        isConstraintGone[c] = 1;
        removed.push_back(m_impl->constraintId(static_cast<int>(c)));
    }
    compact(*m_impl, isGone, isConstraintGone);
    return removed;
}

Result<Done> Sketch::fix(EntityId entity) {
    const int number = m_impl->find(entity);
    if (number < 0)
        return noSuch(entity);
    m_impl->data.entities[at(number)].fixed = true;
    ++m_impl->revision;
    return Done{};
}

Result<Done> Sketch::unfix(EntityId entity) {
    const int number = m_impl->find(entity);
    if (number < 0)
        return noSuch(entity);
    m_impl->data.entities[at(number)].fixed = false;
    ++m_impl->revision;
    return Done{};
}

bool Sketch::contains(EntityId entity) const {
    return m_impl->find(entity) >= 0;
}

bool Sketch::isFixed(EntityId entity) const {
    const int number = m_impl->find(entity);
    return number >= 0 && m_impl->data.entities[at(number)].fixed;
}

EntityKind Sketch::kindOf(EntityId entity) const {
    static_assert(static_cast<int>(EntityKind::polyline) == static_cast<int>(detail::EntityKind::polyline));
    const int number = m_impl->find(entity);
    assert(number >= 0);
    return static_cast<EntityKind>(m_impl->data.entities[at(number)].kind);
}

std::vector<EntityId> Sketch::entities() const {
    std::vector<EntityId> ids;
    for (const int id : m_impl->idOfEntity)
        ids.emplace_back(id);
    return ids;
}

std::span<const double> Sketch::values(EntityId entity) const {
    const int number = m_impl->find(entity);
    return number < 0 ? std::span<const double>() : m_impl->data.valuesOf(number);
}

Result<Done> Sketch::setValues(EntityId entity, std::span<const double> values) {
    const int number = m_impl->find(entity);
    if (number < 0)
        return noSuch(entity);
    const detail::SketchEntity& e = m_impl->data.entities[at(number)];
    if (auto fault = faultOf(e, values))
        return *std::move(fault);
    std::copy(values.begin(), values.end(), m_impl->data.values.begin() + e.firstValue);
    std::copy(values.begin(), values.end(), m_impl->data.reference.begin() + e.firstValue);
    ++m_impl->revision;
    return Done{};
}

Vec2 Sketch::position(PointId point) const {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    if (m_impl->find(point.entity()) < 0)
        return {nan, nan};
    const auto operand = detail::pointAt(m_impl->data, m_impl->placeOf(point));
    if (!operand)
        return {nan, nan};
    if (!detail::isDirect(*operand))
        return evaluatePoint(m_impl->data, *operand);
    return {m_impl->data.values[at(operand->inputs[0])], m_impl->data.values[at(operand->inputs[1])]};
}

Result<ConstraintId> Sketch::add(const Constraint& constraint) {
    auto read = readConstraint(*m_impl, constraint);
    if (!read)
        return read.error();
    Appending appending(*m_impl);
    const ConstraintId id(static_cast<int>(m_impl->constraintOf.size()));
    detail::SketchConstraint binding = std::move(read).value();
    binding.id = toString(id);
    const int number = m_impl->data.addConstraint(std::move(binding));
    m_impl->kinds.push_back(constraint);
    m_impl->idOfConstraint.push_back(id.number());
    m_impl->constraintOf.push_back(number);
    if (auto fault = faultOfEquations(*m_impl, number, constraint))
        return *std::move(fault);
    appending.finish();
    ++m_impl->revision;
    return id;
}

Result<Done> Sketch::remove(ConstraintId constraint) {
    const int number = m_impl->find(constraint);
    if (number < 0)
        return noSuch(constraint);
    std::vector<char> isGone(m_impl->data.entities.size(), 0), isConstraintGone(m_impl->data.constraints.size(), 0);
    isConstraintGone[at(number)] = 1;
    compact(*m_impl, isGone, isConstraintGone);
    return Done{};
}

Result<Done> Sketch::setValue(ConstraintId dimension, double value) {
    const int number = m_impl->find(dimension);
    if (number < 0)
        return noSuch(dimension);
    Constraint changed = m_impl->kinds[at(number)];
    Value* const now = valueIn(changed);
    if (now == nullptr)
        return Error{"it is no dimension and has no value", describe(changed), "add a dimension"};
    *now = value;
    if (const auto read = readConstraint(*m_impl, changed); !read)
        return read.error();
    double& stored = m_impl->data.constraints[at(number)].value;
    const double old = std::exchange(stored, value);
    try {
        if (auto fault = faultOfEquations(*m_impl, number, changed)) {
            stored = old;
            return *std::move(fault);
        }
    } catch (...) {
        stored = old;
        throw;
    }
    m_impl->kinds[at(number)] = std::move(changed);
    ++m_impl->revision;
    return Done{};
}

Result<Done> Sketch::setActive(ConstraintId constraint, bool isActive) {
    const int number = m_impl->find(constraint);
    if (number < 0)
        return noSuch(constraint);
    m_impl->data.constraints[at(number)].active = isActive;
    ++m_impl->revision;
    return Done{};
}

Result<Done> Sketch::setDriving(ConstraintId dimension, bool isDriving) {
    const int number = m_impl->find(dimension);
    if (number < 0)
        return noSuch(dimension);
    if (valueIn(m_impl->kinds[at(number)]) == nullptr)
        return Error{"it is no dimension and always drives", describe(m_impl->kinds[at(number)]),
                     "switch it off by setActive"};
    m_impl->data.constraints[at(number)].driving = isDriving;
    ++m_impl->revision;
    return Done{};
}

bool Sketch::contains(ConstraintId constraint) const {
    return m_impl->find(constraint) >= 0;
}

bool Sketch::isActive(ConstraintId constraint) const {
    const int number = m_impl->find(constraint);
    return number >= 0 && m_impl->data.constraints[at(number)].active;
}

bool Sketch::isDriving(ConstraintId constraint) const {
    const int number = m_impl->find(constraint);
    return number >= 0 && m_impl->data.constraints[at(number)].driving;
}

const Constraint& Sketch::constraint(ConstraintId constraint) const {
    const int number = m_impl->find(constraint);
    assert(number >= 0);
    return m_impl->kinds[at(number)];
}

std::vector<ConstraintId> Sketch::constraints() const {
    std::vector<ConstraintId> ids;
    for (const int id : m_impl->idOfConstraint)
        ids.emplace_back(id);
    return ids;
}

Result<double> residual(const Sketch& sketch, ConstraintId constraint) {
    const SketchImpl& impl = SketchAccess::of(sketch);
    const int number = impl.find(constraint);
    if (number < 0)
        return noSuch(constraint);
    if (!impl.data.constraints[at(number)].binds())
        return 0.0;
    double worst = 0.0;
    try {
        const detail::EquationSystem system = detail::buildPlainSystem(impl.data, {&number, 1});
        for (const auto& [c, equation] : system.constraintEquations) {
            const double miss = system.residualOf(equation);
            worst = miss <= worst ? worst : miss;
        }
    } catch (const detail::SketchError& e) {
        return Error{withoutName(e.what()), describe(impl.kinds[at(number)]), "put its entities elsewhere"};
    }
    return worst;
}

Result<double> measure(const Sketch& sketch, ConstraintId dimension) {
    const SketchImpl& impl = SketchAccess::of(sketch);
    const int number = impl.find(dimension);
    if (number < 0)
        return noSuch(dimension);
    Constraint kind = impl.kinds[at(number)];
    if (valueIn(kind) == nullptr)
        return Error{"it is no dimension and measures nothing", describe(kind), "ask for its residual"};
    try {
        return detail::measured(impl.data, number);
    } catch (const detail::SketchError& e) {
        return Error{withoutName(e.what()), describe(kind), "put its entities elsewhere"};
    }
}

}  // namespace holdfast::solver
