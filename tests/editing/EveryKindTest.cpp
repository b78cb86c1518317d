// The commands that move whole entities, on every kind of entity, free and constrained.

#include "geometry/Angles.h"
#include "tests/editing/EveryKind.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "geometry/Transforms.h"
#include "hosting/DocumentSketch.h"
#include "hosting/evaluator/SketchFromDocument.h"

namespace holdfast::editing {
namespace {

/// An edit, "%" standing for the entity, and what it does to one that nothing holds back.
struct Move {
    std::string edit;
    PlaneTransform transform;
};

std::vector<Move> moves() {
    return {{"drag % by 3,2", translation({3, 2})},
            {"move % by 3,2", translation({3, 2})},
            {"scale % about 1,2 by 2.5", scaling({1, 2}, 2.5)},
            {"drag % by 3,2 steps 3", translation({3, 2})},
            {"align % from 1,1 to 4,-1", translation({3, -2})},
            {"align % from 0,0 1,0 to 2,0 2,3", alignment({0, 0}, {1, 0}, {2, 0}, {2, 3}, false)},
            {"align % from 0,0 1,0 to 2,0 2,3 scale", alignment({0, 0}, {1, 0}, {2, 0}, {2, 3}, true)},
            {"rotate % about 1,2 by 40", rotation({1, 2}, 40 * std::numbers::pi / 180)},
            {"mirror % about 1,0 3,1", reflection({1, 0}, {3, 1})}};
}

std::string editOf(const Move& move, const std::string& name) {
    std::string edit = move.edit;
    return edit.replace(edit.find('%'), 1, name);
}

SketchData figureOf(const Shape& shape) {
    Document document;
    document.entities = {shapeEntity("e", shape)};
    return sketchFrom(document);
}

/// Every number of two shapes of one kind; angles as the points that they stand for.
void expectSame(const Shape& found, const Shape& expected, const std::string& edit) {
    const SketchData a = figureOf(found);
    const SketchData b = figureOf(expected);
    ASSERT_EQ(a.values.size(), b.values.size()) << edit;
    const bool hasAngle = a.entities[0].kind == EntityKind::ray || a.entities[0].kind == EntityKind::xline ||
                          a.entities[0].kind == EntityKind::text;
    for (std::size_t i = 0; i < a.values.size(); ++i) {
        const double gap = a.values[i] - b.values[i];
        const double turn = kTurn;
        EXPECT_NEAR(hasAngle && i == 2 ? std::remainder(gap, turn) : gap, 0.0, 1e-8) << edit;
    }
}

TEST(MoveOfEveryKind, DoesWhatItsTransformDoesToAFreeEntity) {
    const Document document = kindsDrawing();
    for (const Entity& entity : document.entities)
        for (const Move& move : moves()) {
            const std::string edit = editOf(move, entity.id);
            Session session(document);
            EXPECT_EQ(session.apply(edit).outcome.error, "") << edit;
            expectSame(entityNamed(session.document(), entity.id).shape, transformed(entity.shape, move.transform),
                       edit);
        }
}

TEST(MoveOfEveryKind, DoesTheSameToAConstrainedOneAndKeepsItsConstraints) {
    const Document document = heldDrawing();
    for (const Entity& entity : kindsDrawing().entities)
        for (const Move& move : moves()) {
            const std::string edit = editOf(move, entity.id);
            Session session(document);
            EXPECT_EQ(session.apply(edit).outcome.error, "") << edit;
            expectSame(entityNamed(session.document(), entity.id).shape, transformed(entity.shape, move.transform),
                       edit);
            EXPECT_EQ(session.document().constraints.size(), document.constraints.size()) << edit;
            for (const double miss : DocumentSketch(session.document()).shortfalls())
                EXPECT_LE(miss, 1e-8) << edit;
        }
}

TEST(MoveOfEveryKind, LeavesWhatIsNotTiedToItAlone) {
    const Document document = heldDrawing();
    for (const Entity& entity : kindsDrawing().entities)
        for (const Move& move : moves()) {
            Session session(document);
            session.apply(editOf(move, entity.id));
            for (const Entity& other : document.entities)
                if (other.id.find(entity.id) == std::string::npos) {
                    EXPECT_EQ(entityNamed(session.document(), other.id).shape, other.shape)
                        << editOf(move, entity.id) << " moved " << other.id;
                }
        }
}

TEST(StretchOfEveryKind, MovesWhatLiesWholeInTheWindow) {
    for (const Document& document : {kindsDrawing(), heldDrawing()}) {
        Session session(document);
        EXPECT_EQ(session.apply("stretch window -10,-10 30,30 by 3,2").outcome.error, "");
        for (const Entity& entity : document.entities)
            expectSame(entityNamed(session.document(), entity.id).shape, transformed(entity.shape, translation({3, 2})),
                       entity.id);
    }
}

}  // namespace
}  // namespace holdfast::editing
