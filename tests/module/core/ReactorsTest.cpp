#include <gtest/gtest.h>

#include "host/model/entities/EntityAccess.h"
#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/TestAccess.h"

namespace holdfast::module {
namespace {

std::vector<std::string> namesOf(CheckedScene& scene, const YxArray<YxDbAssocGeomDependency*>& dependencies) {
    std::vector<std::string> names;
    for (const YxDbAssocGeomDependency* dependency : dependencies)
        names.push_back(scene.process().nameOf(dependency));
    return names;
}

TEST(HasAssocConstraint, IsTrueForAnyGeometryDependencyWithoutAskingAGroup) {
    CheckedScene scene("line a 0,0 1,0; reactor a; bare dependency a");
    EXPECT_TRUE(LvEditDeleteConstraint::hasAssocConstraint(scene.id("a")));
    EXPECT_EQ(scene.process().journal().text({"openObject"}).find("open group"), std::string::npos);
}

TEST(HasAssocConstraint, IsFalseWhenOnlyOtherReactorsStandThere) {
    CheckedScene scene("line a 0,0 1,0; line b 0,0 1,0; reactor a");
    EXPECT_FALSE(LvEditDeleteConstraint::hasAssocConstraint(scene.id("a")));
    EXPECT_FALSE(LvEditDeleteConstraint::hasAssocConstraint(scene.id("b")));
}

TEST(HasAssocConstraint, IsFalseForWhatIsNoOpenableEntity) {
    CheckedScene scene("line a 0,0 1,0; fixed a");
    EXPECT_FALSE(LvEditDeleteConstraint::hasAssocConstraint(YxDbObjectId()));
    EXPECT_FALSE(LvEditDeleteConstraint::hasAssocConstraint(scene.groupId()));
    scene.refuseOpen("a");
    EXPECT_FALSE(LvEditDeleteConstraint::hasAssocConstraint(scene.id("a")));
}

TEST(HasAssocConstraint, OpensReactorsUpToTheFirstThatCounts) {
    CheckedScene scene("line a 0,0 1,0; reactor a; fixed a; reactor a");
    EXPECT_TRUE(LvEditDeleteConstraint::hasAssocConstraint(scene.id("a")));
    EXPECT_EQ(scene.process().journal().count("openObject"), 3);
}

TEST(HasAssocConstraint, IsFalseWithoutTheDatabaseService) {
    CheckedScene scene("line a 0,0 1,0; fixed a");
    scene.process().setServicesUp(false);
    EXPECT_FALSE(LvEditDeleteConstraint::hasAssocConstraint(scene.id("a")));
}

TEST(HasAssocConstraint, IsFalseWhenTheServiceIsOfAnotherClass) {
    CheckedScene scene("line a 0,0 1,0; fixed a");
    scene.host().answerOther("yxrxGetService", scene.entity("a"));
    EXPECT_FALSE(LvEditDeleteConstraint::hasAssocConstraint(scene.id("a")));
}

TEST(RemoveReactors, TakesGeometryDependenciesAndLeavesTheOthers) {
    CheckedScene scene("line a 0,0 1,0; reactor a; fixed a; reactor a");
    auto copy = EntityAccess::makeLine({0, 0, 0}, {1, 0, 0});
    for (const YxDbObjectId& reactor : HostAccess::reactors(*scene.entity("a")))
        HostAccess::addReactor(*copy, reactor);
    LvEditDeleteConstraint::removeGeomPersistentReactor(copy.get());
    const std::vector<YxDbObjectId> ofEntity = HostAccess::reactors(*scene.entity("a"));
    EXPECT_EQ(HostAccess::reactors(*copy), (std::vector<YxDbObjectId>{ofEntity[0], ofEntity[2]}));
}

TEST(RemoveReactors, LeavesAReactorThatDoesNotOpen) {
    CheckedScene scene("polyline p 0,0#1 1,0#2 2,0#3; fixed p[1]; fixed p[2]");
    auto copy = EntityAccess::makeLine({0, 0, 0}, {1, 0, 0});
    for (const YxDbObjectId& reactor : HostAccess::reactors(*scene.entity("p")))
        HostAccess::addReactor(*copy, reactor);
    scene.host().refuse("openObject", scene.dependency("p[1]"));
    LvEditDeleteConstraint::removeGeomPersistentReactor(copy.get());
    EXPECT_EQ(HostAccess::reactors(*copy), (std::vector<YxDbObjectId>{scene.dependency("p[1]")->objectId()}));
}

TEST(RemoveReactors, DoesNothingForNull) {
    const CheckedScene scene("line a 0,0 1,0");
    LvEditDeleteConstraint::removeGeomPersistentReactor(nullptr);
    EXPECT_EQ(scene.journal(), "");
}

TEST(GeomPersistentReactors, StandInReactorOrderWithRepetitions) {
    CheckedScene scene("polyline p 0,0#1 1,0#2 2,0#3; fixed p[2]; reactor p; fixed p[1]");
    auto copy = EntityAccess::makeLine({0, 0, 0}, {1, 0, 0});
    for (const char* place : {"p[2]", "p[1]", "p[2]"})
        HostAccess::addReactor(*copy, scene.dependency(place)->objectId());
    EXPECT_EQ(namesOf(scene, LvTestAccess::reactors(scene.entity("p"))),
              (std::vector<std::string>{"dependency p[2]", "dependency p[1]"}));
    EXPECT_EQ(namesOf(scene, LvTestAccess::reactors(copy.get())),
              (std::vector<std::string>{"dependency p[2]", "dependency p[1]", "dependency p[2]"}));
}

TEST(GeomPersistentReactors, ReplaceWhatTheListHeldUnlessTheEntityIsNull) {
    CheckedScene scene("line a 0,0 1,0; line b 0,0 1,0; fixed a");
    const auto former = scene.dependenciesOn({"a"});
    EXPECT_TRUE(LvTestAccess::reactors(scene.entity("b"), former).isEmpty());
    EXPECT_EQ(LvTestAccess::reactors(nullptr, former).length(), 1);
}

TEST(GeomPersistentReactors, LeaveOutWhatDoesNotOpen) {
    CheckedScene scene("polyline p 0,0#1 1,0#2 2,0#3; fixed p[1]; fixed p[2]");
    scene.host().refuse("openObject", scene.dependency("p[1]"));
    EXPECT_EQ(namesOf(scene, LvTestAccess::reactors(scene.entity("p"))), std::vector<std::string>{"dependency p[2]"});
}

}  // namespace
}  // namespace holdfast::module
