#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <limits>
#include <utility>
#include <vector>

#include "tests/host/entities/Polylines.h"

using holdfast::EntityAccess;
using holdfast::PolylineVertex;
using namespace curves;

TEST(PolylineEntity, AnswersItsVerticesInSpaceAndInItsPlane) {
    const auto line = slot();
    EXPECT_EQ(line->numVerts(), 4U);
    EXPECT_POINT(vertexAt(*line, 2), {10, 10, 0});
    YxGePoint2d flat;
    EXPECT_EQ(line->getPointAt(2, flat), Yxrt::eOk);
    EXPECT_TRUE(flat.isEqualTo({10, 10}));
}

TEST(PolylineEntity, LeavesArgumentsAloneOutOfRange) {
    const auto line = slot();
    YxGePoint3d point = kUntouchedPoint;
    YxGePoint2d flat(-1, -2);
    int identifier = -3;
    EXPECT_EQ(line->getPointAt(4, point), Yxrt::eOutOfRange);
    EXPECT_EQ(line->getPointAt(4, flat), Yxrt::eOutOfRange);
    EXPECT_EQ(line->getVertexIdentifierAt(4, identifier), Yxrt::eOutOfRange);
    EXPECT_EQ(line->setVertexIdentifierAt(4, 9), Yxrt::eOutOfRange);
    EXPECT_POINT(point, kUntouchedPoint);
    EXPECT_EQ(flat.x, -1.0);
    EXPECT_EQ(identifier, -3);
    EXPECT_EQ(identifiers(*line), (std::vector<int>{11, 12, 13, 14}));
}

TEST(PolylineParameter, IsVertexIndexPlusFractionOfTheSegment) {
    const auto line = slot();
    EXPECT_DOUBLE_EQ(paramAt(*line, {2.5, 0, 0}), 0.25);
    EXPECT_DOUBLE_EQ(paramAt(*line, {15, 5, 0}), 1.5);
    EXPECT_DOUBLE_EQ(paramAt(*line, {4, 10, 0}), 2.6);
    EXPECT_POINT(pointAt(*line, 2.6), {4, 10, 0});
    EXPECT_POINT(pointAt(*line, 3.0), {0, 10, 0});
}

TEST(PolylineParameter, IsNoneForAPointBesideThePolyline) {
    EXPECT_EQ(paramAt(*slot(), {2.5, -1, 0}), kUntouched);
    EXPECT_EQ(paramAt(*slot(), {0, 5, 0}), kUntouched);
    EXPECT_EQ(paramAt(*slot(), {2.5, 0, 1}), kUntouched);
}

TEST(PolylineParameter, IsAnIntegerAtEveryVertexAndARoundingErrorBesideIt) {
    const auto line = polyline({{{0.1, 0.2}, 0, 0}, {{0.7, 0.3}, 0.4, 0}, {{1.1, 1.3}, -2, 0}, {{0.3, 2.2}}});
    for (unsigned int i = 0; i < 4; ++i) {
        EXPECT_EQ(paramAt(*line, vertexAt(*line, i)), i);
        EXPECT_EQ(paramAt(*line, vertexAt(*line, i) + YxGeVector3d(3e-11, -3e-11, 0)), i);
    }
}

TEST(PolylineParameter, OfAClosedPolylineWrapsRound) {
    const auto line = slot(true);
    EXPECT_POINT(pointAt(*line, 3.5), {0, 5, 0});
    EXPECT_POINT(pointAt(*line, 4.0), {0, 0, 0});
    EXPECT_POINT(pointAt(*line, 4.25), {2.5, 0, 0});
    EXPECT_POINT(pointAt(*line, -0.5), {0, 5, 0});
    EXPECT_DOUBLE_EQ(paramAt(*line, {0, 5, 0}), 3.5);
    EXPECT_EQ(paramAt(*line, {0, 0, 0}), 0.0);
    EXPECT_EQ(paramAt(*line, {0, 1e-11, 0}), 0.0);
}

