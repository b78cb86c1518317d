#include "host/model/HostBuilder.h"

#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/model/Scene.h"
#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string builderComplaint(const std::function<void()>& building) {
    try {
        building();
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "no builderComplaint";
}

TEST(HostBuilder, StandsAllConstraintsOfAnEntityOnOneDependency) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    const YxDbObjectId dependency = host.curve(a)->geomDependencyId();
    host.point(a, YxDb::kEndImplicit);
    EXPECT_EQ(host.curve(a)->geomDependencyId(), dependency);
    EXPECT_THAT(HostAccess::reactors(*HostAccess::peek(a)), ElementsAre(dependency));
}

TEST(HostBuilder, GivesEverySegmentAndEveryGroupADependencyOfItsOwn) {
    SmallHost host;
    const YxDbObjectId p = host.polyline({1, 2, 3});
    host.curve(p, 1);
    host.curve(p, 2);
    YxDbAssoc2dConstraintGroup& second = HostBuilder::group(host.builder.addGroup());
    host.builder.geometry(second, {.entity = p, .segment = 1});
    EXPECT_EQ(HostAccess::reactors(*HostAccess::peek(p)).size(), 3U);
}

TEST(HostBuilder, PutsGeometryOnADependencyThatHasNone) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    const YxDbAssocGeomDependency& bare = host.dependency(a);
    EXPECT_EQ(host.builder.dependency(host.group, {.entity = a}), &bare);
    EXPECT_EQ(host.curve(a)->geomDependencyId(), HostAccess::idOf(bare));
}

TEST(HostBuilder, FindsADependencyAgainThatMovedHere) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    const YxDbObjectId b = host.line();
    YxConstrainedGeometry* geometry = host.curve(a);
    const auto open = openedForWrite(geometry->geomDependencyId());
    const YxSmartPtr<YxDbAssocDependency> dependency = open;
    YxDbCompoundObjectId target;
    target.set(b);
    dependency->detachFromObject();
    dependency->attachToObject(target);
    EXPECT_EQ(host.builder.dependency(host.group, {.entity = a}), nullptr);
    EXPECT_EQ(host.curve(b), geometry);
}

TEST(HostBuilder, KeepsATextsPositionApartFromItsDirection) {
    SmallHost host;
    const YxDbObjectId t = host.builder.add(EntityAccess::makeText({}));
    const YxConstrainedGeometry& position = host.builder.geometry(host.group, {.entity = t, .isPosition = true});
    EXPECT_EQ(position.isA(), YxConstrainedPoint::desc());
    EXPECT_EQ(host.curve(t)->isA(), YxConstrainedDatumLine::desc());
    EXPECT_EQ(HostAccess::reactors(*HostAccess::peek(t)).size(), 2U);
    EXPECT_EQ(&host.builder.geometry(host.group, {.entity = t, .isPosition = true}), &position);
}

TEST(HostBuilder, TakesAnEllipseForFullExactlyWhenItIsClosed) {
    SmallHost host;
    constexpr double kTurn = 2.0 * std::numbers::pi;
    for (const double end : {kTurn, kTurn - 1e-11, 2.0 * kTurn, 1.0, 2.5 * kTurn}) {
        const YxDbObjectId e = host.builder.add(EntityAccess::makeEllipse({.ratio = 0.5, .endAngle = end}));
        const bool isClosed = static_cast<const YxDbEllipse&>(*HostAccess::peek(e)).isClosed();
        EXPECT_EQ(host.curve(e)->isA() == YxConstrainedEllipse::desc(), isClosed) << end;
    }
}

TEST(HostBuilder, TakesAPointEntityForItsPoint) {
    SmallHost host;
    const YxDbObjectId q = host.builder.add(EntityAccess::makePoint({1, 1, 0}));
    EXPECT_EQ(host.point(q, YxDb::kStartImplicit), host.curve(q));
}

TEST(HostBuilder, TiesCornersOnceAndOnlyBetweenConstrainedSegments) {
    SmallHost host;
    const YxDbObjectId p = host.polyline({1, 2, 3, 4, 5});
    for (const int segment : {1, 2, 4})
        host.curve(p, segment);
    EXPECT_EQ(host.builder.addCornerCoincidences(host.group, p), 1);
    EXPECT_EQ(host.builder.addCornerCoincidences(host.group, p), 0);
    const YxGeomConstraint& corner = *HostAccess::constraints(host.group).front();
    EXPECT_TRUE(corner.isImplied());
    EXPECT_FALSE(corner.isInternal());
}

TEST(HostBuilder, TiesTheLastCornerOfAClosedPolyline) {
    SmallHost host;
    const YxDbObjectId p = host.polyline({1, 2, 3}, true);
    for (const int segment : {1, 2, 3})
        host.curve(p, segment);
    EXPECT_EQ(host.builder.addCornerCoincidences(host.group, p), 3);
}

TEST(HostBuilder, SaysWhatItCannotBuild) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    const YxDbObjectId p = host.polyline({1, 2});
    EXPECT_EQ(builderComplaint([&] { host.curve(YxDbObjectId()); }),
              "a constraint needs an entity that lives in the database; add the entity first");
    EXPECT_EQ(builderComplaint([&] { host.curve(host.groupId); }),
              "a constraint needs an entity that lives in the database; add the entity first");
    EXPECT_EQ(builderComplaint([&] { host.curve(p, 2); }),
              "segment 2 of a polyline with 1 segments; they are counted from 1");
    EXPECT_EQ(builderComplaint([&] { host.builder.geometry(host.group, {.entity = a, .isPosition = true}); }),
              "only a text or mtext has a position of its own; name a point of the curve instead");
    EXPECT_EQ(builderComplaint([&] { HostBuilder::group(a); }), "the id names no constraint group");
}

TEST(NamedFaults, RefuseOpeningByTheNameOfTheObject) {
    Scene scene("line a 0,0 1,0; fixed a");
    scene.host().refuseOpenForWrite("group");
    scene.host().refuseOpen("a");
    EXPECT_TRUE(openedForWrite(scene.groupId()).isNull());
    EXPECT_FALSE(openedForRead(scene.groupId()).isNull());
    EXPECT_TRUE(openedForRead(scene.id("a")).isNull());
    EXPECT_EQ(builderComplaint([&] { scene.host().refuseOpen("b"); }), "no object of the host has the name \"b\"");
}

TEST(NamedFaults, ReachDependenciesByTheirPlaces) {
    Scene scene("polyline p 0,0 1,0 2,0; fixed p[2]; fixed p[1]");
    scene.host().refuseOpen("p[2]", 2);
    const YxDbObjectId id = HostAccess::idOf(*scene.dependency("p[2]"));
    EXPECT_FALSE(openedForRead(id).isNull());
    EXPECT_TRUE(openedForRead(id).isNull());
    EXPECT_FALSE(openedForRead(HostAccess::idOf(*scene.dependency("p[1]"))).isNull());
}

TEST(NamedFaults, TakeTheConstraintServiceDown) {
    Scene scene("line a 0,0 1,0");
    scene.host().serviceDown();
    EXPECT_FALSE(YxDbConstraintDataProviderLv::isSrvInit());
}

}  // namespace
}  // namespace holdfast
