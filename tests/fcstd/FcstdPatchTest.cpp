#include "formats/fcstd/FcstdPatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "formats/fcstd/FcstdArchive.h"
#include "formats/fcstd/FcstdReader.h"
#include "tests/fcstd/Documents.h"

namespace holdfast::formats {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

/// A document that is being edited.
struct PatchedDocument {
    explicit PatchedDocument(const SketchText& sketch)
        : text(documentText({sketch})),
          archive(archiveOf(text)),
          now(readFcstd(archive, "Sketch", "part.FCStd").document) {}

    Entity& entity(const std::string& id) {
        return *std::find_if(now.entities.begin(), now.entities.end(), [&](const Entity& e) { return e.id == id; });
    }
    Constraint& constraint(const std::string& id) {
        return *std::find_if(now.constraints.begin(), now.constraints.end(),
                             [&](const Constraint& c) { return c.id == id; });
    }
    void erase(const std::string& id) {
        std::erase_if(now.entities, [&](const Entity& e) { return e.id == id; });
        std::erase_if(now.constraints, [&](const Constraint& c) {
            return std::any_of(c.refs.begin(), c.refs.end(), [&](const Place& place) { return place.entity == id; });
        });
    }
    void remove(const std::string& id) {
        std::erase_if(now.constraints, [&](const Constraint& c) { return c.id == id; });
    }

    FcstdOutput output() const { return patchedFcstd(archive, "Sketch", now, "part.FCStd"); }
    std::string written() const { return documentTextOf(output().archive, "part2.FCStd"); }
    FcstdDrawing readAgain() const { return readFcstd(output().archive, "Sketch", "part2.FCStd"); }

