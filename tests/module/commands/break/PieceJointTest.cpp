#include <gtest/gtest.h>

#include "tests/module/commands/break/CutCommand.h"
#include "tests/module/commands/break/TestAccess.h"
#include "tests/module/core/CheckedScene.h"

namespace holdfast::module {
namespace {

/// A polyline p that is the second piece of a cut, as it stands before the joint is looked at. The corners are named.
class JointScene : public CheckedScene {
public:
    explicit JointScene(
        const std::string& text =
            "polyline p 10,0#12 20,0#13 30,0#14; line b 0,0 10,0; c0: fixed p[1]; "
            "joint: implied coincident p[1].start b.end; corner: implied coincident p[1].end p[2].start")
        : CheckedScene(text) {
        LvTestAccess::groupId(m_centre) = groupId();
        LvTestAccess::lastVertexId(m_centre) = 12;
    }
    ConstraintBreakCmdCenter& centre() { return m_centre; }
    std::string loosened(const char* place) {
        LvTestAccess::deleteCoincidence(m_centre, dependency(place), entity<YxDbPolyline>("p"));
        return process().journal().text({"deleteConstraint", "setIsImplied"});
    }

private:
    ConstraintBreakCmdCenter m_centre;
};

TEST(PieceJoint, LosesOneCoincidenceAtOnceAfterItsImpliedMark) {
    JointScene scene;
    EXPECT_EQ(scene.loosened("p[1]"), "imply joint false; delete joint");
    EXPECT_EQ(scene.constraints(), "fixed p[1]; implied coincident p[1].end p[2].start");
    EXPECT_TRUE(LvTestAccess::collected(scene.centre()).isEmpty());
}

TEST(PieceJoint, PassesOverACollectedCoincidence) {
    JointScene scene;
    LvTestAccess::collected(scene.centre()).append(scene.constraint("joint"));
    EXPECT_EQ(scene.loosened("p[1]"), "imply corner false; delete corner");
}

TEST(PieceJoint, LosesNothingWhenAllItsCoincidencesAreCollected) {
    JointScene scene;
    LvTestAccess::collected(scene.centre()).append(scene.constraint("joint"));
    LvTestAccess::collected(scene.centre()).append(scene.constraint("corner"));
    EXPECT_EQ(scene.loosened("p[1]"), "");
}

TEST(PieceJoint, IsLookedAtOnTheFirstSegmentOnly) {
    JointScene scene;
    EXPECT_EQ(scene.loosened("p[2]"), "");
}

TEST(PieceJoint, NeedsTheIdentifierAtWhichTheFirstPieceEnds) {
    JointScene scene;
    LvTestAccess::lastVertexId(scene.centre()) = 13;
    EXPECT_EQ(scene.loosened("p[1]"), "");
}

TEST(PieceJoint, NeedsAnIdentifierOfOneOrMore) {
    for (const int identifier : {0, -3}) {
        JointScene scene;
        EntityAccess::numberVertex(*scene.entity<YxDbPolyline>("p"), 0);
        const auto open = YxDbObjectIdImpl::openObject(scene.id("p"), YxDb::kForWrite, false);
        scene.entity<YxDbPolyline>("p")->setVertexIdentifierAt(0, identifier);
        HostAccess::setPersistentId(*scene.dependency("p[1]"), HostAccess::makeEdgeId(identifier, 13));
        LvTestAccess::lastVertexId(scene.centre()) = identifier;
        EXPECT_EQ(scene.loosened("p[1]"), "");
    }
}

TEST(PieceJoint, IsLoosenedAtIdentifierOneToo) {
    JointScene scene(
        "polyline p 10,0#1 20,0#13 30,0#14; line b 0,0 10,0; c0: fixed p[1]; joint: implied coincident p[1].start "
        "b.end");
    LvTestAccess::lastVertexId(scene.centre()) = 1;
    EXPECT_EQ(scene.loosened("p[1]"), "imply joint false; delete joint");
}

TEST(PieceJoint, NeedsTheGroupOpenForWriteAndTheGeometry) {
    JointScene refused;
    refused.refuseOpen("group");
    EXPECT_EQ(refused.loosened("p[1]"), "");
    JointScene other;
    LvTestAccess::groupId(other.centre()) = other.id("b");
    EXPECT_EQ(other.loosened("p[1]"), "");
    JointScene bare("polyline p 10,0#12 20,0#13 30,0#14; bare dependency p[1]");
    EXPECT_EQ(bare.loosened("p[1]"), "");
}

TEST(PieceJoint, NeedsADependencyAndAPiece) {
    JointScene scene;
    LvTestAccess::deleteCoincidence(scene.centre(), nullptr, scene.entity<YxDbPolyline>("p"));
    LvTestAccess::deleteCoincidence(scene.centre(), scene.dependency("p[1]"), nullptr);
    EXPECT_EQ(scene.process().journal().count("deleteConstraint"), 0);
}

TEST(PieceJoint, TakesItsPointsInGroupOrderAndTheirConstraintsInTheirOrder) {
    JointScene scene(
        "polyline p 10,0#12 20,0#13 30,0#14; line b 0,0 10,0; c1: fixed p[1].end; c2: fixed p[1].start; "
        "c3: coincident p[1].start b.end; c4: coincident b.start p[1].end; c5: coincident p[1].end p[2].start");
    EXPECT_EQ(scene.loosened("p[1]"), "imply c4 false; delete c4");
}

TEST(PieceJoint, LosesAMemberWithoutItsComposite) {
    JointScene scene(
        "polyline p 10,0#12 20,0#13 30,0#14; line b 0,0 10,0; "
        "k: composite { m: coincident p[1].start b.end; coincident b.start p[2].end }");
    EXPECT_EQ(scene.loosened("p[1]"), "imply m false; delete m");
    EXPECT_EQ(scene.constraints(), "composite { coincident b.start p[2].end }");
}

TEST(PieceJoint, LosesOneCoincidenceForEachDependencyOnTheFirstSegment) {
    JointScene scene;
    EXPECT_EQ(scene.loosened("p[1]"), "imply joint false; delete joint");
    EXPECT_EQ(scene.loosened("p[1]"), "imply joint false; delete joint; imply corner false; delete corner");
    EXPECT_EQ(scene.constraints(), "fixed p[1]");
}

}  // namespace
}  // namespace holdfast::module
