#include "apps/window/PageAlone.h"

#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string_view>

#include "apps/window/Answers.h"
#include "apps/window/Bundle.h"
#include "apps/window/DrawingJson.h"

namespace holdfast::window {

namespace {

/// Nothing is fetched from anywhere: all that there is stands in the page.
constexpr std::string_view kPolicyAlone =
    "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'; "
    "script-src 'unsafe-inline'; base-uri 'none'; form-action 'none'\">\n";

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
    const Json state{{"number", 1},      {"name", name},        {"file", name},        {"drawings", 1},
                     {"dropped", false}, {"own", name},         {"readOnly", true},    {"takesSaves", false},
                     {"unsaved", false}, {"takenUp", false},    {"behind", ""},        {"canUndo", false},
                     {"canRedo", false}, {"names", showsNames}, {"log", Json::array()}};
    const std::string opened = textOf(state);
    const std::string answers = "{\"language\":" + textOf(languageJson()) + ",\"freedom\":" + textOf(freedom) +
                                ",\"state\":" + opened.substr(0, opened.size() - 1) +
                                ",\"drawing\":" + drawingText(document) + "}}";
    std::string page(textOfAsset("index.html"));
    replace(page, "<link rel=\"icon\" href=\"icon.svg\">\n", std::string(kPolicyAlone));
    replace(page, "<link rel=\"stylesheet\" href=\"window.css\">",
            "<style>\n" + std::string(textOfAsset("window.css")) + "</style>");
    replace(page, "<script type=\"module\" src=\"window.js\"></script>",
            heldJson("answers", answers) + "\n<script type=\"module\">\n" + bundled("window.js") + "</script>");
    return page;
}

}  // namespace holdfast::window
