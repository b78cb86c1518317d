// Writes each thing that a drawing can have in each form, reads it again, and compares what came back with the table in
// docs/formats.md. Usage: format_table DOCUMENT [--update]

#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "tests/cli/kept/Features.h"
#include "tests/cli/kept/Trips.h"

namespace holdfast::cli::kept {
namespace {

constexpr const char* kHeading = "## What each form keeps\n";

/// What has become of a feature: as it was, as something else, told as lost, or lost without a word.
std::string cellOf(const Feature& feature, const Form& form) {
    const Trip trip = form.go(feature);
    const std::string found = feature.found(trip.back);
    if (!found.empty())
        return found;
    return trip.told.empty() ? "no" : "told";
}

std::string table() {
    std::string text = "| |", line = "|---|";
    for (const Form& form : forms()) {
        text += " " + std::string(form.name) + " |";
        line += "---|";
    }
    text += "\n" + line + "\n";
    for (const Feature& feature : features()) {
        text += "| " + feature.name + " |";
        for (const Form& form : forms()) {
            try {
                text += " " + cellOf(feature, form) + " |";
            } catch (const std::exception& error) {
                throw std::runtime_error(feature.name + " in " + form.name + ": " + error.what());
            }
        }
        text += "\n";
    }
    return text;
}

/// The first table behind the heading.
struct Part {
    std::size_t begin = 0, size = 0;
};

Part tableIn(const std::string& document) {
    const std::size_t heading = document.find(kHeading), begin = document.find("\n|", heading) + 1;
    if (heading == std::string::npos || begin == 0)
        throw std::runtime_error("the document has no table behind \"" + std::string(kHeading) + "\"");
    std::size_t end = begin;
    while (end < document.size() && document[end] == '|')
        end = document.find('\n', end) + 1;
    return {begin, end - begin};
}

/// Lines that only one of two tables has.
void tellDifference(const std::string& ours, const std::string& theirs, const char* sign) {
    std::istringstream lines(ours);
    for (std::string line; std::getline(lines, line);)
        if (("\n" + theirs).find("\n" + line + "\n") == std::string::npos)
            std::cerr << sign << line << '\n';
}

int run(const std::string& path, bool updates) {
    std::ifstream in(path);
    std::string document{std::istreambuf_iterator<char>(in), {}};
    const Part part = tableIn(document);
    const std::string now = table(), was = document.substr(part.begin, part.size);
    if (now == was)
        return 0;
    if (updates) {
        document.replace(part.begin, part.size, now);
        std::ofstream(path) << document;
        return 0;
    }
    tellDifference(was, now, "- ");
    tellDifference(now, was, "+ ");
    std::cerr << path << " says otherwise than what comes back; --update writes it anew\n";
    return 1;
}

}  // namespace
}  // namespace holdfast::cli::kept

int main(int argc, char** argv) {
    try {
        return holdfast::cli::kept::run(argc > 1 ? argv[1] : "", argc > 2 && std::strcmp(argv[2], "--update") == 0);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
}
