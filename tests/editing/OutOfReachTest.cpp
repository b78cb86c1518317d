// Entities that are invisible, or on layers that are frozen, switched off or locked.

#include <gtest/gtest.h>

#include "editing/InferredDrawing.h"
#include "editing/define/Missing.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

/// Two level lines, of which the upper one is drawn in this way.
Document levels(Look upper) {
    Document document;
    document.name = "levels";
    document.layers = {{.name = "ice", .isFrozen = true},
                       {.name = "dark", .isOff = true},
                       {.name = "shut", .isLocked = true},
                       {.name = "open"}};
    document.entities = {lineEntity("low", {0, 0}, {10, 0}), lineEntity("high", {0, 5}, {10, 5})};
    document.entities[1].look = SharedLook(std::move(upper));
    return document;
}

const Look kOutOfReach[] = {{.layer = "ice"}, {.layer = "dark"}, {.layer = "shut"}, {.visible = false}};
constexpr const char* kLeft = "high is invisible or on a layer that is frozen, off or locked, and was left as it is";

TEST(OutOfReach, IsLeftByAWindowAndTold) {
    for (const Look& look : kOutOfReach) {
        const Document before = levels(look);
        Session session(before);
        const EditResult& result = session.apply("stretch window 8,-1 12,6 by 3,0");
        EXPECT_EQ(result.outcome.error, "");
        EXPECT_EQ(result.outcome.remarks, std::vector<std::string>{kLeft});
        EXPECT_EQ(entityNamed(session.document(), "high"), before.entities[1]);
        EXPECT_EQ(entityNamed(session.document(), "low").shape, Shape(LineShape{{0, 0}, {13, 0}}));
        EXPECT_EQ(session.apply("stretch window 8,4 12,6 by 3,0").outcome.error,
                  std::string("nothing else lies in the window: ") + kLeft);
    }
}

TEST(OutOfReach, IsNotWhatAPointNames) {
    for (const Look& look : kOutOfReach) {
        Session session(levels(look));
        const EditResult& result = session.apply("move @5,4.5 by 1,0");
        EXPECT_EQ(result.outcome.error, "");
        EXPECT_EQ(std::get<Move>(*result.edit).entities.at(0).value, "low");
        EXPECT_EQ(result.outcome.remarks,
                  std::vector<std::string>{std::string("took low for the entity at (5, 4.5); ") + kLeft});
        EXPECT_EQ(session.apply("erase low").outcome.error, "");
        EXPECT_EQ(
            session.apply("erase @5,5").outcome.error,
            "edit \"erase @5,5\", column 7: there is no entity at (5, 5) but what is invisible or on a layer that "
            "is frozen, off or locked; name it, found \"@5,5\"");
    }
}

TEST(OutOfReach, IsEditedByItsName) {
    for (const Look& look : kOutOfReach) {
        Session session(levels(look));
        EXPECT_EQ(session.apply("move high by 1,0").outcome.error, "");
        EXPECT_EQ(entityNamed(session.document(), "high").shape, Shape(LineShape{{1, 5}, {11, 5}}));
        EXPECT_EQ(session.apply("define high").outcome.remarks, std::vector<std::string>());
        EXPECT_FALSE(session.document().constraints.empty());
    }
}

TEST(OutOfReach, IsNotDefinedWithTheRest) {
    for (const Look& look : kOutOfReach) {
        const Document before = levels(look);
        EXPECT_EQ(missingIn(before).outOfReach, std::vector<std::string>{"high"});
        Session session(before);
        EXPECT_EQ(session.apply("define").outcome.remarks, std::vector<std::string>{kLeft});
        EXPECT_FALSE(session.document().constraints.empty());
        for (const Constraint& constraint : session.document().constraints)
            for (const Place& place : constraint.refs)
                EXPECT_EQ(place.entity, "low");
    }
}

TEST(OutOfReach, GetsNoInferredConstraints) {
    for (const Look& look : kOutOfReach) {
        Document before = levels(look);
        before.constraints = {constraintOf("c0", ConstraintType::horizontal, {{"high", PlaceKind::whole}})};
        const InferredDrawing found = inferredDrawing(before, {});
        EXPECT_EQ(found.outOfReach, std::vector<std::string>{"high"});
        EXPECT_EQ(found.document.entities, before.entities);
        ASSERT_EQ(found.document.constraints.size(), 2u);
        EXPECT_EQ(found.document.constraints[0], before.constraints[0]);
        EXPECT_EQ(found.document.constraints[1].refs, (std::vector<Place>{{"low", PlaceKind::whole}}));
        EXPECT_NE(found.document.constraints[1].id, "c0");
    }
}

TEST(OutOfReach, BecomesNoPartOfAPolyline) {
    Document before = levels({.layer = "ice"});
    before.entities.push_back(lineEntity("side", {10, 0}, {10, 5}));
    InferOptions options;
    const Document after = withPolylines(before, options);
    ASSERT_EQ(after.entities.size(), 2u);
    EXPECT_EQ(entityNamed(after, "high"), before.entities[1]);
}

TEST(OutOfReach, IsNothingOnALayerThatIsOpen) {
    Session session(levels({.layer = "open"}));
    const EditResult& result = session.apply("stretch window 8,-1 12,6 by 3,0");
    EXPECT_TRUE(result.outcome.remarks.empty());
    EXPECT_EQ(entityNamed(session.document(), "high").shape, Shape(LineShape{{0, 5}, {13, 5}}));
}

}  // namespace
}  // namespace holdfast::editing
