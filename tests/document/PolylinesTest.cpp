#include "document/Polylines.h"
#include "geometry/Angles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/Places.h"
#include "document/checks/DocumentCheck.h"
#include "formats/FileIo.h"
#include "formats/dxf/DxfReader.h"
#include "inference/Infer.h"
#include "tests/formats/DrawingText.h"

namespace holdfast::document {

using namespace inference;

using namespace formats;
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A place from "g0.start", a constraint from "coincident g0.start g1.end".
Constraint constraint(const std::string& id, ConstraintType type, const std::vector<std::string>& refs) {
    Constraint result{.id = id, .type = type};
    for (const std::string& ref : refs) {
        const std::size_t dot = ref.find('.');
        Place place = parsePlace(dot == std::string::npos ? "whole" : ref.substr(dot + 1)).value();
        place.entity = ref.substr(0, dot);
        result.refs.push_back(place);
    }
    return result;
}

Document documentOf(const std::vector<Shape>& shapes, const std::vector<std::vector<std::string>>& joints) {
    Document document;
    for (const Shape& shape : shapes)
        document.entities.push_back({"g" + std::to_string(document.entities.size()), shape});
    for (const std::vector<std::string>& joint : joints) {
        const std::string id = "c" + std::to_string(document.constraints.size());
        document.constraints.push_back(constraint(id, ConstraintType::coincident, joint));
    }
    return document;
}

std::vector<std::string> spoken(const Document& document) {
    std::vector<std::string> lines;
    for (const Constraint& each : document.constraints) {
        std::string line = each.id + " " + std::string(typeName(each.type));
        for (const Place& place : each.refs)
            line += " " + spokenPlace(place);
        lines.push_back(line);
    }
    return lines;
}

PolylineShape only(const PolylineConversion& conversion) {
    EXPECT_EQ(conversion.document.entities.size(), 1U);
    return std::get<PolylineShape>(conversion.document.entities.at(0).shape);
}

const LineShape kBottom{{0, 0}, {10, 0}};
const LineShape kRight{{10, 0}, {10, 5}};

TEST(ChainsToPolylines, OpensAChainInTheDirectionOfItsFirstEntity) {
    const PolylineConversion result = chainsToPolylines(documentOf({kRight, kBottom}, {{"g0.start", "g1.end"}}));
    EXPECT_EQ(only(result), (PolylineShape{{{0, 0}, {10, 0}, {10, 5}}, {0, 0, 0}, {0, 0, 0}, false}));
    EXPECT_THAT(result.chains, ElementsAre(PolylineChain{"p0", {"g1", "g0"}}));
    EXPECT_THAT(result.dropped, ElementsAre("c0"));
    EXPECT_THAT(result.document.constraints, IsEmpty());
}

TEST(ChainsToPolylines, ClosesALoopAndBendsItsArcs) {
    const Document slot =
        documentOf({LineShape{{0, 0}, {10, 0}}, ArcShape{{10, 2}, 2, -kPi / 2, kPi / 2}, LineShape{{0, 4}, {10, 4}},
                    ArcShape{{0, 2}, 2, kPi / 2, 3 * kPi / 2}},
                   {{"g0.end", "g1.start"}, {"g1.end", "g2.end"}, {"g2.start", "g3.start"}, {"g3.end", "g0.start"}});
    const PolylineShape polyline = only(chainsToPolylines(slot));
    EXPECT_TRUE(polyline.closed);
    ASSERT_EQ(polyline.vertices.size(), 4U);
    EXPECT_EQ(polyline.vertices[2], (Vec2{10, 4}));
    EXPECT_THAT(polyline.bulges, ElementsAre(0, testing::DoubleEq(1), 0, testing::DoubleEq(1)));
}

TEST(ChainsToPolylines, BendsReversedArcsTheOtherWay) {
    const Document chain =
        documentOf({LineShape{{-5, 0}, {0, 0}}, ArcShape{{2, 0}, 2, 0, kPi}}, {{"g0.end", "g1.end"}});
    const PolylineShape polyline = only(chainsToPolylines(chain));
    EXPECT_NEAR(polyline.bulges[1], -1, 1e-15);
    EXPECT_EQ(polyline.vertices.back(), (Vec2{4, 0}));
}

TEST(ChainsToPolylines, ReaddressesConstraintsToSegments) {
    Document chain =
        documentOf({kBottom, LineShape{{10, 5}, {10, 0}}, ArcShape{{5, 5}, 5, 0, kPi / 2}, CircleShape{{0, 0}, 1}},
                   {{"g0.end", "g1.end"}, {"g1.start", "g2.start"}, {"g3.centre", "g0.start"}});
    chain.constraints.push_back(constraint("h", ConstraintType::horizontal, {"g0"}));
    chain.constraints.push_back(constraint("t", ConstraintType::tangent, {"g1.start", "g2.start"}));
    chain.constraints.push_back(constraint("m", ConstraintType::distanceX, {"g1.mid", "g2.centre"}));
    chain.constraints.back().value = -5;
    chain.constraints.push_back(constraint("r", ConstraintType::radius, {"g2"}));
    chain.constraints.back().value = 5;
    const PolylineConversion result = chainsToPolylines(chain);
    EXPECT_THAT(spoken(result.document),
                ElementsAre("c2 coincident g3.centre p0.segment:0.start", "h horizontal p0.segment:0",
                            "t tangent p0.segment:1.end p0.segment:2.start",
                            "m distance_x p0.segment:1.mid p0.segment:2.centre", "r radius p0.segment:2"));
    checkDocument(result.document, "converted");
}

TEST(ChainsToPolylines, TurnsTheDirectionsOfAnglesWithTheirSegments) {
    Document chain = documentOf({kBottom, LineShape{{10, 5}, {10, 0}}}, {{"g0.end", "g1.end"}});
    for (const std::vector<std::string>& refs : {std::vector<std::string>{"g0", "g1"},
                                                 {"g0.start", "g1.start"},
                                                 {"g0.end", "g1.end"},
                                                 {"g0", "g1", "g1.end"}}) {
        chain.constraints.push_back(
            constraint("a" + std::to_string(chain.constraints.size()), ConstraintType::angle, refs));
        chain.constraints.back().value = 1;
    }
    EXPECT_THAT(spoken(chainsToPolylines(chain).document),
                ElementsAre("a1 angle p0.segment:0 p0.segment:1.end", "a2 angle p0.segment:0.start p0.segment:1.end",
                            "a3 angle p0.segment:0.end p0.segment:1.start",
                            "a4 angle p0.segment:0 p0.segment:1 p0.segment:1.start"));
}

TEST(ChainsToPolylines, EndsChainsWhereThreeMeet) {
    const Document branch =
        documentOf({kBottom, kRight, LineShape{{10, 0}, {20, 0}}}, {{"g0.end", "g1.start"}, {"g0.end", "g2.start"}});
    const PolylineConversion result = chainsToPolylines(branch);
    EXPECT_THAT(result.chains, IsEmpty());
    EXPECT_EQ(result.document, branch);
}

TEST(ChainsToPolylines, KeepsOneCoincidenceOfAVertexWithAThirdPoint) {
    Document chain = documentOf({kBottom, kRight, PointShape{{10, 0}}}, {{"g0.end", "g2"}, {"g1.start", "g2"}});
    const PolylineConversion result = chainsToPolylines(chain);
    EXPECT_THAT(spoken(result.document), ElementsAre("c0 coincident p0.segment:0.end g2"));
    EXPECT_THAT(result.dropped, ElementsAre("c1"));
}

TEST(ChainsToPolylines, LeavesApartWhatDoesNotBelongTogether) {
    const std::vector<std::vector<std::string>> joint = {{"g0.end", "g1.start"}};
    Document apart = documentOf({kBottom, LineShape{{10, 1}, {10, 5}}}, joint);
    EXPECT_THAT(chainsToPolylines(apart).chains, IsEmpty()) << "ends that are not at one point";
    Document reference = documentOf({kBottom, kRight}, joint);
    reference.entities[1].fixed = true;
    EXPECT_THAT(chainsToPolylines(reference).chains, IsEmpty()) << "a fixed entity";
    Document helper = documentOf({kBottom, kRight}, joint);
    helper.entities[1].construction = true;
    EXPECT_THAT(chainsToPolylines(helper).chains, IsEmpty()) << "helper geometry beside a cut";
    Document switchedOff = documentOf({kBottom, kRight}, joint);
    switchedOff.constraints[0].active = false;
    EXPECT_THAT(chainsToPolylines(switchedOff).chains, IsEmpty()) << "a coincidence that is switched off";
    Document owned = documentOf({kBottom, kRight}, joint);
    owned.constraints.push_back({.id = "o", .type = ConstraintType::composite, .members = {"c0"}});
    EXPECT_THAT(chainsToPolylines(owned).chains, IsEmpty()) << "a coincidence that a composite owns";
    Document axis = documentOf({kBottom, kRight, EllipseShape{{5, 0}, {5, 0}, 0.5}}, joint);
    axis.constraints.push_back(constraint("i", ConstraintType::internal, {"g0", "g2"}));
    axis.constraints.back().role = "major_diameter";
    EXPECT_THAT(chainsToPolylines(axis).chains, IsEmpty()) << "an axis of an ellipse";
    Document ring = documentOf({ArcShape{{0, 0}, 5, 0, 2 * kPi}, LineShape{{5, 0}, {9, 0}}}, joint);
    EXPECT_THAT(chainsToPolylines(ring).chains, IsEmpty()) << "a full circle";
}

TEST(ChainsToPolylines, PutsEachPolylineWhereItsFirstEntityStoodUnderAFreeName) {
    Document document =
        documentOf({CircleShape{{50, 50}, 1}, kBottom, PointShape{{9, 9}}, kRight, LineShape{{0, 9}, {1, 9}}},
                   {{"g1.end", "g3.start"}});
    document.entities[2].id = "p0";
    const PolylineConversion result = chainsToPolylines(document);
    std::vector<std::string> ids;
    for (const Entity& entity : result.document.entities)
        ids.push_back(entity.id);
    EXPECT_THAT(ids, ElementsAre("g0", "p1", "p0", "g4"));
}

/// Every point that a constraint named is where it was, in the same constraint.
void expectSamePoints(const Document& before, const PolylineConversion& conversion) {
    const EntityIndex then(before), now(conversion.document);
    std::size_t next = 0;
    for (const Constraint& constraint : before.constraints) {
        if (testing::Value(conversion.dropped, testing::Contains(constraint.id)))
            continue;
        const Constraint& after = conversion.document.constraints.at(next++);
        ASSERT_EQ(after.id, constraint.id);
        for (std::size_t i = 0; i < constraint.refs.size(); ++i) {
            const auto a = pointAt(then.find(constraint.refs[i].entity)->shape, constraint.refs[i]);
            const auto b = pointAt(now.find(after.refs[i].entity)->shape, after.refs[i]);
            if (!a || constraint.type == ConstraintType::angle)
                continue;
            EXPECT_NEAR(a->x, b->x, 1e-6) << constraint.id;
            EXPECT_NEAR(a->y, b->y, 1e-6) << constraint.id;
        }
    }
    EXPECT_EQ(next, conversion.document.constraints.size());
}

TEST(ChainsToPolylines, KeepsThePointsOfRealDrawings) {
    for (const char* name : {"honeycomb-grille", "alarm-clock-marks", "battery-clip", "spectacles-case"}) {
        const Document drawing = readDrawing(std::string("examples/drawings/") + name + ".json");
        const PolylineConversion result = chainsToPolylines(drawing);
        checkDocument(result.document, name);
        EXPECT_FALSE(result.chains.empty()) << name;
        expectSamePoints(drawing, result);
    }
}

TEST(ChainsToPolylines, MakesOneLoopOfEveryKeyHoleInAPlate) {
    const Document plate = readDxf(readFile("examples/drawings/split-keyboard-plate.dxf"), "plate.dxf").document;
    const Document joined = inferConstraints(plate).document;
    const PolylineConversion result = chainsToPolylines(joined, 1e-3);
    EXPECT_EQ(result.chains.size(), 45U);  // 44 holes and the outline
    for (const Entity& entity : result.document.entities)
        EXPECT_TRUE(std::get<PolylineShape>(entity.shape).closed) << entity.id;
}

}  // namespace
}  // namespace holdfast::document
