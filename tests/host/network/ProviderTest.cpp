#include <BondKit/YxConstraintModelHelp.h>
#include <YxDbConstraints/LvEvaDataConverter.h>
#include <YxDbConstraints/YxDbConstraintDataProviderLv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/model/entities/EntityGeometry.h"
#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const YxDbConstraintDataProviderLv& provider() {
    return *YxDbConstraintDataProviderLv::getConstraintDataProviderLvInstance();
}

TEST(DataProvider, FollowsTheEntityToItsGroup) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    EXPECT_TRUE(provider().getAssocCons2DGroup(a).isNull());
    host.curve(a);
    EXPECT_EQ(provider().getAssocCons2DGroup(a), host.groupId);
}

TEST(DataProvider, FindsNoGroupWithoutConstrainedGeometry) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    host.dependency(a);
    host.builder.addOtherReactor(a);
    EXPECT_TRUE(provider().getAssocCons2DGroup(a).isNull());
    EXPECT_FALSE(LvEvaDataConverter::hasAssocConstraint(a));
    EXPECT_TRUE(provider().getAssocCons2DGroup(YxDbObjectId()).isNull());
}

TEST(DataProvider, FindsTheGroupOfTheSecondDependencyWhenTheFirstIsBare) {
    SmallHost host;
    const YxDbObjectId p = host.polyline({1, 2, 3});
    host.dependency(p, 1);
    host.curve(p, 2);
    EXPECT_EQ(provider().getAssocCons2DGroup(p), host.groupId);
    EXPECT_TRUE(LvEvaDataConverter::hasAssocConstraint(p));
}

TEST(DataProvider, FindsNoErasedGroup) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    host.curve(a);
    HostAccess::erase(host.groupId);
    EXPECT_TRUE(provider().getAssocCons2DGroup(a).isNull());
    EXPECT_EQ(provider().getAssocConstraintHeader(host.groupId), nullptr);
}

TEST(DataProvider, FollowsADependencyThatMoved) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    const YxDbObjectId b = host.line();
    const auto open = openedForWrite(host.curve(a)->geomDependencyId());
    const YxSmartPtr<YxDbAssocDependency> dependency = open;
    YxDbCompoundObjectId target;
    target.set(b);
    dependency->detachFromObject();
    dependency->attachToObject(target);
    EXPECT_TRUE(provider().getAssocCons2DGroup(a).isNull());
    EXPECT_EQ(provider().getAssocCons2DGroup(b), host.groupId);
}

TEST(DataProvider, KeepsOneHeaderForEachGroup) {
    SmallHost host;
    const YxDbObjectId second = host.builder.addGroup();
    AssocConstraintHeader* header = provider().getAssocConstraintHeader(host.groupId);
    ASSERT_NE(header, nullptr);
    EXPECT_EQ(provider().getAssocConstraintHeader(host.groupId), header);
    EXPECT_NE(provider().getAssocConstraintHeader(second), header);
    EXPECT_EQ(provider().getAssocConstraintHeader(YxDbObjectId()), nullptr);
    EXPECT_EQ(provider().getAssocConstraintHeader(host.line()), nullptr);
}

TEST(DataProvider, CanBeDown) {
    SmallHost host;
    EXPECT_TRUE(YxDbConstraintDataProviderLv::isSrvInit());
    host.process.setConstraintServiceUp(false);
    EXPECT_FALSE(YxDbConstraintDataProviderLv::isSrvInit());
}

TEST(PolylineIndices, AreTheVertexNumbersOfConstrainedSegmentsAscending) {
    SmallHost host;
    const YxDbObjectId p = host.polyline({50, 40, 30, 20, 10});
    host.curve(p, 4);
    host.curve(p, 1);
    host.dependency(p, 2);
    YxArray<int> indices;
    indices.append(99);
    EXPECT_TRUE(LvEvaDataConverter::polyLineHasAssocConstraintIndex(p, indices));
    EXPECT_THAT(listed(indices), ElementsAre(1, 2, 4, 5));
}

TEST(PolylineIndices, NameASharedVertexOnce) {
    SmallHost host;
    const YxDbObjectId p = host.polyline({1, 2, 3}, true);
    for (const int segment : {1, 2, 3})
        host.curve(p, segment);
    YxArray<int> indices;
    EXPECT_TRUE(LvEvaDataConverter::polyLineHasAssocConstraintIndex(p, indices));
    EXPECT_THAT(listed(indices), ElementsAre(1, 2, 3));
}

