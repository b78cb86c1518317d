#include <gtest/gtest.h>

#include "commands/properties/VertexRecords.h"
#include "tests/module/commands/properties/PropertiesScene.h"

namespace holdfast::module {
namespace {

constexpr const char* kVertexDrawing =
    "spline s degree 3 at 0,0 1,1 2,0 3,1; polyline p 0,9 4,9 4,12 0,12; dependency p[2]; dependency s";

TEST(PropertiesPolyline, TakesTheVertexNumberForTheKindOfChange) {
    const FeedingScene scene(kVertexDrawing);
    const auto record = polylineRecord(*scene.entity<YxDbPolyline>("p"), 1, 2, {5, 11, 0.5});
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(record->changeKind, 2);
    EXPECT_EQ(textOf(record->delta), "1,-1,0.5");
    EXPECT_EQ(record->value1, 0.0);
    EXPECT_EQ(record->entType, 2);
}

TEST(PropertiesPolyline, HasVerticesFromZeroToOneBelowTheirCount) {
    const FeedingScene scene(kVertexDrawing);
    const auto& polyline = *scene.entity<YxDbPolyline>("p");
    EXPECT_TRUE(polylineRecord(polyline, 1, 0, {}).has_value());
    EXPECT_TRUE(polylineRecord(polyline, 1, 3, {}).has_value());
    EXPECT_FALSE(polylineRecord(polyline, 1, 4, {}).has_value());
    EXPECT_FALSE(polylineRecord(polyline, 1, -1, {}).has_value());
}

TEST(PropertiesPolyline, RefusesAVertexThatCannotBeRead) {
    FeedingScene scene(kVertexDrawing);
    scene.refuse("getPointAt", "p");
    EXPECT_FALSE(polylineRecord(*scene.entity<YxDbPolyline>("p"), 1, 2, {}).has_value());
}

TEST(PropertiesPolyline, HasOnlyTheFirstProperty) {
    const FeedingScene scene(kVertexDrawing);
    for (const int property : {0, 2, 3})
        EXPECT_FALSE(polylineRecord(*scene.entity<YxDbPolyline>("p"), property, 2, {}).has_value()) << property;
}

TEST(PropertiesSpline, TakesTheControlPointsNumberForTheKindOfChangeAndMarksIt) {
    const FeedingScene scene(kVertexDrawing);
    const auto record = splineRecord(*scene.entity<YxDbSpline>("s"), 2, 3, {5, 1, 0});
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(record->changeKind, 3);
    EXPECT_EQ(textOf(record->delta), "2,0,0");
    EXPECT_EQ(record->value1, 1.0);
    EXPECT_EQ(record->value2, 0.0);
    EXPECT_EQ(record->entType, 11);
}

TEST(PropertiesSpline, HasOnlyTheSecondProperty) {
    const FeedingScene scene(kVertexDrawing);
    for (const int property : {0, 1, 3})
        EXPECT_FALSE(splineRecord(*scene.entity<YxDbSpline>("s"), property, 1, {}).has_value()) << property;
}

TEST(PropertiesSpline, MeasuresAnUnreadableControlPointFromTheOrigin) {
    const FeedingScene scene(kVertexDrawing);
    const auto record = splineRecord(*scene.entity<YxDbSpline>("s"), 2, 4, {5, 1, 0});
    ASSERT_TRUE(record.has_value());
    EXPECT_EQ(record->changeKind, 4);
    EXPECT_EQ(textOf(record->delta), "5,1,0");
}

}  // namespace
}  // namespace holdfast::module
