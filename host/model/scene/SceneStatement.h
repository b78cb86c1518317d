#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <yxbase/YxGePoint3d.h>

namespace holdfast {

/// What a scene text gets wrong: which line and statement, what was found there, and what is expected.
struct SceneError : std::invalid_argument {
    using std::invalid_argument::invalid_argument;
};

/// One statement of a scene text, read word by word. A text in double quotes and a block in braces are one word each.
class SceneStatement {
public:
    SceneStatement(std::string text, int line);

    bool atEnd() const { return m_next == m_words.size(); }
    /// The next word without taking it; empty at the end.
    std::string_view peek() const { return atEnd() ? std::string_view() : std::string_view(m_words[m_next]); }
    /// The next word; `expected` says in a complaint what should have stood there.
    std::string take(std::string_view expected);
    bool accept(std::string_view word);
    void expect(std::string_view word);
    void expectEnd() const;

    double number(std::string_view expected);
    /// Degrees, or radians with the ending "rad"; answered in radians.
    double angle(std::string_view expected);
    /// "x,y" or "x,y,z".
    YxGePoint3d point(std::string_view expected);
    YxGeVector3d vector(std::string_view expected);
    /// What stands between the quotes of the next word, or between its braces.
    std::string quoted(std::string_view expected);
    std::vector<SceneStatement> block(std::string_view expected);

    [[noreturn]] void fail(const std::string& message) const;

private:
    std::string m_text;
    int m_line;
    std::vector<std::string> m_words;
    std::vector<int> m_lines;  // on which each word begins
    std::size_t m_next = 0;
};

/// The statements of a text, separated by semicolons and line ends outside quotes and braces. Two slashes begin a
/// comment. Empty statements are left out.
std::vector<SceneStatement> sceneStatements(std::string_view text, int firstLine = 1);

/// A name may consist of letters, digits, underscores and hyphens and begins with a letter or an underscore.
bool isSceneName(std::string_view text);

}  // namespace holdfast
