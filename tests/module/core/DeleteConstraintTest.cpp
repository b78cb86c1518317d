#include <gtest/gtest.h>

#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/TestAccess.h"

namespace holdfast::module {
namespace {

constexpr const char* kCorner = "line a 0,0 10,0; line b 0,0 0,5; coincident a.start b.start; horizontal a; fixed b";

struct CollectingCentre : LvEditDeleteConstraint {
    CollectingCentre(CheckedScene& scene, const std::vector<const char*>& constraints) {
        LvTestAccess::groupId(*this) = scene.groupId();
        for (const char* name : constraints)
            LvTestAccess::collected(*this).append(scene.constraint(name));
    }
};

TEST(DeleteConstraint, DeletesInTheOrderOfCollectionWithOneOpen) {
    CheckedScene scene(kCorner);
    CollectingCentre centre(scene, {"c3", "c1"});
    EXPECT_EQ(centre.deleteConstraint(), 2);
    EXPECT_EQ(scene.process().journal().count("openObject"), 1);
    EXPECT_EQ(scene.process().journal().text({"deleteConstraint"}), "delete c3; delete c1");
    EXPECT_EQ(scene.constraints(), "horizontal a");
}

TEST(DeleteConstraint, EmptiesTheCollectionAndKeepsItsStorage) {
    CheckedScene scene(kCorner);
    CollectingCentre centre(scene, {"c1"});
    const int storage = LvTestAccess::collected(centre).physicalLength();
    centre.deleteConstraint();
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
    EXPECT_EQ(LvTestAccess::collected(centre).physicalLength(), storage);
    EXPECT_EQ(centre.deleteConstraint(), 0);
}

TEST(DeleteConstraint, OpensNothingWhenNothingWasCollected) {
    CheckedScene scene(kCorner);
    CollectingCentre centre(scene, {});
    EXPECT_EQ(centre.deleteConstraint(), 0);
    EXPECT_EQ(scene.process().journal().count("openObject"), 0);
}

TEST(DeleteConstraint, KeepsTheCollectionForAnotherTryWhenTheGroupDoesNotOpen) {
    CheckedScene scene(kCorner);
    CollectingCentre centre(scene, {"c1", "c2"});
    scene.refuseOpen("group");
    EXPECT_EQ(centre.deleteConstraint(), 0);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c1 c2");
    scene.host().clear();
    EXPECT_EQ(centre.deleteConstraint(), 2);
    EXPECT_EQ(scene.constraints(), "fixed b");
}

TEST(DeleteConstraint, KeepsTheCollectionWhenTheIdNamesNoGroup) {
    CheckedScene scene(kCorner);
    CollectingCentre centre(scene, {"c1"});
    LvTestAccess::groupId(centre) = scene.id("a");
    EXPECT_EQ(centre.deleteConstraint(), 0);
    EXPECT_EQ(LvTestAccess::collected(centre).length(), 1);
    EXPECT_EQ(scene.constraints(), "coincident a.start b.start; horizontal a; fixed b");
}

TEST(DeleteConstraint, CountsWhatItHandedOverWhateverTheGroupAnswers) {
    CheckedScene scene(kCorner);
    CollectingCentre centre(scene, {"c1", "c1", "c2"});
    scene.host().answerStatus("deleteConstraint", Yxrt::eFailed, &scene.group(), 3);
    EXPECT_EQ(centre.deleteConstraint(), 3);
    EXPECT_EQ(scene.constraints(), "horizontal a; fixed b");
}

TEST(DeleteConstraint, ClosesTheGroupWhenTheHostThrows) {
    CheckedScene scene(kCorner);
    CollectingCentre centre(scene, {"c1", "c2"});
    scene.host().throwFrom("deleteConstraint", nullptr, 2);
    EXPECT_THROW(centre.deleteConstraint(), HostFailure);
    EXPECT_EQ(HostAccess::openCount(scene.group()), 0);
}

TEST(DeleteConstraint, LeavesTheGroupAloneWhenTheCentreEnds) {
    CheckedScene scene(kCorner);
    { const CollectingCentre centre(scene, {"c1", "c2"}); }
    EXPECT_EQ(scene.journal(), "");
    EXPECT_EQ(scene.constraints(), "coincident a.start b.start; horizontal a; fixed b");
}

TEST(DeleteConstraint, CopiesCollectionGrowLengthAndGroup) {
    CheckedScene scene(kCorner);
    CollectingCentre centre(scene, {"c2", "c1"});
    LvEditDeleteConstraint copy(centre);
    LvEditDeleteConstraint assigned;
    assigned = centre;
    for (LvEditDeleteConstraint* other : {&copy, &assigned}) {
        EXPECT_EQ(scene.names(LvTestAccess::collected(*other)), "c2 c1");
        EXPECT_EQ(LvTestAccess::collected(*other).growLength(), 8);
        EXPECT_EQ(LvTestAccess::groupId(*other), scene.groupId());
    }
    LvTestAccess::collected(copy).append(scene.constraint("c3"));
    EXPECT_EQ(LvTestAccess::collected(centre).length(), 2);
}

TEST(DeleteConstraint, BeginsEmptyWithoutAGroup) {
    LvEditDeleteConstraint centre;
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
    EXPECT_EQ(LvTestAccess::collected(centre).growLength(), 8);
    EXPECT_FALSE(LvTestAccess::groupId(centre).isValid());
}

struct CountingCentre : LvEditDeleteConstraint {
    int deleteConstraint() override { return 42; }
};

TEST(DeleteConstraint, CanBeOverriddenByDerivedCentres) {
    CountingCentre centre;
    LvEditDeleteConstraint& base = centre;
    EXPECT_EQ(base.deleteConstraint(), 42);
}

}  // namespace
}  // namespace holdfast::module
