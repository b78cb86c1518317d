#include "solver/src/residuals/EquationBuilder.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "solver/src/sketch/Index.h"

namespace holdfast::solver::detail {

namespace {

constexpr int kMostFoldPasses = 16;

/// Parts of the sketch's size that a lever counts as at least, so that the angles of a collapsed line stay in the
/// equations.
constexpr double kLeastLever = 1e-6;

/// Values that agree to this part of the sketch's size count as the same when ties meet.
constexpr double kTieTolerance = 1e-9;

/// How far geometry moves when a direction turns by one, or a bulge grows by one.
void setMetric(const SketchData& sketch, const SketchEntity& entity, double size, std::vector<double>& metric) {
    if (entity.kind == EntityKind::ray || entity.kind == EntityKind::xline)
        metric[at(entity.firstValue + 2)] = 0.5 * size;
    if (entity.kind == EntityKind::text)
        metric[at(entity.firstValue + 2)] = entity.textHeight;
    const int number = static_cast<int>(&entity - sketch.entities.data());
    for (std::size_t i = 0; i < entity.bulgeValues.size(); ++i) {
        if (entity.bulgeValues[i] >= 0)
            metric[at(entity.bulgeValues[i])] =
                0.5 * std::max(sizeOf(sketch, {number, static_cast<int>(i)}, size), kLeastLever * size);
    }
}

}  // namespace

EquationBuilder::EquationBuilder(const SketchData& sketch, EquationSystem& system, bool merges)
    : m_sketch(sketch),
      m_system(system),
      m_reference(sketch.reference),
      m_merge(static_cast<int>(sketch.values.size())),
      m_isDone(sketch.constraints.size(), 0),
      m_merges(merges) {
    m_system.metric.assign(sketch.values.size(), 1.0);
    for (const SketchEntity& entity : sketch.entities)
        setMetric(sketch, entity, m_system.size, m_system.metric);
}

void EquationBuilder::build(std::span<const int> constraints, const KeptSizes& sizes) {
    for (std::size_t i = 0; i < m_sketch.entities.size(); ++i)
        addRules(static_cast<int>(i));
    for (const int c : constraints) {
        begin(c);
        if (m_constraint->own)
            addOwn();
        m_isDone[at(c)] = m_constraint->own || tieNow(*this);
    }
    if (m_merges)
        foldAll(constraints);
    for (const int c : constraints) {
        begin(c);
        if (!m_isDone[at(c)] && traits().residual != ConstraintResidual::tangent)
            addEquations(*this);
    }
    // Tangencies come last: they look different where the curves are known to share a point.
    for (const int c : constraints) {
        begin(c);
        if (!m_isDone[at(c)] && traits().residual == ConstraintResidual::tangent)
            addEquations(*this);
    }
    m_current = -1;
    for (const KeptShape& shape : sizes.shapes) {
        m_entity = shape.entity;
        addKeptSizes(*this, shape, sizes);
    }
    numberUnknowns();
    listEquations();
    m_system.reference = m_reference;
}

std::span<const double> EquationBuilder::values(When when) const {
    m_system.readsNow = m_system.readsNow || when == When::now;
    return when == When::reference ? m_reference : m_system.values;
}

void EquationBuilder::begin(int constraint) {
    m_current = constraint;
    m_entity = -1;
    m_constraint = &m_sketch.constraints[at(constraint)];
}

/// A user's own equations, of the points and whole entities that the constraint names.
void EquationBuilder::addOwn() {
    Operand read;
    for (const SketchPlace& place : m_constraint->refs) {
        const SketchEntity& entity = m_sketch.entities[at(place.entity)];
        if (place.kind != PlaceKind::whole) {
            const Operand point = need(pointAt(m_sketch, place));
            if (!isDirect(point))
                fail(nameOf(m_sketch, place) + " is computed from other values and cannot be read; read those");
            read.inputs.insert(read.inputs.end(), point.inputs.begin(), point.inputs.end());
            continue;
        }
        for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount; ++v)
            read.inputs.push_back(v);
    }
    const ResidualFunction& function = *m_constraint->own;
    if (static_cast<int>(read.inputs.size()) != function.inputCount())
        fail("its function reads " + std::to_string(function.inputCount()) + " numbers and its places have " +
             std::to_string(read.inputs.size()));
    Equation form;
    form.rows = static_cast<std::uint8_t>(function.rowCount());
    form.function = static_cast<int>(m_system.set.functions.size());
    m_system.set.functions.push_back(&function);
    add(form, {read});
}

