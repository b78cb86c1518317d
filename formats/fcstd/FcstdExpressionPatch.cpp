#include "formats/fcstd/FcstdExpressionPatch.h"

#include <utility>

#include "document/Names.h"
#include "formats/fcstd/FcstdExpressions.h"
#include "geometry/ConstraintKinds.h"

namespace holdfast::formats {
namespace {

std::string tailOfNumber(std::size_t number, const std::string& name) {
    FcstdNames names;
    names.constraints.assign(number + 1, "");
    names.constraints[number] = name;
    return names.tail(number);
}

void putWhereChanged(pugi::xml_node node, const char* name, const std::string& value) {
    if (node.attribute(name).value() != value)
        node.attribute(name).set_value(value.c_str());
}

}  // namespace

FcstdExpressionPatch::FcstdExpressionPatch(FcstdSketch& sketch, const Document& after,
                                           const FcstdConstraintPatch& constraints, std::vector<std::string>& notes)
    : m_sketch(sketch),
      m_after(after),
      m_constraints(constraints),
      m_list(sketch.expressions.list("ExpressionEngine")),
      m_notes(notes) {
    for (const Constraint& constraint : after.constraints)
        if (!constraint.name.empty() && isDimension(constraint.type))
            m_byName.emplace(constraint.name, &constraint);
}

void FcstdExpressionPatch::apply() {
    std::vector<pugi::xml_node> all;
    for (const pugi::xml_node& each : m_list.children("Expression"))
        all.push_back(each);
    for (const pugi::xml_node& each : all)
        if (!patch(each))
            m_list.remove_child(each);
    for (const Constraint& constraint : m_after.constraints)
        if (!constraint.formula.empty() && !m_done.contains(constraint.id))
            add(constraint);
}

/// False where it goes.
bool FcstdExpressionPatch::patch(pugi::xml_node each) {
    const std::string path = each.attribute("path").value();
    const auto tail = [this](std::size_t constraint) { return tailOf(constraint); };
    const std::optional<std::string> nowPath = renamed(path, m_sketch.names, tail);
    std::optional<std::string> text = renamed(each.attribute("expression").value(), m_sketch.names, tail);
    if (!nowPath)
        return false;
    if (const std::optional<std::size_t> owner = m_sketch.names.constraintAt(path))
        text = textOfDimension(*owner, std::move(text));
    else if (!text)
        m_notes.push_back("the expression of " + path + " went with a constraint that it names");
    if (!text)
        return false;
    putWhereChanged(each, "path", *nowPath);
    putWhereChanged(each, "expression", *text);
    return true;
}

/// The expression of a dimension, of which the edit may have made another.
std::optional<std::string> FcstdExpressionPatch::textOfDimension(std::size_t record, std::optional<std::string> text) {
    const Constraint* found = m_constraints.constraintIn(record);
    if (found == nullptr)
        return text;
    const Constraint &now = *found, &before = m_constraints.constraintBefore(now.id);
    m_done.insert(now.id);
    if (now.formula != before.formula)
        text = now.formula.empty() ? std::nullopt : expressionFor(now);
    else if (now.formula.empty() && now.value != before.value)
        text.reset();
    else if (text)
        return text;
    if (!text && !now.formula.empty())
        noteFormula(now);
    else if (!text && before.formula.empty())
        m_notes.push_back("the expression of " + now.id + " went, for the edit gives it a value of its own");
    return text;
}

void FcstdExpressionPatch::add(const Constraint& dimension) {
    const std::optional<std::size_t> number = m_constraints.numberOf(dimension.id);
    const std::optional<std::string> text = expressionFor(dimension);
    if (!number || !text || m_list.empty()) {
        noteFormula(dimension);
        return;
    }
    pugi::xml_node each = m_list.append_child("Expression");
    each.append_attribute("path").set_value(("Constraints" + tailOfNumber(*number, dimension.name)).c_str());
    each.append_attribute("expression").set_value(text->c_str());
}

/// How expressions call the constraint of a record now; nothing for what has gone.
std::optional<std::string> FcstdExpressionPatch::tailOf(std::size_t record) const {
    const std::optional<std::size_t> number = m_constraints.numberNow(record);
    if (!number)
        return std::nullopt;
    const Constraint* now = m_constraints.constraintIn(record);
    return tailOfNumber(*number, now == nullptr ? m_sketch.names.constraints[record] : now->name);
}

/// How expressions call a dimension that formulas know by its id or name.
std::optional<std::string> FcstdExpressionPatch::expressionName(const std::string& name) const {
    const Constraint* found = m_constraints.constraintNow(name);
    if (found == nullptr)
        if (const auto byName = m_byName.find(name); byName != m_byName.end())
            found = byName->second;
    const std::optional<std::size_t> number = found == nullptr ? std::nullopt : m_constraints.numberOf(found->id);
    return number ? std::optional("Constraints" + tailOfNumber(*number, found->name)) : std::nullopt;
}

std::optional<std::string> FcstdExpressionPatch::expressionFor(const Constraint& dimension) const {
    const bool isAngle = traitsOf(dimension.type).value == ConstraintValue::angle;
    return expressionOf(
        dimension.formula, [this](const std::string& name) { return expressionName(name); }, isAngle ? "deg" : "mm");
}

void FcstdExpressionPatch::noteFormula(const Constraint& dimension) {
    m_notes.push_back("the formula of " + dimension.id +
                      " was left out, for expressions of the document cannot say it; its value stays");
}

}  // namespace holdfast::formats