TEST(PolylineIndices, LeaveOutASegmentThatIsGone) {
    SmallHost host;
    const YxDbObjectId p = host.polyline({10, 20, 30, 40});
    host.curve(p, 1);
    host.curve(p, 3);
    auto& line = static_cast<YxDbPolyline&>(*HostAccess::peek(p));
    const auto open = openedForWrite(p);
    EntityAccess::removeVertex(line, 3);
    YxArray<int> indices;
    EXPECT_TRUE(LvEvaDataConverter::polyLineHasAssocConstraintIndex(p, indices));
    EXPECT_THAT(listed(indices), ElementsAre(1, 2));
}

TEST(PolylineIndices, AreEmptyWithoutConstraints) {
    SmallHost host;
    YxArray<int> indices;
    EXPECT_FALSE(LvEvaDataConverter::polyLineHasAssocConstraintIndex(host.polyline({1, 2}), indices));
    EXPECT_FALSE(LvEvaDataConverter::polyLineHasAssocConstraintIndex(host.line(), indices));
    EXPECT_THAT(listed(indices), IsEmpty());
}

TEST(ModelHelp, DeletesWhatTouchesTheEntitiesButNothingInternal) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    const YxDbObjectId b = host.line();
    host.constrain<YxParallelConstraint>({host.curve(a), host.curve(b)});
    host.constrain<YxFixedConstraint>({host.point(a, YxDb::kEndImplicit)});
    YxGeomConstraint& internal = host.constrain<YxFixedConstraint>({host.curve(a)});
    HostAccess::setInternal(internal, true);
    YxGeomConstraint& elsewhere = host.constrain<YxFixedConstraint>({host.curve(b)});
    YxArray<YxDbObjectId> entities;
    entities.append(a);
    entities.append(a);
    EXPECT_EQ(YxConstraintModelHelp().deleteConstraints(entities), 2);
    EXPECT_THAT(HostAccess::constraints(host.group), ElementsAre(&internal, &elsewhere));
}

TEST(ModelHelp, DeletesACompositeForItsMember) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    auto& composite = host.constrain<YxCompositeConstraint>({});
    HostAccess::own(composite, host.constrain<YxFixedConstraint>({host.curve(a)}));
    HostAccess::own(composite, host.constrain<YxHorizontalConstraint>({host.curve(host.line())}));
    YxArray<YxDbObjectId> entities;
    entities.append(a);
    EXPECT_EQ(YxConstraintModelHelp().deleteConstraints(entities), 1);
    EXPECT_THAT(HostAccess::constraints(host.group), IsEmpty());
}

TEST(ModelHelp, KnowsNothingOfAnErasedGroup) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    host.constrain<YxFixedConstraint>({host.curve(a)});
    HostAccess::erase(host.groupId);
    YxArray<YxDbObjectId> entities;
    entities.append(a);
    EXPECT_EQ(YxConstraintModelHelp().deleteConstraints(entities), 0);
    EXPECT_FALSE(LvEvaDataConverter::hasAssocConstraint(a));
}

TEST(ModelHelp, TellsTheKindsOfAnEntitysGeometry) {
    SmallHost host;
    const YxDbObjectId text = host.builder.add(EntityAccess::makeText({}));
    const auto* entity = static_cast<const YxDbEntity*>(HostAccess::peek(text));
    const YxConstraintModelHelp help;
    const auto directionLine = static_cast<unsigned>(GeometryKind::datumLine);
    EXPECT_EQ(directionLine, 6U);
    EXPECT_FALSE(help.checkEntHasGeomType(entity, directionLine));
    host.point(text, YxDb::kStartImplicit);
    EXPECT_TRUE(help.checkEntHasGeomType(entity, directionLine));
    EXPECT_TRUE(help.checkEntHasGeomType(entity, static_cast<unsigned>(GeometryKind::implicitPoint)));
    EXPECT_FALSE(help.checkEntHasGeomType(entity, static_cast<unsigned>(GeometryKind::boundedLine)));
    EXPECT_FALSE(help.checkEntHasGeomType(nullptr, directionLine));
}

}  // namespace
}  // namespace holdfast
