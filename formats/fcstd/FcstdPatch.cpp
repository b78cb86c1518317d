#include "formats/fcstd/FcstdPatch.h"

#include <algorithm>
#include <list>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/Places.h"
#include "formats/PieceNames.h"
#include "formats/fcstd/FcstdArchive.h"
#include "formats/fcstd/FcstdJoints.h"
#include "formats/fcstd/FcstdShapes.h"
#include "formats/fcstd/FcstdSketch.h"
#include "geometry/ConstraintKinds.h"
#include "geometry/SplineCurve.h"

namespace holdfast::formats {
namespace {

using Use = FcstdGeometryRecord::Use;

constexpr double kControlRadius = 1.0;  // of the circle that marks a control point without a weight

std::map<std::string, const Constraint*, std::less<>> byId(const std::vector<Constraint>& constraints) {
    std::map<std::string, const Constraint*, std::less<>> found;
    for (const Constraint& constraint : constraints)
        found.emplace(constraint.id, &constraint);
    return found;
}

class FcstdPatch {
public:
    FcstdPatch(FcstdSketch& sketch, const Document& after)
        : m_sketch(sketch),
          m_after(after),
          m_entities(after),
          m_before(byId(sketch.drawing.constraints)),
          m_now(byId(after.constraints)),
          m_list(sketch.geometry.list("GeometryList")),
          m_constraints(sketch.constraints.list("ConstraintList")),
          m_nextIdentifier(highestIdentifier(m_list)) {}

    void apply() {
        sortEntities();
        patchGeometry();
        numberGeometry();
        addEntities();
        patchConstraints();
        addConstraints();
        markUses();
        patchExpressions();
        count(m_list, "Geometry");
        count(m_constraints, "Constrain");
    }

    std::vector<std::string> notes() { return std::move(m_notes); }

private:
    static void count(pugi::xml_node list, const char* name) {
        const auto all = list.children(name);
        const auto number = std::distance(all.begin(), all.end());
        if (pugi::xml_attribute attribute = list.attribute("count"); attribute.as_llong() != number)
            attribute.set_value(static_cast<long long>(number));
    }

    // Entities.

    /// The first piece of what is gone takes its place.
    void sortEntities() {
        std::unordered_map<std::string_view, std::size_t> records;
        for (std::size_t i = 0; i < m_sketch.geometryRecords.size(); ++i)
            if (m_sketch.geometryRecords[i].use == Use::entity)
                records.emplace(m_sketch.geometryRecords[i].id, i);
        m_inPlace.assign(m_sketch.geometryRecords.size(), nullptr);
        for (const Entity& entity : m_after.entities)
            if (const auto record = records.find(entity.id); record != records.end() && canBeRecord(entity.shape))
                m_inPlace[record->second] = &entity;
        const EntityIndex before(m_sketch.drawing);
        for (const Entity& entity : m_after.entities) {
            const Entity* known = before.find(entity.id);
            if (records.contains(entity.id) ? canBeRecord(entity.shape) : known != nullptr)
                continue;
            if (!canBeRecord(entity.shape)) {
                m_notes.push_back(entity.id + ", a " + std::string(typeName(entity.shape)) + ", was left out");
                continue;
            }
            const std::optional<std::size_t> origin = originOf(entity.id, records);
            if (origin && m_inPlace[*origin] == nullptr)
                m_inPlace[*origin] = &entity;
            else
                m_added.push_back({&entity, origin});
        }
    }

    static std::optional<std::size_t> originOf(std::string_view name,
                                               const std::unordered_map<std::string_view, std::size_t>& records) {
        return originByName(name, [&](std::string_view known) {
            const auto record = records.find(known);
            return record == records.end() ? std::nullopt : std::optional(record->second);
        });
    }

    void patchGeometry() {
        const EntityIndex before(m_sketch.drawing);
        for (std::size_t i = 0; i < m_sketch.geometryRecords.size(); ++i) {
            const FcstdGeometryRecord& each = m_sketch.geometryRecords[i];
            if (each.use == Use::control || each.use == Use::knot) {
                followSpline(each, before);
            } else if (each.use == Use::entity && m_inPlace[i] == nullptr) {
                m_gone.insert(i);
            } else if (each.use == Use::entity) {
                put(each.record, *m_inPlace[i], *before.find(each.id));
            }
        }
        for (std::size_t i = 0; i < m_sketch.geometryRecords.size(); ++i)
            if (isHelperOfNothing(m_sketch.geometryRecords[i]))
                m_gone.insert(i);
    }

