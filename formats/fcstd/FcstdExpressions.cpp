#include "formats/fcstd/FcstdExpressions.h"

#include <algorithm>
#include <charconv>
#include <span>

#include "document/formulas/Formula.h"
#include "document/formulas/FormulaReader.h"

namespace holdfast::formats {
namespace {

constexpr std::string_view kList = "Constraints";
/// Functions that mean the same on both sides. Remainders differ in their sign.
constexpr std::string_view kFunctions[] = {"sqrt", "abs", "min", "max",  "round", "floor", "ceil", "hypot",
                                           "sin",  "cos", "tan", "asin", "acos",  "atan",  "atan2"};
constexpr std::string_view kUnits[] = {"um", "mm", "cm", "m", "in", "ft", "deg", "rad"};

bool isOneOf(std::string_view word, std::span<const std::string_view> words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

bool isDigitSign(char c) {
    return c >= '0' && c <= '9';
}

/// Of a name: letters outside of ASCII, too.
bool isNameSign(char c) {
    return isDigitSign(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           (static_cast<unsigned char>(c) & 0x80U) != 0;
}

std::string_view nameAt(std::string_view text, std::size_t at) {
    std::size_t end = at;
    while (end < text.size() && isNameSign(text[end]))
        ++end;
    return text.substr(at, end - at);
}

std::string_view numberAt(std::string_view text, std::size_t at) {
    double value = 0.0;
    const char* begin = text.data() + at;
    const auto [end, error] = std::from_chars(begin, text.data() + text.size(), value);
    return error == std::errc() ? std::string_view(begin, static_cast<std::size_t>(end - begin)) : std::string_view();
}

/// A constraint of the own sketch in an expression.
struct Reference {
    std::size_t constraint = 0;
    std::size_t tail = 0, end = 0;  // where ".Width" or "[3]" stands
};

/// What stands before the list when it is that of the own sketch.
std::size_t afterOwner(std::string_view text, std::size_t at, const FcstdNames& names) {
    const std::string quoted = "<<" + names.label + ">>.", named = names.sketch + ".";
    for (const std::string_view owner : {std::string_view(quoted), std::string_view(named), std::string_view(".")})
        if (text.substr(at).starts_with(std::string(owner) + std::string(kList)))
            return at + owner.size();
    return at;
}

std::optional<Reference> numbered(std::string_view text, std::size_t tail, const FcstdNames& names) {
    std::size_t number = 0;
    const char* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data() + tail + 1, last, number);
    if (error != std::errc() || end == last || *end != ']' || number >= names.constraints.size())
        return std::nullopt;
    return Reference{number, tail, static_cast<std::size_t>(end - text.data()) + 1};
}

/// The constraint that the text names from here on.
std::optional<Reference> referenceAt(std::string_view text, std::size_t at, const FcstdNames& names) {
    at = afterOwner(text, at, names);
    if (nameAt(text, at) != kList)
        return std::nullopt;
    const std::size_t tail = at + kList.size();
    if (tail >= text.size())
        return std::nullopt;
    if (text[tail] == '[')
        return numbered(text, tail, names);
    const std::string_view name = text[tail] == '.' ? nameAt(text, tail + 1) : std::string_view();
    const auto found = std::find(names.constraints.begin(), names.constraints.end(), name);
    if (name.empty() || found == names.constraints.end())
        return std::nullopt;
    return Reference{static_cast<std::size_t>(found - names.constraints.begin()), tail, tail + 1 + name.size()};
}

bool isExpressionName(std::string_view name) {
    return !name.empty() && !isDigitSign(name.front()) && nameAt(name, 0) == name;
}

std::string asFormulaName(const std::string& name) {
    return document::isWord(name) && document::faultInFormulaName(name).empty() ? name : "\"" + name + "\"";
}

/// What one sign of an expression is in a formula.
std::optional<std::string> signOf(std::string_view text, std::size_t at) {
    constexpr std::string_view degree = "\u00b0";
    if (text.substr(at).starts_with(degree))
        return std::string(degree);
    if (text[at] == ';')
        return ",";
    if (std::string_view("+-*/^(), \t\r\n").find(text[at]) != std::string_view::npos)
        return std::string(1, text[at]);
    return std::nullopt;
}

std::optional<std::string> wordOf(std::string_view word, char next) {
    const bool isKnown = next == '(' ? isOneOf(word, kFunctions) : word == "pi" || isOneOf(word, kUnits);
    return isKnown ? std::optional<std::string>(word) : std::nullopt;
}

/// A formula, piece by piece, on its way to an expression.
class ExpressionWriter {
public:
    using RefOf = std::function<std::optional<std::string>(const std::string& name)>;

    ExpressionWriter(std::string_view formula, const RefOf& refOf, std::string_view unit)
        : m_text(formula), m_refOf(refOf), m_unit(unit) {}

    std::optional<std::string> write() {
        while (m_at < m_text.size())
            if (!take())
                return std::nullopt;
        return m_out;
    }

private:
    bool take() {
        if (isDigitSign(m_text[m_at]) || m_text[m_at] == '.')
            return takeNumber();
        if (m_text[m_at] == '"')
            return takeQuoted();
        if (const std::optional<std::string> sign = signOf(m_text, m_at)) {
            m_out += *sign == "," ? ";" : *sign;
            m_at += sign->size();
            return true;
        }
        return isNameSign(m_text[m_at]) && takeWord();
    }

    bool takeNumber() {
        const std::string_view number = numberAt(m_text, m_at);
        if (number.empty())
            return false;
        const bool isTerm = isBeforeTerm();
        m_at += number.size();
        m_out += number;
        if (isTerm && isBehindTerm())
            m_out += " " + std::string(m_unit);
        return true;
    }

    /// A number between sums, outside of brackets, is a term of the dimension's own measure.
    bool isBeforeTerm() const {
        const std::size_t last = m_out.find_last_not_of(' ');
        return depth() == 0 && (last == std::string::npos || m_out[last] == '+' || m_out[last] == '-');
    }
    bool isBehindTerm() const {
        const std::size_t next = m_text.find_first_not_of(' ', m_at);
        return next == std::string_view::npos || m_text[next] == '+' || m_text[next] == '-';
    }
    std::ptrdiff_t depth() const {
        return std::count(m_out.begin(), m_out.end(), '(') - std::count(m_out.begin(), m_out.end(), ')');
    }

    bool takeQuoted() {
        const std::size_t end = m_text.find('"', m_at + 1);
        if (end == std::string_view::npos)
            return false;
        const std::string name(m_text.substr(m_at + 1, end - m_at - 1));
        m_at = end + 1;
        return put(m_refOf(name));
    }

    bool takeWord() {
        const std::string word(nameAt(m_text, m_at));
        m_at += word.size();
        const std::size_t next = m_text.find_first_not_of(' ', m_at);
        if (word == "inch")
            return put("in");
        if (const std::optional<std::string> known = wordOf(word, next == std::string_view::npos ? '\0' : m_text[next]))
            return put(known);
        return put(m_refOf(word));
    }

    bool put(const std::optional<std::string>& text) {
        m_out += text.value_or("");
        return text.has_value();
    }

    std::string_view m_text;
    const RefOf& m_refOf;
    std::string_view m_unit;
    std::size_t m_at = 0;
    std::string m_out;
};

}  // namespace

std::optional<std::size_t> FcstdNames::constraintAt(std::string_view path) const {
    const std::optional<Reference> found = referenceAt(path, 0, *this);
    return found && found->end == path.size() ? std::optional(found->constraint) : std::nullopt;
}

std::string FcstdNames::tail(std::size_t constraint) const {
    const std::string& name = constraints[constraint];
    return isExpressionName(name) ? "." + name : "[" + std::to_string(constraint) + "]";
}

std::optional<std::string> formulaOf(std::string_view expression, const FcstdNames& names,
                                     const std::function<std::optional<std::string>(std::size_t constraint)>& nameOf) {
    std::string formula;
    for (std::size_t at = 0; at < expression.size();) {
        std::optional<std::string> piece;
        std::size_t end = at;
        if (const std::optional<Reference> reference = referenceAt(expression, at, names)) {
            piece = nameOf(reference->constraint);
            piece = piece ? std::optional(asFormulaName(*piece)) : piece;
            end = reference->end;
        } else if (const std::string_view number = numberAt(expression, at); isDigitSign(expression[at])) {
            piece = std::string(number);
            end = at + number.size();
        } else if ((piece = signOf(expression, at))) {
            end = at + (*piece == "," ? 1 : piece->size());
        } else if (const std::string_view word = nameAt(expression, at); !word.empty()) {
            end = at + word.size();
            const std::size_t next = expression.find_first_not_of(' ', end);
            piece = wordOf(word, next == std::string_view::npos ? '\0' : expression[next]);
        }
        if (!piece || end == at)
            return std::nullopt;
        formula += *piece;
        at = end;
    }
    return formula;
}

std::optional<std::string> expressionOf(std::string_view formula,
                                        const std::function<std::optional<std::string>(const std::string& name)>& refOf,
                                        std::string_view unit) {
    return ExpressionWriter(formula, refOf, unit).write();
}

std::optional<std::string> renamed(std::string_view expression, const FcstdNames& names,
                                   const std::function<std::optional<std::string>(std::size_t constraint)>& tailOf) {
    std::string text;
    std::size_t done = 0;
    bool isInside = false;  // of a name, or of what another object has
    for (std::size_t at = 0; at < expression.size();) {
        const std::optional<Reference> reference = isInside ? std::nullopt : referenceAt(expression, at, names);
        if (!reference) {
            isInside = isNameSign(expression[at]) || expression[at] == '.' || expression[at] == '>';
            ++at;
            continue;
        }
        const std::optional<std::string> tail = tailOf(reference->constraint);
        if (!tail)
            return std::nullopt;
        text.append(expression.substr(done, reference->tail - done)).append(*tail);
        at = done = reference->end;
    }
    return text.append(expression.substr(done));
}

}  // namespace holdfast::formats
