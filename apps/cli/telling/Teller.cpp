#include "apps/cli/telling/Teller.h"

#include <algorithm>
#include <iostream>

#include "apps/cli/telling/Terminal.h"

namespace holdfast::cli {

void printJson(const nlohmann::ordered_json& json, bool isOneLine) {
    std::cout << json.dump(isOneLine ? -1 : 2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
    flushStandardOutput();
}

void printError(const ErrorReport& report, bool isOneLine) {
    printJson({{"error", errorJson(report)}}, isOneLine);
}

void Teller::begin(const std::string& file) {
    m_file = file;
    if (m_hasBegun && !wantsJson() && m_options.hasText)
        std::cout << '\n';
    m_hasBegun = true;
}

void Teller::tell(const nlohmann::ordered_json& findings) {
    if (m_isSingle && !m_options.lines)
        return printJson(findings, false);
    nlohmann::ordered_json named{{"file", m_file}};
    named.update(findings);
    if (m_options.lines)
        return printJson(named, true);
    m_all.push_back(std::move(named));
}

void Teller::tellFailure(const ErrorReport& report) {
    complain(report.message);
    if (wantsJson())
        tell({{"error", errorJson(report)}});
}

void Teller::finish() {
    if (!m_isSingle && m_options.json && !m_options.lines)
        printJson({{"drawings", std::move(m_all)}}, false);
}

int tellEach(const std::vector<std::string>& drawings, TellingOptions options,
             const std::function<int(const std::string& drawing, Teller& teller)>& work) {
    Teller teller(options, drawings.size());
    int code = kExitDone;
    for (const std::string& drawing : drawings) {
        teller.begin(drawing);
        try {
            code = std::max(code, work(drawing, teller));
        } catch (...) {
            const ErrorReport report = reportOfCurrent();
            if ((drawings.size() == 1 && !options.lines) || !std::cout)
                throw;
            teller.tellFailure(report);
            code = std::max(code, exitOf(report.code));
        }
    }
    teller.finish();
    return code;
}

}  // namespace holdfast::cli