    static void put(pugi::xml_node record, const Entity& now, const Entity& before) {
        if (!(now.shape == before.shape))
            putShape(record, now.shape);
        if (now.construction != before.construction)
            putConstruction(record, now.construction);
    }

    const SplineShape* splineOf(const FcstdGeometryRecord& helper) const {
        const Entity* spline = helper.spline < m_inPlace.size() ? m_inPlace[helper.spline] : nullptr;
        return spline == nullptr ? nullptr : std::get_if<SplineShape>(&spline->shape);
    }

    static std::vector<double> distinctKnots(const SplineShape& spline) {
        std::vector<double> knots = spline.knots;
        knots.erase(std::unique(knots.begin(), knots.end()), knots.end());
        return knots;
    }

    bool isHelperOfNothing(const FcstdGeometryRecord& each) const {
        if (each.use != Use::control && each.use != Use::knot)
            return false;
        const SplineShape* spline = splineOf(each);
        if (spline == nullptr)
            return each.spline >= m_sketch.geometryRecords.size() ||
                   m_sketch.geometryRecords[each.spline].use != Use::unread;
        return each.index >= (each.use == Use::control ? spline->control.size() : distinctKnots(*spline).size());
    }

    /// A circle about a control point, whose radius is the weight; a point at a knot.
    void followSpline(const FcstdGeometryRecord& helper, const EntityIndex& before) const {
        const SplineShape* spline = splineOf(helper);
        if (spline == nullptr || isHelperOfNothing(helper) ||
            before.find(m_sketch.geometryRecords[helper.spline].id)->shape == Shape(*spline))
            return;
        std::optional<Shape> shape = shapeIn(helper.record);
        if (!shape)
            return;
        if (auto* circle = std::get_if<CircleShape>(&*shape); circle != nullptr && helper.use == Use::control)
            circle->centre = spline->control[helper.index];
        else if (auto* point = std::get_if<PointShape>(&*shape))
            point->position = helper.use == Use::control ? spline->control[helper.index]
                                                         : splinePoint(*spline, distinctKnots(*spline)[helper.index]);
        putShape(helper.record, *shape);
    }

    void numberGeometry() {
        m_numbers.assign(m_sketch.geometryRecords.size(), FcstdRef::kNothing);
        for (std::size_t i = 0; i < m_sketch.geometryRecords.size(); ++i) {
            const FcstdGeometryRecord& each = m_sketch.geometryRecords[i];
            if (m_gone.contains(i))
                continue;
            m_numbers[i] = m_count++;
            if (m_inPlace[i] != nullptr)
                take(m_inPlace[i]->id, m_numbers[i], each.record);
            if (each.use == Use::control && splineOf(each) != nullptr)
                m_controls.emplace(std::pair(m_inPlace[each.spline]->id, static_cast<int>(each.index)), m_numbers[i]);
        }
    }

    void take(const std::string& id, int number, pugi::xml_node record) {
        m_byId.emplace(id, number);
        m_records.emplace(id, record);
    }

    void addEntities() {
        for (const auto& [entity, origin] : m_added) {
            const pugi::xml_node like = origin ? m_sketch.geometryRecords[*origin].record : pugi::xml_node();
            const pugi::xml_node record = addRecord(m_list, like, ++m_nextIdentifier);
            putShape(record, entity->shape);
            putConstruction(record, entity->construction);
            take(entity->id, m_count++, record);
        }
        for (const std::size_t gone : m_gone)
            m_list.remove_child(m_sketch.geometryRecords[gone].record);
    }

    // Constraints.

