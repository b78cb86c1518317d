#include <gtest/gtest.h>

#include "hosting/Drawing.h"
#include "tests/editing/BareSession.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

TEST(Trial, TellsWhatAnEditWouldDoAndLeavesTheDrawing) {
    Session session(frameDrawing());
    const Document before = session.document();
    const Trial trial = session.trial("break base at 4,0 to 6,0");
    EXPECT_EQ(trial.result.outcome.error, "");
    EXPECT_FALSE(trial.result.fates.entities.empty());
    EXPECT_EQ(session.document(), before);
    EXPECT_TRUE(session.results().empty());
    EXPECT_EQ(errorOf(session, "undo"), "there is no edit to take back");
}

TEST(Trial, TellsTheSameAsTheEditItself) {
    Session session(frameDrawing());
    const Trial trial = session.trial("lengthen left end by 1");
    const EditResult done = session.apply("lengthen left end by 1");
    EXPECT_EQ(trial.result.outcome, done.outcome);
    EXPECT_EQ(trial.result.fates.constraints, done.fates.constraints);
    EXPECT_EQ(trial.result.fates.entities, done.fates.entities);
    ASSERT_EQ(session.changes().size(), 1U);
    EXPECT_EQ(trial.change, session.changes().front());
}

TEST(Trial, LeavesNoTraceInEditsThatFollow) {
    Session tried(frameDrawing()), plain(frameDrawing());
    for (const char* edit : {"drag left by 0,2", "break base at 4,0", "erase base", "draw line 0,0 3,3"})
        tried.trial(edit);
    for (Session* session : {&tried, &plain}) {
        EXPECT_EQ(errorOf(*session, "break base at 4,0 to 6,0"), "");
        EXPECT_EQ(errorOf(*session, "draw line 0,0 1,7"), "");
    }
    EXPECT_EQ(tried.document(), plain.document());
}

TEST(Trial, LeavesWhatCanBeDoneAgain) {
    Session session(frameDrawing());
    session.apply("break base at 4,0 to 6,0");
    const Document broken = session.document();
    session.apply("undo");
    session.trial("lengthen left end by 1");
    EXPECT_TRUE(session.canRedo());
    EXPECT_EQ(errorOf(session, "redo"), "");
    EXPECT_EQ(session.document(), broken);
}

TEST(Trial, OfWhatIsRefusedTellsWhy) {
    Session session(frameDrawing());
    const Document before = session.document();
    EXPECT_NE(session.trial("break base at 4,9").result.outcome.error, "");
    EXPECT_TRUE(session.trial("break base at 4,9").change.entities.empty());
    EXPECT_NE(session.trial("brake base").result.outcome.error, "");
    EXPECT_NE(session.trial("undo").result.outcome.error, "");
    EXPECT_EQ(session.document(), before);
    EXPECT_TRUE(session.results().empty());
}

/// What is solved next looks at what has been touched since: a release is to look at the same as the edit by itself.
TEST(Trial, LeavesWhatIsToBeSolvedNextAsItWas) {
    Session session(frameDrawing());
    const auto look = [&] {
        for (const char* edit : {"drag left by 0,1", "break base at 4,0", "draw line 30,0 40,0 as far", "brake base",
                                 "break base at 4,9", "undo"}) {
            const auto before = session.drawing().unsolved();
            session.trial(edit);
            EXPECT_EQ(session.drawing().unsolved(), before) << edit;
        }
        const auto before = session.drawing().unsolved();
        session.apply("break base at 4,9");
        EXPECT_EQ(session.drawing().unsolved(), before) << "after a refusal, which no script has";
    };
    look();
    for (const char* edit : {"drag right.end by 1,2", "draw line 30,0 40,0 as far", "drag far.end by 1,1", "undo"}) {
        ASSERT_EQ(session.apply(edit).outcome.error, "");
        look();
    }
}

TEST(Trial, ManyInARowAreLikeOne) {
    Session session(frameDrawing());
    const Trial first = session.trial("drag left by 0,1");
    Trial last;
    for (int i = 0; i < 400; ++i)
        last = session.trial("drag left by 0,1");
    EXPECT_EQ(last.change, first.change);
    EXPECT_EQ(session.document(), frameDrawing());
}

}  // namespace
}  // namespace holdfast::editing
