#include <gtest/gtest.h>

#include "tests/module/commands/break/CutCommand.h"
#include "tests/module/commands/break/TestAccess.h"
#include "tests/module/core/CheckedScene.h"

namespace holdfast::module {
namespace {

const std::string kTiedLine = "line b 0,0 0,5; line a 0,0 10,0; coincident a.end b.end; parallel a b";

/// Hands line a over, cut at 4, and says what was collected.
std::string collected(CheckedScene& scene) {
    ConstraintBreakCmdCenter centre;
    const auto piece = EntityAccess::makeLine({0, 0, 0}, {4, 0, 0});
    centre.setFirstCurve(scene.id("a"), piece.get());
    return scene.names(LvTestAccess::collected(centre));
}

TEST(SetFirstCurve, CollectsNothingWhileTheServiceIsDown) {
    CheckedScene scene(kTiedLine);
    scene.serviceDown();
    EXPECT_EQ(collected(scene), "");
    EXPECT_EQ(scene.process().journal().count("getConstraintDataProviderLvInstance"), 0);
    EXPECT_EQ(scene.process().journal().count("openObject"), 0);
}

TEST(SetFirstCurve, CollectsNothingWithoutAProviderOrAGroup) {
    CheckedScene scene(kTiedLine);
    scene.host().refuse("getConstraintDataProviderLvInstance");
    EXPECT_EQ(collected(scene), "");
    scene.host().clear();
    scene.host().refuse("getAssocCons2DGroup");
    EXPECT_EQ(collected(scene), "");
    EXPECT_EQ(scene.process().journal().count("openObject"), 0);
}

TEST(SetFirstCurve, CollectsNothingWhenTheGroupDoesNotOpenAsOne) {
    CheckedScene scene(kTiedLine);
    scene.refuseOpen("group");
    EXPECT_EQ(collected(scene), "");
    scene.host().clear();
    scene.host().answerOther("openObject", scene.entity("b"), &scene.group());
    EXPECT_EQ(collected(scene), "");
}

TEST(SetFirstCurve, CollectsNothingWhenTheUncutCurveDoesNotOpen) {
    CheckedScene scene(kTiedLine);
    scene.refuseOpen("a");
    EXPECT_EQ(collected(scene), "");
    scene.host().clear();
    scene.host().answerOther("openObject", &scene.group(), scene.entity("a"));
    EXPECT_EQ(collected(scene), "");
}

TEST(SetFirstCurve, CollectsNothingForANullPiece) {
    CheckedScene scene(kTiedLine);
    ConstraintBreakCmdCenter centre;
    centre.setFirstCurve(scene.id("a"), nullptr);
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
    EXPECT_EQ(LvTestAccess::groupId(centre), scene.groupId());
}

TEST(SetFirstCurve, LeavesThePieceOfAnUnconstrainedCurveItsReactors) {
    CheckedScene scene("line a 0,0 10,0; dependency a");
    ConstraintBreakCmdCenter centre;
    const auto piece = EntityAccess::makeLine({0, 0, 0}, {4, 0, 0});
    copyReactors(*scene.entity("a"), *piece);
    centre.setFirstCurve(scene.id("a"), piece.get());
    EXPECT_EQ(HostAccess::reactors(*piece).size(), 1U);
}

TEST(SetFirstCurve, TakesCopiedDependenciesOffThePiece) {
    CheckedScene scene("line a 0,0 10,0; reactor a; fixed a");
    ConstraintBreakCmdCenter centre;
    const auto piece = EntityAccess::makeLine({0, 0, 0}, {4, 0, 0});
    copyReactors(*scene.entity("a"), *piece);
    centre.setFirstCurve(scene.id("a"), piece.get());
    EXPECT_EQ(HostAccess::reactors(*piece).size(), 1U);
    EXPECT_EQ(HostAccess::reactors(*scene.entity("a")).size(), 2U);
}

TEST(SetFirstCurve, CollectsNothingMoreWithoutTheDatabaseService) {
    CheckedScene scene(kTiedLine);
    scene.process().setServicesUp(false);
    EXPECT_EQ(collected(scene), "");
}

const std::string kPolyline =
    "polyline p 0,0#31 10,0#7 20,10#22 30,0#5 40,10#40; fixed p[1]; fixed p[2]; fixed p[3]; fixed p[4]";

TEST(SetFirstPoly, ForgetsAFormerCutBeforeItLooksAtItsArguments) {
    CheckedScene scene(kPolyline + "; line a 0,0 1,0");
    ConstraintBreakCmdCenter centre;
    const auto& group = scene.group();
    const auto dependencies = scene.dependenciesOn({"p[1]", "p[4]"});
    const auto* polyline = scene.entity("p");
    const auto record = [&] {
        LvTestAccess::startParam(centre) = LvTestAccess::endParam(centre) = 1.5;
        LvTestAccess::setFirstPoly(centre, &scene.group(), dependencies, polyline, polyline);
        ASSERT_EQ(LvTestAccess::vertexIds(centre).length(), 5);
        ASSERT_EQ(LvTestAccess::staying(centre).length(), 1);
        ASSERT_EQ(LvTestAccess::moved(centre).length(), 1);
    };
    const auto expectNothing = [&] {
        EXPECT_TRUE(LvTestAccess::vertexIds(centre).isEmpty());
        EXPECT_TRUE(LvTestAccess::staying(centre).isEmpty());
        EXPECT_TRUE(LvTestAccess::moved(centre).isEmpty());
        EXPECT_TRUE(LvTestAccess::touched(centre).empty());
    };
    const auto open = YxDbObjectIdImpl::openObject(scene.id("p"), YxDb::kForWrite, false);
    record();
    LvTestAccess::setFirstPoly(centre, nullptr, dependencies, polyline, polyline);
    expectNothing();
    record();
    LvTestAccess::setFirstPoly(centre, const_cast<YxDbAssoc2dConstraintGroup*>(&group), dependencies, nullptr,
                               polyline);
    expectNothing();
    record();
    LvTestAccess::setFirstPoly(centre, &scene.group(), dependencies, polyline, nullptr);
    expectNothing();
    record();
    LvTestAccess::setFirstPoly(centre, &scene.group(), dependencies, scene.entity("a"), polyline);
    expectNothing();
    record();
    LvTestAccess::setFirstPoly(centre, &scene.group(), dependencies, polyline, scene.entity("a"));
    expectNothing();
}

TEST(SetFirstPoly, SkipsNullDependenciesAndThoseWithoutASegment) {
    CheckedScene scene(kPolyline);
    HostAccess::setPersistentId(*scene.dependency("p[2]"), HostAccess::makeEdgeId(98, 99));
    ConstraintBreakCmdCenter centre;
    LvTestAccess::startParam(centre) = LvTestAccess::endParam(centre) = 2.0;
    const auto piece = EntityAccess::makePolyline({.vertices = {{{0, 0}}, {{10, 0}}, {{20, 10}}}, .closed = false});
    LvTestAccess::setFirstPoly(centre, &scene.group(), scene.dependenciesOn({"", "p[4]", "p[2]", "", "p[1]"}),
                               scene.entity("p"), piece.get());
    ASSERT_EQ(LvTestAccess::staying(centre).length(), 1);
    EXPECT_EQ(LvTestAccess::staying(centre)[0].dependency, scene.dependency("p[1]"));
    ASSERT_EQ(LvTestAccess::moved(centre).length(), 1);
    EXPECT_EQ(LvTestAccess::moved(centre)[0].dependency, scene.dependency("p[4]"));
}

TEST(SetFirstPoly, KeepsTheCutSegmentUnjudgedWhenThePieceDoesNotEndWithIt) {
    CheckedScene scene("polyline p 0,0#31 10,0#7 20,10#22 30,0#5; fixed p[2].end");
    ConstraintBreakCmdCenter centre;
    LvTestAccess::startParam(centre) = LvTestAccess::endParam(centre) = 1.5;
    const auto piece = EntityAccess::makePolyline({.vertices = {{{0, 0}}, {{15, 5}}}, .closed = false});
    LvTestAccess::setFirstPoly(centre, &scene.group(), scene.dependenciesOn({"p[2]"}), scene.entity("p"), piece.get());
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
    EXPECT_EQ(LvTestAccess::staying(centre).length(), 1);
    EXPECT_EQ(EntityAccess::vertex(*piece, 1).identifier, 7);
}

TEST(SetFirstPoly, LeavesADependencyThatDoesNotOpenForWriteUnmarked) {
    CheckedScene scene(kPolyline);
    ConstraintBreakCmdCenter centre;
    LvTestAccess::startParam(centre) = 1.0;
    LvTestAccess::endParam(centre) = 3.0;
    scene.host().refuse("openObject", scene.dependency("p[2]"), 2);
    const auto piece = EntityAccess::makePolyline({.vertices = {{{0, 0}}, {{10, 0}}}, .closed = false});
    LvTestAccess::setFirstPoly(centre, &scene.group(), scene.dependenciesOn({"p[2]", "p[3]"}), scene.entity("p"),
                               piece.get());
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: p[3] 22-5 status 5; p[4]: p[4] 5-40");
}

TEST(SetFirstPoly, MarksARemovedSegmentWithNotification) {
    CheckedScene scene(kPolyline);
    ConstraintBreakCmdCenter centre;
    LvTestAccess::startParam(centre) = 1.0;
    LvTestAccess::endParam(centre) = 2.0;
    const auto piece = EntityAccess::makePolyline({.vertices = {{{0, 0}}, {{10, 0}}}, .closed = false});
    LvTestAccess::setFirstPoly(centre, &scene.group(), scene.dependenciesOn({"p[2]"}), scene.entity("p"), piece.get());
    EXPECT_EQ(scene.process().journal().text({"YxDbAssocDependency::setStatus"}), "status of dependency p[2]: 5, true");
}

TEST(SetFirstPoly, TakesAnEndThatCannotBeReadForTheOrigin) {
    CheckedScene scene("polyline p 0,0#31 10,0#7 20,0#22; fixed p[2].end");
    ConstraintBreakCmdCenter centre;
    LvTestAccess::startParam(centre) = 1.0;
    LvTestAccess::endParam(centre) = 1.5;
    scene.host().refuse("getPointAtParam");
    const auto piece = EntityAccess::makePolyline({.vertices = {{{0, 0}}, {{10, 0}}}, .closed = false});
    LvTestAccess::setFirstPoly(centre, &scene.group(), scene.dependenciesOn({"p[2]"}), scene.entity("p"), piece.get());
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
    EXPECT_EQ(LvTestAccess::moved(centre).length(), 1);
}

/// A centre that has seen the first piece of kPolyline, cut between two parameters.
struct AfterFirstPiece : ConstraintBreakCmdCenter {
    AfterFirstPiece(CheckedScene& scene, double start, double end) {
        LvTestAccess::startParam(*this) = start;
        LvTestAccess::endParam(*this) = end;
        const auto first = EntityAccess::makePolyline(
            cutPolyline(EntityAccess::polyline(*scene.entity<YxDbPolyline>("p")), start, end).first);
        setFirstCurve(scene.id("p"), first.get());
    }
};

TEST(SetSecondPoly, NeedsAPolylineAndRecords) {
    CheckedScene scene(kPolyline + "; line a 0,0 1,0");
    const std::string before = scene.dependencies();
    AfterFirstPiece centre(scene, 1.5, 1.75);
    centre.setSecondPoly(nullptr);
    centre.setSecondPoly(scene.entity("a"));
    LvTestAccess::touched(centre).clear();
    centre.setSecondPoly(scene.entity("p"));
    AfterFirstPiece atTheEnd(scene, 3.5, 3.75);
    atTheEnd.setSecondPoly(scene.entity("p"));
    EXPECT_EQ(scene.process().journal().count("attachToObject"), 0);
    EXPECT_EQ(scene.process().journal().count("setVertexIdentifierAt"), 4 + 8);
    EXPECT_EQ(scene.dependencies(), before);
}

TEST(SetSecondPoly, DetachesThenAttachesEachInItsOrder) {
    CheckedScene scene(kPolyline);
    AfterFirstPiece centre(scene, 1.25, 1.75);
    const YxDbObjectId piece = scene.add(
        "s", EntityAccess::makePolyline({.vertices = {{{17, 7}}, {{20, 10}}, {{30, 0}}, {{40, 10}}}, .closed = false}));
    const auto open = YxDbObjectIdImpl::openObject(piece, YxDb::kForWrite, false);
    scene.process().journal().clear();
    centre.setSecondPoly(scene.entity("s"));
    EXPECT_EQ(
        scene.process().journal().text({"detachFromObject", "attachToObject"}),
        "detach dependency p[3]; attach dependency p[3] to s; detach dependency p[4]; attach dependency p[4] to s");
}

TEST(SetSecondPoly, SkipsADependencyThatDoesNotOpenAsOne) {
    CheckedScene scene(kPolyline);
    AfterFirstPiece centre(scene, 1.25, 1.75);
    const YxDbObjectId piece = scene.add(
        "s", EntityAccess::makePolyline({.vertices = {{{17, 7}}, {{20, 10}}, {{30, 0}}, {{40, 10}}}, .closed = false}));
    const auto open = YxDbObjectIdImpl::openObject(piece, YxDb::kForWrite, false);
    scene.host().answerOther("openObject", &scene.group(), scene.dependency("p[3]"));
    centre.setSecondPoly(scene.entity("s"));
    scene.host().clear();
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: p[3] 22-5; p[4]: s[3] 5-40");
}

TEST(SetSecondPoly, WritesNoIdentifiersIntoAPieceLongerThanWhatWasRecorded) {
    CheckedScene scene(kPolyline);
    AfterFirstPiece centre(scene, 0.5, 2.5);
    LvTestAccess::vertexIds(centre).setLogicalLength(4);
    const YxDbObjectId piece =
        scene.add("s", EntityAccess::makePolyline({.vertices = {{{25, 5}}, {{30, 0}}, {{40, 10}}}, .closed = false}));
    const auto open = YxDbObjectIdImpl::openObject(piece, YxDb::kForWrite, false);
    centre.setSecondPoly(scene.entity("s"));
    EXPECT_EQ(scene.vertices("s"), "25,5 30,0 40,10");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-7; p[2]: p[2] 7-22 status 5; p[3]: s[?] 22-5; p[4]: s[?] 5-40");
}

}  // namespace
}  // namespace holdfast::module
