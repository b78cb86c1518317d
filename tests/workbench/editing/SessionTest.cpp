#include <gtest/gtest.h>

#include "tests/workbench/editing/Shorthand.h"

namespace holdfast {
namespace {

TEST(Session, UndoPutsTheDrawingBackBitForBit) {
    Session session(frameDrawing());
    session.apply("break base at 4,0 to 6,0");
    EXPECT_EQ(session.apply("undo").outcome.error, "");
    EXPECT_EQ(session.document(), frameDrawing());
}

TEST(Session, RefusesAnUndoOfNothing) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("undo").outcome.error, "there is no edit to take back");
}

TEST(Session, GoesOnAfterARefusedEdit) {
    Session session(frameDrawing());
    EXPECT_NE(session.apply("break base at 4,9").outcome.error, "");
    EXPECT_EQ(session.apply("break base at 4,0").outcome.error, "");
    EXPECT_EQ(session.results().size(), 2u);
}

TEST(Session, ReportsTheWholeRun) {
    Session session(frameDrawing());
    session.apply("break base at 4,0 to 6,0");
    session.apply("break left at 0,2 to 0,5");
    const FateReport report = session.report();
    ASSERT_EQ(report.constraints.size(), 2u);
    EXPECT_EQ(report.constraints[0].constraint, "c1");
    EXPECT_EQ(report.constraints[0].edit, 0u);
    EXPECT_EQ(report.constraints[1].constraint, "c3");
    EXPECT_EQ(report.constraints[1].edit, 1u);
    EXPECT_EQ(report.before, frameDrawing());
}

TEST(Session, KnowsAMisspeltCommand) {
    Session session(frameDrawing());
    EXPECT_NE(session.apply("brek base at 4,0").outcome.error.find("did you mean \"break\"?"), std::string::npos);
}

}  // namespace
}  // namespace holdfast
