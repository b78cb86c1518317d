#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "editing/fates/FateReport.h"
#include "report/page/BeforeAfter.h"
#include "report/page/FateTable.h"
#include "report/page/HtmlReport.h"
#include "report/picture/Frame.h"
#include "report/picture/Svg.h"

namespace holdfast::report {
namespace {

using testing::HasSubstr;
using testing::Not;

/// A line, and a block of a line and of one that nobody sees, far to the right.
Document withReference() {
    Look hidden;
    hidden.visible = false;
    Document document;
    document.name = "a plate";
    document.entities = {{.id = "base", .shape = LineShape{{0, 0}, {10, 0}}}};
    const SharedBlock block(
        {.name = "Plug", .parts = {{LineShape{{0, 0}, {0, 8}}}, {LineShape{{0, 0}, {900, 8}}, SharedLook(hidden)}}});
    document.references = {{.id = "insert:0", .placement = {.at = {50, 20}}, .block = block}};
    return document;
}

FateReport movedReport() {
    FateReport report{.title = {},
                      .before = withReference(),
                      .after = withReference(),
                      .edits = {{"move insert:0", {}}},
                      .constraints = {},
                      .entities = {{"insert:0", EntityFate::edited, 5.0}},
                      .solver = {}};
    report.after.references[0].placement.at = {55, 20};
    return report;
}

TEST(BlockPictures, ShowWhatReferencesShow) {
    const std::string picture = writePicture(withReference());
    EXPECT_THAT(picture, HasSubstr("<path class=\"e\" data-e=\"insert:0/g0 insert:0\""));
    EXPECT_THAT(picture, Not(HasSubstr("insert:0/g1")));
    EXPECT_EQ(windowOf(withReference()).high, (Vec2{50, 28}));
}

TEST(BlockPictures, LeaveOutThePointsThatDimensionsHangOn) {
    Look onPoints;
    onPoints.layer = "Defpoints";
    Document document = withReference();
    const SharedBlock block(
        {.name = "*D1", .parts = {{PointShape{{1, 1}}, SharedLook(onPoints)}, {PointShape{{2, 2}}}}});
    document.references.push_back({.id = "dimension:0", .kind = BlockReference::Kind::dimension, .block = block});
    const std::string picture = writePicture(document);
    EXPECT_THAT(picture, Not(HasSubstr("dimension:0/g0")));
    EXPECT_THAT(picture, HasSubstr("dimension:0/g1"));
}

TEST(BlockPictures, NameReferencesWhereTheyStand) {
    EXPECT_THAT(writePicture(withReference(), {}, {.names = true}), HasSubstr(">insert:0</text>"));
}

TEST(BlockPictures, HaveWhatReferencesShowInTrueSize) {
    EXPECT_THAT(writeTrueSizeSvg(withReference()), HasSubstr("<path id=\"insert:0/g0\""));
}

TEST(BlockPictures, TellAnEditedReferenceFromOthers) {
    const std::string picture = writeBeforeAfter(movedReport(), false);
    EXPECT_THAT(picture, HasSubstr("<path class=\"e edited\" data-e=\"insert:0/g0 insert:0\""));
    EXPECT_THAT(picture, HasSubstr("<path class=\"ghost\""));
    EXPECT_THAT(writeHtmlReport(movedReport()), HasSubstr("data-e=\"insert:0\""));
}

}  // namespace
}  // namespace holdfast::report
