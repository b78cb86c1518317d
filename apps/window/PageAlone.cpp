#include "apps/window/PageAlone.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "apps/window/Answers.h"
#include "apps/window/Assets.h"
#include "apps/window/DrawingJson.h"

namespace holdfast::window {

namespace {

/// Nothing is fetched from anywhere: all that there is stands in the page.
constexpr std::string_view kPolicyAlone =
    "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'; "
    "script-src 'unsafe-inline'; base-uri 'none'; form-action 'none'\">\n";

std::string_view textOfAsset(std::string_view name) {
    const Asset* asset = assetNamed(name);
    if (asset == nullptr)
        throw std::logic_error("the page has no " + std::string(name));
    return asset->text;
}

/// The modules of the page as one script, for a file cannot import another one from a disk: a module becomes a function
/// that gives what it exports. Imports and exports stand at the beginning of a line of their own.
class Bundle {
public:
    explicit Bundle(std::string_view main) { add(main); }

    const std::string& text() const { return m_text; }

private:
    static std::string variableOf(std::string_view module) {
        std::string name(module.substr(0, module.find('.')));
        return name + "Module";
    }

    void add(std::string_view module) {
        if (!m_known.insert(std::string(module)).second)
            return;
        std::string body;
        std::vector<std::string> exports;
        std::string_view rest = textOfAsset(module);
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find('\n'), rest.size());
            addLine(rest.substr(0, end), body, exports);
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
        m_text += "const " + variableOf(module) + " = (() => {\n" + body + "return {";
        for (const std::string& name : exports)
            m_text += " " + name + ",";
        m_text += " };\n})();\n";
    }

    void addLine(std::string_view line, std::string& body, std::vector<std::string>& exports) {
        constexpr std::string_view kImport = "import ", kExport = "export ", kFrom = " from './";
        if (line.starts_with(kImport)) {
            const std::size_t from = line.find(kFrom);
            const std::string_view path = line.substr(from + kFrom.size());
            const std::string_view module = path.substr(0, path.find('\''));
            add(module);
            std::string_view names = line.substr(kImport.size(), from - kImport.size());
            constexpr std::string_view kAll = "* as ";
            if (names.starts_with(kAll))
                names.remove_prefix(kAll.size());
            body.append("const ").append(names).append(" = ").append(variableOf(module)).append(";\n");
            return;
        }
        if (line.starts_with(kExport)) {
            line.remove_prefix(kExport.size());
            exports.push_back(nameIn(line));
        }
        body.append(line).append("\n");
    }

    /// Of "class X ...", "function x(...", "const x = ...".
    static std::string nameIn(std::string_view declaration) {
        const std::string_view rest = declaration.substr(declaration.find(' ') + 1);
        return std::string(rest.substr(0, rest.find_first_of(" (")));
    }

    std::string m_text;
    std::unordered_set<std::string> m_known;
};

/// JSON that no HTML reader can take for the end of the element it stands in.
std::string inElement(const Json& json) {
    std::string text;
    for (const char c : textOf(json))
        if (c == '<')
            text += "\\u003c";
        else
            text += c;
    return text;
}

void replace(std::string& page, std::string_view what, const std::string& with) {
    const std::size_t at = page.find(what);
    if (at == std::string::npos)
        throw std::logic_error("the page has no " + std::string(what));
    page.replace(at, what.size(), with);
}

}  // namespace

std::string pageAlone(const Document& document, const std::string& name, bool showsNames) {
    Json freedom = freedomJson(document);
    freedom["number"] = 1;
    const Json answers{{"language", languageJson()},
                       {"state",
                        {{"number", 1},
                         {"name", name},
                         {"file", name},
                         {"drawings", 1},
                         {"dropped", false},
                         {"own", name},
                         {"readOnly", true},
                         {"takesSaves", false},
                         {"unsaved", false},
                         {"takenUp", false},
                         {"canUndo", false},
                         {"canRedo", false},
                         {"names", showsNames},
                         {"log", Json::array()},
                         {"drawing", drawingJson(document)}}},
                       {"freedom", std::move(freedom)}};
    std::string page(textOfAsset("index.html"));
    replace(page, "<link rel=\"icon\" href=\"icon.svg\">\n", std::string(kPolicyAlone));
    replace(page, "<link rel=\"stylesheet\" href=\"window.css\">",
            "<style>\n" + std::string(textOfAsset("window.css")) + "</style>");
    replace(page, "<script type=\"module\" src=\"window.js\"></script>",
            "<script id=\"answers\" type=\"application/json\">" + inElement(answers) +
                "</script>\n<script type=\"module\">\n" + Bundle("window.js").text() + "</script>");
    return page;
}

}  // namespace holdfast::window
