#include "document/checks/DocumentCheck.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "document/ConstraintNumbers.h"
#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/checks/ConstraintCheck.h"
#include "document/checks/ShapeCheck.h"
#include "document/formulas/Calculation.h"
#include "document/text/DrawingError.h"
#include "document/text/NumberText.h"
#include "document/text/Suggest.h"

namespace holdfast::document {
namespace {

using Positions = std::unordered_map<std::string_view, std::size_t>;

/// Finds the first of the items with one id. One flat table without a list behind each slot: a large drawing asks for
/// every id once, and each look elsewhere costs more than the comparison.
class FirstWithId {
public:
    explicit FirstWithId(std::size_t count) : m_slots(std::bit_ceil(2 * count + 1)) {}

    /// The item itself, unless one before it had its id.
    template <class IdOf>
    std::size_t take(std::size_t item, const IdOf& idOf) {
        const std::size_t hash = std::hash<std::string_view>()(idOf(item));
        const auto mark = static_cast<std::uint32_t>(hash >> 32U);
        for (std::size_t at = hash;; ++at) {
            Slot& slot = m_slots[at & (m_slots.size() - 1)];
            if (slot.number == 0) {
                slot = {mark, static_cast<std::uint32_t>(item + 1)};
                return item;
            }
            if (slot.mark == mark && idOf(slot.number - 1) == idOf(item))
                return slot.number - 1;
        }
    }

private:
    struct Slot {
        std::uint32_t mark = 0, number = 0;  // of the id, and of the item from 1; 0: free
    };
    std::vector<Slot> m_slots;
};

class Checker {
public:
    Checker(const Document& document, const std::string& fileName) : m_document(document), m_fileName(fileName) {}

    void check() {
        checkUnit();
        checkConstraintNumbers();
        checkPlane();
        checkLayers();
        checkEntities();
        checkConstraints();
        checkMembers();
        checkOwnership();
        checkFormulas();
    }

private:
    [[noreturn]] void fail(const std::string& where, Fault fault) const {
        fault.place = fault.place.empty() ? where : where + "/" + fault.place;
        throw DrawingError(m_fileName, std::move(fault));
    }

    void checkUnit() const {
        constexpr std::string_view units[] = {"um", "mm", "cm", "m", "in", "ft"};
        for (const std::string_view unit : units) {
            if (m_document.lengthUnit == unit)
                return;
        }
        fail("/units/length", {"", inQuotes(m_document.lengthUnit),
                               "a unit of length: " + oneOf(units) + suggestion(m_document.lengthUnit, units)});
    }

    void checkConstraintNumbers() const {
        if (m_document.constraintNumbers > kMostConstraintNumbers)
            fail("/constraint_numbers", {"", "a number of constraints that cannot be",
                                         "a whole number from 0 to " + std::to_string(kMostConstraintNumbers)});
    }

    void checkPlane() const {
        if (!m_document.plane)
            return;
        const Plane& plane = *m_document.plane;
        checkAxis("/plane/origin", plane.origin, false);
        checkAxis("/plane/x_axis", plane.xAxis, true);
        checkAxis("/plane/y_axis", plane.yAxis, true);
        if (std::abs(dot(plane.xAxis, plane.yAxis)) > kUnitTolerance)
            fail("/plane/y_axis", {"", "an axis that is not perpendicular to x_axis", "two perpendicular axes"});
    }

    void checkAxis(const std::string& where, const std::array<double, 3>& axis, bool ofLengthOne) const {
        const double square = dot(axis, axis);
        if (!std::isfinite(square))
            fail(where, {"", "a number that is not finite", "three finite numbers"});
        if (ofLengthOne && std::abs(square - 1.0) > kUnitTolerance)
            fail(where, {"", "an axis whose length is not 1", "a unit vector"});
    }

    void checkLayers() const {
        std::set<std::string_view> names;
        for (std::size_t i = 0; i < m_document.layers.size(); ++i) {
            const Layer& layer = m_document.layers[i];
            const std::string where = "/layers/" + std::to_string(i);
            if (layer.name.empty())
                fail(where + "/name", {"", "an empty name", "the name of a layer"});
            if (!names.insert(layer.name).second)
                fail(where + "/name", {"", inQuotes(layer.name) + " once more", "each layer once"});
            checkLook(where, layer.colour, layer.weight);
        }
    }

