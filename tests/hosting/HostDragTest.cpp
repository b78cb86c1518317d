#include "hosting/evaluator/HostDrag.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <yxbase/YxSmartPtr.h>

#include "commands/stretch/ConstraintStretchCmdCenter.h"
#include "drag/LvConstraintDropData.h"
#include "hosting/HostShapes.h"
#include "tests/hosting/Hosted.h"

namespace holdfast::hosting {
namespace {

void dragTo(const YxGeMatrix3d& by) {
    LvConstraintDropData::addDataToWork(by);
    LvConstraintDropData::evaluate();
}

std::vector<Shape> previewsOf(const Hosted& hosted) {
    std::vector<Shape> shapes;
    for (const YxDbEntity* copy : hosted.header().entitiesToDraw)
        shapes.push_back(readShape(*copy));
    return shapes;
}

TEST(EvaluatedDrag, PreviewsWithoutTouchingTheDatabase) {
    Hosted hosted(corner());
    LvConstraintDropData::init(hosted.ids({"a"}));
    dragTo(translation(1, 0));
    dragTo(translation(2, 3));
    EXPECT_EQ(hosted.drawing.document(), corner());
    const std::vector<Shape> previews = previewsOf(hosted);
    ASSERT_EQ(previews.size(), 2u);
    EXPECT_TRUE(isNear(std::get<LineShape>(previews[0]).start, {2, 3}));
    EXPECT_TRUE(isNear(std::get<LineShape>(previews[1]).start, {12, 3}));
    LvConstraintDropData::cancel();
}

TEST(EvaluatedDrag, KeepsItsPreviewsFromStepToStep) {
    Hosted hosted(corner());
    LvConstraintDropData::init(hosted.ids({"a"}));
    dragTo(translation(1, 0));
    const auto copies = HostAccess::adopted(hosted.header()).size();
    for (int step = 2; step < 10; ++step)
        dragTo(translation(step, 0));
    EXPECT_EQ(HostAccess::adopted(hosted.header()).size(), copies);
    LvConstraintDropData::cancel();
}

TEST(EvaluatedDrag, ShowsNothingWhereAStepFails) {
    Hosted hosted(corner());
    LvConstraintDropData::init(hosted.ids({"a"}));
    dragTo(translation(2, 3));
    dragTo(translation(std::numeric_limits<double>::infinity(), 0));
    EXPECT_TRUE(hosted.header().dropChanged);
    EXPECT_TRUE(hosted.header().entitiesToDraw.isEmpty());
    dragTo(translation(1, 0));
    EXPECT_EQ(previewsOf(hosted).size(), 2u);
    LvConstraintDropData::cancel();
    EXPECT_EQ(hosted.drawing.document(), corner());
}

TEST(EvaluatedDrag, IsWrittenWhenTheHostConfirms) {
    Hosted hosted(corner());
    LvConstraintDropData::init(hosted.ids({"a"}));
    dragTo(translation(2, 3));
    LvConstraintDropData::setFlag(1);
    LvConstraintDropData::confirm();
    hosted.markChanged();
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_TRUE(isNear(hosted.line("a").start, {2, 3}));
    EXPECT_TRUE(isNear(hosted.line("b").start, {12, 3}));
    EXPECT_TRUE(hosted.header().entitiesToDraw.isEmpty());
}

TEST(EvaluatedDrag, IsWrittenOnce) {
    Hosted hosted(corner());
    LvConstraintDropData::init(hosted.ids({"a"}));
    dragTo(translation(2, 3));
    LvConstraintDropData::setFlag(1);
    LvConstraintDropData::confirm();
    hosted.markChanged();
    hosted.evaluate();
    hosted.markChanged();
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_TRUE(isNear(hosted.line("a").start, {2, 3}));
}

TEST(EvaluatedDrag, LeavesNoTraceWhenItIsCancelled) {
    Hosted hosted(corner());
    LvConstraintDropData::init(hosted.ids({"a"}));
    dragTo(translation(2, 3));
    LvConstraintDropData::cancel();
    EXPECT_EQ(hosted.drawing.document(), corner());
    EXPECT_TRUE(hosted.header().entitiesToDraw.isEmpty());
}

TEST(EvaluatedDrag, StartsEachSessionFromTheDatabase) {
    Hosted hosted(corner());
    for (int session = 0; session < 2; ++session) {
        LvConstraintDropData::init(hosted.ids({"a"}));
        dragTo(translation(2, 3));
        LvConstraintDropData::setFlag(1);
        LvConstraintDropData::confirm();
        hosted.markChanged();
        hosted.evaluate();
    }
    EXPECT_TRUE(isNear(hosted.line("a").start, {4, 6}));
}

TEST(EvaluatedDrag, TakesTheHostsOwnFinalGeometry) {
    Hosted hosted(corner());
    LvConstraintDropData::init(hosted.ids({"a"}));
    dragTo(translation(2, 3));
    hosted.drawing.write("a", LineShape{{0, 0}, {12, 3}});
    LvConstraintDropData::confirm();
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_EQ(hosted.line("a"), (LineShape{{0, 0}, {12, 3}}));
    EXPECT_TRUE(isNear(hosted.line("b").start, {12, 3}));
}

TEST(EvaluatedDrag, ComesAsNearAsAFixedPointLetsIt) {
    Hosted hosted(corner({constraint("here", ConstraintType::fixed, {{"a", PlaceKind::start}}),
                          constraint("ten", ConstraintType::distance, {{"a"}}, 10.0)}));
    LvConstraintDropData::init(hosted.ids({"a"}));
    dragTo(translation(0, 10));
    LvConstraintDropData::setFlag(1);
    LvConstraintDropData::confirm();
    hosted.markChanged();
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_TRUE(isNear(hosted.line("a").start, {0, 0}));
    EXPECT_NEAR(std::hypot(hosted.line("a").end.x, hosted.line("a").end.y), 10, 1e-6);
    EXPECT_GT(hosted.line("a").end.y, 1.0) << "it turns towards where it is dragged";
    EXPECT_GT(hosted.evaluator.last().miss, 1.0);
}

TEST(EvaluatedDrag, LandsToTheLastDigitWhereNothingHoldsItBack) {
    Hosted hosted(corner());
    LvConstraintDropData::init(hosted.ids({"a"}));
    dragTo(translation(2, 3));
    LvConstraintDropData::setFlag(1);
    LvConstraintDropData::confirm();
    hosted.markChanged();
    hosted.evaluate();
    EXPECT_EQ(hosted.line("a"), (LineShape{{2, 3}, {12, 3}}));
}

TEST(EvaluatedDrag, HoldsAnEntityAtThePointsOfTheHeaderOnly) {
    Hosted hosted(corner({constraint("level", ConstraintType::horizontal, {{"a"}}),
                          constraint("here", ConstraintType::fixed, {{"b", PlaceKind::end}})}));
    LvConstraintDropData::init(hosted.ids({"a"}));
    hosted.header().points.append({10, 0, 0});
    dragTo(translation(3, 2));
    LvConstraintDropData::setFlag(1);
    LvConstraintDropData::confirm();
    hosted.markChanged();
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_TRUE(isNear(hosted.line("a").end, {13, 2}));
    EXPECT_TRUE(isNear(hosted.line("a").start, {0, 2})) << "it follows by what the constraint asks";
    EXPECT_EQ(hosted.line("b").end, (Vec2{10, 5}));
}

TEST(EvaluatedDrag, SkipsAnEntityThatIsErasedWhileItFollows) {
    Hosted hosted(corner());
    LvConstraintDropData::init(hosted.ids({"a"}));
    dragTo(translation(1, 0));
    hosted.drawing.erase("b");
    dragTo(translation(2, 3));
    EXPECT_EQ(previewsOf(hosted).size(), 1u);
    LvConstraintDropData::setFlag(1);
    LvConstraintDropData::confirm();
    hosted.markChanged();
    EXPECT_TRUE(hosted.evaluate());
    EXPECT_TRUE(isNear(hosted.line("a").start, {2, 3}));
}

TEST(EvaluatedDrag, ChoosesSidesAnewAfterASessionThatWasDropped) {
    Document document;
    document.entities = {entity("c", CircleShape{{0, 4}, 4}), entity("l", LineShape{{-9, 0}, {9, 0}})};
    document.constraints = {constraint("touch", ConstraintType::tangent, {{"l"}, {"c"}})};
    Hosted hosted(document);
    LvConstraintDropData::init(hosted.ids({"c"}));
    dragTo(translation(1, 0));
    LvConstraintDropData::reset();
    hosted.drawing.write("c", CircleShape{{0, -4}, 4});
    LvConstraintDropData::init(hosted.ids({"c"}));
    LvConstraintDropData::cancel();
    EXPECT_EQ(hosted.as<CircleShape>("c"), (CircleShape{{0, -4}, 4}));
    EXPECT_EQ(hosted.line("l"), (LineShape{{-9, 0}, {9, 0}}));
}

/// A stretch of some entities; sources are where the host's own stretch would bring them.
struct Stretch {
    Hosted& hosted;
    ConstraintStretchCmdCenter centre{};
    YxArray<YxArray<int>> grips{};
    std::vector<std::unique_ptr<YxDbEntity>> sources{};

