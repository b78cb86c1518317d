#include <gtest/gtest.h>

#include "host/model/entities/EntityAccess.h"
#include "tests/module/commands/fillet/OpenForWrite.h"
#include "tests/module/commands/fillet/TestAccess.h"
#include "tests/support/TestScene.h"

namespace holdfast::module {
namespace {

using Centre = ConstraintFilletCmdCenter;

/// q runs to where r starts, or to a gap before it.
std::string twoPolylines(const char* endOfFirst) {
    return std::string("polyline q 0,0#1 5,0#2 ") + endOfFirst +
           "#3; polyline r 10,0#1 15,0#2 15,9#3; fixed q[1]; fixed q[2]; fixed r[1]; fixed r[2]";
}

/// Records both, then joins r into q with the vertices given, r's with identifier 0.
void join(Scene& scene, Centre& centre, const PolylineData& joined, bool reverseFirst, bool keepSecond) {
    auto& q = *scene.entity<YxDbPolyline>("q");
    auto& r = *scene.entity<YxDbPolyline>("r");
    centre.setTwoPolyLineDate(&q, &r);
    centre.setTwoPolyLineCloneDate(&q, &r);
    const OpenForWrite open(scene.id("q"));
    EntityAccess::setPolyline(q, joined);
    centre.setTwoPolyLineConstraint(&q, reverseFirst, &r, keepSecond);
}

PolylineVertex at(double x, double y, int identifier = 0, double bulge = 0.0) {
    return {.point = {x, y}, .bulge = bulge, .identifier = identifier};
}

TEST(FilletTwoPolylines, RecordsEachOnItsOwnList) {
    TestScene scene(twoPolylines("10,0"));
    Centre centre;
    centre.setTwoPolyLineDate(scene.entity<YxDbPolyline>("q"), scene.entity<YxDbPolyline>("r"));
    EXPECT_EQ(LvTestAccess::firstInfos(centre).length(), 2);
    EXPECT_EQ(LvTestAccess::secondInfos(centre).length(), 2);
    EXPECT_EQ(LvTestAccess::firstInfos(centre)[0].dependency, scene.dependency("q[1]"));
    EXPECT_EQ(LvTestAccess::secondInfos(centre)[0].dependency, scene.dependency("r[1]"));
}

TEST(FilletTwoPolylines, ShiftsTheSecondByTheFirstsVerticesWhenTheyTouch) {
    TestScene scene(twoPolylines("10,0"));
    Centre centre;
    join(scene, centre, {.vertices = {at(0, 0, 1), at(5, 0, 2), at(10, 0), at(15, 0), at(15, 9)}, .closed = false},
         false, true);
    // The shared vertex gets the first one's last identifier; r[1] ran from index 0, so it is part 0 + 3.
    EXPECT_EQ(scene.vertices("q"), "0,0#1 5,0#2 10,0#3 15,0#4 15,9#5");
    EXPECT_EQ(scene.dependencies(), "q[1]: q[1] 1-2; q[2]: q[2] 2-3; r[1]: q[3] 3-4; r[2]: q[4] 4-5");
}

TEST(FilletTwoPolylines, ShiftsByOneMoreAcrossAGap) {
    TestScene scene(twoPolylines("8,0"));
    Centre centre;
    join(scene, centre,
         {.vertices = {at(0, 0, 1), at(5, 0, 2), at(8, 0, 3, 0.4), at(10, 0), at(15, 0), at(15, 9)}, .closed = false},
         false, true);
    EXPECT_EQ(scene.dependencies(), "q[1]: q[1] 1-2; q[2]: q[2] 2-3; r[1]: q[4] 4-5; r[2]: q[5] 5-6");
}

TEST(FilletTwoPolylines, ChangesNothingWhenVerticesAreMissing) {
    TestScene scene(twoPolylines("8,0"));
    Centre centre;
    join(scene, centre, {.vertices = {at(0, 0, 1), at(5, 0, 2), at(8, 0, 3), at(10, 0)}, .closed = false}, false, true);
    EXPECT_EQ(scene.dependencies(), "q[1]: q[1] 1-2; q[2]: q[2] 2-3; r[1]: r[1] 1-2; r[2]: r[2] 2-3");
}

TEST(FilletTwoPolylines, TurnsTheFirstOnTrueAndTheSecondOnFalse) {
    TestScene scene(
        "polyline q 10,0#1 5,0#2 0,0#3; polyline r 15,9#1 15,0#2 10,0#3; fixed q[1]; fixed q[2]; "
        "fixed r[1]; fixed r[2]");
    Centre centre;
    // q was turned round, r was turned round too: true for the first, false for "kept its direction".
    join(scene, centre, {.vertices = {at(0, 0, 3), at(5, 0, 2), at(10, 0, 1), at(15, 0), at(15, 9)}, .closed = false},
         true, false);
    EXPECT_EQ(scene.dependencies(), "q[1]: q[2] 2-1; q[2]: q[1] 3-2; r[1]: q[4] 4-5; r[2]: q[3] 1-4");
}

TEST(FilletTwoPolylines, ForgetsFormerClonesWithoutFreeingThem) {
    TestScene scene(twoPolylines("10,0"));
    Centre centre;
    auto& q = *scene.entity<YxDbPolyline>("q");
    centre.setTwoPolyLineDate(&q, scene.entity<YxDbPolyline>("r"));
    centre.setTwoPolyLineCloneDate(&q, nullptr);
    YxDbEntity* former = LvTestAccess::clones(centre)[0];
    centre.setTwoPolyLineCloneDate(&q, nullptr);
    EXPECT_EQ(LvTestAccess::clones(centre).length(), 1);
    EXPECT_NE(LvTestAccess::clones(centre)[0], former);
    EXPECT_TRUE(hostState().copies.contains(former));
    delete former;
}

TEST(FilletTwoPolylines, ReversesACloneWithItsIdentifiersAndRecords) {
    TestScene scene(twoPolylines("10,0"));
    Centre centre;
    const auto& q = *scene.entity<YxDbPolyline>("q");
    centre.setOnePolyLineDate(&q);
    const auto clone = EntityAccess::makePolyline(EntityAccess::polyline(q));
    auto& infos = LvTestAccess::firstInfos(centre);
    LvTestAccess::reverseClone(centre, clone.get(), infos);
    EXPECT_EQ(EntityAccess::vertex(*clone, 0).identifier, 3);
    EXPECT_EQ(EntityAccess::vertex(*clone, 2).identifier, 1);
    EXPECT_EQ(infos[0].startIndex, 1);
    EXPECT_EQ(infos[0].startPoint.x, 5.0);
    EXPECT_EQ(infos[0].endPoint.x, 0.0);
}

TEST(FilletTwoPolylines, NeedsExactlyTwoClonesOfPolylines) {
    TestScene scene(twoPolylines("10,0"));
    Centre centre;
    auto& q = *scene.entity<YxDbPolyline>("q");
    auto& r = *scene.entity<YxDbPolyline>("r");
    centre.setTwoPolyLineDate(&q, &r);
    centre.setTwoPolyLineCloneDate(&q, nullptr);
    const OpenForWrite open(scene.id("q"));
    centre.setTwoPolyLineConstraint(&q, false, &r, true);
    EXPECT_EQ(scene.dependencies(), "q[1]: q[1] 1-2; q[2]: q[2] 2-3; r[1]: r[1] 1-2; r[2]: r[2] 2-3");
}

const std::string kUntouched = "q[1]: q[1] 1-2; q[2]: q[2] 2-3; r[1]: r[1] 1-2; r[2]: r[2] 2-3";
const PolylineData kTouching{.vertices = {at(0, 0, 1), at(5, 0, 2), at(10, 0), at(15, 0), at(15, 9)}, .closed = false};

TEST(FilletTwoPolylines, NeedBothPolylinesWithVerticesAndRecords) {
    TestScene scene(twoPolylines("10,0"));
    Centre centre;
    auto& q = *scene.entity<YxDbPolyline>("q");
    auto& r = *scene.entity<YxDbPolyline>("r");
    const auto single = EntityAccess::makePolyline({.vertices = {at(0, 0)}, .closed = false});
    centre.setTwoPolyLineDate(&q, &r);
    centre.setTwoPolyLineCloneDate(&q, &r);
    centre.setTwoPolyLineConstraint(nullptr, true, &r, false);
    centre.setTwoPolyLineConstraint(&q, true, nullptr, false);
    centre.setTwoPolyLineConstraint(single.get(), true, &r, false);
    LvTestAccess::firstInfos(centre).setLogicalLength(0);
    LvTestAccess::secondInfos(centre).setLogicalLength(0);
    centre.setTwoPolyLineConstraint(&q, true, &r, false);
    EXPECT_EQ(scene.process().journal().count("reverseCurve"), 0);
    EXPECT_EQ(scene.dependencies(), kUntouched);
}

TEST(FilletTwoPolylines, KeepNoClonesWithoutRecords) {
    TestScene scene("polyline q 0,0 1,1; polyline r 2,2 3,3; polyline p 0,0 1,0 2,0; fixed p[1]");
    Centre centre;
    auto& q = *scene.entity<YxDbPolyline>("q");
    centre.setTwoPolyLineDate(&q, scene.entity<YxDbPolyline>("r"));
    centre.setTwoPolyLineCloneDate(&q, scene.entity<YxDbPolyline>("r"));
    EXPECT_TRUE(LvTestAccess::clones(centre).isEmpty());
    centre.setTwoPolyLineDate(&q, scene.entity<YxDbPolyline>("p"));
    centre.setTwoPolyLineCloneDate(&q, scene.entity<YxDbPolyline>("r"));
    EXPECT_EQ(LvTestAccess::clones(centre).length(), 2);
}

TEST(FilletTwoPolylines, CountTouchingEndsAsAGapWhenTheFirstCarriesNothing) {
    TestScene scene("polyline q 0,0#1 5,0#2 10,0#3; polyline r 10,0#1 15,0#2 15,9#3; fixed r[1]; fixed r[2]");
    Centre centre;
    join(scene, centre, kTouching, false, true);
    // One too far: the first of the second names what was its second, which has no segment left to name.
    EXPECT_EQ(scene.dependencies(), "r[1]: q[4] 4-5; r[2]: q[?] 2-3");
}

TEST(FilletTwoPolylines, LeaveWhatWasRemovedWhereItIs) {
    TestScene scene(twoPolylines("10,0"));
    Centre centre;
    for (const char* place : {"q[1]", "r[2]"})
        HostAccess::setStatus(*scene.dependency(place), kSegmentRemovedAssocStatus);
    join(scene, centre, kTouching, true, true);
    EXPECT_EQ(scene.process().journal().text({"setSubentity", "detachFromObject"}),
              "part of dependency q[2]: 2, 1; detach dependency r[1]; part of dependency r[1]: 2, 4");
}

TEST(FilletTwoPolylines, SkipADependencyThatDoesNotOpen) {
    TestScene scene(twoPolylines("10,0"));
    Centre centre;
    scene.host().refuse("YxDbObjectIdImpl::openObject", scene.dependency("r[1]"), 3);
    join(scene, centre, kTouching, false, true);
    scene.host().clear();
    EXPECT_EQ(scene.dependencies(), "q[1]: q[1] 1-2; q[2]: q[2] 2-3; r[1]: r[1] 1-2; r[2]: q[4] 4-5");
}

TEST(FilletTwoPolylines, AreRecordedAnewWhenTheFirstWasTurned) {
    for (const bool groupOpens : {true, false}) {
        TestScene scene(twoPolylines("10,0"));
        Centre centre;
        if (!groupOpens)
            scene.refuseOpen("group");
        join(scene, centre, kTouching, true, true);
        EXPECT_EQ(LvTestAccess::firstInfos(centre).length(), groupOpens ? 4 : 2);
        scene.host().clear();
    }
}

TEST(FilletTwoPolylines, AreRecordedAnewWhileTheGroupIsOpenForWrite) {
    TestScene scene(twoPolylines("10,0"));
    Centre centre;
    join(scene, centre, kTouching, true, true);
    const auto& calls = scene.process().journal().entries();
    const auto last = [&](const char* operation, const char* subject) {
        std::ptrdiff_t found = -1;
        for (std::size_t i = 0; i < calls.size(); ++i)
            if (namesOperation(calls[i].operation, operation) && calls[i].subjectName == subject)
                found = static_cast<std::ptrdiff_t>(i);
        return found;
    };
    EXPECT_LT(last("openObject", "group"), last("owningAction", "dependency q[1]"));
    EXPECT_GT(last("release", "group"), last("getVertexIdentifierAt", "q"));
    EXPECT_EQ(calls[static_cast<std::size_t>(last("openObject", "group"))].arguments, "write");
}

TEST(FilletTwoPolylines, KeepARecordThatEndsAtNoVertexOfTheTurnedClone) {
    TestScene scene(twoPolylines("10,0"));
    Centre centre;
    const auto& q = *scene.entity<YxDbPolyline>("q");
    centre.setOnePolyLineDate(&q);
    auto& infos = LvTestAccess::firstInfos(centre);
    infos[0].endPoint = {99, 99, 0};
    const auto clone = EntityAccess::makePolyline(EntityAccess::polyline(q));
    LvTestAccess::reverseClone(centre, nullptr, infos);
    LvTestAccess::reverseClone(centre, clone.get(), infos);
    EXPECT_EQ(infos[0].startIndex, 0);
    EXPECT_EQ(infos[0].endPoint.x, 99.0);
    EXPECT_EQ(infos[1].startIndex, 0);
}

}  // namespace
}  // namespace holdfast::module