/// Constants of fixed entities; ends of arcs lie on them.
void EquationBuilder::addRules(int number) {
    const SketchEntity& entity = m_sketch.entities[at(number)];
    m_current = -1;
    m_entity = number;
    if (entity.fixed) {
        for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount; ++v)
            fix(v, m_sketch.values[at(v)]);
        return;
    }
    const CurveRef curve{number, -1};
    if (entity.kind == EntityKind::arc) {
        add(formOf(ResidualKind::pointCircle), {*startOf(m_sketch, curve), *circleAt(m_sketch, curve)});
        add(formOf(ResidualKind::pointCircle), {*endOf(m_sketch, curve), *circleAt(m_sketch, curve)});
    }
    if (entity.kind == EntityKind::ellipticalArc) {
        add(formOf(ResidualKind::pointEllipse), {*startOf(m_sketch, curve), *ellipseAt(m_sketch, curve)});
        add(formOf(ResidualKind::pointEllipse), {*endOf(m_sketch, curve), *ellipseAt(m_sketch, curve)});
    }
}

void EquationBuilder::foldAll(std::span<const int> constraints) {
    std::vector<int> open;
    std::copy_if(constraints.begin(), constraints.end(), std::back_inserter(open),
                 [&](int c) { return !m_isDone[at(c)]; });
    for (int pass = 0; pass < kMostFoldPasses; ++pass) {
        const std::size_t before = open.size();
        std::erase_if(open, [&](int c) {
            begin(c);
            return m_isDone[at(c)] = fold(*this);
        });
        if (open.size() == before)
            return;
    }
}

double EquationBuilder::toleranceOf(int value) const {
    return value < 0 ? kTieTolerance * m_system.size : kTieTolerance * m_system.size / m_system.metric[at(value)];
}

void EquationBuilder::record(Substitution::Outcome outcome, int a, int b, bool isImplied) {
    if (outcome == Substitution::Outcome::conflicting) {
        std::vector<int> others = m_merge.ownersBetween(a, b);
        std::erase_if(others, [](int owner) { return owner < 0; });
        m_system.contradictions.push_back({m_current, std::move(others)});
    }
    if (outcome == Substitution::Outcome::spare && !isImplied && m_current >= 0)
        m_system.spares.push_back({m_current, 1});
}

void EquationBuilder::tie(int a, int b, double sign, double offset) {
    if (m_merges) {
        record(m_merge.tie(a, b, sign, offset, toleranceOf(a), m_current), a, b, false);
        return;
    }
    Equation form = formOf(ResidualKind::equalScalars);
    form.sign = sign;
    form.value = offset;
    form.scale = m_system.metric[at(a)];
    add(form, {Operand{OperandKind::scalar, {a}, {}}, Operand{OperandKind::scalar, {b}, {}}});
}

void EquationBuilder::fix(int value, double constant) {
    if (m_merges) {
        record(m_merge.fix(value, constant, toleranceOf(value), m_current), value, Substitution::kGround, false);
        return;
    }
    Equation form = formOf(ResidualKind::scalarIs);
    form.value = constant;
    form.scale = m_system.metric[at(value)];
    add(form, {Operand{OperandKind::scalar, {value}, {}}});
}

void EquationBuilder::tiePoints(const Operand& p, const Operand& q, bool isImplied) {
    if (!m_merges) {
        Equation form = formOf(ResidualKind::samePoint, 2);
        form.isImplied = isImplied;
        add(form, {p, q});
        return;
    }
    for (std::size_t i = 0; i < 2; ++i)
        record(m_merge.tie(p.inputs[i], q.inputs[i], 1.0, 0.0, toleranceOf(p.inputs[i]), m_current), p.inputs[i],
               q.inputs[i], isImplied);
}

