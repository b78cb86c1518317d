#include <gtest/gtest.h>

#include <climits>

#include "tests/module/commands/break/CutCommand.h"
#include "tests/module/commands/break/TestAccess.h"
#include "tests/module/core/CheckedScene.h"

namespace holdfast::module {
namespace {

TEST(SetPtParam, RecordsTheParametersOfTheCutPoints) {
    CheckedScene scene("line a 0,0 10,0");
    ConstraintBreakCmdCenter centre;
    centre.setPtParam(scene.entity("a"), {4, 0, 0}, {7, 0, 0});
    EXPECT_EQ(LvTestAccess::startParam(centre), 4.0);
    EXPECT_EQ(LvTestAccess::endParam(centre), 7.0);
}

TEST(SetPtParam, ExchangesPointsInTheOtherOrder) {
    CheckedScene scene("line a 0,0 10,0");
    ConstraintBreakCmdCenter centre;
    centre.setPtParam(scene.entity("a"), {7, 0, 0}, {4, 0, 0});
    EXPECT_EQ(LvTestAccess::startParam(centre), 4.0);
    EXPECT_EQ(LvTestAccess::endParam(centre), 7.0);
}

TEST(SetPtParam, ExchangesBySumsDownToTheLastBit) {
    CheckedScene scene("polyline p 0,0 8,0 16,0");
    ConstraintBreakCmdCenter centre;
    centre.setPtParam(scene.entity("p"), {1.7, 0, 0}, {0.1, 0, 0});
    EXPECT_EQ(LvTestAccess::startParam(centre), 0x1.99999999999a0p-7);
    EXPECT_EQ(LvTestAccess::endParam(centre), 0.2125);
}

TEST(SetPtParam, LeavesTheParametersForWhatIsNoCurve) {
    CheckedScene scene("point q 1,1; line a 0,0 10,0");
    ConstraintBreakCmdCenter centre;
    centre.setPtParam(scene.entity("a"), {4, 0, 0}, {7, 0, 0});
    centre.setPtParam(nullptr, {0, 0, 0}, {1, 0, 0});
    centre.setPtParam(scene.entity("q"), {0, 0, 0}, {1, 0, 0});
    EXPECT_EQ(LvTestAccess::startParam(centre), 4.0);
    EXPECT_EQ(LvTestAccess::endParam(centre), 7.0);
}

TEST(SetPtParam, LeavesAParameterThatTheCurveDoesNotTell) {
    CheckedScene scene("line a 0,0 10,0");
    ConstraintBreakCmdCenter centre;
    scene.host().refuse("getParamAtPoint", scene.entity("a"), 1);
    centre.setPtParam(scene.entity("a"), {4, 0, 0}, {7, 0, 0});
    EXPECT_EQ(LvTestAccess::startParam(centre), 0.0);
    EXPECT_EQ(LvTestAccess::endParam(centre), 7.0);
}

/// A line of 10, and the pieces that TRIM's cutting edges make of it, with things that are none.
class TrimScene : public CheckedScene {
public:
    TrimScene() : CheckedScene("line a 0,0 10,0; point q 1,1; line left 0,0 3,0; line right 8,0 3,0") {}
    YxArray<void*> pieces(const std::vector<const char*>& names) const {
        YxArray<void*> list;
        for (const char* name : names)
            list.append(entity(name));
        return list;
    }
};

YxArray<int> indices(const std::vector<int>& numbers) {
    YxArray<int> list;
    for (const int number : numbers)
        list.append(number);
    return list;
}

TEST(TrimSetPtParam, TakesTheEndsOfTheFirstPieceThatIsACurve) {
    TrimScene scene;
    ConstraintTrimCmdCenter centre;
    const auto pieces = scene.pieces({"left", "q", "nobody", "right"});
    centre.setPtParam(scene.entity("a"), indices({9, INT_MAX, 4, 2, 1, 3, 0}), pieces);
    EXPECT_EQ(LvTestAccess::startParam(centre), 3.0);
    EXPECT_EQ(LvTestAccess::endParam(centre), 8.0);
}

TEST(TrimSetPtParam, LeavesTheParametersWhenNoIndexNamesACurve) {
    TrimScene scene;
    ConstraintTrimCmdCenter centre;
    const auto pieces = scene.pieces({"q", "nobody"});
    centre.setPtParam(scene.entity("a"), indices({}), pieces);
    centre.setPtParam(scene.entity("a"), indices({0, 1, 2}), pieces);
    EXPECT_EQ(LvTestAccess::startParam(centre), 0.0);
    EXPECT_EQ(LvTestAccess::endParam(centre), 0.0);
}

TEST(TrimSetPtParam, StoresNothingWhenTheTrimmedObjectIsNoCurve) {
    TrimScene scene;
    ConstraintTrimCmdCenter centre;
    const auto pieces = scene.pieces({"left"});
    centre.setPtParam(scene.entity("q"), indices({0}), pieces);
    centre.setPtParam(nullptr, indices({0}), pieces);
    EXPECT_EQ(LvTestAccess::endParam(centre), 0.0);
}

TEST(TrimSetPtParam, LeavesTheCallersIndicesAsTheyAre) {
    TrimScene scene;
    ConstraintTrimCmdCenter centre;
    const YxArray<int> given = indices({5, 0});
    centre.setPtParam(scene.entity("a"), given, scene.pieces({"left"}));
    EXPECT_EQ(given, indices({5, 0}));
    EXPECT_EQ(LvTestAccess::endParam(centre), 3.0);
}

template <class Centre>
concept TakesPoints = requires(Centre centre) {
    centre.setPtParam(nullptr, YxGePoint3d(), YxGePoint3d());
};

TEST(TrimCentre, HidesTheBreakOperationOfTheSameName) {
    TrimScene scene;
    ConstraintTrimCmdCenter centre;
    static_assert(TakesPoints<ConstraintBreakCmdCenter> && !TakesPoints<ConstraintTrimCmdCenter>);
    ConstraintBreakCmdCenter& base = centre;
    base.setPtParam(scene.entity("a"), {1, 0, 0}, {2, 0, 0});
    EXPECT_EQ(LvTestAccess::startParam(centre), 1.0);
}

}  // namespace
}  // namespace holdfast::module
