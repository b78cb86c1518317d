#include "apps/cli/telling/ErrorCodes.h"

#include <array>
#include <cstddef>

namespace holdfast::cli {

namespace {

struct ErrorRow {
    ErrorCode code;
    std::string_view name;
    int exit;
};

/// In the order of ErrorCode. docs/errors.md has a section for each row.
constexpr std::array kErrorRows{
    ErrorRow{ErrorCode::usage, "usage", kExitBadInput},
    ErrorRow{ErrorCode::unreadableFile, "unreadable_file", kExitBadInput},
    ErrorRow{ErrorCode::badDrawing, "bad_drawing", kExitBadInput},
    ErrorRow{ErrorCode::badScript, "bad_script", kExitBadInput},
    ErrorRow{ErrorCode::badEdit, "bad_edit", kExitBadInput},
    ErrorRow{ErrorCode::wrongWord, "wrong_word", kExitRefused},
    ErrorRow{ErrorCode::impossibleEdit, "impossible_edit", kExitRefused},
    ErrorRow{ErrorCode::constraintsInTheWay, "constraints_in_the_way", kExitRefused},
    ErrorRow{ErrorCode::notSolved, "not_solved", kExitFaults},
    ErrorRow{ErrorCode::notWritten, "not_written", kExitBadInput},
    ErrorRow{ErrorCode::outOfMemory, "out_of_memory", kExitBadInput},
    ErrorRow{ErrorCode::failed, "failed", kExitBadInput},
};

constexpr bool isInOrder() {
    for (std::size_t i = 0; i < kErrorRows.size(); ++i)
        if (kErrorRows[i].code != static_cast<ErrorCode>(i))
            return false;
    return kErrorRows.size() == static_cast<std::size_t>(ErrorCode::failed) + 1;
}
static_assert(isInOrder());

const ErrorRow& rowOf(ErrorCode code) {
    return kErrorRows[static_cast<std::size_t>(code)];
}

}  // namespace

std::string_view codeName(ErrorCode code) {
    return rowOf(code).name;
}

int exitOf(ErrorCode code) {
    return rowOf(code).exit;
}

}  // namespace holdfast::cli
