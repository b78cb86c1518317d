#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<YxConstrainedGeometry*> geometriesOf(const YxDbAssoc2dConstraintGroup& group) {
    YxArray<YxConstrainedGeometry*> all;
    group.getConstrainedGeometries(all);
    return listed(all);
}

TEST(GroupNodes, ShareOneSequenceOfNumbersThatDoesNotStartAtZero) {
    SmallHost host;
    const YxConstrainedGeometry* line = host.curve(host.line());
    const YxGeomConstraint& fixed = host.constrain<YxFixedConstraint>({host.curve(host.line())});
    EXPECT_GT(line->nodeId(), 0U);
    EXPECT_EQ(fixed.nodeId(), line->nodeId() + 2);
}

TEST(GroupNodes, AreFoundByTheirNumbers) {
    SmallHost host;
    YxConstrainedGeometry* line = host.curve(host.line());
    YxGeomConstraint& fixed = host.constrain<YxFixedConstraint>({line});
    EXPECT_EQ(host.group.getGroupNodePtr(line->nodeId()), line);
    EXPECT_EQ(host.group.getGroupNodePtr(fixed.nodeId()), &fixed);
    EXPECT_EQ(host.group.getGroupNodePtr(0), nullptr);
    EXPECT_EQ(host.group.getGroupNodePtr(fixed.nodeId() + 1), nullptr);
    EXPECT_EQ(host.group.getGroupNodePtr(~0U), nullptr);
}

TEST(GroupGeometries, AreListedInTheOrderOfTheirMaking) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    const YxDbObjectId b = host.line();
    YxConstrainedGeometry* curveB = host.curve(b);
    YxConstrainedGeometry* endA = host.point(a, YxDb::kEndImplicit);
    YxConstrainedGeometry* startB = host.point(b, YxDb::kStartImplicit);
    EXPECT_THAT(geometriesOf(host.group), ElementsAre(curveB, host.curve(a), endA, startB));
}

TEST(GroupGeometries, StandOnTheirDependencies) {
    SmallHost host;
    YxConstrainedGeometry* curve = host.curve(host.line());
    const auto open = openedForRead(curve->geomDependencyId());
    YxConstrainedGeometry* found = nullptr;
    EXPECT_EQ(host.group.getConstrainedGeometry(YxSmartPtr<YxDbAssocGeomDependency>(open).get(), found, nullptr, -1),
              Yxrt::eOk);
    EXPECT_EQ(found, curve);
}

TEST(GroupGeometries, OfADependencyWithoutGeometryAreNull) {
    SmallHost host;
    YxConstrainedGeometry* found = host.curve(host.line());
    const YxDbAssocGeomDependency& bare = host.dependency(host.line());
    EXPECT_EQ(host.group.getConstrainedGeometry(&bare, found), Yxrt::eInvalidInput);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(host.group.getConstrainedGeometry(static_cast<const YxDbAssocGeomDependency*>(nullptr), found),
              Yxrt::eInvalidInput);
}

TEST(GroupGeometries, OfAnotherGroupsDependencyAreNull) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    const YxConstrainedGeometry* curve = host.curve(a);
    const YxDbAssoc2dConstraintGroup& second = HostBuilder::group(host.builder.addGroup());
    YxConstrainedGeometry* found = nullptr;
    second.getConstrainedGeometry(
        static_cast<const YxDbAssocGeomDependency*>(HostAccess::peek(curve->geomDependencyId())), found);
    EXPECT_EQ(found, nullptr);
}

TEST(GroupGeometries, AreFoundByTypeOfImplicitPoint) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    YxConstrainedGeometry* end = host.point(a, YxDb::kEndImplicit);
    const auto* dependency = host.builder.dependency(host.group, {.entity = a});
    YxConstrainedGeometry* found = nullptr;
    YxDb::ImplicitPointType type = YxDb::kEndImplicit;
    host.group.getConstrainedGeometry(dependency, found, &type);
    EXPECT_EQ(found, end);
    type = YxDb::kStartImplicit;
    host.group.getConstrainedGeometry(dependency, found, &type);
    EXPECT_EQ(found, nullptr);
}

TEST(GroupGeometries, AreFoundByThePartOfAPolyline) {
    SmallHost host;
    const YxDbObjectId id = host.polyline({31, 7, 19});
    YxConstrainedGeometry* second = host.curve(id, 2);
    YxConstrainedGeometry* found = nullptr;
    EXPECT_EQ(host.group.getConstrainedGeometry(YxDbFullSubentPath(id, {YxDb::kEdgeSubentType, 2}), found), Yxrt::eOk);
    EXPECT_EQ(found, second);
    host.group.getConstrainedGeometry(YxDbFullSubentPath(id, {YxDb::kEdgeSubentType, 1}), found);
    EXPECT_EQ(found, nullptr);
}

