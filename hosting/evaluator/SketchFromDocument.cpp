#include "hosting/evaluator/SketchFromDocument.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <unordered_map>

#include "geometry/Angles.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::hosting {

namespace {

double angleOf(Vec2 direction) {
    return std::atan2(direction.y, direction.x);
}

/// Adds the shape of one entity.
struct Adder {
    SketchData& sketch;
    const std::string& id;

    int operator()(const LineShape& s) const { return sketch.addLine(id, s.start, s.end); }
    int operator()(const ArcShape& s) const { return sketch.addArc(id, s); }
    int operator()(const CircleShape& s) const { return sketch.addCircle(id, s.centre, s.radius); }
    int operator()(const EllipseShape& s) const { return sketch.addEllipse(id, s); }
    int operator()(const EllipticalArcShape& s) const { return sketch.addEllipticalArc(id, s); }
    int operator()(const SplineShape& s) const { return sketch.addSpline(id, s); }
    int operator()(const PointShape& s) const { return sketch.addPoint(id, s.position); }
    int operator()(const XlineShape& s) const { return sketch.addXline(id, s.point, angleOf(s.direction)); }
    int operator()(const RayShape& s) const { return sketch.addRay(id, s.point, angleOf(s.direction)); }
    int operator()(const PolylineShape& s) const { return sketch.addPolyline(id, s); }
    int operator()(const TextShape& s) const { return sketch.addText(id, s.position, s.rotation, s.height); }
};

EllipseHelper helperFrom(const std::string& role) {
    if (role == "major_diameter")
        return EllipseHelper::majorDiameter;
    if (role == "minor_diameter")
        return EllipseHelper::minorDiameter;
    if (role == "focus1")
        return EllipseHelper::focus1;
    return role == "focus2" ? EllipseHelper::focus2 : EllipseHelper::none;
}

/// The angle's equal nearest to another one.
double near(double angle, double other) {
    return angle + kTurn * std::round((other - angle) / (kTurn));
}

/// The same for the end of an arc, which lies behind its start by a turn at most.
double endNear(double angle, double other, double start) {
    const double end = near(angle, other), turn = kTurn;
    if (end <= start)
        return end + turn;
    return end - start > turn ? end - turn : end;
}

/// Writes the values of one entity into its shape.
struct Writer {
    std::span<const double> v;
    const SketchEntity& entity;

    Vec2 pair(std::size_t i) const { return {v[i], v[i + 1]}; }

