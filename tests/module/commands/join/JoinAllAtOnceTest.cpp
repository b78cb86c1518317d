#include <gtest/gtest.h>

#include "commands/join/ConstraintJoinCmdCenter.h"
#include "tests/module/evaluation/FeedingScene.h"

namespace holdfast::module {
namespace {

/// w is the result of l, q and p in this order; p carries the dependencies. Ids and order of use differ.
constexpr const char* kDrawing =
    "polyline w 0,0 5,0 6,1 7,0 12,0 12,5; polyline p 7,0#11 12,0#12 12,5#13; polyline q 5,0#31 6,1#32 7,0#33;"
    "line l 0,0 5,0; line z 12,5 12,9; dependency p[1]; dependency p[2]";

bool join(const FeedingScene& scene, std::initializer_list<const char*> pieces, const char* result = "w") {
    return ConstraintJoinCmdCenter().dealAssocPlineJoin(scene.ids(pieces), scene.id(result));
}

TEST(JoinAllAtOnce, WritesIdentifiersBehindTheVerticesOfEarlierPieces) {
    FeedingScene scene(kDrawing);
    EXPECT_TRUE(join(scene, {"l", "q", "p", "z"}));
    EXPECT_EQ(scene.vertices("w"), "0,0 5,0 6,1 7,0#11 12,0#12 12,5#13");
    EXPECT_EQ(scene.vertices("p"), "7,0#11 12,0#12 12,5#13");
}

TEST(JoinAllAtOnce, CountsOneVertexForALineBeforeTheSource) {
    FeedingScene scene("polyline w 0,0 5,0 9,0; polyline p 5,0#21 9,0#22; line l 0,0 5,0; dependency p[1]");
    EXPECT_TRUE(join(scene, {"l", "p"}));
    EXPECT_EQ(scene.vertices("w"), "0,0 5,0#21 9,0#22");
}

TEST(JoinAllAtOnce, MovesTheSourcesGeometryDependenciesToTheResult) {
    FeedingScene scene(kDrawing);
    join(scene, {"l", "q", "p"});
    EXPECT_EQ(scene.dependencies(), "outsider: outsider; p[1]: w[4] 11-12; p[2]: w[5] 12-13");
    EXPECT_EQ(
        scene.process().journal().text({"detachFromObject", "attachToObject"}),
        "detach dependency p[1]; attach dependency p[1] to w; detach dependency p[2]; attach dependency p[2] to w");
    EXPECT_EQ(scene.calls("setStatus") + scene.calls("setSubentity"), 0);
}

TEST(JoinAllAtOnce, TakesOnlyTheFirstPieceThatCarriesDependencies) {
    FeedingScene scene(kDrawing + std::string("; dependency q[1]"));
    EXPECT_TRUE(join(scene, {"l", "q", "p"}));
    EXPECT_EQ(scene.vertices("w"), "0,0 5,0#31 6,1#32 7,0#33 12,0 12,5");
    EXPECT_EQ(scene.dependencies(), "outsider: outsider; p[1]: p[1] 11-12; p[2]: p[2] 12-13; q[1]: w[2] 31-32");
}

TEST(JoinAllAtOnce, WritesIdentifiersReversedWhenAnyPointDiffers) {
    FeedingScene scene(
        "polyline w 12,5 12,0 7,0 0,0; polyline p 7,0#11 12,0#12 12,5#13; line l 7,0 0,0;"
        "dependency p[1]; dependency p[2]");
    EXPECT_TRUE(join(scene, {"p", "l"}));
    EXPECT_EQ(scene.vertices("w"), "12,5#12 12,0#13 7,0 0,0");
    EXPECT_EQ(scene.dependencies(), "outsider: outsider; p[1]: w[?] 11-12; p[2]: w[1] 12-13");
}

TEST(JoinAllAtOnce, TakesPointsWithinTheToleranceForEqual) {
    FeedingScene scene("polyline w 0,0.00000000009 5,0 9,0; polyline p 0,0#21 5,0#22 9,0#23; dependency p[1]");
    EXPECT_TRUE(join(scene, {"p"}));
    EXPECT_EQ(scene.vertices("w"), "0,9e-11#21 5,0#22 9,0#23");
}

TEST(JoinAllAtOnce, TakesTheOriginForAVertexThatTheResultDoesNotHave) {
    FeedingScene scene("polyline w 5,0 9,0; polyline p 5,0#21 9,0#22 0,0#23; dependency p[1]");
    EXPECT_TRUE(join(scene, {"p"}));
    EXPECT_EQ(scene.vertices("w"), "5,0#21 9,0#22");
}

TEST(JoinAllAtOnce, LeavesOtherReactorsOnTheSource) {
    FeedingScene scene(kDrawing + std::string("; reactor p"));
    EXPECT_TRUE(join(scene, {"l", "q", "p"}));
    EXPECT_EQ(HostAccess::reactors(*scene.pointer("p")).size(), 1U);
    EXPECT_EQ(HostAccess::reactors(*scene.pointer("w")).size(), 2U);
}

TEST(JoinAllAtOnce, DoesNotTakeAnotherReactorForADependency) {
    FeedingScene scene(kDrawing + std::string("; reactor q"));
    EXPECT_TRUE(join(scene, {"l", "q", "p"}));
    EXPECT_EQ(scene.vertices("w"), "0,0 5,0 6,1 7,0#11 12,0#12 12,5#13");
}

TEST(JoinAllAtOnce, CountsABareGeometryDependencyAsOne) {
    FeedingScene scene("polyline w 5,0 9,0; polyline p 5,0#21 9,0#22; bare dependency p[1]");
    EXPECT_TRUE(join(scene, {"p"}));
    EXPECT_EQ(scene.dependencies(), "outsider: outsider; p[1]: w[1] 21-22");
}

/// Nothing was moved and no identifier was written.
void expectNothingMoved(FeedingScene& scene) {
    EXPECT_EQ(scene.dependencies(), "outsider: outsider; p[1]: p[1] 11-12; p[2]: p[2] 12-13");
    EXPECT_EQ(scene.vertices("w"), "0,0 5,0 6,1 7,0 12,0 12,5");
    EXPECT_EQ(scene.calls("detachFromObject"), 0);
}

TEST(JoinRefusal, MovesNothingWithoutPieces) {
    FeedingScene scene(kDrawing);
    EXPECT_FALSE(join(scene, {}));
    expectNothingMoved(scene);
    EXPECT_EQ(scene.calls("openObject"), 0);
}

TEST(JoinRefusal, MovesNothingWithoutADependencyCarryingPolyline) {
    FeedingScene scene(kDrawing + std::string("; dependency l"));
    EXPECT_FALSE(join(scene, {"l", "q", "z"}));
    EXPECT_EQ(scene.calls("detachFromObject"), 0);
}

TEST(JoinRefusal, MovesNothingWhenAPieceBehindTheSourceDoesNotOpen) {
    FeedingScene scene(kDrawing);
    scene.refuseOpen("z");
    EXPECT_FALSE(join(scene, {"l", "q", "p", "z"}));
    expectNothingMoved(scene);
}

TEST(JoinRefusal, ThrowsForAPieceThatIsNoEntityBeforeAnythingMoves) {
    FeedingScene scene(kDrawing);
    scene.addNonEntity("plain");
    YxArray<YxDbObjectId> pieces = scene.ids({"l", "q", "p", "plain"});
    EXPECT_THROW(ConstraintJoinCmdCenter().dealAssocPlineJoin(pieces, scene.id("w")), YxError_NotThatKindOfClass);
    expectNothingMoved(scene);
}

TEST(JoinRefusal, MovesNothingWithoutTheHostsDatabaseService) {
    FeedingScene scene(kDrawing);
    scene.process().setServicesUp(false);
    EXPECT_FALSE(join(scene, {"l", "q", "p"}));
    expectNothingMoved(scene);
}

TEST(JoinRefusal, MovesNothingWhenTheSourceDoesNotOpenAgainAsAPolyline) {
    FeedingScene scene(kDrawing);
    scene.host().answerOther("openObject", scene.pointer("l"), scene.pointer("p"), 2);
    EXPECT_FALSE(join(scene, {"l", "q", "p"}));
    expectNothingMoved(scene);
}

TEST(JoinRefusal, ComesAfterTheDependenciesLeftWhenTheResultIsNoPolyline) {
    FeedingScene scene(kDrawing);
    EXPECT_FALSE(join(scene, {"l", "q", "p"}, "z"));
    EXPECT_TRUE(HostAccess::reactors(*scene.pointer("p")).empty());
    EXPECT_EQ(HostAccess::reactors(*scene.pointer("z")).size(), 2U);
    EXPECT_EQ(scene.calls("setVertexIdentifierAt"), 0);
}

TEST(JoinDependency, StaysWhenItCannotBeOpenedForWrite) {
    FeedingScene scene(kDrawing);
    scene.host().refuse("openObject", scene.dependency("p[1]"), 3);
    EXPECT_TRUE(join(scene, {"l", "q", "p"}));
    EXPECT_EQ(scene.dependencies(), "outsider: outsider; p[1]: w[4] 11-12; p[2]: w[5] 12-13");
    FeedingScene again(kDrawing);
    again.host().refuse("openObject", again.dependency("p[2]"));
    EXPECT_TRUE(join(again, {"l", "q", "p"}));
    EXPECT_EQ(again.dependencies(), "outsider: outsider; p[1]: w[4] 11-12; p[2]: p[2] 12-13");
}

TEST(JoinFailures, LeaveNothingOpen) {
    const int calls = failEachCall(kDrawing, [](const FeedingScene& scene) { join(scene, {"l", "q", "p", "z"}); });
    EXPECT_GT(calls, 30);
}

}  // namespace
}  // namespace holdfast::module
