#include "tests/solver/Sketch.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>

#include "document/Names.h"
#include "solver/src/residuals/Operands.h"
#include "solver/src/sketch/Measure.h"

namespace holdfast::solver::detail {

namespace {

using Words = std::vector<std::string>;

Words wordsOf(std::string_view text) {
    std::istringstream in{std::string(text)};
    Words words;
    for (std::string word; in >> word;)
        words.push_back(word);
    return words;
}

Vec2 pair(const std::string& word) {
    const std::size_t comma = word.find(',');
    return {std::stod(word), std::stod(word.substr(comma + 1))};
}

double degrees(const std::string& word) {
    return std::stod(word) * std::numbers::pi / 180.0;
}

SplineShape clampedSpline(const Words& words) {
    SplineShape spline;
    spline.degree = std::stoi(words[2]);
    for (std::size_t i = 3; i < words.size(); ++i)
        spline.control.push_back(pair(words[i]));
    const int inner = static_cast<int>(spline.control.size()) - spline.degree;
    for (int i = -spline.degree; i <= inner + spline.degree; ++i)
        spline.knots.push_back(std::clamp(i, 0, inner));
    return spline;
}

PolylineShape polyline(const Words& words) {
    PolylineShape shape;
    for (std::size_t i = 2; i < words.size(); ++i) {
        if (words[i] == "closed") {
            shape.closed = true;
            continue;
        }
        const std::size_t colon = words[i].find(':');
        shape.vertices.push_back(pair(words[i]));
        shape.bulges.push_back(colon == std::string::npos ? 0.0 : std::stod(words[i].substr(colon + 1)));
    }
    return shape;
}

EllipseHelper helperNamed(const std::string& role) {
    if (role == "major_diameter")
        return EllipseHelper::majorDiameter;
    if (role == "minor_diameter")
        return EllipseHelper::minorDiameter;
    return role == "focus1" ? EllipseHelper::focus1 : EllipseHelper::focus2;
}

}  // namespace

SketchText::SketchText(std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(';'), text.size());
        add(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

void SketchText::add(std::string_view statement) {
    Words words = wordsOf(statement);
    if (words.empty())
        return;
    const bool isFixed = words.front() == "fixed!";
    if (isFixed)
        words.erase(words.begin());
    if (!addEntity(words)) {
        addConstraint(words);
        return;
    }
    numbers[words[1]] = static_cast<int>(sketch.entities.size()) - 1;
    sketch.entities.back().fixed = isFixed;
}

bool SketchText::addEntity(const Words& w) {
    const std::string& kind = w[0];
    if (kind == "line")
        sketch.addLine(w[1], pair(w[2]), pair(w[3]));
    else if (kind == "ray")
        sketch.addRay(w[1], pair(w[2]), degrees(w[3]));
    else if (kind == "xline")
        sketch.addXline(w[1], pair(w[2]), degrees(w[3]));
    else if (kind == "circle")
        sketch.addCircle(w[1], pair(w[2]), std::stod(w[3]));
    else if (kind == "arc")
        sketch.addArc(w[1], {pair(w[2]), std::stod(w[3]), degrees(w[4]), degrees(w[5])});
    else if (kind == "ellipse")
        sketch.addEllipse(w[1], {pair(w[2]), pair(w[3]), std::stod(w[4])});
    else if (kind == "ellipse_arc")
        sketch.addEllipticalArc(w[1], {pair(w[2]), pair(w[3]), std::stod(w[4]), degrees(w[5]), degrees(w[6])});
    else if (kind == "point")
        sketch.addPoint(w[1], pair(w[2]));
    else if (kind == "text")
        sketch.addText(w[1], pair(w[2]), degrees(w[3]), 2.5);
    else if (kind == "spline")
        sketch.addSpline(w[1], clampedSpline(w));
    else if (kind == "polyline")
        sketch.addPolyline(w[1], polyline(w));
    else
        return false;
    return true;
}

void SketchText::addConstraint(Words words) {
    SketchConstraint constraint;
    constraint.id = "c" + std::to_string(sketch.constraints.size());
    const auto take = [&](const char* word) {
        const bool isThere = words.front() == word;
        if (isThere)
            words.erase(words.begin());
        return isThere;
    };
    constraint.active = !take("off");
    constraint.driving = !take("measured");
    constraint.type = constraintTypeNamed(words.front()).value();
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (words[i] == "=")
            constraint.value = std::stod(words[++i]);
        else if (words[i] == "as")
            constraint.helper = helperNamed(words[++i]);
        else
            constraint.refs.push_back(place(words[i]));
    }
    if (constraint.type == ConstraintType::angle)
        constraint.value *= std::numbers::pi / 180.0;
    sketch.addConstraint(constraint);
}

SketchPlace SketchText::place(std::string_view text) const {
    const std::size_t dot = text.find('.');
    const std::string id(text.substr(0, dot));
    const auto kind = dot == std::string_view::npos ? Place{} : parsePlace(text.substr(dot + 1)).value();
    return {numbers.at(id), kind.kind, kind.index};
}

int SketchText::valueOf(std::string_view text) const {
    return pointAt(sketch, place(text)).value().inputs.front();
}

Vec2 SketchText::at(std::string_view text) const {
    const auto v = static_cast<std::size_t>(valueOf(text));
    return {sketch.values[v], sketch.values[v + 1]};
}

void SketchText::move(std::string_view text, Vec2 to) {
    const auto v = static_cast<std::size_t>(valueOf(text));
    sketch.values[v] = to.x;
    sketch.values[v + 1] = to.y;
}

double SketchText::value(std::string_view entity, int index) const {
    return sketch.valuesOf(numbers.at(std::string(entity)))[static_cast<std::size_t>(index)];
}

std::string SketchText::namesOf(std::span<const int> constraints) const {
    std::string names;
    for (const int c : constraints)
        names += (names.empty() ? "" : " ") + sketch.constraints[static_cast<std::size_t>(c)].id;
    return names;
}

double SketchText::worstViolation() const {
    const std::vector<double> misses = violationsOf(sketch);
    return *std::max_element(misses.begin(), misses.end());
}

}  // namespace holdfast::solver::detail
