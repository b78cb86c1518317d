#include <YxDbConstraints/YxDbAssocPersSubentId.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::Pair;

std::pair<int, int> nameOf(const YxDbAssocGeomDependency& dependency) {
    const auto* name = static_cast<const YxDbAssocEdgePersSubentId*>(dependency.persistentSubentId());
    return {name->index1(), name->index2()};
}

std::vector<int> identifiers(const YxDbObjectId& polyline) {
    std::vector<int> found;
    const auto& entity = static_cast<const YxDbPolyline&>(*HostAccess::peek(polyline));
    for (const PolylineVertex& vertex : EntityAccess::polyline(entity).vertices)
        found.push_back(vertex.identifier);
    return found;
}

Yxrt::ErrorStatus repoint(YxDbAssocGeomDependency& dependency, int segment) {
    const auto open = openedForWrite(dependency.objectId());
    return dependency.setSubentity({YxDb::kEdgeSubentType, segment});
}

TEST(Subentity, NamesASegmentByTheIdentifiersOfItsEnds) {
    SmallHost host;
    const YxDbObjectId id = host.polyline({14, 11, 13});
    YxDbAssocGeomDependency& dependency = host.dependency(id, 1);
    EXPECT_THAT(nameOf(dependency), Pair(14, 11));
    EXPECT_EQ(repoint(dependency, 2), Yxrt::eOk);
    EXPECT_THAT(nameOf(dependency), Pair(11, 13));
    EXPECT_EQ(dependency.subentType(), unsigned(YxDb::kEdgeSubentType));
}

TEST(Subentity, WrapsAtTheLastSegmentOfAClosedPolyline) {
    SmallHost host;
    const YxDbObjectId id = host.polyline({5, 6, 7}, true);
    YxDbAssocGeomDependency& dependency = host.dependency(id, 1);
    EXPECT_EQ(repoint(dependency, 3), Yxrt::eOk);
    EXPECT_THAT(nameOf(dependency), Pair(7, 5));
}

TEST(Subentity, NumbersAVertexWhenItIsFirstReferredTo) {
    SmallHost host;
    const YxDbObjectId id = host.polyline({0, 0, 9, 0});
    EXPECT_THAT(nameOf(host.dependency(id, 1)), Pair(10, 11));
    EXPECT_THAT(nameOf(host.dependency(id, 2)), Pair(11, 9));
    EXPECT_THAT(identifiers(id), ElementsAre(10, 11, 9, 0));
}

TEST(Subentity, NeverGivesAnIdentifierTwice) {
    SmallHost host;
    const YxDbObjectId id = host.polyline({0, 0, 20});
    auto& polyline = static_cast<YxDbPolyline&>(*HostAccess::peek(id));
    {
        const auto open = openedForWrite(id);
        EntityAccess::removeVertex(polyline, 2);
    }
    EXPECT_THAT(nameOf(host.dependency(id, 1)), Pair(21, 22));
}

TEST(Subentity, OutOfRangeChangesNothing) {
    SmallHost host;
    const YxDbObjectId id = host.polyline({0, 0, 0});
    YxDbAssocGeomDependency& dependency = host.dependency(id, 1);
    EXPECT_EQ(repoint(dependency, 0), Yxrt::eOutOfRange);
    EXPECT_EQ(repoint(dependency, 3), Yxrt::eOutOfRange);
    EXPECT_EQ(repoint(dependency, -1), Yxrt::eOutOfRange);
    EXPECT_THAT(nameOf(dependency), Pair(1, 2));
    EXPECT_THAT(identifiers(id), ElementsAre(1, 2, 0));
}

TEST(Subentity, OfADetachedDependencyCannotBeSet) {
    SmallHost host;
    YxDbAssocGeomDependency& dependency = host.dependency(host.polyline({1, 2}), 1);
    const auto open = openedForWrite(dependency.objectId());
    dependency.detachFromObject();
    EXPECT_EQ(dependency.setSubentity({YxDb::kEdgeSubentType, 1}), Yxrt::eNotApplicable);
    EXPECT_THAT(nameOf(dependency), Pair(1, 2));
}

TEST(Subentity, OfAPlainCurveHasNoPersistentName) {
    SmallHost host;
    YxDbAssocGeomDependency& dependency = host.dependency(host.line());
    EXPECT_EQ(dependency.persistentSubentId(), nullptr);
    EXPECT_EQ(dependency.subentType(), unsigned(YxDb::kEdgeSubentType));
    EXPECT_EQ(repoint(dependency, 1), Yxrt::eOk);
    EXPECT_EQ(repoint(dependency, 2), Yxrt::eOutOfRange);
    EXPECT_EQ(dependency.persistentSubentId(), nullptr);
}

TEST(PartLister, ListsOneEdgeOfACurveAndEverySegmentOfAPolyline) {
    SmallHost host;
    const YxDbObject& line = *HostAccess::peek(host.line());
    const YxDbObject& polyline = *HostAccess::peek(host.polyline({0, 0, 0}, true));
    auto* lister = static_cast<YxDbAssocPersSubentIdPE*>(line.queryX(YxDbAssocPersSubentIdPE::desc()));
    ASSERT_NE(lister, nullptr);
    YxArray<YxDbSubentId> parts;
    lister->getAllSubentities(static_cast<const YxDbEntity*>(&line), YxDb::kEdgeSubentType, parts);
    EXPECT_THAT(listed(parts), ElementsAre(YxDbSubentId(2, 1)));
    lister->getAllSubentities(static_cast<const YxDbEntity*>(&polyline), YxDb::kEdgeSubentType, parts);
    EXPECT_THAT(listed(parts), ElementsAre(YxDbSubentId(2, 1), YxDbSubentId(2, 2), YxDbSubentId(2, 3)));
    lister->getAllSubentities(static_cast<const YxDbEntity*>(&polyline), YxDb::kVertexSubentType, parts);
    EXPECT_TRUE(parts.isEmpty());
}

TEST(PartLister, IsNoExtensionOfGroups) {
    SmallHost host;
    EXPECT_EQ(host.group.queryX(YxDbAssocPersSubentIdPE::desc()), nullptr);
}

}  // namespace
}  // namespace holdfast