    std::string text, archive;
    Document now;
};

/// The same text but for a property's.
void expectSameAround(const std::string& before, const std::string& after, const std::vector<std::string>& properties) {
    const auto without = [&](std::string text) {
        for (const std::string& name : properties) {
            const std::size_t begin = text.find("<Property name=\"" + name + "\"");
            const std::string end = "</Property>";
            text.erase(begin, text.find(end, begin) + end.size() - begin);
        }
        return text;
    };
    EXPECT_EQ(without(before), without(after));
}

TEST(FcstdPatch, ADrawingThatIsAsItWasLeavesTheFileAsItWas) {
    const PatchedDocument document(cornerSketch());
    EXPECT_EQ(document.output().archive, document.archive);
}

TEST(FcstdPatch, ChangesNothingButGeometryConstraintsAndExpressions) {
    PatchedDocument document(cornerSketch());
    document.entity("g1").shape = LineShape{{10, 0}, {10, 7.5}};
    document.constraint("c5").value = 7.5;
    document.constraint("c5").formula = "";
    const std::string written = document.written();
    expectSameAround(document.text, written, {"Geometry", "Constraints", "ExpressionEngine"});
    EXPECT_THAT(written, HasSubstr("EndX=\"10.0\" EndY=\"7.5\""));
    EXPECT_THAT(written, HasSubstr("StartX=\"0.0\" StartY=\"0.0\" StartZ=\"0\" EndX=\"10.0000000000000000\""));
    EXPECT_THAT(written, HasSubstr("<ExpressionEngine count=\"0\">\n")) << "with an end tag of its own";
}

TEST(FcstdPatch, OtherEntriesOfTheArchiveAreTheSameBytes) {
    PatchedDocument document(cornerSketch());
    document.entity("g1").shape = LineShape{{10, 0}, {10, 7.5}};
    const std::string archive = document.output().archive;
    EXPECT_THAT(archive, HasSubstr(std::string("PartShape.brpDBRep_DrawableShape\nnot a text\x01")));
    EXPECT_THAT(archive, HasSubstr("GuiDocument.xml<a/>"));
    EXPECT_EQ(archive.find("Document.xml"), document.archive.find("Document.xml")) << "it stays the first";
    EXPECT_EQ(document.output().archive, archive) << "the same each time";
}

TEST(FcstdPatch, WhatIsErasedGoesAndNumbersCloseUp) {
    SketchText sketch = cornerSketch();
    sketch.geometry.push_back(lineGeometry("1", "1", "2", "2"));
    sketch.constraints.push_back(constrain({6, {2, 0, -2000, 0, -2000, 0}, "1.4142135623730951"}));
    PatchedDocument document(sketch);
    document.erase("g0");
    const FcstdDrawing again = document.readAgain();
    ASSERT_EQ(again.document.entities.size(), 5U);
    EXPECT_EQ(std::get<LineShape>(again.document.entities[4].shape), (LineShape{{1, 1}, {2, 2}}));
    ASSERT_EQ(again.document.constraints.size(), 3U);
    EXPECT_EQ(again.document.constraints[2].refs[0].entity, "g1");
    EXPECT_THAT(document.written(), HasSubstr("<GeometryList count=\"2\""));
    EXPECT_THAT(document.written(), HasSubstr("<ConstraintList count=\"3\""));
}

TEST(FcstdPatch, ExpressionsFollowTheNumbersOfConstraints) {
    PatchedDocument document(cornerSketch());
    document.remove("c2");
    EXPECT_THAT(document.written(),
                HasSubstr("<Expression path=\"Constraints[4]\" expression=\".Constraints.width / 2\""));
    document.constraint("c4").name = "breadth";
    document.constraint("c5").formula = "breadth / 2";
    EXPECT_THAT(document.written(), HasSubstr("path=\"Constraints[4]\" expression=\"Constraints.breadth / 2\""));
    EXPECT_THAT(document.written(), HasSubstr("Name=\"breadth\""));
}

TEST(FcstdPatch, AFormulaGoesOutWithUnitsWhereSumsWantThem) {
    PatchedDocument document(cornerSketch());
    document.constraint("c5").formula = "width / 4 + 2.5";
    EXPECT_THAT(document.written(), HasSubstr("expression=\"Constraints.width / 4 + 2.5 mm\""));
    EXPECT_EQ(document.readAgain().document.constraints[5].formula, "width / 4 + 2.5 mm");
}

TEST(FcstdPatch, ParametersHaveNoPlaceAndLeaveTheirValues) {
    PatchedDocument document(cornerSketch());
    document.now.parameters.push_back({"depth", "5", 5.0});
    document.constraint("c5").formula = "depth";
    EXPECT_THAT(document.output().notes,
                ElementsAre("the formula of c5 was left out, for expressions of the document cannot say it; its value "
                            "stays",
                            "the parameter depth was left out"));
    EXPECT_THAT(document.written(), Not(HasSubstr("depth")));
}

TEST(FcstdPatch, APieceHasWhatTheRecordOfItsOriginSays) {
    SketchText sketch = cornerSketch();
    sketch.geometry[0].replace(sketch.geometry[0].find("geometryLayer=\"0\""), 17, "geometryLayer=\"4\"");
    PatchedDocument document(sketch);
    document.entity("g0").shape = LineShape{{0, 0}, {3, 0}};
    document.now.entities.push_back({.id = "g0_2", .shape = LineShape{{6, 0}, {10, 0}}});
    const std::string written = document.written();
    const std::size_t first = written.find("geometryLayer=\"4\"");
    EXPECT_NE(written.find("geometryLayer=\"4\"", first + 1), std::string::npos);
    EXPECT_THAT(written, HasSubstr("<GeometryList count=\"3\""));
}

TEST(FcstdPatch, AFirstPieceTakesThePlaceOfWhatIsGone) {
    PatchedDocument document(cornerSketch());
    document.erase("g0");
    document.now.entities.push_back({.id = "g0_2", .shape = LineShape{{6, 0}, {10, 0}}});
    const FcstdDrawing again = document.readAgain();
    EXPECT_EQ(std::get<LineShape>(again.document.entities[3].shape), (LineShape{{6, 0}, {10, 0}}));
}

TEST(FcstdPatch, ACutCircleBecomesAnArcInItsPlace) {
    SketchText sketch = cornerSketch();
    sketch.geometry.insert(sketch.geometry.begin(),
                           geometry("Circle",
                                    "<Circle CenterX=\"1\" CenterY=\"2\" CenterZ=\"0\" NormalX=\"0\" NormalY=\"0\" "
                                    "NormalZ=\"1\" AngleXU=\"0\" Radius=\"3\"/>",
                                    true));
    sketch.constraints = {};
    sketch.expressions = {};
    PatchedDocument document(sketch);
    document.entity("g0").shape = ArcShape{{1, 2}, 3, 0.5, 4};
    const FcstdDrawing again = document.readAgain();
    EXPECT_EQ(std::get<ArcShape>(again.document.entities[3].shape), (ArcShape{{1, 2}, 3, 0.5, 4}));
    EXPECT_TRUE(again.document.entities[3].construction);
    EXPECT_THAT(document.written(), HasSubstr("type=\"Part::GeomArcOfCircle\""));
    EXPECT_THAT(document.written(), Not(HasSubstr("<Circle ")));
}

TEST(FcstdPatch, EveryKindOfShapeComesBackAsItWas) {
    PatchedDocument document(cornerSketch());
    const std::vector<Shape> shapes{LineShape{{1, 2}, {3, 4}},
                                    ArcShape{{1, 2}, 3, 0.5, 1.5},
                                    CircleShape{{4, 5}, 6},
                                    PointShape{{7, 8}},
                                    EllipseShape{{1, 2}, {4, 0}, 0.5},
                                    EllipticalArcShape{{1, 2}, {0, 3}, 0.5, 0.25, 2},
                                    SplineShape{2, false, {{0, 0}, {1, 2}, {3, 0}}, {0, 0, 0, 1, 1, 1}, {1, 2, 1}}};
    for (const Shape& shape : shapes)
        document.now.entities.push_back({.id = "n" + std::to_string(document.now.entities.size()), .shape = shape});
    EXPECT_THAT(document.output().notes, IsEmpty());
    const FcstdDrawing again = document.readAgain();
    ASSERT_EQ(again.document.entities.size(), 5 + shapes.size());
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        if (!std::holds_alternative<EllipticalArcShape>(shapes[i])) {  // its axis is an angle there
            EXPECT_EQ(again.document.entities[5 + i].shape, shapes[i]) << i;
        }
    }
    EXPECT_NEAR(std::get<EllipticalArcShape>(again.document.entities[10].shape).majorAxis.y, 3.0, 1e-15);
}

