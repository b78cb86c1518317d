#include "report/page/HtmlReport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "tests/report/Samples.h"
#include "tests/report/XmlTree.h"

namespace holdfast::report {

namespace {

using test::parseXml;
using test::XmlNode;
using ::testing::HasSubstr;
using ::testing::Not;

XmlNode pageOf(const FateReport& report) {
    return parseXml(writeHtmlReport(report));
}

std::vector<std::string> rowIds(const XmlNode& page) {
    std::vector<std::string> ids;
    for (const XmlNode* row : page.withClass("row"))
        ids.push_back((*row)["data-c"]);
    return ids;
}

TEST(HtmlReport, SortsItsRowsByWhatTheUserCaresAbout) {
    const XmlNode page = pageOf(test::brokenPlate());
    EXPECT_EQ(rowIds(page),
              (std::vector<std::string>{"c8", "c0", "c11", "c1", "c2", "c3", "c4", "c5", "c6", "c7", "c9", "c10"}));
    EXPECT_TRUE(page.withClass("row").at(0)->hasClass("deleted"));
    EXPECT_THAT(page.withClass("row").at(1)->allText(), HasSubstr("base.end \u2192 base2.end"));
}

TEST(HtmlReport, ShowsBothDrawingsInTheSameWindow) {
    const XmlNode page = pageOf(test::brokenPlate());
    const auto pictures = page.withClass("picture");
    ASSERT_EQ(pictures.size(), 2u);
    EXPECT_EQ((*pictures[0])["viewBox"], (*pictures[1])["viewBox"]);
    EXPECT_EQ(pictures[0]->withClass("strike").size(), 1u);
    EXPECT_TRUE(pictures[1]->withClass("strike").empty());
    EXPECT_FALSE(pictures[1]->withClass("ghost").empty());
}

TEST(HtmlReport, ShowsOnePictureWhereNothingChanged) {
    FateReport report;
    report.before = report.after = test::plate();
    const XmlNode page = pageOf(report);
    EXPECT_EQ(page.withClass("picture").size(), 1u);
}

TEST(HtmlReport, KeepsASignAtTheSamePlaceInBothPictures) {
    const XmlNode page = pageOf(test::brokenPlate());
    std::set<std::string> places;
    for (const XmlNode* mark : page.withClass("m"))
        if ((*mark)["data-c"] == "c9")
            places.insert((*mark)["transform"] + (*mark->all("g").at(2))["transform"]);
    EXPECT_EQ(places.size(), 1u);
}

TEST(HtmlReport, ReachesForNothingOutside) {
    const std::string html = writeHtmlReport(test::brokenPlate());
    const XmlNode page = parseXml(html);
    for (const XmlNode* node : page.all()) {
        for (const auto& [name, value] : node->attributes) {
            EXPECT_TRUE(name != "src" && (name != "href" || value.starts_with('#'))) << name << " " << value;
            EXPECT_FALSE(name.starts_with("on")) << name;
        }
        EXPECT_NE(node->name, "link");
    }
    EXPECT_THAT(html, Not(HasSubstr("url(")));
    EXPECT_THAT(html, Not(HasSubstr("@import")));
    EXPECT_THAT(html, HasSubstr("default-src 'none'"));
}

TEST(HtmlReport, EscapesEveryTextThatItIsGiven) {
    const std::string evil = "</script><img src=x onerror=alert(1)>&\"'";
    FateReport report = test::brokenPlate();
    report.title = report.after.license = evil;
    report.edits = {{evil, evil}};
    report.constraints[0].reason = evil;
    report.after.entities[1].id = evil;
    report.after.constraints[1].id = evil;
    report.after.constraints[1].name = evil;
    report.after.lengthUnit = evil;
    const XmlNode page = pageOf(report);
    EXPECT_TRUE(page.all("img").empty());
    EXPECT_EQ(page.all("script").size(), 1u);
    EXPECT_EQ(page.all("h1").at(0)->allText(), evil);
}

TEST(HtmlReport, FiltersByCheckBoxesThatNeedNoScript) {
    const XmlNode page = pageOf(test::brokenPlate());
    std::set<std::string> boxes;
    for (const XmlNode* box : page.all("input"))
        boxes.insert((*box)["id"]);
    EXPECT_EQ(boxes, (std::set<std::string>{"show-deleted", "show-pointed", "show-added", "show-kept"}));
    for (const XmlNode* chip : page.all("label"))
        EXPECT_TRUE(boxes.count((*chip)["for"])) << (*chip)["for"];
}

TEST(HtmlReport, ShowsWhatAnUndoBroughtBackBesideWhatWasAdded) {
    FateReport report;
    report.before = report.after = test::plate();
    const Constraint restored = report.before.constraints.back();
    report.before.constraints.pop_back();
    report.constraints = {{restored.id, ConstraintFate::restored, "the undo brought it back", {}, 0}};
    const XmlNode page = pageOf(report);
    const XmlNode& row = *page.withClass("row").at(0);
    EXPECT_TRUE(row.hasClass("added"));
    EXPECT_THAT(row.allText(), HasSubstr("restored"));
    std::string chips;
    for (const XmlNode* chip : page.withClass("chip"))
        chips += chip->allText() + ";";
    EXPECT_THAT(chips, HasSubstr("1restored"));
    EXPECT_THAT(pageOf(test::brokenPlate()).allText(), Not(HasSubstr("restored")));
}

TEST(HtmlReport, FoldsALongListOfKeptConstraints) {
    FateReport report;
    for (int i = 0; i < 40; ++i)
        report.after.constraints.push_back(test::constraint("c" + std::to_string(i), ConstraintType::fixed, {}));
    report.before = report.after;
    const XmlNode page = pageOf(report);
    const XmlNode* fold = page.withClass("keeps").at(0);
    EXPECT_EQ((*fold)["open"], "");
    EXPECT_EQ(fold->all("summary").at(0)->allText(), "40 constraints kept");
    EXPECT_EQ(fold->withClass("row").size(), 40u);
}

TEST(HtmlReport, NamesEveryEntityOfARowForItsHighlight) {
    const XmlNode page = pageOf(test::brokenPlate());
    const XmlNode* row = page.withClass("row").at(1);
    EXPECT_EQ((*row)["data-c"], "c0");
    EXPECT_EQ((*row)["data-e"], "base right base2");
}

TEST(HtmlReport, OfAnEmptyReportIsStillAPage) {
    const XmlNode page = pageOf({});
    EXPECT_EQ(page.name, "html");
    EXPECT_THAT(page.allText(), HasSubstr("The drawing has none."));
}

}  // namespace
}  // namespace holdfast::report
