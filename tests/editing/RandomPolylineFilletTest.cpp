// Random polylines of lines and arcs, filleted at random, with what has to hold after any edit.

#include <gtest/gtest.h>

#include <random>

#include "tests/editing/BareSession.h"
#include "tests/editing/PolylineShorthand.h"
#include "tests/editing/RealDrawings.h"

namespace holdfast::editing {
namespace {

class Dice {
public:
    explicit Dice(unsigned int seed) : m_engine(seed) {}
    double between(double low, double high) { return low + (high - low) * share(); }
    int below(int count) { return static_cast<int>(share() * count); }
    bool oneIn(int count) { return below(count) == 0; }

private:
    double share() { return static_cast<double>(m_engine()) / 4294967296.0; }
    std::mt19937 m_engine;
};

/// Corners from a coarse grid, so that right angles and parallels are frequent, joined by lines and flat arcs. None
/// lies in the origin, as which the host reads vertices that are gone.
PolylineShape randomPolyline(Dice& dice, Vec2 corner) {
    PolylineShape polyline;
    const int count = 2 + dice.below(6);
    while (static_cast<int>(polyline.vertices.size()) < count) {
        const Vec2 vertex = corner + Vec2{1.0 + 4.0 * dice.below(8), 1.0 + 4.0 * dice.below(8)};
        const auto& known = polyline.vertices;
        if (std::find(known.begin(), known.end(), vertex) != known.end())
            continue;
        polyline.vertices.push_back(vertex);
        polyline.bulges.push_back(dice.oneIn(3) ? dice.between(-0.8, 0.8) : 0.0);
        polyline.ids.push_back(0);
    }
    polyline.closed = count > 2 && dice.oneIn(2);
    if (!polyline.closed)
        polyline.bulges.back() = 0.0;
    return polyline;
}

/// A drawing in which most segments are constrained as a whole, and some vertices at either of their segments.
Document randomDrawing(Dice& dice) {
    Document document;
    document.name = "random";
    for (const char* name : {"p", "q"}) {
        const PolylineShape polyline = randomPolyline(dice, {name[0] == 'p' ? 0.0 : 20.0, 0.0});
        document.entities.push_back(shapeEntity(name, polyline));
        for (int i = 0; i < static_cast<int>(segmentCount(polyline)); ++i) {
            const std::string id = name + std::to_string(i);
            if (!dice.oneIn(4))
                document.constraints.push_back(
                    constraintOf("f" + id, ConstraintType::fixed, {{name, PlaceKind::segment, i}}));
            const PlaceKind end = dice.oneIn(2) ? PlaceKind::segmentStart : PlaceKind::segmentEnd;
            if (dice.oneIn(3))
                document.constraints.push_back(constraintOf("e" + id, ConstraintType::fixed, {{name, end, i}}));
        }
    }
    document.entities.push_back(lineEntity("l", {dice.between(-9, 40), -9}, {dice.between(-9, 40), 40}));
    return Drawing(document).document();  // with the vertices numbered
}

/// The middle of a segment of an entity, for a pick.
std::string randomPick(Dice& dice, const Document& document, const char* name) {
    const PolylineShape& polyline = std::get<PolylineShape>(entityNamed(document, name).shape);
    return pointWord(pointAt(polyline, dice.below(static_cast<int>(segmentCount(polyline))) + 0.5));
}

/// An edit of the polyline p; numbers of corners and segments may be wrong.
RealEdit randomFillet(Dice& dice, const Document& document) {
    const std::string radius = " radius " + numberWord(dice.oneIn(4) ? 0.0 : dice.between(0.1, 2.5));
    switch (dice.below(5)) {
        case 0:
            return {.text = "fillet p corner " + std::to_string(dice.below(7)) + radius, .edited = {"p"}};
        case 1:
            return {.text = "fillet p segments " + std::to_string(dice.below(6)) + " " + std::to_string(dice.below(6)) +
                            radius,
                    .edited = {"p"}};
        case 2:
            return {.text = "fillet p l" + radius, .edited = {"p", "l"}, .mayTurn = true};
        case 3:
            return {.text = "fillet p q" + radius + " at " + randomPick(dice, document, "p") + " " +
                            randomPick(dice, document, "q"),
                    .edited = {"p", "q"},
                    .mayTurn = true};
        default:
            return {.text = "fillet p q" + radius, .edited = {"p", "q"}, .mayTurn = true};
    }
}

TEST(RandomPolylines, KeepTheirConstraintsOnTheRightSegments) {
    Tally tally;
    for (unsigned int seed = 0; seed < 8000; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        const Document document = randomDrawing(dice);
        checkEdit(document, randomFillet(dice, document), tally);
        ASSERT_FALSE(::testing::Test::HasFailure()) << "the first drawing that failed has this seed";
    }
    tell(tally, 500);
}

TEST(RandomPolylines, AreRoundedByArcsOfTheRadiusThatTouchBothSegments) {
    int rounded = 0;
    for (unsigned int seed = 0; seed < 2000; ++seed) {
        Dice dice(seed);
        BareSession session(randomDrawing(dice));
        const PolylineShape before = polylineOf(session, "p");
        const int corner = dice.below(static_cast<int>(before.vertices.size()));
        const double radius = dice.between(0.1, 1.5);
        if (!session.apply("fillet p corner " + std::to_string(corner) + " radius " + numberWord(radius))
                 .outcome.done())
            continue;
        ++rounded;
        const PolylineShape after = polylineOf(session, "p");
        ASSERT_EQ(after.vertices.size(), before.vertices.size() + 1) << seed;
        const std::size_t arc = corner == 0 ? before.vertices.size() : static_cast<std::size_t>(corner);
        expectSmooth(after, arc);
        EXPECT_NEAR(radiusOfSegment(after, arc), radius, 1e-6 * radius) << seed;
        EXPECT_EQ(session.apply("undo").outcome.error, "");
        EXPECT_EQ(polylineOf(session, "p"), before) << seed;
    }
    EXPECT_GT(rounded, 300);
}

}  // namespace
}  // namespace holdfast::editing
