#include <gtest/gtest.h>

#include "tests/module/commands/stretch/Stretch.h"

namespace holdfast::module {
namespace {

/// p: straight, half circle of radius 5 about (10,5), straight; c: the same, closed by a half circle about (0,5).
constexpr const char* kDrawing =
    "polyline c 0,0 10,0^1 10,10 0,10^1 closed; arc k centre 20,0 radius 5 from 0 to 90; ray r 1,1 dir 1,0;"
    "polyline p 0,0 10,0^1 10,10 0,10; xline x 0,5 dir 1,0; arc f centre 70,0 radius 5 from 0 to 90; line a 0,0 4,0;"
    "dependency a; dependency x; dependency r; dependency k; dependency p[2]; dependency c[2]";

std::unique_ptr<YxDbEntity> xlineTowards(double x, double y) {
    return EntityAccess::makeXline({0, 5, 0}, {x, y, 0});
}

std::string turnedXline(std::initializer_list<int> indices, double x, double y) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    return stretch.object("x", indices, xlineTowards(x, y)).begin().specials();
}

TEST(StretchXline, TurnsAboutItsBaseAsItsSourceDoes) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    stretch.object("x", {1}, xlineTowards(0, 1)).begin();
    const YxGeMatrix3d& turn = LvTestAccess::specials(stretch.centre).first().xform;
    const YxGePoint3d turned = turn * YxGePoint3d(1, 5, 0);
    EXPECT_NEAR(turned.x, 0.0, 1e-15);
    EXPECT_NEAR(turned.y, 6.0, 1e-15);
    EXPECT_EQ(textOf(turn * YxGePoint3d(0, 5, 0)), "0,5,0");
    EXPECT_EQ(LvTestAccess::specials(stretch.centre).first().segIndex, 0);
    EXPECT_EQ(LvTestAccess::specials(stretch.centre).first().radius, 0.0);
}

TEST(StretchXline, TurnsClockwiseWhenItsSourceDoes) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    stretch.object("x", {2, 1}, xlineTowards(0, -1)).begin();
    const YxGePoint3d turned = LvTestAccess::specials(stretch.centre).first().xform * YxGePoint3d(1, 5, 0);
    EXPECT_NEAR(turned.y, 4.0, 1e-15);
}

TEST(StretchXline, HasNoRecordWhenItsBasePointIsStretched) {
    EXPECT_EQ(turnedXline({0}, 0, 1), "");
    EXPECT_EQ(turnedXline({1, 0}, 0, 1), "");
    EXPECT_EQ(turnedXline({1}, 1, 0), "x identity 0 0,0,0");
}

TEST(StretchXline, HasNoRecordWithoutASource) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    EXPECT_EQ(stretch.object("x", {1}, nullptr).begin().specials(), "");
}

TEST(StretchRay, HasNoRecordWhereRaysAreNoConstructionLines) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    EXPECT_EQ(stretch.object("r", {1}, EntityAccess::makeRay({1, 1, 0}, {0, 1, 0})).begin().specials(), "");
}

TEST(StretchArc, MovesItsCentreAndTakesItsSourcesRadius) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    stretch.object("k", {2}, EntityAccess::makeArc({.centre = {21, 3, 0}, .radius = 6.5})).begin();
    EXPECT_EQ(stretch.specials(), "k translation 1,3,0 0 6.5,0,0");
}

TEST(StretchArc, HasARecordForOneStretchedGripOnly) {
    FeedingScene scene(kDrawing);
    Stretch one(scene);
    EXPECT_NE(one.object("k", {7}, 1, 0).begin().specials(), "");
    Stretch two(scene);
    EXPECT_EQ(two.object("k", {0, 1}, 1, 0).begin().specials(), "");
    Stretch none(scene);
    EXPECT_EQ(none.object("k", {0}, nullptr).begin().specials(), "");
}

TEST(StretchPolyline, MovesTheCentresOfItsArcSegments) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    EXPECT_EQ(stretch.object("p", {1, 0, 2}, 3, 4).begin().specials(), "p translation 3,4,0 1 5,0,0");
    Stretch closed(scene);
    EXPECT_EQ(closed.object("c", {3, 1}, 3, 4).begin().specials(),
              "c translation 3,4,0 3 5,0,0; c translation 3,4,0 1 5,0,0");
}

TEST(StretchPolyline, RecordsAnUnreadArcForTheLastVertexOfAnOpenOne) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    EXPECT_EQ(stretch.object("p", {3}, 3, 4).begin().specials(), "p identity 3 1,0,0");
}

