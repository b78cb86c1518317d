#include "formats/fcstd/FcstdReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "document/Names.h"
#include "document/text/DrawingError.h"
#include "geometry/Angles.h"
#include "tests/fcstd/Documents.h"

namespace holdfast::formats {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

FcstdDrawing drawingOf(const SketchText& sketch) {
    return readFcstd(documentOf(sketch), "Sketch", "part.FCStd");
}

const Entity& entityOf(const FcstdDrawing& drawing, const std::string& id) {
    const auto& all = drawing.document.entities;
    const auto found = std::find_if(all.begin(), all.end(), [&](const Entity& each) { return each.id == id; });
    EXPECT_NE(found, all.end()) << id;
    return *found;
}

template <class Kind>
Kind shapeOf(const FcstdDrawing& drawing, const std::string& id) {
    return std::get<Kind>(entityOf(drawing, id).shape);
}

/// "distance_x g0.start g0.end 10": what a constraint says, in a line.
std::string said(const Constraint& constraint) {
    std::string text(typeName(constraint.type));
    for (const Place& place : constraint.refs)
        text += " " + spokenPlace(place);
    return text;
}

std::vector<std::string> allSaid(const FcstdDrawing& drawing) {
    std::vector<std::string> all;
    for (const Constraint& constraint : drawing.document.constraints)
        all.push_back(said(constraint));
    return all;
}

FcstdDrawing drawingWith(const std::string& record) {
    SketchText sketch;
    sketch.geometry = {record};
    return drawingOf(sketch);
}

/// Two lines, an arc, a circle and a point, with one constraint.
FcstdDrawing constrainedBy(const Constrain& constraint) {
    SketchText sketch;
    const std::string flat = "NormalX=\"0\" NormalY=\"0\" NormalZ=\"1\" AngleXU=\"0\" ";
    sketch.geometry = {
        lineGeometry("0", "0", "10", "0"), lineGeometry("10", "0", "10", "5"),
        geometry("ArcOfCircle", "<ArcOfCircle CenterX=\"5\" CenterY=\"5\" CenterZ=\"0\" " + flat +
                                    "Radius=\"2\" StartAngle=\"0\" EndAngle=\"2\"/>"),
        geometry("Circle", "<Circle CenterX=\"1\" CenterY=\"2\" CenterZ=\"0\" " + flat + "Radius=\"3\"/>"),
        geometry("Point", "<GeomPoint X=\"4\" Y=\"6\" Z=\"0\"/>")};
    sketch.constraints = {constrain(constraint)};
    return drawingOf(sketch);
}

TEST(FcstdSketches, AreListedByNameAndLabel) {
    SketchText second = cornerSketch();
    second.name = "Sketch001";
    second.label = "H\xC3\xB6lzer &amp; more";
    const std::vector<FcstdSketchName> found =
        sketchesInFcstd(archiveOf(documentText({cornerSketch(), second})), "part.FCStd");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].name, "Sketch");
    EXPECT_EQ(found[0].label, "Outline");
    EXPECT_EQ(found[1].name, "Sketch001");
    EXPECT_EQ(found[1].label, "H\xC3\xB6lzer & more");
}

TEST(FcstdSketches, AreReadByLabelWhereOneHasIt) {
    EXPECT_EQ(readFcstd(documentOf(cornerSketch()), "Outline", "part.FCStd").document.constraints.size(), 6U);
}

TEST(FcstdSketches, NamesThatNoneHasAreRefusedWithThoseThatThereAre) {
    try {
        readFcstd(documentOf(cornerSketch()), "Sketsch", "part.FCStd");
        FAIL() << "read";
    } catch (const DrawingError& error) {
        EXPECT_THAT(error.what(), HasSubstr("no sketch called \"Sketsch\""));
        EXPECT_THAT(error.what(), HasSubstr("did you mean \"Sketch\"?"));
    }
}

TEST(FcstdReader, ReadsACornerWithItsConstraintsNamesAndFormula) {
    const FcstdDrawing drawing = drawingOf(cornerSketch());
    EXPECT_EQ(drawing.document.name, "Outline");
    EXPECT_THAT(drawing.notUnderstood, IsEmpty());
    EXPECT_EQ(shapeOf<LineShape>(drawing, "g1"), (LineShape{{10, 0}, {10, 5}}));
    EXPECT_THAT(allSaid(drawing),
                ElementsAre("coincident g0.start origin", "coincident g0.end g1.start", "horizontal g0", "vertical g1",
                            "distance_x g0.start g0.end", "distance g1"));
    EXPECT_EQ(drawing.document.constraints[4].name, "width");
    EXPECT_EQ(drawing.document.constraints[4].value, 10.0);
    EXPECT_EQ(drawing.document.constraints[5].formula, "width / 2");
}