    std::optional<FcstdRef> refOf(const Place& place) {
        if (place.entity == "origin")
            return FcstdRef{FcstdRef::kXAxis, FcstdRef::start};
        const std::optional<int> number = numberOf(place.entity);
        if (place.kind == PlaceKind::control)
            return number ? std::optional(FcstdRef{controlOf(place), FcstdRef::centre}) : std::nullopt;
        const Entity* entity = m_entities.find(place.entity);
        if (!number || entity == nullptr)
            return outsideRefOf(place);
        const bool isPoint = std::holds_alternative<PointShape>(entity->shape);
        switch (place.kind) {
            case PlaceKind::whole:
                return FcstdRef{*number, isPoint ? FcstdRef::start : FcstdRef::whole};
            case PlaceKind::start:
                return FcstdRef{*number, FcstdRef::start};
            case PlaceKind::end:
                return FcstdRef{*number, FcstdRef::end};
            case PlaceKind::centre:
                return FcstdRef{*number, FcstdRef::centre};
            default:
                return std::nullopt;
        }
    }

    std::optional<int> numberOf(const std::string& entity) const {
        if (entity == "x_axis")
            return FcstdRef::kXAxis;
        if (entity == "y_axis")
            return FcstdRef::kYAxis;
        if (const auto found = m_sketch.outsideNumbers.find(entity); found != m_sketch.outsideNumbers.end())
            return found->second.point == FcstdRef::whole ? std::optional(found->second.geometry) : std::nullopt;
        const auto found = m_byId.find(entity);
        return found == m_byId.end() ? std::nullopt : std::optional(found->second);
    }

    std::optional<FcstdRef> outsideRefOf(const Place& place) const {
        const auto found = m_sketch.outsideNumbers.find(place.entity);
        return found == m_sketch.outsideNumbers.end() ? std::nullopt : std::optional(found->second);
    }

    /// The circle that marks a control point, made where there is none yet.
    int controlOf(const Place& place) {
        const auto key = std::pair(place.entity, place.index);
        if (const auto found = m_controls.find(key); found != m_controls.end())
            return found->second;
        const auto& spline = std::get<SplineShape>(m_entities.find(place.entity)->shape);
        const pugi::xml_node record = addRecord(m_list, {}, ++m_nextIdentifier);
        putShape(record, CircleShape{spline.control[static_cast<std::size_t>(place.index)], kControlRadius});
        putConstruction(record, true);
        putAlignment(record, static_cast<int>(FcstdAlignment::control));
        m_helpers.push_back({m_count, m_byId.at(place.entity), place.index});
        return m_controls.emplace(key, m_count++).first->second;
    }

    void patchConstraints() {
        const std::set<std::string, std::less<>> idle = idleCoincidences(m_sketch.drawing, m_after);
        for (std::size_t i = 0; i < m_sketch.constraintRecords.size(); ++i) {
            const FcstdConstraintRecord& each = m_sketch.constraintRecords[i];
            const bool stays = each.isRead ? !idle.contains(each.id) && patch(each) : renumber(each);
            m_constraintNumbers.push_back(stays ? std::optional(m_constraintCount) : std::nullopt);
            if (stays)
                m_constraintNumbersNow.emplace(each.id, m_constraintCount++);
            else
                m_constraints.remove_child(each.record);
        }
        for (const Constraint& constraint : m_after.constraints)
            if (!m_before.contains(constraint.id) && !idle.contains(constraint.id))
                m_new.push_back(&constraint);
    }

    bool patch(const FcstdConstraintRecord& each) {
        const auto found = m_now.find(each.id);
        if (!each.companion.empty() && (found == m_now.end()) == m_now.contains(each.companion)) {
            noteNoTerms(found == m_now.end() ? *m_now.at(each.companion) : *found->second);
            return false;
        }
        if (found == m_now.end())
            return false;
        const Constraint &now = *found->second, &before = *m_before.at(each.id);
        if (now.type != before.type || now.refs != before.refs || !renumber(each)) {
            if (!putConstraint(each.record, now))
                return false;
        } else if (now.value && now.value != before.value) {
            putNumber(each.record, "Value", *now.value);
        }
        putState(each.record, now, &before);
        return true;
    }

    /// False where something that it is on has gone.
    bool renumber(const FcstdConstraintRecord& each) {
        FcstdRefs refs = refsIn(each.record);
        for (FcstdRef& ref : refs) {
            if (ref.geometry < 0)
                continue;
            const auto number = static_cast<std::size_t>(ref.geometry);
            if (number >= m_numbers.size() || m_numbers[number] == FcstdRef::kNothing) {
                noteLost(each);
                return false;
            }
            ref.geometry = m_numbers[number];
        }
        putRefs(each.record, refs);
        return true;
    }

