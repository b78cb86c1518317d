#include <gtest/gtest.h>

#include "tests/editing/BareSession.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

using enum ConstraintType;
using enum PlaceKind;

Document pairOf(const Shape& a, const Shape& b) {
    Document document;
    document.name = "pair";
    document.entities = {shapeEntity("a", a), shapeEntity("b", b)};
    return document;
}

Shape shapeOf(const Session& session, const std::string& name) {
    return entityNamed(session.document(), name).shape;
}

/// The arc touches the curve at one end of the arc and one end of the curve, in the same direction.
void expectTouching(const Shape& arc, const Shape& curve) {
    double least = 1.0;
    for (const CurveEnd end : {CurveEnd::start, CurveEnd::end}) {
        const Vec2 point = (end == CurveEnd::start ? startPoint(arc) : endPoint(arc)).value();
        const Nearest near = nearestOn(curve, point);
        const Vec2 along = tangentAt(arc, end == CurveEnd::start ? paramRange(arc).first : paramRange(arc).last);
        least = std::min(least, near.distance + std::abs(cross(along, tangentAt(curve, near.param))));
    }
    EXPECT_NEAR(least, 0.0, 1e-6);
}

/// The arc that the edit made, which touches both curves.
ArcShape expectRounded(const Session& session) {
    const Shape arc = session.document().entities.back().shape;
    EXPECT_TRUE(std::holds_alternative<ArcShape>(arc));
    if (!std::holds_alternative<ArcShape>(arc))
        return {};
    expectTouching(arc, shapeOf(session, "a"));
    expectTouching(arc, shapeOf(session, "b"));
    return std::get<ArcShape>(arc);
}

TEST(FilletArcs, ThatMeetInACornerAreRoundedThere) {
    // Two arcs of radius 5 that meet in 0,0 like the sides of a pointed arch.
    BareSession session(
        pairOf(ArcShape{{-4, -3}, 5, 0.0, 0.6435011087932844}, ArcShape{{4, -3}, 5, 2.498091544796509, 3.1}));
    EXPECT_EQ(session.apply("fillet a b radius 0.3").outcome.error, "");
    const ArcShape arc = expectRounded(session);
    EXPECT_NEAR(arc.centre.x, 0.0, 1e-9);
    EXPECT_LT(arc.centre.y, 0.0);
    EXPECT_DOUBLE_EQ(std::get<ArcShape>(shapeOf(session, "a")).startAngle, 0.0);
    EXPECT_LT(std::get<ArcShape>(shapeOf(session, "a")).endAngle, 0.6435011087932844);
}

TEST(FilletArcs, ThatCrossAreRoundedWhereTheirEndsAreClosest) {
    // Like two hooks: both reach past their crossing in 0,4 by a little.
    BareSession session(pairOf(ArcShape{{-3, 0}, 5, 0.8, 2.5}, ArcShape{{3, 0}, 5, 0.6, 2.3}));
    EXPECT_EQ(session.apply("fillet a b radius 0.5").outcome.error, "");
    const ArcShape arc = expectRounded(session);
    EXPECT_NEAR(arc.centre.x, 0.0, 1e-9);
    EXPECT_NEAR(endPoint(shapeOf(session, "a"))->x,
                std::get<ArcShape>(shapeOf(session, "a")).centre.x + 5 * std::cos(2.5), 1e-9);
}

TEST(FilletArcs, ThatCrossKeepThePartsThatWerePicked) {
    const ArcShape left{{-3, 0}, 5, -2.0, 2.0}, right{{3, 0}, 5, 1.2, 5.0};
    const Vec2 outerLeft = pointAt(left, 1.9), innerRight = pointAt(right, 3.1);
    char edit[200];
    std::snprintf(edit, sizeof edit, "fillet a b radius 0.5 at %.9g,%.9g %.9g,%.9g", outerLeft.x, outerLeft.y,
                  innerRight.x, innerRight.y);
    BareSession session(pairOf(left, right));
    EXPECT_EQ(session.apply(edit).outcome.error, "");
    expectRounded(session);
    EXPECT_DOUBLE_EQ(std::get<ArcShape>(shapeOf(session, "a")).endAngle, 2.0);
    EXPECT_GT(std::get<ArcShape>(shapeOf(session, "a")).startAngle, 0.0);
}

TEST(FilletArcs, KeepConcentricAndRadiusConstraintsAndLoseTheCorner) {
    Document document = pairOf(ArcShape{{-4, -3}, 5, 0.0, 0.6435011087932844}, LineShape{{0, 0}, {9, 3}});
    document.entities.push_back(shapeEntity("hub", CircleShape{{-4, -3}, 1}));
    document.constraints = {constraintOf("corner", coincident, {{"a", end}, {"b", start}}),
                            constraintOf("hubbed", concentric, {{"a", centre}, {"hub", centre}})};
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet a b radius 0.5").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "hubbed");
}

TEST(FilletEllipse, ThatIsWholeStaysWholeAndKeepsItsConstraints) {
    Document document = pairOf(EllipseShape{{0, 0}, {10, 0}, 0.5}, LineShape{{12, -20}, {12, 20}});
    document.entities.push_back(shapeEntity("hub", CircleShape{{0, 0}, 1}));
    document.constraints = {constraintOf("hubbed", concentric, {{"a", centre}, {"hub", centre}})};
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet a b radius 3 at 8,3 12,15").outcome.error, "");
    EXPECT_EQ(shapeOf(session, "a"), Shape(EllipseShape{{0, 0}, {10, 0}, 0.5}));
    expectRounded(session);
    EXPECT_EQ(constraintIds(session.document()), "hubbed");
}

