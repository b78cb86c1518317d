#include <gtest/gtest.h>

#include <numbers>

#include <yxbase/YxSmartPtr.h>

#include "evaluation/EvaluationHeader.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "tests/hosting/Hosted.h"

namespace holdfast::hosting {
namespace {

using EntType = LvEvaDataConverterGripEdit::EntType;

/// One record of the palette, fed as its centre does.
struct Record {
    EntType type = EntType::kLine;
    int kind = 0;
    YxGeVector3d delta{};
    double value1 = 0.0;
    double value2 = 0.0;
    YxGeMatrix3d transform{};
};

bool change(Hosted& hosted, const char* name, const Record& record) {
    AssocConstraintHeader& header = hosted.header();
    setEditKind(header, EditKind::properties);
    header.editedObjectIds = hosted.ids({name});
    auto* copy = static_cast<YxDbEntity*>(hosted.drawing.entity(name).clone());
    header.adopt(copy);
    header.preEditEntities[hosted.drawing.id(name)] = copy;
    if (header.converter == nullptr)
        header.converter = LvEvaDataConverterFactory::createInstance(kPropertiesEditor);
    static_cast<LvEvaDataConverterPropertiesEdit*>(header.converter)
        ->collectAndUpdateInfo(hosted.drawing.id(name), record.type, record.kind, record.delta, record.value1,
                               record.value2, record.transform);
    hosted.markChanged();
    return hosted.evaluate();
}

YxGeMatrix3d turn(double angle) {
    YxGeMatrix3d matrix;
    matrix.setToRotation(angle, YxGeVector3d::kZAxis, {0, 0, 0});
    return matrix;
}

struct Row {
    const char* what;
    Shape before;
    Record record;
    Shape after;
};

constexpr double kRight = std::numbers::pi / 2;

std::vector<Row> rows() {
    const ArcShape arc{{1, 1}, 5, 0, kRight};
    const EllipticalArcShape part{{1, 1}, {6, 0}, 0.5, 0, kRight};
    const PolylineShape bent{{{0, 0}, {4, 0}, {8, 4}}, {0.5, 0, 0}, {1, 2, 3}, false};
    const SplineShape spline{2, false, {{0, 0}, {2, 5}, {6, 4}}, {0, 0, 0, 1, 1, 1}, {}};
    return {
        {"start of a line", LineShape{{0, 0}, {5, 0}}, {EntType::kLine, 0, {1, 2, 0}}, LineShape{{1, 2}, {5, 0}}},
        {"end of a line", LineShape{{0, 0}, {5, 0}}, {EntType::kLine, 1, {1, 2, 0}}, LineShape{{0, 0}, {6, 2}}},
        {"vertex of a polyline",
         bent,
         {EntType::kPolyline, 1, {0, 1, 0}},
         PolylineShape{{{0, 0}, {4, 1}, {8, 4}}, {0.5, 0, 0}, {1, 2, 3}, false}},
        {"base of a ray", RayShape{{0, 0}, {1, 0}}, {EntType::kRay, 0, {1, 2, 0}}, RayShape{{1, 2}, {1, 0}}},
        {"direction of a construction line",
         XlineShape{{3, 0}, {1, 0}},
         {EntType::kXline, 1, {}, 0, 0, turn(kRight)},
         XlineShape{{3, 0}, {0, 1}}},
        {"centre of a circle", CircleShape{{0, 0}, 4}, {EntType::kCircle, 0, {1, 2, 0}}, CircleShape{{1, 2}, 4}},
        {"radius of a circle", CircleShape{{0, 0}, 4}, {EntType::kCircle, 1, {}, 7}, CircleShape{{0, 0}, 7}},
        {"centre of an arc", arc, {EntType::kArc, 0, {1, 2, 0}}, ArcShape{{2, 3}, 5, 0, kRight}},
        {"start of an arc", arc, {EntType::kArc, 1, {-5, -5, 0}}, ArcShape{{1, 1}, 5, -kRight, kRight}},
        {"end of an arc", arc, {EntType::kArc, 2, {-5, -5, 0}}, ArcShape{{1, 1}, 5, 0, 2 * kRight}},
        {"radius of an arc", arc, {EntType::kArc, 3, {}, 7}, ArcShape{{1, 1}, 7, 0, kRight}},
        {"centre of an ellipse",
         EllipseShape{{0, 0}, {6, 0}, 0.5},
         {EntType::kEllipse, 0, {1, 2, 0}},
         EllipseShape{{1, 2}, {6, 0}, 0.5}},
        {"major radius", part, {EntType::kEllipse, 1, {}, 12}, EllipticalArcShape{{1, 1}, {12, 0}, 0.25, 0, kRight}},
        {"minor radius", part, {EntType::kEllipse, 2, {}, 0, 6}, EllipticalArcShape{{1, 1}, {6, 0}, 1.0, 0, kRight}},
        {"end of an elliptical arc",
         part,
         {EntType::kEllipse, 4, {-6, -3, 0}},
         EllipticalArcShape{{1, 1}, {6, 0}, 0.5, 0, 2 * kRight}},
        {"position of a point", PointShape{{0, 0}}, {EntType::kPoint, 0, {1, 2, 0}}, PointShape{{1, 2}}},
        {"position of a text",
         TextShape{{0, 0}, 0.5, 2.5, "t", false},
         {EntType::kText, 0, {1, 2, 0}},
         TextShape{{1, 2}, 0.5, 2.5, "t", false}},
        {"rotation of a text",
         TextShape{{0, 0}, 0.5, 2.5, "t", true},
         {EntType::kMText, 7, {}, 0, 0, turn(1)},
         TextShape{{0, 0}, 1.5, 2.5, "t", true}},
        {"control point of a spline",
         spline,
         {EntType::kSpline, 1, {1, 1, 0}, 1.0},
         SplineShape{2, false, {{0, 0}, {3, 6}, {6, 4}}, {0, 0, 0, 1, 1, 1}, {}}},
    };
}

TEST(EvaluatedProperty, IsTheUsersAndLeavesTheRestOfAFreeEntity) {
    for (const Row& row : rows()) {
        Document document;
        document.entities = {entity("e", row.before)};
        Hosted hosted(document);
        EXPECT_TRUE(change(hosted, "e", row.record)) << row.what;
        const std::vector<double> is = parametersOf(hosted.drawing.shape("e")), wanted = parametersOf(row.after);
        ASSERT_EQ(is.size(), wanted.size()) << row.what;
        for (std::size_t i = 0; i < is.size(); ++i)
            EXPECT_NEAR(is[i], wanted[i], 1e-8) << row.what << ", value " << i;
    }
}

TEST(EvaluatedProperty, MovesTheStartOfAnArcSeenFromBelowWhereTheHostHasIt) {
    Document document;
    document.entities = {entity("arc", ArcShape{{0, 0}, 5, 0, kRight})};
    Hosted hosted(document);
    YxGeMatrix3d mirror;
    mirror.entry[0][0] = -1.0;
    YxSmartPtr<YxDbEntity>(YxDbObjectIdImpl::openObject(hosted.drawing.id("arc"), YxDb::kForWrite, false))
        ->transformBy(mirror);
    EXPECT_TRUE(change(hosted, "arc", {EntType::kArc, 1, {5, -5, 0}}));  // from (-5, 0) to (0, -5)
    const auto arc = hosted.as<ArcShape>("arc");
    EXPECT_TRUE(isNear(arc.centre, {0, 0}));
    EXPECT_NEAR(arc.startAngle, kRight, 1e-9);
    EXPECT_NEAR(arc.endAngle, 3 * kRight, 1e-9);
}

TEST(EvaluatedProperty, MovesATangentLineWithTheCircle) {
    Document document;
    document.entities = {entity("c", CircleShape{{0, 0}, 4}), entity("l", LineShape{{-5, 4}, {5, 4}})};
    document.constraints = {constraint("touch", ConstraintType::tangent, {{"l"}, {"c"}}),
                            constraint("level", ConstraintType::horizontal, {{"l"}})};
    Hosted hosted(document);
    EXPECT_TRUE(change(hosted, "c", {EntType::kCircle, 1, {}, 6}));
    EXPECT_EQ(hosted.as<CircleShape>("c"), (CircleShape{{0, 0}, 6}));
    EXPECT_TRUE(isNear(hosted.line("l").start, {-5, 6}));
}

TEST(EvaluatedProperty, MovesTheCentreWhereTheNeighbourCannot) {
    Document document;
    document.entities = {entity("c", CircleShape{{0, 0}, 4}), entity("l", LineShape{{-5, 4}, {5, 4}})};
    document.entities[1].fixed = true;
    document.constraints = {constraint("touch", ConstraintType::tangent, {{"l"}, {"c"}})};
    Hosted hosted(document);
    EXPECT_TRUE(change(hosted, "c", {EntType::kCircle, 1, {}, 6}));
    EXPECT_NEAR(hosted.as<CircleShape>("c").radius, 6, 1e-9);
    EXPECT_NEAR(hosted.as<CircleShape>("c").centre.y, -2, 1e-7);
}

TEST(EvaluatedProperty, IsRefusedWithTheDimensionThatStandsInTheWay) {
    Document document;
    document.entities = {entity("c", CircleShape{{0, 0}, 4})};
    document.constraints = {constraint("r4", ConstraintType::radius, {{"c"}}, 4.0)};
    Hosted hosted(document);
    EXPECT_FALSE(change(hosted, "c", {EntType::kCircle, 1, {}, 6}));
    EXPECT_EQ(hosted.as<CircleShape>("c"), (CircleShape{{0, 0}, 4}));
    EXPECT_EQ(hosted.evaluator.last().conflicting, std::vector<std::string>{"r4"});
}

TEST(EvaluatedProperty, ChangesNothingForALineThatMayNotMove) {
    Hosted hosted(corner());
    EXPECT_TRUE(change(hosted, "a", {EntType::kLine, 1, {}}));
    EXPECT_EQ(hosted.drawing.document(), corner());
    EXPECT_TRUE(hosted.evaluator.last().unchanged);
}

TEST(EvaluatedProperty, IgnoresAVertexOutOfRange) {
    Document document;
    document.entities = {entity("p", PolylineShape{{{0, 0}, {4, 0}}, {0, 0}, {1, 2}, false})};
    Hosted hosted(document);
    EXPECT_TRUE(change(hosted, "p", {EntType::kPolyline, 2, {1, 1, 0}}));
    EXPECT_EQ(hosted.as<PolylineShape>("p").vertices, (std::vector<Vec2>{{0, 0}, {4, 0}}));
}

}  // namespace
}  // namespace holdfast::hosting
