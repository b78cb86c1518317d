// Faults that no file can hold, only a document made by a program.

#include "document/checks/DocumentCheck.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "document/text/DrawingError.h"

namespace holdfast::document {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string errorOf(const Document& document) {
    try {
        checkDocument(document, "made");
    } catch (const DrawingError& error) {
        return error.what();
    }
    return "no error";
}

Document documentOf(const Shape& shape) {
    Document document;
    document.entities.push_back({"g0", shape});
    return document;
}

TEST(DocumentCheck, RefusesNumbersThatAreNotFiniteInEveryShape) {
    const struct {
        Shape shape;
        const char* place;
    } rows[] = {
        {LineShape{{0, 0}, {kNaN, 0}}, "/entities/0/end/0"},
        {LineShape{{0, kInfinity}, {0, 0}}, "/entities/0/start/1"},
        {ArcShape{{0, 0}, kNaN, 0, 1}, "/entities/0/radius"},
        {ArcShape{{0, 0}, 1, 0, kInfinity}, "/entities/0/end_angle"},
        {CircleShape{{0, 0}, kInfinity}, "/entities/0/radius"},
        {EllipseShape{{0, 0}, {1, kNaN}, 1}, "/entities/0/major_axis/1"},
        {EllipseShape{{0, 0}, {1, 0}, kNaN}, "/entities/0/ratio"},
        {EllipticalArcShape{{0, 0}, {1, 0}, 1, kNaN, 1}, "/entities/0/start_param"},
        {SplineShape{1, false, {{0, 0}, {kNaN, 0}}, {0, 0, 1, 1}, {}}, "/entities/0/control/1/0"},
        {SplineShape{1, false, {{0, 0}, {1, 0}}, {0, 0, 1, kInfinity}, {}}, "/entities/0/knots/3"},
        {SplineShape{1, false, {{0, 0}, {1, 0}}, {0, 0, 1, 1}, {1, kNaN}}, "/entities/0/weights/1"},
        {PointShape{{kNaN, 0}}, "/entities/0/position/0"},
        {XlineShape{{0, 0}, {kInfinity, 0}}, "/entities/0/direction/0"},
        {RayShape{{0, kNaN}, {1, 0}}, "/entities/0/point/1"},
        {PolylineShape{{{0, 0}, {1, 0}}, {0, kNaN}, {0, 0}, false}, "/entities/0/bulges/1"},
        {PolylineShape{{{0, 0}, {1, kNaN}}, {0, 0}, {0, 0}, false}, "/entities/0/vertices/1/1"},
        {TextShape{.rotation = kNaN}, "/entities/0/rotation"},
        {TextShape{.height = kInfinity}, "/entities/0/height"},
    };
    for (const auto& row : rows)
        EXPECT_THAT(errorOf(documentOf(row.shape)),
                    testing::StartsWith(std::string("made: ") + row.place + ": found "));
}

TEST(DocumentCheck, RefusesADimensionWhoseValueIsNotFinite) {
    Document document = documentOf(CircleShape{{0, 0}, 1});
    document.constraints.push_back(
        {.id = "c0", .type = ConstraintType::radius, .refs = {{"g0", PlaceKind::whole, 0}}, .value = kNaN});
    EXPECT_EQ(errorOf(document),
              "made: /constraints/0/value: found a value that is not finite; expected a finite number");
}

TEST(DocumentCheck, RefusesAMeasuredRelation) {
    Document document = documentOf(LineShape{{0, 0}, {1, 0}});
    document.constraints.push_back({.id = "c0",
                                    .type = ConstraintType::horizontal,
                                    .refs = {{"g0", PlaceKind::whole, 0}},
                                    .value = std::nullopt,
                                    .driving = false});
    EXPECT_THAT(errorOf(document), testing::HasSubstr("/constraints/0/driving: found a measured constraint"));
}

TEST(DocumentCheck, LetsAnEmptyDocumentPass) {
    EXPECT_EQ(errorOf(Document()), "no error");
}

}  // namespace
}  // namespace holdfast::document
