#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "document/Names.h"
#include "document/text/DrawingError.h"
#include "formats/slvs/SlvsReader.h"
#include "formats/slvs/SlvsWriter.h"
#include "geometry/Angles.h"
#include "geometry/SplineCurve.h"
#include "hosting/DocumentSketch.h"
#include "tests/slvs/ExampleDrawings.h"

namespace holdfast::formats {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Type = ConstraintType;

Document there(const Document& drawing) {
    const SlvsDrawing read = readSlvs(slvsText(drawing, 0.01).text, "", drawing.name);
    EXPECT_THAT(read.notUnderstood, IsEmpty()) << drawing.name;
    return read.document;
}

bool areNear(Vec2 a, Vec2 b) {
    return distance(a, b) <= 1e-9 * std::max({1.0, norm(a), norm(b)});
}

/// Points that tell a curve: where it begins, where it ends, and between.
std::vector<Vec2> pointsOn(const Shape& shape) {
    if (const auto* line = std::get_if<LineShape>(&shape))
        return {line->start, line->end};
    if (const auto* circle = std::get_if<CircleShape>(&shape))
        return {circle->centre, circle->centre + Vec2{circle->radius, 0.0}};
    if (const auto* point = std::get_if<PointShape>(&shape))
        return {point->position};
    std::vector<Vec2> points;
    if (const auto* arc = std::get_if<ArcShape>(&shape))
        for (int i = 0; i <= 8; ++i)
            points.push_back(arc->centre +
                             arc->radius * polar(arc->startAngle + i / 8.0 * (arc->endAngle - arc->startAngle)));
    if (const auto* spline = std::get_if<SplineShape>(&shape))
        for (int i = 0; i <= 20; ++i)
            points.push_back(splinePoint(
                *spline, spline->knots.front() + i / 20.0 * (spline->knots.back() - spline->knots.front())));
    return points;
}

bool areSame(const Entity& a, const Entity& b) {
    const std::vector<Vec2> p = pointsOn(a.shape), q = pointsOn(b.shape);
    return a.construction == b.construction && a.shape.index() == b.shape.index() && p.size() == q.size() &&
           std::equal(p.begin(), p.end(), q.begin(), areNear);
}

/// True for what a file holds as one entity.
bool isHeld(const Entity& entity) {
    const auto* spline = std::get_if<SplineShape>(&entity.shape);
    const bool isPlain =
        spline == nullptr || (spline->degree == 3 && spline->control.size() == 4 && spline->weights.empty());
    return !pointsOn(entity.shape).empty() && isPlain;
}

TEST(SlvsRoundTrip, KeepsTheGeometryOfTheExampleDrawings) {
    std::size_t held = 0;
    for (const Document& drawing : exampleDrawings()) {
        const Document back = there(drawing);
        std::size_t from = 0;
        for (const Entity& entity : drawing.entities) {
            if (!isHeld(entity))
                continue;
            while (from < back.entities.size() && !areSame(entity, back.entities[from]))
                ++from;
            if (from == back.entities.size() && entity.fixed)  // the origin stands behind all others
                from = 0;
            else
                ASSERT_LT(from, back.entities.size()) << drawing.name << ": " << entity.id;
            ++held;
        }
    }
    EXPECT_GT(held, 400U);
}

/// Each constraint as a text, entities by their place in the order, angles without whole turns.
std::string told(const Constraint& constraint, const std::map<std::string, std::string>& names) {
    std::string text(typeName(constraint.type));
    for (const Place& place : constraint.refs)
        text += " " + names.at(place.entity) + "." + placeText(place);
    if (constraint.value) {
        const bool isAngle = constraint.type == Type::angle;
        const double value = isAngle ? std::cos(*constraint.value) : *constraint.value;
        text += " " + std::to_string(value);
    }
    return text + (constraint.driving ? "" : " measured");
}

std::vector<std::string> told(const Document& drawing) {
    std::map<std::string, std::string> names;
    for (const Entity& entity : drawing.entities) {
        const bool isAxis = std::holds_alternative<XlineShape>(entity.shape);
        const std::string number = std::to_string(names.size());
        names[entity.id] = isAxis ? "axis" : number;
    }
    std::vector<std::string> all;
    for (const Constraint& constraint : drawing.constraints)
        all.push_back(told(constraint, names));
    return all;
}

Place at(const std::string& text) {
    const std::size_t dot = text.find('.');
    Place place = dot == std::string::npos ? Place{} : *parsePlace(text.substr(dot + 1));
    place.entity = text.substr(0, dot);
    return place;
}

struct Held {
    Type type;
    std::vector<std::string> refs;
    std::optional<double> value{};
};

Constraint constraintOf(const Held& held) {
    Constraint constraint{.id = "k", .type = held.type, .value = held.value};
    for (const std::string& ref : held.refs)
        constraint.refs.push_back(at(ref));
    return constraint;
}

/// One entity of every kind, placed so that the constraints below hold.
Document everyKind() {
    Document drawing;
    drawing.entities = {{"a", LineShape{{0, 0}, {10, 0}}},
                        {"b", LineShape{{10, 0}, {10, 5}}},
                        {"c", LineShape{{0, 2}, {7, 2}}, true},
                        {"arc", ArcShape{{8, 5}, 2, 0, kPi}},
                        {"round", ArcShape{{4, 5}, 2, kPi, kTurn}},
                        {"circle", CircleShape{{4, 5}, 2}},
                        {"p", PointShape{{5, 0}}},
                        {"q", PointShape{{5, 4}}},
                        {"s", SplineShape{3, false, {{2, 5}, {2, 7}, {4, 9}, {6, 9}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}}},
                        {"x", XlineShape{{0, 0}, {1, 0}}, true, true},
                        {"y", XlineShape{{0, 0}, {0, 1}}, true, true}};
    return drawing;
}

const std::vector<Held>& everyConstraint() {
    static const std::vector<Held> all = {
        {Type::coincident, {"a.end", "b.start"}},
        {Type::concentric, {"circle.centre", "round.centre"}},
        {Type::pointOnCurve, {"p", "a"}},
        {Type::pointOnCurve, {"s.start", "circle"}},
        {Type::pointOnCurve, {"arc.end", "arc"}},
        {Type::pointOnCurve, {"p", "x"}},
        {Type::pointOnCurve, {"c.start", "y"}},
        {Type::fixed, {"b.end"}},
        {Type::fixed, {"s.control:1"}},
        {Type::horizontal, {"a"}},
        {Type::horizontal, {"c.start", "c.end"}},
        {Type::vertical, {"b"}},
        {Type::vertical, {"p", "q"}},
        {Type::parallel, {"a", "c"}},
        {Type::perpendicular, {"a", "b"}},
        {Type::equal, {"arc", "circle"}},
        {Type::symmetric, {"q", "circle.centre", "b"}},  // does not hold
        {Type::midpoint, {"p", "a"}},
        {Type::distance, {"b"}, 5.0},
        {Type::distance, {"a.start", "b.end"}, std::hypot(10.0, 5.0)},
        {Type::distance, {"q", "c"}, 2.0},
        {Type::distance, {"p", "c"}, 2.0},
        {Type::distance, {"q", "x"}, 4.0},
        {Type::distance, {"q", "y"}, 5.0},
        {Type::distanceX, {"c.end", "a.end"}, 3.0},
        {Type::distanceX, {"a.end", "c.end"}, -3.0},
        {Type::distanceY, {"p", "circle.centre"}, 5.0},
        {Type::radius, {"arc"}, 2.0},
        {Type::diameter, {"circle"}, 4.0},
        {Type::angle, {"a", "b"}, kQuarterTurn},
        {Type::tangent, {"b.end", "arc.start"}},
        {Type::tangent, {"arc.end", "round.end"}},
        {Type::tangent, {"round.start", "s.start"}},
    };
    return all;
}

TEST(SlvsRoundTrip, KeepsConstraintsOfEveryKind) {
    for (const Held& held : everyConstraint()) {
        Document drawing = everyKind();
        drawing.constraints = {constraintOf(held)};
        const bool isTangent = held.type == Type::tangent;
        if (isTangent)  // a file says apart that the ends meet
            drawing.constraints.insert(drawing.constraints.begin(),
                                       {.id = "meet", .type = Type::coincident, .refs = drawing.constraints[0].refs});
        const std::vector<std::string> before = told(drawing);
        const Document back = there(drawing);
        std::vector<std::string> after = told(back);
        if (held.type == Type::tangent && held.refs[0][0] == 'b')  // the arc comes first
            EXPECT_THAT(after, ElementsAre(before[0], "tangent 3.start 1.end"));
        else
            EXPECT_EQ(after, before);
    }
}

TEST(SlvsRoundTrip, KeepsAnglesOfEverySizeAndSense) {
    for (const double angle : {0.3, 1.2, 2.5, -0.4, -2.2, 3.9, 5.5})
        for (const char* from : {"a", "a.end"})
            for (const char* to : {"b.start", "b.end"}) {
                Document drawing;
                const double flip = (std::string(from) == "a.end") != (std::string(to) == "b.end") ? kPi : 0.0;
                drawing.entities = {{"a", LineShape{{1, 1}, Vec2{1, 1} + 5.0 * polar(0.7)}},
                                    {"b", LineShape{{9, 1}, Vec2{9, 1} + 3.0 * polar(0.7 + angle + flip)}}};
                drawing.constraints = {{.id = "k", .type = Type::angle, .refs = {at(from), at(to)}, .value = angle}};
                const hosting::DocumentSketch drawn(drawing);
                ASSERT_LT(drawn.shortfallOf(0), 1e-9);
                const Document back = there(drawing);
                ASSERT_EQ(back.constraints.size(), 1U);
                EXPECT_LT(hosting::DocumentSketch(back).shortfallOf(0), 1e-9) << from << " " << to << " " << angle;
                EXPECT_NEAR(std::cos(*back.constraints[0].value), std::cos(angle), 1e-12);
            }
}

TEST(SlvsRoundTrip, KeepsTheDirectionOfALine) {
    for (const double angle : {0.3, 1.9, -0.4, -2.2}) {
        Document drawing;
        drawing.entities = {{"a", LineShape{{1, 1}, Vec2{1, 1} + 5.0 * polar(angle)}}};
        drawing.constraints = {{.id = "k", .type = Type::angle, .refs = {{"a"}}, .value = angle}};
        const Document back = there(drawing);
        ASSERT_EQ(back.constraints.size(), 1U);
        EXPECT_LT(hosting::DocumentSketch(back).shortfallOf(0), 1e-9) << angle;
    }
}

TEST(SlvsRoundTrip, KeepsMeasuredDimensions) {
    Document drawing = everyKind();
    drawing.constraints = {{.id = "k", .type = Type::radius, .refs = {{"arc"}}, .value = 2.0, .driving = false}};
    EXPECT_EQ(told(there(drawing)), told(drawing));
}

TEST(SlvsRoundTrip, KeepsSplinesThatRunInEvenSteps) {
    Document drawing;
    SplineShape open{3, false, {}, {0, 0, 0, 0}, {}};
    for (int i = 0; i < 12; ++i)
        open.control.push_back({i * 3.0, std::sin(i * 1.3) * 4.0});
    for (int i = 1; i < 9; ++i)
        open.knots.push_back(i * 2.5);
    open.knots.insert(open.knots.end(), 4, 22.5);
    SplineShape closed{3, true, {{0, 20}, {5, 20}, {6, 27}, {2, 24}, {-3, 26}}, {0, 1, 2, 3, 4, 5}, {}};
    drawing.entities = {{"open", open}, {"closed", closed}};
    const SlvsOutput written = slvsText(drawing, 0.01);
    EXPECT_THAT(written.notes, IsEmpty());
    const Document back = there(drawing);
    ASSERT_EQ(back.entities.size(), 2U);
    EXPECT_TRUE(areSame(back.entities[0], drawing.entities[0]));
    EXPECT_TRUE(areSame(back.entities[1], drawing.entities[1]));
}

TEST(SlvsRoundTrip, ExactCubicsStandForOtherSplinesOfDegreeThreeAtMost) {
    Document drawing;
    drawing.entities = {{"bent", SplineShape{2, false, {{0, 0}, {2, 4}, {5, 1}, {9, 3}}, {0, 0, 0, 1, 3, 3, 3}, {}}}};
    const SlvsOutput written = slvsText(drawing, 0.01);
    EXPECT_THAT(written.notes, ElementsAre("bent (spline) went out as 2 cubics"));
    const Document back = there(drawing);
    ASSERT_EQ(back.entities.size(), 2U);
    const auto& whole = std::get<SplineShape>(drawing.entities[0].shape);
    for (int i = 0; i <= 10; ++i) {
        const double t = i / 10.0;
        EXPECT_TRUE(areNear(splinePoint(std::get<SplineShape>(back.entities[0].shape), t), splinePoint(whole, t)));
        EXPECT_TRUE(
            areNear(splinePoint(std::get<SplineShape>(back.entities[1].shape), t), splinePoint(whole, 1 + 2 * t)));
    }
    EXPECT_THAT(told(back), ElementsAre("coincident 0.end 1.start"));
}

TEST(SlvsRoundTrip, EllipsesGoOutAsCubicsWithinTheTolerance) {
    Document drawing;
    drawing.entities = {{"e", EllipseShape{{3, 4}, {20, 0}, 0.5}},
                        {"part", EllipticalArcShape{{0, 0}, {3, 4}, 0.3, 0.2, 2.9}}};
    for (const double tolerance : {0.1, 1e-3, 1e-6}) {
        const SlvsOutput written = slvsText(drawing, tolerance);
        EXPECT_THAT(written.notes,
                    ElementsAre(HasSubstr("e (ellipse) went out as"), HasSubstr("part (elliptical_arc)")));
        const Document back = readSlvs(written.text, "", "e").document;
        double worst = 0.0;
        for (const Entity& entity : back.entities) {
            const auto* spline = std::get_if<SplineShape>(&entity.shape);
            ASSERT_NE(spline, nullptr);
            for (int i = 0; i <= 16; ++i) {
                const Vec2 p = splinePoint(*spline, i / 16.0) - Vec2{3, 4};
                if (entity.id < "r008")
                    worst = std::max(worst, std::abs(std::hypot(p.x, p.y / 0.5) - 20.0) * 0.5);
            }
        }
        EXPECT_LE(worst, tolerance);
    }
}

TEST(SlvsRoundTrip, APointOnALineWithoutLengthCanBeReadAgain) {
    Document drawing;
    drawing.entities = {{.id = "line", .shape = LineShape{{3, 4}, {3, 4}}}, {.id = "dot", .shape = PointShape{{3, 4}}}};
    drawing.constraints = {{.id = "on", .type = Type::pointOnCurve, .refs = {{"dot"}, {"line"}}}};
    const std::string text = slvsText(drawing, 0.01).text;
    EXPECT_EQ(readSlvs(text, "", "again.slvs").document.constraints.size(), 1u) << text;
}

TEST(SlvsRoundTrip, ListsWhatAFileCannotHold) {
    Document drawing = everyKind();
    drawing.lengthUnit = "inch";
    drawing.plane = Plane{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}};
    drawing.parameters = {{"width", "80", 80.0}};
    drawing.entities.push_back({"note", TextShape{{0, 0}, 0, 2.5, "hello"}});
    drawing.entities.push_back({"ray", RayShape{{0, 0}, {1, 1}}});
    drawing.entities.push_back({"held", LineShape{{0, 9}, {1, 9}}, false, true});
    drawing.constraints = {{.id = "k1", .type = Type::tangent, .refs = {{"a"}, {"circle"}}},
                           {.id = "k2", .type = Type::horizontal, .refs = {{"a"}}, .active = false},
                           {.id = "k3", .type = Type::horizontal, .refs = {{"note"}}},
                           {.id = "k4", .type = Type::distance, .refs = {{"arc"}}, .value = kTurn}};
    EXPECT_THAT(slvsText(drawing, 0.01).notes,
                ElementsAre("left out, since the form does not have them: note (text), ray (ray), k1 (tangent), "
                            "k2 (horizontal, inactive), k3 (horizontal), k4 (distance)",
                            "fixed; their points are held where they are: held",
                            "parameters and formulas were left out; dimensions have their values",
                            "the plane in space was left out; the sketch is in the xy plane",
                            "numbers are in the unit \"inch\", where the program has mm"));
    EXPECT_THAT(told(there(drawing)), ElementsAre("fixed 9.start", "fixed 9.end"));
}

