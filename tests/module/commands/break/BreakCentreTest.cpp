#include <gtest/gtest.h>

#include <cstring>

#include "tests/module/commands/break/CutCommand.h"
#include "tests/module/commands/break/TestAccess.h"
#include "tests/module/core/CheckedScene.h"

namespace holdfast::module {
namespace {

#if defined(__GNUC__) && defined(__x86_64__)
// A pointer to a virtual member holds 1 + its offset in the table; the two destructors come first.
template <class Member>
std::size_t slotOf(Member member) {
    std::size_t words[2];
    static_assert(sizeof(member) == sizeof(words));
    std::memcpy(words, &member, sizeof(words));
    return (words[0] - 1) / sizeof(void*);
}

TEST(BreakCentre, KeepsItsSlotOrder) {
    using Break = ConstraintBreakCmdCenter;
    EXPECT_EQ(slotOf(&LvEditDeleteConstraint::deleteConstraint), 2U);
    EXPECT_EQ(slotOf(&Break::setPtParam), 3U);
    EXPECT_EQ(slotOf(&Break::setFirstCurve), 4U);
    EXPECT_EQ(slotOf(&Break::setSecondCurve), 5U);
    EXPECT_EQ(slotOf(&Break::setSecondPoly), 6U);
}
#endif

TEST(BreakCentre, BeginsWithNothing) {
    ConstraintBreakCmdCenter centre;
    EXPECT_EQ(LvTestAccess::startParam(centre), 0.0);
    EXPECT_EQ(LvTestAccess::endParam(centre), 0.0);
    EXPECT_EQ(LvTestAccess::breakCase(centre), 0);
    EXPECT_EQ(LvTestAccess::lastVertexId(centre), 0);
    EXPECT_EQ(LvTestAccess::vertexIds(centre).growLength(), 8);
    EXPECT_EQ(LvTestAccess::staying(centre).growLength(), 8);
    EXPECT_EQ(LvTestAccess::moved(centre).growLength(), 8);
}

TEST(BreakCentre, CopiesAllFields) {
    CheckedScene scene("polyline p 0,0#11 10,0#12 20,0#13 30,0#14; fixed p[1].start; fixed p[3].end");
    ConstraintBreakCmdCenter centre;
    centre.setPtParam(scene.entity("p"), {15, 0, 0}, {18, 0, 0});
    const CutPieces pieces = cutPolyline(EntityAccess::polyline(*scene.entity<YxDbPolyline>("p")), 1.5, 1.8);
    const auto first = EntityAccess::makePolyline(pieces.first);
    centre.setFirstCurve(scene.id("p"), first.get());

    ConstraintTrimCmdCenter unrelated;
    ConstraintBreakCmdCenter copy(centre);
    ConstraintBreakCmdCenter assigned;
    assigned = centre;
    for (ConstraintBreakCmdCenter* other : {&copy, &assigned}) {
        EXPECT_EQ(LvTestAccess::groupId(*other), scene.groupId());
        EXPECT_EQ(LvTestAccess::startParam(*other), 1.5);
        EXPECT_EQ(LvTestAccess::endParam(*other), 1.8);
        EXPECT_EQ(LvTestAccess::breakCase(*other), 5);
        EXPECT_EQ(LvTestAccess::vertexIds(*other), LvTestAccess::vertexIds(centre));
        EXPECT_EQ(LvTestAccess::touched(*other), (std::map<int, int>{{1, 2}}));
        EXPECT_EQ(LvTestAccess::staying(*other).length(), 1);
        EXPECT_EQ(LvTestAccess::moved(*other).length(), 1);
    }
}

TEST(TrimCentre, CopiesAsABreakDoes) {
    CheckedScene scene("line a 0,0 10,0; line left 2,0 3,0");
    ConstraintTrimCmdCenter centre;
    YxArray<int> indices;
    indices.append(0);
    YxArray<void*> pieces;
    pieces.append(scene.entity("left"));
    centre.setPtParam(scene.entity("a"), indices, pieces);
    ConstraintTrimCmdCenter copy(centre);
    ConstraintTrimCmdCenter assigned;
    assigned = centre;
    EXPECT_EQ(LvTestAccess::startParam(copy), 2.0);
    EXPECT_EQ(LvTestAccess::endParam(assigned), 3.0);
}

struct WatchedCentre : ConstraintBreakCmdCenter {
    void setSecondPoly(const YxDbEntity* piece) override { handedOn = piece; }
    const YxDbEntity* handedOn = nullptr;
};

TEST(SetSecondCurve, HandsAPolylineOnThroughTheTable) {
    CheckedScene scene("line a 0,0 10,0; polyline p 0,0 1,0");
    const auto line = EntityAccess::makeLine({0, 0, 0}, {1, 0, 0});
    const auto polyline = EntityAccess::makePolyline({.vertices = {{{0, 0}}, {{1, 0}}}, .closed = false});
    WatchedCentre centre;
    centre.setSecondCurve(line.get());
    EXPECT_EQ(centre.handedOn, nullptr);
    centre.setSecondCurve(polyline.get());
    EXPECT_EQ(centre.handedOn, polyline.get());
    centre.setSecondCurve(nullptr);
}

TEST(SetSecondCurve, OnlyTakesCopiedDependenciesOffAPieceThatIsNoPolyline) {
    CheckedScene scene("line a 0,0 10,0; reactor a; fixed a.start");
    const auto piece = EntityAccess::makeLine({5, 0, 0}, {10, 0, 0});
    copyReactors(*scene.entity("a"), *piece);
    ConstraintBreakCmdCenter centre;
    centre.setSecondCurve(piece.get());
    EXPECT_EQ(HostAccess::reactors(*piece).size(), 1U);
    EXPECT_EQ(HostAccess::reactors(*scene.entity("a")).size(), 2U);
    EXPECT_EQ(scene.constraints(), "fixed a.start");
}

}  // namespace
}  // namespace holdfast::module
