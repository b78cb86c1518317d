#include "commands/join/VertexIdentifiers.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/module/evaluation/FeedingScene.h"

namespace holdfast::module {
namespace {

using Identifiers = std::vector<int>;

std::unique_ptr<YxDbPolyline> polylineOf(const Identifiers& identifiers) {
    PolylineData data;
    for (const int identifier : identifiers)
        data.vertices.push_back({.point = {static_cast<double>(data.vertices.size()), 0.0}, .identifier = identifier});
    return EntityAccess::makePolyline(data);
}

YxArray<int> listOf(const Identifiers& identifiers) {
    YxArray<int> list;
    for (const int identifier : identifiers)
        list.append(identifier);
    return list;
}

Identifiers read(const YxDbPolyline& polyline) {
    const YxArray<int> list = identifiersOf(polyline);
    return {list.begin(), list.end()};
}

Identifiers forward(const Identifiers& before, int firstIndex, const Identifiers& written) {
    const auto polyline = polylineOf(before);
    writeForward(*polyline, firstIndex, listOf(written));
    return read(*polyline);
}

Identifiers reversed(const Identifiers& before, int firstIndex, const Identifiers& written) {
    const auto polyline = polylineOf(before);
    writeReversed(*polyline, firstIndex, listOf(written));
    return read(*polyline);
}

TEST(VertexIdentifiers, AreReadInTheOrderOfTheVertices) {
    EXPECT_EQ(read(*polylineOf({11, 0, 13})), (Identifiers{11, 0, 13}));
    EXPECT_EQ(identifiersOf(*polylineOf({11})).growLength(), 8);
}

TEST(JoinForward, WritesFromTheFirstIndexOn) {
    EXPECT_EQ(forward({0, 0, 0, 0}, 1, {11, 12, 13}), (Identifiers{0, 11, 12, 13}));
}

TEST(JoinForward, LeavesAVertexAloneForASourceWithoutIdentifier) {
    EXPECT_EQ(forward({91, 92, 93, 94}, 1, {11, 0, 13}), (Identifiers{91, 11, 93, 13}));
}

TEST(JoinForward, WritesNothingPastTheEnds) {
    EXPECT_EQ(forward({91, 92}, 1, {11, 12, 13}), (Identifiers{91, 11}));
    EXPECT_EQ(forward({91, 92}, -1, {11, 12, 13}), (Identifiers{12, 13}));
}

TEST(JoinReversed, SwapsEachPairOfNeighbours) {
    EXPECT_EQ(reversed({0, 0}, 0, {11, 12}), (Identifiers{11, 12}));
    EXPECT_EQ(reversed({0, 0, 0}, 0, {11, 12, 13}), (Identifiers{12, 13, 11}));
    EXPECT_EQ(reversed({0, 0, 0, 0}, 0, {11, 12, 13, 14}), (Identifiers{13, 14, 11, 12}));
    EXPECT_EQ(reversed({0, 0, 0, 0, 0}, 0, {11, 12, 13, 14, 15}), (Identifiers{14, 15, 12, 13, 11}));
}

TEST(JoinReversed, LooksForTheNextPairBehindAVertexWithoutIdentifier) {
    EXPECT_EQ(reversed({0, 0, 0}, 0, {5, 6, 0}), (Identifiers{0, 5, 6}));
    EXPECT_EQ(reversed({0, 0, 0, 0}, 1, {5, 6, 7}), (Identifiers{0, 6, 7, 5}));
}

TEST(JoinReversed, ClearsAnIdentifierBeforeAVertexWithoutOne) {
    EXPECT_EQ(reversed({0, 0, 0}, 0, {11, 0, 13}), (Identifiers{0, 0, 11}));
    EXPECT_EQ(reversed({0, 0, 0, 0}, 0, {11, 12, 13}), (Identifiers{12, 13, 0, 0}));
}

TEST(JoinReversed, StepsOverTheSecondOfTwoWhenItClears) {
    EXPECT_EQ(reversed({0, 0, 0}, 0, {0, 7, 8}), (Identifiers{7, 8, 0}));
    EXPECT_EQ(reversed({0, 0, 0, 0, 0}, 0, {0, 0, 7, 0, 8}), (Identifiers{0, 0, 0, 0, 0}));
}

TEST(JoinReversed, NeverClearsTheLastVertex) {
    EXPECT_EQ(reversed({0, 0}, 1, {9}), (Identifiers{0, 9}));
}

TEST(JoinReversed, RepairsTheWholePolylineNotOnlyWhatItWrote) {
    EXPECT_EQ(reversed({91, 92, 0, 0}, 2, {11, 12}), (Identifiers{92, 91, 11, 12}));
    EXPECT_EQ(reversed({91, 0, 93, 94}, 3, {0}), (Identifiers{0, 0, 94, 93}));
}

TEST(JoinReversed, AsksForNoVertexBehindTheLast) {
    FeedingScene scene("");
    const auto polyline = polylineOf({11, 0, 13});
    writeReversed(*polyline, 0, listOf({11, 0, 13}));
    int asked = 0;
    for (const JournalEntry& call : scene.process().journal().entries()) {
        asked += call.operation == "YxDbPolyline::getVertexIdentifierAt" ? 1 : 0;
        EXPECT_EQ(call.arguments.rfind("3", 0), std::string::npos) << call.operation;
    }
    EXPECT_GT(asked, 0);
}

TEST(JoinReversed, LeavesAPolylineOfOneVertexAlone) {
    EXPECT_EQ(reversed({0}, 0, {11}), (Identifiers{11}));
}

TEST(JoinReversed, LeavesAVertexAloneForASourceWithoutIdentifier) {
    EXPECT_EQ(reversed({91, 92, 93}, 0, {0, 11, 0}), (Identifiers{11, 91, 93}));
}

}  // namespace
}  // namespace holdfast::module
