#include "report/page/ReportJson.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "tests/report/Samples.h"

namespace holdfast::report {

namespace {

using nlohmann::json;

TEST(ReportJson, TellsEveryFateWithItsReason) {
    const json report = json::parse(writeReportJson(test::brokenPlate()));
    ASSERT_EQ(report["constraints"].size(), 12u);
    EXPECT_EQ(report["constraints"][0],
              json::parse(R"json({"id": "c8", "fate": "deleted", "type": "distance", "edit": 0,
                                  "reason": "the end of base moved from (100, 0) to (40, 0)"})json"));
    EXPECT_EQ(report["constraints"][1]["moves"], json::parse(R"([{"from": {"entity": "base", "point": "end"},
        "to": {"entity": "base2", "point": "end"}}])"));
    EXPECT_EQ(report["entities"][2],
              json::parse(R"({"id": "hole", "fate": "followed", "type": "circle", "moved_by": 2.5})"));
}

TEST(ReportJson, TellsEditsTotalsAndSolver) {
    const json report = json::parse(writeReportJson(test::brokenPlate()));
    EXPECT_EQ(report["drawing"], "plate");
    EXPECT_EQ(report["edits"][0], json::parse(R"({"text": "break base at 40,0 to 60,0", "done": true})"));
    EXPECT_EQ(report["edits"][1]["error"], "the radius <900> is too large");
    EXPECT_EQ(report["totals"]["constraints"],
              json::parse(R"({"deleted": 1, "changed": 0, "re-pointed": 1, "added": 1, "restored": 0, "kept": 9})"));
    EXPECT_EQ(report["solver"], json::parse(R"({"degrees_of_freedom": 4, "iterations": 6, "worst_residual": 3e-13})"));
}

TEST(ReportJson, TellsWhatAnUndoHasBroughtBack) {
    FateReport report = test::brokenPlate();
    report.constraints[0] = {"c8", ConstraintFate::restored, "the undo brought it back", {}, 1};
    report.entities = {{"base", EntityFate::restored}};
    const json told = json::parse(writeReportJson(report));
    EXPECT_EQ(told["totals"]["constraints"]["restored"], 1);
    EXPECT_EQ(told["totals"]["entities"]["restored"], 1);
    EXPECT_EQ(told["constraints"][2]["fate"], "restored");
    EXPECT_EQ(told["entities"][1]["fate"], "restored");
}

TEST(ReportJson, TellsSizesThatChanged) {
    FateReport report = test::brokenPlate();
    report.entities = {{"hole", EntityFate::edited, 0.0, {{SizeKind::radius, 10.0, 16.3}}}};
    EXPECT_EQ(json::parse(writeReportJson(report))["entities"][0]["sizes"],
              json::parse(R"([{"size": "radius", "before": 10.0, "after": 16.3}])"));
}

TEST(ReportJson, TellsHowFarAnEditedEntityMoved) {
    FateReport report = test::brokenPlate();
    report.entities = {{"hole", EntityFate::edited, 4.5}};
    EXPECT_EQ(json::parse(writeReportJson(report))["entities"][0]["moved_by"], 4.5);
}

TEST(ReportJson, OfAnEmptyReportHasEmptyLists) {
    const json report = json::parse(writeReportJson({}));
    EXPECT_EQ(report["edits"], json::array());
    EXPECT_EQ(report["constraints"], json::array());
    EXPECT_FALSE(report.contains("solver"));
}

TEST(ReportJson, StaysReadableWithBrokenTextAndNumbers) {
    FateReport report;
    report.edits = {{"\xff\xfe", ""}};
    report.entities = {{"g1", EntityFate::followed, std::numeric_limits<double>::infinity()}};
    const json parsed = json::parse(writeReportJson(report));
    EXPECT_EQ(parsed["edits"][0]["text"], "\uFFFD\uFFFD");
    EXPECT_TRUE(parsed["entities"][0]["moved_by"].is_null());
}

}  // namespace
}  // namespace holdfast::report
