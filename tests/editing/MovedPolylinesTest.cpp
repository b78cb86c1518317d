// Constrained polylines, with arcs, under the commands that move whole entities.

#include <gtest/gtest.h>

#include "hosting/DocumentSketch.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

using enum PlaceKind;

const PolylineShape kHook{{{0, 0}, {10, 0}, {10, 4}, {4, 4}}, {0, 1, 0, 0}, {11, 12, 13, 14}, false};

/// A hook whose round end meets its straight parts smoothly, and a line that hangs on its last vertex.
Document hookDrawing() {
    Document document;
    document.name = "hook";
    document.entities = {shapeEntity("p", kHook), lineEntity("tail", {4, 4}, {4, 20})};
    document.constraints = {constraintOf("c0", ConstraintType::tangent, {{"p", segment, 0}, {"p", segment, 1}}),
                            constraintOf("c1", ConstraintType::parallel, {{"p", segment, 0}, {"p", segment, 2}}),
                            constraintOf("c2", ConstraintType::coincident, {{"p", segmentEnd, 2}, {"tail", start}})};
    return document;
}

const PolylineShape& hookOf(const Session& session) {
    return std::get<PolylineShape>(entityNamed(session.document(), "p").shape);
}

void expectSound(const Session& session) {
    EXPECT_EQ(constraintIds(session.document()), "c0 c1 c2");
    EXPECT_EQ(hookOf(session).ids, kHook.ids);
    for (const double miss : DocumentSketch(session.document()).shortfalls())
        EXPECT_LE(miss, 1e-8);
}

TEST(MovedPolyline, KeepsItsSegmentsInAMirror) {
    Session session(hookDrawing());
    ASSERT_EQ(session.apply("mirror p about 0,0 0,1").outcome.error, "");
    EXPECT_EQ(hookOf(session).vertices, (std::vector<Vec2>{{0, 0}, {-10, 0}, {-10, 4}, {-4, 4}}));
    EXPECT_EQ(hookOf(session).bulges, (std::vector<double>{0, -1, 0, 0}));
    EXPECT_NEAR(std::get<LineShape>(entityNamed(session.document(), "tail").shape).start.x, -4.0, 1e-9);
    expectSound(session);
}

TEST(MovedPolyline, KeepsItsSegmentsInATurn) {
    Session session(hookDrawing());
    ASSERT_EQ(session.apply("rotate p about 0,0 by 30").outcome.error, "");
    EXPECT_NEAR(hookOf(session).vertices[1].y, 5.0, 1e-9);
    EXPECT_NEAR(hookOf(session).bulges[1], 1.0, 1e-9);
    expectSound(session);
}

TEST(MovedPolyline, KeepsItsSegmentsInAnAlignmentWithScale) {
    Session session(hookDrawing());
    ASSERT_EQ(session.apply("align p from 0,0 10,0 to 5,5 5,25 scale").outcome.error, "");
    EXPECT_NEAR(hookOf(session).vertices[2].x, 5.0 - 8.0, 1e-9);
    EXPECT_NEAR(hookOf(session).vertices[2].y, 25.0, 1e-9);
    EXPECT_NEAR(hookOf(session).bulges[1], 1.0, 1e-9);
    expectSound(session);
}

TEST(MovedPolyline, KeepsItsRoundSmoothWhenAVertexIsDragged) {
    Session session(hookDrawing());
    ASSERT_EQ(session.apply("drag p.segment:1.end by 3,2 steps 3").outcome.error, "");
    EXPECT_NEAR(hookOf(session).vertices[2].x, 13.0, 1e-8);
    EXPECT_NEAR(hookOf(session).vertices[2].y, 6.0, 1e-8);
    expectSound(session);
}

TEST(MovedPolyline, KeepsItsRoundSmoothWhenAVertexIsSet) {
    Session session(hookDrawing());
    ASSERT_EQ(session.apply("set p vertex 1 12,1").outcome.error, "");
    EXPECT_NEAR(hookOf(session).vertices[1].x, 12.0, 1e-8);
    EXPECT_NEAR(hookOf(session).vertices[1].y, 1.0, 1e-8);
    expectSound(session);
}

TEST(MovedPolyline, KeepsItsRoundSmoothInAStretch) {
    Session session(hookDrawing());
    ASSERT_EQ(session.apply("stretch window 9,-1 11,5 by 6,0").outcome.error, "");
    EXPECT_NEAR(hookOf(session).vertices[1].x, 16.0, 1e-8);
    EXPECT_NEAR(hookOf(session).vertices[2].x, 16.0, 1e-8);
    expectSound(session);
}

TEST(MovedPolyline, ComesBackInAnUndo) {
    for (const char* edit : {"mirror p about 0,0 0.2,1", "rotate p tail about 1,1 by 12", "drag p by 1,2"}) {
        Session session(hookDrawing());
        ASSERT_EQ(session.apply(edit).outcome.error, "") << edit;
        session.apply("undo");
        EXPECT_EQ(session.document(), hookDrawing()) << edit;
    }
}

}  // namespace
}  // namespace holdfast::editing
