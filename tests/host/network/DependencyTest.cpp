#include <YxDbConstraints/YxDbAssocDependency.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

YxDbCompoundObjectId compound(const YxDbObjectId& id) {
    YxDbCompoundObjectId path;
    path.set(id);
    return path;
}

TEST(Dependency, MovesFromOneObjectsReactorsToTheEndOfAnothers) {
    SmallHost host;
    const YxDbObjectId from = host.line();
    const YxDbObjectId to = host.line();
    const YxDbObjectId standing = host.dependency(to).objectId();
    YxDbAssocGeomDependency& moved = host.dependency(from);
    const auto open = openedForWrite(moved.objectId());

    EXPECT_EQ(moved.detachFromObject(), Yxrt::eOk);
    EXPECT_EQ(moved.attachToObject(compound(to)), Yxrt::eOk);
    EXPECT_THAT(HostAccess::reactors(*HostAccess::peek(from)), IsEmpty());
    EXPECT_THAT(HostAccess::reactors(*HostAccess::peek(to)), ElementsAre(standing, moved.objectId()));
}

TEST(Dependency, TakesItsConstrainedGeometryAlong) {
    SmallHost host;
    const YxDbObjectId from = host.line();
    const YxDbObjectId to = host.line();
    YxConstrainedGeometry* geometry = host.curve(from);
    const auto open = openedForWrite(geometry->geomDependencyId());
    const YxSmartPtr<YxDbAssocGeomDependency> dependency = open;
    dependency->detachFromObject();
    dependency->attachToObject(compound(to));
    YxConstrainedGeometry* found = nullptr;
    host.group.getConstrainedGeometry(dependency.get(), found);
    EXPECT_EQ(found, geometry);
}

TEST(Dependency, KeepsStatusAndNameWhenItMoves) {
    SmallHost host;
    const YxDbObjectId from = host.polyline({7, 8, 9});
    YxDbAssocGeomDependency& dependency = host.dependency(from, 2);
    const auto open = openedForWrite(dependency.objectId());
    dependency.setStatus(kSegmentRemovedAssocStatus, true);
    dependency.detachFromObject();
    dependency.attachToObject(compound(host.polyline({1, 2})));
    EXPECT_EQ(dependency.status(), kSegmentRemovedAssocStatus);
    const auto* name = static_cast<const YxDbAssocEdgePersSubentId*>(dependency.persistentSubentId());
    EXPECT_EQ(name->index1(), 8);
    EXPECT_EQ(name->index2(), 9);
}

TEST(Dependency, AttachesOnlyToResidentObjectsAndOnlyOnce) {
    SmallHost host;
    const YxDbObjectId id = host.line();
    YxDbAssocGeomDependency& dependency = host.dependency(id);
    const auto open = openedForWrite(dependency.objectId());
    EXPECT_EQ(dependency.attachToObject(compound(id)), Yxrt::eInvalidInput);
    EXPECT_EQ(HostAccess::reactorCount(*HostAccess::peek(id), dependency.objectId()), 1U);
    EXPECT_EQ(dependency.detachFromObject(), Yxrt::eOk);
    EXPECT_EQ(dependency.detachFromObject(), Yxrt::eNotApplicable);
    EXPECT_EQ(dependency.attachToObject(YxDbCompoundObjectId()), Yxrt::eNotInDatabase);
}

TEST(Dependency, DoesNotAttachToAnErasedObject) {
    SmallHost host;
    const YxDbObjectId from = host.line();
    const YxDbObjectId gone = host.line();
    YxDbAssocGeomDependency& dependency = host.dependency(from);
    const auto open = openedForWrite(dependency.objectId());
    dependency.detachFromObject();
    HostAccess::erase(gone);
    EXPECT_EQ(dependency.attachToObject(compound(gone)), Yxrt::eWasErased);
    EXPECT_THAT(HostAccess::reactors(*HostAccess::peek(gone)), IsEmpty());
    EXPECT_EQ(dependency.attachToObject(compound(from)), Yxrt::eOk);
}

