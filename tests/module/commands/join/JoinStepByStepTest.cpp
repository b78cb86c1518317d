#include <gtest/gtest.h>

#include "commands/join/ConstraintJoinCmdCenter.h"
#include "tests/module/evaluation/FeedingScene.h"

namespace holdfast::module {
namespace {

// m is the main polyline, of three vertices before the join and of eight behind it; q and r carry nothing.
constexpr const char* kFreeMain =
    "polyline p 50,0#11 51,0#12 52,0#13; polyline m 0,0 1,0 2,0; polyline q 60,0 61,0; polyline r 70,0 71,0 72,0;"
    "dependency p[1]; dependency p[2]";
constexpr const char* kCarryingMain =
    "polyline q 60,0 61,0; polyline m 0,0#21 1,0#22 2,0#23; polyline p 50,0#11 51,0#12; polyline r 70,0 71,0 72,0;"
    "dependency m[1]; dependency m[2]; dependency p[1]";

class Join {
public:
    explicit Join(FeedingScene& scene) : m_scene(scene) { m_centre.joinMainPolyline(scene.id("m")); }

    Join& polyline(const char* name, bool first, bool second) {
        m_centre.joinPolyline(m_scene.entity<YxDbPolyline>("m"), m_scene.entity<YxDbPolyline>(name), first, second);
        return *this;
    }
    Join& line(bool behind) {
        m_centre.joinLineArc(behind);
        return *this;
    }
    /// The identifiers of the main polyline after the host gave it its vertices and the last step ran.
    std::string end() {
        giveFinalVertices();
        m_centre.dealAssocPlineJoin2();
        std::string identifiers;
        for (const PolylineVertex& vertex : EntityAccess::polyline(*m_scene.entity<YxDbPolyline>("m")).vertices)
            identifiers += (identifiers.empty() ? "" : " ") + std::to_string(vertex.identifier);
        return identifiers;
    }

private:
    void giveFinalVertices() {
        const auto opened = YxDbObjectIdImpl::openObject(m_scene.id("m"), YxDb::kForWrite, false);
        PolylineData data;
        for (int i = 0; i < 8; ++i)
            data.vertices.push_back({.point = {static_cast<double>(i), 0.0}});
        if (opened)
            EntityAccess::setPolyline(static_cast<YxDbPolyline&>(*opened), data);
    }

