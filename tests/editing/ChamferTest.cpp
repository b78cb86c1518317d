#include <gtest/gtest.h>

#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

void expectLine(const Session& session, const std::string& name, const LineShape& expected) {
    EXPECT_LE(distance(lineOf(session, name).start, expected.start), 1e-9) << name;
    EXPECT_LE(distance(lineOf(session, name).end, expected.end), 1e-9) << name;
}

const Constraint* added(const Session& session, std::size_t back) {
    const auto& constraints = session.document().constraints;
    return back < constraints.size() ? &constraints[constraints.size() - 1 - back] : nullptr;
}

TEST(ChamferCurves, CutsBothOffBeforeTheirCornerAndLaysALineBetween) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("chamfer base left by 2").outcome.error, "");
    expectLine(session, "base", {{2, 0}, {10, 0}});
    expectLine(session, "left", {{0, 2}, {0, 5}});
    expectLine(session, "base_2", {{2, 0}, {0, 2}});
}

TEST(ChamferCurves, TiesTheLineToBothEndsAndLosesWhatTheCutsMadeFalse) {
    Session session(frameDrawing());
    const EditResult& result = session.apply("chamfer base left by 2");
    EXPECT_EQ(constraintIds(session.document()), "c1 c2 k5 k6");
    EXPECT_EQ(added(session, 1)->refs, (std::vector<Place>{{"base_2", PlaceKind::start}, {"base", PlaceKind::start}}));
    EXPECT_EQ(added(session, 0)->refs, (std::vector<Place>{{"base_2", PlaceKind::end}, {"left", PlaceKind::start}}));
    ASSERT_EQ(result.fates.constraints.size(), 4u);
    EXPECT_EQ(result.fates.constraints[1].constraint, "c3");
    EXPECT_EQ(result.fates.constraints[1].fate, ConstraintFate::deleted);
    EXPECT_EQ(result.fates.constraints[0].constraint, "c0");
    EXPECT_EQ(result.fates.constraints[0].fate, ConstraintFate::deleted);
    EXPECT_EQ(result.fates.constraints[0].reason, "the start of base moved from (0, 0) to (2, 0)");
}

TEST(ChamferCurves, TakesTheFirstLengthAlongTheFirstCurve) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("chamfer base left by 1 3").outcome.error, "");
    expectLine(session, "base_2", {{1, 0}, {0, 3}});
}

TEST(ChamferCurves, LeadsLinesOnThatDoNotReachTheirCorner) {
    Document document;
    document.name = "apart";
    document.entities = {lineEntity("a", {3, 0}, {10, 0}), lineEntity("b", {0, 5}, {0, 9})};
    Session session(document);
    EXPECT_EQ(session.apply("chamfer a b by 1 2").outcome.error, "");
    expectLine(session, "a", {{1, 0}, {10, 0}});
    expectLine(session, "b", {{0, 2}, {0, 9}});
    expectLine(session, "a_2", {{1, 0}, {0, 2}});
}

TEST(ChamferCurves, KeepsThePickedPartsOfLinesThatCross) {
    Document document;
    document.name = "cross";
    document.entities = {lineEntity("a", {-10, 0}, {10, 0}), lineEntity("b", {0, -10}, {0, 10})};
    Session session(document);
    EXPECT_EQ(session.apply("chamfer a b by 2 at 5,0 0,5").outcome.error, "");
    expectLine(session, "a", {{2, 0}, {10, 0}});
    expectLine(session, "b", {{0, 2}, {0, 10}});
}

TEST(ChamferCurves, MeasuresAlongArcs) {
    Document document;
    document.name = "bow";
    document.entities = {shapeEntity("bow", ArcShape{{0, 0}, 10, 0.0, 1.5}), lineEntity("a", {10, 0}, {20, 0})};
    Session session(document);
    EXPECT_EQ(session.apply("chamfer bow a by 2").outcome.error, "");
    const auto& bow = std::get<ArcShape>(entityNamed(session.document(), "bow").shape);
    EXPECT_NEAR(bow.startAngle, 0.2, 1e-12);
    EXPECT_NEAR(bow.endAngle, 1.5, 1e-12);
    expectLine(session, "bow_2", {{10 * std::cos(0.2), 10 * std::sin(0.2)}, {12, 0}});
}

TEST(ChamferCurves, MakesRaysOfConstructionLinesAndTiesThem) {
    Document document;
    document.name = "endless";
    document.entities = {shapeEntity("x", XlineShape{{0, 0}, {1, 0}}), lineEntity("b", {0, 1}, {0, 9})};
    Session session(document);
    EXPECT_EQ(session.apply("chamfer x b by 2 at 5,0 0,5").outcome.error, "");
    ASSERT_EQ(session.document().entities.size(), 3u);
    EXPECT_EQ(session.document().constraints.size(), 2u);
    for (const Entity& entity : session.document().entities)
        if (const auto* ray = std::get_if<RayShape>(&entity.shape)) {
            EXPECT_LE(distance(ray->point, {2, 0}), 1e-9);
        }
}

