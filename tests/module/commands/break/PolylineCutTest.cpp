#include "commands/break/PolylineCut.h"

#include <gtest/gtest.h>

#include <limits>

namespace holdfast::module {
namespace {

TEST(CutPlace, LiesAtAVertexWithinAMillionthAboveIt) {
    for (const double param : {3.0, 3.0000005, 3.00000099}) {
        EXPECT_EQ(cutPlace(param).index, 3) << param;
        EXPECT_TRUE(cutPlace(param).atVertex) << param;
    }
    EXPECT_TRUE(cutPlace(1e-6).atVertex);
}

TEST(CutPlace, LiesInsideTheSegmentElsewhereEvenJustBelowAVertex) {
    for (const double param : {3.000002, 3.5, 3.9999999}) {
        EXPECT_EQ(cutPlace(param).index, 3) << param;
        EXPECT_FALSE(cutPlace(param).atVertex) << param;
    }
}

TEST(CutPlace, OfANumberThatIsNoParameterIsAPlaceAllTheSame) {
    EXPECT_EQ(cutPlace(std::numeric_limits<double>::quiet_NaN()).index, 0);
    EXPECT_FALSE(cutPlace(std::numeric_limits<double>::quiet_NaN()).atVertex);
    EXPECT_EQ(cutPlace(1e300).index, 1 << 30);
    EXPECT_EQ(cutPlace(-1e300).index, -(1 << 30));
    EXPECT_EQ(cutPlace(-0.5).index, 0);
    EXPECT_FALSE(cutPlace(-0.5).atVertex);
}

struct CaseRow {
    const char* description;
    double first, second;
    int breakCase;
    std::map<int, int> touched;
};

TEST(PolylineCut, HasItsKindAndItsSegments) {
    const CaseRow rows[] = {
        {"at two vertices", 1.0, 3.0, 1, {{1, 2}, {2, 3}}},
        {"at one vertex", 2.0, 2.0, 1, {{2, 3}}},
        {"from a vertex into its segment", 1.0, 1.5, 2, {{1, 2}}},
        {"from a vertex into another segment", 1.0, 2.5, 3, {{1, 2}, {2, 3}}},
        {"from inside to the next vertex", 1.5, 2.0, 4, {{1, 2}}},
        {"from inside to a later vertex", 1.5, 3.0, 4, {{1, 2}, {2, 3}}},
        {"inside one segment", 1.2, 1.7, 5, {{1, 2}}},
        {"at one place inside", 1.2, 1.2, 5, {{1, 2}}},
        {"inside two segments", 0.5, 2.5, 6, {{0, 1}, {1, 2}, {2, 3}}},
        {"from just behind a vertex to before it", 2.3, 2.0, 4, {{2, 3}}},
        {"backwards", 3.5, 1.0, 4, {}},
    };
    for (const CaseRow& row : rows) {
        SCOPED_TRACE(row.description);
        EXPECT_EQ(breakCase(cutPlace(row.first), cutPlace(row.second)), row.breakCase);
        EXPECT_EQ(touchedSegments(cutPlace(row.first), cutPlace(row.second)), row.touched);
    }
}

struct RunRow {
    int breakCase;
    unsigned int pieceCount;
    int uncutCount;
    int lastTouchedStart;
    int first;  // -1: no identifiers
    int shift;
};

TEST(IdentifiersBehindCut, ShiftByTheLastTouchedSegment) {
    // clang-format off
    constexpr RunRow kRows[] = {
        // case, vertices of piece, of uncut, last touched, first, shift
        { 1,     3,                 6,        2,             0,    3},
        { 1,     4,                 6,        2,            -1,    0},
        { 2,     5,                 6,        1,             0,    1},
        { 2,     6,                 6,        1,            -1,    0},
        { 3,     4,                 6,        2,             1,    2},
        { 3,     5,                 6,        2,            -1,    0},
        { 3,     1,                 6,        2,            -1,    0},
        { 4,     3,                 6,        2,             0,    3},
        { 5,     5,                 6,        1,             1,    1},
        { 5,     0,                 6,        1,            -1,    0},
        { 6,     3,                 6,        3,             0,    3},
        { 6,     4,                 6,        3,            -1,    0},
        { 0,     3,                 6,        2,             0,    3},
        { 2,     3,                 6,       -1,            -1,    0},
    };
    // clang-format on
    for (const RunRow& row : kRows) {
        SCOPED_TRACE(testing::Message() << "case " << row.breakCase << ", " << row.pieceCount << " vertices");
        const auto run = identifiersBehindCut(row.breakCase, row.pieceCount, row.uncutCount,
                                              {row.lastTouchedStart, row.lastTouchedStart + 1});
        ASSERT_EQ(run.has_value(), row.first >= 0);
        if (run) {
            EXPECT_EQ(run->first, row.first);
            EXPECT_EQ(run->shift, row.shift);
        }
    }
}

}  // namespace
}  // namespace holdfast::module