TEST(FcstdPatch, NewConstraintsOfEachKindComeBackAsTheyWere) {
    SketchText sketch = cornerSketch();
    sketch.constraints = {};
    sketch.expressions = {};
    PatchedDocument document(sketch);
    document.now.entities.push_back({.id = "g2", .shape = ArcShape{{5, 5}, 2, 0, 2}});
    document.now.entities.push_back({.id = "g3", .shape = PointShape{{4, 6}}});
    const Place line{.entity = "g0"}, other{.entity = "g1"}, arc{.entity = "g2"}, point{.entity = "g3"};
    const Place end{"g0", PlaceKind::end}, start{"g1", PlaceKind::start}, arcStart{"g2", PlaceKind::start};
    const Place centre{"g2", PlaceKind::centre}, origin{.entity = "origin"}, axis{.entity = "y_axis"};
    using Type = ConstraintType;
    const std::vector<Constraint> constraints{
        {.type = Type::coincident, .refs = {end, start}},
        {.type = Type::coincident, .refs = {centre, origin}},
        {.type = Type::pointOnCurve, .refs = {point, arc}},
        {.type = Type::fixed, .refs = {arc}},
        {.type = Type::horizontal, .refs = {line}},
        {.type = Type::vertical, .refs = {end, point}},
        {.type = Type::parallel, .refs = {line, axis}},
        {.type = Type::perpendicular, .refs = {line, other}},
        {.type = Type::collinear, .refs = {line, other}},
        {.type = Type::tangent, .refs = {line, arc}},
        {.type = Type::tangent, .refs = {end, arcStart}},
        {.type = Type::equal, .refs = {line, other}},
        {.type = Type::symmetric, .refs = {end, point, axis}},
        {.type = Type::distance, .refs = {line}, .value = 10.0},
        {.type = Type::distance, .refs = {point, line}, .value = 6.0},
        {.type = Type::distanceX, .refs = {origin, point}, .value = 4.0},
        {.type = Type::distanceY, .refs = {end, point}, .value = 6.0, .name = "rise"},
        {.type = Type::radius, .refs = {arc}, .value = 2.0, .driving = false},
        {.type = Type::diameter, .refs = {arc}, .value = 4.0, .active = false},
        {.type = Type::angle, .refs = {line, other}, .value = 1.5},
        {.type = Type::angle, .refs = {arc}, .value = 2.0},
    };
    for (Constraint constraint : constraints) {
        constraint.id = "k" + std::to_string(document.now.constraints.size());
        document.now.constraints.push_back(constraint);
    }
    EXPECT_THAT(document.output().notes, IsEmpty());
    const Document again = document.readAgain().document;
    ASSERT_EQ(again.constraints.size(), constraints.size());
    for (std::size_t i = 0; i < constraints.size(); ++i) {
        Constraint expected = constraints[i];
        expected.id = "c" + std::to_string(i);
        EXPECT_EQ(again.constraints[i], expected) << i;
    }
}

