#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Opening, CountsEveryOpenUntilItIsReleased) {
    SmallHost host;
    const YxDbObjectId id = host.line();
    const YxDbObject& line = *HostAccess::peek(id);
    {
        const auto first = openedForRead(id);
        const auto second = first;
        EXPECT_EQ(HostAccess::openCount(line), 2);
    }
    EXPECT_EQ(HostAccess::openCount(line), 0);
}

TEST(Opening, NestsReadingAndWritingInAnyOrder) {
    SmallHost host;
    const YxDbObjectId id = host.line();
    const auto reading = openedForRead(id);
    EXPECT_FALSE(HostAccess::isWritable(*reading));
    {
        const auto writing = openedForWrite(id);
        const auto readingAgain = openedForRead(id);
        EXPECT_TRUE(HostAccess::isWritable(*reading));
    }
    EXPECT_FALSE(HostAccess::isWritable(*reading));
}

TEST(Opening, AnswersNullForNullAndErasedIds) {
    SmallHost host;
    const YxDbObjectId id = host.line();
    HostAccess::erase(id);
    EXPECT_TRUE(openedForRead(YxDbObjectId()).isNull());
    EXPECT_TRUE(openedForRead(id).isNull());
    EXPECT_FALSE(YxDbObjectIdImpl::openObject(id, YxDb::kForRead, true).isNull());
}

TEST(Opening, OfAnotherClassThrowsWhenConverted) {
    SmallHost host;
    const auto group = openedForRead(host.groupId);
    EXPECT_THROW(YxSmartPtr<YxDbEntity>{group}, YxError_NotThatKindOfClass);
    EXPECT_EQ(HostAccess::openCount(*group), 1);
}

TEST(Opening, TheOlderWayEndsWithClose) {
    SmallHost host;
    const YxDbObjectId id = host.line();
    YxDbEntity* entity = nullptr;
    EXPECT_EQ(yxdbOpenObject(entity, id, YxDb::kForRead, false), Yxrt::eOk);
    ASSERT_EQ(entity, HostAccess::peek(id));
    EXPECT_EQ(HostAccess::openCount(*entity), 1);
    EXPECT_EQ(entity->close(), Yxrt::eOk);
    EXPECT_EQ(HostAccess::openCount(*entity), 0);
}

TEST(Opening, TheOlderWayOpensEntitiesOnly) {
    SmallHost host;
    YxDbEntity* entity = nullptr;
    EXPECT_EQ(yxdbOpenObject(entity, host.groupId, YxDb::kForRead, false), Yxrt::eNotApplicable);
    EXPECT_EQ(entity, nullptr);
    EXPECT_EQ(HostAccess::openCount(host.group), 0);
}

TEST(Opening, TheOlderWaySaysWhyItFails) {
    SmallHost host;
    const YxDbObjectId id = host.line();
    HostAccess::erase(id);
    YxDbEntity* entity = nullptr;
    EXPECT_EQ(yxdbOpenObject(entity, YxDbObjectId(), YxDb::kForRead, false), Yxrt::eNullObjectId);
    EXPECT_EQ(yxdbOpenObject(entity, id, YxDb::kForRead, false), Yxrt::eWasErased);
    EXPECT_EQ(entity, nullptr);
}

TEST(Opening, OfACopyNeedsNoCount) {
    SmallHost host;
    const auto copy = EntityAccess::makeLine({0, 0, 0}, {1, 0, 0});
    const YxSmartPtr<YxDbLine> held(copy.get());
    EXPECT_FALSE(copy->objectId().isValid());
    EXPECT_EQ(copy->close(), Yxrt::eNotInDatabase);
    EXPECT_THAT(host.process.misuses(), IsEmpty());
}

TEST(Opening, ReleasingWhatIsNotOpenIsMisuse) {
    SmallHost host;
    yxrxRelease(HostAccess::peek(host.line()));
    EXPECT_THAT(host.process.misuses(), ElementsAre("a reference is given back on an object that is not open"));
}

TEST(Opening, UsingAnEntityAfterItsLastReleaseIsMisuse) {
    SmallHost host;
    const YxDbObjectId id = host.line();
    const auto& line = static_cast<const YxDbLine&>(*HostAccess::peek(id));
    auto first = openedForRead(id);
    auto second = first;
    first.release();
    line.startPoint();
    EXPECT_THAT(host.process.misuses(), IsEmpty());
    second.release();
    YxGePoint3d end;
    EXPECT_EQ(line.getEndPoint(end), Yxrt::eOk);
    EXPECT_FALSE(line.isClosed());
    EXPECT_THAT(host.process.misuses(), ElementsAre("YxDbCurve::getEndPoint on an entity that was released",
                                                    "YxDbCurve::isClosed on an entity that was released"));
}

TEST(Opening, AgainAllowsTheUseOfWhatWasReleased) {
    SmallHost host;
    const YxDbObjectId id = host.polyline({1, 2});
    const auto& line = static_cast<const YxDbPolyline&>(*HostAccess::peek(id));
    EXPECT_EQ(line.numVerts(), 2U);  // never opened: the host's own
    openedForRead(id).release();
    const auto open = openedForRead(id);
    EXPECT_EQ(line.segType(0), YxDbPolyline::kLine);
    EXPECT_THAT(host.process.misuses(), IsEmpty());
}

TEST(Opening, TakingAReferenceOnWhatIsNotOpenIsMisuse) {
    SmallHost host;
    yxrxAddRef(HostAccess::peek(host.line()));
    EXPECT_THAT(host.process.misuses(), ElementsAre("a reference is taken on an object that is not open"));
}

TEST(ObjectIds, AreOrderedAsTheirObjectsWereAdded) {
    SmallHost host;
    const YxDbObjectId first = host.line();
    const YxDbObjectId second = host.line();
    EXPECT_LT(YxDbObjectId(), first);
    EXPECT_LT(first, second);
    EXPECT_FALSE(second < first || first < first || first < YxDbObjectId());
    EXPECT_EQ(first.database(), &host.process.database());
    EXPECT_EQ(YxDbObjectId().database(), nullptr);
}

TEST(ResidentObjects, MayNotBeFreedByTheirUsers) {
    SmallHost host;
    const YxDbObjectId id = host.line();
    delete HostAccess::peek(id);
    EXPECT_THAT(host.process.misuses(), ElementsAre("an object that lives in a database is freed"));
    EXPECT_TRUE(openedForRead(id).isNull());
}

TEST(Copies, CarryNeitherIdNorReactors) {
    SmallHost host;
    const YxDbObjectId id = host.line();
    host.dependency(id);
    const std::unique_ptr<YxRxObject> made(HostAccess::peek(id)->clone());
    const auto& copy = static_cast<const YxDbLine&>(*made);
    EXPECT_FALSE(copy.objectId().isValid());
    EXPECT_THAT(HostAccess::reactors(copy), IsEmpty());
    EXPECT_TRUE(hostState().copies.contains(&copy));
}

}  // namespace
}  // namespace holdfast
