#include "apps/cli/batch/Script.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <sstream>

#include "apps/cli/files/DrawingFiles.h"
#include "apps/cli/telling/ErrorReport.h"
#include "document/text/Suggest.h"
#include "editing/Verbs.h"
#include "formats/FileIo.h"

namespace holdfast::cli {

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

/// The line without blanks around it and without a comment.
std::string_view meaningOf(std::string_view line) {
    for (std::size_t at = line.find('#'); at != std::string_view::npos; at = line.find('#', at + 1))
        if (at == 0 || kBlanks.find(line[at - 1]) != std::string_view::npos) {
            line = line.substr(0, at);
            break;
        }
    return trimmed(line);
}

std::string_view withoutQuotes(std::string_view name) {
    const bool quoted = name.size() > 1 && name.front() == '"' && name.back() == '"';
    return quoted ? name.substr(1, name.size() - 2) : name;
}

std::vector<std::string_view> firstWords() {
    std::vector<std::string_view> words{"open", "save", "ties", "undo", "redo"};
    for (const EditVerb& verb : editVerbs())
        if (verb.name != "undo" && verb.name != "redo")
            words.push_back(verb.name);
    return words;
}

std::string scriptName(const std::string& path) {
    return path == kStandardStream ? kStandardInput : path;
}

class ScriptReader {
public:
    explicit ScriptReader(const std::string& path)
        : m_path(path), m_folder(std::filesystem::path(path).parent_path()), m_words(firstWords()) {}

    std::vector<ScriptPart> read() {
        std::string text = m_path == kStandardStream ? readStandardInput() : readFile(m_path);
        if (text.starts_with("\xEF\xBB\xBF"))  // the mark that some editors put before UTF-8
            text.erase(0, 3);
        std::istringstream lines(text);
        std::string line;
        while (std::getline(lines, line)) {
            ++m_line;
            if (const std::string_view meaning = meaningOf(line); !meaning.empty())
                take(meaning);
        }
        if (m_parts.empty())
            throw ReportedError(
                {.code = ErrorCode::badScript,
                 .message = scriptName(m_path) + ": expected \"open DRAWING\" on the first line, found no line at all",
                 .file = m_path});
        return std::move(m_parts);
    }

private:
    [[noreturn]] void fail(const std::string& message) const {
        throw ReportedError({.code = ErrorCode::badScript,
                             .message = scriptPlace(m_path, m_line) + message,
                             .file = m_path,
                             .line = m_line});
    }

    void take(std::string_view line) {
        const std::string_view word = line.substr(0, line.find_first_of(kBlanks));
        const std::string_view rest = trimmed(line.substr(word.size()));
        if (std::find(m_words.begin(), m_words.end(), word) == m_words.end())
            fail("found " + inQuotes(word) + "; expected an edit (" + oneOf(m_words) + ")" + suggestion(word, m_words));
        if (word == "open") {
            m_parts.push_back(
                {.drawing = fileNamed(rest), .line = m_line, .edits = {}, .lines = {}, .ties = {}, .output = {}});
            m_ties = true;
            return;
        }
        if (m_parts.empty())
            fail("expected \"open DRAWING\" before the first edit");
        ScriptPart& part = m_parts.back();
        if (!part.output.empty())
            fail("the drawing is saved already; put this line before its \"save\", or open a drawing again");
        if (word == "save") {
            part.output = fileNamed(rest);
        } else if (word == "ties") {
            m_ties = isOn(rest);
        } else {
            part.edits.emplace_back(line);
            part.lines.push_back(m_line);
            part.ties.push_back(m_ties);
        }
    }

    bool isOn(std::string_view rest) const {
        static constexpr std::array<std::string_view, 2> words{"off", "on"};
        if (rest != words[0] && rest != words[1])
            fail("found " + inQuotes(rest) + " behind \"ties\"; expected on or off" + suggestion(rest, words));
        return rest == words[1];
    }

    std::string fileNamed(std::string_view rest) const {
        const std::string_view name = withoutQuotes(rest);
        if (name.empty())
            fail("expected the name of a drawing, but the line ends there");
        return name == kStandardStream ? std::string(name) : (m_folder / name).string();
    }

    const std::string& m_path;
    std::filesystem::path m_folder;
    std::vector<std::string_view> m_words;
    std::vector<ScriptPart> m_parts;
    int m_line = 0;
    bool m_ties = true;
};

}  // namespace

std::vector<ScriptPart> readScript(const std::string& path) {
    return ScriptReader(path).read();
}

std::string scriptPlace(const std::string& path, int line) {
    return scriptName(path) + ", line " + std::to_string(line) + ": ";
}

}  // namespace holdfast::cli