TEST(StretchPolyline, AcceptsAnIndexEqualToTheVertexCountOnlyWhenClosed) {
    FeedingScene scene(kDrawing);
    Stretch open(scene);
    EXPECT_EQ(open.object("p", {4}, 3, 4).begin().specials(), "");
    Stretch closed(scene);
    EXPECT_EQ(closed.object("c", {4, 5}, 3, 4).begin().specials(), "c identity 4 1,0,0");
}

TEST(StretchPolyline, SkipsANegativeIndex) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    EXPECT_EQ(stretch.object("p", {-1, 1}, 3, 4).begin().specials(), "p translation 3,4,0 1 5,0,0");
}

TEST(StretchPolyline, RecordsADegenerateSegment) {
    FeedingScene scene("polyline d 0,0 0,0 5,0; dependency d[2]");
    Stretch stretch(scene);
    EXPECT_EQ(stretch.object("d", {0, 1}, 3, 4).begin().specials(), "d identity 0 1,0,0");
}

TEST(StretchPolyline, MeasuresFromAnUnreadArcWhenOnlyTheSourceIsAnArc) {
    FeedingScene scene("polyline d 0,0 0,0 5,0; dependency d[2]");
    Stretch stretch(scene);
    stretch.object("d", {0}, EntityAccess::makePolyline({.vertices = {{{0, 0}, 1.0}, {{6, 0}}, {{9, 0}}}})).begin();
    EXPECT_EQ(stretch.specials(), "d translation 3,0,0 0 3,0,0");
}

TEST(StretchPolyline, HasNoRecordWithoutASource) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    EXPECT_EQ(stretch.object("p", {1, 3}, nullptr).begin().specials(), "");
}

TEST(StretchSpecials, AreFoundInTheOrderOfTheObjectsAndSkipFreeOnes) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    stretch.object("k", {0}, 1, 0).object("f", {0}, 1, 0).object("a", {0}, 1, 0).object("p", {1}, 0, 2).begin();
    EXPECT_EQ(stretch.specials(), "k translation 1,0,0 0 5,0,0; p translation 0,2,0 1 5,0,0");
}

TEST(StretchSpecials, EndAtAnEmptyIndexList) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    stretch.object("k", {0}, 1, 0).object("a", {1}, 1, 0).object("x", {}, 0, 0).object("p", {1}, 0, 2);
    stretch.object("c", {1}, 0, 2).begin();
    EXPECT_EQ(stretch.specials(), "k translation 1,0,0 0 5,0,0");
}

TEST(StretchSpecials, GoOnBehindAFreeObjectWithAnEmptyIndexList) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    stretch.object("f", {}, 1, 0).object("k", {0}, 1, 0).begin();
    EXPECT_EQ(stretch.specials(), "k translation 1,0,0 0 5,0,0");
}

TEST(StretchSpecials, EndAtAnObjectThatDoesNotOpen) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    scene.refuseOpen("a");
    stretch.object("k", {0}, 1, 0).object("a", {1}, 1, 0).object("p", {1}, 0, 2).begin();
    EXPECT_EQ(stretch.specials(), "k translation 1,0,0 0 5,0,0");
}

TEST(StretchSpecials, EndAtAnObjectThatIsNoEntity) {
    FeedingScene scene(kDrawing);
    scene.addNonEntity("plain");
    scene.host().answerOther("openObject", HostAccess::peek(scene.id("plain")), scene.pointer("a"));
    Stretch stretch(scene);
    stretch.object("k", {0}, 1, 0).object("a", {1}, 1, 0).object("p", {1}, 0, 2).begin();
    EXPECT_EQ(stretch.specials(), "k translation 1,0,0 0 5,0,0");
}

TEST(StretchSpecials, AreFoundAnewForEachSourceInfo) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    stretch.object("k", {0}, 1, 0).begin();
    stretch.move({2, 0, 0});
    EXPECT_EQ(stretch.specials(), "k translation 1,0,0 0 5,0,0");
    stretch.indexLists()[0].append(1);
    EXPECT_EQ(stretch.move({2, 0, 0}).specials(), "");
}

TEST(StretchSpecials, AreEmptyWhenTheListsDiffer) {
    FeedingScene scene(kDrawing);
    Stretch stretch(scene);
    stretch.object("k", {0}, 1, 0).begin();
    stretch.sources().append(nullptr);
    EXPECT_EQ(stretch.move({}).specials(), "");
    stretch.indexLists().setLogicalLength(2);
    EXPECT_EQ(stretch.move({}).specials(), "");
}

}  // namespace
}  // namespace holdfast::module
