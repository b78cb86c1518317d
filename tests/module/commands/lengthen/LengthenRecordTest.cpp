#include <gtest/gtest.h>

#include <optional>

#include "tests/module/commands/lengthen/LengthenScene.h"
#include "tests/module/evaluation/LvTestAccess.h"

namespace holdfast::module {
namespace {

TEST(LengthenRecord, HoldsEndsKindAndACopyOfTheCurve) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    EXPECT_TRUE(record(centre, scene, "b"));
    const OriCurveInfo& info = LvTestAccess::originals(centre).at(scene.id("b"));
    EXPECT_EQ(textOf(info.startPoint), "0,0,0");
    EXPECT_EQ(textOf(info.endPoint), "4,0,0");
    EXPECT_EQ(info.entType, 1);
    EXPECT_EQ(textOf(EntityAccess::line(static_cast<YxDbLine&>(*info.pOriEntity)).end), "4,0,0");
    EXPECT_NE(info.pOriEntity, scene.pointer("b"));
}

TEST(LengthenRecord, NamesTheKindAsTheEvaluatorDoes) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    const std::pair<const char*, int> kinds[] = {{"b", 1}, {"k", 6}, {"p", 2}, {"e", 7}};
    for (const auto& [name, kind] : kinds) {
        EXPECT_TRUE(record(centre, scene, name)) << name;
        EXPECT_EQ(LvTestAccess::originals(centre).at(scene.id(name)).entType, kind) << name;
    }
}

TEST(LengthenRecord, RefusesAnyOtherCurve) {
    FeedingScene scene(
        "ray r 0,0 dir 1,0; xline x 0,0 dir 0,1; spline s degree 3 at 0,0 1,1 2,0 3,1; circle c centre 5,5 radius 1;"
        "dependency r; dependency x; dependency s; dependency c");
    ConstraintLengthenCmdCenter centre;
    for (const char* name : {"r", "x", "s", "c"})
        EXPECT_FALSE(record(centre, scene, name)) << name;
    EXPECT_EQ(scene.copies(), 0);
    EXPECT_TRUE(LvTestAccess::originals(centre).empty());
}

TEST(LengthenRecord, RefusesNullAndACurveWithoutConstraints) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    EXPECT_FALSE(centre.addOriCurveInfo(nullptr, scene.id("b")));
    EXPECT_FALSE(record(centre, scene, "free"));
    EXPECT_TRUE(LvTestAccess::originals(centre).empty());
}

TEST(LengthenRecord, KeepsTheFirstOfACurve) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    EXPECT_TRUE(record(centre, scene, "b"));
    setLine(scene, "b", {0, 0, 0}, {9, 0, 0});
    EXPECT_FALSE(record(centre, scene, "b"));
    EXPECT_EQ(textOf(LvTestAccess::originals(centre).at(scene.id("b")).endPoint), "4,0,0");
    EXPECT_EQ(scene.copies(), 1);
}

TEST(LengthenRecord, IsNotMadeOfACurveThatCannotBeCopied) {
    FeedingScene scene(kLengthenDrawing);
    scene.refuse("clone", "b");
    ConstraintLengthenCmdCenter centre;
    EXPECT_FALSE(record(centre, scene, "b"));
    EXPECT_TRUE(LvTestAccess::originals(centre).empty());
    scene.host().clear();
    EXPECT_TRUE(record(centre, scene, "b"));
}

TEST(LengthenRecord, TakesTheOriginForAnEndThatCannotBeRead) {
    FeedingScene scene(kLengthenDrawing);
    scene.refuse("getEndPoint", "a");
    ConstraintLengthenCmdCenter centre;
    EXPECT_TRUE(record(centre, scene, "a"));
    EXPECT_EQ(textOf(LvTestAccess::originals(centre).at(scene.id("a")).endPoint), "0,0,0");
}

TEST(LengthenRecord, OpensNothing) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "k");
    EXPECT_EQ(scene.calls("openObject"), 0);
}

TEST(LengthenCopies, AreFreedWhenTheyWereNeverHandedOver) {
    FeedingScene scene(kLengthenDrawing);
    {
        ConstraintLengthenCmdCenter centre;
        record(centre, scene, "b");
        record(centre, scene, "a");
        EXPECT_EQ(scene.copies(), 2);
    }
    EXPECT_EQ(scene.copies(), 0);
}

TEST(LengthenCopies, AreSharedByACopiedCentre) {
    FeedingScene scene(kLengthenDrawing);
    std::optional<ConstraintLengthenCmdCenter> first(std::in_place);
    record(*first, scene, "b");
    ConstraintLengthenCmdCenter second;
    record(second, scene, "a");
    second = *first;
    EXPECT_EQ(scene.copies(), 1);
    first.reset();
    EXPECT_TRUE(second.addDataToWork());
    EXPECT_EQ(scene.text(scene.header().preEditEntities), "b(line 0,0,0 4,0,0)");
}

TEST(LengthenCopies, StayWithASelfAssignedCentre) {
    FeedingScene scene(kLengthenDrawing);
    ConstraintLengthenCmdCenter centre;
    record(centre, scene, "b");
    const ConstraintLengthenCmdCenter& itself = centre;
    centre = itself;
    EXPECT_EQ(LvTestAccess::originals(centre).size(), 1U);
    EXPECT_EQ(scene.copies(), 1);
}

}  // namespace
}  // namespace holdfast::module
