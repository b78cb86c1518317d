#include "document/Names.h"

#include <gtest/gtest.h>

namespace holdfast::document {
namespace {

TEST(Names, OfEntitiesFollowTheirShapes) {
    EXPECT_EQ(typeName(Shape(LineShape())), "line");
    EXPECT_EQ(typeName(Shape(EllipticalArcShape())), "elliptical_arc");
    EXPECT_EQ(typeName(Shape(PolylineShape())), "polyline");
    EXPECT_EQ(typeName(Shape(TextShape())), "text");
    EXPECT_EQ(typeName(Shape(TextShape{.multiline = true})), "mtext");
}

TEST(Names, OfConstraintsAreSpeltAsInFiles) {
    const struct {
        ConstraintType type;
        const char* name;
    } rows[] = {
        {ConstraintType::coincident, "coincident"},
        {ConstraintType::concentric, "concentric"},
        {ConstraintType::pointOnCurve, "point_on_curve"},
        {ConstraintType::fixed, "fixed"},
        {ConstraintType::horizontal, "horizontal"},
        {ConstraintType::vertical, "vertical"},
        {ConstraintType::parallel, "parallel"},
        {ConstraintType::perpendicular, "perpendicular"},
        {ConstraintType::collinear, "collinear"},
        {ConstraintType::tangent, "tangent"},
        {ConstraintType::equal, "equal"},
        {ConstraintType::symmetric, "symmetric"},
        {ConstraintType::midpoint, "midpoint"},
        {ConstraintType::internal, "internal"},
        {ConstraintType::g2Smooth, "g2_smooth"},
        {ConstraintType::composite, "composite"},
        {ConstraintType::distance, "distance"},
        {ConstraintType::distanceX, "distance_x"},
        {ConstraintType::distanceY, "distance_y"},
        {ConstraintType::radius, "radius"},
        {ConstraintType::diameter, "diameter"},
        {ConstraintType::angle, "angle"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(typeName(row.type), row.name);
        EXPECT_EQ(constraintTypeNamed(row.name), row.type);
    }
    EXPECT_EQ(std::size(rows), constraintTypeNames().size());
    EXPECT_FALSE(constraintTypeNamed("Horizontal"));
}

TEST(Names, OfPlacesReadBackAsTheyWereWritten) {
    const struct {
        Place place;
        const char* text;
    } rows[] = {
        {{"", PlaceKind::whole, 0}, "whole"},
        {{"", PlaceKind::start, 0}, "start"},
        {{"", PlaceKind::end, 0}, "end"},
        {{"", PlaceKind::centre, 0}, "centre"},
        {{"", PlaceKind::mid, 0}, "mid"},
        {{"", PlaceKind::control, 12}, "control:12"},
        {{"", PlaceKind::segment, 0}, "segment:0"},
        {{"", PlaceKind::segmentStart, 3}, "segment:3.start"},
        {{"", PlaceKind::segmentEnd, 3}, "segment:3.end"},
        {{"", PlaceKind::segmentMid, 3}, "segment:3.mid"},
        {{"", PlaceKind::segmentCentre, 3}, "segment:3.centre"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(placeText(row.place), row.text);
        EXPECT_EQ(parsePlace(row.text), row.place);
    }
}

TEST(Names, OfPlacesAreRefusedWhenTheyAreNotSpeltAsWritten) {
    for (const char* text :
         {"", "Whole", "whole ", "control", "control:", "control:01", "control:-1", "control:1x", "control:99999999999",
          "segment:", "segment:.start", "segment:1.middle", "segment:1.", "segment:1.start.end", "start:1"})
        EXPECT_FALSE(parsePlace(text)) << text;
}

TEST(Names, OfPlacesAreSpokenWithTheirEntity) {
    EXPECT_EQ(spokenPlace({"g3", PlaceKind::whole, 0}), "g3");
    EXPECT_EQ(spokenPlace({"p1", PlaceKind::segmentEnd, 2}), "p1.segment:2.end");
}

}  // namespace
}  // namespace holdfast::document
