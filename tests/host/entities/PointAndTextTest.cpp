#include <gtest/gtest.h>

#include "host/model/entities/EntityAccess.h"
#include "tests/host/entities/Curves.h"

using holdfast::EntityAccess;
using namespace curves;

TEST(PointEntity, HasAPositionAndIsNoCurve) {
    const auto point = EntityAccess::makePoint({1, 2, 3});
    EXPECT_POINT(point->position(), {1, 2, 3});
    EXPECT_TRUE(point->isKindOf(YxDbEntity::desc()));
    EXPECT_FALSE(point->isKindOf(YxDbCurve::desc()));
}

TEST(PointEntity, FollowsATransform) {
    const auto point = EntityAccess::makePoint({1, 2, 3});
    EXPECT_EQ(point->transformBy(translation(1, 1, 1)), Yxrt::eOk);
    EXPECT_POINT(copyOf(*point)->position(), {2, 3, 4});
}

TEST(TextEntity, KeepsWhatItWasMadeOf) {
    const auto text = EntityAccess::makeText(
        {.position = {1, 2, 0}, .rotation = 0.5, .height = 3, .text = "pitch 6,35", .normal = {0, 0, 4}});
    EXPECT_POINT(text->position(), {1, 2, 0});
    EXPECT_EQ(text->rotation(), 0.5);
    EXPECT_TRUE(text->normal().isEqualTo({0, 0, 1}));
    EXPECT_EQ(EntityAccess::text(*copyOf(*text)).text, "pitch 6,35");
    EXPECT_EQ(EntityAccess::text(*text).height, 3.0);
}

TEST(MTextEntity, KeepsWhatItWasMadeOf) {
    const auto text = EntityAccess::makeMText({.position = {1, 2, 0}, .rotation = 0.5, .text = "two\nlines"});
    EXPECT_POINT(text->location(), {1, 2, 0});
    EXPECT_EQ(text->rotation(), 0.5);
    EXPECT_TRUE(text->normal().isEqualTo({0, 0, 1}));
    EXPECT_EQ(EntityAccess::mtext(*copyOf(*text)).text, "two\nlines");
}

TEST(TextEntity, TurnsAndGrowsWithATransform) {
    const auto text = EntityAccess::makeText({.position = {1, 0, 0}, .rotation = 6, .height = 3});
    YxGeMatrix3d matrix = rotation(1);
    matrix.preMultBy(scaling(2, 2, 2));
    EXPECT_EQ(text->transformBy(matrix), Yxrt::eOk);
    EXPECT_DOUBLE_EQ(text->rotation(), 7 - 2 * kPi);
    EXPECT_DOUBLE_EQ(EntityAccess::text(*text).height, 6.0);
    EXPECT_POINT(text->position(), {2 * std::cos(1), 2 * std::sin(1), 0});
}

TEST(TextEntity, KeepsItsRotationToTheLastDigitWhenItIsOnlyMoved) {
    const auto text = EntityAccess::makeMText({.rotation = -7.1});
    EXPECT_EQ(text->transformBy(translation(5, 6)), Yxrt::eOk);
    EXPECT_EQ(text->rotation(), -7.1);
}

TEST(TextEntity, IsSeenFromBehindAfterMirroring) {
    // Mirrored about the y axis, text that ran up to the right runs up to the left.
    const auto text = EntityAccess::makeText({.position = {3, 0, 0}, .rotation = 0.5});
    EXPECT_EQ(text->transformBy(mirrorAboutYAxis()), Yxrt::eOk);
    EXPECT_POINT(text->position(), {-3, 0, 0});
    EXPECT_TRUE(text->normal().isEqualTo({0, 0, -1}));
    EXPECT_DOUBLE_EQ(text->rotation(), 0.5);  // from -x towards y
}
