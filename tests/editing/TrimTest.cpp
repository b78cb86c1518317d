#include <gtest/gtest.h>

#include "tests/editing/BareSession.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

Document crossedFrame() {
    Document document = frameDrawing();
    document.entities.push_back(lineEntity("cut", {7, -2}, {7, 2}));
    document.entities.push_back(lineEntity("cut2", {3, -2}, {3, 2}));
    return document;
}

TEST(TrimEdit, RemovesThePartBehindTheCuttingEdge) {
    BareSession session(crossedFrame());
    EXPECT_EQ(session.apply("trim base at 9,0 by cut").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "base").shape, Shape(LineShape{{0, 0}, {7, 0}}));
    EXPECT_EQ(constraintIds(session.document()), "c0 c2 c3");
}

TEST(TrimEdit, RemovesThePartBetweenTwoEdges) {
    BareSession session(crossedFrame());
    EXPECT_EQ(session.apply("trim base at 5,0 by cut cut2").outcome.error, "");
    EXPECT_EQ(entityNamed(session.document(), "base").shape, Shape(LineShape{{0, 0}, {3, 0}}));
    EXPECT_EQ(entityNamed(session.document(), "base_2").shape, Shape(LineShape{{7, 0}, {10, 0}}));
}

TEST(TrimEdit, TakesAClosedPolylineOverItsVertexZero) {
    Document document;
    document.name = "plate";
    PolylineShape square{{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {0, 0, 0, 0}, {1, 2, 3, 4}, true};
    document.entities = {shapeEntity("p", square), lineEntity("cut", {-1, 5}, {5, -1})};
    BareSession session(document);
    EXPECT_EQ(session.apply("trim p at 0,1 by cut").outcome.error, "");
    const auto& rest = std::get<PolylineShape>(entityNamed(session.document(), "p").shape);
    EXPECT_EQ(rest.vertices.front(), (Vec2{4, 0}));
    EXPECT_EQ(rest.vertices.back().x, 0.0);
    EXPECT_NEAR(rest.vertices.back().y, 4.0, 1e-12);
    EXPECT_FALSE(rest.closed);
}

TEST(TrimEdit, OfARingThatIsNotClosedTakesItsEndForNoStart) {
    Document document = stair();
    document.entities = {
        shapeEntity("p", PolylineShape{{{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}}, {0, 0, 0, 0, 0}, {}, false}),
        lineEntity("cut", {-5, 4}, {5, 4})};
    std::get<PolylineShape>(document.entities[0].shape).ids.assign(5, 0);
    BareSession session(document);
    EXPECT_EQ(session.apply("trim p at 0,2 by cut").outcome.error, "");
    EXPECT_EQ(verticesOf(session, "p"), "0,0 10,0 10,10 0,10 0,4");
    EXPECT_EQ(placesOf(session), "c0 p.segment:0; c1 p.segment:1; c2 p.segment:2; c3 p.segment:3");
}

TEST(TrimEdit, RefusesWithAReasonAndChangesNothing) {
    const RefusedEdit rows[] = {
        {"trim left at 0,4 by cut", "no cutting edge meets left; choose edges that cross it, or extend them first"},
        {"trim base at 9,0 by base", "base cannot be its own cutting edge"},
        {"trim base at 5,0 by left right", "the cutting edges only touch the ends of base; nothing is cut"},
        {"trim disc at 50,5 by stem twig",
         "disc is closed and the cutting edges meet it only once; it takes two places to trim it"},
        {"trim base at 5,0 by dot", "dot is no curve; only curves can be cutting edges"},
        {"trim dot at 7,0 by cut", "dot is no curve; only curves can be trimmed"},
    };
    Document document = crossedFrame();
    document.entities.push_back(shapeEntity("disc", CircleShape{{50, 0}, 5}));
    document.entities.push_back(lineEntity("stem", {55, 0}, {60, 0}));
    document.entities.push_back(lineEntity("twig", {55, 0}, {60, 5}));
    document.entities.push_back(shapeEntity("dot", PointShape{{7, 0}}));
    expectRefused(document, rows);
}

}  // namespace
}  // namespace holdfast::editing