TEST(FcstdReader, HasOriginAndAxesAsFixedEntities) {
    const FcstdDrawing drawing = drawingOf(cornerSketch());
    for (const char* name : {"origin", "x_axis", "y_axis"})
        EXPECT_TRUE(entityOf(drawing, name).fixed) << name;
    EXPECT_EQ(shapeOf<XlineShape>(drawing, "y_axis").direction, (Vec2{0, 1}));
}

TEST(FcstdReader, ReadsConstructionOfNewAndOldDocuments) {
    SketchText sketch;
    const std::string old =
        "<Geometry type=\"Part::GeomPoint\"><Construction value=\"1\"/><GeomPoint X=\"1\" Y=\"2\" "
        "Z=\"0\"/></Geometry>\n";
    sketch.geometry = {lineGeometry("0", "0", "1", "0", true), lineGeometry("0", "0", "0", "1"), old};
    const FcstdDrawing drawing = drawingOf(sketch);
    EXPECT_TRUE(entityOf(drawing, "g0").construction);
    EXPECT_FALSE(entityOf(drawing, "g1").construction);
    EXPECT_TRUE(entityOf(drawing, "g2").construction);
}

TEST(FcstdArc, CountsItsAnglesFromAnAxisThatIsTurned) {
    const FcstdDrawing drawing = drawingWith(
        geometry("ArcOfCircle",
                 "<ArcOfCircle CenterX=\"1\" CenterY=\"2\" CenterZ=\"0\" NormalX=\"0\" NormalY=\"0\" NormalZ=\"1\" "
                 "AngleXU=\"0.5\" Radius=\"3\" StartAngle=\"0.25\" EndAngle=\"1\"/>"));
    const auto arc = shapeOf<ArcShape>(drawing, "g0");
    EXPECT_DOUBLE_EQ(arc.startAngle, 0.75);
    EXPECT_DOUBLE_EQ(arc.endAngle, 1.5);
}

TEST(FcstdArc, SeenFromBelowRunsTheOtherWay) {
    const FcstdDrawing drawing = drawingWith(
        geometry("ArcOfCircle",
                 "<ArcOfCircle CenterX=\"0\" CenterY=\"0\" CenterZ=\"0\" NormalX=\"0\" NormalY=\"0\" NormalZ=\"-1\" "
                 "AngleXU=\"0\" Radius=\"1\" StartAngle=\"0.5\" EndAngle=\"1\"/>"));
    const auto arc = shapeOf<ArcShape>(drawing, "g0");
    EXPECT_DOUBLE_EQ(arc.startAngle, kPi - 1.0);
    EXPECT_DOUBLE_EQ(arc.endAngle, kPi - 0.5);
}

TEST(FcstdEllipse, HasItsMajorAxisWhereItIsTurnedTo) {
    const FcstdDrawing drawing = drawingWith(
        geometry("ArcOfEllipse",
                 "<ArcOfEllipse CenterX=\"1\" CenterY=\"2\" CenterZ=\"0\" NormalX=\"0\" NormalY=\"0\" NormalZ=\"1\" "
                 "MajorRadius=\"4\" MinorRadius=\"1\" AngleXU=\"1.5707963267948966\" StartAngle=\"0\" "
                 "EndAngle=\"1\"/>"));
    const auto arc = shapeOf<EllipticalArcShape>(drawing, "g0");
    EXPECT_NEAR(arc.majorAxis.x, 0.0, 1e-15);
    EXPECT_DOUBLE_EQ(arc.majorAxis.y, 4.0);
    EXPECT_DOUBLE_EQ(arc.ratio, 0.25);
    EXPECT_DOUBLE_EQ(arc.endParam, 1.0);
}

std::string splineRecord() {
    std::string poles;
    for (const char* pole : {"X=\"0\" Y=\"0\"", "X=\"1\" Y=\"2\"", "X=\"3\" Y=\"2\"", "X=\"4\" Y=\"0\""})
        poles += std::string("<Pole ") + pole + " Z=\"0\" Weight=\"1\"/>";
    return geometry("BSplineCurve", "<BSplineCurve PolesCount=\"4\" KnotsCount=\"2\" Degree=\"3\" IsPeriodic=\"0\">" +
                                        poles +
                                        "<Knot Value=\"0\" Mult=\"4\"/><Knot Value=\"1\" Mult=\"4\"/></BSplineCurve>");
}

