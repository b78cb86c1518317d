#include <gtest/gtest.h>

#include <functional>

#include "tests/commands/fillet/FilletAccess.h"

namespace holdfast {
namespace {

using Mode = Centre::PolylineTrimMode;

/// Fillets segments f and g of polyline p in place; constraints are deleted at the end.
void filletSelf(Scene& scene, unsigned int f, unsigned int g, Mode mode, bool sharp,
                const std::function<void(YxDbPolyline&)>& change) {
    Centre centre;
    auto& polyline = *scene.entity<YxDbPolyline>("p");
    centre.setSelfPolyLineDate(&polyline, f, g, mode, sharp);
    const OpenForWrite open(scene.id("p"));
    change(polyline);
    centre.setSelfPolyLineConstraint(&polyline);
    centre.deleteConstraint();
}

const std::string kOpen = "polyline p 0,0#11 10,0#12 10,10#13 20,10#14; fixed p[1]; fixed p[2]; fixed p[3]";

TEST(SelfFillet, RecordsNothingWhereNothingIsToBeRemapped) {
    struct Row {
        const char* description;
        Mode mode;
        bool sharp;
    };
    for (const Row& row : {Row{"mode 0", Centre::kNothing, false}, Row{"sharp corner", Centre::kCorner, true},
                           Row{"sharp closing corner", Centre::kClosingCorner, true}}) {
        TestScene scene(kOpen);
        Centre centre;
        centre.setSelfPolyLineDate(scene.entity("p"), 0, 1, row.mode, row.sharp);
        EXPECT_TRUE(LvTestAccess::firstInfos(centre).isEmpty()) << row.description;
        EXPECT_EQ(LvTestAccess::trimMode(centre), 0) << row.description;
    }
}

TEST(SelfFillet, PutsTheFirstInFrontAndShiftsWhatLiesBehindTheNewArc) {
    TestScene scene(kOpen);
    Centre centre;
    centre.setSelfPolyLineDate(scene.entity("p"), 0, 1, Centre::kCorner, false);
    const auto& infos = LvTestAccess::firstInfos(centre);
    ASSERT_EQ(infos.length(), 2);
    EXPECT_EQ(infos[0].startIndex, 0);
    EXPECT_EQ(infos[1].startIndex, 2);
    EXPECT_EQ(infos[1].endIndex, 3);
    EXPECT_EQ(infos[1].startVertexId, 12);
    EXPECT_EQ(infos[1].startPoint.x, 10.0);
}

TEST(SelfFillet, AtACornerPointsTheSecondDependencyBehindTheArc) {
    TestScene scene(kOpen + "; implied coincident p[1].end p[2].start");
    filletSelf(scene, 0, 1, Centre::kCorner, false, [](YxDbPolyline& p) {
        EntityAccess::insertVertex(p, 1, {.point = {8, 0}, .bulge = 0.41});
        EntityAccess::setVertexPoint(p, 2, {10, 2});
    });
    EXPECT_EQ(scene.vertices("p"), "0,0#11 8,0#12^0.41 10,2#15 10,10#16 20,10#14");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 11-12; p[2]: p[3] 15-16; p[3]: p[?] 13-14");
    EXPECT_EQ(scene.constraints(), "fixed p[1]; fixed p[3]; fixed p[?]");
}

TEST(SelfFillet, SharpPointsTheFirstAgainAtItsOwnSegmentWhenThePartBetweenVanishes) {
    TestScene scene(kOpen);
    filletSelf(scene, 0, 2, Centre::kBetween, true, [](YxDbPolyline& p) {
        EntityAccess::removeVertices(p, 1, 1);
        EntityAccess::setVertexPoint(p, 1, {15, 0});
    });
    EXPECT_EQ(scene.vertices("p"), "0,0#11 15,0#13 20,10#14");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 11-13; p[2]: p[?] 12-13 status 5; p[3]: p[2] 13-14");
}

TEST(SelfFillet, MarksWhatVanishesBehindTheSecond) {
    TestScene scene(
        "polyline p 0,0#1 10,0#2 10,10#3 0,10#4 -5,5#5 closed; fixed p[1]; fixed p[3]; fixed p[4]; fixed p[5]");
    Centre centre;
    centre.setSelfPolyLineDate(scene.entity("p"), 0, 2, Centre::kBehind, false);
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 1-2; p[3]: p[3] 3-4; p[4]: p[4] 4-5 status 5; p[5]: p[5] 5-1 status 5");
}

TEST(SelfFillet, OfAClosingCornerNumbersTheSecondAnew) {
    TestScene scene(
        "polyline p 0,0#1 10,0#2 10,10#3 0,10#4 closed; fixed p[1]; fixed p[4]; "
        "implied coincident p[4].end p[1].start");
    filletSelf(scene, 0, 3, Centre::kClosingCorner, false, [](YxDbPolyline& p) {
        EntityAccess::setVertexPoint(p, 0, {2, 0});
        EntityAccess::insertVertex(p, 4, {.point = {0, 2}, .bulge = 0.41});
    });
    EXPECT_EQ(scene.vertices("p"), "2,0#1 10,0#2 10,10#3 0,10#5 0,2#6^0.41 closed");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 1-2; p[4]: p[4] 5-6");
    EXPECT_EQ(scene.constraints(), "fixed p[1]; fixed p[4]");
}

TEST(SelfFillet, ThatClosesPointsTheLastKeptAtItsEnd) {
    TestScene scene("polyline p 0,0#1 10,0#2 10,10#3 0,10#4; fixed p[1]; fixed p[3]");
    filletSelf(scene, 0, 2, Centre::kClosing, true, [](YxDbPolyline& p) {
        EntityAccess::setVertexPoint(p, 0, {0, 0});
        EntityAccess::removeVertex(p, 3);
        EntityAccess::setClosed(p, true);
    });
    EXPECT_EQ(scene.vertices("p"), "0,0#1 10,0#2 10,10#3 closed");
    EXPECT_EQ(scene.dependencies(), "p[1]: p[1] 1-2; p[3]: p[3] 3-1");
}

TEST(SelfFillet, WithNothingKeptTouchesNoIdentifier) {
    TestScene scene("polyline p 0,0#11 10,0#12 10,10#13; coincident p[1].end p[2].start");
    filletSelf(scene, 0, 1, Centre::kCorner, false, [](YxDbPolyline& p) {
        EntityAccess::insertVertex(p, 1, {.point = {8, 0}, .bulge = 0.41});
        EntityAccess::setVertexPoint(p, 2, {10, 2});
    });
    EXPECT_EQ(scene.vertices("p"), "0,0#11 8,0^0.41 10,2#12 10,10#13");
    EXPECT_EQ(scene.constraints(), "");
}

TEST(SelfFillet, StopsWithoutAGroup) {
    TestScene scene(kOpen);
    Centre centre;
    centre.setSelfPolyLineDate(scene.entity("p"), 0, 1, Centre::kCorner, false);
    scene.refuseOpen("group");
    centre.setSelfPolyLineConstraint(scene.entity("p"));
    scene.host().clear();
    EXPECT_EQ(scene.vertices("p"), "0,0#11 10,0#12 10,10#13 20,10#14");
}

}  // namespace
}  // namespace holdfast