bool EquationBuilder::differByConstant(int a, int b, double& difference) {
    const Substitution::Link la = m_merge.find(a), lb = m_merge.find(b);
    if (la.root != lb.root || (la.root != Substitution::kGround && la.sign != lb.sign))
        return false;
    difference = lb.offset - la.offset;
    return true;
}

bool EquationBuilder::areSamePoint(const Operand& p, const Operand& q) {
    double dx = 1.0, dy = 1.0;
    return differByConstant(p.inputs[0], q.inputs[0], dx) && differByConstant(p.inputs[1], q.inputs[1], dy) &&
           std::hypot(dx, dy) <= kTieTolerance * m_system.size;
}

void EquationBuilder::add(Equation form, std::initializer_list<Operand> operands) {
    form.constraint = m_current;
    form.entity = m_entity;
    m_system.set.add(form, operands);
}

void EquationBuilder::addSize(Equation form, std::initializer_list<Operand> operands, double weight,
                              SizeRow::Kind kind) {
    if (weight > 0.0)
        form.slack = addContact(0.0, weight);
    add(form, operands);
    m_system.sizes.push_back({static_cast<int>(m_system.set.equations.size()) - 1, m_entity, kind});
}

void EquationBuilder::addTangency(Equation form, std::initializer_list<Operand> operands, bool isHeld) {
    constexpr double clearly = 0.5;  // cosine: nearer to a right angle a sense is chance
    // A distance that is off by t tells of a direction off by the root of 2 t / r at most; more has been turned away.
    // Several may be off at once.
    constexpr double margin = 4.0;
    if (const double turn = residualAt(When::reference, form, operands) / form.scale;
        isHeld && std::abs(turn) <= margin * std::sqrt(m_system.tolerance / form.scale))
        form.value = turn;
    add(form, operands);
    const double sense = senseOf(m_system.set, m_system.set.equations.back(), m_reference);
    if (std::abs(sense) > clearly)
        m_system.senses.push_back({static_cast<int>(m_system.set.equations.size()) - 1, sense > 0.0});
}

double EquationBuilder::residualAt(When when, Equation form, std::initializer_list<Operand> operands) const {
    m_probe.equations.clear();
    m_probe.inputs.clear();
    m_probe.splineUses.clear();
    m_probe.splines = m_system.set.splines;
    m_probe.add(form, operands);
    return residuals(m_probe, m_probe.equations.front(), values(when))[0];
}

bool EquationBuilder::holdsNow(Equation form, std::initializer_list<Operand> operands) const {
    return std::abs(residualAt(When::now, form, operands)) <= m_system.tolerance;
}

bool EquationBuilder::runAlike(const Operand& a, const Operand& b, const Operand& point) const {
    EquationSet set;
    set.splines = m_system.set.splines;
    set.add(formOf(ResidualKind::directions), {a, b, point});
    return senseOf(set, set.equations.front(), m_reference) > 0.0;
}

void EquationBuilder::setContact(When when, int value, double x) {
    (when == When::reference ? m_reference : m_system.values)[at(value)] = x;
}

int EquationBuilder::addContact(double start, double metric) {
    m_system.values.push_back(start);
    m_system.metric.push_back(metric);
    m_reference.push_back(start);
    return m_merge.addValue();
}

int EquationBuilder::addConstant(double value) {
    const int added = addContact(value, 1.0);
    m_merge.fix(added, value, 0.0, m_current);
    return added;
}

const SketchPlace& EquationBuilder::ref(std::size_t i) const {
    if (i >= m_constraint->refs.size())
        refusePlaces();
    return m_constraint->refs[i];
}

Operand EquationBuilder::need(std::optional<Operand> operand) const {
    if (!operand)
        refusePlaces();
    return *std::move(operand);
}

void EquationBuilder::refusePlaces() const {
    std::string found;
    for (const SketchPlace& place : m_constraint->refs)
        found += (found.empty() ? "" : ", ") + nameOf(m_sketch, place);
    if (found.empty())
        found = "nothing";
    const std::string name(traits().name);
    throw PlaceError("constraint " + m_constraint->id + ": " + name + " of " + found + "; " + name + " takes " +
                         std::string(traits().takes),
                     found);
}

