#include <gtest/gtest.h>

#include <cmath>

#include "solver/src/solving/Solve.h"
#include "tests/solver/Sketch.h"

// Every kind of constraint on every kind of element that can have it: drawn off, solved, measured without merging.

namespace holdfast::solver::detail {
namespace {

struct Row {
    const char* what;
    const char* sketch;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.what;
}

class SolveKinds : public ::testing::TestWithParam<Row> {};

TEST_P(SolveKinds, BringsTheConstraintAbout) {
    SketchText sketch(GetParam().sketch);
    ASSERT_GT(sketch.worstViolation(), 1e-3) << "the sketch holds already: nothing would be tried";
    const SolveResult result = solve(sketch.sketch, {});
    EXPECT_EQ(result.status, SolveStatus::solved);
    EXPECT_LT(sketch.worstViolation(), 1e-9);
}

// clang-format off
constexpr Row kPositions[] = {
    {"points",                      "point p 1,2; point q 4,-3; coincident p q"},
    {"line ends",                   "line a 0,0 4,1; line b 4.2,1.1 9,3; coincident a.end b.start"},
    {"line end and line middle",    "line a 0,0 4,1; line b 4.2,1.1 9,3; coincident a.end b.mid"},
    {"arc ends",                    "arc a 0,0 5 0 90; arc b 0.3,9 4 200 280; coincident a.end b.start"},
    {"arc middle and point",        "arc a 0,0 5 0 90; point p 4,4; coincident a.mid p"},
    {"elliptical arc end and line", "ellipse_arc e 0,0 6,1 0.5 10 150; line a 6,2 9,9; coincident e.start a.start"},
    {"spline end and line",         "spline s 3 0,0 2,5 6,4 9,-1; line a 9.5,-1 12,2; coincident s.end a.start"},
    {"control point and point",     "spline s 3 0,0 2,5 6,4 9,-1; point p 6,5; coincident s.control:2 p"},
    {"ray base and point",          "ray r 0,0 30; point p 1,1; coincident r.start p"},
    {"xline base and point",        "xline x 0,0 30; point p 1,1; coincident x.start p"},
    {"text and line end",           "text t 0,0 30; line a 1,1 5,5; coincident t.start a.start"},
    {"polyline vertex and line",    "polyline w 0,0 5,0:0.5 9,4; line a 5,1 5,6; coincident w.segment:1.start a.start"},
    {"arc segment centre, point",   "polyline w 0,0 5,0:0.5 9,4; point p 5,4; coincident w.segment:1.centre p"},
    {"arc segment middle, point",   "polyline w 0,0 5,0:0.5 9,4; point p 7,1; coincident w.segment:1.mid p"},
    {"straight segment middle",     "polyline w 0,0 5,0 9,4; point p 7,3; coincident w.segment:1.mid p"},
    {"circle centres",              "circle c 0,0 3; circle d 1,0 5; concentric c.centre d.centre"},
    {"arc and ellipse centres",     "arc c 0,0 3 0 90; ellipse d 1,0 5,1 0.5; concentric c.centre d.centre"},
    {"midpoint of a line",          "line a 0,0 6,2; point p 2,2; midpoint p a"},
    {"midpoint of an arc",          "arc a 0,0 6 10 100; point p 2,2; midpoint p a"},
    {"midpoint of a segment",       "polyline w 0,0 5,0:0.5 9,4; point p 7,1; midpoint p w.segment:1"},
    {"horizontal line",             "line a 0,0 6,1; horizontal a"},
    {"vertical line",               "line a 0,0 1,6; vertical a"},
    {"horizontal ray",              "ray r 0,0 20; horizontal r"},
    {"vertical xline",              "xline x 0,0 70; vertical x"},
    {"vertical text",               "text t 0,0 80; vertical t"},
    {"horizontal segment",          "polyline w 0,0 5,1:0.5 9,4; horizontal w.segment:0"},
    {"horizontal points",           "point p 0,0; point q 5,1; horizontal p q"},
    {"vertical centres",            "circle c 0,0 1; arc d 1,5 2 0 90; vertical c.centre d.centre"},
    {"horizontal middles",          "line a 0,0 6,1; line b 9,2 12,9; horizontal a.mid b.mid"},
    {"distance_x",                  "point p 0,0; point q 5,1; distance_x p q = 7"},
    {"distance_x backwards",        "point p 0,0; point q 5,1; distance_x q p = -6"},
    {"distance_y of middles",       "line a 0,0 6,1; line b 9,2 12,9; distance_y a.mid b.mid = 3"},
};
constexpr Row kOnCurves[] = {
    {"point on line",               "point p 3,3; line a 0,0 7,1; point_on_curve p a"},
    {"point on level line",         "point p 3,3; line a 0,0 7,0; horizontal a; point_on_curve p a"},
    {"point on ray",                "point p 3,3; ray r 0,0 20; point_on_curve p r"},
    {"point on xline",              "point p 3,3; xline x 0,0 20; point_on_curve p x"},
    {"point on circle",             "point p 3,3; circle c 0,0 5; point_on_curve p c"},
    {"point on arc",                "point p 3,3; arc c 0,0 5 0 90; point_on_curve p c"},
    {"point on ellipse",            "point p 3,3; ellipse e 0,0 6,1 0.5; point_on_curve p e"},
    {"point on elliptical arc",     "point p 3,3; ellipse_arc e 0,0 6,1 0.5 0 120; point_on_curve p e"},
    {"point on spline",             "point p 3,3; spline s 3 0,0 2,5 6,4 9,-1 12,3; point_on_curve p s"},
    {"point on straight segment",   "point p 3,3; polyline w 0,0 5,0:0.5 9,4; point_on_curve p w.segment:0"},
    {"point on arc segment",        "point p 9,1; polyline w 0,0 5,0:0.5 9,4; point_on_curve p w.segment:1"},
    {"line end on circle",          "line a 1,1 3,3; circle c 0,0 5; point_on_curve a.end c"},
    {"centre on line",              "circle c 2,3 1; line a 0,0 7,1; point_on_curve c.centre a"},
};
constexpr Row kDirections[] = {
    {"parallel lines",              "line a 0,0 6,1; line b 0,3 6,5; parallel a b"},
    {"parallel line and xline",     "line a 0,0 6,1; xline x 0,3 25; parallel a x"},
    {"parallel ray and text",       "ray r 0,0 5; text t 0,3 25; parallel r t"},
    {"parallel segment and line",   "polyline w 0,0 5,0 9,4; line a 0,1 5,5; parallel w.segment:1 a"},
    {"perpendicular lines",         "line a 0,0 6,1; line b 0,3 1,7; perpendicular a b"},
    {"perpendicular to level line", "line a 0,0 6,0; line b 0,3 1,7; horizontal a; perpendicular a b"},
    {"line through a circle",       "line a 0,0 6,1; circle c 3,2 1; perpendicular a c"},
    {"line across an arc's end",    "line a 5,0.5 9,1; arc k 0,0 5 5 90; perpendicular a.start k.start"},
    {"line across an arc",          "line a 5,0.5 9,1; arc k 0,0 5 5 90; perpendicular a.start k"},
    {"line across an ellipse",      "line a 5,0.5 9,1; ellipse e 0,0 6,0 0.5; point p 5.5,1; perpendicular e a p"},
    {"collinear lines",             "line a 0,0 6,1; line b 8,2 12,1; collinear a b"},
    {"collinear line and xline",    "line a 0,0 6,1; xline x 8,2 10; collinear a x"},
    {"collinear xlines",            "xline x 0,0 15; xline y 8,2 10; collinear x y"},
    {"angle of a line",             "line a 0,0 6,1; angle a = 30"},
    {"angle of a line from its end", "line a 0,0 6,1; angle a.end = 200"},
    {"angle of an arc",             "arc k 0,0 5 0 80; angle k = 120"},
    {"angle of an arc segment",     "polyline w 0,0 5,0:0.5 9,4; angle w.segment:1 = 90"},
    {"angle between lines",         "line a 0,0 6,1; line b 1,3 4,7; angle a b = 60"},
    {"angle between turned lines",  "line a 0,0 6,1; line b 1,3 4,7; angle a.end b = -110"},
    {"angle to an xline",           "line a 0,0 6,1; xline x 1,3 50; angle x a = -30"},
    {"angle at a point of an arc",  "line a 0,0 6,1; arc k 0,0 5 0 80; angle a k k.start = 80"},
    {"equal lines",                 "line a 0,0 6,1; line b 1,3 4,7; equal a b"},
    {"equal line and segment",      "line a 0,0 6,1; polyline w 0,0 5,0:0.5 9,4; equal a w.segment:0"},
    {"equal circle and arc",        "circle c 0,0 3; arc k 9,0 5 0 80; equal c k"},
    {"equal arc segments",          "polyline w 0,0:1 5,0:0.5 9,4; equal w.segment:0 w.segment:1"},
    {"equal ellipses",              "ellipse e 0,0 6,1 0.5; ellipse_arc f 9,9 3,3 0.6 0 90; equal e f"},
};
constexpr Row kSymmetries[] = {
    {"points about a line",         "point p 1,2; point q 6,3; line a 4,0 4.5,9; symmetric p q a"},
    {"points about an axis",        "point p 1,2; point q 6,3; fixed! xline y 4,0 90; symmetric p q y"},
    {"points about a ray",          "point p 1,2; point q 6,3; ray r 4,0 85; symmetric p q r"},
    {"points about a point",        "point p 1,2; point q 6,3; point m 4,0; symmetric p q m"},
    {"points about a fixed point",  "point p 1,2; point q 6,3; fixed! point m 4,0; symmetric p q m"},
    {"points about a centre",       "point p 1,2; point q 6,3; circle c 4,0 1; symmetric p q c.centre"},
    {"points about a segment",      "point p 1,2; point q 6,3; polyline w 4,0 4.5,9 8,8; symmetric p q w.segment:0"},
    {"lines about a line",          "line a 0,0 2,5; line b 9,0 6,5; xline x 4,0 88; symmetric a b x"},
    {"crossed lines about a line",  "line a 0,0 2,5; line b 6,5 9,0; xline x 4,0 88; symmetric a b x"},
    {"circles about a line",        "circle c 0,0 2; circle d 9,1 3; xline x 4,0 88; symmetric c d x"},
    {"ellipses about a line",       "ellipse e 0,0 3,1 0.5; ellipse f 9,1 3,1 0.6; xline x 4,0 88; symmetric e f x"},
    {"xlines about a line",         "xline a 0,0 30; xline b 9,1 160; xline x 4,0 88; symmetric a b x"},
};
constexpr Row kTangencies[] = {
    {"line and circle",             "line a 0,0 9,1; circle c 4,4 3; tangent a c"},
    {"circle and line below it",    "circle c 4,-4 3; line a 0,0 9,1; tangent c a"},
    {"xline and arc",               "xline x 0,0 5; arc k 4,4 3 180 300; tangent x k"},
    {"circles side by side",        "circle c 0,0 3; circle d 8,1 4; tangent c d"},
    {"circle in circle",            "circle c 0,0 9; circle d 4,1 4; tangent c d"},
    {"line and ellipse",            "line a 0,-4 9,-3; ellipse e 4,0 5,1 0.5; tangent a e"},
    {"circle and ellipse",          "circle c 11,1 4; ellipse e 4,0 5,1 0.5; tangent c e"},
    {"ellipses",                    "ellipse f 13,1 3,1 0.6; ellipse e 4,0 5,1 0.5; tangent f e"},
    {"line and spline",             "line a 0,5 9,4; spline s 3 0,0 2,5 6,5 9,-1 12,3; tangent a s"},
    {"circle and spline",           "circle c 4,7 2; spline s 3 0,0 2,5 6,5 9,-1 12,3; tangent c s"},
    {"spline and ellipse",          "ellipse e 4,7 2,1 0.6; spline s 3 0,0 2,5 6,5 9,-1 12,3; tangent s e"},
    {"splines",                     "spline z 2 0,9 4,4 9,8; spline s 3 0,0 2,5 6,5 9,-1 12,3; tangent s z"},
    {"arc segment and line",        "polyline w 0,0 5,0:0.5 9,4; line a 9,0 10,5; tangent w.segment:1 a"},
    {"line end and arc end",        "line a 0,0 5,0.2; arc k 5,3 3 268 350; tangent a.end k.start"},
    {"arc ends",                    "arc j 0,0 3 10 90; arc k 0.3,5 2 180 268; tangent j.end k.end"},
    {"line and elliptical arc",     "line a 9,0 9.2,5; ellipse_arc e 4,0 5,0 0.5 2 120; tangent a.start e.start"},
    {"spline end and line",         "spline s 3 0,0 2,5 6,5 9,2; line a 9,2 12,-2; tangent s.end a.start"},
    {"spline end and arc",          "spline s 3 0,0 2,5 6,5 9,2; arc k 7,0 3 300 400; tangent s.end k.end"},
    {"line end and circle",         "line a 0,0 5,0.2; circle c 5,3 2.5; tangent a.end c"},
    {"arc end and line",            "arc k 5,3 3 268 350; line a 0,0 9,0.2; tangent k.start a"},
    {"line end and spline",         "line a 0,3 4,4.2; spline s 3 0,0 2,5 6,5 9,2; tangent a.end s"},
    {"arc and ellipse at a point",  "arc k 0,0 5 0 90; ellipse_arc e -1,0 6.2,0 0.7 -60 0; point p 5,0; tangent k e p"},
    {"line and arc that share an end", "line a 0,0 5,0; arc k 5,3 3 268 350; coincident a.end k.start; tangent a k"},
    {"segments of a polyline",      "polyline w 0,0 5,0:0.5 7,4; tangent w.segment:0.end w.segment:1.start"},
};
constexpr Row kSmoothness[] = {
    {"spline and line",             "spline s 3 0,0 2,5 6,5 9,2; line a 9,2 12,-2; g2_smooth s.end a.start"},
    {"spline and arc",              "spline s 3 0,0 2,5 6,5 9,2; arc k 7,0 3 300 400; g2_smooth s.end k.end"},
    {"splines",                     "spline s 3 0,0 2,5 6,5 9,2; spline z 3 9,2 11,0 14,1 15,5; g2_smooth s.end z.start"},
    {"spline and elliptical arc",   "spline s 3 0,0 2,5 6,5 9,2; ellipse_arc e 6,0 4,0 0.8 -60 30; g2_smooth s.end e.end"},
    {"spline and arc segment",      "spline s 3 0,0 2,5 6,5 9,2; polyline w 9,2:-0.5 12,-1 14,0; g2_smooth s.end w.segment:0.start"},
};
constexpr Row kDimensions[] = {
    {"length of a line",            "line a 0,0 6,1; distance a = 9"},
    {"length of a level line",      "line a 0,0 6,1; horizontal a; distance a = 9"},
    {"length of an arc",            "arc k 0,0 5 0 80; distance k = 9"},
    {"length of a segment",         "polyline w 0,0 5,0:0.5 9,4; distance w.segment:0 = 4"},
    {"length of an arc segment",    "polyline w 0,0 5,0:0.5 9,4; distance w.segment:1 = 8"},
    {"two points",                  "point p 0,0; point q 4,4; distance p q = 7"},
    {"no distance",                 "point p 0,0; point q 4,4; distance p q = 0"},
    {"point and line",              "point p 0,4; line a 0,0 6,1; distance p a = 3"},
    {"point below a level line",    "point p 0,-4; line a 0,0 6,0; horizontal a; distance p a = 3"},
    {"line and point",              "line a 0,0 6,1; point p 0,4; distance a p = 3"},
    {"point outside a circle",      "point p 9,0; circle c 0,0 5; distance p c = 3"},
    {"point inside a circle",       "point p 3,0; circle c 0,0 5; distance p c = 3"},
    {"circle beside a line",        "circle c 0,9 5; line a -5,0 5,1; distance c a = 3"},
    {"parallel lines apart",        "line a 0,0 6,0.5; line b 0,4 6,5; parallel a b; distance a b = 3"},
    {"level lines apart",           "line a 0,0 6,1; line b 1,-4 6,-5; horizontal a; horizontal b; distance a b = 3"},
    {"upright line and level one",  "line a 0,0 6,1; line b 2,4 2,9; horizontal a; vertical b; distance a b = 3"},
    {"lines at an angle",           "line a 0,0 6,1; line b 0,4 6,7; distance a b = 3"},
    {"lines on each other",         "line a 0,0 6,1; line b 0,4 6,5; parallel a b; distance a b = 0"},
    {"segment and xline",           "polyline w 0,0 5,0 9,4; xline x 0,6 10; distance w.segment:0 x = 3"},
    {"xline and line",              "xline x 0,6 10; line a 0,0 6,1; distance x a = 3"},
    {"level xline and ray",         "fixed! xline x 0,6 0; ray r 0,0 0; horizontal r; distance x r = 3"},
    {"segments of one polyline",    "polyline w 0,0 5,0 5,4 0,4.5; distance w.segment:0 w.segment:2 = 3"},
    {"circles apart",               "circle c 0,0 5; circle d 12,1 4; distance c d = 2"},
    {"circle in circle",            "circle c 0,0 9; circle d 2,1 4; distance c d = 2"},
    {"radius of a circle",          "circle c 0,0 9; radius c = 2"},
    {"diameter of an arc",          "arc k 0,0 5 0 80; diameter k = 8"},
    {"radius of an arc segment",    "polyline w 0,0 5,0:0.5 9,4; radius w.segment:1 = 4"},
    {"diameter of an arc segment",  "polyline w 0,0 5,0:0.5 9,4; diameter w.segment:1 = 9"},
};
constexpr Row kEllipseHelpers[] = {
    {"major diameter",              "ellipse e 0,0 6,1 0.5; line m -5,0 6,2; internal m e as major_diameter"},
    {"major diameter turned round", "ellipse e 0,0 6,1 0.5; line m 5,1 -6,-2; internal m e as major_diameter"},
    {"minor diameter",              "ellipse e 0,0 6,1 0.5; line m 0,-3 0,4; internal m e as minor_diameter"},
    {"focus on the major side",     "ellipse e 0,0 6,1 0.5; point p 4,1; internal p e as focus1"},
    {"focus on the other side",     "ellipse_arc e 0,0 6,1 0.5 0 90; point p -4,1; internal p e as focus2"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Positions, SolveKinds, ::testing::ValuesIn(kPositions));
INSTANTIATE_TEST_SUITE_P(OnCurves, SolveKinds, ::testing::ValuesIn(kOnCurves));
INSTANTIATE_TEST_SUITE_P(Directions, SolveKinds, ::testing::ValuesIn(kDirections));
INSTANTIATE_TEST_SUITE_P(Symmetries, SolveKinds, ::testing::ValuesIn(kSymmetries));
INSTANTIATE_TEST_SUITE_P(Tangencies, SolveKinds, ::testing::ValuesIn(kTangencies));
INSTANTIATE_TEST_SUITE_P(Smoothness, SolveKinds, ::testing::ValuesIn(kSmoothness));
INSTANTIATE_TEST_SUITE_P(Dimensions, SolveKinds, ::testing::ValuesIn(kDimensions));
INSTANTIATE_TEST_SUITE_P(EllipseHelpers, SolveKinds, ::testing::ValuesIn(kEllipseHelpers));

}  // namespace
}  // namespace holdfast::solver::detail