TEST(FcstdPatch, AMidpointGoesOutAsTheSymmetryOfTheEnds) {
    PatchedDocument document(cornerSketch());
    document.now.entities.push_back({.id = "g2", .shape = PointShape{{5, 0}}});
    document.now.constraints.push_back(
        {.id = "k", .type = ConstraintType::midpoint, .refs = {{.entity = "g2"}, {.entity = "g0"}}});
    const Constraint again = document.readAgain().document.constraints.back();
    EXPECT_EQ(again.type, ConstraintType::symmetric);
    EXPECT_EQ(again.refs[2].entity, "g2");
}

TEST(FcstdPatch, WhatADocumentDoesNotHaveIsToldByName) {
    PatchedDocument document(cornerSketch());
    document.now.entities.push_back({.id = "p", .shape = RayShape{{0, 0}, {1, 0}}});
    document.now.constraints.push_back(
        {.id = "gap", .type = ConstraintType::distance, .refs = {{.entity = "g0"}, {.entity = "g1"}}, .value = 1.0});
    document.now.constraints.push_back(
        {.id = "middle", .type = ConstraintType::horizontal, .refs = {{"g0", PlaceKind::mid}, {"g1", PlaceKind::end}}});
    EXPECT_THAT(
        document.output().notes,
        ElementsAre("p, a ray, was left out", "gap, distance of a kind that the document does not have, was left out",
                    "middle, horizontal of a kind that the document does not have, was left out"));
}

TEST(FcstdPatch, WhatWasNotUnderstoodStaysAndFollowsTheNumbers) {
    SketchText sketch = cornerSketch();
    sketch.geometry.push_back(geometry("ArcOfHyperbola", "<ArcOfHyperbola MajorRadius=\"3.25\"/>"));
    sketch.constraints = {constrain({16, {1, 1, 1, 2, 2, 0}, "1.33"}), constrain({2, {0, 0, -2000, 0, -2000, 0}}),
                          constrain({16, {0, 1, 0, 2, 2, 0}, "1.5"})};
    sketch.expressions = {};
    PatchedDocument document(sketch);
    document.erase("g0");
    EXPECT_THAT(document.written(), HasSubstr("<ArcOfHyperbola MajorRadius=\"3.25\""));
    EXPECT_THAT(document.written(), HasSubstr("Type=\"16\" Value=\"1.33\" First=\"0\" FirstPos=\"1\" Second=\"0\" "
                                              "SecondPos=\"2\" Third=\"1\""));
    EXPECT_THAT(document.output().notes, ElementsAre("c2 went with what it was on"));
}

TEST(FcstdPatch, ANewDimensionMayHaveTheIdOfWhatWasNotUnderstood) {
    SketchText sketch = cornerSketch();
    sketch.constraints.push_back(constrain({16, {0, 2, 1, 1, 1, 0}, "1.25"}));
    sketch.expressions.push_back(
        "                        <Expression path=\"Constraints[6]\" expression=\".Constraints.width / 8\"/>\n");
    PatchedDocument document(sketch);
    document.now.constraints.push_back({.id = "c6",
                                        .type = ConstraintType::distance,
                                        .refs = {{.entity = "g0"}},
                                        .value = 10.0,
                                        .name = "reach",
                                        .formula = "c5 * 2"});
    EXPECT_THAT(document.written(),
                HasSubstr("<Expression path=\"Constraints[6]\" expression=\".Constraints.width / 8\""));
    EXPECT_THAT(document.written(),
                HasSubstr("<Expression path=\"Constraints.reach\" expression=\"Constraints[5] * 2\""));
    document.now.constraints.back().name = "";
    EXPECT_THAT(document.written(), HasSubstr("<Expression path=\"Constraints[7]\" expression=\"Constraints[5] * 2\""));
    EXPECT_THAT(document.output().notes, IsEmpty());
}

