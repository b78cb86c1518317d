#include <gtest/gtest.h>

#include "tests/commands/fillet/FilletAccess.h"

namespace holdfast {
namespace {

const std::string kPolyline =
    "polyline p 0,0#11 10,0#12 10,10#13 20,10#14; line c 10,10 15,15; fixed p[1]; coincident p[2].end c.start; "
    "fixed p[3]";

TEST(FilletOnePolyline, MarksTheSegmentsBehindTheCut) {
    TestScene scene(kPolyline);
    Centre centre;
    auto& polyline = *scene.entity<YxDbPolyline>("p");
    centre.setOnePolyLineDate(&polyline);
    {
        const OpenForWrite open(scene.id("p"));
        EntityAccess::setVertexPoint(polyline, 2, {10, 8});
        EntityAccess::removeVertex(polyline, 3);
        centre.setOnePolyLineConstraint(&polyline, false, 1, {});
    }
    EXPECT_EQ(centre.deleteConstraint(), 1);
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 11-12; p[2]: p[2] 12-13 status 5; c: c; p[3]: p[?] 13-14 status 5");
}

TEST(FilletOnePolyline, MarksTheSegmentsBeforeTheCut) {
    TestScene scene(kPolyline);
    Centre centre;
    auto& polyline = *scene.entity<YxDbPolyline>("p");
    centre.setFirstPolyLineConstraint(&polyline, true, 1, {});  // nothing is recorded yet
    centre.setOnePolyLineDate(&polyline);
    centre.setFirstPolyLineConstraint(&polyline, true, 1, {});
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 11-12 status 5; p[2]: p[2] 12-13; c: c; p[3]: p[3] 13-14");
}

TEST(FilletOnePolyline, StoresThePointsOfTheFilletedSegment) {
    TestScene scene(kPolyline);
    Centre centre;
    auto& polyline = *scene.entity<YxDbPolyline>("p");
    centre.setOnePolyLineDate(&polyline);
    const OpenForWrite open(scene.id("p"));
    EntityAccess::setVertexPoint(polyline, 2, {10, 8});
    centre.setOnePolyLineConstraint(&polyline, false, 1, {});
    EXPECT_EQ(LvTestAccess::firstInfos(centre)[1].endPoint.y, 8.0);
}

TEST(FilletOnePolyline, ThrowsWhenARecordedDependencyIsNone) {
    TestScene scene(kPolyline);
    Centre centre;
    auto& polyline = *scene.entity<YxDbPolyline>("p");
    centre.setOnePolyLineDate(&polyline);
    scene.host().answerOther("openObject", scene.entity("c"), scene.dependency("p[3]"));
    EXPECT_THROW(centre.setOnePolyLineConstraint(&polyline, false, 1, {}), YxError_NotThatKindOfClass);
    scene.host().clear();
}

TEST(FilletOnePolyline, TurnedRoundPointsEachAtTheLastVertexWhereItEnded) {
    TestScene scene("polyline p 0,0#1 10,0#2 10,10#3 20,10#4; fixed p[1]; fixed p[2]; fixed p[3]");
    Centre centre;
    auto& polyline = *scene.entity<YxDbPolyline>("p");
    centre.setOnePolyLineDate(&polyline);
    const OpenForWrite open(scene.id("p"));
    polyline.reverseCurve();
    centre.setReversePolyLineConstraint(&polyline);
    EXPECT_EQ(scene.dependencies(), "p[1]: p[3] 3-4; p[2]: p[2] 2-3; p[3]: p[1] 1-2");
}

TEST(FilletOnePolyline, NeverPointsARemovedOneAgain) {
    TestScene scene("polyline p 0,0#1 10,0#2 10,10#3; fixed p[1]; fixed p[2]");
    Centre centre;
    auto& polyline = *scene.entity<YxDbPolyline>("p");
    centre.setOnePolyLineDate(&polyline);
    HostAccess::setStatus(*scene.dependency("p[1]"), kSegmentRemovedAssocStatus);
    const OpenForWrite open(scene.id("p"));
    polyline.reverseCurve();
    centre.setReversePolyLineConstraint(&polyline);
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 1-2 status 5; p[2]: p[1] 1-2");
}

}  // namespace
}  // namespace holdfast
