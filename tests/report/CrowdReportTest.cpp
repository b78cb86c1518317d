#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "report/page/BeforeAfter.h"
#include "report/page/HtmlReport.h"
#include "report/picture/Svg.h"
#include "tests/report/Samples.h"
#include "tests/report/XmlTree.h"

namespace holdfast::report {

namespace {

using test::at;
using test::parseXml;
using test::XmlNode;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

/// A chain of level lines, which a report tells in more than six thousand outcomes.
Document chain(int length) {
    Document document;
    document.name = "chain";
    for (int i = 0; i < length; ++i) {
        const std::string id = "g" + std::to_string(i);
        document.entities.push_back(test::line(id, {i * 10.0, 0}, {i * 10.0 + 10.0, 0}));
        document.constraints.push_back(test::constraint("h" + std::to_string(i), ConstraintType::horizontal, {at(id)}));
    }
    return document;
}

/// The first of its lines goes down at one end.
FateReport bentChain() {
    FateReport report;
    report.before = report.after = chain(4000);
    report.after.entities[0] = test::line("g0", {0, -5}, {10, 0});
    report.after.constraints.erase(report.after.constraints.begin());
    report.edits = {{"drag g0.start by 0,-5", {}}};
    report.constraints = {{"h0", ConstraintFate::deleted, "g0 is no longer level", {}, 0}};
    report.entities = {{"g0", EntityFate::edited, 5.0}};
    return report;
}

TEST(CrowdReport, DrawsWhatIsUntouchedOnceInFewElements) {
    const XmlNode page = parseXml(writeHtmlReport(bentChain()));
    const auto pictures = page.withClass("picture");
    ASSERT_EQ(pictures.size(), 2u);
    for (const XmlNode* picture : pictures) {
        std::vector<std::string> named;
        for (const XmlNode* entity : picture->withClass("e"))
            if (const std::string id = (*entity)["data-e"]; !id.empty())
                named.push_back(id);
        EXPECT_EQ(named, std::vector<std::string>{"g0"});
    }
    EXPECT_LT(pictures[0]->withClass("e").size(), 20u);
    EXPECT_EQ(pictures[1]->withClass("e").size(), 1u) << "the picture after refers to the one before";
}

TEST(CrowdReport, MarksWhatHasChangedAndNothingElse) {
    const XmlNode page = parseXml(writeHtmlReport(bentChain()));
    const auto marks = page.withClass("m");
    ASSERT_EQ(marks.size(), 1u);
    EXPECT_EQ((*marks[0])["data-c"], "h0");
    EXPECT_THAT(page.withClass("legend").at(0)->allText(), HasSubstr("leave out the signs of what was kept"));
}

TEST(CrowdReport, ListsWhatWasKeptALineEach) {
    const std::string text = writeHtmlReport(bentChain());
    const XmlNode page = parseXml(text);
    EXPECT_EQ(page.withClass("row").size(), 1u);
    const std::string kept = page.withClass("keeps").at(0)->allText();
    EXPECT_THAT(kept, HasSubstr("3999 constraints kept"));
    for (const std::string each : {"h1: horizontal g1\n", "h2000: horizontal g2000\n", "h3999: horizontal g3999\n"})
        EXPECT_THAT(kept, HasSubstr(each));
    EXPECT_THAT(page.allText(), HasSubstr("g1 g2 g3 "));
    EXPECT_LT(text.size(), 500'000u);
}

TEST(CrowdReport, TellsEveryFateWhereThousandsHaveOne) {
    FateReport report;
    report.before = chain(4000);
    report.after = chain(1);
    const XmlNode page = parseXml(writeHtmlReport(report));
    EXPECT_EQ(page.withClass("row").size(), 2000u);
    EXPECT_THAT(page.allText(), HasSubstr("1999 constraints more"));
    EXPECT_THAT(page.allText(), HasSubstr("h3999: horizontal g3999  deleted\n"));
    EXPECT_THAT(page.allText(), HasSubstr("g3999: erased"));
}

TEST(CrowdReport, EscapesNamesInLines) {
    FateReport report = bentChain();
    for (Document* document : {&report.before, &report.after}) {
        document->entities.back().id = "<b>&";
        document->constraints.back().refs = {at("<b>&")};
        document->constraints.back().name = "<script>";
    }
    const std::string text = writeHtmlReport(report);
    EXPECT_THAT(text, HasSubstr("h3999: horizontal &lt;b&gt;&amp;  &lt;script&gt;\n"));
    EXPECT_THAT(text, Not(HasSubstr("<b>&")));
}

TEST(CrowdPicture, DrawsThousandsInFewElementsWithTheMarksThatAreSeen) {
    Document drawing = chain(4000);
    const std::string text = writePicture(drawing);
    EXPECT_LT(text.size(), 250'000u);
    EXPECT_THAT(text, AllOf(Not(HasSubstr("data-e")), Not(HasSubstr("data-c"))));
    const XmlNode picture = parseXml(text);
    EXPECT_LT(picture.withClass("e").size(), 10u);
    std::size_t ends = 0;
    for (const XmlNode* path : picture.withClass("e"))
        ends += static_cast<std::size_t>(std::ranges::count((*path)["d"], 'M'));
    EXPECT_EQ(ends, 4000u) << "every line is there";
    const auto marks = picture.withClass("m");
    EXPECT_GE(marks.size(), 1u);
    for (const XmlNode* mark : marks)
        for (const char* hidden : {"from2", "from4", "from8", "at2", "at4", "at8"})
            EXPECT_THAT((*mark)["class"], Not(HasSubstr(hidden)));
    drawing.entities.resize(2000);
    drawing.constraints.resize(2000);
    EXPECT_THAT(writePicture(drawing), AllOf(HasSubstr("data-e=\"g7\""), HasSubstr("data-c=\"h")));
}

TEST(CrowdPicture, NamesBeforeAndAfterWhatHasChanged) {
    const std::string text = writeBeforeAfter(bentChain());
    EXPECT_LT(text.size(), 250'000u);
    const XmlNode picture = parseXml(text);
    std::vector<std::string> named;
    for (const XmlNode* entity : picture.withClass("e"))
        if (const std::string id = (*entity)["data-e"]; !id.empty())
            named.push_back(id);
    EXPECT_EQ(named, (std::vector<std::string>{"g0", "g0"}));
    ASSERT_EQ(picture.withClass("m").size(), 1u);
    EXPECT_EQ((*picture.withClass("m")[0])["data-c"], "h0");
}

}  // namespace

}  // namespace holdfast::report
