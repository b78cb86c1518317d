#include <gtest/gtest.h>

#include "tests/module/commands/extend/ExtendScene.h"

namespace holdfast::module {
namespace {

const std::string kLine =
    "line a 0,0 10,0; line b 0,0 0,5; line c 10,0 10,5; coincident a.start b.start; coincident a.end c.start; "
    "parallel a c";

TEST(ExtendLine, LosesWhatHeldAtTheEndThatMoves) {
    EXPECT_EQ(leftAfter(kLine, {20, 0, 0}, kEndMoves), "coincident a.start b.start; parallel a c");
    EXPECT_EQ(leftAfter(kLine, {-9, 0, 0}, kStartMoves), "coincident a.end c.start; parallel a c");
}

TEST(ExtendLine, KeepsAllWhenTheEndComesToWhereItIs) {
    EXPECT_EQ(leftAfter(kLine, {10, 0, 0}, kEndMoves),
              "coincident a.start b.start; coincident a.end c.start; parallel a c");
}

TEST(ExtendLine, KeepsAllForAnUnknownEnd) {
    EXPECT_EQ(leftAfter(kLine, {20, 0, 0}, 3), "coincident a.start b.start; coincident a.end c.start; parallel a c");
}

TEST(ExtendRay, IgnoresTheEndCode) {
    const std::string ray = "ray a 0,0 dir 1,0; line b 0,0 0,5; coincident a.start b.start; parallel a b";
    for (const int end : {kStartMoves, kEndMoves, 7})
        EXPECT_EQ(leftAfter(ray, {-3, 0, 0}, end), "parallel a b") << end;
    EXPECT_EQ(leftAfter(ray, {0, 0, 0}, kStartMoves), "coincident a.start b.start; parallel a b");
}

const std::string kArc =
    "arc a centre 0,0 radius 5 from 0 to 90; line b 5,0 9,0; line c 0,5 0,9; coincident a.start b.start; "
    "coincident a.end c.start; coincident a.centre b.end; tangent a b";

TEST(ExtendArc, KeepsTheCentreAndTheEndThatStays) {
    EXPECT_EQ(leftAfter(kArc, {-5, 0, 0}, kEndMoves),
              "coincident a.start b.start; coincident a.centre b.end; tangent a b");
}

TEST(ExtendArc, KeepsAllForAnUnknownEnd) {
    EXPECT_EQ(leftAfter(kArc, {-5, 0, 0}, 0),
              "coincident a.start b.start; coincident a.end c.start; coincident a.centre b.end; tangent a b");
}

TEST(ExtendEllipticalArc, IsJudgedLikeAnArc) {
    EXPECT_EQ(leftAfter("ellipse a centre 0,0 major 4,0 ratio 0.5 from 0 to 90; line b 4,0 9,0; line c 0,2 0,9; "
                        "coincident a.start b.start; coincident a.end c.start",
                        {-4, 0, 0}, kEndMoves),
              "coincident a.start b.start");
}

TEST(ExtendClosedEllipse, LosesAllUnlessTheEndComesToTheOppositeOne) {
    const std::string ellipse =
        "ellipse a centre 0,0 major 4,0 ratio 0.5; circle b centre 0,0 radius 1; "
        "concentric a.centre b.centre; fixed a";
    EXPECT_EQ(leftAfter(ellipse, {4, 0, 0}, kStartMoves), "concentric a.centre b.centre; fixed a");
    EXPECT_EQ(leftAfter(ellipse, {4, 0, 0}, kEndMoves), "concentric a.centre b.centre; fixed a");
    EXPECT_EQ(leftAfter(ellipse, {5, 0, 0}, kEndMoves), "");
    EXPECT_EQ(leftAfter(ellipse, {5, 0, 0}, 3), "concentric a.centre b.centre; fixed a");
}

TEST(ExtendOtherCurves, LoseNothing) {
    EXPECT_EQ(leftAfter("circle a centre 0,0 radius 3; fixed a; fixed a.centre", {9, 9, 0}, kEndMoves),
              "fixed a; fixed a.centre");
}

const std::string kBent =
    "polyline a 0,0 10,0 10,10 20,10; line b 0,0 0,5; line c 20,10 20,15; coincident a[1].start b.start; "
    "coincident a[1].end a[2].start; coincident a[3].end c.start; horizontal a[2]";

TEST(ExtendPolylineEnds, ExaminesOnlyTheSegmentAtTheMovedEnd) {
    EXPECT_EQ(leftAfter(kBent, {-9, 0, 0}, kStartMoves),
              "coincident a[1].end a[2].start; coincident a[3].end c.start; horizontal a[2]");
    EXPECT_EQ(leftAfter(kBent, {30, 10, 0}, kEndMoves),
              "coincident a[1].start b.start; coincident a[1].end a[2].start; horizontal a[2]");
}

TEST(ExtendPolylineEnds, DoesNothingForAnUnknownEnd) {
    TestScene scene(kBent);
    EXPECT_EQ(extendTo(scene, {30, 10, 0}, 0), 0);
}

TEST(ExtendPolylineEnds, LosesNothingWhenItsEndSegmentHasNoGeometry) {
    EXPECT_EQ(leftAfter("polyline a 0,0#1 10,0#2 10,10#3; bare dependency a[1]; vertical a[2]; line b 10,10 11,11; "
                        "coincident a[2].end b.start",
                        {-9, 0, 0}, kStartMoves),
              "vertical a[2]; coincident a[2].end b.start");
}

TEST(ExtendPolylineEnds, JudgesABulgedSegmentAsAnArc) {
    EXPECT_EQ(leftAfter("polyline a 0,0^0.5 10,0 20,0; line b 0,0 0,5; coincident a[1].start b.start; "
                        "fixed a[1].centre; horizontal a[1].start a[1].end",
                        {-1, 1, 0}, kStartMoves),
              "fixed a[1].centre");
}

TEST(ExtendFault, CollectsNothingWithoutAServiceAGroupOrAnEntity) {
    for (const char* refused : {"group", "a"}) {
        TestScene scene(kLine);
        ConstraintExtendCmdCenter centre;
        scene.refuseOpen(refused);
        centre.setDeleteConstraint(scene.id("a"), {20, 0, 0}, kEndMoves);
        scene.host().clear();
        EXPECT_EQ(centre.deleteConstraint(nullptr), 0) << refused;
    }
    TestScene scene(kLine);
    scene.serviceDown();
    EXPECT_EQ(extendTo(scene, {20, 0, 0}, kEndMoves), 0);
}

TEST(ExtendFault, LeavesNothingOpenWhenAnyHostCallThrows) {
    for (int call = 1; call < 400; ++call) {
        TestScene scene(kBent);
        scene.host().throwFromCall(call);
        ConstraintExtendCmdCenter centre;
        try {
            centre.setDeleteConstraint(scene.id("a"), {-9, 0, 0}, kStartMoves);
            centre.deleteConstraint(nullptr);
            break;  // there was no such call any more
        } catch (const HostFailure&) {
            EXPECT_EQ(HostAccess::constraints(scene.group()).size(), 4u) << "call " << call;
        }
        scene.host().clear();
    }
}

}  // namespace
}  // namespace holdfast::module
