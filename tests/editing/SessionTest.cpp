#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/editing/BareSession.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
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

TEST(Session, RedoDoesAgainWhatWasTakenBackBitForBit) {
    Session session(frameDrawing());
    session.apply("break base at 4,0 to 6,0");
    const Document broken = session.document();
    session.apply("lengthen left end by 1");
    const Document lengthened = session.document();
    session.apply("undo");
    session.apply("undo");
    EXPECT_EQ(session.apply("redo").outcome.error, "");
    EXPECT_EQ(session.document(), broken);
    EXPECT_EQ(session.apply("redo").outcome.error, "");
    EXPECT_EQ(session.document(), lengthened);
    session.apply("undo");
    EXPECT_EQ(session.document(), broken);
}

TEST(Session, RefusesARedoOfNothing) {
    Session session(frameDrawing());
    const std::string nothing =
        "there is no edit to do again; redo does what was taken back last, until another edit is done";
    EXPECT_EQ(session.apply("redo").outcome.error, nothing);
    session.apply("break base at 4,0");
    EXPECT_EQ(session.apply("redo").outcome.error, nothing);
    session.apply("undo");
    session.apply("break left at 0,2");
    EXPECT_EQ(session.apply("redo").outcome.error, nothing) << "another edit was done";
}

TEST(Session, RedoesAfterAnEditThatWasRefused) {
    Session session(frameDrawing());
    session.apply("break base at 4,0");
    const Document broken = session.document();
    session.apply("undo");
    EXPECT_NE(session.apply("break base at 4,9").outcome.error, "");
    EXPECT_EQ(session.apply("redo").outcome.error, "");
    EXPECT_EQ(session.document(), broken);
}

TEST(Session, NamesWhatIsMadeAfterAnUndoAsIfTheEditHadNotBeen) {
    Session once(frameDrawing()), twice(frameDrawing());
    once.apply("break base at 4,0");
    twice.apply("break left at 0,2");
    twice.apply("undo");
    twice.apply("break base at 4,0");
    EXPECT_EQ(once.document(), twice.document());
}

TEST(Session, TellsWhatAnUndoBringsBackAsRestored) {
    Session session(frameDrawing());
    const Fates broken = session.apply("break base at 4,0 to 6,0").fates;
    const Fates undone = session.apply("undo").fates;
    ASSERT_EQ(broken.constraints.size(), undone.constraints.size());
    for (std::size_t i = 0; i < broken.constraints.size(); ++i)
        if (broken.constraints[i].fate == ConstraintFate::deleted) {
            EXPECT_EQ(undone.constraints[i].fate, ConstraintFate::restored);
            EXPECT_EQ(undone.constraints[i].reason, "the undo brought it back");
        }
    EXPECT_EQ(undone.constraints.back().edit, 1u);
    session.apply("break base at 4,0");
    session.apply("join base base_2");
    EXPECT_THAT(session.apply("undo").fates.entities,
                ::testing::Contains(::testing::Field(&EntityOutcome::fate, EntityFate::restored)));
}

TEST(Session, TellsARedoWithTheFatesThatTheEditHad) {
    Session session(frameDrawing());
    const Fates broken = session.apply("break base at 4,0 to 6,0").fates;
    session.apply("undo");
    const Fates again = session.apply("redo").fates;
    EXPECT_EQ(again.entities, broken.entities);
    ASSERT_EQ(again.constraints.size(), broken.constraints.size());
    EXPECT_EQ(again.constraints.front().reason, broken.constraints.front().reason);
    EXPECT_EQ(again.constraints.front().edit, 2u);
}

TEST(Session, GoesOnAfterARefusedEdit) {
    Session session(frameDrawing());
    EXPECT_NE(session.apply("break base at 4,9").outcome.error, "");
    EXPECT_EQ(session.apply("break base at 4,0").outcome.error, "");
    EXPECT_EQ(session.results().size(), 2u);
}

TEST(Session, TellsDegreesOfFreedomWhenAskedTo) {
    Session session(frameDrawing());
    EXPECT_EQ(session.apply("break base at 4,0").freedom, std::nullopt);
    session.tellFreedom();
    EXPECT_EQ(session.apply("undo").freedom, (FreedomChange{7, 6}));
    EXPECT_EQ(session.apply("break base at 4,9").freedom, std::nullopt) << "refused";
    EXPECT_EQ(session.apply("break base at 4,0").freedom, (FreedomChange{6, 7}));
}

TEST(Session, TellsHowLongAnEditTook) {
    Session session(frameDrawing());
    EXPECT_GT(session.apply("break base at 4,0").time.count(), 0.0);
    EXPECT_GT(session.apply("break base at 4,9").time.count(), 0.0);
}

TEST(Session, ReportsTheWholeRun) {
    BareSession session(frameDrawing());
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

TEST(Session, NamesTheConstraintsOnTheEditedEntityFirst) {
    Document document;
    document.name = "chain";
    for (int i = 0; i < 9; ++i)
        document.entities.push_back(lineEntity("l" + std::to_string(i), {1.0 * i, 0}, {1.0 * i + 1, 0}));
    document.constraints.push_back(constraintOf("begin", ConstraintType::fixed, {{"l0", PlaceKind::start}}));
    for (int i = 0; i < 9; ++i) {
        const std::string name = "l" + std::to_string(i);
        document.constraints.push_back(constraintOf("v" + name, ConstraintType::horizontal, {{name}}));
        if (i > 0)
            document.constraints.push_back(
                constraintOf("t" + name, ConstraintType::coincident,
                             {{"l" + std::to_string(i - 1), PlaceKind::end}, {name, PlaceKind::start}}));
    }
    Session session(document);
    const std::string error = session.apply("set l8 end 9,1").outcome.error;
    EXPECT_NE(error.find("do not allow it: vl8 (horizontal l8)"), std::string::npos) << error;
    EXPECT_NE(error.find("more stand in the way"), std::string::npos) << error;
}

TEST(Session, KnowsMisspeltWords) {
    Session session(frameDrawing());
    const std::pair<const char*, const char*> rows[] = {
        {"brek base at 4,0", "did you mean \"break\"?"},
        {"undoo", "did you mean \"undo\"?"},
        {"reddo", "did you mean \"redo\"?"},
        {"mirror base abuot 0,0 0,1",
         "column 13: the drawing has no entity abuot, found \"abuot\"; did you mean \"about\"?"},
        {"mirror base letf about 0,0 0,1",
         "column 13: the drawing has no entity letf, found \"letf\"; did you mean \"left\"?"},
        {"drag bse.end by 1,1", "did you mean \"base\"?"},
        {"drag base.edn by 1,1", "did you mean \"end\"?"}};
    for (const auto& [edit, said] : rows)
        EXPECT_THAT(session.apply(edit).outcome.error, ::testing::HasSubstr(said));
}

}  // namespace
}  // namespace holdfast::editing
