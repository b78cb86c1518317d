#include "geometry/Angles.h"
#include "inference/Infer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <numbers>

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/checks/DocumentCheck.h"
#include "formats/FileIo.h"
#include "formats/dxf/DxfReader.h"
#include "geometry/DisjointSets.h"
#include "tests/document/ConstraintResidual.h"

namespace holdfast::inference {

using namespace formats;
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Document documentOf(const std::vector<Shape>& shapes) {
    Document document;
    for (const Shape& shape : shapes)
        document.entities.push_back({"g" + std::to_string(document.entities.size()), shape});
    return document;
}

/// "coincident g0.end g1.start", one a constraint.
std::vector<std::string> spoken(const Document& document) {
    std::vector<std::string> lines;
    for (const Constraint& constraint : document.constraints) {
        std::string line(typeName(constraint.type));
        for (const Place& place : constraint.refs)
            line += " " + spokenPlace(place);
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> inferred(const std::vector<Shape>& shapes) {
    return spoken(inferConstraints(documentOf(shapes)).document);
}

/// The quadrilateral through four corners, as lines.
std::vector<Shape> ringOf(const std::vector<Vec2>& corners) {
    std::vector<Shape> lines;
    for (std::size_t i = 0; i < corners.size(); ++i)
        lines.push_back(LineShape{corners[i], corners[(i + 1) % corners.size()]});
    return lines;
}

TEST(Infer, SaysOfARectangleWhatIsNeededAndNoMore) {
    EXPECT_THAT(
        inferred(ringOf({{0, 0}, {30, 0}, {30, 20}, {0, 20}})),
        ElementsAre("coincident g0.start g3.end", "coincident g0.end g1.start", "coincident g1.end g2.start",
                    "coincident g2.end g3.start", "horizontal g0", "horizontal g2", "vertical g1", "vertical g3"));
}

TEST(Infer, LeavesADistanceOfTwoLinesAsItIs) {
    Document document = documentOf({LineShape{{0, 0}, {30, 10}}, LineShape{{0, 20}, {30, 30}}});
    Constraint gap;
    gap.id = "gap";
    gap.type = ConstraintType::distance;
    gap.refs = {{"g0"}, {"g1"}};
    gap.value = 18.97366596101028;
    document.constraints = {gap};
    const Document found = inferConstraints(document).document;
    EXPECT_EQ(found.constraints.front(), gap);
    EXPECT_THAT(spoken(found), ElementsAre("distance g0 g1", "parallel g0 g1", "equal g0 g1"));
}

TEST(Infer, MakesASquareOfARectangleWithOneEquality) {
    const std::vector<std::string> lines = inferred(ringOf({{0, 0}, {20, 0}, {20, 20}, {0, 20}}));
    EXPECT_EQ(lines.size(), 9U);
    EXPECT_EQ(lines.back(), "equal g0 g1");
}

TEST(Infer, HoldsASlantedRectangleByParallelsAndOneCorner) {
    const std::vector<std::string> lines = inferred(ringOf({{0, 0}, {40, 30}, {25, 50}, {-15, 20}}));
    EXPECT_THAT(lines, testing::IsSupersetOf({"parallel g0 g2", "parallel g1 g3", "perpendicular g0 g1"}));
    EXPECT_THAT(lines, testing::Not(testing::Contains(testing::HasSubstr("horizontal"))));
}

TEST(Infer, JoinsArcsSmoothlyToTheirLinesAndEqualsTheirRadii) {
    const std::vector<std::string> lines = inferred({LineShape{{5, 0}, {25, 0}}, ArcShape{{25, 5}, 5, -kPi / 2, 0},
                                                     LineShape{{30, 5}, {30, 15}}, ArcShape{{25, 15}, 5, 0, kPi / 2}});
    EXPECT_THAT(lines,
                ElementsAre("coincident g0.end g1.start", "coincident g1.end g2.start", "coincident g2.end g3.start",
                            "horizontal g0", "vertical g2", "tangent g0.end g1.start", "tangent g2.start g1.end",
                            "tangent g2.end g3.start", "equal g1 g3"));
}

TEST(Infer, SeesNoTangencyInACorner) {
    EXPECT_THAT(inferred({LineShape{{0, 0}, {10, 0}}, ArcShape{{10, 5}, 5, 0.5, 3 * kPi / 2}}),
                testing::Contains("tangent g0.end g1.end"));
    EXPECT_THAT(inferred({LineShape{{0, 0}, {10, 1}}, ArcShape{{10, 6}, 5, 0.5, 3 * kPi / 2}}),
                testing::Not(testing::Contains(testing::HasSubstr("tangent"))));
}

TEST(Infer, FindsTangentsOfEllipsesSplinesAndPolylines) {
    EXPECT_THAT(inferred({LineShape{{2, -5}, {2, 0}}, EllipticalArcShape{{0, 0}, {2, 0}, 0.5, 0, 1}}),
                testing::Contains("tangent g0.end g1.start"));
    const SplineShape spline{2, false, {{0, 0}, {1, 1}, {2, 0}}, {0, 0, 0, 1, 1, 1}, {}};
    EXPECT_THAT(inferred({LineShape{{-3, -3}, {0, 0}}, spline}), testing::Contains("tangent g0.end g1.start"));
    EXPECT_THAT(inferred({PolylineShape{{{0, 0}, {5, 0}, {5, 2}}, {0, 1, 0}, {0, 0, 0}, false}}),
                ElementsAre("horizontal g0.segment:0", "tangent g0.segment:0.end g0.segment:1.start"));
}

TEST(Infer, TakesTangentsOfOppositeSlopeAsOne) {
    // Almost horizontal tangents: one slope just above 0, the other just below pi.
    const double small = 2e-5;
    EXPECT_THAT(inferred({ArcShape{{0, 10}, 10, -kPi / 2 + small, 0}, ArcShape{{0, 10}, 10, kPi, 3 * kPi / 2 - small}}),
                testing::Not(testing::Contains(testing::HasSubstr("tangent"))));
    EXPECT_THAT(inferred({ArcShape{{0, 10}, 10, -kPi / 2 + 1e-7, 0}, ArcShape{{0, -10}, 10, kPi / 2 + 1e-7, kPi}}),
                testing::Contains("tangent g0.start g1.start"));
}

TEST(Infer, HangsCentresOnTheFirstAndEndsOnCentres) {
    EXPECT_THAT(inferred({CircleShape{{5, 5}, 1}, CircleShape{{5, 5}, 2}, ArcShape{{5, 5}, 3, 0, 1},
                          LineShape{{5, 5}, {20, 9}}}),
                ElementsAre("concentric g0.centre g1.centre", "concentric g0.centre g2.centre",
                            "coincident g3.start g0.centre"));
}

TEST(Infer, HoldsEqualRadiiByATreeNotByPairs) {
    const std::vector<std::string> lines = inferred(
        {CircleShape{{0, 0}, 3}, CircleShape{{10, 1}, 3}, CircleShape{{20, 5}, 4}, CircleShape{{30, 2}, 3.0000001}});
    EXPECT_THAT(lines, ElementsAre("equal g0 g1", "equal g0 g3"));
}

TEST(Infer, AlignsUprightLinesThroughTheirNearestEnds) {
    EXPECT_THAT(inferred({LineShape{{20, 0}, {35, 0}}, LineShape{{10, 0}, {0, 0}}, LineShape{{0, 3}, {0, 9}}}),
                ElementsAre("horizontal g0", "horizontal g1", "vertical g2", "horizontal g1.start g0.start"));
    EXPECT_THAT(inferred({LineShape{{0, 0}, {0, 4}}, LineShape{{0, 9}, {0, 7}}, LineShape{{5, 7}, {5, 8.5}}}),
                ElementsAre("vertical g0", "vertical g1", "vertical g2", "vertical g0.end g1.end"));
}

TEST(Infer, PutsSlantedLinesInLine) {
    EXPECT_THAT(
        inferred({LineShape{{0, 0}, {3, 4}}, LineShape{{6, 8}, {12, 16}}, LineShape{{12, 16}, {15, 20.0}},
                  LineShape{{1, 0}, {7.6, 8.8}}}),
        ElementsAre("coincident g1.end g2.start", "parallel g3 g0", "collinear g0 g1", "parallel g1 g2", "equal g0 g2"))
        << "joined lines by parallel, others by collinear";
}

TEST(Infer, BridgesNoGapByAChainOfNearPoints) {
    const Document document = documentOf({PointShape{{0, 0}}, PointShape{{0.8, 0}}, PointShape{{1.6, 0}}});
    EXPECT_THAT(spoken(inferConstraints(document, {.length = 1.0}).document), ElementsAre("coincident g0 g1"));
}

TEST(Infer, PassesOverCurvesSmallerThanTheTolerance) {
    EXPECT_THAT(inferred({LineShape{{0, 0}, {100, 0}}, LineShape{{50, 50}, {50, 50.00001}}, CircleShape{{20, 20}, 1e-5},
                          CircleShape{{20, 20}, 5}}),
                ElementsAre("horizontal g0"));
}

TEST(Infer, LooksForTheWantedKindsOnly) {
    InferOptions options;
    options.kinds = {ConstraintType::vertical};
    const Document square = documentOf(ringOf({{0, 0}, {20, 0}, {20, 20}, {0, 20}}));
    EXPECT_THAT(spoken(inferConstraints(square, options).document), ElementsAre("vertical g1", "vertical g3"));
}

TEST(Infer, LeavesOutWhatTheTestCallsRedundant) {
    std::vector<std::size_t> sizes;
    const Inference result = inferConstraints(documentOf(ringOf({{0, 0}, {20, 0}, {20, 20}, {0, 20}})), {},
                                              [&](const Document& soFar, const Constraint& candidate) {
                                                  sizes.push_back(soFar.constraints.size());
                                                  return candidate.type == ConstraintType::horizontal;
                                              });
    EXPECT_THAT(sizes, ElementsAre(0, 1, 2, 3, 4, 4, 4, 5, 6));
    EXPECT_EQ(result.redundant, 2U);
    EXPECT_EQ(result.added, 7U);
    EXPECT_EQ(result.document.constraints.back().id, "c6");
}

TEST(Infer, KeepsWhatIsThereAndAddsWhatIsMissing) {
    Document document = documentOf(ringOf({{0, 0}, {30, 0}, {30, 20}, {0, 20}}));
    document.constraints.push_back({.id = "c1",
                                    .type = ConstraintType::coincident,
                                    .refs = {{"g1", PlaceKind::start, 0}, {"g0", PlaceKind::end, 0}}});
    document.constraints.push_back(
        {.id = "top", .type = ConstraintType::horizontal, .refs = {{"g2", PlaceKind::whole, 0}}});
    const Inference result = inferConstraints(document);
    EXPECT_EQ(result.added, 6U);
    EXPECT_EQ(result.document.constraints[1], document.constraints[1]);
    EXPECT_EQ(result.document.constraints[2].id, "c0");
    EXPECT_EQ(result.document.constraints[3].id, "c2");
    checkDocument(result.document, "inferred");
}

TEST(Infer, KnowsTheOuterControlPointsOfSplinesAsTheirEnds) {
    const SplineShape spline{2, false, {{0, 0}, {1, 1}, {2, 0}}, {0, 0, 0, 1, 1, 1}, {}};
    Document document = documentOf({spline, LineShape{{2, 0}, {5, 1}}});
    document.constraints.push_back({.id = "c0",
                                    .type = ConstraintType::coincident,
                                    .refs = {{"g0", PlaceKind::control, 2}, {"g1", PlaceKind::start, 0}}});
    EXPECT_EQ(inferConstraints(document).added, 0U);
}

TEST(Infer, PutsNothingBetweenFixedEntities) {
    Document document = documentOf(ringOf({{0, 0}, {30, 0}, {30, 20}, {0, 20}}));
    for (Entity& entity : document.entities)
        entity.fixed = true;
    EXPECT_THAT(spoken(inferConstraints(document).document), IsEmpty());
    document.entities[0].fixed = false;
    EXPECT_THAT(spoken(inferConstraints(document).document),
                ElementsAre("coincident g0.start g3.end", "coincident g0.end g1.start", "horizontal g0"));
}

TEST(Infer, TakesAMillionthOfTheDrawingAsToleranceUnlessOneIsGiven) {
    const Document document = documentOf({LineShape{{-50, 0}, {150, 10}}});
    EXPECT_DOUBLE_EQ(inferConstraints(document).length, 2e-4);
    EXPECT_DOUBLE_EQ(inferConstraints(document, {.length = 0.5}).length, 0.5);
    EXPECT_EQ(inferConstraints(Document()).added, 0U);
}

TEST(Infer, TakesAFlatArcForAsLongAsItIs) {
    const double half = std::asin(0.5e-6);  // a chord of 100 on a radius of 1e8
    const double up = kQuarterTurn;
    const Document flat = documentOf({ArcShape{{50, -1e8}, 1e8, up - half, up + half}});
    EXPECT_NEAR(inferConstraints(flat).length, 1e-4, 1e-9);
    const Document round = documentOf({ArcShape{{0, 0}, 50, 0, std::numbers::pi}});
    const Document bulged = documentOf({PolylineShape{{{50, 0}, {-50, 0}}, {1, 0}, {0, 0}, false}});
    const Document upright = documentOf({PolylineShape{{{0, 50}, {0, -50}}, {2, 0}, {0, 0}, false}});
    EXPECT_DOUBLE_EQ(inferConstraints(round).length, 1e-4);
    EXPECT_DOUBLE_EQ(inferConstraints(bulged).length, 1e-4);
    EXPECT_DOUBLE_EQ(inferConstraints(upright).length, 125e-6);
}

TEST(Infer, TakesNoReferenceFarAwayForAPartOfTheDrawing) {
    Document document = documentOf({LineShape{{0, 0}, {10, 0}}, PointShape{{1e9, 0}}, PointShape{{-1e9, 0}}});
    document.entities[1].fixed = document.entities[2].fixed = true;
    EXPECT_DOUBLE_EQ(inferConstraints(document).length, 1e-5);
    document.entities.erase(document.entities.begin());
    EXPECT_DOUBLE_EQ(inferConstraints(document).length, 2e3);
}

/// The example drawings without their constraints, and the DXF ones.
std::vector<Document> plainDrawings() {
    std::vector<Document> drawings;
    for (const auto& file : std::filesystem::directory_iterator("examples/drawings")) {
        if (file.path().extension() == ".json")
            drawings.push_back(readDrawing(file.path()));
        else if (file.path().extension() == ".dxf")
            drawings.push_back(readDxf(readFile(file.path()), file.path().string()).document);
    }
    for (Document& drawing : drawings)
        drawing.constraints.clear();
    return drawings;
}

TEST(InferOnRealDrawings, FindsOnlyWhatTheGeometryFulfils) {
    for (const Document& drawing : plainDrawings()) {
        const Inference result = inferConstraints(drawing);
        checkDocument(result.document, drawing.name);
        EXPECT_GT(result.added, drawing.entities.size() / 2) << drawing.name;
        const EntityIndex entities(result.document);
        for (const Constraint& constraint : result.document.constraints)
            EXPECT_LE(residualOf(constraint, entities), 3 * result.length) << drawing.name << " " << constraint.id;
    }
}

TEST(InferOnRealDrawings, AddsNothingTheSecondTime) {
    for (const Document& drawing : plainDrawings())
        EXPECT_EQ(inferConstraints(inferConstraints(drawing).document).added, 0U) << drawing.name;
}

TEST(InferOnRealDrawings, NeedsFewerOfEachKindThanThereAreCurves) {
    for (const Document& drawing : plainDrawings()) {
        std::vector<std::size_t> counts(constraintTypeNames().size());
        std::size_t curves = 0;
        for (const Entity& entity : drawing.entities) {
            const auto* polyline = std::get_if<PolylineShape>(&entity.shape);
            curves += polyline == nullptr ? 1 : polyline->vertices.size();
        }
        for (const Constraint& constraint : inferConstraints(drawing).document.constraints)
            ++counts[static_cast<std::size_t>(constraint.type)];
        for (const std::size_t count : counts)
            EXPECT_LT(count, 2 * curves) << drawing.name;
    }
}

/// Points that the coincidences of a document make one.
class JoinedPoints {
public:
    explicit JoinedPoints(const Document& document) : m_sets(document.constraints.size() * 2) {
        for (const Constraint& constraint : document.constraints) {
            if (constraint.type == ConstraintType::coincident || constraint.type == ConstraintType::concentric)
                m_sets.join(numberOf(constraint.refs[0]), numberOf(constraint.refs[1]));
        }
    }
    bool same(const Place& a, const Place& b) { return m_sets.same(numberOf(a), numberOf(b)); }

private:
    /// The outer control points of the splines here are their ends.
    std::size_t numberOf(Place place) {
        if (place.kind == PlaceKind::control)
            place = {place.entity, place.index == 0 ? PlaceKind::start : PlaceKind::end, 0};
        return m_numbers.emplace(spokenPlace(place), m_numbers.size()).first->second;
    }

    std::map<std::string, std::size_t> m_numbers;
    DisjointSets m_sets;
};

TEST(InferOnRealDrawings, FindsTheCoincidencesThatTheirAuthorsDrew) {
    for (const char* name : {"honeycomb-grille", "alarm-clock-marks", "battery-clip", "keyboard-rim"}) {
        const Document authors = readDrawing(std::string("examples/drawings/") + name + ".json");
        Document plain = authors;
        plain.constraints.clear();
        JoinedPoints joined(inferConstraints(plain).document);
        for (const Constraint& constraint : authors.constraints) {
            const bool holds =
                constraint.type != ConstraintType::coincident || joined.same(constraint.refs[0], constraint.refs[1]);
            EXPECT_TRUE(holds) << name << " " << constraint.id;
        }
    }
}

}  // namespace
}  // namespace holdfast::inference
