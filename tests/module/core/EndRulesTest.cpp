#include "core/EndRules.h"

#include <gtest/gtest.h>

#include "core/CurveEnds.h"

namespace holdfast::module {
namespace {

using YxDb::ImplicitPointType;

constexpr ImplicitPointType kStart = YxDb::kStartImplicit;
constexpr ImplicitPointType kEnd = YxDb::kEndImplicit;
constexpr ImplicitPointType kMid = YxDb::kMidImplicit;
constexpr ImplicitPointType kCentre = YxDb::kCenterImplicit;
constexpr ImplicitPointType kControl = YxDb::kControlImplicit;

constexpr EndMoves kNone{.start = false, .end = false};
constexpr EndMoves kStartMoves{.start = true, .end = false};
constexpr EndMoves kEndMoves{.start = false, .end = true};
constexpr EndMoves kBoth{.start = true, .end = true};

TEST(EndMoves, AreTheEndsThatAreNotEqualWithinTheTolerance) {
    const auto before = endPair({0, 0, 0}, {10, 0, 0});
    const auto moves = endMoves(before, endPair({5e-11, 0, 0}, {10, 2e-10, 0}));
    EXPECT_FALSE(moves.start);
    EXPECT_TRUE(moves.end);
}

TEST(EndMoves, FollowTheHostsTolerance) {
    const YxGeTol former = YxGeContext::gTol;
    YxGeContext::gTol.setEqualPoint(0.5);
    const auto moves = endMoves(endPair({0, 0, 0}, {10, 0, 0}), endPair({0.4, 0, 0}, {10, 0, 0.6}));
    YxGeContext::gTol = former;
    EXPECT_FALSE(moves.start);
    EXPECT_TRUE(moves.end);
}

TEST(EndPairs, AreTwoPointsEach) {
    const auto two = endPair({}, {});
    YxArray<YxGePoint3d> three = two;
    three.append(YxGePoint3d());
    const YxArray<YxGePoint3d> none;
    EXPECT_TRUE(areEndPairs(two, two));
    EXPECT_FALSE(areEndPairs(none, two));
    EXPECT_FALSE(areEndPairs(two, none));
    EXPECT_FALSE(areEndPairs(three, two));
    EXPECT_FALSE(areEndPairs(two, three));
}

struct OnePointRow {
    const char* description;
    ImplicitPointType point;
    bool none, startMoves, endMoves, both;
};

TEST(OnePoint, GoesWithItsEndAndAMidPointAlways) {
    // clang-format off
    constexpr OnePointRow kRows[] = {
        {"start",         kStart,   false, true,  false, true },
        {"end",           kEnd,     false, false, true,  true },
        {"middle",        kMid,     true,  true,  true,  true },
        {"centre",        kCentre,  false, false, false, false},
        {"control point", kControl, false, false, false, false},
    };
    // clang-format on
    for (const OnePointRow& row : kRows) {
        SCOPED_TRACE(row.description);
        EXPECT_EQ(onePointGoes(row.point, kNone), row.none);
        EXPECT_EQ(onePointGoes(row.point, kStartMoves), row.startMoves);
        EXPECT_EQ(onePointGoes(row.point, kEndMoves), row.endMoves);
        EXPECT_EQ(onePointGoes(row.point, kBoth), row.both);
    }
}

struct TwoPointsRow {
    const char* description;
    ImplicitPointType first, second;
    bool none, startMoves, endMoves, both;
};

TEST(TwoPoints, GoWithoutACentreAndElseWithTheOtherPoint) {
    // clang-format off
    constexpr TwoPointsRow kRows[] = {
        {"start and end",       kStart,   kEnd,     true,  true,  true,  true },
        {"end and start",       kEnd,     kStart,   true,  true,  true,  true },
        {"start twice",         kStart,   kStart,   true,  true,  true,  true },
        {"middle and end",      kMid,     kEnd,     true,  true,  true,  true },
        {"centre and start",    kCentre,  kStart,   false, true,  false, true },
        {"start and centre",    kStart,   kCentre,  false, true,  false, true },
        {"centre and end",      kCentre,  kEnd,     false, false, true,  true },
        {"end and centre",      kEnd,     kCentre,  false, false, true,  true },
        {"centre twice",        kCentre,  kCentre,  false, false, false, false},
        {"centre and middle",   kCentre,  kMid,     false, false, false, false},
        {"control and centre",  kControl, kCentre,  false, false, false, false},
    };
    // clang-format on
    for (const TwoPointsRow& row : kRows) {
        SCOPED_TRACE(row.description);
        EXPECT_EQ(twoPointsGo(row.first, row.second, kNone), row.none);
        EXPECT_EQ(twoPointsGo(row.first, row.second, kStartMoves), row.startMoves);
        EXPECT_EQ(twoPointsGo(row.first, row.second, kEndMoves), row.endMoves);
        EXPECT_EQ(twoPointsGo(row.first, row.second, kBoth), row.both);
    }
}

}  // namespace
}  // namespace holdfast::module
