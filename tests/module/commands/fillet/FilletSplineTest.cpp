#include <gtest/gtest.h>

#include "host/model/entities/EntityAccess.h"
#include "tests/module/commands/fillet/OpenScene.h"
#include "tests/module/commands/fillet/TestAccess.h"

namespace holdfast::module {
namespace {

const std::string kSpline =
    "line b 0,0 0,5; spline s degree 3 at 0,0 1,1 2,0 3,1; c1: fixed s.control0; c2: coincident s.control3 b.start; "
    "c3: tangent s b; c4: distance s.control0 s.control2 = 1";

void setSpline(OpenScene& scene, const std::vector<YxGePoint3d>& control) {
    const auto open = YxDbObjectIdImpl::openObject(scene.id("s"), YxDb::kForWrite, false);
    std::vector<double> knots(4, 0.0);
    for (std::size_t k = 4; k < control.size(); ++k)
        knots.push_back(1.0);
    knots.insert(knots.end(), 4, 2.0);
    EntityAccess::setSpline(*scene.entity<YxDbSpline>("s"),
                            {.degree = 3, .periodic = false, .control = control, .knots = knots});
}

TEST(FilletSpline, LosesOnlyWhatHeldAtControlPointsThatMoved) {
    OpenScene scene(kSpline);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("s"), nullptr);
    setSpline(scene, {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {2.5, 1, 0}});
    EXPECT_EQ(centre.deleteConstraint(), 1);
    EXPECT_EQ(scene.constraints(), "fixed s.control0; tangent s b; distance s.control0 s.control2 = 1");
}

TEST(FilletSpline, LosesEverythingWhenItsControlPointsAreAnotherNumber) {
    OpenScene scene(kSpline);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("s"), nullptr);
    setSpline(scene, {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {3, 1, 0}, {4, 0, 0}});
    EXPECT_EQ(centre.deleteConstraint(), 4);
    EXPECT_EQ(scene.constraints(), "");
}

TEST(FilletSpline, LosesEverythingWhenItsConstraintsAreAnotherNumber) {
    OpenScene scene(kSpline);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("s"), nullptr);
    {
        const auto open = YxDbObjectIdImpl::openObject(scene.groupId(), YxDb::kForWrite, false);
        scene.group().deleteConstraint(scene.constraint("c3"));
    }
    EXPECT_EQ(centre.deleteConstraint(), 3);
}

TEST(FilletSpline, LosesEverythingWithoutARecord) {
    OpenScene scene(kSpline);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("s"), nullptr);
    LvTestAccess::splines(centre).setLogicalLength(0);
    EXPECT_EQ(centre.deleteConstraint(), 4);
}

TEST(FilletSpline, TakesTheLastOfSeveralRecords) {
    OpenScene scene(kSpline);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("s"), nullptr);
    LvTestAccess::splines(centre).append(LvTestAccess::splines(centre)[0]);
    LvTestAccess::splines(centre)[0].controlPointCount = 99;
    EXPECT_EQ(centre.deleteConstraint(), 0);
}

TEST(FilletSpline, IsRecordedConstraintByConstraint) {
    OpenScene scene(kSpline);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("s"), nullptr);
    ASSERT_EQ(LvTestAccess::splines(centre).length(), 1);
    const auto& record = LvTestAccess::splines(centre)[0];
    EXPECT_EQ(record.spline, scene.entity("s"));
    EXPECT_EQ(record.controlPointCount, 4);
    // Tangent first: it holds on the curve; then point by point.
    ASSERT_EQ(record.indices.length(), 4);
    EXPECT_EQ(record.indices[0].length(), 0);
    EXPECT_EQ(record.indices[1][0], 0);
    EXPECT_EQ(record.indices[2].length(), 2);
    EXPECT_EQ(record.indices[3][0], 3);
    EXPECT_EQ(record.points[3][0].x, 3.0);
}

TEST(FilletSpline, PairsConstraintsWithTheRecordByPositionOnly) {
    OpenScene scene(kSpline);
    ConstraintFilletCmdCenter centre;
    centre.setEntityInfo(scene.entity("s"), nullptr);
    auto record = LvTestAccess::splines(centre)[0];
    YxArray<YxGeomConstraint*> constraints;
    for (const char* name : {"c1", "c2", "c3", "c4"})  // not the order of the record
        constraints.append(scene.constraint(name));
    setSpline(scene, {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}, {2.5, 1, 0}});
    LvTestAccess::judgeSpline(centre, &scene.group(), record, scene.entity("s"), constraints);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c4");
}

TEST(FilletSpline, LosesAConstraintWhoseRecordDoesNotFitItself) {
    OpenScene scene(kSpline);
    ConstraintFilletCmdCenter centre;
    ConstraintFilletCmdCenter::SplineConstraint record{.spline = scene.entity("s"), .controlPointCount = 4};
    YxArray<int> one;
    one.append(0);
    record.indices.append(one);
    record.points.append(YxArray<YxGePoint3d>());
    YxArray<YxGeomConstraint*> constraints;
    constraints.append(scene.constraint("c1"));
    for (int k = 0; k < 2; ++k)
        LvTestAccess::judgeSpline(centre, &scene.group(), record, scene.entity("s"), constraints);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c1");
}

TEST(FilletSpline, AppendsTheWholeListToWhatIsNoSpline) {
    OpenScene scene(kSpline);
    ConstraintFilletCmdCenter centre;
    YxArray<YxGeomConstraint*> constraints;
    constraints.append(scene.constraint("c1"));
    for (int k = 0; k < 2; ++k)
        LvTestAccess::judgeSpline(centre, &scene.group(), {}, scene.entity("b"), constraints);
    EXPECT_EQ(scene.names(LvTestAccess::collected(centre)), "c1 c1");
}

TEST(FilletSpline, IsNotJudgedWithoutGroupSplineOrConstraints) {
    OpenScene scene(kSpline);
    ConstraintFilletCmdCenter centre;
    YxArray<YxGeomConstraint*> constraints;
    LvTestAccess::judgeSpline(centre, &scene.group(), {}, scene.entity("s"), constraints);
    constraints.append(scene.constraint("c1"));
    LvTestAccess::judgeSpline(centre, nullptr, {}, scene.entity("s"), constraints);
    LvTestAccess::judgeSpline(centre, &scene.group(), {}, nullptr, constraints);
    EXPECT_TRUE(LvTestAccess::collected(centre).isEmpty());
}

TEST(FilletSpline, IsNotRecordedWithoutGroupDependenciesOrClass) {
    OpenScene scene(kSpline + "; spline t degree 3 at 0,0 1,1 2,0 3,1");
    ConstraintFilletCmdCenter centre;
    LvTestAccess::recordSpline(centre, scene.entity("s"));
    LvTestAccess::groupId(centre) = scene.groupId();
    LvTestAccess::recordSpline(centre, nullptr);
    LvTestAccess::recordSpline(centre, scene.entity("b"));
    LvTestAccess::recordSpline(centre, scene.entity("t"));
    EXPECT_TRUE(LvTestAccess::splines(centre).isEmpty());
    LvTestAccess::recordSpline(centre, scene.entity("s"));
    EXPECT_EQ(LvTestAccess::splines(centre).length(), 1);
}

}  // namespace
}  // namespace holdfast::module
