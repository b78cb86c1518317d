#include <gtest/gtest.h>

#include <cstdio>

#include "report/page/HtmlReport.h"
#include "report/picture/Plane2.h"
#include "report/picture/Svg.h"
#include "tests/report/Samples.h"
#include "tests/report/XmlTree.h"

// Every drawing of a folder, by default the shipped examples, with fates dealt out to its constraints in turn.

namespace holdfast::report {

namespace {

using geometry::Box;
using test::parseXml;
using test::XmlNode;

PictureNotes dealtFates(const Document& drawing) {
    PictureNotes notes;
    for (std::size_t i = 0; i < drawing.constraints.size(); ++i) {
        if (i % 11 == 3)
            notes.constraints.emplace(drawing.constraints[i].id, MarkTone::deleted);
        if (i % 17 == 5)
            notes.constraints.emplace(drawing.constraints[i].id, MarkTone::rePointed);
    }
    return notes;
}

Vec2 shiftOf(const XmlNode& node) {
    Vec2 shift;
    const std::string text = node["transform"];
    std::sscanf(text.c_str(), "translate(%lf %lf)", &shift.x, &shift.y);
    return shift;
}

bool isHiddenAtFirst(const XmlNode& node) {
    for (const char* hidden : {"from2", "from4", "from8", "from16", "from32", "at2", "at4", "at8", "at16"})
        if (node.hasClass(hidden))
            return true;
    return false;
}

/// The plates of all signs that a reader sees before zooming in, in picture units.
void collectPlates(const XmlNode& node, Vec2 origin, std::vector<Box>& plates) {
    if (isHiddenAtFirst(node))
        return;
    const Vec2 shift = shiftOf(node);
    origin = {origin.x + shift.x, origin.y + shift.y};
    if (node.hasClass("plate")) {
        const double left = origin.x + std::stod(node["x"]), top = origin.y + std::stod(node["y"]);
        plates.push_back({{left, top}, {left + std::stod(node["width"]), top + std::stod(node["height"])}});
    }
    for (const XmlNode& child : node.children)
        collectPlates(child, origin, plates);
}

std::size_t overlapsIn(const std::vector<Box>& boxes) {
    constexpr double rounding = 0.02;  // coordinates are written with two decimals
    std::size_t count = 0;
    for (std::size_t i = 0; i < boxes.size(); ++i)
        for (std::size_t j = i + 1; j < boxes.size(); ++j)
            count += boxes[i].grownBy(-rounding).overlaps(boxes[j].grownBy(-rounding)) ? 1 : 0;
    return count;
}

TEST(RealDrawings, AreThere) {
    EXPECT_GE(test::realDrawings().size(), 3u);
}

TEST(RealDrawings, HaveNoTwoSignsOnOneAnother) {
    for (const auto& path : test::realDrawings()) {
        const Document drawing = test::readDrawing(path);
        for (const double width : {640.0, 1200.0}) {
            PictureOptions options;
            options.width = width;
            std::vector<Box> plates;
            collectPlates(parseXml(writePicture(drawing, dealtFates(drawing), options)), {}, plates);
            EXPECT_EQ(overlapsIn(plates), 0u) << path << " at width " << width;
        }
    }
}

TEST(RealDrawings, ShowEveryChangeSomewhere) {
    for (const auto& path : test::realDrawings()) {
        const Document drawing = test::readDrawing(path);
        const PictureNotes notes = dealtFates(drawing);
        const XmlNode picture = parseXml(writePicture(drawing, notes));
        std::string shown = " ";
        for (const XmlNode* mark : picture.withClass("m"))
            if (!mark->hasClass("kept"))
                shown += (*mark)["data-c"] + " ";
        for (const auto& [id, tone] : notes.constraints)
            EXPECT_NE(shown.find(" " + id + " "), std::string::npos) << path << " " << id;
    }
}

TEST(RealDrawings, MakeWellFormedPagesWithEveryConstraintInARow) {
    for (const auto& path : test::realDrawings()) {
        FateReport report;
        report.before = report.after = test::readDrawing(path);
        if (!report.after.constraints.empty())
            report.after.constraints.pop_back();
        const XmlNode page = parseXml(writeHtmlReport(report));
        EXPECT_EQ(page.withClass("row").size(), report.before.constraints.size()) << path;
        EXPECT_EQ(page.withClass("picture").at(0)->withClass("e").size(), report.before.entities.size()) << path;
    }
}

}  // namespace
}  // namespace holdfast::report
