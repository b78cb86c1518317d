#include "document/formulas/Formula.h"

#include <cmath>
#include <utility>

#include "document/formulas/FormulaFunctions.h"
#include "document/formulas/FormulaNode.h"
#include "document/formulas/FormulaReader.h"
#include "document/text/Suggest.h"

namespace holdfast::document {

namespace {

void collectNames(const FormulaNode& node, std::vector<Formula::NameInIt>& names) {
    if (node.kind == FormulaNode::Kind::name)
        names.push_back({node.word, node.column});
    for (const FormulaNode& operand : node.operands)
        collectNames(operand, names);
}

class Evaluator {
public:
    Evaluator(std::string_view lengthUnit, const Formula::ValueOf& valueOf)
        : m_lengthUnit(lengthUnit), m_valueOf(valueOf) {}

    Quantity value(const FormulaNode& node) const {
        using Kind = FormulaNode::Kind;
        switch (node.kind) {
            case Kind::number:
                return {node.number};
            case Kind::unit:
                return raised(*unitNamed(node.word, m_lengthUnit), {static_cast<double>(node.power)}, node.column);
            case Kind::name:
                return m_valueOf({node.word, node.column});
            case Kind::negative:
                return negative(value(node.operands[0]));
            case Kind::operation:
                return finite(result(node), node.column);
            case Kind::function:
                return finite(called(node), node.column);
        }
        return {};
    }

private:
    static Quantity negative(Quantity quantity) {
        quantity.value = -quantity.value;
        return quantity;
    }

    Quantity result(const FormulaNode& node) const {
        Quantity a = value(node.operands[0]), b = value(node.operands[1]);
        switch (node.operation) {
            case '*':
                return {a.value * b.value, a.length + b.length, a.angle + b.angle};
            case '/':
                if (b.value == 0.0)
                    throw FormulaError("division by zero", node.column);
                return {a.value / b.value, a.length - b.length, a.angle - b.angle};
            case '^':
                return raised(a, b, node.column);
            case '-':
                bringTogether(a, b, "subtracted", node.column);
                return {a.value - b.value, a.length, a.angle};
            default:
                bringTogether(a, b, "added", node.column);
                return {a.value + b.value, a.length, a.angle};
        }
    }

    Quantity called(const FormulaNode& node) const {
        std::vector<Quantity> values;
        for (const FormulaNode& operand : node.operands)
            values.push_back(value(operand));
        return functionNamed(node.word)->value({node.word, values, node.column});
    }

    std::string_view m_lengthUnit;
    const Formula::ValueOf& m_valueOf;
};

}  // namespace

Formula::Formula(std::string_view text) : m_root(std::make_unique<FormulaNode>(FormulaReader(text).read())) {
    collectNames(*m_root, m_names);
}

Formula::~Formula() = default;
Formula::Formula(Formula&&) noexcept = default;
Formula& Formula::operator=(Formula&&) noexcept = default;

Quantity Formula::value(std::string_view lengthUnit, const ValueOf& valueOf) const {
    return Evaluator(lengthUnit, valueOf).value(*m_root);
}

std::string faultInFormulaName(std::string_view name) {
    if (!isWord(name))
        return inQuotes(name) +
               " cannot stand in a formula as it is; take letters, digits and underscores, no digit "
               "first";
    if (unitNamed(name, "mm"))
        return std::string(name) + " is a unit";
    if (functionNamed(name) != nullptr)
        return std::string(name) + " is a function";
    if (name == "pi")
        return "pi is a number already";
    return {};
}

}  // namespace holdfast::document
