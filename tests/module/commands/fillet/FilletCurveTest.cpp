#include <gtest/gtest.h>

#include <functional>
#include <numbers>

#include "host/model/entities/EntityAccess.h"
#include "tests/module/commands/fillet/OpenScene.h"
#include "tests/module/commands/fillet/TestAccess.h"

namespace holdfast::module {
namespace {

/// Edits a resident entity in place, as the host does.
template <class T>
void edit(OpenScene& scene, const char* name, const std::function<void(T&)>& change) {
    const auto open = YxDbObjectIdImpl::openObject(scene.id(name), YxDb::kForWrite, false);
    change(static_cast<T&>(*open));
}

void setLine(OpenScene& scene, const char* name, const YxGePoint3d& start, const YxGePoint3d& end) {
    edit<YxDbLine>(scene, name, [&](YxDbLine& line) { EntityAccess::setLine(line, start, end); });
}

const std::string kCorner =
    "line a 0,0 10,0; line b 10,0 10,10; c1: coincident a.end b.start; c2: fixed a.start; c3: perpendicular a b; "
    "c4: equal a b; c5: fixed b.end";

TEST(FilletLines, LoseWhatHeldAtTheCornerAndKeepTheRest) {
    OpenScene scene(kCorner);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("a"), scene.entity("b"));
    setLine(scene, "a", {0, 0, 0}, {8, 0, 0});
    setLine(scene, "b", {10, 2, 0}, {10, 10, 0});
    EXPECT_EQ(centre.deleteConstraint(), 2);
    EXPECT_EQ(scene.constraints(), "fixed a.start; perpendicular a b; fixed b.end");
}

TEST(FilletLines, KeepEverythingWhenNothingMoved) {
    OpenScene scene(kCorner);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("a"), scene.entity("b"));
    EXPECT_EQ(centre.deleteConstraint(), 0);
}

TEST(FilletLines, WalkTheGroupOnceForBoth) {
    OpenScene scene(kCorner);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("a"), scene.entity("b"));
    setLine(scene, "a", {0, 0, 0}, {8, 0, 0});
    EXPECT_EQ(centre.deleteConstraint(), 2);
    EXPECT_EQ(scene.process().journal().count("YxDbAssoc2dConstraintGroup::getConstrainedGeometries"), 1);
}

TEST(SetEntityInfo, RecordsNothingBesideAPolyline) {
    OpenScene scene("line a 0,0 10,0; polyline p 0,0 1,1; fixed a; fixed p[1]");
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("a"), scene.entity("p"));
    centre.setEntityInfo(scene.entity("p"), scene.entity("a"));
    EXPECT_TRUE(LvTestAccess::entities(centre).isEmpty());
    EXPECT_TRUE(LvTestAccess::clones(centre).isEmpty());
    EXPECT_FALSE(LvTestAccess::groupId(centre).isValid());
}

TEST(SetEntityInfo, RecordsOnlyTheConstrainedOneAndTakesItsGroup) {
    OpenScene scene("line a 0,0 10,0; line b 10,0 10,10; fixed b.start");
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("a"), scene.entity("b"));
    ASSERT_EQ(LvTestAccess::entities(centre).length(), 1);
    EXPECT_EQ(LvTestAccess::entities(centre)[0], scene.entity("b"));
    EXPECT_EQ(LvTestAccess::groupId(centre), scene.groupId());
}

TEST(SetEntityInfo, SkipsNullAndKeepsTheOther) {
    OpenScene scene("line b 10,0 10,10; fixed b.start");
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(nullptr, scene.entity("b"));
    centre.setEntityInfo(nullptr, nullptr);
    EXPECT_EQ(LvTestAccess::entities(centre).length(), 1);
    EXPECT_EQ(LvTestAccess::clones(centre).length(), 1);
}