TEST(ImplicitPoints, NameTheCurveThatDefinesThem) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    const auto& end = static_cast<YxConstrainedImplicitPoint&>(*host.point(a, YxDb::kEndImplicit));
    EXPECT_EQ(end.constrainedCurveId(), host.curve(a)->nodeId());
    EXPECT_EQ(end.pointType(), YxDb::kEndImplicit);
    EXPECT_EQ(end.pointIndex(), -1);
    EXPECT_EQ(end.geomDependencyId(), host.curve(a)->geomDependencyId());
}

TEST(SegmentGeometries, AreOfTheKindThatThePolylineTellsOfItsSegment) {
    for (const double bulge : {0.0, 5e-11, -1e-10, 2e-10, 1.0}) {
        SmallHost host;
        const YxDbObjectId id = host.builder.add(EntityAccess::makePolyline({.vertices = {{{0, 0}, bulge}, {{9, 0}}}}));
        const bool isArc = static_cast<YxDbPolyline*>(HostAccess::peek(id))->segType(0) == YxDbPolyline::kArc;
        EXPECT_EQ(host.curve(id, 1)->isKindOf(YxConstrainedArc::desc()), isArc) << bulge;
        EXPECT_EQ(host.curve(id, 1)->isKindOf(YxConstrainedBoundedLine::desc()), !isArc) << bulge;
    }
}

TEST(ImplicitPoints, AreMadeOnce) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    EXPECT_EQ(host.point(a, YxDb::kEndImplicit), host.point(a, YxDb::kEndImplicit));
    EXPECT_NE(host.point(a, YxDb::kEndImplicit), host.point(a, YxDb::kStartImplicit));
}

struct ClassRow {
    const char* entity;
    std::unique_ptr<YxDbEntity> made;
    const YxRxClass* geometry;
};

TEST(GroupGeometries, AreOfTheClassOfTheirEntity) {
    constexpr double kPi = std::numbers::pi;
    ClassRow rows[] = {
        {"line", EntityAccess::makeLine({0, 0, 0}, {1, 0, 0}), YxConstrainedBoundedLine::desc()},
        {"ray", EntityAccess::makeRay({0, 0, 0}, {1, 0, 0}), YxConstrainedRay::desc()},
        {"xline", EntityAccess::makeXline({0, 0, 0}, {1, 0, 0}), YxConstrainedLine::desc()},
        {"circle", EntityAccess::makeCircle({}), YxConstrainedCircle::desc()},
        {"arc", EntityAccess::makeArc({}), YxConstrainedArc::desc()},
        {"ellipse", EntityAccess::makeEllipse({.ratio = 0.5}), YxConstrainedEllipse::desc()},
        {"half ellipse", EntityAccess::makeEllipse({.ratio = 0.5, .endAngle = kPi}),
         YxConstrainedBoundedEllipse::desc()},
        {"point", EntityAccess::makePoint({0, 0, 0}), YxConstrainedPoint::desc()},
        {"text", EntityAccess::makeText({}), YxConstrainedDatumLine::desc()},
        {"mtext", EntityAccess::makeMText({}), YxConstrainedDatumLine::desc()},
    };
    SmallHost host;
    for (ClassRow& row : rows)
        EXPECT_EQ(host.curve(host.builder.add(std::move(row.made)))->isA(), row.geometry) << row.entity;
}

TEST(ConstrainedGeometry, ListsTheConstraintsThatNameItInTheirOrder) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    YxGeomConstraint& horizontal = host.constrain<YxHorizontalConstraint>({host.curve(a)});
    YxGeomConstraint& onEnd = host.constrain<YxFixedConstraint>({host.point(a, YxDb::kEndImplicit)});
    YxGeomConstraint& fixed = host.constrain<YxFixedConstraint>({host.curve(a)});
    YxArray<YxGeomConstraint*> connected;
    host.curve(a)->getConnectedConstraints(connected);
    EXPECT_THAT(listed(connected), ElementsAre(&horizontal, &fixed));
    host.point(a, YxDb::kEndImplicit)->getConnectedConstraints(connected);
    EXPECT_THAT(listed(connected), ElementsAre(&onEnd));
}

TEST(ConstrainedGeometry, ListsAConstraintThatNamesItTwiceOnce) {
    SmallHost host;
    YxConstrainedGeometry* curve = host.curve(host.line());
    YxGeomConstraint& equal = host.constrain<YxEqualLengthConstraint>({curve, curve});
    YxArray<YxGeomConstraint*> connected;
    curve->getConnectedConstraints(connected);
    EXPECT_THAT(listed(connected), ElementsAre(&equal));
}

TEST(Constraint, IsImpliedUntilTheOppositeIsSet) {
    SmallHost host;
    YxGeomConstraint& fixed = host.constrain<YxFixedConstraint>({host.curve(host.line())});
    EXPECT_FALSE(fixed.isImplied() || fixed.isInternal());
    fixed.setIsImplied(true);
    EXPECT_TRUE(fixed.isImplied());
    fixed.setIsImplied(false);
    EXPECT_FALSE(fixed.isImplied());
}

}  // namespace
}  // namespace holdfast
