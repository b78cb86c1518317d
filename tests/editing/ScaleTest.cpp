#include <gtest/gtest.h>

#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

/// A frame with dimensions on it: a length, an angle and a radius; and a line that hangs on its end.
Document sizedDrawing() {
    Document document = frameDrawing();
    document.name = "sized";
    document.entities.push_back(shapeEntity("hole", CircleShape{{4, 2}, 1}));
    document.entities.push_back(lineEntity("tail", {10, 5}, {20, 5}));
    document.constraints.push_back(valued(constraintOf("d0", ConstraintType::distance, {{"base"}}), 10.0));
    document.constraints.push_back(
        valued(constraintOf("d1", ConstraintType::angle, {{"base"}, {"left"}}), 1.5707963267948966));
    document.constraints.push_back(valued(constraintOf("d2", ConstraintType::radius, {{"hole"}}), 1.0));
    document.constraints.push_back(
        constraintOf("t", ConstraintType::coincident, {{"right", PlaceKind::end}, {"tail", PlaceKind::start}}));
    document.constraints.push_back(constraintOf("h", ConstraintType::horizontal, {{"tail"}}));
    return document;
}

TEST(ScaleEdit, TakesLengthsAndRadiiAlongAndLeavesAngles) {
    Session session(sizedDrawing());
    const EditResult& result = session.apply("scale base left right hole about 0,0 by 2");
    EXPECT_EQ(result.outcome.error, "");
    const auto& constraints = session.document().constraints;
    EXPECT_EQ(constraints[4].value, 20.0);
    EXPECT_EQ(constraints[5].value, 1.5707963267948966);
    EXPECT_EQ(constraints[6].value, 2.0);
    ASSERT_EQ(result.fates.constraints.size(), 2u);
    EXPECT_EQ(result.fates.constraints[0].reason, "10 -> 20");
    EXPECT_EQ(result.fates.constraints[1].reason, "1 -> 2");
    EXPECT_EQ(entityNamed(session.document(), "hole").shape, Shape(CircleShape{{8, 4}, 2}));
}

TEST(ScaleEdit, HasWhatIsTiedToItFollow) {
    Session session(sizedDrawing());
    EXPECT_EQ(session.apply("scale base left right about 0,0 by 2").outcome.error, "");
    EXPECT_EQ(lineOf(session, "right"), (LineShape{{20, 0}, {20, 10}}));
    EXPECT_NEAR(lineOf(session, "tail").start.x, 20.0, 1e-9);
    EXPECT_NEAR(lineOf(session, "tail").start.y, 10.0, 1e-9);
    EXPECT_NEAR(lineOf(session, "tail").end.y, 10.0, 1e-9);
    EXPECT_NEAR(lineOf(session, "tail").end.x, 30.0, 1e-9);
}

TEST(ScaleEdit, LeavesDimensionsToOthers) {
    Document document = sizedDrawing();
    document.constraints.push_back(
        valued(constraintOf("gap", ConstraintType::distance, {{"hole", PlaceKind::centre}, {"tail", PlaceKind::end}}),
               std::hypot(16.0, 3.0)));
    Session session(document);
    EXPECT_EQ(session.apply("scale hole about 4,2 by 3").outcome.error, "");
    EXPECT_EQ(session.document().constraints.back().value, std::hypot(16.0, 3.0));
    EXPECT_EQ(session.document().constraints[6].value, 3.0);
}

TEST(ScaleEdit, IsTakenBackByUndo) {
    Session session(sizedDrawing());
    session.apply("scale base left right hole about 1,1 by 0.25");
    EXPECT_EQ(session.apply("undo").outcome.error, "");
    EXPECT_EQ(session.document(), sizedDrawing());
}

TEST(ScaleEdit, SaysWhatIsWrong) {
    Document document = sizedDrawing();
    document.constraints.push_back(constraintOf("f", ConstraintType::fixed, {{"base", PlaceKind::start}}));
    const RefusedEdit rows[] = {
        {"scale hole about 0,0 by 0",
         "edit \"scale hole about 0,0 by 0\", column 25: a factor is above 0; mirror turns entities over, found \"0\""},
        {"scale hole about 0,0 by -2",
         "edit \"scale hole about 0,0 by -2\", column 25: a factor is above 0; mirror turns entities over, found "
         "\"-2\""},
        {"scale hole about 0,0 by 1",
         "edit \"scale hole about 0,0 by 1\", column 25: a factor of 1 changes nothing; give another one, found \"1\""},
        {"scale hloe about 0,0 by 2",
         "edit \"scale hloe about 0,0 by 2\", column 7: the drawing has no entity hloe, found \"hloe\"; did you mean "
         "\"hole\"?"},
        {"scale base about 5,5 by 2",
         "the constraints do not allow it: f (fixed base.start) stands in the way; delete one of them or choose "
         "another "
         "value"},
    };
    expectRefused(document, rows);
}

TEST(ScaleEdit, AboutAFixedPointLeavesItInPlace) {
    Document document = sizedDrawing();
    document.constraints.push_back(constraintOf("f", ConstraintType::fixed, {{"base", PlaceKind::start}}));
    Session session(document);
    EXPECT_EQ(session.apply("scale base left right about 0,0 by 1.5").outcome.error, "");
    EXPECT_EQ(lineOf(session, "base"), (LineShape{{0, 0}, {15, 0}}));
}

}  // namespace
}  // namespace holdfast::editing