TEST(FcstdSpline, IsReadWithItsHelpersAsControlPoints) {
    SketchText sketch;
    const std::string circle =
        "<Circle CenterX=\"1\" CenterY=\"2\" CenterZ=\"0\" NormalX=\"0\" NormalY=\"0\" "
        "NormalZ=\"1\" AngleXU=\"0\" Radius=\"1\"/>";
    sketch.geometry = {splineRecord(), geometry("Circle", circle, true), lineGeometry("1", "2", "5", "5")};
    sketch.constraints = {
        constrain({15, {1, 3, 0, 0, -2000, 0}, "0", "", "InternalAlignmentType=\"9\" InternalAlignmentIndex=\"1\" "}),
        constrain({19, {1, 0, -2000, 0, -2000, 0}, "1"}), constrain({1, {1, 3, 2, 1, -2000, 0}})};
    const FcstdDrawing drawing = drawingOf(sketch);
    EXPECT_EQ(shapeOf<SplineShape>(drawing, "g0").knots.size(), 8U);
    EXPECT_TRUE(shapeOf<SplineShape>(drawing, "g0").weights.empty());
    EXPECT_THAT(allSaid(drawing), ElementsAre("coincident g0.control:1 g2.start"));
    EXPECT_THAT(drawing.notUnderstood, IsEmpty());
}

TEST(FcstdReader, SaysByNameWhatItDoesNotUnderstand) {
    SketchText sketch;
    sketch.geometry = {lineGeometry("0", "0", "1", "0"), geometry("ArcOfHyperbola", "<ArcOfHyperbola/>")};
    sketch.constraints = {constrain({16, {0, 1, 0, 2, 0, 0}}), constrain({2, {1, 0, -2000, 0, -2000, 0}}),
                          constrain({13, {0, 1, -4, 0, -2000, 0}})};
    sketch.expressions = {"<Expression path=\"Placement.Base.x\" expression=\"3\"/>"};
    EXPECT_THAT(drawingOf(sketch).notUnderstood,
                ElementsAre("g1 (ArcOfHyperbola)", "c0 (SnellsLaw)", "c1 (Horizontal)",
                            "c2 (PointOnObject with outside geometry, which the document does not hold)"));
}

TEST(FcstdOutside, PointsAreWhereWhatCoincidesWithThemIs) {
    SketchText sketch = cornerSketch();
    sketch.constraints = {constrain({1, {-3, 2, 0, 2, -2000, 0}}), constrain({6, {-3, 2, 1, 2, -2000, 0}, "5"})};
    const FcstdDrawing drawing = drawingOf(sketch);
    EXPECT_EQ(shapeOf<PointShape>(drawing, "x0_end").position, (Vec2{10, 0}));
    EXPECT_TRUE(entityOf(drawing, "x0_end").fixed);
    EXPECT_THAT(allSaid(drawing), ElementsAre("coincident x0_end g0.end", "distance x0_end g1.end"));
}

TEST(FcstdOutside, GeometryThatTheDocumentHoldsIsFixed) {
    SketchText sketch = cornerSketch();
    sketch.constraints = {constrain({13, {1, 2, -3, 0, -2000, 0}})};
    const std::string axis = lineGeometry("0", "0", "1", "0");
    sketch.more = "                <Property name=\"ExternalGeo\" type=\"Part::PropertyGeometryList\">\n" +
                  listText("GeometryList", {axis, axis, lineGeometry("0", "5", "20", "5")}) +
                  "                </Property>\n";
    const FcstdDrawing drawing = drawingOf(sketch);
    EXPECT_EQ(shapeOf<LineShape>(drawing, "x0"), (LineShape{{0, 5}, {20, 5}}));
    EXPECT_THAT(allSaid(drawing), ElementsAre("point_on_curve g1.end x0"));
}

