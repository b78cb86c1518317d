#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "document/Names.h"
#include "formats/dxf/DxfPatch.h"
#include "formats/dxf/DxfReader.h"
#include "geometry/Angles.h"
#include "tests/formats/DxfLines.h"

namespace holdfast::formats {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Six lines, a circle, an arc, and a polyline of a straight and a bent segment.
const std::string kDrawn =
    "0 LINE\n10 0\n20 0\n11 40\n21 0\n"                                              // g0, along x
    "0 LINE\n10 40\n20 0\n11 40\n21 -30\n"                                           // g1, down
    "0 LINE\n10 0\n20 0\n11 30\n21 40\n"                                             // g2, slanted
    "0 CIRCLE\n10 100\n20 0\n40 5\n"                                                 // g3
    "0 ARC\n10 100\n20 50\n40 10\n50 0\n51 90\n"                                     // g4
    "0 LWPOLYLINE\n90 3\n70 0\n10 0\n20 100\n10 20\n20 100\n42 1\n10 20\n20 120\n";  // g5

std::string dimension(const std::string& groups) {
    return "0 DIMENSION\n8 0\n" + groups + "\n";
}

DxfDrawing readWith(const std::string& dimensions) {
    return readDxf(dxfFile(kDrawn + dimensions), "a.dxf");
}

std::vector<std::string> constraintsOf(const Document& document) {
    std::vector<std::string> told;
    for (const Constraint& constraint : document.constraints) {
        std::ostringstream text;
        text << constraint.id << " " << typeName(constraint.type);
        for (const Place& place : constraint.refs)
            text << " " << spokenPlace(place);
        const double value = *constraint.value;
        text << " " << (constraint.type == ConstraintType::angle ? inDegrees(value) : value);
        told.push_back(text.str() + (constraint.driving ? " driving" : ""));
    }
    return told;
}

struct Followed {
    const char *description, *groups, *constraint;
};

class FollowedDimension : public testing::TestWithParam<Followed> {};

TEST_P(FollowedDimension, IsOneOfTheDrawing) {
    const DxfDrawing drawing = readWith(dimension(GetParam().groups));
    EXPECT_THAT(constraintsOf(drawing.document), ElementsAre(GetParam().constraint));
    EXPECT_THAT(drawing.notUnderstood, IsEmpty());
    EXPECT_THAT(drawing.notMeasured, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Of, FollowedDimension,
    testing::Values(
        Followed{"a width", "70 0\n10 40\n20 9\n13 0\n23 0\n14 40\n24 0\n50 0", "c0 distance_x g0.start g0.end 40"},
        Followed{"a width from the right", "70 32\n10 0\n20 9\n13 40\n23 0\n14 0\n24 0\n50 180",
                 "c0 distance_x g0.start g0.end 40"},
        Followed{"a height between lines", "70 0\n10 50\n20 0\n13 30\n23 40\n14 40\n24 -30\n50 90",
                 "c0 distance_y g1.end g2.end 70"},
        Followed{"a length", "70 1\n10 0\n20 9\n13 0\n23 0\n14 30\n24 40", "c0 distance g2 50"},
        Followed{"a length along its own direction", "70 0\n10 0\n20 9\n13 30\n23 40\n14 0\n24 0\n50 53.13010235",
                 "c0 distance g2 50"},
        Followed{"centres", "70 1\n10 0\n20 0\n13 100\n23 0\n14 100\n24 50", "c0 distance g3.centre g4.centre 50"},
        Followed{"the middle of a line", "70 0\n10 0\n20 0\n13 20\n23 0\n14 100\n24 0\n50 0",
                 "c0 distance_x g0.mid g3.centre 80"},
        Followed{"an end over a line", "70 1\n10 0\n20 0\n13 30\n23 40\n14 30\n24 0", "c0 distance g2.end g0 40"},
        Followed{"an end over a line along its own axis", "70 0\n10 0\n20 0\n13 30\n23 0\n14 30\n24 40\n50 90",
                 "c0 distance g2.end g0 40"},
        Followed{"a middle over a segment", "70 1\n10 0\n20 0\n13 15\n23 20\n14 15\n24 100",
                 "c0 distance g2.mid g5.segment:0 80"},
        Followed{"six digits", "70 1\n10 0\n20 0\n13 0.00003\n23 0\n14 30.00003\n24 39.99997", "c0 distance g2 50"},
        Followed{"a segment", "70 1\n10 0\n20 0\n13 20\n23 100\n14 0\n24 100", "c0 distance g5.segment:0 20"},
        Followed{"a radius", "70 4\n10 100\n20 50\n15 110\n25 50", "c0 radius g4 10"},
        Followed{"a bent segment's radius", "70 4\n10 20\n20 110\n15 20\n25 120", "c0 radius g5.segment:1 10"},
        Followed{"a diameter", "70 3\n10 103\n20 4\n15 97\n25 -4", "c0 diameter g3 10"},
        Followed{"a right angle", "70 2\n13 0\n23 0\n14 40\n24 0\n15 40\n25 0\n10 40\n20 -30\n16 35\n26 -5",
                 "c0 angle g0.end g1 90"},
        Followed{"the angle beside it", "70 2\n13 0\n23 0\n14 40\n24 0\n15 40\n25 0\n10 40\n20 -30\n16 45\n26 -5",
                 "c0 angle g1 g0 90"},
        Followed{"a sharp angle", "70 2\n13 0\n23 0\n14 40\n24 0\n15 30\n25 40\n10 0\n20 0\n16 9\n26 5",
                 "c0 angle g0 g2 53.1301"},
        Followed{"a blunt angle", "70 2\n13 0\n23 0\n14 40\n24 0\n15 0\n25 0\n10 30\n20 40\n16 -1\n26 5",
                 "c0 angle g2 g0.end 126.87"},
        Followed{"an angle at a point", "70 5\n15 0\n25 0\n13 30\n23 40\n14 40\n24 0\n10 9\n20 5",
                 "c0 angle g0 g2 53.1301"},
        Followed{"an angle of more than half a turn", "70 5\n15 0\n25 0\n13 30\n23 40\n14 40\n24 0\n10 -9\n20 5",
                 "c0 angle g2 g0 306.87"},
        Followed{"an x", "70 70\n10 0\n20 0\n13 40\n23 -30\n14 45\n24 -35", "c0 distance_x g0.start g1.end 40"},
        Followed{"a y below the datum", "70 6\n10 0\n20 0\n13 40\n23 -30\n14 45\n24 -35",
                 "c0 distance_y g1.end g0.start 30"}),
    [](const auto& row) {
        std::string name = row.param.description;
        for (char& c : name)
            c = c == ' ' || c == '\'' ? '_' : c;
        return name;
    });

TEST(DxfDimension, IsSeenFromBelowAlongItsOwnAxes) {
    const DxfDrawing drawing =
        readWith(dimension("70 0\n13 0\n23 0\n14 30\n24 40\n50 126.86989765\n210 0\n220 0\n230 -1"));
    EXPECT_THAT(constraintsOf(drawing.document), ElementsAre("c0 distance g2 50"));
}

TEST(DxfDimension, IsToldWithItsReasonWhereItIsNotFollowed) {
    const std::string picture =
        "0 SECTION\n2 BLOCKS\n0 BLOCK\n2 *D1\n70 1\n10 0\n20 0\n0 LINE\n8 0\n10 0\n20 5\n11 9\n21 5\n0 ENDBLK\n"
        "0 ENDSEC\n0 SECTION\n2 ENTITIES\n";
    const auto notMeasured = [&](const std::string& groups) {
        const DxfDrawing drawing =
            readDxf(dxfLines(picture + kDrawn + dimension("2 *D1\n" + groups) + "0 ENDSEC\n0 EOF\n"), "a.dxf");
        EXPECT_THAT(drawing.document.constraints, IsEmpty());
        EXPECT_THAT(drawing.notUnderstood, IsEmpty());
        return drawing.notMeasured.size() == 1 ? drawing.notMeasured.front().what : "";
    };
    EXPECT_EQ(notMeasured("70 1\n13 30\n23 40\n14 29\n24 0"), "DIMENSION that stands on no ends, middles or centres")
        << "not at right angles";
    EXPECT_EQ(notMeasured("70 1\n13 45\n23 9\n14 45\n24 0"), "DIMENSION that stands on no ends, middles or centres")
        << "beside the line";
    EXPECT_EQ(notMeasured("70 0\n13 0\n23 1\n14 40\n24 0\n50 0"),
              "DIMENSION that stands on no ends, middles or centres");
    EXPECT_EQ(notMeasured("70 0\n13 0\n23 0\n14 40\n24 0\n50 90"), "DIMENSION of nothing");
    EXPECT_EQ(notMeasured("70 0\n13 0\n23 0\n14 40\n24 0\n50 30"),
              "DIMENSION in another direction than that of its points or of an axis");
    EXPECT_EQ(notMeasured("70 4\n10 100\n20 50\n15 111\n25 50"), "DIMENSION of a circle that is not there");
    EXPECT_EQ(notMeasured("70 2\n13 0\n23 0\n14 40\n24 0\n15 1\n25 0\n10 40\n20 -30\n16 35\n26 -5"),
              "DIMENSION of an angle between lines that are not there");
    EXPECT_EQ(notMeasured("70 6\n10 1\n20 0\n13 40\n23 0\n14 9\n24 9"),
              "DIMENSION of one coordinate between points in which nothing stands");
    EXPECT_EQ(notMeasured("70 6\n10 0\n20 0\n13 40\n23 0\n51 30"), "DIMENSION of one coordinate along another axis");
    EXPECT_EQ(notMeasured("70 6\n10 0\n20 0\n13 40\n23 0"), "DIMENSION of nothing");
}

TEST(DxfDimension, WithoutAPictureIsToldWhereItStandsOnNothing) {
    const DxfDrawing drawing = readWith(dimension("70 0\n13 7\n23 7\n14 9\n24 9") + dimension("70 0\n13 x\n23 7"));
    EXPECT_THAT(drawing.notUnderstood, ElementsAre(DxfNotice{"DIMENSION without a picture of it", 2}));
}

TEST(DxfDimension, OfAnArcMeasuresItsLength) {
    const auto told = [](const std::string& groups) {
        const DxfDrawing drawing = readWith("0 ARC_DIMENSION\n8 0\n70 8\n" + groups + "\n");
        return drawing.document.constraints.empty() ? "nothing" : constraintsOf(drawing.document).front();
    };
    EXPECT_EQ(told("10 108\n20 58\n13 110\n23 50\n14 100\n24 60\n15 100\n25 50"), "c0 distance g4 15.708");
    EXPECT_EQ(told("10 108\n20 58\n13 100\n23 60\n14 110\n24 50\n15 100\n25 50"), "c0 distance g4 15.708");
    EXPECT_EQ(told("10 35\n20 110\n13 20\n23 100\n14 20\n24 120\n15 20\n25 110"), "c0 distance g5.segment:1 31.4159");
    EXPECT_EQ(told("10 92\n20 42\n13 110\n23 50\n14 100\n24 60\n15 100\n25 50"), "nothing") << "the rest of the circle";
    EXPECT_EQ(told("10 108\n20 58\n13 110\n23 50\n14 107\n24 57\n15 100\n25 50"), "nothing") << "a part of it";
}

/// A file with one dimension, and what it is after a change of its drawing.
class PatchedDimension {
public:
    explicit PatchedDimension(const std::string& groups, const std::string& record = "DIMENSION")
        : m_text(dxfFile(kDrawn + "0 " + record + "\n8 0\n" + groups + "\n")),
          m_read(readDxf(m_text, "a.dxf")),
          now(m_read.document) {}

    DxfOutput output() const { return patchedDxf(m_text, m_read.layout, m_read.document, now); }
    std::string text() const { return m_text; }
    /// The groups of the dimension that are others.
    std::vector<std::string> changed() const {
        const std::string after = output().text;
        std::vector<std::string> values;
        std::istringstream before(m_text.substr(m_text.find("DIMENSION"))), is(after.substr(after.find("DIMENSION")));
        std::string code, was, value;
        for (std::getline(before, was), std::getline(is, value);
             std::getline(before, code) && std::getline(is, code);) {
            std::getline(before, was);
            std::getline(is, value);
            if (was != value)
                values.push_back(code + " " + value);
        }
        return values;
    }

private:
    std::string m_text;
    DxfDrawing m_read;

public:
    Document now;
};

TEST(DxfDimension, StaysToTheByteWhereNothingUnderItHasMoved) {
    PatchedDimension file("70 1\n13 0.00003\n23 0\n14 30\n24 40\n42 50");
    EXPECT_EQ(file.output().text, file.text());
    std::get<CircleShape>(file.now.entities.at(3).shape).radius = 6;
    EXPECT_THAT(file.changed(), IsEmpty());
    EXPECT_EQ(file.output().lostConstraints, 0u);
}

TEST(DxfDimension, FollowsThePointsThatItStandsOn) {
    PatchedDimension file("70 1\n10 1\n20 2\n13 0\n23 0\n14 30\n24 40\n42 50");
    std::get<LineShape>(file.now.entities.at(2).shape).end = {60, 80};
    file.now.constraints.at(0).value = 100;
    EXPECT_THAT(file.changed(), ElementsAre("14 60", "24 80", "42 100"));
    EXPECT_THAT(file.output().left, IsEmpty());
}

TEST(DxfDimension, OfAnArcTurnsWithItsEnds) {
    PatchedDimension file(
        "70 8\n10 108\n20 58\n13 110\n23 50\n14 100\n24 60\n15 100\n25 50\n40 0\n41 1.57079633\n42 15.70796327",
        "ARC_DIMENSION");
    std::get<ArcShape>(file.now.entities.at(4).shape).endAngle = kPi;
    file.now.constraints.at(0).value = 10 * kPi;
    EXPECT_THAT(file.changed(),
                ElementsAre("14 90", "24 50", testing::StartsWith("41 3.14159"), testing::StartsWith("42 31.4159")));
}

TEST(DxfDimension, OfALineKeepsAtRightAnglesToIt) {
    PatchedDimension file("70 1\n10 1\n20 2\n13 30\n23 40\n14 30\n24 0\n42 40");
    std::get<LineShape>(file.now.entities.at(2).shape).end = {20, 50};
    file.now.constraints.at(0).value = 50;
    EXPECT_THAT(file.changed(), ElementsAre("13 20", "23 50", "14 20", "42 50"));
    std::get<LineShape>(file.now.entities.at(0).shape) = {{0, 0}, {0, -40}};
    file.now.constraints.at(0).value = 20;
    EXPECT_THAT(file.changed(), ElementsAre("13 20", "23 50", "14 0", "24 50", "42 20"));
}

TEST(DxfDimension, OfACircleKeepsItsDirection) {
    PatchedDimension file("70 3\n10 103\n20 4\n15 97\n25 -4\n42 10");
    std::get<CircleShape>(file.now.entities.at(3).shape) = {{200, 0}, 10};
    file.now.constraints.at(0).value = 20;
    EXPECT_THAT(file.changed(), ElementsAre("10 206", "20 8", "15 194", "25 -8", "42 20"));
}

TEST(DxfDimension, OfAnAngleKeepsItsPlacesOnTheLines) {
    PatchedDimension file("70 2\n13 0\n23 0\n14 10\n24 0\n15 30\n25 40\n10 0\n20 0\n16 9\n26 5\n42 53.13010235");
    std::get<LineShape>(file.now.entities.at(0).shape).end = {0, -40};
    file.now.constraints.at(0).value = *file.now.constraints.at(0).value + kPi / 2;
    EXPECT_THAT(file.changed(), ElementsAre("14 0", "24 -10", testing::StartsWith("42 143.1301")));
}

TEST(DxfDimension, StaysAndIsToldWhereWhatItStoodOnIsGone) {
    PatchedDimension file("70 1\n13 0\n23 0\n14 30\n24 40");
    file.now.entities.erase(file.now.entities.begin() + 2);
    file.now.constraints.clear();
    EXPECT_THAT(file.changed(), IsEmpty());
    EXPECT_THAT(file.output().left, ElementsAre("c0"));
}

TEST(DxfDimension, ThatDrivesIsLostAsADrivingOne) {
    PatchedDimension file("70 1\n13 0\n23 0\n14 30\n24 40");
    file.now.constraints.at(0).driving = true;
    EXPECT_EQ(file.output().text, file.text());
    EXPECT_EQ(file.output().lostConstraints, 1u);
}

TEST(DxfDimension, GoesOnAlongAPieceThatHasTakenItOver) {
    PatchedDimension file("70 0\n13 30\n23 40\n14 40\n24 -30\n50 90");
    file.now.entities.push_back({.id = "g2_2", .shape = LineShape{{15, 20}, {31, 40}}});
    std::get<LineShape>(file.now.entities.at(2).shape).end = {6, 8};
    file.now.constraints.at(0).refs.at(1) = {"g2_2", PlaceKind::end};
    EXPECT_EQ(file.changed().front(), "13 31");  // behind it, the piece
}

}  // namespace
}  // namespace holdfast::formats