    void operator()(LineShape& s) const {
        s.start = pair(0);
        s.end = pair(2);
    }
    void operator()(ArcShape& s) const {
        s.centre = pair(0);
        s.radius = v[2];
        const double sweep = s.endAngle - s.startAngle;
        s.startAngle = near(std::atan2(v[4] - v[1], v[3] - v[0]), s.startAngle);
        s.endAngle = endNear(std::atan2(v[6] - v[1], v[5] - v[0]), s.startAngle + sweep, s.startAngle);
    }
    void operator()(CircleShape& s) const {
        s.centre = pair(0);
        s.radius = v[2];
    }
    void operator()(EllipseShape& s) const {
        s.centre = pair(0);
        s.majorAxis = pair(2);
        s.ratio = ratio();
    }
    void operator()(EllipticalArcShape& s) const {
        s.centre = pair(0);
        s.majorAxis = pair(2);
        s.ratio = ratio();
        const double sweep = s.endParam - s.startParam;
        s.startParam = near(eccentric(5), s.startParam);
        s.endParam = endNear(eccentric(7), s.startParam + sweep, s.startParam);
    }
    double ratio() const { return std::min(1.0, v[4] / std::hypot(v[2], v[3])); }
    double eccentric(std::size_t point) const {
        const double a = std::hypot(v[2], v[3]), x = v[point] - v[0], y = v[point + 1] - v[1];
        return std::atan2((y * v[2] - x * v[3]) / (a * v[4]), (x * v[2] + y * v[3]) / (a * a));
    }
    void operator()(SplineShape& s) const {
        for (std::size_t i = 0; i < s.control.size(); ++i)
            s.control[i] = pair(2 * i);
    }
    void operator()(PointShape& s) const { s.position = pair(0); }
    void operator()(XlineShape& s) const { writeAxis(s.point, s.direction); }
    void operator()(RayShape& s) const { writeAxis(s.point, s.direction); }
    void writeAxis(Vec2& point, Vec2& direction) const {
        const double size = std::hypot(direction.x, direction.y);
        point = pair(0);
        if (angleOf(direction) != v[2])
            direction = {size * std::cos(v[2]), size * std::sin(v[2])};
    }
    void operator()(PolylineShape& s) const {
        for (std::size_t i = 0; i < s.vertices.size(); ++i)
            s.vertices[i] = pair(2 * i);
        for (std::size_t i = 0; i < entity.bulgeValues.size(); ++i) {
            if (entity.bulgeValues[i] >= 0)
                s.bulges[i] = v[static_cast<std::size_t>(entity.bulgeValues[i] - entity.firstValue)];
        }
    }
    void operator()(TextShape& s) const {
        s.position = pair(0);
        s.rotation = v[2];
    }
};

int entityNumber(const std::unordered_map<std::string, int>& numbers, const Constraint& constraint,
                 const Place& place) {
    const auto found = numbers.find(place.entity);
    if (found == numbers.end())
        throw SketchError("constraint " + constraint.id + ": there is no element " + place.entity);
    return found->second;
}

SketchConstraint constraintFrom(const Constraint& constraint, const std::unordered_map<std::string, int>& numbers) {
    SketchConstraint result;
    result.id = constraint.id;
    result.type = constraint.type;
    result.value = constraint.value.value_or(0.0);
    result.helper = helperFrom(constraint.role);
    result.driving = constraint.driving;
    result.active = constraint.active;
    for (const Place& place : constraint.refs)
        result.refs.push_back({entityNumber(numbers, constraint, place), place.kind, place.index});
    return result;
}

/// True when the element stands where its shape in the drawing puts it.
bool isUnmoved(const SketchData& sketch, int number, const Entity& entity) {
    const auto now = sketch.valuesOf(number);
    const std::vector<double> drawn = parametersOf(entity.shape);
    return std::equal(now.begin(), now.end(), drawn.begin(), drawn.end());
}

}  // namespace

SketchData sketchFrom(const Document& document) {
    SketchData sketch;
    std::unordered_map<std::string, int> numbers;
    for (const Entity& entity : document.entities) {
        const int number = std::visit(Adder{sketch, entity.id}, entity.shape);
        sketch.entities[static_cast<std::size_t>(number)].fixed = entity.fixed;
        numbers.emplace(entity.id, number);
    }
    for (const Constraint& constraint : document.constraints)
        sketch.addConstraint(constraintFrom(constraint, numbers));
    return sketch;
}

int constraintNumber(const SketchData& sketch, std::string_view id) {
    const auto found = std::find_if(sketch.constraints.begin(), sketch.constraints.end(),
                                    [id](const SketchConstraint& constraint) { return constraint.id == id; });
    return found == sketch.constraints.end() ? -1 : static_cast<int>(found - sketch.constraints.begin());
}

void applySketch(const SketchData& sketch, Document& document) {
    assert(document.entities.size() == sketch.entities.size());
    assert(document.constraints.size() == sketch.constraints.size());
    for (std::size_t i = 0; i < document.entities.size(); ++i) {
        const int number = static_cast<int>(i);
        if (!isUnmoved(sketch, number, document.entities[i]))
            document.entities[i].shape = shapeFrom(sketch, number, std::move(document.entities[i].shape));
    }
    for (std::size_t c = 0; c < document.constraints.size(); ++c) {
        if (!document.constraints[c].driving && document.constraints[c].value)
            document.constraints[c].value = measured(sketch, static_cast<int>(c));
    }
}

std::vector<double> parametersOf(const Shape& shape) {
    SketchData sketch;
    std::visit(Adder{sketch, "the element"}, shape);
    return std::move(sketch.values);
}

Shape shapeFrom(const SketchData& sketch, int entity, Shape like) {
    std::visit(Writer{sketch.valuesOf(entity), sketch.entities[static_cast<std::size_t>(entity)]}, like);
    return like;
}

}  // namespace holdfast::hosting
