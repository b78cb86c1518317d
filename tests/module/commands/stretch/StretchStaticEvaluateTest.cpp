#include <gtest/gtest.h>

#include "tests/module/commands/stretch/Stretch.h"

namespace holdfast::module {
namespace {

constexpr const char* kStaticDrawing =
    "line b 0,0 0,3; circle f centre 70,0 radius 5; line a 0,0 4,0; dependency a; "
    "dependency b";

LvEvaDataConverter& theOnlyConverter() {
    return const_cast<LvEvaDataConverter&>(**hostState().converters.begin());
}

TEST(StretchStaticEvaluate, HandsOverEveryObjectWithoutAnOffset) {
    FeedingScene scene(kStaticDrawing);
    Stretch stretch(scene);
    stretch.object("b", {0}, 5, 0).object("f", {}, 5, 0).object("a", {1}, 5, 0).begin({5, 0, 0});
    stretch.centre.addDataToStaticEvaluate();
    ASSERT_EQ(hostState().converters.size(), 1U);
    EXPECT_EQ(HostAccess::records(theOnlyConverter()).editorType, 3);
    EXPECT_EQ(scene.fed(theOnlyConverter()),
              "addObjectOffset b 0,0,0; addObjectOffset f 0,0,0; addObjectOffset a 0,0,0; evaluate");
    scene.process().endOfCommand();
}

TEST(StretchStaticEvaluate, LeavesItsConverterToTheHost) {
    FeedingScene scene(kStaticDrawing);
    Stretch stretch(scene);
    stretch.object("a", {1}, 5, 0).begin();
    stretch.centre.addDataToStaticEvaluate();
    stretch.centre.addDataToStaticEvaluate();
    EXPECT_EQ(hostState().converters.size(), 2U);
    EXPECT_EQ(scene.header().converter, nullptr);
    scene.process().endOfCommand();
    EXPECT_TRUE(hostState().converters.empty());
}

TEST(StretchStaticEvaluate, LeavesHeaderAndStatusAlone) {
    FeedingScene scene(kStaticDrawing);
    Stretch stretch(scene);
    stretch.object("a", {1}, 5, 0).begin();
    scene.prefill();
    stretch.centre.addDataToStaticEvaluate();
    EXPECT_EQ(scene.changes("near") + scene.changes("far"), "");
    EXPECT_EQ(scene.status(), 0);
    EXPECT_EQ(scene.calls("evaluateTopLevelNetwork"), 0);
    scene.process().endOfCommand();
}

TEST(StretchStaticEvaluate, DoesNothingWithoutAConverter) {
    FeedingScene scene(kStaticDrawing);
    Stretch stretch(scene);
    stretch.object("a", {1}, 5, 0).begin();
    scene.host().refuse("createInstance");
    stretch.centre.addDataToStaticEvaluate();
    EXPECT_EQ(scene.calls("addObjectOffset") + scene.calls("LvEvaDataConverter::evaluate"), 0);
}

TEST(StretchStaticEvaluate, EvaluatesEvenWithoutObjects) {
    FeedingScene scene(kStaticDrawing);
    ConstraintStretchCmdCenter().addDataToStaticEvaluate();
    EXPECT_EQ(scene.fed(theOnlyConverter()), "evaluate");
    scene.process().endOfCommand();
}

}  // namespace
}  // namespace holdfast::module
