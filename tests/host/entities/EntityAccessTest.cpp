#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <stdexcept>
#include <string>

#include "tests/host/entities/Polylines.h"

using holdfast::EntityAccess;
using namespace curves;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string refusal(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "accepted";
}

}  // namespace

TEST(EntityData, IsReadBackAsItWasGiven) {
    const auto arc = EntityAccess::arc(*EntityAccess::makeArc({{1, 2, 3}, 4, 5, 6, {0, 0, -1}}));
    EXPECT_POINT(arc.centre, {1, 2, 3});
    EXPECT_EQ(arc.radius, 4.0);
    EXPECT_EQ(arc.endAngle, 6.0);
    EXPECT_EQ(arc.normal.z, -1.0);
    const auto ellipse = EntityAccess::ellipse(
        *EntityAccess::makeEllipse({.majorAxis = {0, 3, 0}, .ratio = 0.25, .startAngle = 1, .endAngle = 2}));
    EXPECT_EQ(ellipse.majorAxis.y, 3.0);
    EXPECT_EQ(ellipse.ratio, 0.25);
    EXPECT_EQ(ellipse.startAngle, 1.0);
    EXPECT_EQ(ellipse.endAngle, 2.0);
}

TEST(EntityData, IsReadBackFromStraightEntities) {
    EXPECT_POINT(EntityAccess::line(*EntityAccess::makeLine({1, 2, 3}, {4, 5, 6})).end, {4, 5, 6});
    EXPECT_POINT(EntityAccess::ray(*EntityAccess::makeRay({1, 2, 3}, {0, 9, 0})).base, {1, 2, 3});
    EXPECT_EQ(EntityAccess::xline(*EntityAccess::makeXline({1, 2, 3}, {0, 9, 0})).direction.y, 1.0);
    EXPECT_POINT(EntityAccess::point(*EntityAccess::makePoint({1, 2, 3})), {1, 2, 3});
    EXPECT_EQ(EntityAccess::circle(*EntityAccess::makeCircle({.radius = 7})).radius, 7.0);
    const auto line = EntityAccess::polyline(*slot(true));
    EXPECT_TRUE(line.closed);
    EXPECT_EQ(line.vertices[1].bulge, 1.0);
    EXPECT_EQ(line.vertices[3].identifier, 14);
}

TEST(EntityData, ReplacesWhatWasThere) {
    const auto line = EntityAccess::makeLine({0, 0, 0}, {1, 1, 0});
    EntityAccess::setLine(*line, {2, 2, 0}, {3, 3, 0});
    EXPECT_POINT(line->startPoint(), {2, 2, 0});
    const auto circle = EntityAccess::makeCircle({});
    EntityAccess::setCircle(*circle, {.centre = {1, 1, 0}, .radius = 5});
    EXPECT_EQ(circle->radius(), 5.0);
    const auto ray = EntityAccess::makeRay({0, 0, 0}, {1, 0, 0});
    EntityAccess::setRay(*ray, {1, 0, 0}, {0, -2, 0});
    EXPECT_EQ(ray->unitDir().y, -1.0);
}

TEST(EntityData, WithNumbersThatAreNoneIsRefused) {
    EXPECT_EQ(refusal([] {
                  EntityAccess::makeLine({0, 0, 0}, {1, kNaN, 0});
              }),
              "line: end y is not a number (NaN); give a finite number");
    EXPECT_EQ(refusal([] {
                  EntityAccess::makePoint({kInfinity, 0, 0});
              }),
              "point: position x is infinity; give a finite number");
    EXPECT_EQ(refusal([] { EntityAccess::makeArc({.startAngle = -kInfinity}); }),
              "arc: start angle is minus infinity; give a finite number");
    EXPECT_EQ(refusal([] { EntityAccess::makeText({.rotation = kNaN, .text = "x"}); }),
              "text: rotation is not a number (NaN); give a finite number");
    EXPECT_EQ(refusal([] {
                  polyline({{{0, 0}}, {{1, kNaN}}});
              }),
              "polyline: vertex 1 y is not a number (NaN); give a finite number");
    EXPECT_EQ(refusal([] {
                  polyline({{{0, 0}, kInfinity, 0}});
              }),
              "polyline: vertex 0 bulge is infinity; give a finite number");
}

TEST(EntityData, WithoutSizeIsRefused) {
    EXPECT_EQ(refusal([] { EntityAccess::makeCircle({.radius = 0}); }), "circle: radius is 0; give a number above 0");
    EXPECT_EQ(refusal([] { EntityAccess::makeArc({.radius = -1.5}); }), "arc: radius is -1.5; give a number above 0");
    EXPECT_EQ(refusal([] { EntityAccess::makeMText({.height = 0, .text = "x"}); }),
              "mtext: height is 0; give a number above 0");
    EXPECT_EQ(refusal([] { polyline({}); }), "polyline: there are no vertices; give at least one");
}

TEST(EntityData, WithoutDirectionIsRefused) {
    EXPECT_EQ(refusal([] { EntityAccess::makeRay({}, {}); }),
              "ray: direction has length 0; give a vector that points somewhere");
    EXPECT_EQ(refusal([] { EntityAccess::makeXline({}, {}); }),
              "xline: direction has length 0; give a vector that points somewhere");
    EXPECT_EQ(refusal([] { EntityAccess::makeCircle({.normal = {}}); }),
              "circle: normal has length 0; give a vector that points somewhere");
}

TEST(EllipseData, WithAxesThatMakeNoEllipseIsRefused) {
    EXPECT_EQ(refusal([] { EntityAccess::makeEllipse({.ratio = 1.5}); }),
              "ellipse: ratio is 1.5; give a number up to 1, or exchange the axes");
    EXPECT_EQ(refusal([] {
                  EntityAccess::makeEllipse({.majorAxis = {1, 0, 1}});
              }),
              "ellipse: major axis leaves the plane; give one at a right angle to the normal");
}

TEST(PolylineEditing, RefusesAVertexThatDoesNotExist) {
    const auto line = slot();
    EXPECT_EQ(refusal([&] { EntityAccess::setBulge(*line, 4, 1); }),
              "polyline: there is no vertex 4; give an index below 4");
    EXPECT_EQ(refusal([&] { EntityAccess::insertVertex(*line, 5, {}); }),
              "polyline: there is no vertex 5; give an index below 5");
    EXPECT_EQ(refusal([&] { EntityAccess::removeVertices(*line, 2, 3); }),
              "polyline: there is no vertex 4; give an index below 4");
    EXPECT_EQ(refusal([&] { EntityAccess::removeVertices(*line, 0, 4); }),
              "polyline: no vertex would be left; keep at least one, or erase the polyline");
    EXPECT_EQ(identifiers(*line), (std::vector<int>{11, 12, 13, 14}));
}

TEST(RefusedData, LeavesTheEntityAsItWas) {
    const auto circle = EntityAccess::makeCircle({.centre = {1, 2, 0}, .radius = 3});
    EXPECT_THROW(EntityAccess::setCircle(*circle, {.centre = {9, 9, 9}, .radius = -1}), std::invalid_argument);
    EXPECT_POINT(circle->center(), {1, 2, 0});
    const auto line = slot();
    EXPECT_THROW(EntityAccess::setVertex(*line, 0, {{1, 1}, kNaN, 99}), std::invalid_argument);
    EXPECT_EQ(EntityAccess::lastFreshIdentifier(*line), 14);
}