    /// Helpers go with their spline; what was not read is missed.
    void noteLost(const FcstdConstraintRecord& each) {
        if (!each.isRead && !each.isFolded)
            m_notes.push_back(each.id + " went with what it was on");
    }

    bool putConstraint(pugi::xml_node record, const Constraint& constraint) {
        const std::optional<FcstdConstraint> terms = inFcstdTerms(
            constraint, m_entities, [this](const Place& place) { return refOf(place); }, m_sketch.isNewer);
        if (terms)
            putTerms(record, *terms);
        else
            noteNoTerms(constraint);
        return terms.has_value();
    }

    void noteNoTerms(const Constraint& constraint) {
        m_notes.push_back(constraint.id + ", " + std::string(traitsOf(constraint.type).label) +
                          " of a kind that the document does not have, was left out");
    }

    /// A line is blocked there with both of its ends; what is fixed here may slide along itself.
    bool isLine(const std::string& entity) const {
        const Entity* found = m_entities.find(entity);
        return found != nullptr && std::holds_alternative<LineShape>(found->shape);
    }

    bool isFixedEnd(const Constraint& constraint, PlaceKind end) const {
        return constraint.type == ConstraintType::fixed && constraint.refs[0].kind == end &&
               isLine(constraint.refs[0].entity);
    }

    /// Of lines whose both ends become fixed, the first end stands for the whole and the other for nothing.
    void gatherFixedEnds() {
        std::unordered_set<std::string> starts, both;
        for (const Constraint* constraint : m_new)
            if (isFixedEnd(*constraint, PlaceKind::start))
                starts.insert(constraint->refs[0].entity);
        std::erase_if(m_new, [&](const Constraint* constraint) {
            return isFixedEnd(*constraint, PlaceKind::end) && starts.contains(constraint->refs[0].entity) &&
                   both.insert(constraint->refs[0].entity).second;
        });
        for (const Constraint*& constraint : m_new)
            if (isFixedEnd(*constraint, PlaceKind::start) && both.contains(constraint->refs[0].entity)) {
                m_blocks.push_back(*constraint);
                m_blocks.back().refs[0].kind = PlaceKind::whole;
                constraint = &m_blocks.back();
            } else if (isFixedEnd(*constraint, PlaceKind::whole)) {
                m_notes.push_back(constraint->id + ", fixed, holds the ends of the line there as well");
            }
    }

    static void putState(pugi::xml_node record, const Constraint& now, const Constraint* before) {
        const auto put = [&](const char* name, const std::string& value) {
            pugi::xml_attribute attribute = record.attribute(name);
            if (attribute.empty())
                attribute = record.append_attribute(name);
            attribute.set_value(value.c_str());
        };
        if (before == nullptr ? !now.name.empty() : now.name != before->name)
            put("Name", now.name);
        if (before == nullptr || now.driving != before->driving)
            put("IsDriving", now.driving ? "1" : "0");
        if (before == nullptr || now.active != before->active)
            put("IsActive", now.active ? "1" : "0");
    }

    void addConstraints() {
        gatherFixedEnds();
        for (const Constraint* constraint : m_new) {
            if (constraint->type == ConstraintType::composite)
                continue;  // its members say all
            const pugi::xml_node record = formats::addConstraint(m_constraints);
            if (putConstraint(record, *constraint)) {
                putState(record, *constraint, nullptr);
                m_constraintNumbersNow.emplace(constraint->id, m_constraintCount++);
            } else {
                m_constraints.remove_child(record);
            }
        }
        for (const Helper& helper : m_helpers) {
            const pugi::xml_node record = formats::addConstraint(m_constraints);
            putTerms(record, {FcstdKind::alignment,
                              {FcstdRef{helper.circle, FcstdRef::centre}, FcstdRef{helper.spline, FcstdRef::whole}, {}},
                              {},
                              FcstdAlignment::control});
            record.attribute("InternalAlignmentIndex").set_value(helper.index);
            ++m_constraintCount;
        }
    }

