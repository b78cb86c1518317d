#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosting/Drawing.h"
#include "tests/editing/Shorthand.h"
#include "tests/editing/ties/TieScenes.h"

namespace holdfast::editing {
namespace {

using ::testing::ElementsAre;

constexpr const char* kCrossed = "draw line 0,0 10,0 as g1; draw line 7,-2 7,2 as cut; draw line 9,-2 9,2 as wall";

std::vector<std::string> reasonsOf(const EditResult& result, ConstraintFate fate) {
    std::vector<std::string> reasons;
    for (const ConstraintOutcome& outcome : result.fates.constraints)
        if (outcome.fate == fate)
            reasons.push_back(outcome.reason);
    return reasons;
}

TEST(Ties, AreToldAsAddedWithTheirReason) {
    Session session(drawnBy(kCrossed));
    EXPECT_THAT(reasonsOf(session.apply("trim g1 at 8,0 by cut wall"), ConstraintFate::added),
                ElementsAre("the new end of g1 lies on cut", "the new end of g1_2 lies on wall",
                            "the pieces of g1 stay in one line"));
}

TEST(Ties, AreToldAsRePointedWhereAnotherPieceCarriesThem) {
    Session session(
        drawnBy("draw line 0,0 10,0 as g1; draw point 10,0 as p; constrain coincident g1.end p as c1; "
                "constrain distance g1 as c2"));
    EXPECT_THAT(reasonsOf(session.apply("break g1 at 4,0"), ConstraintFate::rePointed),
                ElementsAre("that part of g1 is g1_2 now", "it is measured between g1.start and g1_2.end now"));
}

TEST(Ties, AreLeftOutOnRequest) {
    Session session(drawnBy(kCrossed));
    session.giveTies(false);
    session.apply("trim g1 at 8,0 by cut wall");
    EXPECT_EQ(session.document().constraints, std::vector<Constraint>());
    session.giveTies();
    session.apply("trim g1 at 4,0 by cut wall");
    EXPECT_EQ(session.results().back().outcome.error, "the cutting edges only touch the ends of g1; nothing is cut");
}

TEST(Ties, GoAndComeWithTheirEdit) {
    const Document before = drawnBy(kCrossed);
    Session session(before);
    session.apply("trim g1 at 8,0 by cut wall");
    const Document after = session.document();
    EXPECT_EQ(after.constraints.size(), 3u);
    session.apply("undo");
    EXPECT_EQ(session.document(), before);
    session.apply("redo");
    EXPECT_EQ(session.document(), after);
    EXPECT_EQ(session.drawing().document(), after);
}

TEST(Ties, ThatTheUserHasDeletedDoNotComeBack) {
    Session session(drawnBy(kCrossed));
    session.apply("trim g1 at 9.5,0 by cut");
    ASSERT_EQ(session.document().constraints.size(), 1u);
    session.apply("delete " + session.document().constraints.front().id);
    session.apply("extend g1 end to wall");
    session.apply("trim g1 at 8,0 by cut");
    EXPECT_EQ(session.results().back().outcome.error, "");
    EXPECT_EQ(constraintIds(session.document()), "");
}

TEST(Ties, ComeBackWhenTheirDeletionIsTakenBack) {
    Session session(drawnBy(kCrossed));
    session.apply("trim g1 at 9.5,0 by cut");
    session.apply("delete " + session.document().constraints.front().id);
    session.apply("undo");
    session.apply("undo");
    session.apply("trim g1 at 9.5,0 by cut");
    EXPECT_EQ(session.document().constraints.size(), 1u);
}

TEST(Ties, HoldWhenTheDrawingMoves) {
    Session session(drawnBy(kCrossed));
    session.apply("break g1 at 4,0 to 5,0");
    EXPECT_EQ(session.apply("drag g1_2.end by 0,3").outcome.error, "");
    const auto &first = std::get<LineShape>(entityNamed(session.document(), "g1").shape),
               &second = std::get<LineShape>(entityNamed(session.document(), "g1_2").shape);
    EXPECT_NEAR(cross(first.end - first.start, second.end - first.start), 0.0, 1e-6);
    EXPECT_NEAR(second.end.y, 3.0, 1e-6);
}

TEST(Ties, OfAReflectionFollowTheOriginal) {
    Session session(drawnBy("draw line 2,0 5,5 as g1; draw line 0,-9 0,9 as axis; constrain fixed axis as c1"));
    session.apply("mirror g1 about axis keep");
    session.apply("set g1 end 6,7");
    EXPECT_EQ(session.results().back().outcome.error, "");
    const auto& copy = std::get<LineShape>(entityNamed(session.document(), "g1_2").shape);
    EXPECT_NEAR(copy.end.x, -6.0, 1e-8);
    EXPECT_NEAR(copy.end.y, 7.0, 1e-8);
}

TEST(Ties, OfACornerThatWasKeptLeadItsDimension) {
    Session session(
        drawnBy("draw line 0,0 10,0 as g1; draw line 10,0 10,10 as g2; constrain coincident g1.end g2.start; "
                "constrain horizontal g1; constrain vertical g2; constrain fixed g1.start; "
                "constrain distance g1 as width"));
    EXPECT_EQ(session.apply("fillet g1 g2 radius 2 keep corner").outcome.error, "");
    EXPECT_EQ(session.apply("set width 15").outcome.error, "");
    EXPECT_NEAR(std::get<LineShape>(entityNamed(session.document(), "g2").shape).start.x, 15.0, 1e-8);
}

TEST(Ties, AreNoReasonToTakeAWrongMirrorLineOrCorner) {
    const RefusedEdit rows[] = {
        {"mirror base about left2 keep", "the drawing has no entity left2, found \"left2\"; did you mean \"left\"?"},
        {"mirror base left about left keep", "left cannot be mirrored at itself; choose another line"},
        {"mirror base about disc", "disc is no line; mirror at a line or through two points"},
        {"fillet left disc radius 1 keep corner", "left and disc have no corner to keep; leave \"keep corner\" out"},
    };
    Document document = frameDrawing();
    document.entities.push_back(shapeEntity("disc", CircleShape{{0, 20}, 5}));
    for (const RefusedEdit& row : rows) {
        Session session(document);
        EXPECT_THAT(session.apply(row.edit).outcome.error, ::testing::HasSubstr(row.error));
        EXPECT_EQ(session.document(), document) << row.edit;
    }
}

}  // namespace
}  // namespace holdfast::editing
