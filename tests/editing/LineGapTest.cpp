#include <gtest/gtest.h>

#include <cmath>

#include "hosting/Drawing.h"
#include "tests/editing/BareSession.h"
#include "tests/editing/Shorthand.h"

// A distance between two lines on its way through the edits.

namespace holdfast::editing {
namespace {

/// Two slanted parallels, 5 apart; the post hangs on the end of the upper one.
Document railsDrawing() {
    Document document;
    document.name = "rails";
    document.entities = {lineEntity("lower", {0, 0}, {16, 12}), lineEntity("upper", {-3, 4}, {13, 16}),
                         lineEntity("post", {13, 16}, {13, 20})};
    Constraint gap = constraintOf("gap", ConstraintType::distance, {{"lower"}, {"upper"}});
    gap.value = 5.0;
    document.constraints = {
        constraintOf("along", ConstraintType::parallel, {{"lower"}, {"upper"}}), gap,
        constraintOf("joint", ConstraintType::coincident, {{"upper", PlaceKind::end}, {"post", PlaceKind::start}})};
    return document;
}

LineShape lineOf(const Document& document, const std::string& id) {
    return std::get<LineShape>(entityNamed(document, id).shape);
}

/// Of the middle of one line, to the left of the other.
double gapOf(const LineShape& first, const LineShape& second) {
    const double dx = first.end.x - first.start.x, dy = first.end.y - first.start.y;
    const double x = 0.5 * (second.start.x + second.end.x) - first.start.x;
    const double y = 0.5 * (second.start.y + second.end.y) - first.start.y;
    return (dx * y - dy * x) / std::hypot(dx, dy);
}

TEST(LineGap, ComesOutOfTheHostAsItWentIn) {
    Drawing drawing(railsDrawing());
    EXPECT_EQ(drawing.document(), railsDrawing());
}

TEST(LineGap, HoldsWhenOneOfTheLinesIsMoved) {
    for (const char* edit : {"drag lower by 4,-7", "drag upper.end by 1,6", "drag lower.start by -2,5",
                             "stretch window 12,15 14,21 by 2,3"}) {
        Session session(railsDrawing());
        EXPECT_EQ(session.apply(edit).outcome.error, "");
        const Document& after = session.document();
        EXPECT_NEAR(gapOf(lineOf(after, "lower"), lineOf(after, "upper")), 5.0, 1e-6) << edit;
        EXPECT_EQ(constraintIds(after), "along gap joint") << edit;
    }
}

TEST(LineGap, IsCopiedByAMirror) {
    Session session(railsDrawing());
    EXPECT_EQ(session.apply("mirror lower upper post about 30,0 30,1 keep").outcome.error, "");
    const Document& after = session.document();
    ASSERT_EQ(after.constraints.size(), 6U);
    EXPECT_EQ(after.constraints[4].refs, (std::vector<Place>{{"lower_2"}, {"upper_2"}}));
    EXPECT_EQ(after.constraints[4].value, 5.0);
    EXPECT_NEAR(gapOf(lineOf(after, "lower_2"), lineOf(after, "upper_2")), -5.0, 1e-9);
}

TEST(LineGap, StaysWhenAParallelIsCut) {
    Session session(railsDrawing());
    EXPECT_EQ(session.apply("break upper at 5,10").outcome.error, "");
    EXPECT_NE(constraintIds(session.document()).find("gap"), std::string::npos);
}

TEST(LineGap, GoesWhenACutMovesTheMiddleOfASlantedLine) {
    Document document = railsDrawing();
    document.entities[1].shape = LineShape{{-3, 4}, {4, 3}};  // its middle (0.5, 3.5) is 2.5 from the lower line
    document.entities.pop_back();
    document.constraints = {document.constraints[1]};
    document.constraints[0].value = 2.5;
    BareSession session(document);
    EXPECT_EQ(session.apply("break upper at 0.5,3.5").outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "");
}

TEST(LineGap, FollowsWhenItOnlyMeasures) {
    Document document = railsDrawing();
    document.constraints[0].active = false;
    document.constraints[1].driving = false;
    Session session(document);
    EXPECT_EQ(session.apply("drag lower by 0,-5").outcome.error, "");
    EXPECT_NEAR(session.document().constraints[1].value.value(), 9.0, 1e-9);
}

}  // namespace
}  // namespace holdfast::editing