TEST(FcstdPatch, ACoincidenceThatATangencySaysAlreadyIsLeftOut) {
    PatchedDocument document(cornerSketch());
    document.now.entities.push_back({.id = "g2", .shape = ArcShape{{8, 5}, 2, 0, 1.5}});
    const Place end{"g1", PlaceKind::end}, start{"g2", PlaceKind::start};
    document.now.constraints.push_back({.id = "meets", .type = ConstraintType::coincident, .refs = {end, start}});
    document.now.constraints.push_back({.id = "smooth", .type = ConstraintType::tangent, .refs = {end, start}});
    const Document again = document.readAgain().document;
    ASSERT_EQ(again.constraints.size(), 7U);
    EXPECT_EQ(again.constraints.back().type, ConstraintType::tangent);
    EXPECT_THAT(document.output().notes, IsEmpty());
}

TEST(FcstdPatch, ABlockedRecordSaysSoAsLongAsItIs) {
    PatchedDocument document(cornerSketch());
    document.now.constraints.push_back({.id = "k", .type = ConstraintType::fixed, .refs = {{.entity = "g1"}}});
    EXPECT_THAT(document.written(), HasSubstr("geometryModeFlags=\"00000000000000000000000000000001\""));
    EXPECT_THAT(document.output().notes, ElementsAre("k, fixed, holds the ends of the line there as well"));
}

TEST(FcstdPatch, ALineWithBothEndsFixedIsABlockedOne) {
    PatchedDocument document(cornerSketch());
    for (const PlaceKind end : {PlaceKind::start, PlaceKind::end})
        document.now.constraints.push_back(
            {.id = end == PlaceKind::start ? "k" : "l", .type = ConstraintType::fixed, .refs = {{"g1", end}}});
    EXPECT_THAT(document.output().notes, IsEmpty());
    const Document again = document.readAgain().document;
    ASSERT_EQ(again.constraints.size(), 8U);
    EXPECT_EQ(again.constraints[6].refs, (std::vector<Place>{{"g1", PlaceKind::start}}));
    EXPECT_EQ(again.constraints[7].refs, (std::vector<Place>{{"g1", PlaceKind::end}}));
}

TEST(FcstdPatch, ABlockThatLosesAnEndIsTold) {
    SketchText sketch = cornerSketch();
    sketch.constraints.push_back(constrain({17, {1, 0, -2000, 0, -2000, 0}}));
    PatchedDocument document(sketch);
    document.remove("c6_end");
    EXPECT_THAT(document.output().notes,
                ElementsAre("c6, fixed of a kind that the document does not have, was left out"));
}

TEST(FcstdPatch, PointsThatMeetOnTheirMirrorLineAreCoincident) {
    SketchText sketch = cornerSketch();
    sketch.constraints = {};
    sketch.expressions = {};
    PatchedDocument document(sketch);
    document.now.entities.push_back({.id = "g2", .shape = LineShape{{0, 0}, {-10, 0}}});
    document.now.constraints.push_back(
        {.id = "k",
         .type = ConstraintType::symmetric,
         .refs = {{"g0", PlaceKind::start}, {"g2", PlaceKind::start}, {.entity = "y_axis"}}});
    const Document again = document.readAgain().document;
    ASSERT_EQ(again.constraints.size(), 1U);
    EXPECT_EQ(again.constraints[0].type, ConstraintType::coincident);
}

TEST(FcstdPatch, LabelsAndValuesOfOtherConstraintsStay) {
    PatchedDocument document(cornerSketch());
    document.constraint("c4").value = 12.0;
    document.constraint("c5").value = 6.0;
    EXPECT_THAT(document.written(), HasSubstr("Name=\"width\" Type=\"7\" Value=\"12.0\" First=\"0\" FirstPos=\"1\" "
                                              "Second=\"0\" SecondPos=\"2\" Third=\"-2000\" ThirdPos=\"0\" "
                                              "LabelDistance=\"12.5\""));
    EXPECT_THAT(document.written(), HasSubstr("expression=\".Constraints.width / 2\""));
}

}  // namespace
}  // namespace holdfast::formats
