#include "core/SegmentFinder.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <utility>
#include <vector>

#include "host/model/entities/EntityAccess.h"
#include "tests/module/core/CheckedScene.h"
#include "tests/module/core/TestAccess.h"

namespace holdfast::module {
namespace {

using Ends = std::pair<int, int>;
constexpr Ends kUntouched{-7, -8};

/// A polyline with these identifiers and a dependency that names the segment between two of them.
class NamedSegment {
public:
    explicit NamedSegment(const std::vector<int>& identifiers, int startId = 0, int endId = 0)
        : m_scene("line a 0,0 1,0; bare dependency a") {
        PolylineData data{.vertices = {}, .closed = true};
        for (const int identifier : identifiers)
            data.vertices.push_back({.point = {1.0, 1.0}, .bulge = 0.0, .identifier = identifier});
        m_polyline = EntityAccess::makePolyline(data);
        name(startId, endId);
    }
    void name(int startId, int endId) {
        HostAccess::setPersistentId(dependency(), HostAccess::makeEdgeId(startId, endId));
    }
    YxDbAssocGeomDependency& dependency() { return *m_scene.dependency("a"); }
    CheckedScene& scene() { return m_scene; }
    const YxDbPolyline& polyline() const { return *m_polyline; }

    /// The ends that are found, or kUntouched when there are none.
    Ends find() {
        Ends ends = kUntouched;
        const bool found = LvTestAccess::segment(dependency().objectId(), m_polyline.get(), ends.first, ends.second);
        EXPECT_EQ(found, ends != kUntouched);
        return ends;
    }

private:
    CheckedScene m_scene;
    std::unique_ptr<YxDbPolyline> m_polyline;
};

Ends find(const std::vector<int>& identifiers, int startId, int endId) {
    return NamedSegment(identifiers, startId, endId).find();
}

TEST(PolylineSegment, RunsFromItsStartVertexToTheNext) {
    EXPECT_EQ(find({11, 12, 13, 14}, 12, 13), Ends(1, 2));
    EXPECT_EQ(find({14, 12, 11, 13}, 12, 11), Ends(1, 2));
}

TEST(PolylineSegment, WrapsBehindTheLastVertex) {
    EXPECT_EQ(find({11, 12, 13}, 13, 11), Ends(2, 0));
    EXPECT_EQ(find({11, 12, 13}, 13, 99), Ends(2, 0));
}

TEST(PolylineSegment, OverridesAnEndThatDoesNotFollow) {
    EXPECT_EQ(find({11, 12, 13, 14}, 11, 14), Ends(0, 1));
    EXPECT_EQ(find({11, 12, 13, 14}, 13, 12), Ends(2, 3));
}

TEST(PolylineSegment, IsToldByOneOfItsVertices) {
    EXPECT_EQ(find({11, 12, 13, 14}, 12, 99), Ends(1, 2));
    EXPECT_EQ(find({11, 12, 13, 14}, 99, 12), Ends(0, 1));
    EXPECT_EQ(find({11, 12, 13, 14}, 99, 11), Ends(3, 0));
}

TEST(PolylineSegment, IsNotFoundByNeitherVertexAndLeavesTheIndices) {
    EXPECT_EQ(find({11, 12, 13}, 98, 99), kUntouched);
    EXPECT_EQ(find({11}, 98, 99), kUntouched);
}

TEST(PolylineSegment, OfTwoVerticesIsTheFirstWhenNotBothAreFound) {
    EXPECT_EQ(find({11, 12}, 98, 99), Ends(0, 1));
    EXPECT_EQ(find({11, 12}, 12, 99), Ends(0, 1));
    EXPECT_EQ(find({11, 12}, 99, 11), Ends(0, 1));
    EXPECT_EQ(find({11, 12}, 12, 11), Ends(1, 0));
}

TEST(PolylineSegment, OfOneVertexRunsBackToIt) {
    EXPECT_EQ(find({11}, 11, 12), Ends(0, 0));
    EXPECT_EQ(find({11}, 12, 11), Ends(0, 0));
}

TEST(PolylineSegment, TakesTheLastOfARepeatedIdentifierBeforeBothWereSeen) {
    EXPECT_EQ(find({7, 7, 8, 7}, 7, 8), Ends(1, 2));
    EXPECT_EQ(find({8, 8, 7, 8}, 7, 8), Ends(2, 3));
    EXPECT_EQ(find({7, 7, 7, 7}, 7, 99), Ends(3, 0));
    EXPECT_EQ(find({8, 8, 8, 9}, 99, 8), Ends(1, 2));
}

TEST(PolylineSegment, TakesEqualIdentifiersForTheStartOnly) {
    EXPECT_EQ(find({0, 0, 0, 0}, 0, 0), Ends(3, 0));
    EXPECT_EQ(find({5, 1, 5, 2}, 5, 5), Ends(2, 3));
}

TEST(PolylineSegment, NeedsAGeometryDependencyWithTheNameOfAnEdge) {
    NamedSegment segment({11, 12, 13}, 11, 12);
    int start = 5;
    int end = 6;
    const YxDbObjectId line = segment.scene().id("a");
    EXPECT_FALSE(LvTestAccess::segment(line, &segment.polyline(), start, end));
    EXPECT_FALSE(LvTestAccess::segment(YxDbObjectId(), &segment.polyline(), start, end));
    EXPECT_FALSE(LvTestAccess::segment(segment.dependency().objectId(), nullptr, start, end));
    HostAccess::setPersistentId(segment.dependency(), nullptr);
    EXPECT_FALSE(LvTestAccess::segment(segment.dependency().objectId(), &segment.polyline(), start, end));
    HostAccess::setPersistentId(segment.dependency(), std::make_unique<YxDbAssocPersSubentId>());
    EXPECT_FALSE(LvTestAccess::segment(segment.dependency().objectId(), &segment.polyline(), start, end));
    EXPECT_EQ(Ends(start, end), Ends(5, 6));
}

TEST(PolylineSegment, IsNotFoundWhenTheDependencyDoesNotOpen) {
    NamedSegment segment({11, 12, 13}, 11, 12);
    segment.scene().host().refuse("openObject", &segment.dependency());
    EXPECT_EQ(segment.find(), kUntouched);
}

TEST(PolylineSegment, TakesAnIdentifierThatCannotBeReadForZero) {
    NamedSegment segment({11, 12, 13, 14}, 0, 13);
    segment.scene().host().refuse("getVertexIdentifierAt", &segment.polyline(), 2);
    EXPECT_EQ(segment.find(), Ends(1, 2));
}

/// The walk along the vertices, step by step, that an index must not be told from.
Ends walk(const std::vector<int>& identifiers, int startId, int endId) {
    const int count = static_cast<int>(identifiers.size());
    int start = -1;
    int end = -1;
    for (int i = 0; i < count && (start < 0 || end < 0); ++i) {
        const int identifier = identifiers[static_cast<std::size_t>(i)];
        if (identifier == startId)
            start = i;
        else if (identifier == endId)
            end = i;
    }
    if (start >= 0 && end >= 0)
        return {start, (start + 1) % count};
    if (count == 2)
        return {0, 1};
    if (start >= 0)
        return {start, (start + 1) % count};
    if (end >= 0)
        return {(end - 1 + count) % count, end};
    return kUntouched;
}

RC_GTEST_PROP(PolylineSegment, IsWhereAWalkAlongTheVerticesFindsIt, ()) {
    const auto identifiers = *rc::gen::nonEmpty(rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 5)));
    NamedSegment segment(identifiers);
    for (int startId = 0; startId < 6; ++startId) {
        for (int endId = 0; endId < 6; ++endId) {
            segment.name(startId, endId);
            RC_ASSERT(segment.find() == walk(identifiers, startId, endId));
        }
    }
}

TEST(SegmentFinder, ReadsTheIdentifiersOnceForManyQuestions) {
    NamedSegment segment({11, 12, 13}, 11, 12);
    SegmentFinder finder(&segment.polyline());
    SegmentEnds ends;
    for (int k = 0; k < 5; ++k)
        EXPECT_TRUE(finder.find(segment.dependency().objectId(), ends));
    EXPECT_EQ(segment.scene().process().journal().count("getVertexIdentifierAt"), 3);
}

}  // namespace
}  // namespace holdfast::module