    FeedingScene& m_scene;
    ConstraintJoinCmdCenter m_centre;
};

TEST(JoinMain, KeepsItsIdentifiersWhenItCarriesDependencies) {
    FeedingScene scene(kCarryingMain);
    EXPECT_EQ(Join(scene).end(), "21 22 23 0 0 0 0 0");
    EXPECT_EQ(scene.calls("detachFromObject") + scene.calls("attachToObject"), 0);
}

TEST(JoinMain, MovesItsIdentifiersBehindAllThatIsPutInFront) {
    FeedingScene scene(kCarryingMain);
    Join join(scene);
    join.line(false).polyline("r", true, false).line(false);
    EXPECT_EQ(join.end(), "0 0 0 0 21 22 23 0");
}

TEST(JoinMain, KeepsItsIdentifiersInPlaceForAllThatIsAppended) {
    FeedingScene scene(kCarryingMain);
    Join join(scene);
    join.line(true).polyline("r", false, true).polyline("q", false, false);
    EXPECT_EQ(join.end(), "21 22 23 0 0 0 0 0");
}

TEST(JoinMain, IsTheOnlyOneWhoseDependenciesCount) {
    FeedingScene scene(kCarryingMain);
    Join join(scene);
    join.polyline("p", true, false);
    EXPECT_EQ(join.end(), "0 21 22 23 0 0 0 0");
    EXPECT_EQ(HostAccess::reactors(*scene.pointer("p")).size(), 1U);
}

TEST(JoinMain, CountsItsVerticesWhenItCarriesNothing) {
    FeedingScene scene(kFreeMain);
    EXPECT_EQ(Join(scene).polyline("p", false, true).end(), "0 0 11 12 13 0 0 0");
}

TEST(JoinMain, IsNotCountedWhenItIsNoPolyline) {
    FeedingScene scene("line m 0,0 1,0; polyline p 50,0#11 51,0#12; dependency m; dependency p[1]");
    ConstraintJoinCmdCenter centre;
    centre.joinMainPolyline(scene.id("m"));
    centre.joinPolyline(scene.entity<YxDbPolyline>("p"), scene.entity<YxDbPolyline>("p"), false, true);
    centre.dealAssocPlineJoin2();
    EXPECT_EQ(scene.calls("setVertexIdentifierAt"), 0);
}

TEST(JoinMain, ThrowsForAnObjectThatIsNoEntity) {
    FeedingScene scene(kFreeMain);
    scene.addNonEntity("plain");
    ConstraintJoinCmdCenter centre;
    EXPECT_THROW(centre.joinMainPolyline(scene.id("plain")), YxError_NotThatKindOfClass);
    EXPECT_THROW(centre.dealAssocPlineJoin2(), YxError_NotThatKindOfClass);
}

TEST(JoinMain, GetsNoIdentifiersWhenItDoesNotOpen) {
    FeedingScene scene(kFreeMain);
    Join join(scene);
    join.polyline("p", false, true);
    scene.refuseOpen("m");
    EXPECT_EQ(join.end(), "0 0 0");
}

TEST(JoinPolyline, AppendedByItsStartKeepsItsDirection) {
    FeedingScene scene(kFreeMain);
    EXPECT_EQ(Join(scene).polyline("p", false, true).end(), "0 0 11 12 13 0 0 0");
}

TEST(JoinPolyline, AppendedByItsEndIsTurnedRound) {
    FeedingScene scene(kFreeMain);
    EXPECT_EQ(Join(scene).polyline("p", false, false).end(), "0 0 12 13 0 0 0 0");
}

TEST(JoinPolyline, PutInFrontByItsEndKeepsItsDirection) {
    FeedingScene scene(kFreeMain);
    EXPECT_EQ(Join(scene).polyline("p", true, false).end(), "11 12 13 0 0 0 0 0");
}

TEST(JoinPolyline, PutInFrontByItsStartIsTurnedRound) {
    FeedingScene scene(kFreeMain);
    EXPECT_EQ(Join(scene).polyline("p", true, true).end(), "12 13 0 0 0 0 0 0");
}

TEST(JoinPolyline, LandsBehindAllThatWasJoinedBeforeItAtWhicheverEnd) {
    FeedingScene scene(kFreeMain);
    Join join(scene);
    join.line(true).line(false).polyline("q", true, false);
    EXPECT_EQ(join.polyline("p", false, true).end(), "0 0 0 0 0 11 12 13");
}

TEST(JoinPolyline, PutInFrontForgetsAllThatWasJoinedBeforeIt) {
    FeedingScene scene(kFreeMain);
    Join join(scene);
    join.line(true).polyline("q", false, true);
    EXPECT_EQ(join.polyline("p", true, false).end(), "11 12 13 0 0 0 0 0");
}

TEST(JoinPolyline, MovesBackOnlyForWhatIsPutInFrontOfItLater) {
    FeedingScene scene(kFreeMain);
    Join join(scene);
    join.polyline("p", true, false).polyline("r", true, false).polyline("q", false, true).line(true).line(false);
    EXPECT_EQ(join.end(), "0 0 0 11 12 13 0 0");
}

TEST(JoinPolyline, HandsItsDependenciesToTheResultAtOnce) {
    FeedingScene scene(kFreeMain + std::string("; reactor p"));
    Join(scene).polyline("p", false, true);
    EXPECT_EQ(
        scene.process().journal().text({"detachFromObject", "attachToObject"}),
        "detach dependency p[1]; attach dependency p[1] to m; detach dependency p[2]; attach dependency p[2] to m");
    EXPECT_EQ(HostAccess::reactors(*scene.pointer("p")).size(), 1U);
}

TEST(JoinPolyline, IsIgnoredWhenItIsMissing) {
    FeedingScene scene(kFreeMain);
    ConstraintJoinCmdCenter centre;
    centre.joinPolyline(nullptr, scene.entity<YxDbPolyline>("p"), false, true);
    centre.joinPolyline(scene.entity<YxDbPolyline>("m"), nullptr, false, true);
    EXPECT_TRUE(scene.process().journal().entries().empty());
}

TEST(JoinSteps, AreCopiedWithTheCentre) {
    FeedingScene scene(kFreeMain);
    Join join(scene);
    join.polyline("p", false, true);
    Join copy(join);
    copy.line(false);
    EXPECT_EQ(copy.end(), "0 0 0 11 12 13 0 0");
    EXPECT_EQ(join.end(), "0 0 11 12 13 0 0 0");
}

TEST(JoinStepFailures, LeaveNothingOpen) {
    const int calls = failEachCall(kFreeMain, [](FeedingScene& scene) {
        Join join(scene);
        join.line(true).polyline("p", false, false).polyline("r", true, true);
        join.end();
    });
    EXPECT_GT(calls, 30);
}

}  // namespace
}  // namespace holdfast::module
