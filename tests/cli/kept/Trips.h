#pragma once

#include <span>
#include <string>
#include <vector>

#include "document/Document.h"
#include "tests/cli/kept/Features.h"

namespace holdfast::cli::kept {

/// What has become of a drawing that the program has written in a form and read again.
struct Trip {
    Document back;
    std::vector<std::string> told{};  ///< on writing it
};

/// A form that drawings go out in and come back from.
struct Form {
    const char* name;
    Trip (*go)(const Feature& feature);
};

/// In the order of the table's columns.
std::span<const Form> forms();

}  // namespace holdfast::cli::kept
