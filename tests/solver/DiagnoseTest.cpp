#include "solver/src/diagnosis/Diagnose.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "solver/src/diagnosis/Conflict.h"
#include "solver/src/solving/Solve.h"
#include "tests/solver/Sketch.h"

namespace holdfast::solver::detail {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

int freedomOf(const char* text) {
    return diagnose(SketchText(text).sketch).freedom;
}

std::string redundantIn(const SketchText& sketch) {
    std::string names;
    for (const Redundancy& spare : diagnose(sketch.sketch).redundant)
        names += (names.empty() ? "" : " ") + sketch.namesOf({&spare.constraint, 1}) + (spare.isWhole ? "" : " partly");
    return names;
}

TEST(Diagnose, CountsTheFreedomOfEachElement) {
    EXPECT_EQ(freedomOf("point p 0,0"), 2);
    EXPECT_EQ(freedomOf("line a 0,0 5,1"), 4);
    EXPECT_EQ(freedomOf("xline x 0,0 30"), 3);
    EXPECT_EQ(freedomOf("circle c 0,0 5"), 3);
    EXPECT_EQ(freedomOf("arc k 0,0 5 0 90"), 5);
    EXPECT_EQ(freedomOf("ellipse e 0,0 5,1 0.5"), 5);
    EXPECT_EQ(freedomOf("ellipse_arc e 0,0 5,1 0.5 0 90"), 7);
    EXPECT_EQ(freedomOf("spline s 3 0,0 2,5 6,4 9,-1 12,2"), 10);
    EXPECT_EQ(freedomOf("polyline w 0,0:0.4 6,1 9,5 2,8"), 9);
    EXPECT_EQ(freedomOf("fixed! line a 0,0 5,1"), 0);
}

TEST(Diagnose, TakesOneDegreeForEachIndependentEquation) {
    EXPECT_EQ(freedomOf("line a 0,0 5,0; horizontal a"), 3);
    EXPECT_EQ(freedomOf("line a 0,0 5,0; horizontal a; distance a = 5"), 2);
    EXPECT_EQ(freedomOf("line a 0,0 5,0; line b 5,0 9,9; coincident a.end b.start"), 6);
    EXPECT_EQ(freedomOf("line a 0,0 5,0; circle c 3,2 2; tangent a c"), 6);
    EXPECT_EQ(freedomOf("line a 0,0 5,0; arc k 5,3 3 270 350; tangent a.end k.start"), 6);
    EXPECT_EQ(freedomOf("point p 1,2; spline s 1 0,0 2,4; point_on_curve p s"), 5);
}

TEST(Diagnose, TakesTheGapOfLinesForOneDegreeWithOrWithoutParallels) {
    EXPECT_EQ(freedomOf("line a 0,0 5,0; line b 0,3 6,5; distance a b = 4"), 7);
    const SketchText parallels("line a 0,0 5,1; line b 0,3 5,4; parallel a b; distance a b = 2.941742027072761");
    EXPECT_EQ(diagnose(parallels.sketch).freedom, 6);
    EXPECT_EQ(redundantIn(parallels), "");
    const SketchText levels(
        "line a 0,0 5,0; line b 0,3 6,3; horizontal a; horizontal b; distance a b = 3; distance b a = 3");
    EXPECT_EQ(diagnose(levels.sketch).freedom, 5);
    EXPECT_EQ(redundantIn(levels), "c3");
}

TEST(Diagnose, IsNotFooledByAContactThatMovesFreely) {
    EXPECT_EQ(freedomOf("fixed! spline s 2 0,0 4,6 8,0; point p 4,3; point_on_curve p s"), 1);
    EXPECT_EQ(freedomOf("circle c 4,8 5; spline s 2 0,0 4,6 8,0; tangent c s"), 8);
}

TEST(Diagnose, NamesTheLaterOfTwoConstraintsThatSayTheSame) {
    EXPECT_EQ(redundantIn(SketchText("line a 0,0 5,0; line b 0,2 5,2; horizontal a; horizontal b; parallel a b")),
              "c2");
    EXPECT_EQ(redundantIn(SketchText(
                  "line a 0,0 5,1; line b 0,2 5,3; parallel a b; line d 9,0 14,1; parallel b d; parallel a d")),
              "c2");
}

/// No first derivative sees that the height holds the swing; what hangs on it moves.
TEST(Diagnose, CallsAHeightNeededAtTheEndOfASwing) {
    const std::string swing =
        "fixed! point o 0,0; line a 0,0 0,5; line b 0,5 3,9; coincident a.start o; distance a = 5; "
        "coincident a.end b.start";
    const std::string held = swing + "; distance_y o a.end = 5", twice = held + "; vertical a";
    EXPECT_EQ(freedomOf(swing.c_str()), 3);
    EXPECT_EQ(freedomOf(held.c_str()), 2);
    EXPECT_EQ(redundantIn(SketchText(held)), "");
    EXPECT_EQ(freedomOf(twice.c_str()), 2);
    EXPECT_NE(redundantIn(SketchText(twice)), "") << "any one of the three";
}

TEST(Diagnose, NamesAConstraintOfWhichOnlyOneEquationIsSpare) {
    EXPECT_EQ(
        redundantIn(SketchText("line a 0,0 5,0; point p 2.5,0; horizontal a; horizontal p a.start; midpoint p a")),
        "c2 partly");
}

TEST(Diagnose, NamesWhatIsSpareBesideConstantsOfOtherElements) {
    // The middle of the arc is constant by what holds on the circle.
    EXPECT_EQ(redundantIn(SketchText("fixed! point o 0,0; fixed! xline y 0,0 90; circle k 0,0 2; arc a 0,0 5 30 150; "
                                     "coincident k.centre o; concentric a.centre k.centre; symmetric a.start a.end y")),
              "c2 partly");
}

TEST(Diagnose, NamesWhatMeetingEndsOfASlotImply) {
    // Equal ends at one height have a level side already.
    EXPECT_NE(redundantIn(SketchText(
                  "fixed! xline x 0,0 0; fixed! xline y 0,0 90; arc a -17.5,0 3.5 90 270; arc b 17.5,0 3.5 270 450; "
                  "line low -17.5,-3.5 17.5,-3.5; line top -17.5,3.5 17.5,3.5; tangent a.start top.start; "
                  "tangent a.end low.start; tangent low.end b.start; tangent top.end b.end; horizontal low; equal a b; "
                  "symmetric a.centre b.centre y; point_on_curve a.centre x; radius a = 3.5; "
                  "distance_x a.centre b.centre = 35")),
              "");
}

TEST(Diagnose, DoesNotCountACoincidenceThatATangencyRepeats) {
    EXPECT_EQ(
        redundantIn(SketchText("line a 0,0 5,0; arc k 5,3 3 270 350; coincident a.end k.start; tangent a.end k.start")),
        "");
}

TEST(Diagnose, FindsTheOneSpareEquationInARingOfEqualLines) {
    std::string text;
    constexpr int count = 40;
    for (int i = 0; i < count; ++i)
        text +=
            "line l" + std::to_string(i) + " " + std::to_string(20 * i) + ",0 " + std::to_string(20 * i + 3) + ",4;";
    for (int i = 0; i < count; ++i)
        text += "equal l" + std::to_string(i) + " l" + std::to_string((i + 1) % count) + ";";
    EXPECT_EQ(redundantIn(SketchText(text)), "c39");
}

TEST(Diagnose, ReportsEachPartByItself) {
    const SketchText sketch("line a 0,0 5,0; line b 5,0 9,9; circle c 50,50 3; coincident a.end b.start; radius c = 3");
    const Diagnosis diagnosis = diagnose(sketch.sketch);
    ASSERT_EQ(diagnosis.parts.size(), 2u);
    EXPECT_THAT(diagnosis.parts[0].entities, ElementsAre(0, 1));
    EXPECT_EQ(diagnosis.parts[0].freedom, 6);
    EXPECT_THAT(diagnosis.parts[1].entities, ElementsAre(2));
    EXPECT_EQ(diagnosis.parts[1].freedom, 2);
    EXPECT_EQ(diagnosis.freedom, 8);
}

TEST(Diagnose, NamesTheConstraintThatHoldsWorst) {
    const SketchText sketch("point p 0,0; point q 4,3; point r 9,9; distance p q = 5; distance q r = 1");
    const Diagnosis diagnosis = diagnose(sketch.sketch);
    EXPECT_EQ(diagnosis.worstConstraint, 1);
    EXPECT_NEAR(diagnosis.worstViolation, std::sqrt(61.0) - 1.0, 1e-12);
    EXPECT_THAT(diagnosis.conflicts, IsEmpty());
}

TEST(Diagnose, NamesTwoGapsOfTheSameLinesAsAConflict) {
    const SketchText sketch("line a 0,0 5,1; line b 0,3 5,4; parallel a b; distance a b = 3; distance b a = 4");
    const Diagnosis diagnosis = diagnose(sketch.sketch);
    ASSERT_EQ(diagnosis.conflicts.size(), 1U);
    EXPECT_THAT(sketch.namesOf(diagnosis.conflicts[0].constraints), ::testing::HasSubstr("c1 c2"));
}

TEST(Diagnose, NamesEachConflictOnce) {
    const SketchText sketch(
        "point p 0,0; point q 4,3; distance p q = 5; distance p q = 6; circle c 9,9 3; radius c = 3;"
        "point r 20,20; point s 30,30; distance_x r s = 10; diameter c = 7");
    const Diagnosis diagnosis = diagnose(sketch.sketch);
    ASSERT_EQ(diagnosis.conflicts.size(), 2u);
    EXPECT_EQ(sketch.namesOf(diagnosis.conflicts[0].constraints), "c0 c1");
    EXPECT_EQ(sketch.namesOf(diagnosis.conflicts[1].constraints), "c2 c4");
}

TEST(Diagnose, NamesWhatARuleOfItsElementImplies) {
    EXPECT_EQ(redundantIn(SketchText("fixed! point o 0,0; arc k 0,0 5 0 90; coincident k.centre o; radius k = 5;"
                                     "horizontal k.start o; distance_x o k.start = 5")),
              "c3");
    EXPECT_EQ(redundantIn(SketchText("arc k 0,0 5 30 150; horizontal k.start k.end; line a 0,9 0,-9; vertical a;"
                                     "point_on_curve k.centre a; symmetric k.start k.end a")),
              "c3");
}

TEST(Diagnose, CountsNoFreedomThatTheDrawingCannotMoveAlong) {
    EXPECT_EQ(freedomOf("fixed! circle c 0,0 5; line a -4,5 0,5; fixed a.start; horizontal a; point_on_curve a.end c"),
              0);
    EXPECT_EQ(
        freedomOf("fixed! point o 0,0; fixed! point e 10,0; line a 0,0 6,0; line b 6,0 10,0; coincident a.start o;"
                  "coincident a.end b.start; coincident b.end e; distance a = 6; distance b = 4"),
        0);
    // Stretched out, but free to turn.
    EXPECT_EQ(freedomOf("fixed! point o 0,0; line a 0,0 6,0; line b 6,0 10,0; coincident a.start o;"
                        "coincident a.end b.start; distance a = 6; distance b = 4; distance o b.end = 10"),
              1);
    const SketchText tangent(
        "fixed! circle c 0,0 5; line a -4,5 0,5; fixed a.start; horizontal a; point_on_curve a.end c; point p 1,1");
    const Diagnosis diagnosis = diagnose(tangent.sketch, true);
    EXPECT_THAT(diagnosis.freedomOfEntity, ElementsAre(0, 0, 2));
    EXPECT_EQ(redundantIn(tangent), "");
}

std::string conflictsIn(const char* text) {
    const SketchText sketch(text);
    std::string names;
    for (const ConflictSet& conflict : diagnose(sketch.sketch).conflicts)
        names += (names.empty() ? "" : "; ") + sketch.namesOf(conflict.constraints);
    return names;
}

TEST(Diagnose, NamesTheSmallestSetsOfEachContradiction) {
    EXPECT_EQ(conflictsIn("line a 0,0 10,0; horizontal a; vertical a"), "c0 c1");
    EXPECT_EQ(conflictsIn("line a 0,0 10,0; horizontal a; vertical a; distance a = 10"), "c0 c1");
    EXPECT_EQ(conflictsIn("line a 0,0 10,3; horizontal a; distance a = 7; vertical a"), "c0 c2");
    EXPECT_EQ(conflictsIn("line a 0,0 10,1; line b 0,5 9,7; parallel a b; perpendicular a b"), "c0 c1");
    EXPECT_EQ(conflictsIn("line a 0,0 10,1; line b 0,5 9,7; parallel a b; perpendicular a b; distance a = 8"), "c0 c1");
    EXPECT_EQ(conflictsIn("circle c 0,0 5; radius c = 5; radius c = 6; radius c = 7"), "c0 c1; c0 c2");
}

/// Two sides have lengths that nothing else reads, and hold; the third is too long for both.
TEST(Diagnose, NamesWhatHoldsInAConflict) {
    EXPECT_EQ(conflictsIn("line a 0,0 10,0; line b 10,0 10,10; line c 0,0 10,10; coincident a.end b.start; coincident "
                          "b.end c.end; coincident a.start c.start; distance a = 10; distance b = 10; distance c = 30"),
              "c0 c1 c2 c3 c4 c5");
}

/// Off by next to nothing all of it: what contradicts is found all the same.
TEST(Diagnose, NamesAConflictBesideWhatHasAFreedomOfItsOwn) {
    EXPECT_EQ(conflictsIn("line a 0,0 10,0; line b 0,5 9,7; line d 0,9 9,11; distance a = 10.01; distance a = 10.02; "
                          "parallel b d; equal b d"),
              "c0 c1");
}

TEST(FindConflict, IsNotMistakenByALineThatTwoTargetsWouldCollapse) {
    SketchText sketch("line a 0,0 0,10; horizontal a");
    const int x = sketch.valueOf("a.start");
    const std::vector<Target> upright{{x, 0}, {x + 1, 0}, {x + 2, 0}, {x + 3, 10}};
    const ConflictSet conflict = findConflict(sketch.sketch, bindingConstraints(sketch.sketch), upright);
    EXPECT_EQ(sketch.namesOf(conflict.constraints), "c0");
    // Level with both ends at x = 0 leaves it no length; with one of the three gone it has one.
    EXPECT_THAT(conflict.targets, ElementsAre(0, 2));
    EXPECT_TRUE(conflict.isMinimal);
}

TEST(FindConflict, FindsNoneWhereAShortLineCanShift) {
    // Least movement would take half of the way at each end, and turn the short line round.
    const SketchText sketch(
        "line short -4.2,14.5 -4.5,14.5; line other 4.5,14.8 4.5,14.5; arc round -4.2,14.3 0.2 0 90; "
        "tangent short.start round.end; distance_x short.end other.end = 7.2");
    const ConflictSet conflict = findConflict(sketch.sketch, bindingConstraints(sketch.sketch), {});
    EXPECT_EQ(sketch.namesOf(conflict.constraints), "");
}

/// Six bars between four places each, cell beside cell; the second diagonal of one of them is too long.
SketchText truss(int cells, int wrong) {
    std::string text = "fixed! point p0 0,0; point q0 0,10";
    for (int i = 1; i <= cells; ++i) {
        const std::string n = std::to_string(i), last = std::to_string(i - 1), x = std::to_string(10 * i);
        text += "; point p" + n + " " + x + ",0; point q" + n + " " + x + ",10";
    }
    text += "; distance p0 q0 = 10";
    for (int i = 1; i <= cells; ++i) {
        const std::string n = std::to_string(i), last = std::to_string(i - 1);
        text += "; distance p" + last + " p" + n + " = 10; distance q" + last + " q" + n + " = 10; distance p" + n +
                " q" + n + " = 10; distance p" + last + " q" + n + " = 14.142135623730951";
        if (i == wrong)
            text += "; distance q" + last + " p" + n + " = 15";
    }
    return SketchText(text.c_str());
}

TEST(FindConflict, NamesTheCellOfATrussThatABarContradicts) {
    const SketchText sketch = truss(40, 20);
    Effort effort(nullptr, 400'000);
    const ConflictSet conflict = findConflict(sketch.sketch, bindingConstraints(sketch.sketch), {}, effort);
    EXPECT_TRUE(conflict.isMinimal);
    // c0 and four bars for each cell before it; the bar between the cells is the one that both share.
    EXPECT_EQ(sketch.namesOf(conflict.constraints), "c75 c77 c78 c79 c80 c81");
}

TEST(FindConflict, ProvesASetOfManyMembers) {
    // A chain of 14 links hangs between walls that are too far apart: every link and every joint is needed for that.
    constexpr int links = 14;
    std::string text = "fixed! point from 0,0; fixed! point to 154,0; line l0 0,0 10,3; coincident from l0.start";
    for (int i = 1; i < links; ++i) {
        const std::string n = std::to_string(i), last = std::to_string(i - 1), up = i % 2 == 0 ? "3" : "0";
        text += "; line l" + n + " " + std::to_string(10 * i) + "," + (i % 2 == 0 ? "0 " : "3 ") +
                std::to_string(10 * i + 10) + "," + up + "; coincident l" + last + ".end l" + n + ".start";
    }
    text += "; coincident l" + std::to_string(links - 1) + ".end to";
    for (int i = 0; i < links; ++i)
        text += "; distance l" + std::to_string(i) + " = 10; horizontal l" + std::to_string(i) + ".start from";
    const SketchText sketch(text.c_str());
    Effort effort(nullptr, Effort::kMostForEdit);
    const ConflictSet conflict = findConflict(sketch.sketch, bindingConstraints(sketch.sketch), {}, effort);
    EXPECT_TRUE(conflict.isMinimal);
    EXPECT_EQ(conflict.constraints.size(), 2u * links + 1);
}

TEST(Diagnose, CallsNothingRedundantThatIsInConflict) {
    for (const char* text :
         {"line a 0,0 10,1; line b 0,5 9,7; parallel a b; perpendicular a b",
          "line a 0,0 10,0; horizontal a; vertical a; distance a = 10",
          "line a 0,0 10,0; line b 0,5 9,5; horizontal a; horizontal b; parallel a b; angle a b = 30",
          "point p 0,0; point q 4,3; distance p q = 5; distance p q = 6; distance q p = 5"}) {
        const SketchText sketch(text);
        const Diagnosis diagnosis = diagnose(sketch.sketch);
        ASSERT_FALSE(diagnosis.conflicts.empty()) << text;
        for (const Redundancy& redundancy : diagnosis.redundant) {
            for (const ConflictSet& conflict : diagnosis.conflicts)
                EXPECT_THAT(conflict.constraints, ::testing::Not(::testing::Contains(redundancy.constraint))) << text;
        }
    }
}

/// Whether the sketch can be solved with these of its constraints alone, from where it is.
bool isSolvedWith(SketchData sketch, const std::vector<int>& constraints) {
    for (std::size_t c = 0; c < sketch.constraints.size(); ++c)
        sketch.constraints[c].active = std::count(constraints.begin(), constraints.end(), static_cast<int>(c)) > 0;
    return solve(sketch, {.reach = Scope::part, .namesConflicts = false}).isSolved();
}

TEST(Diagnose, NamesSetsOfWhichNoMemberCanBeSpared) {
    const SketchText sketch(
        "line a 0,0 10,0; line b 10,0 10,8; line c 10,8 0,8; line d 0,8 0,0; coincident a.end b.start;"
        "coincident b.end c.start; coincident c.end d.start; coincident d.end a.start; horizontal a; vertical b;"
        "parallel a c; perpendicular c d; distance a = 10; distance c = 12; distance b = 8; circle k 5,4 2;"
        "radius k = 2; point_on_curve k.centre a; distance k.centre c = 5");
    const std::vector<ConflictSet> conflicts = diagnose(sketch.sketch).conflicts;
    ASSERT_EQ(conflicts.size(), 2u);
    for (const auto& [conflict, targets, isMinimal] : conflicts) {
        EXPECT_TRUE(isMinimal);
        EXPECT_FALSE(isSolvedWith(sketch.sketch, conflict)) << sketch.namesOf(conflict);
        for (std::size_t i = 0; i < conflict.size(); ++i) {
            std::vector<int> rest = conflict;
            rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(i));
            EXPECT_TRUE(isSolvedWith(sketch.sketch, rest)) << sketch.namesOf(rest);
        }
    }
}

}  // namespace
}  // namespace holdfast::solver::detail
