#include <gtest/gtest.h>

#include "host/model/entities/EntityAccess.h"
#include "tests/module/commands/fillet/TestAccess.h"
#include "tests/module/core/CheckedScene.h"

namespace holdfast::module {
namespace {

using Centre = ConstraintFilletCmdCenter;

const std::string kPolyline =
    "polyline p 0,0#31 10,0#7 10,10#22 20,10#5; fixed p[1]; fixed p[2]; fixed p[3]; corners p";

/// A polyline that is filleted with another curve.
class WithCurve : public CheckedScene {
public:
    explicit WithCurve(const std::string& text = kPolyline)
        : CheckedScene(text), m_open(YxDbObjectIdImpl::openObject(id("p"), YxDb::kForWrite, false)) {}
    Centre& centre() { return m_centre; }
    YxDbPolyline* polyline() { return entity<YxDbPolyline>("p"); }

private:
    Centre m_centre;
    YxSmartPtr<YxDbObject> m_open;
};

TEST(SetOnePolyLineDate, RecordsEverySegmentWithADependency) {
    WithCurve scene;
    scene.centre().setOnePolyLineDate(scene.polyline());
    ASSERT_EQ(LvTestAccess::firstInfos(scene.centre()).length(), 3);
    const Centre::PolyInfo& second = LvTestAccess::firstInfos(scene.centre())[1];
    EXPECT_EQ(second.startIndex, 1);
    EXPECT_EQ(second.endIndex, 2);
    EXPECT_EQ(second.startVertexId, 7);
    EXPECT_EQ(second.endVertexId, 22);
    EXPECT_EQ(second.startPoint.x, 10.0);
    EXPECT_EQ(second.endPoint.y, 10.0);
    EXPECT_EQ(second.dependency, scene.dependency("p[2]"));
    EXPECT_EQ(LvTestAccess::groupId(scene.centre()), scene.groupId());
}

TEST(SetOnePolyLineDate, ForgetsFormerRecordsForNullOrAnUnconstrainedPolyline) {
    WithCurve scene(kPolyline + "; polyline q 0,0 1,1");
    for (const YxDbPolyline* other : {static_cast<const YxDbPolyline*>(nullptr),
                                      static_cast<const YxDbPolyline*>(scene.entity<YxDbPolyline>("q"))}) {
        scene.centre().setOnePolyLineDate(scene.polyline());
        scene.centre().setOnePolyLineDate(other);
        EXPECT_TRUE(LvTestAccess::firstInfos(scene.centre()).isEmpty());
    }
}

TEST(FilletPolylineWithCurve, KeepsTheCutSegmentAndMarksWhatWasCutAwayBehind) {
    WithCurve scene;
    scene.centre().setOnePolyLineDate(scene.polyline());
    EntityAccess::setVertexPoint(*scene.polyline(), 2, {10, 8});
    EntityAccess::removeVertex(*scene.polyline(), 3);
    scene.centre().setOnePolyLineConstraint(scene.polyline(), false, 1, YxGePoint3d());
    EXPECT_EQ(scene.centre().deleteConstraint(), 1);
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: p[?] 22-5 status 5");
    EXPECT_EQ(scene.constraints(), "fixed p[1]; fixed p[2]; fixed p[?]; implied coincident p[1].end p[2].start");
}

TEST(FilletPolylineWithCurve, MarksWhatWasCutAwayBefore) {
    WithCurve scene;
    scene.centre().setOnePolyLineDate(scene.polyline());
    EntityAccess::setVertexPoint(*scene.polyline(), 1, {10, 2});
    scene.centre().setOnePolyLineConstraint(scene.polyline(), true, 1, YxGePoint3d());
    EntityAccess::removeVertex(*scene.polyline(), 0);
    EXPECT_EQ(scene.centre().deleteConstraint(), 1);
    EXPECT_EQ(scene.dependencies(), "p[1]: p[?] 31-7 status 5; p[2]: p[1] 7-22; p[3]: p[2] 22-5");
}

TEST(FilletPolylineWithCurve, MarksTheCutSegmentWhenNothingOnItStays) {
    WithCurve scene("polyline p 0,0#31 10,0#7 10,10#22; fixed p[1]; fixed p[2].end");
    scene.centre().setOnePolyLineDate(scene.polyline());
    EntityAccess::setVertexPoint(*scene.polyline(), 2, {10, 8});
    scene.centre().setOnePolyLineConstraint(scene.polyline(), false, 1, YxGePoint3d());
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-7; p[2]: p[2] 7-22 status 5");
}

TEST(FilletPolylineWithCurve, StoresThePointsOfTheCutSegmentInItsRecord) {
    WithCurve scene;
    scene.centre().setOnePolyLineDate(scene.polyline());
    EntityAccess::setVertexPoint(*scene.polyline(), 2, {10, 8});
    scene.centre().setOnePolyLineConstraint(scene.polyline(), false, 1, YxGePoint3d());
    EXPECT_EQ(LvTestAccess::firstInfos(scene.centre())[1].endPoint.y, 8.0);
    EXPECT_EQ(LvTestAccess::firstInfos(scene.centre())[2].startPoint.y, 10.0);
}

TEST(FilletPolylineWithCurve, DoesNothingWithoutGroupOrPolyline) {
    WithCurve scene;
    const std::string before = scene.dependencies();
    scene.centre().setOnePolyLineDate(scene.polyline());
    scene.centre().setOnePolyLineConstraint(nullptr, false, 0, YxGePoint3d());
    scene.refuseOpen("group");
    scene.centre().setOnePolyLineConstraint(scene.polyline(), false, 0, YxGePoint3d());
    EXPECT_EQ(scene.dependencies(), before);
}

TEST(FilletPolylineWithCurve, ThrowsForADependencyOfAnotherClass) {
    for (const unsigned int segment : {0U, 1U}) {
        WithCurve scene("polyline p 0,0#31 10,0#7 10,10#22; fixed p[1]; dependency p[2]");
        scene.centre().setOnePolyLineDate(scene.polyline());
        scene.host().answerOther("openObject", &scene.group(), scene.dependency("p[2]"));
        EXPECT_THROW(scene.centre().setOnePolyLineConstraint(scene.polyline(), false, segment, YxGePoint3d()),
                     YxError_NotThatKindOfClass);
    }
}

TEST(FilletPolylineWithCurve, SkipsADependencyThatDoesNotOpen) {
    WithCurve scene;
    scene.centre().setOnePolyLineDate(scene.polyline());
    scene.host().refuse("openObject", scene.dependency("p[2]"));
    scene.centre().setOnePolyLineConstraint(scene.polyline(), false, 0, YxGePoint3d());
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: p[3] 22-5 status 5");
}

TEST(FilletPolylineWithCurve, LeavesAnErasedDependencyAlone) {
    WithCurve scene;
    scene.centre().setOnePolyLineDate(scene.polyline());
    YxDbAssocGeomDependency* erased = scene.dependency("p[3]");
    HostAccess::erase(erased->objectId());
    scene.centre().setOnePolyLineConstraint(scene.polyline(), false, 0, {});
    EXPECT_NE(HostAccess::status(*erased), kSegmentRemovedAssocStatus);
    EXPECT_EQ(HostAccess::status(*scene.dependency("p[2]")), kSegmentRemovedAssocStatus);
    HostAccess::erase(erased->objectId(), false);
}

TEST(FilletPolylineWithCurve, SkipsARecordWithoutADependency) {
    WithCurve scene;
    scene.centre().setOnePolyLineDate(scene.polyline());
    for (Centre::PolyInfo& info : LvTestAccess::firstInfos(scene.centre()))
        info.dependency = nullptr;
    scene.centre().setOnePolyLineConstraint(scene.polyline(), false, 0, YxGePoint3d());
    scene.centre().setReversePolyLineConstraint(scene.polyline());
    EXPECT_EQ(scene.process().journal().count("YxDbAssocDependency::setStatus"), 0);
    EXPECT_EQ(scene.process().journal().count("setSubentity"), 0);
}

TEST(FilletPolylineWithCurve, PicksItsRecordsByTheOperation) {
    WithCurve scene;
    scene.centre().setOnePolyLineDate(scene.polyline());
    LvTestAccess::secondInfos(scene.centre()).append(LvTestAccess::firstInfos(scene.centre())[2]);
    scene.centre().setSecondPolyLineConstraint(scene.polyline(), false, 0, YxGePoint3d());
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-7; p[2]: p[2] 7-22; p[3]: p[3] 22-5 status 5");
    scene.centre().setFirstPolyLineConstraint(scene.polyline(), false, 0, YxGePoint3d());
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 31-7; p[2]: p[2] 7-22 status 5; p[3]: p[3] 22-5 status 5");
}

TEST(FilletReversedPolyline, PointsDependenciesAtTheirSegmentsAgain) {
    WithCurve scene;
    scene.centre().setOnePolyLineDate(scene.polyline());
    scene.polyline()->reverseCurve();
    scene.centre().setReversePolyLineConstraint(scene.polyline());
    EXPECT_EQ(scene.vertices("p"), "20,10#31 10,10#7 10,0#22 0,0#5");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[3] 22-5; p[2]: p[2] 7-22; p[3]: p[1] 31-7");
}

TEST(FilletReversedPolyline, LeavesWhatWasMarkedAndWhatItDoesNotFind) {
    WithCurve scene;
    scene.centre().setOnePolyLineDate(scene.polyline());
    HostAccess::setStatus(*scene.dependency("p[1]"), kSegmentRemovedAssocStatus);
    LvTestAccess::firstInfos(scene.centre())[1].endPoint = {99, 99, 0};
    scene.polyline()->reverseCurve();
    scene.centre().setReversePolyLineConstraint(scene.polyline());
    EXPECT_EQ(scene.process().journal().text({"setSubentity"}), "part of dependency p[3]: 2, 1");
}

TEST(FilletReversedPolyline, LetsTheLastVertexAtThePointWin) {
    WithCurve scene("polyline p 0,0#31 10,0#7 0,0#22 10,0#5 20,0#40; fixed p[1]");
    scene.centre().setOnePolyLineDate(scene.polyline());
    scene.centre().setReversePolyLineConstraint(scene.polyline());
    EXPECT_EQ(scene.process().journal().text({"setSubentity"}),
              "part of dependency p[1]: 2, 2; part of dependency p[1]: 2, 4");
}

TEST(FilletReversedPolyline, NeverTakesTheLastVertex) {
    WithCurve scene("polyline p 0,0#31 10,0#7; fixed p[1]");
    scene.centre().setOnePolyLineDate(scene.polyline());
    scene.centre().setReversePolyLineConstraint(scene.polyline());
    scene.centre().setReversePolyLineConstraint(nullptr);
    EXPECT_EQ(scene.process().journal().count("setSubentity"), 0);
}

TEST(FilletReversedPolyline, AsksTheHostNothingWithoutAPolyline) {
    WithCurve scene;
    scene.centre().setOnePolyLineDate(scene.polyline());
    const std::size_t calls = scene.process().journal().entries().size();
    scene.centre().setReversePolyLineConstraint(nullptr);
    EXPECT_EQ(scene.process().journal().entries().size(), calls);
}

TEST(FilletReversedPolyline, CountsTheVerticesOnce) {
    WithCurve scene;
    scene.centre().setOnePolyLineDate(scene.polyline());
    scene.polyline()->reverseCurve();
    scene.host().refuse("YxDbPolyline::numVerts", scene.polyline(), 2);
    scene.centre().setReversePolyLineConstraint(scene.polyline());
    EXPECT_EQ(scene.process().journal().count("setSubentity"), 3);
}

TEST(FilletReversedPolyline, SkipsADependencyOfAnotherClass) {
    WithCurve scene;
    scene.centre().setOnePolyLineDate(scene.polyline());
    scene.polyline()->reverseCurve();
    scene.host().answerOther("openObject", &scene.group(), scene.dependency("p[2]"));
    scene.centre().setReversePolyLineConstraint(scene.polyline());
    EXPECT_EQ(scene.process().journal().text({"setSubentity"}),
              "part of dependency p[1]: 2, 3; part of dependency p[3]: 2, 1");
}

}  // namespace
}  // namespace holdfast::module