TEST(SetEntityInfo, StopsAtAnEntityWithoutAGroup) {
    OpenScene scene("line a 0,0 10,0; line b 10,0 10,10; bare dependency a; fixed b.start");
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("a"), scene.entity("b"));
    EXPECT_TRUE(LvTestAccess::entities(centre).isEmpty());
}

TEST(SetEntityInfo, StopsWithoutAProvider) {
    OpenScene scene(kCorner);
    scene.serviceDown();
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("a"), scene.entity("b"));
    EXPECT_TRUE(LvTestAccess::entities(centre).isEmpty());
}

TEST(SetEntityInfo, AsksTheProviderOnlyForTheFirstGroup) {
    OpenScene scene(kCorner);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("a"), scene.entity("b"));
    EXPECT_EQ(scene.process().journal().count("getAssocCons2DGroup"), 1);
    EXPECT_EQ(LvTestAccess::entities(centre).length(), 2);
}

/// What goes when a clone of another shape stood before entity a.
std::string collected(const std::string& text, std::unique_ptr<YxDbEntity> before) {
    OpenScene scene(text);
    ConstraintFilletCmdCenter centre;
    LvTestAccess::entities(centre).append(scene.entity("a"));
    LvTestAccess::clones(centre).append(before.release());  // the centre's
    LvTestAccess::compare(centre);
    return scene.names(LvTestAccess::collected(centre));
}

auto line(double x1, double x2) {
    return EntityAccess::makeLine({x1, 0, 0}, {x2, 0, 0});
}
auto arc(double from, double to) {
    return EntityAccess::makeArc({.centre = {}, .radius = 5, .startAngle = from, .endAngle = to});
}
auto ellipse(double from, double to) {
    return EntityAccess::makeEllipse(
        {.centre = {}, .majorAxis = {4, 0, 0}, .ratio = 0.5, .startAngle = from, .endAngle = to});
}

const std::string kLine = "line b 0,0 0,5; line a 0,0 10,0; c1: fixed a.end; c2: parallel a b";

TEST(FilletCurve, KeepsALineOrAnArcThatChangedItsClass) {
    EXPECT_EQ(collected(kLine, arc(0, 1)), "");
    EXPECT_EQ(collected("arc a centre 0,0 radius 5 from 0 to 90; c1: fixed a.end", line(0, 1)), "");
}

TEST(FilletCurve, JudgesALineAndAnArcByTheirEnds) {
    EXPECT_EQ(collected(kLine, line(0, 12)), "c1");
    EXPECT_EQ(
        collected("arc a centre 0,0 radius 5 from 0 to 90; c1: fixed a.end; c2: fixed a.start; c3: fixed a.centre",
                  arc(0, 2)),
        "c1");
}

TEST(FilletCurve, LosesEverythingOfARayOrConstructionLineThatIsNoLongerOne) {
    EXPECT_EQ(collected(kLine, EntityAccess::makeRay({0, 0, 0}, {1, 0, 0})), "c2 c1");
    EXPECT_EQ(collected(kLine, EntityAccess::makeXline({0, 0, 0}, {1, 0, 0})), "c2 c1");
}

TEST(FilletCurve, JudgesARayByItsBaseAndKeepsAConstructionLine) {
    const std::string ray = "line b 0,0 0,5; ray a 0,0 dir 1,0; c1: fixed a.start; c2: parallel a b";
    EXPECT_EQ(collected(ray, EntityAccess::makeRay({-3, 0, 0}, {1, 0, 0})), "c1");
    EXPECT_EQ(collected(ray, EntityAccess::makeRay({0, 0, 0}, {1, 0, 0})), "");
    EXPECT_EQ(collected("xline a 0,0 dir 1,0; c1: fixed a", EntityAccess::makeXline({5, 5, 0}, {0, 1, 0})), "");
}

const std::string kEllipse = "ellipse a centre 0,0 major 4,0 ratio 0.5; c1: fixed a.centre; c2: fixed a";
const std::string kEllipticalArc =
    "ellipse a centre 0,0 major 4,0 ratio 0.5 from 0 to 90; c1: fixed a.centre; c2: fixed a.end; c3: fixed a.start";

