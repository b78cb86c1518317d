#include <gtest/gtest.h>

#include "core/CurveEnds.h"
#include "tests/module/commands/fillet/SelfFilletCommand.h"
#include "tests/module/commands/fillet/TestAccess.h"
#include "tests/module/core/CheckedScene.h"

namespace holdfast::module {
namespace {

using Centre = ConstraintFilletCmdCenter;

/// A polyline after a fillet within it.
class Filleted : public CheckedScene {
public:
    Filleted(const std::string& text, const SelfFilletEdit& edit) : CheckedScene(text) {
        m_deleted = selfFillet(*this, "p", m_centre, edit);
    }
    int deleted() const { return m_deleted; }

private:
    Centre m_centre;
    int m_deleted = 0;
};

TEST(FilletCorner, PointsTheSecondSegmentBehindTheArc) {
    Filleted scene(kOpen, {.first = 0, .second = 1, .mode = Centre::kCorner, .onFirst = {8, 0}, .onSecond = {10, 2}});
    EXPECT_EQ(scene.vertices("p"), "0,0#31 8,0#7^0.4 10,2#41 10,10#42 20,10#5 20,0#40");
    // The vertex behind the second segment is numbered anew, so that the next one is told by its end alone.
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-7; p[2]: p[3] 41-42; p[3]: p[?] 22-5; p[4]: p[5] 5-40");
}

TEST(FilletCorner, LosesTheCornerAndTheNextOneBecauseTheFirstIsCollected) {
    Filleted scene(kOpen, {.first = 0, .second = 1, .mode = Centre::kCorner, .onFirst = {8, 0}, .onSecond = {10, 2}});
    EXPECT_EQ(scene.deleted(), 1);
    EXPECT_EQ(scene.constraints(),
              "fixed p[1]; fixed p[3]; fixed p[?]; fixed p[5]; implied coincident p[?].end p[5].start");
}

TEST(FilletCorner, WritesTheIdentifierOfTheFirstSegmentWhenOnlyThatIsKept) {
    Filleted scene("polyline p 0,0#31 10,0#7 10,10#22; fixed p[1]; fixed p[2].start",
                   {.first = 0, .second = 1, .mode = Centre::kCorner, .onFirst = {8, 0}, .onSecond = {10, 2}});
    EXPECT_EQ(scene.vertices("p"), "0,0#31 8,0#7^0.4 10,2 10,10#22");
    EXPECT_EQ(scene.constraints(), "fixed p[1]");
}

TEST(FilletCorner, WritesNothingWhenOnlyTheSecondSegmentIsKept) {
    Filleted scene("polyline p 0,0#31 10,0#7 10,10#22; fixed p[1].end; fixed p[2]",
                   {.first = 0, .second = 1, .mode = Centre::kCorner, .onFirst = {8, 0}, .onSecond = {10, 2}});
    EXPECT_EQ(scene.vertices("p"), "0,0#31 8,0^0.4 10,2#7 10,10#22");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[?] 31-7; p[2]: p[3] 7-22");
}

TEST(FilletCorner, WritesNothingWhenNoSegmentIsKept) {
    Filleted scene("polyline p 0,0#31 10,0#7 10,10#22; coincident p[1].end p[2].start",
                   {.first = 0, .second = 1, .mode = Centre::kCorner, .onFirst = {8, 0}, .onSecond = {10, 2}});
    EXPECT_EQ(scene.vertices("p"), "0,0#31 8,0^0.4 10,2#7 10,10#22");
    EXPECT_EQ(scene.constraints(), "");
}

TEST(FilletAcrossAGap, KeepsTheSegmentsThatTheArcJoins) {
    Filleted scene(kOpen, {.first = 0, .second = 2, .mode = Centre::kBetween, .onFirst = {8, 0}, .onSecond = {12, 10}});
    EXPECT_EQ(scene.vertices("p"), "0,0#31 8,0#7^0.4 12,10#22 20,10#5 20,0#40");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-7; p[2]: p[2] 7-22 status 5; p[3]: p[3] 22-5; p[4]: p[4] 5-40");
    EXPECT_EQ(scene.deleted(), 2);
}

TEST(FilletAcrossAGap, PointsTheFirstSegmentAtASharpCorner) {
    Filleted scene(kOpen, {.first = 0, .second = 2, .mode = Centre::kBetween, .sharp = true, .corner = {5, 10}});
    EXPECT_EQ(scene.vertices("p"), "0,0#31 5,10#22 20,10#5 20,0#40");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-22; p[2]: p[?] 7-22 status 5; p[3]: p[2] 22-5; p[4]: p[3] 5-40");
}

TEST(FilletAcrossAGap, ComparesTheSecondSegmentByTheIndicesItHadBeforeVerticesWereRemoved) {
    // Its own end stayed, but the vertex that now has its index lies elsewhere: the corner behind it goes as well.
    Filleted scene(kOpen, {.first = 0, .second = 2, .mode = Centre::kBetween, .sharp = true, .corner = {5, 10}});
    EXPECT_EQ(scene.deleted(), 3);
    EXPECT_EQ(scene.constraints(), "fixed p[1]; fixed p[?]; fixed p[2]; fixed p[3]");
}

TEST(FilletAcrossAGap, WritesTheIdentifierOfTheOnlyKeptFirstSegment) {
    Filleted scene("polyline p 0,0#31 10,0#7 10,10#22 20,10#5; fixed p[1]; fixed p[3].start",
                   {.first = 0, .second = 2, .mode = Centre::kBetween, .sharp = true, .corner = {5, 10}});
    EXPECT_EQ(scene.vertices("p"), "0,0#31 5,10#7 20,10#5");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-7; p[3]: p[?] 22-5");
}

TEST(FilletAtTheClosingCorner, PointsTheLastSegmentAtItsNewVertices) {
    Filleted scene(kClosed,
                   {.first = 0, .second = 4, .mode = Centre::kClosingCorner, .onFirst = {2, 0}, .onSecond = {-2, 2}});
    EXPECT_EQ(scene.vertices("p"), "2,0#31 10,0#7 10,10#22 0,10#5 -5,5#41 -2,2#42^0.4 closed");
    EXPECT_EQ(scene.dependencies(),
              "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: p[3] 22-5; p[4]: p[?] 5-40; p[5]: p[5] 41-42");
}

TEST(FilletAtTheClosingCorner, MovesTheIdentifierOfTheCornerWhenOnlyTheLastSegmentIsKept) {
    Filleted scene("polyline p 0,0#31 10,0#7 10,10#22 0,10#5 closed; fixed p[1].start; fixed p[4]",
                   {.first = 0, .second = 3, .mode = Centre::kClosingCorner, .onFirst = {2, 0}, .onSecond = {0, 2}});
    EXPECT_EQ(scene.vertices("p"), "2,0 10,0#7 10,10#22 0,10#5 0,2#31^0.4 closed");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[?] 31-7; p[4]: p[4] 5-31");
}

TEST(FilletBehind, LeavesDependenciesAloneWithAnArc) {
    Filleted scene(kClosed, {.first = 0, .second = 2, .mode = Centre::kBehind, .onFirst = {2, 0}, .onSecond = {3, 10}});
    EXPECT_EQ(scene.vertices("p"), "2,0#31 10,0#7 10,10#22 3,10#5^0.4 closed");
    EXPECT_EQ(scene.dependencies(),
              "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: p[3] 22-5; p[4]: p[?] 5-40 status 5; p[5]: p[?] 40-31 status 5");
}

TEST(FilletBehind, PointsTheSecondSegmentBackToASharpCorner) {
    Filleted scene(kClosed, {.first = 0, .second = 2, .mode = Centre::kBehind, .sharp = true, .corner = {1, 5}});
    EXPECT_EQ(scene.vertices("p"), "1,5#31 10,0#7 10,10#22 closed");
    EXPECT_EQ(
        scene.dependencies(),
        "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: p[3] 22-31; p[4]: p[?] 5-40 status 5; p[5]: p[?] 40-31 status 5");
    EXPECT_EQ(scene.process().journal().count("deleteConstraint"), 3);
}

TEST(FilletBehind, WritesTheEndIdentifierOfTheOnlyKeptSecondSegment) {
    Filleted scene("polyline p 0,0#31 10,0#7 10,10#22 0,10#5 -5,5#40 closed; fixed p[1].start; fixed p[3]",
                   {.first = 0, .second = 2, .mode = Centre::kBehind, .sharp = true, .corner = {1, 5}});
    EXPECT_EQ(scene.vertices("p"), "1,5#5 10,0#7 10,10#22 closed");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[?] 31-7; p[3]: p[3] 22-5");
}

const std::string kHorseshoe =
    "polyline p 0,0#31 10,0#7 10,10#22 0,10#5 0,2#40; fixed p[1]; fixed p[2]; fixed p[3]; fixed p[4]; corners p";

TEST(FilletThatCloses, LeavesDependenciesAloneWithAnArc) {
    Filleted scene(kHorseshoe,
                   {.first = 0, .second = 3, .mode = Centre::kClosing, .onFirst = {2, 0}, .onSecond = {0, 2}});
    EXPECT_EQ(scene.vertices("p"), "2,0#31 10,0#7 10,10#22 0,10#5 0,2#40^0.4 closed");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: p[3] 22-5; p[4]: p[4] 5-40");
}

TEST(FilletThatCloses, PointsTheLastKeptSegmentAtTheSharpCorner) {
    Filleted scene(kHorseshoe, {.first = 0, .second = 3, .mode = Centre::kClosing, .sharp = true, .corner = {0, 0}});
    EXPECT_EQ(scene.vertices("p"), "0,0#31 10,0#7 10,10#22 0,10#5 closed");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: p[3] 22-5; p[4]: p[4] 5-31");
}

TEST(FilletThatCloses, DoesNothingWhenNoSegmentIsKept) {
    Filleted scene("polyline p 0,0#31 10,0#7 10,10#22 0,10#5 0,2#40; fixed p[1].start; fixed p[4].end",
                   {.first = 0, .second = 3, .mode = Centre::kClosing, .sharp = true, .corner = {1, 1}});
    EXPECT_EQ(scene.process().journal().count("setSubentity"), 0);
    EXPECT_EQ(scene.constraints(), "");
}

TEST(FilletThatCloses, LeavesADependencyThatIsMarkedAlready) {
    CheckedScene scene(kHorseshoe);
    HostAccess::setStatus(*scene.dependency("p[4]"), kSegmentRemovedAssocStatus);
    Centre centre;
    selfFillet(scene, "p", centre, {.first = 0, .second = 3, .mode = Centre::kClosing, .sharp = true});
    EXPECT_EQ(scene.process().journal().count("setSubentity"), 0);
}

TEST(FilletThatCloses, SkipsADependencyThatOpensAsAnotherClass) {
    CheckedScene scene(kHorseshoe);
    Centre centre;
    centre.setSelfPolyLineDate(scene.entity("p"), 0, 3, Centre::kClosing, true);
    scene.host().answerOther("openObject", &scene.group(), scene.dependency("p[4]"));
    const auto open = YxDbObjectIdImpl::openObject(scene.id("p"), YxDb::kForWrite, false);
    centre.setSelfPolyLineConstraint(scene.entity("p"));
    EXPECT_EQ(scene.process().journal().count("setSubentity"), 0);
}

// Three kept records: two dependencies stand on the first segment.
TEST(FilletWithThreeRecords, RemapsOnlyTheLastAndOnlyWhenItCloses) {
    const std::string text = "polyline p 0,0#31 10,0#7 10,10#22 0,10#5 0,2#40; fixed p[1]; fixed p[2]; fixed p[4]";
    for (int mode = 1; mode <= 5; ++mode) {
        CheckedScene scene(text);
        HostAccess::setPersistentId(*scene.dependency("p[2]"), HostAccess::makeEdgeId(31, 7));
        Centre centre;
        centre.setSelfPolyLineDate(scene.entity("p"), 0, 3, static_cast<Centre::PolylineTrimMode>(mode), false);
        ASSERT_EQ(LvTestAccess::firstInfos(centre).length(), 3) << mode;
        // The later of the two stands in front.
        EXPECT_EQ(LvTestAccess::firstInfos(centre)[0].dependency, scene.dependency("p[2]"));
        LvTestAccess::flag(centre) = true;
        const auto open = YxDbObjectIdImpl::openObject(scene.id("p"), YxDb::kForWrite, false);
        centre.setSelfPolyLineConstraint(scene.entity("p"));
        EXPECT_EQ(scene.process().journal().text({"setSubentity", "setVertexIdentifierAt"}),
                  mode == 5 ? "part of dependency p[4]: 2, 4" : "")
            << mode;
    }
}

TEST(FilletSegmentRule, IsTheOneOfTheBreak) {
    CheckedScene scene("polyline p 0,0#1 10,0#2; fixed p[1].end; fixed p[1]");
    Centre centre;
    const auto before = endPair({0, 0, 0}, {10, 0, 0});
    const auto after = endPair({0, 0, 0}, {4, 0, 0});
    EXPECT_TRUE(LvTestAccess::judgeSegment(centre, nullptr, scene.dependency("p[1]"), before, after));
    EXPECT_FALSE(LvTestAccess::judgeSegment(centre, &scene.group(), scene.dependency("p[1]"), before, after));
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c1");
}

}  // namespace
}  // namespace holdfast::module
