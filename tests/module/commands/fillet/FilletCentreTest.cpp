#include <gtest/gtest.h>

#include <type_traits>

#include "host/model/entities/EntityAccess.h"
#include "tests/module/commands/fillet/OpenScene.h"
#include "tests/module/commands/fillet/TestAccess.h"

namespace holdfast::module {
namespace {

const std::string kLines = "line a 0,0 10,0; line b 10,0 10,10; c1: coincident a.end b.start; c2: fixed b.end";

TEST(FilletCentre, ForgetsTheFilletButNotTheGroupNorTheCollection) {
    OpenScene scene(kLines + "; polyline p 0,0#3 5,0#4 9,0#5; fixed p[1]; fixed p[2]");
    ConstraintFilletCmdCenter centre;
    centre.setSelfPolyLineDate(scene.entity("p"), 0, 1, ConstraintFilletCmdCenter::kBetween, true);
    centre.setEntityInfo(scene.entity("a"), scene.entity("b"));
    LvTestAccess::secondInfos(centre).append(ConstraintFilletCmdCenter::PolyInfo());
    LvTestAccess::collected(centre).append(scene.constraint("c1"));
    EXPECT_EQ(hostState().copies.size(), 2U);
    LvTestAccess::reset(centre);
    EXPECT_EQ(hostState().copies.size(), 0U);
    EXPECT_EQ(LvTestAccess::firstVertex(centre), 0U);
    EXPECT_EQ(LvTestAccess::secondVertex(centre), 0U);
    EXPECT_FALSE(LvTestAccess::flag(centre));
    EXPECT_EQ(LvTestAccess::mode(centre), 0);
    EXPECT_TRUE(LvTestAccess::firstInfos(centre).isEmpty());
    EXPECT_TRUE(LvTestAccess::secondInfos(centre).isEmpty());
    EXPECT_TRUE(LvTestAccess::entities(centre).isEmpty());
    EXPECT_TRUE(LvTestAccess::clones(centre).isEmpty());
    EXPECT_EQ(LvTestAccess::groupId(centre), scene.groupId());
    EXPECT_EQ(LvTestAccess::collected(centre).length(), 1);
}

TEST(FilletCentre, ServesAFurtherFilletAfterTheFirst) {
    OpenScene scene(kLines);
    ConstraintFilletCmdCenter centre;
    for (const double end : {8.0, 7.0}) {
        centre.setEntityInfo(scene.entity("a"), scene.entity("b"));
        EXPECT_EQ(LvTestAccess::entities(centre).length(), 2);
        const auto open = YxDbObjectIdImpl::openObject(scene.id("a"), YxDb::kForWrite, false);
        EntityAccess::setLine(*scene.entity<YxDbLine>("a"), {0, 0, 0}, {end, 0, 0});
        EXPECT_EQ(centre.deleteConstraint(), end == 8.0 ? 1 : 0);
    }
}

TEST(FilletCentre, FreesItsClonesWhenItEnds) {
    OpenScene scene(kLines);
    {
        ConstraintFilletCmdCenter centre;
        centre.setEntityInfo(scene.entity("a"), scene.entity("b"));
        EXPECT_EQ(hostState().copies.size(), 2U);
    }
    EXPECT_EQ(hostState().copies.size(), 0U);
}

TEST(FilletCentre, SharesItsClonesWithItsCopy) {
    OpenScene scene(kLines);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("a"), scene.entity("b"));
    ConstraintFilletCmdCenter copy(centre);
    ConstraintFilletCmdCenter assigned;
    assigned = centre;
    for (ConstraintFilletCmdCenter* other : {&copy, &assigned}) {
        EXPECT_EQ(LvTestAccess::clones(*other), LvTestAccess::clones(centre));
        EXPECT_EQ(LvTestAccess::entities(*other), LvTestAccess::entities(centre));
        EXPECT_EQ(LvTestAccess::groupId(*other), scene.groupId());
        LvTestAccess::clones(*other).setLogicalLength(0);  // only one of them may free them
    }
}

TEST(FilletCentre, ResetsAlsoWhenNothingCouldBeDeleted) {
    OpenScene scene(kLines);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("a"), scene.entity("b"));
    scene.refuseOpen("group");
    EXPECT_EQ(centre.deleteConstraint(), 0);
    EXPECT_TRUE(LvTestAccess::entities(centre).isEmpty());
    EXPECT_EQ(hostState().copies.size(), 0U);
}

TEST(FilletCentre, IsSpeltAsHostsCallIt) {
    using Centre = ConstraintFilletCmdCenter;
    static_assert(std::is_same_v<decltype(&Centre::setOnePolyLineDate), void (Centre::*)(const YxDbPolyline*)>);
    void (Centre::*two)(const YxDbPolyline*, const YxDbPolyline*) = &Centre::setTwoPolyLineDate;
    void (Centre::*clones)(const YxDbPolyline*, const YxDbPolyline*) = &Centre::setTwoPolyLineCloneDate;
    EXPECT_NE(two, clones);
}

TEST(FilletCoincidence, LosesOneAtMostAndNoneThatIsCollected) {
    OpenScene scene(
        "line b 0,0 9,0; polyline p 9,0#3 5,0#4 0,0#5; c1: coincident p[1].start b.end; "
        "c2: implied coincident p[1].end p[2].start");
    ConstraintFilletCmdCenter centre;
    LvTestAccess::collected(centre).append(scene.constraint("c1"));
    const auto open = YxDbObjectIdImpl::openObject(scene.groupId(), YxDb::kForWrite, false);
    for (int k = 0; k < 2; ++k)
        LvTestAccess::deleteCoincidence(centre, &scene.group(), scene.dependency("p[1]"));
    EXPECT_EQ(scene.process().journal().text({"deleteConstraint", "setIsImplied"}), "imply c2 false; delete c2");
}

TEST(FilletCoincidence, NeedsGroupDependencyAndGeometry) {
    OpenScene scene("line a 0,0 1,0; line b 0,0 9,0; coincident a.start b.start; line c 0,0 1,1; bare dependency c");
    ConstraintFilletCmdCenter centre;
    LvTestAccess::deleteCoincidence(centre, nullptr, scene.dependency("a"));
    LvTestAccess::deleteCoincidence(centre, &scene.group(), nullptr);
    LvTestAccess::deleteCoincidence(centre, &scene.group(), scene.dependency("c"));
    EXPECT_EQ(scene.process().journal().count("deleteConstraint"), 0);
}

}  // namespace
}  // namespace holdfast::module
