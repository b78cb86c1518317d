#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "apps/cli/Uses.h"
#include "apps/cli/telling/ErrorCodes.h"
#include "document/text/DrawingError.h"
#include "editing/RefusalFacts.h"

namespace holdfast::cli {

/// What went wrong, for people in `message` and for programs in the rest, as far as it is known.
struct ErrorReport {
    ErrorCode code = ErrorCode::failed;
    std::string message{};                   ///< one sentence: what is wrong, where, and how to mend it
    std::string file{};                      ///< the script or drawing, as it was named
    int line = 0;                            ///< of the file, counted from 1; 0: not known
    std::optional<std::size_t> edit{};       ///< which one, counted from 0
    std::size_t column = 0;                  ///< of the edit's text or of the line, counted from 1; 0: not known
    std::string place{};                     ///< JSON pointer into the file
    std::vector<std::string> constraints{};  ///< ids of those to blame
    double howFar = 0.0;                     ///< the part of its way that the edit could be followed
};

/// An error that knows what programs are to be told of it.
class ReportedError : public std::runtime_error {
public:
    explicit ReportedError(ErrorReport report) : std::runtime_error(report.message), m_report(std::move(report)) {}

    const ErrorReport& report() const { return m_report; }

private:
    ErrorReport m_report;
};

/// Arguments that make no sense: the option or file, what was found and what is expected instead.
class UsageError : public DrawingError {
public:
    UsageError(std::string argument, std::string found, std::string expected)
        : DrawingError(std::move(argument), {"", std::move(found), std::move(expected)}) {}
};

/// The report on what is being thrown. To be called while an exception is handled.
ErrorReport reportOfCurrent();

/// The code for a refused edit.
ErrorCode codeFor(RefusalCause cause);

/// The object that docs/errors.md describes, only with the keys that apply.
nlohmann::ordered_json errorJson(const ErrorReport& report);

}  // namespace holdfast::cli
