#include "formats/fcstd/FcstdConstraintPatch.h"

#include <set>
#include <unordered_set>
#include <variant>

#include "formats/fcstd/FcstdJoints.h"
#include "formats/fcstd/FcstdShapes.h"
#include "geometry/ConstraintKinds.h"

namespace holdfast::formats {
namespace {

void putState(pugi::xml_node record, const Constraint& now, const Constraint* before) {
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

}  // namespace

FcstdConstraintPatch::FcstdConstraintPatch(FcstdSketch& sketch, const Document& after, FcstdGeometryPatch& geometry,
                                           std::vector<std::string>& notes)
    : m_sketch(sketch),
      m_after(after),
      m_geometry(geometry),
      m_entities(after),
      m_before(byId(sketch.drawing.constraints)),
      m_now(byId(after.constraints)),
      m_list(sketch.constraints.list("ConstraintList")),
      m_notes(notes) {}

FcstdConstraintPatch::ById FcstdConstraintPatch::byId(const std::vector<Constraint>& constraints) {
    ById found;
    for (const Constraint& constraint : constraints)
        found.emplace(constraint.id, &constraint);
    return found;
}

const Constraint* FcstdConstraintPatch::constraintNow(const std::string& id) const {
    const auto found = m_now.find(id);
    return found == m_now.end() ? nullptr : found->second;
}

const Constraint* FcstdConstraintPatch::constraintIn(std::size_t record) const {
    const FcstdConstraintRecord& each = m_sketch.constraintRecords[record];
    return each.isRead ? constraintNow(each.id) : nullptr;
}

std::optional<std::size_t> FcstdConstraintPatch::numberOf(const std::string& id) const {
    const auto found = m_numbersById.find(id);
    return found == m_numbersById.end() ? std::nullopt : std::optional(found->second);
}

void FcstdConstraintPatch::apply() {
    patchRecords();
    gatherFixedEnds();
    addNew();
    alignNewCircles();
}

void FcstdConstraintPatch::patchRecords() {
    const std::set<std::string, std::less<>> idle = idleCoincidences(m_sketch.drawing, m_after);
    for (const FcstdConstraintRecord& each : m_sketch.constraintRecords) {
        const bool stays = each.isRead ? !idle.contains(each.id) && patch(each) : renumber(each);
        m_numbers.push_back(stays ? std::optional(m_count++) : std::nullopt);
        if (!stays)
            m_list.remove_child(each.record);
        else if (each.isRead)
            m_numbersById.emplace(each.id, *m_numbers.back());
    }
    for (const Constraint& constraint : m_after.constraints)
        if (!m_before.contains(constraint.id) && !idle.contains(constraint.id))
            m_new.push_back(&constraint);
}

/// False where the record goes.
bool FcstdConstraintPatch::patch(const FcstdConstraintRecord& each) {
    const Constraint* now = constraintNow(each.id);
    if (!each.companion.empty() && (now == nullptr) == m_now.contains(each.companion)) {
        noteNoTerms(now == nullptr ? *m_now.at(each.companion) : *now);
        return false;
    }
    if (now == nullptr)
        return false;
    const Constraint& before = constraintBefore(each.id);
    if (now->type != before.type || now->refs != before.refs || !renumber(each)) {
        if (!putConstraint(each.record, *now))
            return false;
    } else if (now->value && now->value != before.value) {
        putNumber(each.record, "Value", *now->value);
    }
    putState(each.record, *now, &before);
    return true;
}

/// False where something that it is on has gone.
bool FcstdConstraintPatch::renumber(const FcstdConstraintRecord& each) {
    FcstdRefs refs = refsIn(each.record);
    for (FcstdRef& ref : refs) {
        const std::optional<int> number = m_geometry.numberNow(ref.geometry);
        if (!number) {
            noteLost(each);
            return false;
        }
        ref.geometry = *number;
    }
    putRefs(each.record, refs);
    return true;
}

/// Helpers go with their spline; what was not read is missed.
void FcstdConstraintPatch::noteLost(const FcstdConstraintRecord& each) {
    if (!each.isRead && !each.isFolded)
        m_notes.push_back(each.id + " went with what it was on");
}

bool FcstdConstraintPatch::putConstraint(pugi::xml_node record, const Constraint& constraint) {
    const std::optional<FcstdConstraint> terms = inFcstdTerms(
        constraint, m_entities, [this](const Place& place) { return m_geometry.refOf(place); }, m_sketch.isNewer);
    if (terms)
        putTerms(record, *terms);
    else
        noteNoTerms(constraint);
    return terms.has_value();
}

void FcstdConstraintPatch::noteNoTerms(const Constraint& constraint) {
    m_notes.push_back(constraint.id + ", " + std::string(traitsOf(constraint.type).label) +
                      " of a kind that the document does not have, was left out");
}

/// A line is blocked there with both of its ends; what is fixed here may slide along itself.
bool FcstdConstraintPatch::isFixedEnd(const Constraint& constraint, PlaceKind end) const {
    if (constraint.type != ConstraintType::fixed || constraint.refs[0].kind != end)
        return false;
    const Entity* entity = m_entities.find(constraint.refs[0].entity);
    return entity != nullptr && std::holds_alternative<LineShape>(entity->shape);
}

/// Of lines whose both ends become fixed, the first end stands for the whole and the other for nothing.
void FcstdConstraintPatch::gatherFixedEnds() {
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

void FcstdConstraintPatch::addNew() {
    for (const Constraint* constraint : m_new) {
        if (constraint->type == ConstraintType::composite)
            continue;  // its members say all
        const pugi::xml_node record = addConstraint(m_list);
        if (putConstraint(record, *constraint)) {
            putState(record, *constraint, nullptr);
            m_numbersById.emplace(constraint->id, m_count++);
        } else {
            m_list.remove_child(record);
        }
    }
}

void FcstdConstraintPatch::alignNewCircles() {
    for (const FcstdControlCircle& each : m_geometry.newCircles()) {
        const pugi::xml_node record = addConstraint(m_list);
        putTerms(record, {FcstdKind::alignment,
                          {FcstdRef{each.circle, FcstdRef::centre}, FcstdRef{each.spline, FcstdRef::whole}, {}},
                          {},
                          FcstdAlignment::control});
        record.attribute("InternalAlignmentIndex").set_value(each.index);
        ++m_count;
    }
}

FcstdUses FcstdConstraintPatch::uses() const {
    FcstdUses uses;
    for (const pugi::xml_node& record : m_list.children("Constrain")) {
        const auto kind = static_cast<FcstdKind>(integerIn(record, "Type"));
        if (kind == FcstdKind::block)
            uses.blocked.insert(refsIn(record)[0].geometry);
        if (kind == FcstdKind::alignment)
            uses.alignments.emplace(refsIn(record)[0].geometry, integerIn(record, "InternalAlignmentType"));
    }
    return uses;
}

}  // namespace holdfast::formats