TEST(PolylineParameter, OfAnOpenPolylineEndsAtTheLastVertex) {
    const auto line = slot();
    EXPECT_POINT(pointAt(*line, 3.01), kUntouchedPoint);
    EXPECT_POINT(pointAt(*line, -0.01), kUntouchedPoint);
    EXPECT_POINT(pointAt(*line, 3.0 + 1e-12), {0, 10, 0});
    EXPECT_POINT(pointAt(*line, std::nan("")), kUntouchedPoint);
}

TEST(PolylineParameter, ThatIsNoNumberIsNotOnAClosedPolylineEither) {
    EXPECT_POINT(pointAt(*slot(true), std::nan("")), kUntouchedPoint);
    EXPECT_POINT(pointAt(*slot(true), -HUGE_VAL), kUntouchedPoint);
}

TEST(PolylineEnds, MeetWhenThePolylineIsClosed) {
    EXPECT_POINT(endOf(*slot()), {0, 10, 0});
    EXPECT_POINT(endOf(*slot(true)), {0, 0, 0});
    EXPECT_POINT(startOf(*slot(true)), {0, 0, 0});
    EXPECT_TRUE(slot(true)->isClosed());
    EXPECT_FALSE(slot()->isClosed());
}

TEST(PolylineOfOneVertex, IsThatPoint) {
    for (const bool closed : {false, true}) {
        const auto line = polyline({{{3, 4}, 1, 0}}, closed);
        EXPECT_POINT(startOf(*line), {3, 4, 0});
        EXPECT_POINT(endOf(*line), {3, 4, 0});
        EXPECT_EQ(paramAt(*line, {3, 4, 0}), 0.0);
        EXPECT_EQ(paramAt(*line, {9, 9, 0}), kUntouched);
        EXPECT_POINT(pointAt(*line, 0.0), {3, 4, 0});
        EXPECT_EQ(line->reverseCurve(), Yxrt::eOk);
    }
}

TEST(PolylineReversal, MovesAndFlipsBulgesAndLeavesIdentifiersAtTheirIndex) {
    const auto line = slot();
    EXPECT_EQ(line->reverseCurve(), Yxrt::eOk);
    EXPECT_POINT(startOf(*line), {0, 10, 0});
    EXPECT_POINT(vertexAt(*line, 1), {10, 10, 0});
    EXPECT_EQ(bulges(*line), (std::vector<double>{0, -1, 0, 0}));
    EXPECT_EQ(identifiers(*line), (std::vector<int>{11, 12, 13, 14}));
    EXPECT_POINT(pointAt(*line, 1.5), {15, 5, 0});
}

TEST(PolylineReversal, KeepsTheClosingSegmentLast) {
    const auto line = polyline({{{0, 0}, 0, 1}, {{4, 0}, 0.5, 2}, {{4, 4}, 1, 3}}, true);
    EXPECT_EQ(line->reverseCurve(), Yxrt::eOk);
    EXPECT_EQ(bulges(*line), (std::vector<double>{-0.5, 0, -1}));
    EXPECT_FALSE(std::signbit(bulges(*line)[1]));
    EXPECT_POINT(vertexAt(*line, 0), {4, 4, 0});
    EXPECT_EQ(identifiers(*line), (std::vector<int>{1, 2, 3}));
}

TEST(PolylineIdentifiers, AreFreshOnlyOnce) {
    const auto line = slot();
    EXPECT_EQ(EntityAccess::lastFreshIdentifier(*line), 14);
    line->setVertexIdentifierAt(0, 40);
    line->setVertexIdentifierAt(0, 0);
    EXPECT_EQ(EntityAccess::takeFreshIdentifier(*line), 41);
    EXPECT_EQ(EntityAccess::takeFreshIdentifier(*line), 42);
    EntityAccess::setPolyline(*line, {.vertices = {{{0, 0}}, {{1, 0}}}});
    EXPECT_EQ(EntityAccess::lastFreshIdentifier(*line), 42);
    EXPECT_EQ(EntityAccess::lastFreshIdentifier(*copyOf(*line)), 42);
}

