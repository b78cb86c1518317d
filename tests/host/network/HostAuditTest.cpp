#include "host/model/HostAudit.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "host/model/entities/EntityAccess.h"
#include "tests/support/TestScene.h"

namespace holdfast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr const char* kScene = "line a 0,0 1,0; line b 0,0 0,1; k: composite { fixed a }; coincident a.start b.start";

YxDbEntity* copyOf(const Scene& scene, const char* name) {
    return static_cast<YxDbEntity*>(scene.entity(name)->clone());
}

TEST(HostAudit, FindsNothingWhenAllIsWell) {
    Scene scene(kScene);
    EXPECT_THAT(scene.audit(), IsEmpty());
}

TEST(HostAudit, FindsWhatIsLeftOpen) {
    Scene scene(kScene);
    auto reading = YxDbObjectIdImpl::openObject(scene.id("a"), YxDb::kForRead, false);
    auto writing = YxDbObjectIdImpl::openObject(scene.groupId(), YxDb::kForWrite, false);
    EXPECT_THAT(scene.audit(), ElementsAre("group is left open 1 times, for write", "a is left open 1 times"));
}

TEST(HostAudit, FindsACopyThatNobodyOwns) {
    Scene scene(kScene);
    const std::unique_ptr<YxDbEntity> copy(copyOf(scene, "a"));
    EXPECT_THAT(scene.audit(), ElementsAre("a copy of a YxDbLine belongs to nobody"));
}

TEST(HostAudit, LeavesAHeaderItsCopiesAndItsConverter) {
    Scene scene(kScene);
    AssocConstraintHeader& header = *HostAccess::header(scene.group());
    header.adopt(copyOf(scene, "a"));
    header.converter = LvEvaDataConverterFactory::createInstance(kAlignEditor);
    EXPECT_THAT(scene.audit(), IsEmpty());
}

TEST(HostAudit, FindsAConverterThatNobodyOwnsUnlessTheHostKeepsIt) {
    Scene scene(kScene);
    LvEvaDataConverterFactory::createInstance(kStaticEvaluateEditor);
    EXPECT_THAT(scene.audit(), IsEmpty());
    LvEvaDataConverterFactory::createInstance(kAlignEditor);
    EXPECT_THAT(scene.audit(), ElementsAre("a converter for editor 19 belongs to nobody"));
}

TEST(HostAudit, RepeatsWhatWasMisused) {
    Scene scene(kScene);
    scene.group().deleteConstraint(scene.constraint("k"));
    EXPECT_THAT(scene.audit(), ElementsAre("deleteConstraint on a group that is not open for write"));
}

TEST(HostAudit, FindsACopyThatWasFreedTwice) {
    Scene scene(kScene);
    YxDbEntity* copy = copyOf(scene, "a");
    HostAccess::header(scene.group())->adopt(copy);
    delete copy;
    HostAccess::header(scene.group())->uninit();
    EXPECT_THAT(scene.audit(), ElementsAre("a copy that an evaluation header owns is freed"));
}

TEST(HeaderAudit, FindsWhatIsNamedAfterItWasFreed) {
    Scene scene(kScene);
    AssocConstraintHeader& header = *HostAccess::header(scene.group());
    const std::unique_ptr<YxDbEntity> alive(copyOf(scene, "a"));
    YxDbEntity* freed = copyOf(scene, "a");
    delete freed;
    header.entitiesToDraw.append(scene.entity("a"));
    header.entitiesToDraw.append(nullptr);
    header.polylineEntities.append(alive.get());
    EXPECT_THAT(auditHeaders(scene.process()), IsEmpty());
    header.entitiesToDraw.append(freed);
    header.preEditEntities[scene.id("a")] = freed;
    EXPECT_THAT(auditHeaders(scene.process()),
                ElementsAre("the header of group names in preEditEntities what is freed",
                            "the header of group names in entitiesToDraw what is freed"));
    header.uninit();
}

