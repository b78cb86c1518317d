#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

template <class Lister>
std::vector<YxGeomConstraint*> constraintsFrom(const Lister& lister) {
    YxArray<YxGeomConstraint*> found;
    lister(found);
    return listed(found);
}

std::vector<YxGeomConstraint*> connectedTo(const YxConstrainedGeometry& geometry) {
    return constraintsFrom([&](auto& found) { geometry.getConnectedConstraints(found); });
}

std::vector<YxGeomConstraint*> ownedBy(const YxCompositeConstraint& composite) {
    return constraintsFrom([&](auto& found) { composite.getOwnedConstraints(found); });
}

/// A composite of a coincidence between two lines' ends and a fixed point.
struct Composite : SmallHost {
    YxConstrainedGeometry* end = point(line(), YxDb::kEndImplicit);
    YxConstrainedGeometry* start = point(line(), YxDb::kStartImplicit);
    YxGeomConstraint& coincidence = constrain<YxPointCoincidenceConstraint>({end, start});
    YxGeomConstraint& fixed = constrain<YxFixedConstraint>({start});
    YxCompositeConstraint& composite = constrain<YxCompositeConstraint>({});
    YxSmartPtr<YxDbObject> open = openedForWrite(groupId);

    Composite() {
        HostAccess::own(composite, coincidence);
        HostAccess::own(composite, fixed);
    }
};

TEST(DeleteConstraint, TakesItOutOfTheGroupAndOffItsGeometries) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    YxConstrainedGeometry* curve = host.curve(a);
    YxGeomConstraint& horizontal = host.constrain<YxHorizontalConstraint>({curve});
    YxGeomConstraint& fixed = host.constrain<YxFixedConstraint>({curve});
    const auto open = openedForWrite(host.groupId);
    EXPECT_EQ(host.group.deleteConstraint(&horizontal), Yxrt::eOk);
    EXPECT_EQ(host.group.getGroupNodePtr(horizontal.nodeId()), nullptr);
    EXPECT_THAT(connectedTo(*curve), ElementsAre(&fixed));
    EXPECT_THAT(HostAccess::constraints(host.group), ElementsAre(&fixed));
}

TEST(DeleteConstraint, LeavesItsGeometriesStanding) {
    SmallHost host;
    YxConstrainedGeometry* curve = host.curve(host.line());
    YxGeomConstraint& fixed = host.constrain<YxFixedConstraint>({curve});
    const auto open = openedForWrite(host.groupId);
    host.group.deleteConstraint(&fixed);
    EXPECT_EQ(host.group.getGroupNodePtr(curve->nodeId()), curve);
    EXPECT_TRUE(YxSmartPtr<YxDbObject>(openedForRead(curve->geomDependencyId())));
}

TEST(DeleteConstraint, OfADeletedOneIsAnError) {
    SmallHost host;
    YxGeomConstraint& fixed = host.constrain<YxFixedConstraint>({host.curve(host.line())});
    const auto open = openedForWrite(host.groupId);
    EXPECT_EQ(host.group.deleteConstraint(&fixed), Yxrt::eOk);
    EXPECT_EQ(host.group.deleteConstraint(&fixed), Yxrt::eWasErased);
    EXPECT_EQ(host.group.deleteConstraint(nullptr), Yxrt::eInvalidInput);
    EXPECT_THAT(host.process.misuses(), IsEmpty());
}

TEST(DeleteConstraint, OfAnotherGroupIsAnError) {
    SmallHost host;
    YxGeomConstraint& fixed = host.constrain<YxFixedConstraint>({host.curve(host.line())});
    const YxDbObjectId second = host.builder.addGroup();
    const auto open = openedForWrite(second);
    EXPECT_EQ(HostBuilder::group(second).deleteConstraint(&fixed), Yxrt::eInvalidInput);
    EXPECT_EQ(host.group.getGroupNodePtr(fixed.nodeId()), &fixed);
}

TEST(DeleteConstraint, NeedsTheGroupOpenForWrite) {
    SmallHost host;
    YxGeomConstraint& fixed = host.constrain<YxFixedConstraint>({host.curve(host.line())});
    const auto open = openedForRead(host.groupId);
    EXPECT_EQ(host.group.deleteConstraint(&fixed), Yxrt::eNotOpenForWrite);
    EXPECT_EQ(host.group.getGroupNodePtr(fixed.nodeId()), &fixed);
    EXPECT_THAT(host.process.misuses(), ElementsAre("deleteConstraint on a group that is not open for write"));
}

TEST(CompositeConstraint, TakesItsMembersAlong) {
    Composite host;
    EXPECT_EQ(host.group.deleteConstraint(&host.composite), Yxrt::eOk);
    EXPECT_THAT(HostAccess::constraints(host.group), IsEmpty());
    EXPECT_THAT(connectedTo(*host.start), IsEmpty());
    EXPECT_THAT(ownedBy(host.composite), IsEmpty());
}

TEST(CompositeConstraint, LosesADeletedMember) {
    Composite host;
    EXPECT_EQ(host.group.deleteConstraint(&host.coincidence), Yxrt::eOk);
    EXPECT_THAT(ownedBy(host.composite), ElementsAre(&host.fixed));
    EXPECT_EQ(host.coincidence.getOwningCompositeConstraint(), nullptr);
    EXPECT_EQ(host.fixed.getOwningCompositeConstraint(), &host.composite);
}

TEST(CompositeConstraint, HoldsOnTheUnionOfItsMembersGeometries) {
    Composite host;
    YxArray<YxConstrainedGeometry*> geometries;
    host.composite.getConstrainedGeometries(geometries);
    EXPECT_THAT(listed(geometries), ElementsAre(host.end, host.start));
}

TEST(CompositeConstraint, IsNotConnectedWhereItsMembersAre) {
    Composite host;
    EXPECT_THAT(connectedTo(*host.start), ElementsAre(&host.coincidence, &host.fixed));
}

TEST(SmoothConstraint, IsACompositeOfItsJoint) {
    SmallHost host;
    auto& smooth = host.constrain<YxG2SmoothConstraint>({});
    HostAccess::own(smooth,
                    host.constrain<YxPointCoincidenceConstraint>({host.point(host.line(), YxDb::kEndImplicit)}));
    EXPECT_TRUE(smooth.isKindOf(YxCompositeConstraint::desc()));
    EXPECT_EQ(ownedBy(smooth).size(), 1U);
}

// Deleting from a geometry on which very many constraints hold drops the deleted ones now and then, not each time.
TEST(DeleteConstraint, KeepsTheOrderOfTheManyThatStay) {
    SmallHost host;
    YxConstrainedGeometry* curve = host.curve(host.line());
    std::vector<YxGeomConstraint*> staying;
    const auto open = openedForWrite(host.groupId);
    for (int i = 0; i < 100; ++i)
        staying.push_back(&host.constrain<YxFixedConstraint>({curve}));
    for (const int index : {50, 0, 97, 30, 31, 32, 33, 1}) {
        host.group.deleteConstraint(staying[std::size_t(index)]);
        staying.erase(staying.begin() + index);
        EXPECT_EQ(connectedTo(*curve), staying);
    }
    while (staying.size() > 3) {
        host.group.deleteConstraint(staying.back());
        staying.pop_back();
    }
    EXPECT_EQ(connectedTo(*curve), staying);
    EXPECT_EQ(HostAccess::constraints(host.group), staying);
}

}  // namespace
}  // namespace holdfast
