#include "editing/fates/DeletionReasons.h"

#include <gtest/gtest.h>

#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

TEST(DeletionReasons, TellWhatHadMovedWhenTheConstraintWent) {
    const Document before = frameDrawing();
    Drawing drawing(before);
    DeletionReasons reasons;
    drawing.write("base", LineShape{{0, 0}, {4, 0}});
    drawing.removeConstraint("c1");
    reasons.noteDeleted(drawing);
    drawing.write("base", LineShape{{0, 0}, {7, 0}});
    EXPECT_EQ(reasons.reasonOf("c1"), "the end of base moved from (10, 0) to (4, 0)");
}

TEST(DeletionReasons, KeepWhatACommandKnowsItself) {
    const Document before = frameDrawing();
    Drawing drawing(before);
    DeletionReasons reasons;
    reasons.note("c1", "the user asked for it");
    drawing.removeConstraint("c1");
    reasons.noteDeleted(drawing);
    EXPECT_EQ(reasons.reasonOf("c1"), "the user asked for it");
}

TEST(DeletionReasons, ForgetAConstraintThatIsBack) {
    const Document before = frameDrawing();
    Drawing drawing(before);
    DeletionReasons reasons;
    drawing.removeConstraint("c1");
    drawing.removeConstraint("c2");
    reasons.noteDeleted(drawing);
    drawing.addConstraint(before.constraints[1]);
    reasons.noteDeleted(drawing);
    drawing.removeConstraint("c1");
    drawing.write("right", LineShape{{12, 0}, {10, 5}});
    reasons.noteDeleted(drawing);
    EXPECT_EQ(reasons.reasonOf("c1"), "the start of right moved from (10, 0) to (12, 0)");
}

TEST(DeletionReasons, TellAWayThatItsEndsDoNotShowByItsLength) {
    const Document before = frameDrawing();
    Drawing drawing(before);
    DeletionReasons reasons;
    drawing.write("base", LineShape{{0, 0}, {10, 1e-9}});
    drawing.removeConstraint("c1");
    reasons.noteDeleted(drawing);
    EXPECT_EQ(reasons.reasonOf("c1"), "the end of base moved by 1e-09");
}

TEST(DeletionReasons, DoNotTellOfACurveWhatDidNotHappenToIt) {
    Document before = frameDrawing();
    before.constraints.push_back(constraintOf("same", ConstraintType::equal, {{"base"}, {"right"}}));
    Drawing drawing(before);
    DeletionReasons reasons;
    drawing.write("base", LineShape{{0, 0}, {7, 0}});
    drawing.removeConstraint("same");
    reasons.noteDeleted(drawing);
    EXPECT_EQ(reasons.reasonOf("same"), "the end of base moved from (10, 0) to (7, 0)");
}

}  // namespace
}  // namespace holdfast::editing