    void checkLook(const std::string& where, const Colour& colour, int weight) const {
        constexpr std::uint32_t lastOfPalette = 255, white = 0xFFFFFF;
        constexpr int heaviest = 211;
        if (colour.kind == Colour::Kind::index && (colour.value == 0 || colour.value > lastOfPalette))
            fail(where + "/colour", {"", "a colour that is not in the palette", "a number from 1 to 255"});
        if (colour.kind == Colour::Kind::rgb && colour.value > white)
            fail(where + "/colour", {"", "a colour beyond white", "two digits each of red, green and blue"});
        if (weight < kWeightDefault || weight > heaviest)
            fail(where + "/weight", {"", "a width out of range", "0 to 2.11 millimetres"});
    }

    static double dot(const std::array<double, 3>& a, const std::array<double, 3>& b) {
        return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
    }

    template <class Item>
    void checkIds(const std::vector<Item>& items, const std::string& list) const {
        const auto idOf = [&](std::size_t i) { return std::string_view(items[i].id); };
        FirstWithId firsts(items.size());
        for (std::size_t i = 0; i < items.size(); ++i) {
            const auto where = [&] { return list + std::to_string(i) + "/id"; };
            if (items[i].id.empty())
                fail(where(), {"", "an empty id", "an id of at least one letter"});
            const std::size_t first = firsts.take(i, idOf);
            if (first != i)
                fail(
                    where(),
                    {"", "the id " + inQuotes(items[i].id) + ", which " + list + std::to_string(first) + " has already",
                     "an id of its own"});
        }
    }

    void checkEntities() const {
        checkIds(m_document.entities, "/entities/");
        for (std::size_t i = 0; i < m_document.entities.size(); ++i) {
            if (std::optional<Fault> fault = faultIn(m_document.entities[i].shape))
                fail("/entities/" + std::to_string(i), std::move(*fault));
            if (const SharedLook& look = m_document.entities[i].look; !look.isUsual())
                checkLook("/entities/" + std::to_string(i), look->colour, look->weight);
        }
    }

    void checkConstraints() const {
        checkIds(m_document.constraints, "/constraints/");
        if (m_document.constraints.empty())
            return;
        const EntityIndex entities(m_document);
        for (std::size_t i = 0; i < m_document.constraints.size(); ++i) {
            if (std::optional<Fault> fault = faultIn(m_document.constraints[i], entities))
                fail("/constraints/" + std::to_string(i), std::move(*fault));
        }
    }

    void checkMembers() {
        m_owner.assign(m_document.constraints.size(), kNobody);
        for (std::size_t i = 0; i < m_document.constraints.size(); ++i) {
            const Constraint& constraint = m_document.constraints[i];
            if (constraint.members.empty() && constraint.type != ConstraintType::composite)
                continue;
            const std::string where = "/constraints/" + std::to_string(i);
            if (!ownsMembers(constraint.type) && !constraint.members.empty())
                fail(where + "/members",
                     {"", "members of a constraint of type " + std::string(typeName(constraint.type)),
                      "members of composite and g2_smooth constraints only"});
            if (constraint.type == ConstraintType::composite && constraint.members.empty())
                fail(where,
                     {"", "a composite without members", "the ids of the constraints that it owns in \"members\""});
            for (std::size_t k = 0; k < constraint.members.size(); ++k)
                checkMember(i, constraint.members[k], where + "/members/" + std::to_string(k));
        }
    }

    void checkMember(std::size_t owner, const std::string& id, const std::string& where) {
        if (m_constraints.empty())
            for (std::size_t i = 0; i < m_document.constraints.size(); ++i)
                m_constraints.emplace(m_document.constraints[i].id, i);
        const auto member = m_constraints.find(id);
        if (member == m_constraints.end())
            fail(where, {"", "the id " + inQuotes(id) + ", which no constraint has",
                         "the id of a constraint" + suggestionFor(id)});
        std::size_t& knownOwner = m_owner[member->second];
        if (knownOwner != kNobody)
            fail(where, {"",
                         "the member " + inQuotes(id) + ", which " + inQuotes(m_document.constraints[knownOwner].id) +
                             " owns already",
                         "one owner for each constraint"});
        knownOwner = owner;
    }

    std::string suggestionFor(const std::string& id) const {
        std::vector<std::string_view> ids;
        for (const Constraint& constraint : m_document.constraints)
            ids.emplace_back(constraint.id);
        return suggestion(id, ids);
    }

