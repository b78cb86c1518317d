#include <gtest/gtest.h>

#include <cmath>

#include "document/Names.h"
#include "geometry/Angles.h"
#include "geometry/Vec2.h"
#include "hosting/DocumentSketch.h"
#include "tests/editing/PolylineShorthand.h"

namespace holdfast::editing {
namespace {

/// Two lines that meet at right angles, the first level and 10 long, on a rail; and a circle of radius 1.
Document hookDrawing() {
    Document document;
    document.name = "hook";
    document.entities = {lineEntity("a", {0, 0}, {10, 0}), lineEntity("b", {10, 0}, {10, 5}),
                         shapeEntity("hole", CircleShape{{5, 2}, 1}), lineEntity("rail", {0, 0}, {0, -9})};
    document.constraints = {
        constraintOf("c0", ConstraintType::coincident, {{"a", PlaceKind::end}, {"b", PlaceKind::start}}),
        constraintOf("c1", ConstraintType::perpendicular, {{"a"}, {"b"}}),
        constraintOf("c2", ConstraintType::horizontal, {{"a"}}),
        constraintOf("c3", ConstraintType::coincident, {{"a", PlaceKind::start}, {"rail", PlaceKind::start}}),
        valued(constraintOf("c4", ConstraintType::distance, {{"a"}}), 10.0),
        valued(constraintOf("c5", ConstraintType::radius, {{"hole"}}), 1.0),
        constraintOf("c6", ConstraintType::fixed, {{"b", PlaceKind::start}})};
    return document;
}

TEST(CopyEdit, PutsEachCopyOneStepFurther) {
    Session session(hookDrawing());
    EXPECT_EQ(session.apply("copy hole by 3,0 times 3").outcome.error, "");
    ASSERT_EQ(session.document().entities.size(), 7u);
    for (int i = 1; i <= 3; ++i)
        EXPECT_EQ(session.document().entities[static_cast<std::size_t>(3 + i)].shape,
                  Shape(CircleShape{{5.0 + 3.0 * i, 2}, 1}));
    EXPECT_EQ(entityNamed(session.document(), "hole").shape, Shape(CircleShape{{5, 2}, 1}));
}

TEST(CopyEdit, CarriesWhatHoldsAmongTheOriginalsAndNothingThatTiesThemToOthers) {
    Session session(hookDrawing());
    EXPECT_EQ(session.apply("copy a b by 0,20").outcome.error, "");
    const auto& constraints = session.document().constraints;
    ASSERT_EQ(constraints.size(), 11u);
    const ConstraintType kinds[] = {ConstraintType::coincident, ConstraintType::perpendicular,
                                    ConstraintType::horizontal, ConstraintType::distance};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(constraints[7 + i].type, kinds[i]);
        for (const Place& place : constraints[7 + i].refs)
            EXPECT_TRUE(place.entity == "a_2" || place.entity == "b_2");
    }
    EXPECT_EQ(constraints[10].value, 10.0);
}

TEST(CopyEdit, LeavesTheOriginalsAsTheyAre) {
    const Document before = hookDrawing();
    Session session(before);
    session.apply("copy a b hole rail by 0,20 times 2");
    for (const Entity& entity : before.entities)
        EXPECT_EQ(entityNamed(session.document(), entity.id), entity);
    for (std::size_t i = 0; i < before.constraints.size(); ++i)
        EXPECT_EQ(session.document().constraints[i], before.constraints[i]);
}

TEST(CopyEdit, MakesCopiesThatAreEditedApartFromTheirOriginals) {
    Session session(hookDrawing());
    session.apply("copy a b by 0,20");
    EXPECT_EQ(session.apply("set k11 7").outcome.error, "");
    EXPECT_EQ(session.apply("drag b_2 by 0,5").outcome.error, "");
    EXPECT_EQ(lineOf(session, "a"), (LineShape{{0, 0}, {10, 0}}));
    EXPECT_NEAR(lineOf(session, "a_2").end.y, 25.0, 1e-9);
    EXPECT_NEAR(lineOf(session, "a_2").end.x - lineOf(session, "a_2").start.x, 7.0, 1e-9);
}

TEST(CopyGrid, FillsRowsOneBehindTheOther) {
    Session session(hookDrawing());
    EXPECT_EQ(session.apply("copy hole by 3,0 times 2 and by 0,4").outcome.error, "");
    std::string centres;
    for (std::size_t i = 4; i < session.document().entities.size(); ++i) {
        const auto& circle = std::get<CircleShape>(session.document().entities[i].shape);
        centres += std::to_string(static_cast<int>(circle.centre.x)) + "," +
                   std::to_string(static_cast<int>(circle.centre.y)) + " ";
    }
    EXPECT_EQ(centres, "8,2 11,2 5,6 8,6 11,6 ");
}

TEST(CopyRing, TurnsEachCopyFurtherAboutThePoint) {
    Session session(hookDrawing());
    EXPECT_EQ(session.apply("copy b around 0,0 by 90 times 3").outcome.error, "");
    EXPECT_EQ(lineOf(session, "b_2"), (LineShape{{0, 10}, {-5, 10}}));
    EXPECT_EQ(lineOf(session, "b_3"), (LineShape{{-10, 0}, {-10, -5}}));
    EXPECT_EQ(lineOf(session, "b_4"), (LineShape{{0, -10}, {5, -10}}));
}

TEST(CopyRing, MakesALevelLineUprightAQuarterTurnOn) {
    Session session(hookDrawing());
    EXPECT_EQ(session.apply("copy a around 0,0 by 90 times 2").outcome.error, "");
    std::string kinds;
    for (std::size_t i = 7; i < session.document().constraints.size(); ++i)
        kinds += std::string(typeName(session.document().constraints[i].type)) + " ";
    EXPECT_EQ(kinds, "vertical distance horizontal distance ");
}

TEST(CopyRing, TellsWhatDoesNotHoldOfASlantedCopy) {
    Session session(hookDrawing());
    const EditResult& result = session.apply("copy a b around 0,0 by 30 times 2");
    EXPECT_EQ(result.outcome.error, "");
    ASSERT_EQ(result.outcome.remarks.size(), 1u);
    EXPECT_EQ(result.outcome.remarks[0], "left out where it does not hold of a copy: c2 (horizontal a)");
    EXPECT_EQ(session.document().constraints.size(), 7u + 2u * 3u);
}

TEST(CopyRing, TurnsSignedDistancesAndDirectionsAlong) {
    Document document;
    document.name = "signed";
    document.entities = {lineEntity("g", {2, 1}, {6, 4})};
    document.constraints = {
        valued(constraintOf("dx", ConstraintType::distanceX, {{"g", PlaceKind::start}, {"g", PlaceKind::end}}), 4.0),
        valued(constraintOf("dy", ConstraintType::distanceY, {{"g", PlaceKind::start}, {"g", PlaceKind::end}}), 3.0)};
    Session session(document);
    EXPECT_EQ(session.apply("copy g around 0,0 by 90").outcome.error, "");
    ASSERT_EQ(session.document().constraints.size(), 4u);
    EXPECT_EQ(session.document().constraints[2].type, ConstraintType::distanceY);
    EXPECT_EQ(session.document().constraints[2].value, 4.0);
    EXPECT_EQ(session.document().constraints[3].type, ConstraintType::distanceX);
    EXPECT_EQ(session.document().constraints[3].refs[0], (Place{"g_2", PlaceKind::end}));
    EXPECT_EQ(session.document().constraints[3].value, 3.0);
}

TEST(CopyEdit, KeepsTheCornersOfAPolylineTogether) {
    Document document;
    document.name = "wire";
    document.entities = {shapeEntity("wire", PolylineShape{{{0, 0}, {10, 0}, {10, 10}}, {0, 0, 0}, {1, 2, 3}, false})};
    document.constraints = {constraintOf("c0", ConstraintType::horizontal, {{"wire", PlaceKind::segment, 0}}),
                            constraintOf("c1", ConstraintType::vertical, {{"wire", PlaceKind::segment, 1}})};
    Session session(document);
    EXPECT_EQ(session.apply("copy wire by 20,0").outcome.error, "");
    EXPECT_EQ(session.apply("drag wire_2.segment:1.end by 3,0").outcome.error, "");
    const auto& copy = std::get<PolylineShape>(entityNamed(session.document(), "wire_2").shape);
    EXPECT_NEAR(copy.vertices[1].x, 33.0, 1e-9);
    EXPECT_NEAR(copy.vertices[1].y, 0.0, 1e-9);
}

TEST(CopyEdit, CopiesWhatTheDrawingMayNotMove) {
    Document document = hookDrawing();
    document.entities[3].fixed = true;
    Session session(document);
    EXPECT_EQ(session.apply("copy rail by 4,0").outcome.error, "");
    EXPECT_FALSE(session.document().entities.back().fixed);
}

TEST(CopyEdit, IsTakenBackByUndo) {
    Session session(hookDrawing());
    session.apply("copy a b hole by 0,20 times 2");
    EXPECT_EQ(session.apply("undo").outcome.error, "");
    EXPECT_EQ(session.document(), hookDrawing());
}

TEST(CopyEdit, SaysWhatIsWrong) {
    const RefusedEdit rows[] = {
        {"copy hole by 0,0", "a displacement of 0,0 puts copies onto the originals; give another one"},
        {"copy hole by 1,0 times 0",
         "edit \"copy hole by 1,0 times 0\", column 24: copies are made 1 to 10000 times, found \"0\""},
        {"copy hole by 1,0 times 10001",
         "edit \"copy hole by 1,0 times 10001\", column 24: copies are made 1 to 10000 times, found \"10001\""},
        {"copy hole by 1,0 times 999 and by 0,1 times 999",
         "that would make 999999 entities, and one edit makes 100000 at most; copy fewer times"},
        {"copy hole by 1,0 times 4 and by 2,0 times 2",
         "both rows run in one direction and some of their copies would lie on each other; give rows that run in two "
         "directions"},
        {"copy hole around 0,0 by 360", "a turn by 360 degrees puts copies onto the originals; give another angle"},
        {"copy hole around 0,0 by 90 times 4", "copy 4 would lie on the originals; 3 times goes all the way round"},
        {"copy hloe by 1,0",
         "edit \"copy hloe by 1,0\", column 6: the drawing has no entity hloe, found \"hloe\"; did "
         "you mean \"hole\"?"},
        {"copy hole hole by 1,0", "hole is named twice; name each entity once"},
        {"copy hole", "edit \"copy hole\": expected \"by\", but the edit ends there"},
    };
    expectRefused(hookDrawing(), rows);
}

/// Two holes of one radius, the first at a fixed place.
Document holes() {
    Document document;
    document.name = "holes";
    document.entities = {shapeEntity("hole", CircleShape{{5, 2}, 1}), lineEntity("slot", {0, 0}, {3, 4})};
    document.constraints = {valued(constraintOf("r", ConstraintType::radius, {{"hole"}}), 1.0),
                            constraintOf("f", ConstraintType::fixed, {{"hole", PlaceKind::centre}}),
                            valued(constraintOf("l", ConstraintType::distance, {{"slot"}}), 5.0)};
    return document;
}

std::string idOf(const Session& session, ConstraintType type) {
    for (const Constraint& constraint : session.document().constraints)
        if (constraint.type == type)
            return constraint.id;
    return "none";
}

CircleShape circleOf(const Session& session, const std::string& name) {
    return std::get<CircleShape>(entityNamed(session.document(), name).shape);
}

TEST(CopyLinked, FollowsTheSizesOfItsOriginals) {
    Session session(holes());
    EXPECT_EQ(session.apply("copy hole slot by 10,0 times 2 linked").outcome.error, "");
    EXPECT_EQ(session.apply("set r 3").outcome.error, "");
    EXPECT_EQ(session.apply("set l 7").outcome.error, "");
    for (const char* name : {"hole_2", "hole_3"})
        EXPECT_NEAR(circleOf(session, name).radius, 3.0, 1e-9);
    for (const char* name : {"slot", "slot_2", "slot_3"}) {
        const LineShape line = lineOf(session, name);
        EXPECT_NEAR(std::hypot(line.end.x - line.start.x, line.end.y - line.start.y), 7.0, 1e-9);
    }
}

TEST(CopyLinked, KeepsItsSpacingEvenWhenTheFirstStepChanges) {
    Session session(holes());
    EXPECT_EQ(session.apply("copy hole by 10,0 times 3 linked").outcome.error, "");
    EXPECT_EQ(session.apply("set " + idOf(session, ConstraintType::distanceX) + " 7").outcome.error, "");
    EXPECT_NEAR(circleOf(session, "hole_2").centre.x, 12.0, 1e-9);
    EXPECT_NEAR(circleOf(session, "hole_3").centre.x, 19.0, 1e-9);
    EXPECT_NEAR(circleOf(session, "hole_4").centre.x, 26.0, 1e-9);
    EXPECT_NEAR(circleOf(session, "hole_4").centre.y, 2.0, 1e-9);
}

TEST(CopyLinked, SpacesAGridByBothItsFirstSteps) {
    Session session(holes());
    EXPECT_EQ(session.apply("copy hole by 10,0 times 2 and by 0,8 times 2 linked").outcome.error, "");
    EXPECT_EQ(session.apply("set " + idOf(session, ConstraintType::distanceX) + " 7").outcome.error, "");
    EXPECT_EQ(session.apply("set " + idOf(session, ConstraintType::distanceY) + " 3").outcome.error, "");
    EXPECT_LE(distance(circleOf(session, "hole_9").centre, {19, 8}), 1e-9);
}

TEST(CopyLinked, MovesNothingAndSaysNothingTwice) {
    const char* edits[] = {"copy a b hole by 0,20 times 2 linked", "copy a b by 5,0 times 3 linked",
                           "copy a b by 12,3 and by 3,15 linked", "copy a b hole around 0,0 by 90 times 3 linked"};
    for (const char* edit : edits) {
        Session session(hookDrawing());
        const EditResult& result = session.apply(edit);
        EXPECT_EQ(result.outcome.error, "") << edit;
        for (const EntityOutcome& outcome : result.fates.entities)
            EXPECT_EQ(outcome.fate, EntityFate::created) << edit;
        for (const double miss : DocumentSketch(session.document()).shortfalls())
            EXPECT_LE(miss, 1e-9) << edit;
        EXPECT_TRUE(DocumentSketch(session.document()).diagnose().redundant.empty()) << edit;
    }
}

/// A slot: two level lines and two half circles that are tangent to them.
Document slot() {
    Document document;
    document.name = "slot";
    document.entities = {lineEntity("top", {0, 2}, {6, 2}), lineEntity("bottom", {0, 0}, {6, 0}),
                         shapeEntity("right", ArcShape{{6, 1}, 1, -kPi / 2, kPi / 2}),
                         shapeEntity("left", ArcShape{{0, 1}, 1, kPi / 2, 1.5 * kPi})};
    const auto joint = [](const char* id, const char* line, PlaceKind at, const char* arc, PlaceKind end) {
        return constraintOf(id, ConstraintType::coincident, {{line, at}, {arc, end}});
    };
    document.constraints = {joint("c0", "top", PlaceKind::end, "right", PlaceKind::end),
                            joint("c1", "bottom", PlaceKind::end, "right", PlaceKind::start),
                            joint("c2", "top", PlaceKind::start, "left", PlaceKind::start),
                            joint("c3", "bottom", PlaceKind::start, "left", PlaceKind::end),
                            constraintOf("t0", ConstraintType::tangent, {{"top"}, {"right"}}),
                            constraintOf("t1", ConstraintType::tangent, {{"bottom"}, {"right"}}),
                            constraintOf("t2", ConstraintType::tangent, {{"top"}, {"left"}}),
                            constraintOf("h", ConstraintType::horizontal, {{"top"}})};
    return document;
}

TEST(CopyLinked, SpacesEntitiesThatHangTogetherOnce) {
    Session session(slot());
    const auto spare = DocumentSketch(slot()).diagnose().redundant.size();
    EXPECT_EQ(session.apply("copy top bottom right left by 20,0 linked").outcome.error, "");
    EXPECT_EQ(DocumentSketch(session.document()).diagnose().redundant.size(), spare);
    std::string spacing;
    for (const Constraint& constraint : session.document().constraints)
        if (isDimension(constraint.type))
            spacing += std::string(typeName(constraint.type)) + " ";
    EXPECT_EQ(spacing, "distance_x ");
    EXPECT_EQ(session.apply("set " + idOf(session, ConstraintType::distanceX) + " 30").outcome.error, "");
    EXPECT_LE(distance(lineOf(session, "top_2").end, lineOf(session, "top").end + Vec2{30, 0}), 1e-9);
    EXPECT_LE(distance(lineOf(session, "bottom_2").end, lineOf(session, "bottom").end + Vec2{30, 0}), 1e-9);
}

TEST(CopyLinked, LeavesDimensionsToItsOriginals) {
    Session session(holes());
    session.apply("copy hole by 10,0 linked");
    std::string kinds;
    for (const Constraint& constraint : session.document().constraints)
        if (constraint.id[0] == 'k')
            kinds += std::string(typeName(constraint.type)) + " ";
    EXPECT_EQ(kinds, "horizontal distance_x equal ");
}

}  // namespace
}  // namespace holdfast::editing
