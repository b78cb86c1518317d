#include <gmock/gmock.h>

#include "document/Names.h"
#include "formats/slvs/SlvsReader.h"
#include "geometry/Angles.h"
#include "geometry/SplineCurve.h"
#include "tests/slvs/SlvsFiles.h"

namespace holdfast::formats {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

/// "tangent r005.end r004.end = 3 measured"
std::string spoken(const Constraint& constraint) {
    std::string text(typeName(constraint.type));
    for (const Place& place : constraint.refs)
        text += " " + spokenPlace(place);
    if (constraint.value)
        text += " = " + std::to_string(*constraint.value).substr(0, 7);
    return text + (constraint.driving ? "" : " measured");
}

std::vector<std::string> spoken(const Document& drawing) {
    std::vector<std::string> all;
    for (const Constraint& constraint : drawing.constraints)
        all.push_back(constraint.id + ": " + spoken(constraint));
    return all;
}

SlvsDrawing read(const std::string& more) {
    return readSlvs(slvsBeginning() + more, "", "test.slvs");
}

TEST(SlvsReader, ReadsEveryKindOfEntityByItsRequest) {
    const SlvsDrawing read = formats::read(
        slvsRequest("00000004", 200, {1, 2, 3, 4}) + slvsRequest("00000005", 101, {5, 6}) + slvsParam("00060040", 7) +
        slvsRequest("00000006", 400, {8, 9}) + slvsRequest("00000007", 500, {0, 0, 0, -2, 0, 2}) +
        slvsRequest("0000001a", 300, {0, 0, 1, 2, 3, 2, 4, 0}));
    ASSERT_EQ(read.document.entities.size(), 5U);
    EXPECT_EQ(read.document.entities[0], (Entity{"r004", LineShape{{1, 2}, {3, 4}}}));
    EXPECT_EQ(read.document.entities[1], (Entity{"r005", PointShape{{5, 6}}}));
    EXPECT_EQ(read.document.entities[2], (Entity{"r006", CircleShape{{8, 9}, 7}}));
    EXPECT_EQ(read.document.entities[3], (Entity{"r007", ArcShape{{0, 0}, 2, -kQuarterTurn, kQuarterTurn}}));
    EXPECT_EQ(read.document.entities[4],
              (Entity{"r01a", SplineShape{3, false, {{0, 0}, {1, 2}, {3, 2}, {4, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}}}));
    EXPECT_THAT(read.notUnderstood, ElementsAre());
}

TEST(SlvsReader, RunsACubicThroughThePointsBetweenItsEnds) {
    const SlvsDrawing read =
        formats::read(slvsRequest("00000004", 300, {0, 0, 1, 1, 2, 3, 4, 2, 6, 1, 7, 0}, "Request.extraPoints=2\n"));
    const auto& spline = std::get<SplineShape>(read.document.entities.at(0).shape);
    EXPECT_NEAR(distance(splinePoint(spline, 1.0), {2, 3}), 0.0, 1e-12);
    EXPECT_NEAR(distance(splinePoint(spline, 2.0), {4, 2}), 0.0, 1e-12);
    EXPECT_EQ(spline.control[1], (Vec2{1, 1}));
    EXPECT_EQ(spline.control[4], (Vec2{6, 1}));
}

TEST(SlvsReader, RunsAClosedCubicThroughItsPoints) {
    const SlvsDrawing read =
        formats::read(slvsRequest("00000004", 301, {0, 0, 4, 0, 4, 3, 0, 3}, "Request.extraPoints=1\n"));
    const auto& spline = std::get<SplineShape>(read.document.entities.at(0).shape);
    EXPECT_TRUE(spline.periodic);
    EXPECT_NEAR(distance(splinePoint(spline, 1.0), {4, 0}), 0.0, 1e-12);
    EXPECT_NEAR(distance(splinePoint(spline, 3.0), {0, 3}), 0.0, 1e-12);
}

/// Two lines from a corner, an arc that goes on from the second, a circle and a point.
std::string corner() {
    return slvsRequest("00000004", 200, {0, 0, 10, 0}) + slvsRequest("00000005", 200, {0, 0, 0, 5}) +
           slvsRequest("00000006", 500, {-2, 5, 0, 5, -4, 5}) + slvsParam("00070040", 1.5) +
           slvsRequest("00000007", 400, {6, 3}) + slvsRequest("00000008", 101, {5, 0});
}

TEST(SlvsReader, ReadsEveryKindOfConstraint) {
    const SlvsDrawing read = formats::read(
        corner() + slvsConstraint("00000001", 20, "ptA.v=00040001 ptB.v=00050001") +
        slvsConstraint("00000002", 80, "entityA.v=00040000") + slvsConstraint("00000003", 81, "entityA.v=00050000") +
        slvsConstraint("00000004", 30, "valA=10 ptA.v=00040001 ptB.v=00040002") +
        slvsConstraint("00000005", 32, "valA=-3 ptA.v=00070001 entityA.v=00040000") +
        slvsConstraint("00000006", 122, "entityA.v=00040000 entityB.v=00050000") +
        slvsConstraint("00000007", 120, "valA=90 entityA.v=00040000 entityB.v=00050000") +
        slvsConstraint("00000008", 90, "valA=3 entityA.v=00070000 other=1") +
        slvsConstraint("00000009", 90, "valA=3 entityA.v=00070000 other=0") +
        slvsConstraint("0000000a", 123, "entityA.v=00060000 entityB.v=00050000 other=0") +
        slvsConstraint("0000000b", 70, "ptA.v=00080000 entityA.v=00040000") +
        slvsConstraint("0000000c", 42, "ptA.v=00080000 entityA.v=00040000") +
        slvsConstraint("0000000d", 100, "ptA.v=00060003 entityA.v=00060000") +
        slvsConstraint("0000000e", 200, "ptA.v=00040002") +
        slvsConstraint("0000000f", 130, "entityA.v=00060000 entityB.v=00070000") +
        slvsConstraint("00000010", 50, "entityA.v=00040000 entityB.v=00050000") +
        slvsConstraint("00000011", 63, "ptA.v=00050002 ptB.v=00070001 entityA.v=00040000") +
        slvsConstraint("00000012", 20, "ptA.v=00060001 ptB.v=00070001") +
        slvsConstraint("00000013", 121, "entityA.v=00040000 entityB.v=00050000") +
        slvsConstraint("00000014", 34, "valA=4 ptA.v=00040001 ptB.v=00040002 entityA.v=00020020") +
        slvsConstraint("00000015", 34, "valA=4 ptA.v=00040001 ptB.v=00040002 entityA.v=00030020"));
    EXPECT_THAT(
        spoken(read.document),
        ElementsAre("c001: coincident r004.start r005.start", "c002: horizontal r004", "c003: vertical r005",
                    "c004: distance r004 = 10.0000", "c005: distance r007.centre r004 = 3.00000",
                    "c006: perpendicular r004 r005", "c007: angle r004 r005 = 1.57079", "c008: radius r007 = 1.50000",
                    "c009: diameter r007 = 3.00000", "c00a: tangent r006.start r005.end", "c00b: midpoint r008 r004",
                    "c00c: point_on_curve r008 r004", "c00d: point_on_curve r006.end r006", "c00e: fixed r004.end",
                    "c00f: equal r006 r007", "c010: equal r004 r005", "c011: symmetric r005.end r007.centre r004",
                    "c012: concentric r006.centre r007.centre", "c013: parallel r004 r005",
                    "c014: distance_x r004.start r004.end = 4.00000",
                    "c015: distance_y r004.start r004.end = 4.00000"));
    EXPECT_THAT(read.notUnderstood, ElementsAre());
}

TEST(SlvsReader, TakesThePlanesThatEveryFileHasForTheAxes) {
    const SlvsDrawing read =
        formats::read(corner() + slvsConstraint("00000001", 20, "ptA.v=00040001 ptB.v=80020002") +
                      slvsConstraint("00000002", 20, "ptA.v=00050001 ptB.v=00010001") +
                      slvsConstraint("00000003", 41, "ptA.v=00050002 entityA.v=00020000") +
                      slvsConstraint("00000004", 31, "valA=3 ptA.v=00070001 entityA.v=00030000") +
                      slvsConstraint("00000005", 61, "ptA.v=00050002 ptB.v=00070001") +
                      slvsConstraint("00000006", 62, "ptA.v=00050002 ptB.v=00070001") +
                      slvsConstraint("00000007", 60, "ptA.v=00050002 ptB.v=00070001 entityA.v=00020000"));
    EXPECT_THAT(
        spoken(read.document),
        ElementsAre("c001: coincident r004.start origin", "c002: coincident r005.start origin",
                    "c003: point_on_curve r005.end y_axis", "c004: distance r007.centre x_axis = 3.00000",
                    "c005: symmetric r005.end r007.centre y_axis", "c006: symmetric r005.end r007.centre x_axis",
                    "c007: symmetric r005.end r007.centre y_axis"));
}

TEST(SlvsReader, TellsByNameWhatADrawingDoesNotHold) {
    const SlvsDrawing read = formats::read(
        corner() + slvsRequest("0000000a", 600, {0, 0, 1, 1, 2, 2, 3, 3}) +
        slvsRequest("0000000b", 200, {0, 0, 1, 1}, "", "00000002", "00000000") + slvsParam("000c0040", 0) +
        slvsRequest("0000000c", 400, {0, 0}) + slvsConstraint("00000001", 1000, "comment=look") +
        slvsConstraint("00000002", 51, "valA=2 entityA.v=00040000 entityB.v=00050000") +
        slvsConstraint("00000003", 80, "entityA.v=000b0000") + slvsConstraint("00000004", 777, "valA=2"));
    EXPECT_THAT(read.notUnderstood,
                ElementsAre("r00a (text)", "r00b (line outside the sketch's plane)", "r00c (circle: radius 0.0)",
                            "c001 (comment)", "c002 (ratio of lengths)", "c003 (horizontal)", "c004 (kind 777)"));
    EXPECT_EQ(read.document.entities.size(), 5U);
}

TEST(SlvsReader, KeepsReferenceDimensionsAsMeasuredOnes) {
    std::string text = slvsConstraint("00000001", 30, "valA=10 ptA.v=00040001 ptB.v=00050002");
    text.replace(text.find("reference=0"), 11, "reference=1");
    EXPECT_THAT(spoken(read(corner() + text).document),
                ElementsAre("c001: distance r004.start r005.end = 10.0000 measured"));
}

TEST(SlvsReader, ReadsTheSketchThatIsNamedAndHoldsOthersFixed) {
    const std::string second =
        "Group.h.v=00000003\nGroup.type=5001\nGroup.name=lid\nGroup.activeWorkplane.v=80030000\nAddGroup\n\n"
        "Entity.h.v=80030000\nEntity.type=10000\nEntity.point[0].v=80030002\nEntity.normal.v=80030001\nAddEntity\n\n"
        "Entity.h.v=80030001\nEntity.type=3010\nEntity.actNormal.w=1\nAddEntity\n\n"
        "Entity.h.v=80030002\nEntity.type=2012\nEntity.actPoint.x=10\nAddEntity\n\n"
        "Entity.h.v=00040002\nEntity.type=2001\nEntity.actPoint.x=12\nEntity.actPoint.y=5\nAddEntity\n\n" +
        slvsRequest("00000009", 200, {2, 5, 7, 7}, "", "00000003", "80030000") +
        "Constraint.h.v=00000001\nConstraint.type=20\nConstraint.group.v=00000003\nConstraint.workplane.v=80030000\n"
        "Constraint.ptA.v=00090001\nConstraint.ptB.v=00040002\nAddConstraint\n";
    const std::string text = slvsBeginning() + slvsRequest("00000004", 200, {0, 0, 12, 5}) + second;
    const std::vector<SlvsSketchName> sketches = sketchesInSlvs(text, "test.slvs");
    ASSERT_EQ(sketches.size(), 2U);
    EXPECT_EQ(sketches[1].name + " " + sketches[1].label, "g003 lid");
    for (const char* name : {"g003", "lid", "g003-lid"}) {
        const Document drawing = readSlvs(text, name, "test.slvs").document;
        ASSERT_EQ(drawing.entities.size(), 2U);
        EXPECT_EQ(drawing.entities[0], (Entity{"r009", LineShape{{2, 5}, {7, 7}}}));
        EXPECT_EQ(drawing.entities[1].id, "e00040002");
        EXPECT_EQ(drawing.entities[1].shape, Shape(PointShape{{2, 5}}));
        EXPECT_TRUE(drawing.entities[1].fixed);
        EXPECT_THAT(spoken(drawing), ElementsAre("c001: coincident r009.start e00040002"));
    }
}

}  // namespace
}  // namespace holdfast::formats
