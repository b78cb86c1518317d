#pragma once

#include <string>
#include <vector>

#include "apps/cli/Uses.h"

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace holdfast::cli {

/// What is wrong with the arguments of a call, with the command or option that was probably meant, and where to read
/// on.
std::string usageFault(const CLI::App& app, const CLI::ParseError& error, const std::vector<std::string>& arguments);

}  // namespace holdfast::cli