    /// Records say themselves what constraints make of them.
    void markUses() {
        std::unordered_map<int, int> alignments;
        std::unordered_set<int> blocked;
        for (const pugi::xml_node& record : m_constraints.children("Constrain")) {
            const auto kind = static_cast<FcstdKind>(integerIn(record, "Type"));
            if (kind == FcstdKind::block)
                blocked.insert(refsIn(record)[0].geometry);
            if (kind == FcstdKind::alignment)
                alignments.emplace(refsIn(record)[0].geometry, integerIn(record, "InternalAlignmentType"));
        }
        int number = 0;
        for (const pugi::xml_node& record : m_list.children("Geometry")) {
            const auto alignment = alignments.find(number);
            putBlocked(record, blocked.contains(number++));
            putAlignment(record, alignment == alignments.end() ? 0 : alignment->second);
        }
    }

    // Expressions.

    std::optional<std::string> tailOf(std::size_t constraint) const {
        const std::optional<std::size_t> number = m_constraintNumbers[constraint];
        if (!number)
            return std::nullopt;
        const auto now = m_now.find(m_sketch.constraintRecords[constraint].id);
        return tailOf(*number, now == m_now.end() ? m_sketch.names.constraints[constraint] : now->second->name);
    }

    static std::string tailOf(std::size_t number, const std::string& name) {
        FcstdNames names;
        names.constraints.assign(number + 1, "");
        names.constraints[number] = name;
        return names.tail(number);
    }

    /// How expressions call a dimension that formulas know by its id or name.
    std::optional<std::string> expressionName(const std::string& name) const {
        const auto byId = m_now.find(name);
        const auto byName = m_byName.find(name);
        if (byId == m_now.end() && byName == m_byName.end())
            return std::nullopt;
        const Constraint& found = byId != m_now.end() ? *byId->second : *byName->second;
        const auto number = m_constraintNumbersNow.find(found.id);
        return number == m_constraintNumbersNow.end()
                   ? std::nullopt
                   : std::optional("Constraints" + tailOf(number->second, found.name));
    }

    std::optional<std::string> expressionFor(const Constraint& dimension) const {
        const bool isAngle = traitsOf(dimension.type).value == ConstraintValue::angle;
        return expressionOf(
            dimension.formula, [this](const std::string& name) { return expressionName(name); },
            isAngle ? "deg" : "mm");
    }

    void patchExpressions() {
        for (const Constraint& constraint : m_after.constraints)
            if (!constraint.name.empty() && isDimension(constraint.type))
                m_byName.emplace(constraint.name, &constraint);
        pugi::xml_node list = m_sketch.expressions.list("ExpressionEngine");
        std::vector<pugi::xml_node> all;
        for (const pugi::xml_node& each : list.children("Expression"))
            all.push_back(each);
        std::unordered_set<std::string> done;
        for (const pugi::xml_node& each : all)
            if (!patchExpression(each, done))
                list.remove_child(each);
        for (const Constraint& constraint : m_after.constraints)
            if (!constraint.formula.empty() && !done.contains(constraint.id))
                addExpression(list, constraint);
        if (!list.empty())
            count(list, "Expression");
    }

    /// False where it goes.
    bool patchExpression(pugi::xml_node each, std::unordered_set<std::string>& done) {
        const std::string path = each.attribute("path").value();
        const auto tail = [this](std::size_t constraint) { return tailOf(constraint); };
        const std::optional<std::string> nowPath = renamed(path, m_sketch.names, tail);
        std::optional<std::string> text = renamed(each.attribute("expression").value(), m_sketch.names, tail);
        if (!nowPath)
            return false;
        if (const std::optional<std::size_t> owner = m_sketch.names.constraintAt(path))
            text = textOfDimension(m_sketch.constraintRecords[*owner].id, std::move(text), done);
        else if (!text)
            m_notes.push_back("the expression of " + path + " went with a constraint that it names");
        if (!text)
            return false;
        set(each, "path", *nowPath);
        set(each, "expression", *text);
        return true;
    }