TEST(Dependency, ChangesOnlyWhileOpenForWrite) {
    SmallHost host;
    const YxDbObjectId id = host.line();
    YxDbAssocGeomDependency& dependency = host.dependency(id);
    const auto open = openedForRead(dependency.objectId());
    EXPECT_EQ(dependency.setStatus(kSegmentRemovedAssocStatus), Yxrt::eNotOpenForWrite);
    EXPECT_EQ(dependency.detachFromObject(), Yxrt::eNotOpenForWrite);
    EXPECT_EQ(dependency.attachToObject(compound(id)), Yxrt::eNotOpenForWrite);
    EXPECT_EQ(dependency.setSubentity({YxDb::kEdgeSubentType, 1}), Yxrt::eNotOpenForWrite);
    EXPECT_EQ(dependency.status(), kUpToDateAssocStatus);
    EXPECT_THAT(host.process.misuses(), ElementsAre("setStatus on a dependency that is not open for write",
                                                    "detachFromObject on a dependency that is not open for write",
                                                    "attachToObject on a dependency that is not open for write",
                                                    "setSubentity on a dependency that is not open for write"));
}

TEST(Dependency, BelongsToItsGroup) {
    SmallHost host;
    EXPECT_EQ(host.dependency(host.line()).owningAction(), host.groupId);
}

TEST(DependenciesOnObject, AreItsReactorsThatAreDependencies) {
    SmallHost host;
    const YxDbObjectId id = host.line();
    const YxDbObjectId geometryDependency = host.dependency(id).objectId();
    const YxDbObjectId other = host.builder.addOtherReactor(id);
    HostAccess::addReactor(*HostAccess::peek(id), host.groupId);
    YxArray<YxDbObjectId> found;
    found.append(host.groupId);
    EXPECT_EQ(YxDbAssocDependency::getDependenciesOnObject(HostAccess::peek(id), true, true, found), Yxrt::eOk);
    EXPECT_THAT(listed(found), ElementsAre(geometryDependency, other));
    EXPECT_EQ(YxDbAssocDependency::getDependenciesOnObject(nullptr, true, true, found), Yxrt::eInvalidInput);
    EXPECT_THAT(listed(found), IsEmpty());
}

TEST(DependenciesOnObject, AreNoneThatNeitherReadNorWrite) {
    SmallHost host;
    const YxDbObjectId id = host.line();
    const YxDbObjectId dependency = host.dependency(id).objectId();
    YxArray<YxDbObjectId> found;
    EXPECT_EQ(YxDbAssocDependency::getDependenciesOnObject(HostAccess::peek(id), false, false, found), Yxrt::eOk);
    EXPECT_THAT(listed(found), IsEmpty());
    EXPECT_EQ(YxDbAssocDependency::getDependenciesOnObject(HostAccess::peek(id), true, false, found), Yxrt::eOk);
    EXPECT_THAT(listed(found), ElementsAre(dependency));
}

TEST(Reactors, LeaveOnlyAnObjectThatIsOpenForWrite) {
    SmallHost host;
    const YxDbObjectId id = host.line();
    const YxDbObjectId reactor = host.dependency(id).objectId();
    YxDbObject& line = *HostAccess::peek(id);
    EXPECT_EQ(line.removePersistentReactor(reactor), Yxrt::eNotOpenForWrite);
    EXPECT_THAT(host.process.misuses(), ElementsAre("removePersistentReactor on an object that is not open for write"));
    const auto open = openedForWrite(id);
    EXPECT_EQ(line.removePersistentReactor(reactor), Yxrt::eOk);
    EXPECT_EQ(line.removePersistentReactor(reactor), Yxrt::eInvalidInput);
    EXPECT_THAT(HostAccess::reactors(line), IsEmpty());
}

TEST(Reactors, LeaveACopyWithoutOpeningIt) {
    SmallHost host;
    const YxDbObjectId reactor = host.dependency(host.line()).objectId();
    const auto copy = EntityAccess::makeLine({0, 0, 0}, {1, 0, 0});
    HostAccess::addReactor(*copy, reactor);
    EXPECT_EQ(copy->removePersistentReactor(reactor), Yxrt::eOk);
    EXPECT_THAT(host.process.misuses(), IsEmpty());
}

}  // namespace
}  // namespace holdfast