    /// Every constraint has one owner at most, so a walk from owner to owner ends at a top-level constraint or comes
    /// back to itself. Each is walked over once: marks say which walk has seen it.
    void checkOwnership() const {
        std::vector<std::size_t> walk(m_owner.size(), kNobody);
        for (std::size_t i = 0; i < m_owner.size(); ++i) {
            std::size_t at = i;
            while (at != kNobody && walk[at] == kNobody) {
                walk[at] = i;
                at = m_owner[at];
            }
            if (at != kNobody && walk[at] == i)
                fail("/constraints/" + std::to_string(at) + "/members",
                     {"",
                      "the constraint " + inQuotes(m_document.constraints[at].id) + " as a member of itself" +
                          (m_owner[at] == at ? "" : " through " + inQuotes(m_document.constraints[m_owner[at]].id)),
                      "members that do not own their owner"});
        }
    }

    void checkFormulas() const {
        checkParameterNames();
        const auto hasFormula = [](const Constraint& constraint) { return !constraint.formula.empty(); };
        if (m_document.parameters.empty() &&
            std::none_of(m_document.constraints.begin(), m_document.constraints.end(), hasFormula))
            return;
        Calculation calculation = calculationOver(m_document);
        for (std::size_t i = 0; i < m_document.parameters.size(); ++i)
            checkFormula(calculation, itemOf(m_document.parameters[i]), m_document.parameters[i].value,
                         "/parameters/" + std::to_string(i));
        for (std::size_t i = 0; i < m_document.constraints.size(); ++i)
            if (const Constraint& constraint = m_document.constraints[i]; hasFormula(constraint))
                checkFormula(calculation, itemOf(constraint), *constraint.value, "/constraints/" + std::to_string(i));
    }

    /// A fault in another formula on the way is told where that one stands, since all are checked.
    void checkFormula(Calculation& calculation, const FormulaItem& item, double value, const std::string& where) const {
        const Quantity result = [&] {
            try {
                return calculation.value(item);
            } catch (const FormulaError& error) {
                const std::string at = error.owner() == item.name
                                           ? std::string()
                                           : ", whose " + error.owner() + " is " + inQuotes(error.formula());
                fail(where + "/formula", {"", inQuotes(item.formula) + at,
                                          "a formula with a value: column " + std::to_string(error.column()) + ", " +
                                              error.message() + error.hint()});
            }
        }();
        if (!agrees(value, result.value))
            fail(where + "/value",
                 {"", numberText(value),
                  numberText(result.value) + ", which the formula " + inQuotes(item.formula) + " comes to"});
    }

    /// The same name for two things would leave open what a formula means.
    void checkParameterNames() const {
        if (m_document.parameters.empty())
            return;
        std::unordered_map<std::string_view, std::string> taken;
        for (std::size_t i = 0; i < m_document.constraints.size(); ++i) {
            const Constraint& constraint = m_document.constraints[i];
            taken.emplace(constraint.id, "/constraints/" + std::to_string(i) + "/id");
            if (!constraint.name.empty())
                taken.emplace(constraint.name, "/constraints/" + std::to_string(i) + "/name");
        }
        for (std::size_t i = 0; i < m_document.parameters.size(); ++i) {
            const std::string where = "/parameters/" + std::to_string(i) + "/name";
            const std::string& name = m_document.parameters[i].name;
            if (const std::string fault = faultInFormulaName(name); !fault.empty())
                fail(where, {"", inQuotes(name), "a name for formulas: " + fault});
            if (m_document.parameters[i].formula.empty())
                fail("/parameters/" + std::to_string(i) + "/formula",
                     {"", "an empty formula", "a formula, such as \"80\" or \"width / 2 + 3 mm\""});
            if (const auto [other, isNew] = taken.emplace(name, where); !isNew)
                fail(where, {"", "the name " + inQuotes(name) + ", which " + other->second + " has already",
                             "a name of its own"});
        }
    }

    static constexpr std::size_t kNobody = static_cast<std::size_t>(-1);
    static constexpr double kUnitTolerance = 1e-6;

    const Document& m_document;
    const std::string& m_fileName;
    Positions m_constraints;           // by id, once a constraint owns others
    std::vector<std::size_t> m_owner;  // of each constraint: the position of the one that owns it
};

}  // namespace

void checkDocument(const Document& document, const std::string& fileName) {
    Checker(document, fileName).check();
}

}  // namespace holdfast::document