    /// The expression of a dimension, of which the edit may have made another.
    std::optional<std::string> textOfDimension(const std::string& id, std::optional<std::string> text,
                                               std::unordered_set<std::string>& done) {
        const auto found = m_now.find(id);
        if (found == m_now.end())
            return text;
        const Constraint &now = *found->second, &before = *m_before.at(id);
        done.insert(id);
        if (now.formula != before.formula)
            text = now.formula.empty() ? std::nullopt : expressionFor(now);
        else if (now.formula.empty() && now.value != before.value)
            text.reset();
        else if (text)
            return text;
        if (!text && !now.formula.empty())
            noteFormula(now);
        else if (!text && before.formula.empty())
            m_notes.push_back("the expression of " + id + " went, for the edit gives it a value of its own");
        return text;
    }

    static void set(pugi::xml_node node, const char* name, const std::string& value) {
        if (node.attribute(name).value() != value)
            node.attribute(name).set_value(value.c_str());
    }

    void addExpression(pugi::xml_node list, const Constraint& dimension) {
        const auto number = m_constraintNumbersNow.find(dimension.id);
        const std::optional<std::string> text = expressionFor(dimension);
        if (number == m_constraintNumbersNow.end() || !text || list.empty()) {
            noteFormula(dimension);
            return;
        }
        pugi::xml_node each = list.append_child("Expression");
        each.append_attribute("path").set_value(("Constraints" + tailOf(number->second, dimension.name)).c_str());
        each.append_attribute("expression").set_value(text->c_str());
    }

    void noteFormula(const Constraint& dimension) {
        m_notes.push_back("the formula of " + dimension.id +
                          " was left out, for expressions of the document cannot say it; its value stays");
    }

    struct Helper {
        int circle = 0, spline = 0, index = 0;
    };

    FcstdSketch& m_sketch;
    const Document& m_after;
    EntityIndex m_entities;
    std::map<std::string, const Constraint*, std::less<>> m_before, m_now;
    pugi::xml_node m_list, m_constraints;
    long m_nextIdentifier;
    std::vector<const Entity*> m_inPlace;                                       // by record; null: none of the drawing
    std::vector<std::pair<const Entity*, std::optional<std::size_t>>> m_added;  // with what it was made of
    std::set<std::size_t> m_gone;                                               // records
    std::vector<int> m_numbers;                                                 // of records, now
    int m_count = 0;
    std::unordered_map<std::string, int> m_byId;
    std::unordered_map<std::string, pugi::xml_node> m_records;
    std::map<std::pair<std::string, int>, int> m_controls;        // by spline and number: the circles
    std::vector<Helper> m_helpers;                                // that were made
    std::vector<std::optional<std::size_t>> m_constraintNumbers;  // of records, now
    std::size_t m_constraintCount = 0;
    std::vector<const Constraint*> m_new;
    std::list<Constraint> m_blocks;                                       // in the place of new ones
    std::unordered_map<std::string, std::size_t> m_constraintNumbersNow;  // by id
    std::unordered_map<std::string, const Constraint*> m_byName;          // dimensions
    std::vector<std::string> m_notes;
};

/// The text of the document with other properties of the sketch.
std::string patchedText(std::string_view text, FcstdSketch& sketch) {
    std::vector<FcstdSketch::Part*> parts{&sketch.geometry, &sketch.constraints, &sketch.expressions};
    std::sort(parts.begin(), parts.end(), [](const auto* a, const auto* b) { return a->range.begin < b->range.begin; });
    std::string patched;
    std::size_t done = 0;
    for (FcstdSketch::Part* part : parts) {
        if (part->range.end == 0)
            continue;
        patched.append(text.substr(done, part->range.begin - done)).append(partText(part->tree, text, part->range));
        done = part->range.end;
    }
    return patched.append(text.substr(done));
}

}  // namespace

FcstdOutput patchedFcstd(std::string_view archive, const std::string& sketch, const Document& after,
                         const std::string& file) {
    const std::string text = documentTextOf(archive, file);
    FcstdSketch original(text, sketch, file);
    if (original.drawing == after)
        return {std::string(archive), {}};
    FcstdPatch patch(original, after);
    patch.apply();
    FcstdOutput output{withDocumentText(archive, patchedText(text, original), file), patch.notes()};
    for (const Parameter& parameter : after.parameters)
        output.notes.push_back("the parameter " + parameter.name + " was left out");
    return output;
}

}  // namespace holdfast::formats
