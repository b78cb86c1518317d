#include "editing/commands/drag/Grips.h"
#include "geometry/Angles.h"

#include <gtest/gtest.h>

#include "geometry/GeometryError.h"
#include "geometry/Transforms.h"

namespace holdfast::editing {
namespace {

const SplineShape kWave{3, false, {{0, 0}, {9, 3}, {12, -3}, {20, 0}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}};
const PolylineShape kTriangle{{{0, 0}, {4, 0}, {4, 3}}, {0, 0.5, 0}, {0, 0, 0}, true};

TEST(Grips, LieAtThePlacesThatPeopleName) {
    using enum PlaceKind;
    struct Row {
        Shape shape;
        Place place;
        std::vector<int> grips;
    };
    const Row rows[] = {
        {LineShape{{0, 0}, {4, 0}}, {"", start}, {0}},
        {LineShape{{0, 0}, {4, 0}}, {"", end}, {1}},
        {LineShape{{0, 0}, {4, 0}}, {"", mid}, {2}},
        {LineShape{{0, 0}, {4, 0}}, {"", centre}, {}},
        {ArcShape{{0, 0}, 1, 0.0, 1.0}, {"", centre}, {2}},
        {ArcShape{{0, 0}, 1, 0.0, 1.0}, {"", mid}, {}},
        {CircleShape{{0, 0}, 1}, {"", centre}, {0}},
        {EllipticalArcShape{{0, 0}, {2, 0}, 0.5, 0.0, 1.0}, {"", end}, {2}},
        {RayShape{{0, 0}, {1, 0}}, {"", end}, {1}},
        {kWave, {"", start}, {0}},
        {kWave, {"", end}, {3}},
        {kWave, {"", control, 2}, {2}},
        {kTriangle, {"", segmentEnd, 2}, {0}},
        {kTriangle, {"", segment, 1}, {1, 2}},
        {kTriangle, {"", segmentCentre, 1}, {}},
        {TextShape{}, {"", start}, {0}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(gripsAt(row.shape, row.place), row.grips) << row.shape.index();
}

TEST(Grips, OfASplineWithoutClampedEndsAreItsControlPointsOnly) {
    const SplineShape loose{2, false, {{0, 0}, {2, 4}, {6, 0}}, {0, 1, 2, 3, 4, 5}, {}};
    EXPECT_EQ(gripsAt(loose, {"", PlaceKind::start}), std::vector<int>());
    EXPECT_EQ(gripsAt(loose, {"", PlaceKind::control, 0}), std::vector<int>{0});
}

TEST(Grips, MovedAllTogetherMoveTheShape) {
    const std::vector<Shape> shapes{LineShape{{0, 0}, {4, 0}},
                                    ArcShape{{0, 0}, 1, 0.0, 1.0},
                                    RayShape{{1, 1}, {0, 1}},
                                    XlineShape{{1, 1}, {0, 1}},
                                    CircleShape{{2, 2}, 1},
                                    kWave,
                                    EllipseShape{{2, 2}, {3, 0}, 0.5},
                                    PointShape{{1, 2}},
                                    kTriangle};
    for (const Shape& shape : shapes) {
        std::vector<int> all;
        for (const Grip& grip : windowGrips(shape))
            all.push_back(grip.number);
        EXPECT_EQ(withGripsMoved(shape, completed(shape, all), {2, -1}), transformed(shape, translation({2, -1})))
            << shape.index();
    }
}

TEST(Grips, OfAnArcThatGoesAllTheWayRoundCannotPart) {
    EXPECT_THROW(withGripsMoved(ArcShape{{0, 0}, 1, 0.5, 0.5 + kTurn}, {0}, {1, 0}), GeometryError);
}

TEST(Grips, OfUnboundedLinesTurnThemByTheirSecondPoint) {
    const Shape turned = withGripsMoved(RayShape{{5, 5}, {1, 0}}, {1}, {-1, 1});
    EXPECT_EQ(turned, Shape(RayShape{{5, 5}, {0, 1}}));
    const Shape other = withGripsMoved(XlineShape{{5, 5}, {1, 0}}, {2}, {1, 1});
    EXPECT_EQ(other, Shape(XlineShape{{5, 5}, {0, -1}}));
}

TEST(Grips, OfAnEllipticalArcAreCaughtByItsCentreOnly) {
    const auto grips = windowGrips(EllipticalArcShape{{3, 4}, {2, 0}, 0.5, 0.0, 1.0});
    ASSERT_EQ(grips.size(), 1u);
    EXPECT_EQ(grips[0].point, (Vec2{3, 4}));
}

}  // namespace
}  // namespace holdfast::editing
