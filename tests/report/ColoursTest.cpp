#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "report/page/Assets.h"

// Contrast ratios by the Web Content Accessibility Guidelines 2.1: 4.5 for text (1.4.3), 3 for what a picture shows
// (1.4.11).
namespace holdfast::report {

namespace {

double lightPart(const std::string& hex) {
    const double share = std::stoi(hex, nullptr, 16) / 255.0;
    return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

/// Relative luminance of "#rrggbb".
double luminance(const std::string& colour) {
    return 0.2126 * lightPart(colour.substr(1, 2)) + 0.7152 * lightPart(colour.substr(3, 2)) +
           0.0722 * lightPart(colour.substr(5, 2));
}

double contrast(const std::string& a, const std::string& b) {
    const double first = luminance(a), second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

/// The part of a style sheet for light or for dark screens.
std::string partFor(std::string_view sheet, bool dark) {
    const std::size_t at = sheet.find("@media screen and (prefers-color-scheme: dark)");
    EXPECT_NE(at, std::string_view::npos);
    return std::string(dark ? sheet.substr(at) : sheet.substr(0, at));
}

/// The colour behind "start" in a style sheet.
std::string colourAfter(const std::string& sheet, const std::string& start) {
    const std::size_t at = sheet.find(start);
    EXPECT_NE(at, std::string::npos) << start;
    return at == std::string::npos ? "#000000" : sheet.substr(sheet.find('#', at), 7);
}

TEST(Colours, OfTextStandOut) {
    for (const bool dark : {false, true}) {
        const std::string sheet = partFor(report::kReportStyle, dark);
        const auto named = [&](const char* name) { return colourAfter(sheet, std::string(name) + ": #"); };
        for (const char* ink :
             {"--ink", "--soft", "--deleted", "--pointed", "--added", "--kept", "--edited", "--followed", "--mark"})
            for (const char* paper : {"--card", "--hover"})
                EXPECT_GE(contrast(named(ink), named(paper)), 4.5) << ink << " on " << paper << ", dark " << dark;
        for (const char* fate : {"--deleted", "--pointed", "--added", "--kept"})
            EXPECT_GE(contrast(named(fate), named((std::string(fate) + "-back").c_str())), 4.5) << fate << dark;
        for (const char* ink : {"--ink", "--soft"})
            EXPECT_GE(contrast(named(ink), named("--back")), 4.5) << ink << ", dark " << dark;
    }
}

TEST(Colours, OfPicturesStandOut) {
    for (const bool dark : {false, true}) {
        const std::string sheet = partFor(report::kPictureStyle, dark);
        const std::string paper = colourAfter(sheet, "\n.paper {");
        for (const char* drawn : {"\n.e {",
                                  "\n.e.construction {",
                                  "\n.e.fixed {",
                                  "\n.e.edited {",
                                  "\n.e.followed {",
                                  "\n.e.created {",
                                  "\n.e.erased {",
                                  "\n.ghost {",
                                  "\n.e.text {",
                                  "\n.m {",
                                  "\n.lead {",
                                  "\n.line {",
                                  "\n.arrow {",
                                  "\n.dim {",
                                  "\n.m.deleted, .m.broken {",
                                  "\n.deleted .lead",
                                  "\n.strike {",
                                  "\n.m.pointed {",
                                  "\n.pointed .lead",
                                  "\n.pointed .arrow {",
                                  "\n.m.added {",
                                  "\n.added .lead"})
            EXPECT_GE(contrast(colourAfter(sheet, drawn), paper), 3.0) << drawn << " dark " << dark;
    }
}

}  // namespace

}  // namespace holdfast::report
