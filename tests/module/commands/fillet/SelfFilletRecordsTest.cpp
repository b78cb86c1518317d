#include <gtest/gtest.h>

#include "tests/module/commands/fillet/SelfFilletCommand.h"
#include "tests/module/commands/fillet/TestAccess.h"
#include "tests/module/core/CheckedScene.h"

namespace holdfast::module {
namespace {

using Centre = ConstraintFilletCmdCenter;

/// Start indices of the recorded segments: "0-1 2-3".
std::string recorded(Centre& centre) {
    std::string text;
    for (const auto& info : LvTestAccess::firstInfos(centre))
        text += (text.empty() ? "" : " ") + std::to_string(info.startIndex) + "-" + std::to_string(info.endIndex);
    return text;
}

std::string recordedFor(const std::string& text, unsigned int first, unsigned int second, Centre::PolylineTrimMode mode,
                        bool sharp = false) {
    CheckedScene scene(text);
    Centre centre;
    centre.setSelfPolyLineDate(scene.entity("p"), first, second, mode, sharp);
    return recorded(centre);
}

TEST(SetSelfPolyLineDate, RecordsTheTwoSegmentsTheFirstInFront) {
    EXPECT_EQ(recordedFor(kOpen, 0, 2, Centre::kBetween), "0-1 2-3");
    EXPECT_EQ(recordedFor(kOpen, 2, 0, Centre::kBetween), "2-3 0-1");
}

TEST(SetSelfPolyLineDate, ShiftsWhatLiesBehindAnInsertedArc) {
    CheckedScene scene(kOpen);
    Centre centre;
    centre.setSelfPolyLineDate(scene.entity("p"), 1, 2, Centre::kCorner, false);
    EXPECT_EQ(recorded(centre), "1-2 3-4");
    const auto& second = LvTestAccess::firstInfos(centre)[1];
    EXPECT_EQ(second.startVertexId, 22);
    EXPECT_EQ(second.endVertexId, 5);
    EXPECT_EQ(second.startPoint.x, 10.0);
    EXPECT_EQ(second.endPoint.x, 20.0);
}

TEST(SetSelfPolyLineDate, SortsTheVerticesButComparesThemAsPassed) {
    CheckedScene scene(kOpen);
    Centre centre;
    centre.setSelfPolyLineDate(scene.entity("p"), 3, 0, Centre::kBetween, true);
    EXPECT_EQ(LvTestAccess::firstVertex(centre), 0U);
    EXPECT_EQ(LvTestAccess::secondVertex(centre), 3U);
    EXPECT_EQ(LvTestAccess::mode(centre), Centre::kBetween);
    EXPECT_TRUE(LvTestAccess::flag(centre));
    EXPECT_EQ(scene.process().journal().count("YxDbAssocDependency::setStatus"), 0);
}

TEST(SetSelfPolyLineDate, MarksWhatVanishesBetweenOrBehind) {
    CheckedScene between(kOpen);
    Centre centre;
    centre.setSelfPolyLineDate(between.entity("p"), 0, 3, Centre::kBetween, false);
    EXPECT_EQ(between.process().journal().text({"YxDbAssocDependency::setStatus"}),
              "status of dependency p[2]: 5, true; status of dependency p[3]: 5, true");
}

TEST(SetSelfPolyLineDate, MarksWhatLiesBehindTheSecondSegmentOfAClosedPolyline) {
    CheckedScene scene(kClosed);
    Centre centre;
    centre.setSelfPolyLineDate(scene.entity("p"), 0, 2, Centre::kBehind, false);
    EXPECT_EQ(scene.process().journal().text({"YxDbAssocDependency::setStatus"}),
              "status of dependency p[4]: 5, true; status of dependency p[5]: 5, true");
}

TEST(SetSelfPolyLineDate, RecordsNothingInModeZeroNorForASharpNeighbour) {
    for (const auto& [mode, sharp] : {std::pair{Centre::kNothing, false}, std::pair{Centre::kNothing, true},
                                      std::pair{Centre::kCorner, true}, std::pair{Centre::kClosingCorner, true}}) {
        CheckedScene scene(kClosed);
        const std::string before = scene.dependencies();
        Centre centre;
        centre.setSelfPolyLineDate(scene.entity("p"), 0, 1, Centre::kBetween, false);
        centre.setSelfPolyLineDate(scene.entity("p"), 0, 1, mode, sharp);
        EXPECT_EQ(recorded(centre), "");
        EXPECT_EQ(LvTestAccess::mode(centre), Centre::kNothing);
        centre.setSelfPolyLineConstraint(scene.entity("p"));
        EXPECT_EQ(scene.dependencies(), before);
    }
}

TEST(SetSelfPolyLineDate, NeedsAPolylineWithDependencies) {
    EXPECT_EQ(recordedFor("line p 0,0 1,1; fixed p", 0, 1, Centre::kBetween), "");
    EXPECT_EQ(recordedFor("polyline p 0,0 1,1 2,0", 0, 1, Centre::kBetween), "");
    Centre centre;
    centre.setSelfPolyLineDate(nullptr, 0, 1, Centre::kBetween, false);
    EXPECT_EQ(recorded(centre), "");
}

TEST(SetSelfPolyLineConstraint, NeedsRecordsAPolylineAndTheGroup) {
    CheckedScene scene(kOpen + "; line a 0,0 1,1");
    Centre centre;
    centre.setSelfPolyLineConstraint(scene.entity("p"));
    EXPECT_EQ(scene.process().journal().count("openObject"), 0);
    centre.setSelfPolyLineDate(scene.entity("p"), 0, 1, Centre::kCorner, false);
    centre.setSelfPolyLineConstraint(scene.entity("a"));
    centre.setSelfPolyLineConstraint(nullptr);
    scene.refuseOpen("group");
    centre.setSelfPolyLineConstraint(scene.entity("p"));
    EXPECT_EQ(scene.process().journal().count("setVertexIdentifierAt"), 0);
}

TEST(FilletInAnUnknownMode, RecordsAndRemapsNothing) {
    CheckedScene scene(kOpen);
    Centre centre;
    centre.setSelfPolyLineDate(scene.entity("p"), 0, 1, static_cast<Centre::PolylineTrimMode>(6), true);
    EXPECT_EQ(recorded(centre), "0-1 1-2");
    centre.setSelfPolyLineConstraint(scene.entity("p"));
    EXPECT_EQ(scene.process().journal().count("setSubentity"), 0);
    EXPECT_EQ(scene.process().journal().count("setVertexIdentifierAt"), 0);
}

}  // namespace
}  // namespace holdfast::module