TEST(FilletEllipticalArc, EndsWhereTheArcTouchesIt) {
    Document document =
        pairOf(EllipticalArcShape{{0, 0}, {10, 0}, 0.5, 0.1, 1.5707963267948966}, LineShape{{0, 5}, {0, 20}});
    document.constraints = {constraintOf("corner", coincident, {{"a", end}, {"b", start}})};
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet a b radius 1").outcome.error, "");
    expectRounded(session);
    const auto arc = std::get<EllipticalArcShape>(shapeOf(session, "a"));
    EXPECT_DOUBLE_EQ(arc.startParam, 0.1);
    EXPECT_LT(arc.endParam, 1.5707963267948966);
    EXPECT_EQ(constraintIds(session.document()), "");
}

TEST(FilletSpline, KeepsWhatHeldAtControlPointsThatStayed) {
    const SplineShape spline{3, false, {{0, 0}, {2, 4}, {6, 4}, {8, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}};
    Document document = pairOf(spline, LineShape{{8, 0}, {20, 0}});
    document.entities.push_back(lineEntity("post", {0, 0}, {-5, 0}));
    document.constraints = {constraintOf("corner", coincident, {{"a", end}, {"b", start}}),
                            constraintOf("far", coincident, {{"a", start}, {"post", start}})};
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet a b radius 0.5").outcome.error, "");
    expectRounded(session);
    EXPECT_EQ(std::get<SplineShape>(shapeOf(session, "a")).control.size(), 4u);
    EXPECT_EQ(constraintIds(session.document()), "far");
}

TEST(FilletSplines, AreJoinedByAnArcAndInACorner) {
    const SplineShape left{3, false, {{-8, 0}, {-6, 4}, {-2, 4}, {0, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}};
    const SplineShape right{3, false, {{0, 0}, {2, 4}, {6, 4}, {8, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}};
    BareSession session(pairOf(left, right));
    EXPECT_EQ(session.apply("fillet a b radius 0.5").outcome.error, "");
    const ArcShape arc = expectRounded(session);
    EXPECT_NEAR(arc.centre.x, 0.0, 1e-6);
}

TEST(FilletRay, MovesItsBaseOrBecomesALine) {
    BareSession base(pairOf(RayShape{{0, 0}, {1, 0}}, LineShape{{0, 0}, {0, 9}}));
    EXPECT_EQ(base.apply("fillet a b radius 2").outcome.error, "");
    EXPECT_EQ(shapeOf(base, "a"), Shape(RayShape{{2, 0}, {1, 0}}));
    EXPECT_EQ(shapeOf(base, "b"), Shape(LineShape{{0, 2}, {0, 9}}));
    BareSession line(pairOf(RayShape{{-9, 0}, {1, 0}}, LineShape{{0, 1}, {0, 9}}));
    EXPECT_EQ(line.apply("fillet a b radius 2 at -5,0 0,6").outcome.error, "");
    EXPECT_EQ(entityNamed(line.document(), "a_2").shape, Shape(LineShape{{-9, 0}, {-2, 0}}));
}

TEST(FilletXline, BecomesARayOfItsOwnAndLosesItsConstraints) {
    Document document = pairOf(XlineShape{{0, 0}, {1, 0}}, LineShape{{0, 1}, {0, 9}});
    document.constraints = {constraintOf("level", horizontal, {{"a"}}), constraintOf("plumb", vertical, {{"b"}})};
    BareSession session(document);
    EXPECT_EQ(session.apply("fillet a b radius 2 at 6,0 0,6").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "a_2").shape, Shape(RayShape{{2, 0}, {1, 0}}));
    EXPECT_EQ(shapeOf(session, "b"), Shape(LineShape{{0, 2}, {0, 9}}));
    EXPECT_EQ(constraintIds(session.document()), "plumb");
}

TEST(FilletXlines, NeedAPickOnTheSidesToKeep) {
    BareSession session(pairOf(XlineShape{{0, 0}, {1, 0}}, XlineShape{{0, 0}, {0, 1}}));
    EXPECT_EQ(session.apply("fillet a b radius 2 at -6,0 0,6").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "a_2").shape, Shape(RayShape{{-2, 0}, {-1, 0}}));
    EXPECT_EQ(entityNamed(session.document(), "b_2").shape, Shape(RayShape{{0, 2}, {0, 1}}));
}

TEST(FilletCurves, WithoutACornerOrAnArcAreRefused) {
    Document document = pairOf(SplineShape{3, false, {{0, 0}, {2, 4}, {6, 4}, {8, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}},
                               LineShape{{30, 0}, {40, 0}});
    document.entities.push_back(shapeEntity("disc", CircleShape{{0, 30}, 5}));
    document.entities.push_back(shapeEntity("bend", ArcShape{{40, 5}, 5, -1.5707963267948966, 0.0}));
    document.entities.push_back(shapeEntity("dot", PointShape{{0, 60}}));
    const RefusedEdit rows[] = {
        {"fillet a disc radius 0", "a and disc do not meet even when prolonged; give a radius above 0"},
        {"fillet a disc radius 1",
         "no arc of radius 1 touches both a and disc; choose another radius or curves that are not parallel"},
        {"fillet b bend radius 1", "b and bend run smoothly into each other in (40, 0); there is no corner to fillet"},
        {"fillet b dot radius 1", "dot is no curve; only curves can be filleted"},
        {"fillet a b", "edit \"fillet a b\": expected \"radius\", but the edit ends there"},
        {"fillet a b radius 1 at 30,0 35,0", "the point (30, 0) is not on a; its nearest point is (8, 0)"},
    };
    expectRefused(document, rows);
}

}  // namespace
}  // namespace holdfast::editing
