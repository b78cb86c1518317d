// Drawings and sessions that are open at once in one thread.

#include <gtest/gtest.h>

#include <memory>

#include "host/model/HostAudit.h"
#include "hosting/Drawing.h"
#include "tests/editing/EveryKind.h"

namespace holdfast::editing {
namespace {

using Findings = std::vector<std::string>;

Document alone(const Document& document, std::initializer_list<const char*> edits) {
    Session session(document);
    for (const char* edit : edits)
        session.apply(edit);
    return session.document();
}

TEST(SeveralDrawings, AreChangedInTurnEachByItself) {
    Drawing frame(frameDrawing()), kinds(heldDrawing());
    frame.write("base", ArcShape{{5, 0}, 5, 0, 3});
    kinds.erase("poly");
    frame.erase("left");
    kinds.addConstraint(constraintOf("", ConstraintType::horizontal, {{"line"}}));
    frame.removeConstraint("c1");
    EXPECT_EQ(constraintIds(frame.document()), "c2");
    EXPECT_EQ(kinds.document().entities.size(), heldDrawing().entities.size() - 1);
    EXPECT_EQ(auditNetwork(frame.process()), Findings());
    EXPECT_EQ(auditNetwork(kinds.process()), Findings());
}

TEST(SeveralDrawings, LeaveNothingInOneAnotherWhenTheyClose) {
    Drawing frame(frameDrawing());
    {
        Drawing kinds(kindsDrawing());
        frame.write("left", CircleShape{{0, 0}, 1});  // the line that it was lives on as a copy of this process
        kinds.write("line", CircleShape{{0, 0}, 1});
    }
    EXPECT_EQ(frame.document().entities.size(), 3u);
    frame.erase("right");
    EXPECT_EQ(frame.names(), (std::vector<std::string>{"base", "left"}));
}

TEST(SeveralDrawings, AreNotRecordedInTheJournalOfAnother) {
    Drawing kinds(kindsDrawing());
    HostProcess watched;
    watched.journal().clear();
    kinds.write("line", LineShape{{1, 0}, {9, 0}});
    kinds.document();
    kinds.tieCorners("poly");
    EXPECT_EQ(watched.journal().entries().size(), 0u);
}

TEST(SeveralSessions, DoWhatEachDoesAlone) {
    Session first(frameDrawing()), second(heldDrawing());
    first.apply("break base at 4,0 to 6,0");
    second.apply("drag line by 3,2 steps 3");
    EXPECT_EQ(first.apply("drag left by 1,1").outcome.error, "");
    EXPECT_EQ(second.apply("rotate poly about 1,2 by 40").outcome.error, "");
    second.apply("undo");
    first.apply("mirror right about 1,0 3,1");
    EXPECT_EQ(first.document(),
              alone(frameDrawing(), {"break base at 4,0 to 6,0", "drag left by 1,1", "mirror right about 1,0 3,1"}));
    EXPECT_EQ(second.document(), alone(heldDrawing(), {"drag line by 3,2 steps 3"}));
}

TEST(SeveralSessions, MayEndInAnyOrder) {
    auto first = std::make_unique<Session>(frameDrawing());
    Session second(frameDrawing());
    first.reset();
    EXPECT_EQ(second.apply("break base at 4,0 to 6,0").outcome.error, "");
}

TEST(Session, LeavesTheCallersProcessCurrent) {
    const HostProcess process;
    Session session(frameDrawing());
    EXPECT_EQ(hostState().workingDatabase, &process.database());
    session.apply("break base at 4,0 to 6,0");
    EXPECT_NE(session.apply("break base at 4,9").outcome.error, "");  // opens the drawing again
    EXPECT_EQ(hostState().workingDatabase, &process.database());
}

}  // namespace
}  // namespace holdfast::editing