TEST(SlvsRoundTrip, ConstraintsOfTheExampleDrawingsHoldWhenTheyAreReadAgain) {
    std::size_t kept = 0;
    for (const Document& drawing : exampleDrawings()) {
        const Document back = there(drawing);
        const hosting::DocumentSketch sketch(back);
        const std::vector<double> misses = sketch.shortfalls(), before = hosting::DocumentSketch(drawing).shortfalls();
        const double worst = *std::max_element(before.begin(), before.end());
        for (std::size_t i = 0; i < back.constraints.size(); ++i)
            EXPECT_LE(misses[i], worst + 1e-9 * sketch.size()) << drawing.name << " " << back.constraints[i].id;
        kept += back.constraints.size();
    }
    EXPECT_GT(kept, 900U);
}

TEST(SlvsRoundTrip, MoreEntitiesThanAFileCanHoldAreRefused) {
    Document drawing;
    for (int i = 0; i < 32765; ++i)
        drawing.entities.push_back({"g" + std::to_string(i), PointShape{{i * 1.0, 0}}});
    EXPECT_THROW(slvsText(drawing, 0.01), DrawingError);
    drawing.entities.pop_back();
    EXPECT_EQ(there(drawing).entities.size(), 32764U);
}

}  // namespace
}  // namespace holdfast::formats
