#include "apps/cli/Usage.h"

#include <CLI/CLI.hpp>

#include "document/text/Suggest.h"

namespace holdfast::cli {

namespace {

std::string commandFault(const CLI::App& app, const std::vector<std::string>& arguments) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(command->get_name());
    const std::vector<std::string_view> choices(names.begin(), names.end());
    if (arguments.empty())
        return "expected a command (" + oneOf(choices) + ")";
    return "found " + inQuotes(arguments.front()) + "; expected a command (" + oneOf(choices) + ")" +
           suggestion(arguments.front(), choices);
}

std::string argumentFault(const CLI::App& command, const std::string& argument) {
    const std::string where = command.get_name() + ": found " + inQuotes(argument);
    if (!argument.starts_with("-"))
        return where + "; nothing more was expected";
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options())
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    const std::vector<std::string_view> choices(names.begin(), names.end());
    return where + ", which is no option of it" + suggestion(argument, choices);
}

}  // namespace

std::string usageFault(const CLI::App& app, const CLI::ParseError& error, const std::vector<std::string>& arguments) {
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    if (chosen.empty())
        return commandFault(app, arguments) + "; see holdfast --help";
    const CLI::App& command = *chosen.front();
    const std::vector<std::string> rest = command.remaining();
    const std::string fault =
        rest.empty() ? command.get_name() + ": " + error.what() : argumentFault(command, rest.front());
    return fault + "; see holdfast " + command.get_name() + " --help";
}

}  // namespace holdfast::cli
