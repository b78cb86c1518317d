#include "host/model/scene/SceneStatement.h"

#include <algorithm>

#include "host/model/scene/SceneNumbers.h"

namespace holdfast {

namespace {

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Follows a text character by character and knows what is inside quotes and braces.
class Nesting {
public:
    void pass(char c) {
        if (m_escaped) {
            m_escaped = false;
        } else if (m_quoted) {
            m_escaped = c == '\\';
            m_quoted = c != '"';
        } else {
            m_quoted = c == '"';
            m_depth += c == '{' ? 1 : 0;
            m_depth -= c == '}' ? 1 : 0;
        }
    }
    bool isQuoted() const { return m_quoted; }
    bool isOutside() const { return !m_quoted && m_depth == 0; }
    int depth() const { return m_depth; }

private:
    bool m_quoted = false;
    bool m_escaped = false;
    int m_depth = 0;
};

std::string withoutComments(std::string_view text) {
    std::string kept;
    Nesting nesting;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!nesting.isQuoted() && text.substr(i).starts_with("//"))
            i = std::min(text.find('\n', i), text.size());
        if (i == text.size())
            break;
        nesting.pass(text[i]);
        kept += text[i];
    }
    return kept;
}

}  // namespace

SceneStatement::SceneStatement(std::string text, int line) : m_text(std::move(text)), m_line(line) {
    Nesting nesting;
    bool inWord = false;
    for (const char c : m_text) {
        const bool outside = nesting.isOutside();
        nesting.pass(c);
        const bool isBreak = outside && isSpace(c);
        if (!isBreak && (!inWord || (outside && c == '{'))) {
            m_words.emplace_back();
            m_lines.push_back(line);
        }
        inWord = !isBreak;
        if (inWord)
            m_words.back() += c;
        line += c == '\n' ? 1 : 0;
    }
    if (nesting.isQuoted())
        fail("a text begins with \" but has no closing \"");
    if (nesting.depth() != 0)
        fail(nesting.depth() > 0 ? "a { has no closing }" : "a } has no opening {");
}

std::string SceneStatement::take(std::string_view expected) {
    if (atEnd())
        fail("expected " + std::string(expected) + ", but the statement ends");
    return m_words[m_next++];
}

bool SceneStatement::accept(std::string_view word) {
    if (atEnd() || m_words[m_next] != word)
        return false;
    ++m_next;
    return true;
}

void SceneStatement::expect(std::string_view word) {
    if (accept(word))
        return;
    fail("expected \"" + std::string(word) + "\"" +
         (atEnd() ? ", but the statement ends" : ", found \"" + m_words[m_next] + "\""));
}

void SceneStatement::expectEnd() const {
    if (!atEnd())
        fail("nothing more was expected, found \"" + m_words[m_next] + "\"");
}

double SceneStatement::number(std::string_view expected) {
    const std::string word = take(expected);
    const std::optional<double> value = numberIn(word);
    if (!value)
        fail("expected " + std::string(expected) + ", a number, found \"" + word + "\"");
    return *value;
}

double SceneStatement::angle(std::string_view expected) {
    const std::string word = take(expected);
    const std::optional<double> value = angleIn(word);
    if (!value)
        fail("expected " + std::string(expected) + " such as 30 (degrees) or 0.5rad, found \"" + word + "\"");
    return *value;
}

YxGePoint3d SceneStatement::point(std::string_view expected) {
    const std::string word = take(expected);
    const std::optional<YxGePoint3d> value = pointIn(word);
    if (!value)
        fail("expected " + std::string(expected) + " such as 10,0.5, found \"" + word + "\"");
    return *value;
}

YxGeVector3d SceneStatement::vector(std::string_view expected) {
    return point(expected) - YxGePoint3d::kOrigin;
}

std::string SceneStatement::quoted(std::string_view expected) {
    const std::string word = take(expected);
    if (word.size() < 2 || word.front() != '"' || word.back() != '"')
        fail("expected " + std::string(expected) + " in double quotes, found \"" + word + "\"");
    return unescaped(std::string_view(word).substr(1, word.size() - 2));
}

std::vector<SceneStatement> SceneStatement::block(std::string_view expected) {
    const int line = atEnd() ? m_line : m_lines[m_next];
    const std::string word = take(expected);
    if (word.front() != '{' || word.back() != '}')
        fail("expected " + std::string(expected) + " in braces, found \"" + word + "\"");
    return sceneStatements(std::string_view(word).substr(1, word.size() - 2), line);
}

void SceneStatement::fail(const std::string& message) const {
    const std::size_t begin = m_text.find_first_not_of(" \t\r\n");
    const std::size_t end = m_text.find_last_not_of(" \t\r\n");
    const std::string shown = begin == std::string::npos ? "" : m_text.substr(begin, end - begin + 1);
    throw SceneError("scene line " + std::to_string(m_line) + ", \"" + shown + "\": " + message);
}

std::vector<SceneStatement> sceneStatements(std::string_view text, int firstLine) {
    std::vector<SceneStatement> statements;
    const std::string kept = withoutComments(text) + "\n";
    Nesting nesting;
    std::size_t begin = 0;
    int line = firstLine;
    for (std::size_t i = 0; i < kept.size(); ++i) {
        nesting.pass(kept[i]);
        const bool isLast = i + 1 == kept.size();
        if (!isLast && !(nesting.isOutside() && (kept[i] == ';' || kept[i] == '\n')))
            continue;
        const std::string_view statement = std::string_view(kept).substr(begin, i - begin);
        if (!std::all_of(statement.begin(), statement.end(), isSpace))
            statements.emplace_back(std::string(statement), line);
        line += static_cast<int>(std::count(kept.begin() + long(begin), kept.begin() + long(i) + 1, '\n'));
        begin = i + 1;
    }
    return statements;
}

bool isSceneName(std::string_view text) {
    return !text.empty() && isLetter(text.front()) &&
           std::all_of(text.begin(), text.end(), [](char c) { return isLetter(c) || isDigit(c) || c == '-'; });
}

}  // namespace holdfast
