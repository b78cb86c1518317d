#include <YxDbConstraints/AssocConstraintHeader.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/network/SmallHost.h"

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void expectInitialValues(const AssocConstraintHeader& header) {
    EXPECT_EQ(header.editKind, 0);
    EXPECT_TRUE(header.collectNeeded);
    EXPECT_FALSE(header.dragActive || header.rotateEvaluated || header.dropCollected || header.dropChanged ||
                 header.boxFlag);
    EXPECT_EQ(header.boxMode, 0);
    EXPECT_EQ(header.converter, nullptr);
    EXPECT_TRUE(header.editedObjectIds.isEmpty() && header.dropObjectIds.isEmpty() && header.points.isEmpty());
    EXPECT_TRUE(header.polylineEntities.isEmpty() && header.polylineIndexLists.isEmpty() &&
                header.unconstrainedEntities.isEmpty() && header.entitiesToDraw.isEmpty());
    EXPECT_TRUE(header.preEditEntities.empty());
    EXPECT_EQ(header.dragTransform, YxGeMatrix3d::kIdentity);
    EXPECT_EQ(header.staticTransform, YxGeMatrix3d::kIdentity);
}

TEST(EvaluationHeader, StartsEmptyAndInNeedOfCollecting) {
    const AssocConstraintHeader header;
    expectInitialValues(header);
}

TEST(EvaluationHeader, GoesBackToItsInitialValues) {
    SmallHost host;
    AssocConstraintHeader header;
    YxDbLine* copy = EntityAccess::makeLine({0, 0, 0}, {1, 0, 0}).release();  // the header's from here on
    header.adopt(copy);
    header.editKind = 18;
    header.dragActive = header.rotateEvaluated = header.dropCollected = header.dropChanged = header.boxFlag = true;
    header.collectNeeded = false;
    header.boxMode = 1;
    header.converter = LvEvaDataConverterFactory::createInstance(kAlignEditor);
    header.editedObjectIds.append(host.groupId);
    header.dropObjectIds.append(host.groupId);
    header.points.append(YxGePoint3d());
    header.preEditEntities[host.groupId] = copy;
    header.polylineEntities.append(copy);
    header.polylineIndexLists.append(YxArray<int>());
    header.unconstrainedEntities.append(copy);
    header.entitiesToDraw.append(copy);
    header.dragTransform.setToTranslation({1, 0, 0});
    header.staticTransform.setToTranslation({1, 0, 0});
    header.uninit();
    expectInitialValues(header);
    EXPECT_THAT(hostState().copies, IsEmpty());
    EXPECT_THAT(hostState().converters, IsEmpty());
}

TEST(EvaluationHeader, LeavesTheForbidFlagToTheHost) {
    SmallHost host;
    AssocConstraintHeader header;
    AssocConstraintHeader::m_isForbidEvaStatic = true;
    header.uninit();
    EXPECT_TRUE(AssocConstraintHeader::m_isForbidEvaStatic);
}

TEST(EvaluationLedger, FreesACopyOnceThatWasHandedOverTwice) {
    SmallHost host;
    AssocConstraintHeader header;
    YxDbLine* copy = EntityAccess::makeLine({0, 0, 0}, {1, 0, 0}).release();  // the header's from here on
    header.adopt(copy);
    header.adopt(copy);
    header.adopt(nullptr);
    EXPECT_THAT(HostAccess::adopted(header), ElementsAre(copy));
    header.uninit();
    EXPECT_THAT(HostAccess::adopted(header), IsEmpty());
    EXPECT_THAT(hostState().copies, IsEmpty());
}

TEST(EvaluationLedger, PassesACopyOnToTheHeaderThatAdoptsItLast) {
    SmallHost host;
    AssocConstraintHeader first;
    AssocConstraintHeader second;
    YxDbLine* copy = EntityAccess::makeLine({0, 0, 0}, {1, 0, 0}).release();  // the first header's from here on
    first.adopt(copy);
    second.adopt(copy);
    EXPECT_THAT(HostAccess::adopted(first), IsEmpty());
    EXPECT_THAT(HostAccess::adopted(second), ElementsAre(copy));
    first.uninit();
    EXPECT_TRUE(hostState().copies.contains(copy));
}

TEST(EvaluationLedger, EndsWithItsHeader) {
    SmallHost host;
    {
        AssocConstraintHeader header;
        header.adopt(EntityAccess::makeLine({0, 0, 0}, {1, 0, 0}).release());  // the header's from here on
        header.converter = LvEvaDataConverterFactory::createInstance(kStretchEditor);
    }
    EXPECT_THAT(hostState().copies, IsEmpty());
    EXPECT_THAT(hostState().converters, IsEmpty());
}

TEST(EvaluationLedger, OutlivesTheListsThatNameItsCopies) {
    SmallHost host;
    AssocConstraintHeader header;
    YxDbLine* copy = EntityAccess::makeLine({0, 0, 0}, {1, 0, 0}).release();  // the header's from here on
    header.adopt(copy);
    header.unconstrainedEntities.append(copy);
    header.unconstrainedEntities.setLogicalLength(0);
    EXPECT_TRUE(hostState().copies.contains(copy));
}

TEST(EvaluationLedger, DoesNotFreeAgainWhatSomebodyElseFreed) {
    SmallHost host;
    AssocConstraintHeader header;
    YxDbLine* copy = EntityAccess::makeLine({0, 0, 0}, {1, 0, 0}).release();  // the header's from here on
    header.adopt(copy);
    delete copy;
    EXPECT_THAT(host.process.misuses(), ElementsAre("a copy that an evaluation header owns is freed"));
    EXPECT_THAT(HostAccess::adopted(header), IsEmpty());
}

}  // namespace
}  // namespace holdfast
