#include <algorithm>

#include "host/model/entities/EntityAccess.h"
#include "host/model/scene/SceneEntities.h"
#include "host/model/scene/SceneNumbers.h"

namespace holdfast {

namespace {

using Made = std::unique_ptr<YxDbEntity>;

/// "down", "normal down" or "normal 0,0,1", if one of them is next.
bool acceptNormal(SceneStatement& statement, YxGeVector3d& normal) {
    const bool isNormal = statement.accept("normal");
    if (statement.accept("down"))
        normal = {0.0, 0.0, -1.0};
    else if (isNormal)
        normal = statement.vector("the normal");
    else
        return false;
    return true;
}

YxGePoint3d centreOf(SceneStatement& statement) {
    statement.expect("centre");
    return statement.point("the centre");
}

double radiusOf(SceneStatement& statement) {
    statement.expect("radius");
    return statement.number("the radius");
}

void readAngles(SceneStatement& statement, double& start, double& end) {
    statement.expect("from");
    start = statement.angle("the start angle");
    statement.expect("to");
    end = statement.angle("the end angle");
}

Made readLine(SceneStatement& statement) {
    const YxGePoint3d start = statement.point("the start");
    return EntityAccess::makeLine(start, statement.point("the end"));
}

DirectedData readDirected(SceneStatement& statement) {
    DirectedData data;
    data.base = statement.point("the base point");
    statement.expect("dir");
    data.direction = statement.vector("the direction");
    return data;
}

Made readRay(SceneStatement& statement) {
    const DirectedData data = readDirected(statement);
    return EntityAccess::makeRay(data.base, data.direction);
}

Made readXline(SceneStatement& statement) {
    const DirectedData data = readDirected(statement);
    return EntityAccess::makeXline(data.base, data.direction);
}

Made readCircle(SceneStatement& statement) {
    CircleData data;
    data.centre = centreOf(statement);
    data.radius = radiusOf(statement);
    acceptNormal(statement, data.normal);
    return EntityAccess::makeCircle(data);
}

Made readArc(SceneStatement& statement) {
    ArcData data;
    data.centre = centreOf(statement);
    data.radius = radiusOf(statement);
    readAngles(statement, data.startAngle, data.endAngle);
    acceptNormal(statement, data.normal);
    return EntityAccess::makeArc(data);
}

Made readEllipse(SceneStatement& statement) {
    EllipseData data;
    data.centre = centreOf(statement);
    statement.expect("major");
    data.majorAxis = statement.vector("the major axis");
    statement.expect("ratio");
    data.ratio = statement.number("the ratio");
    if (statement.peek() == "from")
        readAngles(statement, data.startAngle, data.endAngle);
    acceptNormal(statement, data.normal);
    return EntityAccess::makeEllipse(data);
}

std::vector<double> numbersOf(SceneStatement& statement) {
    std::vector<double> numbers;
    while (numberIn(statement.peek()))
        numbers.push_back(statement.number("a number"));
    return numbers;
}

/// Evenly spaced; clamped at both ends unless periodic.
std::vector<double> plainKnots(const SplineData& data) {
    const auto count = static_cast<int>(data.control.size());
    const int clamped = data.periodic ? 0 : data.degree;
    const int last = std::max(1, count - clamped);
    std::vector<double> knots;
    for (int i = 0; i <= count + clamped; ++i)
        knots.push_back(std::clamp(i - clamped, 0, last));
    return knots;
}

Made readSpline(SceneStatement& statement) {
    SplineData data;
    statement.expect("degree");
    data.degree = static_cast<int>(statement.number("the degree"));
    statement.expect("at");
    while (pointIn(statement.peek()))
        data.control.push_back(statement.point("a control point"));
    if (statement.accept("knots"))
        data.knots = numbersOf(statement);
    if (statement.accept("weights"))
        data.weights = numbersOf(statement);
    data.periodic = statement.accept("periodic");
    if (data.knots.empty())
        data.knots = plainKnots(data);
    return EntityAccess::makeSpline(std::move(data));
}

/// Cuts the mark and what follows it off the word.
std::optional<std::string> cutMark(std::string& word, char mark) {
    const std::size_t at = word.find(mark);
    if (at == std::string::npos)
        return std::nullopt;
    const std::size_t end = std::min(word.find_first_of("#^", at + 1), word.size());
    const std::string value = word.substr(at + 1, end - at - 1);
    word.erase(at, end - at);
    return value;
}

PolylineVertex readVertex(SceneStatement& statement) {
    const std::string written = statement.take("a vertex");
    std::string word = written;
    const std::optional<std::string> identifier = cutMark(word, '#');
    const std::optional<std::string> bulge = cutMark(word, '^');
    const auto point = pointIn(word);
    const auto number = identifier ? integerIn(*identifier) : std::optional(0);
    const auto bulgeValue = bulge ? numberIn(*bulge) : std::optional(0.0);
    if (!point || !number || !bulgeValue || point->z != 0.0)
        statement.fail("expected a vertex such as 10,0#12^0.5 (identifier 12, bulge 0.5), found \"" + written + "\"");
    return {{point->x, point->y}, *bulgeValue, *number};
}

Made readPolyline(SceneStatement& statement) {
    PolylineData data;
    while (!statement.atEnd() && statement.peek() != "closed")
        data.vertices.push_back(readVertex(statement));
    data.closed = statement.accept("closed");
    return EntityAccess::makePolyline(data);
}

Made readPoint(SceneStatement& statement) {
    return EntityAccess::makePoint(statement.point("the position"));
}

TextData readTextData(SceneStatement& statement) {
    TextData data;
    data.position = statement.point("the position");
    while (!statement.atEnd()) {
        if (statement.accept("rotation"))
            data.rotation = statement.angle("the rotation");
        else if (statement.accept("height"))
            data.height = statement.number("the height");
        else if (!acceptNormal(statement, data.normal))
            data.text = statement.quoted("rotation, height, normal or the text");
    }
    return data;
}

Made readText(SceneStatement& statement) {
    return EntityAccess::makeText(readTextData(statement));
}

Made readMText(SceneStatement& statement) {
    return EntityAccess::makeMText(readTextData(statement));
}

struct EntityKind {
    std::string_view name;
    Made (*read)(SceneStatement&);
};

constexpr EntityKind kKinds[] = {
    {"line", &readLine},   {"ray", &readRay},         {"xline", &readXline},   {"circle", &readCircle},
    {"arc", &readArc},     {"ellipse", &readEllipse}, {"spline", &readSpline}, {"polyline", &readPolyline},
    {"point", &readPoint}, {"text", &readText},       {"mtext", &readMText},
};

const EntityKind* kindNamed(std::string_view word) {
    const auto* found =
        std::find_if(std::begin(kKinds), std::end(kKinds), [&](const EntityKind& kind) { return kind.name == word; });
    return found == std::end(kKinds) ? nullptr : found;
}

}  // namespace

bool isEntityKind(std::string_view word) {
    return kindNamed(word) != nullptr;
}

std::unique_ptr<YxDbEntity> readEntity(std::string_view kind, SceneStatement& statement) {
    return kindNamed(kind)->read(statement);
}

}  // namespace holdfast