TEST(NetworkAudit, FindsAReactorOfAnotherObject) {
    Scene scene(kScene);
    HostAccess::addReactor(*scene.entity("b"), scene.dependency("a")->objectId());
    EXPECT_THAT(auditNetwork(scene.process()),
                ElementsAre("b has the reactor dependency a, which depends on another object"));
}

TEST(NetworkAudit, FindsADependencyThatItsObjectDoesNotKnow) {
    Scene scene(kScene);
    HostAccess::setObject(*scene.dependency("a"), scene.id("b"));
    EXPECT_THAT(auditNetwork(scene.process()),
                ElementsAre("a has the reactor dependency a, which depends on another object",
                            "dependency a does not stand once among the reactors of b"));
}

TEST(NetworkAudit, FindsADependencyThatStandsTwice) {
    Scene scene(kScene);
    HostAccess::addReactor(*scene.entity("a"), scene.dependency("a")->objectId());
    EXPECT_THAT(auditNetwork(scene.process()), ElementsAre("dependency a does not stand once among the reactors of a"));
}

TEST(NetworkAudit, FindsWhatErasingLeavesBehind) {
    Scene scene(kScene);
    HostAccess::erase(scene.id("a"));
    EXPECT_THAT(auditNetwork(scene.process()), ElementsAre("dependency a depends on the erased a"));
    HostAccess::erase(scene.id("a"), false);
    HostAccess::erase(scene.dependency("b")->objectId());
    EXPECT_THAT(auditNetwork(scene.process()),
                UnorderedElementsAre("b has a reactor that is erased", "a geometry stands on an erased dependency"));
}

TEST(NetworkAudit, FindsANodeOfAnotherGroup) {
    Scene scene("line a 0,0 1,0; fixed a; group second; fixed a.end; fixed a.start; fixed a.mid");
    HostAccess::addConstraint<YxFixedConstraint>(scene.group(), {HostAccess::geometries(scene.group("second")).back()});
    const auto findings = auditNetwork(scene.process());
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings[0], "YxFixedConstraint names a geometry that is not in its group");
    EXPECT_EQ(findings[1], "a geometry names YxFixedConstraint, which is not in its group");
}

TEST(NetworkAudit, FindsACompositeAndAMemberThatDisagree) {
    Scene scene("line a 0,0 1,0; fixed a; k: composite { fixed a.start }; l: composite { fixed a.end }");
    HostAccess::own(static_cast<YxCompositeConstraint&>(*scene.constraint("l")), *scene.constraint("c3"));
    EXPECT_THAT(auditNetwork(scene.process()), ElementsAre("k owns c3, which names another owner"));
}

TEST(SegmentAudit, FindsADependencyOnAVertexThatIsGone) {
    Scene scene("polyline p 0,0#1 1,0#2 2,0#3; dependency p[2]; dependency p[1]");
    EXPECT_THAT(auditSegments(scene.process()), IsEmpty());
    {
        const auto open = YxDbObjectIdImpl::openObject(scene.id("p"), YxDb::kForWrite, false);
        scene.entity<YxDbPolyline>("p")->setVertexIdentifierAt(2, 7);
    }
    EXPECT_THAT(auditSegments(scene.process()), ElementsAre("dependency p[2] names no segment of p"));
    HostAccess::setStatus(*scene.dependency("p[2]"), kSegmentRemovedAssocStatus);
    EXPECT_THAT(auditSegments(scene.process()), IsEmpty());
}

void leaveOpen() {
    TestScene scene(kScene);
    YxDbEntity* entity = nullptr;
    yxdbOpenObject(entity, scene.id("a"), YxDb::kForRead, false);
}

TEST(TestScene, FailsItsTestWhenTheHostIsNotInOrder) {
    EXPECT_NONFATAL_FAILURE(leaveOpen(), "after the command: a is left open 1 times");
    EXPECT_NONFATAL_FAILURE(leaveOpen(), "the scene is now:\nline a 0,0 1,0\n");
}

}  // namespace
}  // namespace holdfast