    void begin(std::initializer_list<const char*> names, std::initializer_list<std::initializer_list<int>> lists) {
        centre.init(hosted.ids(names));
        centre.setStartPnt({0, 0, 0});
        for (const char* name : names)
            sources.push_back(makeEntity(hosted.drawing.shape(name)));
        for (const auto& list : lists) {
            YxArray<int> indices;
            for (const int index : list)
                indices.append(index);
            grips.append(indices);
        }
    }
    void feed(double x, double y) {
        YxArray<void*> pointers;
        for (const auto& source : sources)
            pointers.append(source.get());
        centre.setSourceInfo({x, y, 0}, pointers, grips);
        centre.addDataToWork();
    }
    bool step(double x, double y) {
        feed(x, y);
        return hosted.evaluate();
    }
};

TEST(EvaluatedStretch, MovesTheListedGripsAndWhatHangsOnThem) {
    Hosted hosted(corner());
    Stretch stretch{hosted};
    stretch.begin({"a"}, {{1}});
    EXPECT_TRUE(stretch.step(2, 3));
    EXPECT_EQ(hosted.line("a").start, (Vec2{0, 0}));
    EXPECT_TRUE(isNear(hosted.line("a").end, {12, 3}));
    EXPECT_TRUE(isNear(hosted.line("b").start, {12, 3}));
}

TEST(EvaluatedStretch, DoesNotAddUpItsSteps) {
    Hosted hosted(corner());
    Stretch stretch{hosted};
    stretch.begin({"a"}, {{1}});
    for (int i = 1; i <= 4; ++i)
        EXPECT_TRUE(stretch.step(i, 0));
    EXPECT_TRUE(isNear(hosted.line("a").end, {14, 0}));
    EXPECT_TRUE(stretch.step(0, 0));
    EXPECT_TRUE(isNear(hosted.line("a").end, {10, 0}));
    EXPECT_TRUE(isNear(hosted.line("b").start, {10, 0}));
}

TEST(EvaluatedStretch, FindsTheListsOfConstrainedObjectsAmongFreeOnes) {
    Document document = corner();
    document.entities.push_back(entity("free", LineShape{{0, 9}, {5, 9}}));
    Hosted hosted(document);
    Stretch stretch{hosted};
    stretch.begin({"free", "a"}, {{0}, {1}});
    EXPECT_TRUE(stretch.step(2, 0));
    EXPECT_EQ(hosted.line("a").start, (Vec2{0, 0}));
    EXPECT_TRUE(isNear(hosted.line("a").end, {12, 0}));
    EXPECT_EQ(hosted.line("free"), (LineShape{{0, 9}, {5, 9}})) << "free objects are the host's";
}

TEST(EvaluatedStretch, IsRefusedWhereAGripCannotGo) {
    Hosted hosted(corner({constraint("here", ConstraintType::fixed, {{"a", PlaceKind::start}}),
                          constraint("ten", ConstraintType::distance, {{"a"}}, 10.0)}));
    Stretch stretch{hosted};
    stretch.begin({"a"}, {{1}});
    EXPECT_FALSE(stretch.step(2, 0));
    EXPECT_EQ(hosted.evaluator.last().conflicting, (std::vector<std::string>{"here", "ten"}));
    EXPECT_EQ(hosted.line("a"), (LineShape{{0, 0}, {10, 0}}));
}

TEST(EvaluatedStretch, KeepsTheBulgesBesideAMovedVertex) {
    Document document;
    document.entities = {entity("p", PolylineShape{{{0, 0}, {10, 0}, {20, 0}}, {0.5, 0, 0}, {1, 2, 3}, false}),
                         entity("l", LineShape{{20, 0}, {25, 5}})};
    document.constraints = {
        constraint("tie", ConstraintType::coincident, {{"p", PlaceKind::segmentEnd, 1}, {"l", PlaceKind::start}})};
    Hosted hosted(document);
    Stretch stretch{hosted};
    stretch.begin({"p"}, {{1}});
    EXPECT_TRUE(stretch.step(0, 4));
    const auto polyline = hosted.as<PolylineShape>("p");
    EXPECT_TRUE(isNear(polyline.vertices[1], {10, 4}));
    EXPECT_NEAR(polyline.bulges[0], 0.5, 1e-9);
    EXPECT_EQ(hosted.line("l").start, (Vec2{20, 0}));
}

TEST(EvaluatedStretch, KeepsTheBulgesOfAClosedPolylineOfWhichManyVerticesMove) {
    const PolylineShape ring{{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {0.5, 0.25, 0.5, 0.125}, {1, 2, 3, 4}, true};
    Document document;
    document.entities = {entity("p", ring), entity("l", LineShape{{10, 0}, {25, 5}})};
    document.constraints = {
        constraint("tie", ConstraintType::coincident, {{"p", PlaceKind::segmentEnd, 0}, {"l", PlaceKind::start}})};
    Hosted hosted(document);
    Stretch stretch{hosted};
    stretch.begin({"p"}, {{0, 1, 3}});
    EXPECT_TRUE(stretch.step(2, 0));
    const auto polyline = hosted.as<PolylineShape>("p");
    EXPECT_TRUE(isNear(polyline.vertices[3], {2, 10}));
    EXPECT_TRUE(isNear(polyline.vertices[2], {10, 10}));
    EXPECT_NEAR(polyline.bulges[0], 0.5, 1e-9) << "both vertices moved";
    EXPECT_NEAR(polyline.bulges[3], 0.125, 1e-9) << "both vertices moved";
    EXPECT_TRUE(isNear(hosted.line("l").start, {12, 0}));
}

TEST(EvaluatedStretch, TurnsAConstructionLineByItsRearPointTheOtherWay) {
    Document document = corner();
    document.entities.push_back(entity("x", XlineShape{{0, 0}, {1, 0}}));
    document.constraints.push_back(
        constraint("at", ConstraintType::coincident, {{"a", PlaceKind::start}, {"x", PlaceKind::start}}));
    Hosted hosted(document);
    Stretch stretch{hosted};
    stretch.begin({"b", "x"}, {{}, {2}});  // an object without grips ends the search for special ones
    EXPECT_TRUE(stretch.step(0, 1));
    const Vec2 direction = hosted.as<XlineShape>("x").direction;
    EXPECT_NEAR(direction.x, std::sqrt(0.5), 1e-9);
    EXPECT_NEAR(direction.y, -std::sqrt(0.5), 1e-9);
}

TEST(EvaluatedStretch, MovesTheStartOfAnArcSeenFromBelowWhereTheHostHasIt) {
    Document document;
    document.entities = {entity("arc", ArcShape{{0, 0}, 5, 0, 1.5}), entity("l", LineShape{{5, 0}, {9, 1}})};
    document.constraints = {
        constraint("tie", ConstraintType::coincident, {{"arc", PlaceKind::start}, {"l", PlaceKind::start}})};
    Hosted hosted(document);
    YxGeMatrix3d mirror;
    mirror.entry[0][0] = -1.0;
    YxSmartPtr<YxDbEntity>(YxDbObjectIdImpl::openObject(hosted.drawing.id("arc"), YxDb::kForWrite, false))
        ->transformBy(mirror);
    hosted.drawing.write("l", LineShape{{-5, 0}, {-9, 1}});
    Stretch stretch{hosted};
    stretch.begin({"arc"}, {{0}});
    EXPECT_TRUE(stretch.step(-1, 0));
    EXPECT_TRUE(isNear(hosted.line("l").start, {-6, 0}));
    const auto arc = hosted.as<ArcShape>("arc");
    EXPECT_TRUE(
        isNear({arc.centre.x + arc.radius * std::cos(arc.endAngle), arc.centre.y + arc.radius * std::sin(arc.endAngle)},
               {-6, 0}));
}

TEST(EvaluatedStretch, MovesACircleByItsCentreOnly) {
    Document document = corner();
    document.entities.push_back(entity("c", CircleShape{{10, 0}, 2}));
    document.constraints.push_back(
        constraint("with", ConstraintType::concentric, {{"c", PlaceKind::centre}, {"c2", PlaceKind::centre}}));
    document.entities.push_back(entity("c2", CircleShape{{10, 0}, 3}));
    Hosted hosted(document);
    Stretch stretch{hosted};
    stretch.begin({"a", "c"}, {{0}, {4}});
    EXPECT_TRUE(stretch.step(0, 2));
    EXPECT_EQ(hosted.as<CircleShape>("c"), (CircleShape{{10, 0}, 2}));
    EXPECT_TRUE(isNear(hosted.line("a").start, {0, 2}));
}

TEST(EvaluatedStretch, ForgetsTheSpecialRecordsOfAStepThatWasNotEvaluated) {
    PolylineShape bent{{{0, 0}, {10, 0}, {20, 0}}, {0.5, 0, 0}, {1, 2, 3}, false};
    Document document;
    document.entities = {entity("p", bent), entity("l", LineShape{{20, 0}, {25, 5}})};
    document.constraints = {
        constraint("tie", ConstraintType::coincident, {{"p", PlaceKind::segmentEnd, 1}, {"l", PlaceKind::start}})};
    Hosted hosted(document);
    Stretch stretch{hosted};
    stretch.begin({"p"}, {{0}});
    bent.bulges[0] = 1.0;
    stretch.sources[0] = makeEntity(bent);
    stretch.feed(0, 4);
    stretch.grips[0][0] = 1;  // the straight segment behind this vertex needs no record
    EXPECT_TRUE(stretch.step(0, 4));
    const auto polyline = hosted.as<PolylineShape>("p");
    EXPECT_TRUE(isNear(polyline.vertices[1], {10, 4}));
    EXPECT_NEAR(polyline.bulges[0], 0.5, 1e-9);
}

TEST(EvaluatedStretch, BeginsWhereASecondStretchFindsTheDrawing) {
    Hosted hosted(corner());
    Stretch first{hosted};
    first.begin({"a"}, {{1}});
    EXPECT_TRUE(first.step(2, 0));
    Stretch second{hosted};
    second.begin({"a"}, {{1}});
    EXPECT_TRUE(second.step(1, 0));
    EXPECT_TRUE(isNear(hosted.line("a").end, {13, 0}));
}

TEST(EvaluatedStretch, GoesOnWithoutAnEntityThatIsErasedBetweenItsSteps) {
    Document document = corner();
    document.entities.insert(document.entities.begin(), entity("gone", CircleShape{{0, 9}, 1}));
    Hosted hosted(document);
    Stretch stretch{hosted};
    stretch.begin({"a"}, {{1}});
    EXPECT_TRUE(stretch.step(2, 0));
    hosted.drawing.erase("gone");
    EXPECT_TRUE(stretch.step(3, 0));
    EXPECT_EQ(hosted.line("a").start, (Vec2{0, 0}));
    EXPECT_TRUE(isNear(hosted.line("b").end, hosted.line("b").start + Vec2{0, 5}));
}

TEST(EvaluatedStretch, LeavesObjectsWhereTheyAreInAStaticEvaluation) {
    Hosted hosted(corner());
    hosted.drawing.write("a", LineShape{{0, 0}, {12, 3}});
    ConstraintStretchCmdCenter centre;
    centre.init(hosted.ids({"a"}));
    centre.addDataToStaticEvaluate();
    EXPECT_EQ(hosted.line("a"), (LineShape{{0, 0}, {12, 3}}));
    EXPECT_TRUE(isNear(hosted.line("b").start, {12, 3}));
}

}  // namespace
}  // namespace holdfast::hosting