TEST(PolylineIdentifiers, RunOutWithoutWrappingRound) {
    const auto line = slot();
    line->setVertexIdentifierAt(1, std::numeric_limits<int>::max());
    EXPECT_EQ(EntityAccess::takeFreshIdentifier(*line), 0);
}

TEST(PolylineCopy, StandsAlone) {
    const auto line = slot();
    const auto copy = copyOf(*line);
    copy->setVertexIdentifierAt(0, 99);
    EntityAccess::setVertexPoint(*copy, 1, {5, 5});
    EXPECT_EQ(identifiers(*line), (std::vector<int>{11, 12, 13, 14}));
    EXPECT_POINT(vertexAt(*line, 1), {10, 0, 0});
    EXPECT_EQ(identifiers(*copy), (std::vector<int>{99, 12, 13, 14}));
}

TEST(PolylineEditing, InsertsAndRemovesVertices) {
    const auto line = slot();
    EntityAccess::insertVertex(*line, 1, {{5, 0}, 0, 0});
    EntityAccess::insertVertex(*line, 5, {{0, 5}, 0, 21});
    EXPECT_EQ(identifiers(*line), (std::vector<int>{11, 0, 12, 13, 14, 21}));
    EntityAccess::removeVertex(*line, 0);
    EntityAccess::removeVertices(*line, 1, 3);
    EXPECT_EQ(identifiers(*line), (std::vector<int>{0, 21}));
    EXPECT_POINT(startOf(*line), {5, 0, 0});
}

TEST(PolylineEditing, ChangesOneFieldAndLeavesTheOthers) {
    const auto line = slot();
    EntityAccess::setVertexPoint(*line, 1, {20, 0});
    EntityAccess::setBulge(*line, 0, 0.25);
    EntityAccess::setVertex(*line, 3, {{1, 1}, 0.5, 7});
    EntityAccess::setClosed(*line, true);
    EXPECT_EQ(bulges(*line), (std::vector<double>{0.25, 1, 0, 0.5}));
    EXPECT_EQ(identifiers(*line), (std::vector<int>{11, 12, 13, 7}));
    EXPECT_POINT(vertexAt(*line, 1), {20, 0, 0});
    EXPECT_TRUE(line->isClosed());
}

RC_GTEST_PROP(PolylineReversal, TwiceIsTheSamePolyline,
              (const std::vector<std::pair<int, int>>& numbers, bool closed)) {
    RC_PRE(numbers.size() > 0U);
    std::vector<PolylineVertex> vertices;
    vertices.reserve(numbers.size());
    for (const auto& [a, b] : numbers)
        vertices.push_back({{a % 100 / 10.0, b % 100 / 10.0}, (a % 7 + b % 5) / 3.0, b});
    const auto line = polyline(vertices, closed);
    line->reverseCurve();
    line->reverseCurve();
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const PolylineVertex now = EntityAccess::vertex(*line, i);
        RC_ASSERT(now.point.isEqualTo(vertices[i].point));
        RC_ASSERT(now.bulge == vertices[i].bulge);
        RC_ASSERT(now.identifier == vertices[i].identifier);
    }
}

RC_GTEST_PROP(PolylineReversal, RunsThroughTheSamePoints,
              (const std::vector<std::pair<int, int>>& numbers, unsigned share)) {
    RC_PRE(numbers.size() > 1U);
    std::vector<PolylineVertex> vertices;
    vertices.reserve(numbers.size());
    for (const auto& [a, b] : numbers)
        vertices.push_back({{a % 100 / 10.0, b % 100 / 10.0}, (a % 8 + b % 8) / 5.0, 0});
    const auto line = polyline(vertices);
    const double last = static_cast<double>(numbers.size() - 1);
    const double param = last * (share % 1001) / 1000.0;
    const YxGePoint3d before = pointAt(*line, param);
    line->reverseCurve();
    RC_ASSERT(pointAt(*line, last - param).distanceTo(before) <= 1e-9);
}
