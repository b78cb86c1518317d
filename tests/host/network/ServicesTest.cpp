#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <yxdb/YxDbDatabaseService.h>
#include <yxdb/YxDbHostApplicationServices.h>

#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kDatabaseService = 3;

const YxDbDatabaseService* databaseService() {
    const YxRxObject* service = yxrxGetService(kDatabaseService);
    const bool is = service != nullptr && service->isKindOf(YxDbDatabaseService::desc());
    return is ? static_cast<const YxDbDatabaseService*>(service) : nullptr;
}

TEST(DatabaseService, ListsReactorsInTheObjectsOrder) {
    SmallHost host;
    const YxDbObjectId a = host.line();
    const YxDbObjectId other = host.builder.addOtherReactor(a);
    const YxDbObjectId dependency = host.dependency(a).objectId();
    HostAccess::addReactor(*HostAccess::peek(a), other);
    YxArray<YxDbObjectId> ids;
    ids.append(host.groupId);
    databaseService()->dependencyManager()->getPersistentReactorIds(HostAccess::peek(a), ids);
    EXPECT_THAT(listed(ids), ElementsAre(other, dependency, other));
    databaseService()->dependencyManager()->getPersistentReactorIds(nullptr, ids);
    EXPECT_THAT(listed(ids), IsEmpty());
}

TEST(DatabaseService, IsNumberThree) {
    SmallHost host;
    EXPECT_NE(databaseService(), nullptr);
    EXPECT_EQ(yxrxGetService(2), nullptr);
    EXPECT_EQ(yxrxGetService(4), nullptr);
    host.process.setServicesUp(false);
    EXPECT_EQ(yxrxGetService(kDatabaseService), nullptr);
}

TEST(DatabaseService, KnowsTheModelSpace) {
    SmallHost host;
    const YxDbDatabase& database = host.process.database();
    const YxDbObjectId modelSpace = databaseService()->layoutManager()->modelSpaceId(&database);
    EXPECT_EQ(database.currentSpaceId(), modelSpace);
    EXPECT_TRUE(database.tilemode());
    host.process.setPaperSpace(true);
    EXPECT_NE(database.currentSpaceId(), modelSpace);
    EXPECT_FALSE(database.tilemode());
    EXPECT_TRUE(databaseService()->layoutManager()->modelSpaceId(nullptr).isNull());
}

TEST(Database, HasUserCoordinateSystemsOfModelAndPaper) {
    SmallHost host;
    const YxDbDatabase& database = host.process.database();
    EXPECT_TRUE(database.ucsxdir().isEqualTo(YxGeVector3d::kXAxis));
    EXPECT_TRUE(database.pucsydir().isEqualTo(YxGeVector3d::kYAxis));
    host.process.setUcs({0, 1, 0}, {-1, 0, 0});
    host.process.setPaperUcs({0, 0, 1}, {1, 0, 0});
    EXPECT_TRUE(database.ucsxdir().isEqualTo({0, 1, 0}));
    EXPECT_TRUE(database.ucsydir().isEqualTo({-1, 0, 0}));
    EXPECT_TRUE(database.pucsxdir().isEqualTo({0, 0, 1}));
    EXPECT_TRUE(database.pucsydir().isEqualTo({1, 0, 0}));
}

TEST(ApplicationServices, HoldTheWorkingDatabase) {
    SmallHost host;
    ASSERT_NE(yxdbHostApplicationServices(), nullptr);
    EXPECT_EQ(yxdbHostApplicationServices()->workingDatabase(), &host.process.database());
    host.process.setWorkingDatabase(nullptr);
    EXPECT_EQ(yxdbHostApplicationServices()->workingDatabase(), nullptr);
    host.process.setServicesUp(false);
    EXPECT_EQ(yxdbHostApplicationServices(), nullptr);
}

TEST(HostProcess, LeavesTheProcessAsItWas) {
    {
        SmallHost host;
        host.process.setServicesUp(false);
        host.process.setConstraintServiceUp(false);
        AssocConstraintHeader::m_isForbidEvaStatic = true;
        host.curve(host.line());
    }
    EXPECT_EQ(hostObserver(), nullptr);
    EXPECT_EQ(hostState().workingDatabase, nullptr);
    EXPECT_TRUE(hostState().servicesUp && hostState().constraintServiceUp);
    EXPECT_THAT(hostState().copies, IsEmpty());
    HostProcess next;
    EXPECT_FALSE(AssocConstraintHeader::m_isForbidEvaStatic);
}

}  // namespace
}  // namespace holdfast
