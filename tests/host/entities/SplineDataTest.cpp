#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>

#include "host/model/entities/EntityAccess.h"
#include "tests/host/entities/Curves.h"

using holdfast::EntityAccess;
using holdfast::SplineData;
using namespace curves;

namespace {

SplineData sound() {
    return {.degree = 2,
            .control = {{0, 0, 0}, {1, 2, 0}, {3, 2, 0}, {4, 0, 0}},
            .knots = {0, 0, 0, 1, 2, 2, 2},
            .weights = {}};
}

SplineData soundRing() {
    return {.degree = 2,
            .periodic = true,
            .control = {{0, 0, 0}, {1, 2, 0}, {3, 2, 0}, {4, 0, 0}},
            .knots = {0, 1, 2, 3, 4},
            .weights = {}};
}

std::string refusal(const SplineData& data) {
    try {
        EntityAccess::makeSpline(data);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "accepted";
}

}  // namespace

TEST(SplineData, ThatIsSoundIsKept) {
    SplineData data = sound();
    data.weights = {1, 2, 3, 4};
    const SplineData kept = EntityAccess::spline(*EntityAccess::makeSpline(data));
    EXPECT_EQ(kept.degree, 2);
    EXPECT_FALSE(kept.periodic);
    EXPECT_EQ(kept.knots, data.knots);
    EXPECT_EQ(kept.weights, data.weights);
    EXPECT_EQ(refusal(soundRing()), "accepted");
}

TEST(SplineData, OfADegreeOutsideOneToTwentyFiveIsRefused) {
    SplineData data = sound();
    data.degree = 0;
    EXPECT_EQ(refusal(data), "spline: degree is 0; give 1 to 25");
    data.degree = 26;
    EXPECT_EQ(refusal(data), "spline: degree is 26; give 1 to 25");
}

TEST(SplineData, OfTheHighestDegreeIsEvaluated) {
    SplineData data{.degree = 25, .control = {}, .knots = std::vector<double>(52, 0.0), .weights = {}};
    for (int i = 0; i <= 25; ++i)
        data.control.push_back({i / 25.0, 0, 0});
    std::fill(data.knots.begin() + 26, data.knots.end(), 1.0);
    EXPECT_POINT(pointAt(*EntityAccess::makeSpline(data), 0.3), {0.3, 0, 0});
}

TEST(SplineData, WithTooFewControlPointsIsRefused) {
    SplineData data = sound();
    data.control.resize(2);
    EXPECT_EQ(refusal(data), "spline: 2 control points; give at least 3 for degree 2");
}

TEST(SplineData, WithAWrongNumberOfKnotsIsRefused) {
    SplineData data = sound();
    data.knots.pop_back();
    EXPECT_EQ(refusal(data), "spline: 6 knots; give 7 (control points + degree + 1)");
    data = soundRing();
    data.knots = {0, 1, 2, 3};
    EXPECT_EQ(refusal(data),
              "spline: 4 knots of a period; give 5 to 6 (control points + multiplicity of the first knot)");
}

TEST(SplineData, WithAWrongNumberOfWeightsIsRefused) {
    SplineData data = sound();
    data.weights = {1, 2};
    EXPECT_EQ(refusal(data), "spline: 2 weights for 4 control points; give as many, or none");
}

TEST(SplineData, WithAWeightThatIsNotPositiveIsRefused) {
    SplineData data = sound();
    data.weights = {1, 2, 0, 1};
    EXPECT_EQ(refusal(data), "spline: weight 2 is 0; give a number above 0");
}

TEST(SplineData, WithNumbersThatAreNoneIsRefused) {
    SplineData data = sound();
    data.control[3].y = std::numeric_limits<double>::infinity();
    EXPECT_EQ(refusal(data), "spline: control point 3 y is infinity; give a finite number");
    data = sound();
    data.knots[3] = std::nan("");
    EXPECT_EQ(refusal(data), "spline: knot 3 is not a number (NaN); give a finite number");
}

TEST(SplineData, WithKnotsThatFallIsRefused) {
    SplineData data = sound();
    data.knots[3] = 3;
    EXPECT_EQ(refusal(data), "spline: knot 4 is smaller than the one before; give the knots in ascending order");
}

TEST(SplineData, WithoutAParameterRangeIsRefused) {
    SplineData data = sound();
    data.knots = {1, 1, 1, 1, 1, 1, 1};
    EXPECT_EQ(refusal(data), "spline: the knots span no parameter range; give different first and last knots");
}

TEST(SplineData, WithAKnotThatTearsTheCurveIsRefused) {
    SplineData data{.degree = 1,
                    .control = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}},
                    .knots = {0, 0, 1, 1, 2, 2},
                    .weights = {}};
    EXPECT_EQ(refusal(data), "spline: knot 2 stands 2 times; give it at most 1 times");
}

TEST(SplineData, OfAPeriodWithUnequalEndsIsRefused) {
    SplineData data = soundRing();
    data.knots = {0, 0, 1, 2, 3};
    EXPECT_EQ(refusal(data),
              "spline: the first knot stands 2 times and the last 1 times; give both 1 times (knots - control points)");
}

TEST(SplineControlPoint, IsMovedAlone) {
    const auto spline = EntityAccess::makeSpline(sound());
    EntityAccess::setControlPoint(*spline, 0, {-1, -1, 0});
    EXPECT_POINT(startOf(*spline), {-1, -1, 0});
    EXPECT_POINT(endOf(*spline), {4, 0, 0});
}

TEST(SplineControlPoint, ThatDoesNotExistIsRefused) {
    const auto spline = EntityAccess::makeSpline(sound());
    try {
        EntityAccess::setControlPoint(*spline, 4, {});
        FAIL() << "there are four control points";
    } catch (const std::invalid_argument& error) {
        EXPECT_STREQ(error.what(), "spline: there is no control point 4; give 0 to 3");
    }
}
