#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/host/entities/Polylines.h"

using holdfast::EntityAccess;
using namespace curves;

namespace {

struct Sample {
    std::string kind;
    std::unique_ptr<YxDbCurve> curve;
    std::vector<double> params;
};

/// One curve of each kind with some of its parameters.
std::vector<Sample> oneOfEach() {
    std::vector<Sample> samples;
    samples.push_back({"line", EntityAccess::makeLine({1, 2, 0}, {4, 6, 0}), {0, 2, 5}});
    samples.push_back({"ray", EntityAccess::makeRay({1, 2, 0}, {3, 4, 0}), {0, 7}});
    samples.push_back({"xline", EntityAccess::makeXline({1, 2, 0}, {3, 4, 0}), {-3, 0, 7}});
    samples.push_back({"arc",
                       EntityAccess::makeArc({.centre = {1, 2, 0}, .radius = 3, .startAngle = 0.5, .endAngle = 4}),
                       {0.5, 2, 4}});
    samples.push_back({"clockwise arc",
                       EntityAccess::makeArc(
                           {.centre = {1, 2, 0}, .radius = 3, .startAngle = 5, .endAngle = 7, .normal = {0, 0, -1}}),
                       {5, 6, 7}});
    samples.push_back({"tilted arc",
                       EntityAccess::makeArc(
                           {.centre = {1, 2, 3}, .radius = 3, .startAngle = 5, .endAngle = 7, .normal = {1, 2, -3}}),
                       {5, 6, 7}});
    samples.push_back({"circle", EntityAccess::makeCircle({.centre = {1, 2, 0}, .radius = 3}), {0, 1, 5}});
    samples.push_back({"ellipse",
                       EntityAccess::makeEllipse(
                           {.centre = {1, 2, 0}, .majorAxis = {3, 4, 0}, .ratio = 0.5, .startAngle = 1, .endAngle = 6}),
                       {1, 4, 6}});
    samples.push_back({"spline",
                       EntityAccess::makeSpline({.degree = 2,
                                                 .control = {{0, 0, 0}, {1, 3, 0}, {4, 1, 0}, {5, 5, 0}},
                                                 .knots = {0, 0, 0, 1, 2, 2, 2},
                                                 .weights = {1, 2, 1, 1}}),
                       {0, 0.7, 2}});
    samples.push_back({"polyline", slot(), {0, 0.5, 1.25, 1.5, 2.9, 3}});
    samples.push_back({"closed polyline", slot(true), {0, 1.25, 3.5}});
    return samples;
}

double lengthScale(const YxGeMatrix3d& matrix) {
    return (matrix * YxGeVector3d::kXAxis).length();
}

}  // namespace

TEST(Transform, MovesEveryPointOfACurveToItsImage) {
    for (const YxGeMatrix3d& matrix : {translation(3, 4), rotation(0.7, {1, 1, 0}), mirrorAboutYAxis(), mirror(0.0),
                                       mirror(0.9), scaling(2.5, 2.5, 2.5), mirroredSimilarity(2.2)})
        for (const Sample& sample : oneOfEach()) {
            const auto moved = copyOf(*sample.curve);
            ASSERT_EQ(moved->transformBy(matrix), Yxrt::eOk) << sample.kind;
            const bool measuresLength = sample.kind == "line" || sample.kind == "ray" || sample.kind == "xline";
            for (const double param : sample.params) {
                const double scaled = measuresLength ? param * lengthScale(matrix) : param;
                if (sample.kind == "circle" || sample.kind.ends_with("arc"))
                    continue;  // their angles are measured from x in every position
                EXPECT_POINT(pointAt(*moved, scaled), matrix * pointAt(*sample.curve, param)) << sample.kind;
            }
        }
}

TEST(Transform, MovesTheEndsOfACurveToTheirImages) {
    for (const YxGeMatrix3d& matrix :
         {translation(3, 4), rotation(0.7), mirrorAboutYAxis(), mirror(0.0), mirror(0.9), mirroredSimilarity(2.2)})
        for (const Sample& sample : oneOfEach()) {
            YxGePoint3d start = kUntouchedPoint;
            if (sample.kind == "circle" || sample.curve->getStartPoint(start) != Yxrt::eOk)
                continue;
            const auto moved = copyOf(*sample.curve);
            ASSERT_EQ(moved->transformBy(matrix), Yxrt::eOk) << sample.kind;
            EXPECT_POINT(startOf(*moved), matrix * start) << sample.kind;
            if (sample.kind != "ray") {
                EXPECT_POINT(endOf(*moved), matrix * endOf(*sample.curve)) << sample.kind;
            }
        }
}

TEST(Transform, OutOfThePlaneIsFollowedByAllButPolylines) {
    const YxGeMatrix3d tilt = YxGeMatrix3d().setToRotation(0.6, {1, 2, 0}, {0, 0, 3});
    for (const Sample& sample : oneOfEach()) {
        const auto moved = copyOf(*sample.curve);
        const bool flat = sample.kind.ends_with("polyline");
        EXPECT_EQ(moved->transformBy(tilt), flat ? Yxrt::eNotApplicable : Yxrt::eOk) << sample.kind;
        YxGePoint3d start = kUntouchedPoint;
        if (sample.kind == "circle" || sample.curve->getStartPoint(start) != Yxrt::eOk)
            continue;
        EXPECT_POINT(startOf(*moved), flat ? start : tilt * start) << sample.kind;
    }
}

