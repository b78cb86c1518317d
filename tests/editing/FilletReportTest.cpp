#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "report/page/FateTable.h"
#include "report/page/HtmlReport.h"
#include "report/page/ReportJson.h"
#include "tests/editing/BareSession.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {

using namespace report;
namespace {

using ::testing::HasSubstr;

FateReport roundedStair() {
    BareSession session(stair());
    session.apply("fillet p corner 1 radius 2");
    session.apply("fillet p corner 4 radius 2");
    return session.report();
}

TEST(FilletReport, TellsOnATerminalFromWhichSegmentToWhichConstraintsWent) {
    const std::string table = writeFateTable(roundedStair());
    EXPECT_THAT(table, HasSubstr("re-pointed  c1          vertical    p.segment:2  p.segment:1 -> p.segment:2; "));
    EXPECT_THAT(table, HasSubstr("re-pointed  c3          vertical    p.segment:5  p.segment:3 -> p.segment:5; "));
    EXPECT_THAT(table, HasSubstr("\n3 re-pointed, 1 kept; 1 entity edited\n"));
}

TEST(FilletReport, TellsProgramsFromWhichSegmentToWhichConstraintsWent) {
    const auto report = nlohmann::json::parse(writeReportJson(roundedStair()));
    EXPECT_EQ(report["constraints"][2]["moves"],
              nlohmann::json::parse(R"([{"from": {"entity": "p", "point": "segment:3"},
                                         "to": {"entity": "p", "point": "segment:5"}}])"));
}

TEST(FilletReport, ShowsOnThePageFromWhichSegmentToWhichConstraintsWent) {
    EXPECT_THAT(writeHtmlReport(roundedStair()),
                HasSubstr("<span class=\"moves\">p.segment:3 \u2192 p.segment:5</span>"));
}

}  // namespace
}  // namespace holdfast::editing
