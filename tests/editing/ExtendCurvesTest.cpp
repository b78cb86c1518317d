#include <gtest/gtest.h>

#include "tests/editing/BareSession.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

using enum ConstraintType;
using enum PlaceKind;

/// One curve, a wall to extend it to, and a line tied to each of the ends it has.
Document curveAndWall(const Shape& curve, Vec2 from, Vec2 to) {
    Document document;
    document.name = "curve";
    document.entities = {shapeEntity("c", curve), lineEntity("wall", from, to)};
    using geometry::endPoint;
    using geometry::startPoint;
    if (const auto point = startPoint(curve)) {
        document.entities.push_back(lineEntity("a", *point, *point + Vec2{1, -9}));
        document.constraints.push_back(constraintOf("atStart", coincident, {{"c", start}, {"a", start}}));
    }
    if (const auto point = endPoint(curve)) {
        document.entities.push_back(lineEntity("b", *point, *point + Vec2{1, -9}));
        document.constraints.push_back(constraintOf("atEnd", coincident, {{"c", end}, {"b", start}}));
    }
    return document;
}

Vec2 endOf(const Session& session, CurveEnd which) {
    const Shape shape = entityNamed(session.document(), "c").shape;
    return (which == CurveEnd::start ? startPoint(shape) : endPoint(shape)).value();
}

const SplineShape kSpline{3, false, {{0, 0}, {2, 4}, {6, 4}, {8, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}};

TEST(ExtendSpline, KeepsTheControlPointsThatStayedAndTheirConstraints) {
    const SplineShape longer{
        3, false, {{0, 0}, {2, 4}, {6, 4}, {8, 0}, {12, 0}, {14, 4}}, {0, 0, 0, 0, 1, 2, 3, 3, 3, 3}, {}};
    Document document = curveAndWall(longer, {15, -20}, {15, 20});
    document.entities.push_back(lineEntity("m", {2, 4}, {2, 9}));
    document.entities.push_back(lineEntity("n", {12, 0}, {12, -9}));
    document.constraints.push_back(constraintOf("atControl", coincident, {{"c", control, 1}, {"m", start}}));
    document.constraints.push_back(constraintOf("inLastSpan", coincident, {{"c", control, 4}, {"n", start}}));
    BareSession session(document);
    EXPECT_EQ(session.apply("extend c end to wall").outcome.error, "");
    EXPECT_EQ(std::get<SplineShape>(entityNamed(session.document(), "c").shape).control.size(), 6u);
    EXPECT_NEAR(endOf(session, CurveEnd::end).x, 15.0, 1e-9);
    EXPECT_EQ(endOf(session, CurveEnd::start), (Vec2{0, 0}));
    EXPECT_EQ(constraintIds(session.document()), "atStart atControl");
}

TEST(ExtendSpline, AtItsStartLosesWhatHeldThere) {
    BareSession session(curveAndWall(kSpline, {-1, -20}, {-1, 20}));
    EXPECT_EQ(session.apply("extend c start to wall").outcome.error, "");
    EXPECT_NEAR(endOf(session, CurveEnd::start).x, -1.0, 1e-9);
    EXPECT_EQ(constraintIds(session.document()), "atEnd");
}

TEST(ExtendSpline, ThatIsRationalKeepsItsCourse) {
    // A quarter of the circle of radius 5 around the origin, from 5,0 to 0,5.
    const SplineShape quarter{2, false, {{5, 0}, {5, 5}, {0, 5}}, {0, 0, 0, 1, 1, 1}, {1, 0.70710678118654752, 1}};
    BareSession session(curveAndWall(quarter, {-3, 0}, {-3, 9}));
    EXPECT_EQ(session.apply("extend c end to wall").outcome.error, "");
    EXPECT_NEAR(endOf(session, CurveEnd::end).x, -3.0, 1e-9);
    EXPECT_NEAR(endOf(session, CurveEnd::end).y, 4.0, 1e-9);
    EXPECT_EQ(endOf(session, CurveEnd::start), (Vec2{5, 0}));
}

const EllipticalArcShape kBow{{0, 0}, {10, 0}, 0.5, 0.5, 1.5};

TEST(ExtendEllipticalArc, FollowsItsEllipseAtEitherEnd) {
    BareSession left(curveAndWall(kBow, {-8, 0}, {-8, 9})), right(curveAndWall(kBow, {9.5, -9}, {9.5, 9}));
    EXPECT_EQ(left.apply("extend c end to wall").outcome.error, "");
    EXPECT_NEAR(endOf(left, CurveEnd::end).x, -8.0, 1e-9);
    EXPECT_NEAR(endOf(left, CurveEnd::end).y, 3.0, 1e-9);
    EXPECT_EQ(constraintIds(left.document()), "atStart");
    EXPECT_EQ(right.apply("extend c start to wall").outcome.error, "");
    EXPECT_NEAR(endOf(right, CurveEnd::start).x, 9.5, 1e-9);
    EXPECT_GT(endOf(right, CurveEnd::start).y, 0.0);
    EXPECT_EQ(constraintIds(right.document()), "atEnd");
}

TEST(ExtendEllipticalArc, KeepsWhatHoldsAtItsCentre) {
    Document document = curveAndWall(kBow, {-8, 0}, {-8, 9});
    document.entities.push_back(shapeEntity("hub", CircleShape{{0, 0}, 1}));
    document.constraints.push_back(constraintOf("hubbed", concentric, {{"c", centre}, {"hub", centre}}));
    BareSession session(document);
    EXPECT_EQ(session.apply("extend c end to wall").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "atStart hubbed");
}

TEST(ExtendArc, AtItsStartRunsBackwards) {
    BareSession session(curveAndWall(ArcShape{{0, 0}, 5, 0.5, 2.0}, {-20, -3}, {20, -3}));
    EXPECT_EQ(session.apply("extend c start to wall").outcome.error, "");
    EXPECT_NEAR(endOf(session, CurveEnd::start).x, 4.0, 1e-9);
    EXPECT_NEAR(endOf(session, CurveEnd::start).y, -3.0, 1e-9);
    EXPECT_EQ(constraintIds(session.document()), "atEnd");
}

TEST(ExtendRay, LeadsItsBackEndAndLosesWhatHeldThere) {
    Document document = curveAndWall(RayShape{{0, 0}, {1, 0}}, {-7, -5}, {-7, 5});
    document.constraints.push_back(constraintOf("level", horizontal, {{"c"}}));
    BareSession session(document);
    EXPECT_EQ(session.apply("extend c start to wall").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "c").shape, Shape(RayShape{{-7, 0}, {1, 0}}));
    EXPECT_EQ(constraintIds(session.document()), "level");
}