TEST(FilletCurve, LosesEverythingOfAnEllipseThatOpensOrIsNoLongerOne) {
    EXPECT_EQ(collected(kEllipticalArc, ellipse(0, 2 * std::numbers::pi)), "c1 c2 c3");
    EXPECT_EQ(collected(kLine, ellipse(0, 2 * std::numbers::pi)), "c2 c1");
    EXPECT_EQ(collected(kLine, ellipse(0, 1)), "c2 c1");
}

TEST(FilletCurve, KeepsAClosedEllipseAndJudgesAnOpenOne) {
    EXPECT_EQ(collected(kEllipse, ellipse(0, 2 * std::numbers::pi)), "");
    EXPECT_EQ(collected(kEllipticalArc, ellipse(0, 1)), "c2");
}

TEST(FilletCurve, KeepsEverythingOfAnyOtherClass) {
    EXPECT_EQ(collected("circle a centre 0,0 radius 5; c1: fixed a",
                        EntityAccess::makeCircle({.centre = {1, 1, 0}, .radius = 2})),
              "");
    EXPECT_EQ(collected(kLine, EntityAccess::makePolyline({.vertices = {{{0, 0}}, {{9, 9}}}, .closed = false})), "");
}

TEST(FilletCurve, AppendsTheWholeListBesideItself) {
    OpenScene scene(kLine);
    ConstraintFilletCmdCenter centre;
    LvTestAccess::collected(centre).append(scene.constraint("c1"));
    LvTestAccess::entities(centre).append(scene.entity("a"));
    LvTestAccess::clones(centre).append(EntityAccess::makeRay({0, 0, 0}, {1, 0, 0}).release());
    EXPECT_EQ(centre.deleteConstraint(), 3);
    EXPECT_EQ(scene.constraints(), "");
}

TEST(SetDeleteConstraint, NeedsAsManyClonesAsEntities) {
    OpenScene scene(kLine);
    ConstraintFilletCmdCenter centre;
    LvTestAccess::entities(centre).append(scene.entity("a"));
    LvTestAccess::compare(centre);
    EXPECT_EQ(scene.process().journal().count("isSrvInit"), 0);
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
}

TEST(SetDeleteConstraint, TakesTheGroupOfTheFirstEntryEvenIfThatIsNull) {
    OpenScene scene(kLine);
    ConstraintFilletCmdCenter centre;
    LvTestAccess::groupId(centre) = scene.groupId();
    LvTestAccess::entities(centre).append(nullptr);
    LvTestAccess::entities(centre).append(scene.entity("a"));
    LvTestAccess::clones(centre).append(nullptr);
    LvTestAccess::clones(centre).append(line(0, 12).release());
    LvTestAccess::compare(centre);
    EXPECT_FALSE(LvTestAccess::groupId(centre).isValid());
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
}

TEST(SetDeleteConstraint, SkipsAnEntityWithoutAClone) {
    OpenScene scene(kCorner);
    ConstraintFilletCmdCenter centre;
    LvTestAccess::entities(centre).append(scene.entity("a"));
    LvTestAccess::entities(centre).append(scene.entity("b"));
    LvTestAccess::clones(centre).append(nullptr);
    LvTestAccess::clones(centre).append(EntityAccess::makeLine({9, 9, 0}, {10, 10, 0}).release());
    LvTestAccess::compare(centre);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c4 c1");
}

TEST(SetDeleteConstraint, KeepsTheGroupWhileTheServiceIsDown) {
    OpenScene scene(kCorner);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("a"), scene.entity("b"));
    setLine(scene, "a", {0, 0, 0}, {8, 0, 0});
    scene.serviceDown();
    EXPECT_EQ(centre.deleteConstraint(), 0);
    EXPECT_EQ(LvTestAccess::groupId(centre), scene.groupId());
}

}  // namespace
}  // namespace holdfast::module