void EquationBuilder::fail(const std::string& message) const {
    throw SketchError("constraint " + m_constraint->id + ": " + message);
}

void EquationBuilder::notePointOn(const Operand& point, CurveRef curve) {
    if (isDirect(point))
        m_pointsOn[curve].push_back(point);
}

std::vector<Operand> EquationBuilder::knownPointsOn(CurveRef curve) const {
    // Few points lie on a curve: looking through them costs less than an index. Of very many some are enough.
    constexpr std::size_t most = 64;
    std::vector<Operand> points;
    for (const auto& end : {startOf(m_sketch, curve), endOf(m_sketch, curve)}) {
        if (end && isDirect(*end))
            points.push_back(*end);
    }
    const auto noted = m_pointsOn.find(curve);
    if (noted != m_pointsOn.end())
        points.insert(points.end(), noted->second.begin(), noted->second.end());
    if (points.size() > most)
        points.resize(most);
    return points;
}

bool EquationBuilder::isOn(const Operand& point, CurveRef curve) {
    const std::vector<Operand> points = knownPointsOn(curve);
    return std::any_of(points.begin(), points.end(), [&](const Operand& p) { return isOnePoint(p, point); });
}

std::optional<Operand> EquationBuilder::pointOnBoth(CurveRef a, CurveRef b) {
    const std::vector<Operand> onA = knownPointsOn(a);
    const auto shared = std::find_if(onA.begin(), onA.end(), [&](const Operand& p) { return isOn(p, b); });
    return shared == onA.end() ? std::nullopt : std::optional(*shared);
}

void EquationBuilder::numberUnknowns() {
    const int count = static_cast<int>(m_system.values.size());
    std::vector<int> numberOfRoot(at(count), -1);
    std::vector<std::pair<int, int>> members;
    m_system.links.resize(at(count));
    for (int v = 0; v < count; ++v) {
        const Substitution::Link link = m_merge.find(v);
        m_system.links[at(v)] = {-1, link.sign, link.offset};
        if (link.root == Substitution::kGround)
            continue;
        int& number = numberOfRoot[at(link.root)];
        if (number < 0)
            number = m_system.unknownCount++;
        m_system.links[at(v)].unknown = number;
        members.emplace_back(number, v);
    }
    m_system.valuesOfUnknown = tabulate(m_system.unknownCount, members);
}

void EquationBuilder::listEquations() {
    std::vector<std::pair<int, int>> uses;
    std::vector<int> lastUse(at(m_system.unknownCount), -1);
    for (int e = 0; e < static_cast<int>(m_system.set.equations.size()); ++e) {
        const Equation& equation = m_system.set.equations[at(e)];
        for (const int v : m_system.set.inputsOf(equation)) {
            const int unknown = m_system.links[at(v)].unknown;
            if (unknown < 0 || lastUse[at(unknown)] == e)
                continue;
            lastUse[at(unknown)] = e;
            uses.emplace_back(unknown, e);
        }
        if (equation.constraint >= 0)
            m_system.constraintEquations.emplace_back(equation.constraint, e);
    }
    std::sort(m_system.constraintEquations.begin(), m_system.constraintEquations.end());
    m_system.equationsOfUnknown = tabulate(m_system.unknownCount, uses);
}

Equation formOf(ResidualKind residualKind, std::uint8_t rows) {
    Equation form;
    form.residualKind = residualKind;
    form.rows = rows;
    return form;
}

double turnScale(const EquationBuilder& builder, CurveRef a, CurveRef b) {
    const double whole = builder.size();
    const double smaller = std::min(sizeOf(builder.sketch(), a, whole), sizeOf(builder.sketch(), b, whole));
    return std::max(smaller, kLeastLever * whole);
}

bool isEndPlace(const SketchPlace& place) {
    using enum PlaceKind;
    return place.kind == start || place.kind == end || place.kind == segmentStart || place.kind == segmentEnd;
}

}  // namespace holdfast::solver::detail