TEST(FcstdConstraints, OfEachKindAreWhatTheyMean) {
    const struct {
        Constrain record;
        const char* meaning;
    } cases[] = {
        {{1, {0, 2, 1, 1, -2000, 0}}, "coincident g0.end g1.start"},
        {{1, {2, 3, 3, 3, -2000, 0}}, "concentric g2.centre g3.centre"},
        {{2, {0, 1, 1, 2, -2000, 0}}, "horizontal g0.start g1.end"},
        {{3, {1, 0, -2000, 0, -2000, 0}}, "vertical g1"},
        {{4, {0, 0, -2, 0, -2000, 0}}, "parallel g0 y_axis"},
        {{5, {0, 0, 1, 0, -2000, 0}}, "collinear g0 g1"},
        {{5, {0, 0, 2, 0, -2000, 0}}, "tangent g0 g2"},
        {{5, {1, 2, 2, 1, -2000, 0}, "1.5"}, "tangent g1.end g2.start"},
        {{5, {1, 2, 3, 0, -2000, 0}}, "tangent g1.end g3"},
        {{5, {0, 0, 2, 0, 4, 1}}, "tangent g0 g2 g4"},
        {{6, {0, 0, -2000, 0, -2000, 0}, "10"}, "distance g0"},
        {{6, {4, 1, 0, 0, -2000, 0}, "6"}, "distance g4 g0"},
        {{7, {4, 1, -2000, 0, -2000, 0}, "4"}, "distance_x origin g4"},
        {{8, {1, 0, -2000, 0, -2000, 0}, "5"}, "distance_y g1.start g1.end"},
        {{9, {0, 0, -2000, 0, -2000, 0}, "0"}, "angle g0"},
        {{9, {0, 2, 1, 1, -2000, 0}, "1.5"}, "angle g0.end g1.start"},
        {{9, {-1, 0, 1, 0, -2000, 0}, "1.5"}, "angle x_axis g1"},
        {{10, {0, 0, 1, 0, -2000, 0}}, "perpendicular g0 g1"},
        {{11, {2, 0, -2000, 0, -2000, 0}, "2"}, "radius g2"},
        {{12, {2, 0, 3, 0, -2000, 0}}, "equal g2 g3"},
        {{13, {4, 1, 3, 0, -2000, 0}}, "point_on_curve g4 g3"},
        {{14, {0, 1, 0, 2, 4, 1}}, "symmetric g0.start g0.end g4"},
        {{14, {0, 1, 1, 2, -2, 0}}, "symmetric g0.start g1.end y_axis"},
        {{17, {3, 0, -2000, 0, -2000, 0}}, "fixed g3"},
        {{18, {3, 0, -2000, 0, -2000, 0}, "6"}, "diameter g3"},
    };
    for (const auto& each : cases)
        EXPECT_THAT(allSaid(constrainedBy(each.record)), ElementsAre(each.meaning));
}

TEST(FcstdConstraints, ThatMeasureOrAreSwitchedOffAreReadSo) {
    EXPECT_FALSE(
        constrainedBy({11, {2, 0, -2000, 0, -2000, 0}, "2", "", "IsDriving=\"0\" "}).document.constraints[0].driving);
    EXPECT_FALSE(
        constrainedBy({3, {1, 0, -2000, 0, -2000, 0}, "0", "", "IsActive=\"0\" "}).document.constraints[0].active);
}

TEST(FcstdExpression, ThatNoFormulaSaysIsToldAndItsValueStays) {
    SketchText sketch = cornerSketch();
    for (const char* text :
         {"Spreadsheet.width / 2", "width > 3 ? 1 : 2", "Constraints.width % 3", "Constraints.width"}) {
        sketch.expressions = {std::string("<Expression path=\"Constraints[5]\" expression=\"") + text + "\"/>"};
        const FcstdDrawing drawing = drawingOf(sketch);
        EXPECT_THAT(drawing.notUnderstood, ElementsAre("the expression of c5")) << text;
        EXPECT_EQ(drawing.document.constraints[5].formula, "") << text;
        EXPECT_EQ(drawing.document.constraints[5].value, 5.0) << text;
    }
}

TEST(FcstdExpression, NamesItsOwnSketchInEachWay) {
    for (const char* text : {"Constraints.width / 2", ".Constraints[4] * 0.5", "Sketch.Constraints.width - 5 mm",
                             "&lt;&lt;Outline&gt;&gt;.Constraints.width - 0.5 cm", "max(2 mm; Constraints.width / 2)",
                             "Constraints.width * sin(30 deg)"}) {
        SketchText sketch = cornerSketch();
        sketch.expressions = {std::string("<Expression path=\".Constraints[5]\" expression=\"") + text + "\"/>"};
        const FcstdDrawing drawing = drawingOf(sketch);
        EXPECT_THAT(drawing.notUnderstood, IsEmpty()) << text;
        EXPECT_NE(drawing.document.constraints[5].formula, "") << text;
    }
}

}  // namespace
}  // namespace holdfast::formats