TEST(ChamferCorner, PutsASegmentAcrossTheCornerOfAPolyline) {
    Session session(stair());
    const EditResult& result = session.apply("chamfer p corner 2 by 1 3");
    EXPECT_EQ(result.outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0 10,9 13,10 20,10 20,20");
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:1; c2 p.segment:3; c3 p.segment:4");
}

TEST(ChamferCorner, TakesTheCornerInWhichAClosedPolylineBegins) {
    Session session(rectangle());
    EXPECT_EQ(session.apply("chamfer p corner 0 by 2").outcome.error, "");
    EXPECT_EQ(polylineOf(session, "p").vertices.size(), 5u);
    EXPECT_EQ(session.document().constraints.size(), 4u);
    EXPECT_EQ(session.apply("undo").outcome.error, "");
    EXPECT_EQ(withoutVertexNumbers(session.document()), withoutVertexNumbers(rectangle()));
}

/// A polyline that ends 5 before a line which stands across it.
Document wireAtWall() {
    Document document;
    document.name = "wire";
    document.entities = {shapeEntity("p", PolylineShape{{{0, 9}, {0, 0}, {15, 0}}, {0, 0, 0}, {1, 2, 3}, false}),
                         lineEntity("wall", {20, 3}, {20, 30})};
    document.constraints = {constraintOf("c0", ConstraintType::vertical, {{"p", PlaceKind::segment, 0}}),
                            constraintOf("c1", ConstraintType::horizontal, {{"p", PlaceKind::segment, 1}})};
    return document;
}

TEST(ChamferPolylineWithCurve, CutsBothOffAndTiesALineBetween) {
    for (const char* edit : {"chamfer p wall by 2 4", "chamfer wall p by 4 2"}) {
        Session session(wireAtWall());
        EXPECT_EQ(session.apply(edit).outcome.error, "");
        EXPECT_EQ(verticesOf(session, "p"), "0,9 0,0 18,0") << edit;
        expectLine(session, "wall", {{20, 4}, {20, 30}});
        expectLine(session, "wall_2", {{18, 0}, {20, 4}});
        EXPECT_EQ(placesOf(session),
                  "c0 p.segment:0; c1 p.segment:1; k3 wall_2.start p.segment:1.end; k4 wall_2.end wall.start")
            << edit;
        EXPECT_EQ(session.apply("undo").outcome.error, "");
        EXPECT_EQ(withoutVertexNumbers(session.document()), withoutVertexNumbers(wireAtWall()));
    }
}

/// Two polylines whose last segments would meet in (20, 0).
Document twoWires() {
    Document document = wireAtWall();
    document.entities[1] =
        shapeEntity("wall", PolylineShape{{{9, 30}, {20, 30}, {20, 3}}, {0, 0, 0}, {4, 5, 6}, false});
    document.constraints.push_back(constraintOf("c2", ConstraintType::vertical, {{"wall", PlaceKind::segment, 1}}));
    return document;
}

TEST(ChamferTwoPolylines, JoinsThemWithASegmentBetween) {
    const std::pair<const char*, const char*> rows[] = {
        {"chamfer p wall by 2 4", "c0 p.segment:0; c1 p.segment:1; c2 p.segment:3"},
        {"chamfer wall p by 4 2", "c0 wall.segment:4; c1 wall.segment:3; c2 wall.segment:1"}};
    for (const auto& [edit, places] : rows) {
        Session session(twoWires());
        EXPECT_EQ(session.apply(edit).outcome.error, "");
        ASSERT_EQ(session.document().entities.size(), 1u) << edit;
        const std::string joined = session.document().entities[0].id;
        EXPECT_EQ(verticesOf(session, joined),
                  joined == "p" ? "0,9 0,0 18,0 20,4 20,30 9,30" : "9,30 20,30 20,4 18,0 0,0 0,9");
        EXPECT_EQ(placesOf(session), places) << edit;
        EXPECT_EQ(session.apply("undo").outcome.error, "");
        EXPECT_EQ(withoutVertexNumbers(session.document()), withoutVertexNumbers(twoWires()));
    }
}

TEST(ChamferTwoPolylines, RefusesWhatMeetsTooFarAway) {
    Document document = twoWires();
    std::get<PolylineShape>(document.entities[1].shape).vertices = {{0, 30}, {0, 5}, {15, 5 - 1e-5}};
    document.constraints.clear();
    document.entities.push_back(lineEntity("level", {5, -3}, {15, -3 + 1e-5}));
    const RefusedEdit rows[] = {
        {"chamfer p wall by 1", "p and wall are as good as parallel: they would meet 7.49998e+06 away"},
        {"fillet p wall radius 0", "p and wall are as good as parallel: they would meet 7.49999e+06 away"},
        {"chamfer p level by 1", "p and level are as good as parallel: they would meet 2.99999e+06 away"},
        {"fillet level p radius 0", "p and level are as good as parallel: they would meet 2.99999e+06 away"},
    };
    expectRefused(document, rows);
}

TEST(ChamferEdit, LeavesAPointAtTheCornerOnRequest) {
    Session curves(frameDrawing()), polyline(stair());
    EXPECT_EQ(curves.apply("chamfer base left by 2 keep corner").outcome.error, "");
    const Entity& corner = curves.document().entities.back();
    EXPECT_EQ(corner.shape, Shape(PointShape{{0, 0}}));
    EXPECT_TRUE(corner.construction);
    EXPECT_EQ(polyline.apply("chamfer p corner 1 by 2 keep corner").outcome.error, "");
    EXPECT_EQ(polyline.document().entities.back().shape, Shape(PointShape{{10, 0}}));
    EXPECT_EQ(polyline.apply("set p.vertex:1 9,0").outcome.error, "");
    const auto& kept = std::get<PointShape>(polyline.document().entities.back().shape);
    EXPECT_NEAR(kept.position.x, 10.0, 1e-9) << "the segments still lead to it";
}

TEST(ChamferEdit, IsTakenBackByUndo) {
    Session session(frameDrawing());
    session.apply("chamfer base left by 2");
    EXPECT_EQ(session.apply("undo").outcome.error, "");
    EXPECT_EQ(session.document(), frameDrawing());
}

TEST(ChamferEdit, SaysWhatIsWrong) {
    Document document = stair();
    for (const Entity& entity : frameDrawing().entities)
        document.entities.push_back(entity);
    document.entities.push_back(shapeEntity("ring", CircleShape{{0, 0}, 3}));
    document.entities.push_back(lineEntity("on", {10, 0}, {20, 0}));
    document.entities.push_back(shapeEntity("q", polylineOf(Session(stair()), "p")));
    document.entities.push_back(lineEntity("flat", {0, 40}, {10, 40}));
    document.entities.push_back(lineEntity("level", {0, 45}, {10, 45 - 1e-5}));
    const RefusedEdit rows[] = {
        {"chamfer base left by 12",
         "a chamfer of 12 would leave nothing of base, which is 10 long up to the corner; choose a smaller distance"},
        {"chamfer base left by 1 5",
         "a chamfer of 5 would leave nothing of left, which is 5 long up to the corner; choose a smaller distance"},
        {"chamfer base left by 0",
         "edit \"chamfer base left by 0\", column 22: a chamfer takes a length above 0; fillet with radius 0 makes a "
         "sharp corner, found \"0\""},
        {"chamfer base left by 1 -2",
         "edit \"chamfer base left by 1 -2\", column 24: a chamfer takes a length above 0; fillet with radius 0 makes "
         "a sharp corner, found \"-2\""},
        {"chamfer left right by 1", "left and right do not meet even when prolonged; there is no corner to chamfer"},
        {"chamfer base on by 1", "base and on run smoothly into each other in (10, 0); there is no corner to chamfer"},
        {"chamfer base base by 1", "base cannot be chamfered with itself; name two curves"},
        {"chamfer ring base by 1", "ring is closed and has no end to chamfer; break it first"},
        {"chamfer p p by 1", "name a corner to chamfer p with itself: chamfer p corner I by LENGTH"},
        {"chamfer ring base by 1 keep corner", "ring is closed and has no end to chamfer; break it first"},
        {"chamfer flat level by 1", "flat and level are as good as parallel: they would meet 4.99999e+06 away"},
        {"chamfer base corner 1 by 1", "base is no polyline; name the two curves whose corner is to be chamfered"},
        {"chamfer p corner 4 by 1", "vertex 4 is an end of p, not a corner; its corners are 1 to 3"},
        {"chamfer p corner 1 by 10",
         "a chamfer of 10 would leave nothing of segment 0 of p, which is 10 long up to the corner; choose a smaller "
         "distance"},
        {"chamfer lfet base by 1",
         "edit \"chamfer lfet base by 1\", column 9: the drawing has no entity lfet, found \"lfet\"; did you mean "
         "\"left\"?"},
    };
    expectRefused(document, rows);
}

}  // namespace
}  // namespace holdfast::editing
