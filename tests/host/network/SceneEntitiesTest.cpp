#include "host/model/scene/SceneEntities.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numbers>

#include "host/model/entities/EntityAccess.h"
#include "tests/support/TestScene.h"

namespace holdfast {
namespace {

using testing::ElementsAre;

constexpr double kPi = std::numbers::pi;

TEST(SceneEntity, LineRunsFromStartToEnd) {
    TestScene scene("line a 1,2 3,4,5");
    const LineData data = EntityAccess::line(*scene.entity<YxDbLine>("a"));
    EXPECT_EQ(data.start.y, 2.0);
    EXPECT_EQ(data.end.z, 5.0);
}

TEST(SceneEntity, RayAndXlineHaveUnitDirections) {
    TestScene scene("ray r 1,2 dir 0,5; xline x 3,4 dir -2,0");
    EXPECT_EQ(EntityAccess::ray(*scene.entity<YxDbRay>("r")).direction.y, 1.0);
    EXPECT_EQ(EntityAccess::xline(*scene.entity<YxDbXline>("x")).direction.x, -1.0);
    EXPECT_EQ(EntityAccess::xline(*scene.entity<YxDbXline>("x")).base.x, 3.0);
}

TEST(SceneEntity, ArcTakesDegreesAndANormal) {
    TestScene scene("arc k centre 1,0 radius 5 from 30 to 90 normal down; arc d centre 0,0 radius 1 from 0 to 1 down");
    const ArcData data = EntityAccess::arc(*scene.entity<YxDbArc>("k"));
    EXPECT_EQ(data.radius, 5.0);
    EXPECT_DOUBLE_EQ(data.startAngle, kPi / 6.0);
    EXPECT_EQ(data.endAngle, kPi / 2.0);
    EXPECT_EQ(data.normal.z, -1.0);
    EXPECT_EQ(EntityAccess::arc(*scene.entity<YxDbArc>("d")).normal.z, -1.0);
}

TEST(SceneEntity, EllipseIsFullUnlessItHasAngles) {
    TestScene scene("ellipse e centre 0,0 major 4,0 ratio 0.5; ellipse f centre 0,0 major 4,0 ratio 0.5 from 0 to 90");
    EXPECT_EQ(EntityAccess::ellipse(*scene.entity<YxDbEllipse>("e")).endAngle, 2.0 * kPi);
    EXPECT_EQ(EntityAccess::ellipse(*scene.entity<YxDbEllipse>("f")).endAngle, kPi / 2.0);
}

TEST(SceneEntity, SplineIsClampedAndEvenUnlessItHasKnots) {
    TestScene scene("spline s degree 3 at 0,0 1,1 2,0 3,1 4,0; spline t degree 1 at 0,0 1,1 knots 0 0 2 2 weights 1 3");
    EXPECT_THAT(EntityAccess::spline(*scene.entity<YxDbSpline>("s")).knots, ElementsAre(0, 0, 0, 0, 1, 2, 2, 2, 2));
    EXPECT_THAT(EntityAccess::spline(*scene.entity<YxDbSpline>("t")).knots, ElementsAre(0, 0, 2, 2));
    EXPECT_THAT(EntityAccess::spline(*scene.entity<YxDbSpline>("t")).weights, ElementsAre(1, 3));
}

TEST(SceneEntity, PeriodicSplineHasTheKnotsOfOnePeriod) {
    TestScene scene("spline s degree 2 at 0,0 1,1 2,0 3,1 periodic");
    const SplineData data = EntityAccess::spline(*scene.entity<YxDbSpline>("s"));
    EXPECT_TRUE(data.periodic);
    EXPECT_THAT(data.knots, ElementsAre(0, 1, 2, 3, 4));
}

TEST(SceneEntity, PolylineVerticesCarryIdentifiersAndBulgesInAnyOrder) {
    TestScene scene("polyline p 0,0#11 10,0#12^0.5 10,10^-1#13 0,5 closed");
    const PolylineData data = EntityAccess::polyline(*scene.entity<YxDbPolyline>("p"));
    EXPECT_TRUE(data.closed);
    ASSERT_EQ(data.vertices.size(), 4U);
    EXPECT_EQ(data.vertices[1].identifier, 12);
    EXPECT_EQ(data.vertices[1].bulge, 0.5);
    EXPECT_EQ(data.vertices[2].identifier, 13);
    EXPECT_EQ(data.vertices[2].bulge, -1.0);
    EXPECT_EQ(data.vertices[3].identifier, 0);
    EXPECT_EQ(scene.vertices("p"), "0,0#11 10,0#12^0.5 10,10#13^-1 0,5 closed");
}

TEST(SceneEntity, TextHasRotationHeightAndWords) {
    TestScene scene("text t 1,2 rotation 30 height 4 \"say \\\"hi\\\"; \\\\ {\"; mtext m 0,0");
    const TextData data = EntityAccess::text(*scene.entity<YxDbText>("t"));
    EXPECT_EQ(data.text, "say \"hi\"; \\ {");
    EXPECT_EQ(data.height, 4.0);
    EXPECT_DOUBLE_EQ(data.rotation, kPi / 6.0);
    EXPECT_EQ(EntityAccess::mtext(*scene.entity<YxDbMText>("m")).text, "");
}

TEST(SceneEntity, IsPrintedAsItWasWritten) {
    for (const char* written : {
             "line a 1,2 3,4.5,6",
             "ray r 0,0 dir 1,0",
             "xline x 0,0 dir 0,-1",
             "circle c centre 0,0 radius 3",
             "circle c centre 0,0 radius 3 normal down",
             "arc k centre 0,0 radius 5 from 0 to 90",
             "arc k centre 0,0 radius 5 from 30 to 22.5 normal down",
             "arc k centre 0,0 radius 5 from 0 to 90 normal 1,0",
             "ellipse e centre 0,0 major 4,0 ratio 0.5",
             "ellipse e centre 0,0 major 4,0 ratio 0.5 from 0 to 90",
             "spline s degree 1 at 0,0 1,1 knots 0 0 1 1 weights 1 2",
             "spline s degree 2 at 0,0 1,1 2,0 3,1 knots 0 1 2 3 4 periodic",
             "polyline p 0,0#11 10,0#12^0.5 10,10 closed",
             "point q 1,1",
             "text t 0,0 rotation 30 \"abc\"",
             "mtext m 0,0 rotation 0 height 3 normal down \"a\\nb\"",
         })
        EXPECT_EQ(TestScene(written).text(), std::string(written) + "\n");
}

}  // namespace
}  // namespace holdfast
