// Entities that are named by a point: "@4,0.5".

#include <gtest/gtest.h>

#include "editing/text/Parse.h"
#include "tests/editing/Shorthand.h"

namespace holdfast::editing {
namespace {

Document hooks() {
    Document document;
    document.name = "hooks";
    document.entities = {lineEntity("base", {0, 0}, {10, 0}), lineEntity("rib", {0, 0}, {0, 5}),
                         shapeEntity("hole", CircleShape{{6, 4}, 1})};
    return document;
}

TEST(EntityAtAPoint, IsTheNearestOne) {
    Session session(hooks());
    EXPECT_EQ(session.apply("break @5,0 at 4,0").outcome.error, "");
    EXPECT_EQ(std::get<Break>(*session.results()[0].edit).entity.value, "base");
    EXPECT_EQ(session.apply("set @7,4 radius 1.5").outcome.error, "");
    EXPECT_EQ(std::get<CircleShape>(entityNamed(session.document(), "hole").shape).radius, 1.5);
    EXPECT_TRUE(session.results()[1].outcome.remarks.empty());
}

TEST(EntityAtAPoint, MayBeOneOfSeveralNames) {
    Session session(hooks());
    EXPECT_EQ(session.apply("erase @0,3.5 hole").outcome.error, "");
    EXPECT_EQ(session.document().entities.size(), 1u);
}

TEST(EntityAtAPoint, MayHaveAPlace) {
    Session session(hooks());
    EXPECT_EQ(session.apply("constrain horizontal @9.5,0.25.end @7,4.centre").outcome.error, "");
    const Constraint& added = session.document().constraints.at(0);
    EXPECT_EQ(added.refs, (std::vector<Place>{{"base", PlaceKind::end}, {"hole", PlaceKind::centre}}));
}

TEST(EntityAtAPoint, IsToldWhenItIsFarAway) {
    Session session(hooks());
    const EditResult& result = session.apply("set @6,7 radius 2");
    EXPECT_EQ(result.outcome.error, "");
    ASSERT_EQ(result.outcome.remarks.size(), 1u);
    EXPECT_EQ(result.outcome.remarks[0], "took hole for the entity at (6, 7), which is 2 away");
}

TEST(EntityAtAPoint, IsNoneFarOutsideOfTheDrawing) {
    const RefusedEdit rows[] = {
        {"erase @100,100",
         "edit \"erase @100,100\", column 7: there is no entity near (100, 100); the nearest is "
         "133.358 away, found \"@100,100\""}};
    expectRefused(hooks(), rows);
}

TEST(EntityAtAPoint, IsRefusedWhereSeveralAreEquallyNear) {
    const RefusedEdit rows[] = {
        {"erase @0,0",
         "edit \"erase @0,0\", column 7: several entities are equally near to (0, 0): base, rib; name one, or a point "
         "that is nearer to it, found \"@0,0\""},
        {"erase @here", "edit \"erase @here\", column 7: the drawing has no entity @here, found \"@here\""}};
    expectRefused(hooks(), rows);
}

TEST(EntityAtAPoint, YieldsToAnEntityOfThatName) {
    Document document = hooks();
    document.entities[2].id = "@5,0";
    Session session(document);
    EXPECT_EQ(session.apply("erase @5,0").outcome.error, "");
    EXPECT_EQ(session.document().entities.size(), 2u);
    EXPECT_EQ(session.document().entities.back().id, "rib");
    EXPECT_EQ(toText(Erase{{Name("@5,0")}}), "erase \"@5,0\"");
}

}  // namespace
}  // namespace holdfast::editing
