#include <gtest/gtest.h>

#include <numbers>

#include "tests/module/commands/break/CutCommand.h"
#include "tests/module/commands/break/TestAccess.h"
#include "tests/module/core/CheckedScene.h"

namespace holdfast::module {
namespace {

constexpr double kHalfTurn = std::numbers::pi;

/// What is left after curve a was broken into the first piece, and a second one if there is one.
std::string left(const std::string& text, std::unique_ptr<YxDbEntity> first,
                 std::unique_ptr<YxDbEntity> second = nullptr) {
    CheckedScene scene(text);
    ConstraintBreakCmdCenter centre;
    finishCut(scene, "a", centre, std::move(first), std::move(second));
    return scene.constraints();
}

auto line(double x1, double x2) {
    return EntityAccess::makeLine({x1, 0, 0}, {x2, 0, 0});
}
auto arc(double from, double to) {
    return EntityAccess::makeArc({.centre = {}, .radius = 5, .startAngle = from, .endAngle = to});
}
auto ellipse(double from, double to) {
    return EntityAccess::makeEllipse(
        {.centre = {}, .majorAxis = {4, 0, 0}, .ratio = 0.5, .startAngle = from, .endAngle = to});
}

const std::string kLine =
    "line b 0,0 0,5; line a 0,0 10,0; coincident a.start b.start; coincident a.end b.end; parallel a b; equal a b";

TEST(BreakLine, LosesOnlyWhatHeldAtTheEndThatMoved) {
    EXPECT_EQ(left(kLine, line(0, 4)), "coincident a.start b.start; parallel a b");
    EXPECT_EQ(left(kLine, line(6, 10)), "coincident a.end b.end; parallel a b");
}

TEST(BreakLine, LosesWhatHeldAtTheEndWhenTheMiddleIsCutOut) {
    EXPECT_EQ(left(kLine, line(0, 4), line(6, 10)), "coincident a.start b.start; parallel a b");
}

TEST(BreakLine, KeepsAllWhenNeitherEndMoved) {
    EXPECT_EQ(left(kLine, line(0, 10)), "coincident a.start b.start; coincident a.end b.end; parallel a b; equal a b");
}

TEST(BreakLine, LosesEverythingToAPieceThatIsNoLine) {
    EXPECT_EQ(left(kLine, arc(0, 1)), "");
}

TEST(BreakRay, LosesWhatHeldAtAPointWhenItsBaseMoved) {
    const std::string ray = "line b 0,0 0,5; ray a 0,0 dir 1,0; coincident a.start b.start; parallel a b";
    EXPECT_EQ(left(ray, EntityAccess::makeRay({3, 0, 0}, {1, 0, 0})), "parallel a b");
    EXPECT_EQ(left(ray, EntityAccess::makeRay({0, 0, 0}, {1, 0, 0})), "coincident a.start b.start; parallel a b");
}

TEST(BreakRay, LosesEverythingWhenItBecomesALine) {
    EXPECT_EQ(left("line b 0,0 0,5; ray a 0,0 dir 1,0; parallel a b", line(0, 4)), "");
}

TEST(BreakXline, LosesEverythingUnlessItStaysOne) {
    const std::string xline = "line b 0,0 0,5; xline a 0,0 dir 1,0; on b.start a; parallel a b";
    EXPECT_EQ(left(xline, EntityAccess::makeRay({3, 0, 0}, {1, 0, 0})), "");
    EXPECT_EQ(left(xline, EntityAccess::makeXline({3, 0, 0}, {0, 1, 0})), "on b.start a; parallel a b");
}

TEST(BreakCircle, LosesEverythingToAnArcEvenWhatHeldAtTheCentre) {
    const std::string circle =
        "circle b centre 0,0 radius 2; circle a centre 0,0 radius 5; concentric a.centre b.centre; equalradius a b";
    EXPECT_EQ(left(circle, arc(0, 1)), "");
    EXPECT_EQ(left(circle, EntityAccess::makeCircle({.centre = {}, .radius = 5})),
              "concentric a.centre b.centre; equalradius a b");
}

const std::string kArc =
    "line b 0,0 0,5; arc a centre 0,0 radius 5 from 0 to 180; coincident a.start b.start; coincident a.end b.end; "
    "fixed a.centre; tangent a b; horizontal a.start a.end; horizontal a.centre a.start; horizontal a.end a.centre";

TEST(BreakArc, IsJudgedByItsEnds) {
    EXPECT_EQ(left(kArc, arc(0, 1)),
              "coincident a.start b.start; fixed a.centre; tangent a b; horizontal a.centre a.start");
    EXPECT_EQ(left(kArc, arc(1, kHalfTurn)),
              "coincident a.end b.end; fixed a.centre; tangent a b; horizontal a.end a.centre");
}

TEST(BreakArc, KeepsEverythingWhenThePieceIsNoArc) {
    CheckedScene scene(kArc);
    const std::string before = scene.constraints();
    ConstraintBreakCmdCenter centre;
    EXPECT_EQ(finishCut(scene, "a", centre, line(0, 1)), 0);
    EXPECT_EQ(scene.constraints(), before);
}

const std::string kEllipse = "line b 0,0 0,5; ellipse a centre 0,0 major 4,0 ratio 0.5; fixed a.centre; on b.start a";

TEST(BreakClosedEllipse, KeepsEverythingWhenItStaysClosed) {
    EXPECT_EQ(left(kEllipse, ellipse(1, 1 + 2 * kHalfTurn)), "fixed a.centre; on b.start a");
    EXPECT_EQ(left(kEllipse, EntityAccess::makeCircle({.centre = {}, .radius = 5})), "fixed a.centre; on b.start a");
}

TEST(BreakClosedEllipse, LosesEverythingWhenItOpens) {
    EXPECT_EQ(left(kEllipse, ellipse(0, 1)), "");
    EXPECT_EQ(left(kEllipse, line(0, 1)), "");
}

TEST(BreakClosedEllipse, LosesEverythingToAPieceThatIsNoCurve) {
    EXPECT_EQ(left(kEllipse, EntityAccess::makePoint({})), "");
}

TEST(BreakEllipticalArc, IsJudgedLikeAnArc) {
    const std::string arcOfEllipse =
        "line b 0,0 0,5; ellipse a centre 0,0 major 4,0 ratio 0.5 from 0 to 180; coincident a.start b.start; "
        "coincident a.end b.end; fixed a.centre";
    EXPECT_EQ(left(arcOfEllipse, ellipse(0, 1)), "coincident a.start b.start; fixed a.centre");
    EXPECT_EQ(left(arcOfEllipse, line(0, 1)), "coincident a.start b.start; coincident a.end b.end; fixed a.centre");
}

const std::string kSpline =
    "line b 0,0 0,5; spline a degree 3 at 0,0 1,1 2,0 3,1; fixed a.control0; coincident a.control3 b.start; "
    "tangent a b; distance a.control1 a.control2 = 1";

auto spline(const std::vector<YxGePoint3d>& control) {
    std::vector<double> knots(4, 0.0);
    for (std::size_t k = 4; k < control.size(); ++k)
        knots.push_back(1.0);
    knots.insert(knots.end(), 4, 2.0);
    return EntityAccess::makeSpline({.degree = 3, .periodic = false, .control = control, .knots = knots});
}

TEST(BreakSpline, LosesEverythingWhenItsControlPointsAreAnotherNumber) {
    EXPECT_EQ(left(kSpline, spline({{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 0}, {4, 0, 0}})), "");
}

TEST(BreakSpline, LosesWhatHeldAtControlPointsThatMoved) {
    EXPECT_EQ(left(kSpline, spline({{0, 0, 0}, {0.5, 0.5, 0}, {1, 0.5, 0}, {1.5, 0.5, 0}})),
              "fixed a.control0; tangent a b");
    EXPECT_EQ(left(kSpline, spline({{0, 0, 0}, {1, 1, 0}, {2, 0.1, 0}, {3, 1, 0}})),
              "fixed a.control0; coincident a.control3 b.start; tangent a b");
}

TEST(BreakSpline, KeepsEverythingWhenAllControlPointsStayed) {
    EXPECT_EQ(left(kSpline, spline({{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 5e-11}})),
              "fixed a.control0; coincident a.control3 b.start; tangent a b; distance a.control1 a.control2 = 1");
}

TEST(BreakSpline, LosesEverythingToAPieceThatIsNoSpline) {
    EXPECT_EQ(left(kSpline, line(0, 1)), "");
}

TEST(BreakSpline, CollectsNothingForANullArgument) {
    CheckedScene scene(kSpline);
    const auto after = spline({{9, 9, 0}, {9, 9, 0}, {9, 9, 0}, {9, 9, 0}});
    const auto* before = scene.entity<YxDbSpline>("a");
    const auto dependencies = scene.dependenciesOn({"", "a"});
    ConstraintBreakCmdCenter centre;
    LvTestAccess::judgeSpline(centre, nullptr, dependencies, before, after.get());
    LvTestAccess::judgeSpline(centre, &scene.group(), dependencies, nullptr, after.get());
    LvTestAccess::judgeSpline(centre, &scene.group(), dependencies, before, nullptr);
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
    LvTestAccess::judgeSpline(centre, &scene.group(), dependencies, before, after.get());
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c1 c2 c4");
}

TEST(BreakCurve, OfAnyOtherClassLosesNothing) {
    EXPECT_EQ(left("line b 0,0 0,5; point a 1,1; fixed a; coincident a b.start", line(0, 1)),
              "fixed a; coincident a b.start");
}

TEST(BreakCurve, AppendsTheWholeListBesideItself) {
    CheckedScene scene("line b 0,0 0,5; line a 0,0 10,0; parallel a b; fixed a.end");
    ConstraintBreakCmdCenter centre;
    const auto shorter = line(0, 4);
    const auto other = arc(0, 1);
    centre.setFirstCurve(scene.id("a"), shorter.get());
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c2");
    centre.setFirstCurve(scene.id("a"), other.get());
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c2 c1 c2");
    EXPECT_EQ(centre.deleteConstraint(), 3);
    EXPECT_EQ(scene.constraints(), "");
}

TEST(BreakCurve, CollectsACompositeWholeAndLeavesInternalOnes) {
    EXPECT_EQ(
        left("line b 0,0 0,5; line a 0,0 10,0; composite { coincident a.end b.end }; internal fixed a.end", line(0, 4)),
        "internal fixed a.end");
}

TEST(BreakCurve, OpensTheGroupForWriteOnceAndClosesEverything) {
    CheckedScene scene("line b 0,0 0,5; line a 0,0 10,0; fixed a.end");
    ConstraintBreakCmdCenter centre;
    EXPECT_EQ(finishCut(scene, "a", centre, line(0, 4)), 1);
    const auto& entries = scene.process().journal().entries();
    const auto writes = std::count_if(entries.begin(), entries.end(), [](const JournalEntry& entry) {
        return namesOperation(entry.operation, "openObject") && entry.subjectName == "group" &&
               entry.arguments == "write";
    });
    EXPECT_EQ(writes, 1);
}

TEST(BreakCurve, WalksTheGroupOnce) {
    CheckedScene scene(kLine);
    ConstraintBreakCmdCenter centre;
    finishCut(scene, "a", centre, line(0, 4), line(6, 10));
    EXPECT_EQ(scene.process().journal().count("YxDbAssoc2dConstraintGroup::getConstrainedGeometries"), 1);
}

}  // namespace
}  // namespace holdfast::module