TEST(Transform, ThatShearsStretchesOrFlattensChangesNothing) {
    YxGeMatrix3d perspective;
    perspective(3, 0) = 0.1;
    for (const YxGeMatrix3d& matrix : {shear(), scaling(1, 2, 1), scaling(0, 0, 0), scaling(1, 1, 0), perspective})
        for (const Sample& sample : oneOfEach()) {
            const auto moved = copyOf(*sample.curve);
            EXPECT_EQ(moved->transformBy(matrix), Yxrt::eNotApplicable) << sample.kind;
            for (const double param : sample.params)
                EXPECT_POINT(pointAt(*moved, param), pointAt(*sample.curve, param)) << sample.kind;
        }
}

TEST(Transform, ThatIsNotFiniteOrLeavesTheNumbersChangesNothing) {
    YxGeMatrix3d broken;
    broken(0, 3) = std::numeric_limits<double>::quiet_NaN();
    for (const Sample& sample : oneOfEach()) {
        const auto moved = copyOf(*sample.curve);
        EXPECT_EQ(moved->transformBy(broken), Yxrt::eNotApplicable) << sample.kind;
        EXPECT_NE(moved->transformBy(scaling(1e308, 1e308, 1e308)), Yxrt::eOk) << sample.kind;
        EXPECT_POINT(pointAt(*moved, sample.params[1]), pointAt(*sample.curve, sample.params[1])) << sample.kind;
    }
}

TEST(MirroredArc, TurnsItsNormalAndSoRunsFromImageToImage) {
    const auto arc = EntityAccess::makeArc({.centre = {5, 0, 0}, .radius = 2, .startAngle = 0.25, .endAngle = 1.5});
    EXPECT_EQ(arc->transformBy(mirrorAboutYAxis()), Yxrt::eOk);
    EXPECT_TRUE(arc->normal().isEqualTo({0, 0, -1}));
    EXPECT_EQ(arc->startAngle(), 0.25);
    EXPECT_EQ(arc->endAngle(), 1.5);
    EXPECT_POINT(arc->center(), {-5, 0, 0});
}

TEST(MirroredPolyline, FlipsItsBulges) {
    const auto line = slot();
    EXPECT_EQ(line->transformBy(mirrorAboutYAxis()), Yxrt::eOk);
    EXPECT_EQ(bulges(*line)[1], -1.0);
    EXPECT_EQ(identifiers(*line), (std::vector<int>{11, 12, 13, 14}));
    EXPECT_POINT(pointAt(*line, 1.5), {-15, 5, 0});
}

TEST(TurnedOverPolyline, StaysInItsPlaneAndFlipsItsBulges) {
    const auto line = slot();
    EXPECT_EQ(line->transformBy(YxGeMatrix3d().setToRotation(kPi, YxGeVector3d::kXAxis)), Yxrt::eOk);
    EXPECT_EQ(bulges(*line)[1], -1.0);
    EXPECT_POINT(pointAt(*line, 1.5), {15, -5, 0});
}

TEST(TurnedCircle, KeepsItsRadiusToTheLastDigit) {
    const auto circle = EntityAccess::makeCircle({.centre = {1, 2, 0}, .radius = 0.7});
    for (int i = 0; i < 1000; ++i)
        circle->transformBy(rotation(0.1 * i));
    EXPECT_EQ(circle->radius(), 0.7);
    EXPECT_TRUE(circle->normal().isEqualTo(YxGeVector3d::kZAxis));
}

TEST(MovedArc, KeepsItsAnglesToTheLastDigit) {
    const auto arc = EntityAccess::makeArc({.startAngle = -0.1, .endAngle = 0.3});
    arc->transformBy(translation(3, 4));
    EXPECT_EQ(arc->startAngle(), -0.1);
    EXPECT_EQ(arc->endAngle(), 0.3);
}

RC_GTEST_PROP(TransformedArc, GoesBackWithTheInverse, (int angle, unsigned from, unsigned sweep, bool down)) {
    const double start = from % 6283 / 1000.0;
    const auto arc = EntityAccess::makeArc({.centre = {1, 2, 0},
                                            .radius = 3,
                                            .startAngle = start,
                                            .endAngle = start + (sweep % 6000 + 1) / 1000.0,
                                            .normal = {0, 0, down ? -1. : 1.}});
    const auto copy = copyOf(*arc);
    const YxGeMatrix3d reflection = mirror(angle / 1000.0);
    copy->transformBy(reflection);
    RC_ASSERT(startOf(*copy).isEqualTo(reflection * startOf(*arc)));
    RC_ASSERT(endOf(*copy).isEqualTo(reflection * endOf(*arc)));
    copy->transformBy(reflection);
    RC_ASSERT(startOf(*copy).isEqualTo(startOf(*arc)));
    RC_ASSERT(endOf(*copy).isEqualTo(endOf(*arc)));
    RC_ASSERT(copy->normal().isEqualTo(arc->normal()));
}