/// The stair with posts at its second and its last but one vertex and at both ends.
Document stairWithPosts() {
    Document document = stair();
    const Vec2 at[] = {{0, 0}, {10, 0}, {20, 10}, {20, 20}};
    const Place places[] = {{"p", segmentStart, 0}, {"p", segmentEnd, 0}, {"p", segmentStart, 3}, {"p", segmentEnd, 3}};
    for (std::size_t i = 0; i < 4; ++i) {
        const std::string post = "post" + std::to_string(i);
        document.entities.push_back(lineEntity(post, at[i], at[i] + Vec2{1, -2}));
        document.constraints.push_back(constraintOf("t" + std::to_string(i), coincident, {{post, start}, places[i]}));
    }
    document.entities.push_back(lineEntity("left", {-5, -9}, {-5, 9}));
    document.entities.push_back(lineEntity("roof", {0, 25}, {30, 25}));
    return document;
}

TEST(ExtendPolyline, AtItsEndMovesTheLastVertexAlone) {
    BareSession session(stairWithPosts());
    EXPECT_EQ(session.apply("extend p end to roof").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0 10,10 20,10 20,25");
    EXPECT_EQ(constraintIds(session.document()), "c0 c1 c2 c3 t0 t1 t2");
}

TEST(ExtendPolyline, AtItsStartMovesTheFirstVertexAlone) {
    BareSession session(stairWithPosts());
    EXPECT_EQ(session.apply("extend p start to left").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "-5,0 10,0 10,10 20,10 20,20");
    EXPECT_EQ(constraintIds(session.document()), "c0 c1 c2 c3 t1 t2 t3");
    EXPECT_EQ(findings(session), "");
}

TEST(ExtendPolyline, BendsAnArcSegmentOnAlongItsCircle) {
    Document document;
    document.name = "hook";
    document.entities = {
        shapeEntity("p", PolylineShape{{{0, 0}, {10, 0}, {15, 5}}, {0, 0.41421356237309503, 0}, {0, 0, 0}, false}),
        lineEntity("roof", {0, 10}, {30, 10})};
    document.constraints = {constraintOf("c0", tangent, {{"p", segment, 0}, {"p", segment, 1}})};
    BareSession session(document);
    EXPECT_EQ(session.apply("extend p end to roof").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0^1 10,10");
    EXPECT_EQ(constraintIds(session.document()), "c0");
}

TEST(ExtendPolyline, DoesNotMeetABoundaryAtTheOtherEndOfItsArcSegment) {
    Document document;
    document.name = "hook";
    document.entities = {shapeEntity("p", PolylineShape{{{10, 5}, {5, 5}}, {1, 0}, {0, 0}, false}),
                         lineEntity("post", {10, 0}, {10, 5})};
    const RefusedEdit rows[] = {
        {"extend p end to post",
         "the end of p does not meet post however far it is extended; choose another boundary"}};
    expectRefused(document, rows);
}

TEST(ExtendPolyline, ThatIsClosedHasNoEnd) {
    Document document = rectangle();
    document.entities.push_back(lineEntity("roof", {0, 25}, {30, 25}));
    const RefusedEdit rows[] = {
        {"extend p end to roof", "p is closed and has no end to extend; break it first"},
        {"extend p middle to roof",
         "edit \"extend p middle to roof\", column 10: expected the end to extend (start or end), found \"middle\""},
    };
    expectRefused(document, rows);
}

}  // namespace
}  // namespace holdfast::editing
