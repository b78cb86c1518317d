#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "apps/cli/Uses.h"
#include "apps/cli/telling/ErrorReport.h"
#include "apps/cli/telling/TellingOptions.h"

namespace holdfast::cli {

/// Puts an object on standard output; what is no UTF-8 gets U+FFFD.
void printJson(const nlohmann::ordered_json& json, bool isOneLine);
/// The same of an error, under the key that no other output has but where something went wrong.
void printError(const ErrorReport& report, bool isOneLine);

/// Tells of one drawing after the other, in the order in which the user named them.
class Teller {
public:
    Teller(TellingOptions options, std::size_t drawings) : m_options(options), m_isSingle(drawings == 1) {}

    bool wantsJson() const { return m_options.isForPrograms(); }
    /// What comes next is of this file.
    void begin(const std::string& file);
    /// The findings of one drawing. ReportedError when standard output does not take them.
    void tell(const nlohmann::ordered_json& findings);
    /// Why a drawing has none. The others go on.
    void tellFailure(const ErrorReport& report);
    /// What was left to tell of all of them.
    void finish();

private:
    TellingOptions m_options;
    bool m_isSingle;
    bool m_hasBegun = false;
    std::string m_file;
    nlohmann::ordered_json m_all = nlohmann::ordered_json::array();
};

/// Does the work for each drawing and answers the largest of their exit codes. A single drawing's errors are the
/// caller's; those of one among several are told, and the others go on.
int tellEach(const std::vector<std::string>& drawings, TellingOptions options,
             const std::function<int(const std::string& drawing, Teller& teller)>& work);

}  // namespace holdfast::cli
