#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "document/Uses.h"
#include "document/formulas/FormulaError.h"
#include "document/formulas/FormulaNode.h"

namespace holdfast::document {

/// True for what can stand in a formula as it is: letters, digits and underscores, no digit first.
bool isWord(std::string_view name);

/// Reads a formula from left to right, by recursive descent.
class FormulaReader {
public:
    explicit FormulaReader(std::string_view text);

    /// FormulaError at the first sign that does not fit.
    FormulaNode read();

private:
    using Node = FormulaNode;
    struct Token {
        enum class Kind { number, word, quoted, sign, end };
        Kind kind = Kind::end;
        std::string text{};
        double number = 0.0;
        std::size_t column = 0;
    };
    Token next();
    Token number();
    Token word();
    Token quoted();
    void advance();
    bool isSign(char sign) const { return m_token.kind == Token::Kind::sign && m_token.text.front() == sign; }
    bool isUnit() const;
    void expect(char sign, const char* after);

    Node sum();
    Node product();
    Node signedPower();
    Node power();
    Node withUnit();
    Node primary();
    Node named();
    Node call(const Token& name);
    Node operation(Node left, Node (FormulaReader::*right)());
    int unitPower();

    class Nested;
    std::string_view m_text;
    std::size_t m_at = 0;
    int m_depth = 0;
    Token m_token;
};

}  // namespace holdfast::document
