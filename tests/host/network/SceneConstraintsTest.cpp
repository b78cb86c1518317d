#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/model/entities/EntityAccess.h"
#include "tests/support/TestScene.h"

namespace holdfast {
namespace {

using testing::ElementsAre;

constexpr const char* kEntities =
    "line a 0,0 10,0; line b 0,0 0,5; xline x 0,0 dir 0,1; circle c centre 0,0 radius 3; arc k centre 0,0 radius 5 "
    "from 0 to 90; ellipse e centre 0,0 major 4,0 ratio 0.5; point q 1,1; text t 0,0; spline s degree 1 at 0,0 1,1; "
    "polyline p 0,0#11 10,0#12^0.5 10,10#13;";

struct KindRow {
    const char* statement;
    YxRxClass* (*type)();
};

TEST(SceneConstraint, IsOfTheClassOfItsKind) {
    const KindRow rows[] = {
        {"coincident a.start b.start", &YxPointCoincidenceConstraint::desc},
        {"on b.end a", &YxPointCurveConstraint::desc},
        {"fixed a.mid", &YxFixedConstraint::desc},
        {"horizontal a", &YxHorizontalConstraint::desc},
        {"horizontal t", &YxHorizontalConstraint::desc},
        {"vertical a.start b.end", &YxVerticalConstraint::desc},
        {"parallel a p[1]", &YxParallelConstraint::desc},
        {"perpendicular a b", &YxPerpendicularConstraint::desc},
        {"collinear a x", &YxCollinearConstraint::desc},
        {"tangent a c", &YxTangentConstraint::desc},
        {"concentric c.centre k.centre", &YxConcentricConstraint::desc},
        {"equal a b", &YxEqualLengthConstraint::desc},
        {"equalradius c k", &YxEqualRadiusConstraint::desc},
        {"symmetric a.start a.end x", &YxSymmetricConstraint::desc},
        {"midpoint q a", &YxMidPointConstraint::desc},
        {"internal helper focus1 q e", &YxInternalConstraint::desc},
        {"distance a b = 5", &YxDimensionConstraint::desc},
        {"distancex a.start b.end = -5", &YxDimensionConstraint::desc},
        {"distancey a.start b.end = 0.1 measured", &YxDimensionConstraint::desc},
        {"radius c = 3", &YxDimensionConstraint::desc},
        {"diameter c = 6", &YxDimensionConstraint::desc},
        {"angle a b = 90", &YxDimensionConstraint::desc},
        {"smooth s.end a.start", &YxG2SmoothConstraint::desc},
        {"composite { fixed a; fixed s.control1 }", &YxCompositeConstraint::desc},
        {"implied coincident p[1].end p[2].start", &YxPointCoincidenceConstraint::desc},
        {"fixed p[2].centre", &YxFixedConstraint::desc},
        {"fixed t.position", &YxFixedConstraint::desc},
    };
    for (const KindRow& row : rows) {
        TestScene scene(std::string(kEntities) + row.statement);
        EXPECT_EQ(scene.constraint("c1")->isA(), row.type()) << row.statement;
        EXPECT_EQ(scene.constraints(), row.statement);
    }
}

TEST(SceneConstraint, OfACompositeHoldsItsMembersInOrder) {
    TestScene scene(std::string(kEntities) + "k: composite { m: fixed a; internal horizontal b }");
    auto* composite = static_cast<YxCompositeConstraint*>(scene.constraint("k"));
    YxArray<YxGeomConstraint*> owned;
    composite->getOwnedConstraints(owned);
    ASSERT_EQ(owned.length(), 2);
    EXPECT_EQ(owned[0], scene.constraint("m"));
    EXPECT_TRUE(owned[1]->isInternal());
    EXPECT_FALSE(composite->isInternal());
}

TEST(SceneConstraint, SmoothOwnsTheCoincidenceOfItsJoint) {
    TestScene scene(std::string(kEntities) + "smooth s.end a.start");
    YxArray<YxGeomConstraint*> owned;
    static_cast<YxCompositeConstraint*>(scene.constraint("c1"))->getOwnedConstraints(owned);
    ASSERT_EQ(owned.length(), 1);
    EXPECT_TRUE(owned[0]->isKindOf(YxPointCoincidenceConstraint::desc()));
    EXPECT_EQ(owned[0], scene.constraint("c2"));
}

TEST(SceneConstraint, IsNamedByItsPlaceInTheTextUnlessItHasAName) {
    TestScene scene(std::string(kEntities) + "fixed a; top: fixed b; fixed c; composite { fixed q; fixed x }");
    EXPECT_EQ(scene.process().nameOf(scene.constraint("c3")), "c3");
    EXPECT_NE(scene.constraint("top"), nullptr);
    EXPECT_NE(scene.constraint("c5"), nullptr);
    EXPECT_NE(scene.constraint("c6"), nullptr);
    EXPECT_EQ(scene.constraint("c2"), nullptr);
}

TEST(SceneConstraint, DoesNotTakeANameThatTheTextGivesToAnother) {
    TestScene scene(std::string(kEntities) + "fixed a; fixed b; c2: fixed c");
    EXPECT_EQ(scene.constraint("c2"), HostAccess::constraints(scene.group()).back());
    EXPECT_EQ(HostAccess::constraints(scene.group()).size(), 3U);
}

TEST(SceneConstraint, OnTheEndOfASplineNamesItsControlPoint) {
    TestScene scene("spline s degree 1 at 0,0 1,1 2,2; fixed s.start; fixed s.end; fixed s.control1");
    const auto point = [&](const char* place) {
        return static_cast<YxConstrainedImplicitPoint*>(scene.geometry(place));
    };
    EXPECT_EQ(point("s.start")->pointIndex(), 0);
    EXPECT_EQ(point("s.end")->pointIndex(), 2);
    EXPECT_EQ(point("s.end")->pointType(), YxDb::kEndImplicit);
    EXPECT_EQ(point("s.control1")->pointIndex(), 1);
    EXPECT_EQ(point("s.control1")->pointType(), YxDb::kControlImplicit);
}

TEST(SceneConstraint, OnATextsPositionNeedsNoDirectionLine) {
    TestScene scene("text t 0,0; fixed t.position");
    EXPECT_EQ(scene.geometry("t.position")->isA(), YxConstrainedPoint::desc());
    EXPECT_EQ(HostAccess::geometries(scene.group()).size(), 1U);
    EXPECT_EQ(scene.dependencies(), "t.position: t.position");
}

TEST(SceneDependency, StandsOnItsPartWithOrWithoutGeometry) {
    TestScene scene(std::string(kEntities) + "dependency p[2]; bare dependency a; reactor b");
    EXPECT_NE(scene.geometry("p[2]"), nullptr);
    EXPECT_EQ(scene.geometry("a"), nullptr);
    EXPECT_EQ(scene.dependency("b"), nullptr);
    EXPECT_EQ(scene.dependencies(), "p[2]: p[2] 12-13; a: a");
    EXPECT_EQ(HostAccess::reactors(*scene.entity("b")).size(), 1U);
}

TEST(SceneDependency, IsPrintedWhereItIsNow) {
    TestScene scene(std::string(kEntities) + "dependency p[2]; dependency a");
    const auto open = YxDbObjectIdImpl::openObject(scene.dependency("p[2]")->objectId(), YxDb::kForWrite, false);
    const YxSmartPtr<YxDbAssocGeomDependency> dependency = open;
    dependency->setSubentity({YxDb::kEdgeSubentType, 1});
    dependency->setStatus(kSegmentRemovedAssocStatus);
    EXPECT_EQ(scene.dependencies(), "p[2]: p[1] 11-12 status 5; a: a");
    dependency->detachFromObject();
    EXPECT_EQ(scene.dependencies(), "p[2]: detached 11-12 status 5; a: a");
}

TEST(SceneCorners, TieNeighbouringConstrainedSegments) {
    TestScene scene("polyline p 0,0 1,0 1,1 0,1 closed; fixed p[1]; fixed p[2]; fixed p[4]; corners p; corners p");
    EXPECT_EQ(scene.constraints(),
              "fixed p[1]; fixed p[2]; fixed p[4]; implied coincident p[1].end p[2].start; "
              "implied coincident p[4].end p[1].start");
}

TEST(SceneCorners, AreNoneByThemselves) {
    TestScene scene("polyline p 0,0 1,0 1,1; fixed p[1]; fixed p[2]");
    EXPECT_EQ(scene.constraints(), "fixed p[1]; fixed p[2]");
}

TEST(SceneGroup, TakesWhatFollowsUntilTheNextOne) {
    TestScene scene("line a 0,0 1,0; fixed a; group second; horizontal a; group third; group second; vertical a");
    EXPECT_EQ(scene.constraints(), "fixed a");
    EXPECT_EQ(scene.constraints("second"), "horizontal a; vertical a");
    EXPECT_EQ(scene.constraints("third"), "");
    EXPECT_EQ(HostAccess::reactors(*scene.entity("a")).size(), 2U);
}

TEST(SceneSettings, SetTheUserCoordinateSystemAndTheSpace) {
    TestScene scene("ucs 0,1 -1,0; ucs paper 1,1 -1,1; paper");
    const YxDbDatabase& database = scene.process().database();
    EXPECT_TRUE(database.ucsxdir().isEqualTo({0, 1, 0}));
    EXPECT_TRUE(database.pucsydir().isEqualTo({-1, 1, 0}));
    EXPECT_FALSE(database.tilemode());
}

TEST(SceneNames, ReachWhatTheyName) {
    TestScene scene("line a 0,0 1,0; fixed a");
    EXPECT_EQ(scene.id("a"), scene.entity("a")->objectId());
    EXPECT_EQ(scene.entity<YxDbCircle>("a"), nullptr);
    EXPECT_TRUE(scene.id("b").isNull());
    EXPECT_EQ(scene.id("group"), scene.groupId());
    EXPECT_EQ(&scene.group("group"), &scene.group());
    EXPECT_EQ(scene.constraint("c2"), nullptr);
}

}  // namespace
}  // namespace holdfast
