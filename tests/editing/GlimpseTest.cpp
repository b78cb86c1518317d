#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "formats/FileIo.h"
#include "geometry/curves/Parameters.h"
#include "hosting/Drawing.h"
#include "tests/editing/BareSession.h"
#include "tests/editing/Shorthand.h"
#include "tests/support/DrawingFolder.h"

namespace holdfast::editing {
namespace {

using formats::readDrawing;
using holdfast::testing::drawingFiles;

std::string dragText(const std::string& held, Vec2 by) {
    return "drag " + held + " by " + std::to_string(by.x) + "," + std::to_string(by.y);
}

/// What an edit leaves elsewhere than it was, by name.
std::map<std::string, Shape> movedBy(const DrawingChange& change) {
    std::map<std::string, Shape> moved;
    for (const EntityChange& each : change.entities)
        if (each.after)
            moved.emplace(each.after->id, each.after->shape);
    return moved;
}

std::map<std::string, Shape> shapesOf(const std::vector<Entity>& entities) {
    std::map<std::string, Shape> shapes;
    for (const Entity& entity : entities)
        shapes.emplace(entity.id, entity.shape);
    return shapes;
}

std::map<std::string, double> valuesOf(const DrawingChange& change) {
    std::map<std::string, double> values;
    for (const ConstraintChange& each : change.constraints)
        if (each.after && each.after->value)
            values.emplace(each.after->id, *each.after->value);
    return values;
}

std::map<std::string, double> valuesOf(const std::vector<Constraint>& constraints) {
    std::map<std::string, double> values;
    for (const Constraint& constraint : constraints)
        values.emplace(constraint.id, *constraint.value);
    return values;
}

Document measuredFrame() {
    Document document = frameDrawing();
    Constraint wide = constraintOf("wide", ConstraintType::distance, {{"base"}});
    wide.value = 10.0;
    wide.driving = false;
    Constraint high = wide;
    high.id = "high";
    high.refs = {{"right"}};
    high.value = 5.0;
    document.constraints.push_back(wide);
    document.constraints.push_back(high);
    document.constraints.push_back(constraintOf("here", ConstraintType::fixed, {{"base", PlaceKind::start}}));
    return document;
}

TEST(Glimpse, IsToTheBitWhatTheDragMoves) {
    Session looking(frameDrawing());
    for (const char* held : {"left.end", "base.end", "left", "base right", "right.mid"})
        for (int i = 1; i < 12; ++i) {
            const std::string text = dragText(held, {0.3 * i, 0.2 * i * std::cos(i)});
            const std::optional<Glimpse> glimpse = looking.glimpse(text);
            Session done(frameDrawing());
            ASSERT_EQ(done.apply(text).outcome.error, "") << text;
            ASSERT_TRUE(glimpse) << text;
            EXPECT_EQ(shapesOf(glimpse->entities), movedBy(done.changes().front())) << text;
        }
}

TEST(Glimpse, NamesWhatIsHeld) {
    Session session(frameDrawing());
    EXPECT_EQ(session.glimpse("drag base right by 1,2")->edited, (std::vector<std::string>{"base", "right"}));
    EXPECT_EQ(session.glimpse("drag left.end by 1,2")->edited, std::vector<std::string>{"left"});
}

TEST(Glimpse, LeavesTheDrawingAndWhatComesAfterIt) {
    Session looked(frameDrawing()), plain(frameDrawing());
    for (const char* edit : {"drag left.end by 1,2", "drag left by 0,2", "drag right.end by -1,3"}) {
        for (int i = 0; i < 5; ++i)
            looked.glimpse(dragText("left.end", {0.1 * i, 0.2}));
        EXPECT_TRUE(looked.results().size() == plain.results().size());
        for (Session* session : {&looked, &plain})
            EXPECT_EQ(session->apply(edit).outcome.error, "");
        EXPECT_EQ(looked.document(), plain.document());
    }
}

TEST(Glimpse, IsOfTheDrawingAsItIsNow) {
    Session session(frameDrawing());
    session.glimpse("drag left.end by 1,2");
    session.apply("drag left.end by 1,2");
    const Trial trial = session.trial("drag left.end by 1,1");
    EXPECT_EQ(shapesOf(session.glimpse("drag left.end by 1,1")->entities), movedBy(trial.change));
    session.apply("undo");
    EXPECT_EQ(shapesOf(session.glimpse("drag left.end by 1,1")->entities),
              movedBy(session.trial("drag left.end by 1,1").change));
}

TEST(Glimpse, TellsWhatMeasuredDimensionsWillSay) {
    Session session(measuredFrame());
    for (const char* edit : {"drag right.end by 0,3", "drag base.end by 2,0"}) {
        const std::optional<Glimpse> glimpse = session.glimpse(edit);
        ASSERT_TRUE(glimpse) << edit;
        const std::map<std::string, double> told = valuesOf(glimpse->constraints);
        const std::map<std::string, double> changed = valuesOf(session.trial(edit).change);
        EXPECT_FALSE(changed.empty()) << edit;
        for (const auto& [id, value] : changed)
            EXPECT_EQ(told.at(id), value) << edit << ": " << id;
    }
}

TEST(Glimpse, IsNotGivenWhereOnlyATrialTells) {
    Document held = frameDrawing();
    held.constraints.push_back(constraintOf("here", ConstraintType::fixed, {{"left", PlaceKind::end}}));
    Session session(held);
    EXPECT_FALSE(session.glimpse("drag left.end by 1,2")) << "it is held back";
    EXPECT_FALSE(session.glimpse("drag left.end by 1"));
    EXPECT_FALSE(session.glimpse("drag nothing.end by 1,2"));
    EXPECT_FALSE(session.glimpse("drag base.end by 1,2 steps 4"));
    EXPECT_FALSE(session.glimpse("break base at 4,0"));
    EXPECT_FALSE(session.glimpse("undo"));
    EXPECT_EQ(session.document(), held);
    held.entities.push_back(lineEntity("alone", {20, 0}, {30, 0}));
    Session other(held);
    EXPECT_FALSE(other.glimpse("drag base alone by 1,2")) << "constraints know one of them only";
}

TEST(Glimpse, OfWhatNoConstraintKnowsIsToTheBitWhatTheDragMoves) {
    Document loose = frameDrawing();
    loose.entities.push_back(lineEntity("alone", {20, 0}, {30, 0.1}));
    loose.entities.push_back({"bow", ArcShape{{40, 5}, 3.1, 0.3, 2.9}});
    loose.entities.push_back({"disc", CircleShape{{50, 5}, 1.7}});
    for (const char* held : {"alone", "alone.end", "bow", "bow.start", "bow.centre", "disc", "alone disc bow"}) {
        Session session(loose);
        for (int i = 1; i < 6; ++i) {
            const std::string text = dragText(held, {0.37 * i, -0.21 * i});
            const std::optional<Glimpse> glimpse = session.glimpse(text);
            const Trial trial = session.trial(text);
            ASSERT_EQ(trial.result.outcome.error, "") << text;
            ASSERT_TRUE(glimpse) << text;
            EXPECT_EQ(shapesOf(glimpse->entities), movedBy(trial.change)) << text;
        }
    }
    Session session(loose);
    EXPECT_FALSE(session.glimpse("drag alone.end by -10,-0.1")) << "nothing would be left of it";
}

TEST(Glimpse, TellsWhatIsSeenAndWhatIsHeld) {
    Session session(frameDrawing());
    const auto seenIn = [&](const Box& box) {
        std::vector<std::string> names;
        const std::optional<Glimpse> glimpse = session.glimpse("drag left.end by 1,2", box);
        for (const Entity& entity : glimpse->entities)
            names.push_back(entity.id);
        return names;
    };
    const std::vector<std::string> all = seenIn(kEverywhere);
    EXPECT_GT(all.size(), 2U);
    EXPECT_EQ(seenIn({{100, 100}, {101, 101}}), std::vector<std::string>{"left"});
    const std::optional<Glimpse> everywhere = session.glimpse("drag left.end by 1,2");
    for (const Entity& entity : everywhere->entities) {
        const Vec2 there = *endPoint(entity.shape);
        const std::vector<std::string> seen = seenIn({there, there});
        EXPECT_TRUE(std::find(seen.begin(), seen.end(), entity.id) != seen.end()) << entity.id << " comes there";
    }
}

TEST(Glimpse, IsNotGivenWhereFormulasFollowWhatIsMeasured) {
    Session session(measuredFrame());
    ASSERT_EQ(session.apply("parameter half = wide / 2").outcome.error, "");
    EXPECT_FALSE(session.glimpse("drag base.end by 2,0"));
}

/// Each entity that constraints know is pulled at its ends and as a whole, by a part of the drawing's size.
TEST(Glimpse, OfRealDrawingsIsToTheBitWhatTheDragMoves) {
    int given = 0;
    for (const std::filesystem::path& file : drawingFiles()) {
        SCOPED_TRACE(file.filename().string());
        const Document document = readDrawing(file);
        Session looking(document);
        const double far = 0.01 * looking.drawing().extent();
        int number = 0;
        for (const Entity& entity : document.entities) {
            if (entity.fixed || ++number > 12)
                continue;
            for (const char* place : {"", ".end"}) {
                const std::string held = "\"" + entity.id + "\"" + place;
                looking.glimpse(dragText(held, {-far, far}));
                const std::string text = dragText(held, {far, 0.7 * far});
                const std::optional<Glimpse> glimpse = looking.glimpse(text);
                if (!glimpse)
                    continue;
                Session done(document);
                if (!done.apply(text).outcome.done())
                    continue;
                EXPECT_EQ(shapesOf(glimpse->entities), movedBy(done.changes().front())) << text;
                ++given;
            }
        }
    }
    EXPECT_TRUE(drawingFiles().empty() || given > 0);
}

}  // namespace
}  // namespace holdfast::editing
