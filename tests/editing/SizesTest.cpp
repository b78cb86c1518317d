#include "editing/fates/Sizes.h"
#include "geometry/Angles.h"

#include <gtest/gtest.h>

#include "tests/editing/EveryKind.h"

namespace holdfast::editing {
namespace {

TEST(Sizes, AreToldOfWhatChangedOnly) {
    EXPECT_EQ(sizeChanges(LineShape{{0, 0}, {4, 0}}, LineShape{{9, 9}, {9, 13}}), std::vector<SizeChange>());
    EXPECT_EQ(sizeChanges(LineShape{{0, 0}, {4, 0}}, LineShape{{0, 0}, {6, 0}}),
              (std::vector<SizeChange>{{SizeKind::length, 4, 6}}));
    EXPECT_EQ(sizeChanges(CircleShape{{0, 0}, 10}, CircleShape{{1, 0}, 16.3}),
              (std::vector<SizeChange>{{SizeKind::radius, 10, 16.3}}));
    EXPECT_EQ(sizeChanges(EllipseShape{{0, 0}, {4, 0}, 0.5}, EllipseShape{{0, 0}, {0, 4}, 0.25}),
              (std::vector<SizeChange>{{SizeKind::minorRadius, 2, 1}}));
    EXPECT_EQ(sizeChanges(TextShape{.height = 2}, TextShape{.height = 3}),
              (std::vector<SizeChange>{{SizeKind::height, 2, 3}}));
}

TEST(Sizes, OfAnArcAreItsLengthRadiusAndSweep) {
    const std::vector<SizeChange> changes =
        sizeChanges(ArcShape{{0, 0}, 2, 0.0, kPi}, ArcShape{{0, 0}, 3, 0.0, kPi / 2});
    ASSERT_EQ(changes.size(), 3u);
    EXPECT_DOUBLE_EQ(changes[0].after, 1.5 * kPi);
    EXPECT_EQ(changes[1], (SizeChange{SizeKind::radius, 2, 3}));
    EXPECT_DOUBLE_EQ(changes[2].before, 180.0);
    EXPECT_DOUBLE_EQ(changes[2].after, 90.0);
}

TEST(Sizes, AreInTheResultOfAnEditForWhatFollowsToo) {
    Session session(frameDrawing());
    const EditResult& result = session.apply("set left end 0,8");
    ASSERT_EQ(result.fates.entities.size(), 2u) << result.outcome.error;
    EXPECT_EQ(result.fates.entities[0].entity, "left");
    EXPECT_EQ(result.fates.entities[0].sizes, (std::vector<SizeChange>{{SizeKind::length, 5, 8}}));
    EXPECT_EQ(result.fates.entities[1].fate, EntityFate::followed);
    ASSERT_EQ(result.fates.entities[1].sizes.size(), 1u);
    EXPECT_NEAR(result.fates.entities[1].sizes[0].after, 8.0, 1e-9);
}

}  // namespace
}  // namespace holdfast::editing
