#include "document/formulas/FormulaReader.h"

#include <charconv>
#include <cmath>

#include "document/formulas/FormulaFunctions.h"
#include "document/text/Suggest.h"
#include "geometry/Angles.h"

namespace holdfast::document {

namespace {

/// Deeper than anybody writes, and far from what a stack bears.
constexpr int kDeepest = 64;

/// As long as a formula may be: a tree of so many signs is no deeper than a stack bears.
constexpr std::size_t kLongest = 1000;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Every sign of a letter outside of ASCII counts as one.
bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || (static_cast<unsigned char>(c) & 0x80U) != 0;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

}  // namespace

bool isWord(std::string_view name) {
    if (name.empty() || !isLetter(name.front()))
        return false;
    for (const char c : name)
        if (!isLetter(c) && !isDigit(c))
            return false;
    return true;
}

/// Counts how deep brackets, signs and powers stand in each other.
class FormulaReader::Nested {
public:
    explicit Nested(FormulaReader& reader) : m_reader(reader) {
        if (++m_reader.m_depth > kDeepest)
            throw FormulaError("nested more than " + std::to_string(kDeepest) + " deep", m_reader.m_token.column);
    }
    ~Nested() { --m_reader.m_depth; }
    Nested(const Nested&) = delete;
    Nested& operator=(const Nested&) = delete;

private:
    FormulaReader& m_reader;
};

FormulaReader::FormulaReader(std::string_view text) : m_text(text) {
    if (text.size() > kLongest)
        throw FormulaError("longer than " + std::to_string(kLongest) + " signs; part it into parameters", kLongest);
    advance();
}

FormulaNode FormulaReader::read() {
    if (m_token.kind == Token::Kind::end)
        throw FormulaError("expected a formula, such as width / 2 + 3 mm", m_token.column);
    Node root = sum();
    if (m_token.kind == Token::Kind::end)
        return root;
    if (m_token.kind == Token::Kind::word)
        throw FormulaError("expected + - * / or ^ before " + inQuotes(m_token.text), m_token.column,
                           suggestion(m_token.text, unitNames()));
    throw FormulaError("nothing more was expected, found " + inQuotes(m_token.text), m_token.column);
}

void FormulaReader::advance() {
    m_token = next();
}

FormulaReader::Token FormulaReader::next() {
    while (m_at < m_text.size() && isBlank(m_text[m_at]))
        ++m_at;
    if (m_at == m_text.size())
        return {.kind = Token::Kind::end, .column = m_at + 1};
    const char c = m_text[m_at];
    if (isDigit(c) || c == '.')
        return number();
    if (isLetter(c))
        return word();
    if (c == '"')
        return quoted();
    if (std::string_view("+-*/^(),").find(c) == std::string_view::npos)
        throw FormulaError("found " + inQuotes(m_text.substr(m_at, 1)) + ", which means nothing in a formula",
                           m_at + 1);
    return {.kind = Token::Kind::sign, .text = std::string(1, c), .column = ++m_at};
}

FormulaReader::Token FormulaReader::number() {
    Token token{.kind = Token::Kind::number, .column = m_at + 1};
    const char* begin = m_text.data() + m_at;
    const auto [end, error] = std::from_chars(begin, m_text.data() + m_text.size(), token.number);
    token.text = std::string(begin, end);
    if (error == std::errc::result_out_of_range)
        throw FormulaError(inQuotes(token.text) + " is beyond what numbers can be", token.column);
    if (error != std::errc())
        throw FormulaError("expected a number such as 2.5", token.column);
    m_at += token.text.size();
    return token;
}

FormulaReader::Token FormulaReader::word() {
    const std::size_t begin = m_at;
    while (m_at < m_text.size() && (isLetter(m_text[m_at]) || isDigit(m_text[m_at])))
        ++m_at;
    return {.kind = Token::Kind::word, .text = std::string(m_text.substr(begin, m_at - begin)), .column = begin + 1};
}

FormulaReader::Token FormulaReader::quoted() {
    Token token{.kind = Token::Kind::quoted, .column = m_at + 1};
    for (++m_at; m_at < m_text.size() && m_text[m_at] != '"'; ++m_at) {
        if (m_text[m_at] == '\\' && m_at + 1 < m_text.size())
            ++m_at;
        token.text += m_text[m_at];
    }
    if (m_at == m_text.size())
        throw FormulaError("the quote before the name has no end; put another behind it", token.column);
    ++m_at;
    return token;
}

bool FormulaReader::isUnit() const {
    return m_token.kind == Token::Kind::word && unitNamed(m_token.text, "mm").has_value();
}

void FormulaReader::expect(char sign, const char* after) {
    if (!isSign(sign))
        throw FormulaError("expected \"" + std::string(1, sign) + "\" " + after +
                               (m_token.kind == Token::Kind::end ? ", but the formula ends there"
                                                                 : ", found " + inQuotes(m_token.text)),
                           m_token.column);
    advance();
}

FormulaNode FormulaReader::operation(Node left, Node (FormulaReader::*right)()) {
    Node node{.kind = Node::Kind::operation, .column = m_token.column, .operation = m_token.text.front()};
    advance();
    node.operands.push_back(std::move(left));
    node.operands.push_back((this->*right)());
    return node;
}

FormulaNode FormulaReader::sum() {
    Node left = product();
    while (isSign('+') || isSign('-'))
        left = operation(std::move(left), &FormulaReader::product);
    return left;
}

FormulaNode FormulaReader::product() {
    Node left = signedPower();
    while (isSign('*') || isSign('/'))
        left = operation(std::move(left), &FormulaReader::signedPower);
    return left;
}

/// -2^2 is -4, as in mathematics.
FormulaNode FormulaReader::signedPower() {
    const Nested nested(*this);
    if (!isSign('-') && !isSign('+'))
        return power();
    const bool isNegative = isSign('-');
    Node node{.kind = Node::Kind::negative, .column = m_token.column};
    advance();
    Node operand = signedPower();
    if (!isNegative)
        return operand;
    node.operands.push_back(std::move(operand));
    return node;
}

/// 2^3^2 is 2^9.
FormulaNode FormulaReader::power() {
    Node base = withUnit();
    return isSign('^') ? operation(std::move(base), &FormulaReader::signedPower) : std::move(base);
}

/// A unit belongs to the number before it, with a power of its own: 3 mm^2 is an area of 3.
FormulaNode FormulaReader::withUnit() {
    const bool mayHaveUnit = m_token.kind == Token::Kind::number || isSign('(');
    Node value = primary();
    if (!mayHaveUnit || !isUnit())
        return value;
    Node unit{.kind = Node::Kind::unit, .column = m_token.column, .word = m_token.text};
    advance();
    unit.power = unitPower();
    Node node{.kind = Node::Kind::operation, .column = unit.column, .operation = '*'};
    node.operands.push_back(std::move(value));
    node.operands.push_back(std::move(unit));
    return node;
}

int FormulaReader::unitPower() {
    if (!isSign('^'))
        return 1;
    advance();
    const bool isWhole = m_token.kind == Token::Kind::number && m_token.number == std::floor(m_token.number);
    if (!isWhole || m_token.number < 1.0 || m_token.number > 9.0)
        throw FormulaError("expected a whole power of the unit, from 1 to 9", m_token.column);
    const int power = static_cast<int>(m_token.number);
    advance();
    return power;
}

FormulaNode FormulaReader::primary() {
    if (isSign('(')) {
        advance();
        Node inside = sum();
        expect(')', "behind what stands in brackets");
        return inside;
    }
    if (m_token.kind == Token::Kind::number) {
        Node node{.kind = Node::Kind::number, .column = m_token.column, .number = m_token.number};
        advance();
        return node;
    }
    if (m_token.kind == Token::Kind::word || m_token.kind == Token::Kind::quoted)
        return named();
    throw FormulaError(m_token.kind == Token::Kind::end
                           ? std::string("expected a number or a name, but the formula ends there")
                           : "expected a number or a name, found " + inQuotes(m_token.text),
                       m_token.column);
}

FormulaNode FormulaReader::named() {
    const Token name = m_token;
    advance();
    if (name.kind == Token::Kind::word && isSign('('))
        return call(name);
    Node node{.kind = Node::Kind::name, .column = name.column, .word = name.text};
    if (name.kind == Token::Kind::quoted)
        return node;
    if (name.text == "pi") {
        node.kind = Node::Kind::number;
        node.number = kPi;
    } else if (unitNamed(name.text, "mm")) {
        node.kind = Node::Kind::unit;
        node.power = 1;
    }
    return node;
}

FormulaNode FormulaReader::call(const Token& name) {
    const FormulaFunction* function = functionNamed(name.text);
    if (function == nullptr)
        throw FormulaError("there is no function " + name.text, name.column, suggestion(name.text, functionNames()));
    Node node{.kind = Node::Kind::function, .column = name.column, .word = name.text};
    advance();
    if (!isSign(')'))
        for (bool isMore = true; isMore;) {
            node.operands.push_back(sum());
            isMore = isSign(',');
            if (isMore)
                advance();
        }
    expect(')', ("behind the values of " + name.text).c_str());
    if (node.operands.size() < function->least || node.operands.size() > function->most)
        throw FormulaError(name.text + " takes " + function->takes() + ", not " + std::to_string(node.operands.size()),
                           name.column);
    return node;
}

}  // namespace holdfast::document
