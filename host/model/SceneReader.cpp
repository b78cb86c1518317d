#include "host/model/SceneReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <optional>
#include <stdexcept>
#include <utility>

#include "host/src/EntityAccess.h"

namespace holdfast {

namespace {

constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;

std::optional<double> numberIn(std::string_view text) {
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

/// Splits at white space; a text in double quotes is one word, quotes included.
std::vector<std::string> wordsOf(std::string_view statement) {
    std::vector<std::string> words;
    std::string word;
    bool quoted = false;
    for (const char c : statement) {
        quoted = c == '"' ? !quoted : quoted;
        const bool space = !quoted && (c == ' ' || c == '\t' || c == '\n' || c == '\r');
        if (!space)
            word += c;
        if (space && !word.empty())
            words.push_back(std::exchange(word, {}));
    }
    if (!word.empty())
        words.push_back(word);
    return words;
}

using AddConstraint = YxGeomConstraint& (*)(YxDbAssoc2dConstraintGroup&, const std::vector<YxConstrainedGeometry*>&);

template <class T>
YxGeomConstraint& addAs(YxDbAssoc2dConstraintGroup& group, const std::vector<YxConstrainedGeometry*>& geometries) {
    return HostAccess::addConstraint<T>(group, geometries);
}

AddConstraint constraintClassNamed(const std::string& kind) {
    struct Row {
        const char* kind;
        AddConstraint add;
    };
    static constexpr Row rows[] = {
        {"coincident", &addAs<YxPointCoincidenceConstraint>},
        {"on", &addAs<YxPointCurveConstraint>},
        {"fixed", &addAs<YxFixedConstraint>},
        {"horizontal", &addAs<YxHorizontalConstraint>},
        {"vertical", &addAs<YxVerticalConstraint>},
        {"parallel", &addAs<YxParallelConstraint>},
        {"perpendicular", &addAs<YxPerpendicularConstraint>},
        {"collinear", &addAs<YxCollinearConstraint>},
        {"tangent", &addAs<YxTangentConstraint>},
        {"concentric", &addAs<YxConcentricConstraint>},
        {"equal", &addAs<YxEqualLengthConstraint>},
        {"equalradius", &addAs<YxEqualRadiusConstraint>},
        {"symmetric", &addAs<YxSymmetricConstraint>},
        {"midpoint", &addAs<YxMidPointConstraint>},
    };
    for (const Row& row : rows)
        if (kind == row.kind)
            return row.add;
    return nullptr;
}

std::optional<YxDimensionConstraint::Kind> dimensionNamed(const std::string& kind) {
    static constexpr const char* names[] = {"distance", "distancex", "distancey", "radius", "diameter", "angle"};
    for (int i = 0; i < 6; ++i)
        if (kind == names[i])
            return static_cast<YxDimensionConstraint::Kind>(i);
    return std::nullopt;
}

}  // namespace

SceneReader::SceneReader(Scene& scene, std::string_view text) : m_scene(scene) {
    splitStatements(text);
}

void SceneReader::splitStatements(std::string_view text) {
    int depth = 0;
    bool quoted = false;
    std::string statement;
    for (const char c : text) {
        quoted = c == '"' ? !quoted : quoted;
        depth += quoted ? 0 : (c == '{') - (c == '}');
        if (!quoted && depth == 0 && (c == ';' || c == '\n'))
            m_statements.push_back(std::exchange(statement, {}));
        else
            statement += c;
    }
    m_statements.push_back(statement);
}

void SceneReader::readAll() {
    m_group = m_scene.groupId();
    for (const std::string& statement : m_statements) {
        m_statement = statement;
        m_words = wordsOf(statement);
        m_next = 0;
        if (atEnd())
            continue;
        readStatement();
        if (!atEnd())
            fail("nothing more was expected, found \"" + m_words[m_next] + "\"");
    }
}

void SceneReader::readStatement() {
    const std::string first = m_words[0];
    if (readSetting(first) || readEntity(first))
        return;
    readConstraint();
}

bool SceneReader::readSetting(const std::string& first) {
    if (first == "group") {
        ++m_next;
        const std::string name = take("a name for the group");
        m_group = m_scene.m_builder.addGroup();
        m_scene.m_groups.emplace_back(name, m_group);
        m_scene.nameObject(m_group, name);
    } else if (first == "ucs") {
        ++m_next;
        const YxGeVector3d x = vector("the x direction");
        m_scene.m_process.setUcs(x, vector("the y direction"));
    } else if (first == "paper") {
        ++m_next;
        m_scene.m_process.setPaperSpace(true);
    } else if (first == "reactor") {
        ++m_next;
        m_scene.m_builder.addOtherReactor(place(take("an entity")).entity);
    } else if (first == "dependency") {
        ++m_next;
        geometryAt(take("an entity or a segment"));
    } else if (first == "bare") {
        ++m_next;
        expect("dependency");
        const std::string text = take("an entity or a segment");
        auto& dependency = m_scene.m_builder.addBareDependency(HostBuilder::group(m_group), place(text));
        nameDependency(text, dependency.objectId());
    } else {
        return false;
    }
    return true;
}

bool SceneReader::readEntity(const std::string& kind) {
    static const std::vector<std::string> kinds = {"line",   "ray",      "xline", "circle", "arc",  "ellipse",
                                                   "spline", "polyline", "point", "text",   "mtext"};
    if (std::find(kinds.begin(), kinds.end(), kind) == kinds.end())
        return false;
    ++m_next;
    const std::string name = take("a name");
    if (m_scene.m_ids.contains(name))
        fail("the name \"" + name + "\" is taken; choose another");
    if (kind == "line") {
        const YxGePoint3d start = point("the start");
        m_scene.add(name, EntityAccess::makeLine(start, point("the end")));
    } else if (kind == "ray" || kind == "xline") {
        const YxGePoint3d base = point("the base point");
        expect("dir");
        const YxGeVector3d direction = vector("the direction");
        if (kind == "ray")
            m_scene.add(name, EntityAccess::makeRay(base, direction));
        else
            m_scene.add(name, EntityAccess::makeXline(base, direction));
    } else if (kind == "circle") {
        expect("centre");
        const YxGePoint3d centre = point("the centre");
        expect("radius");
        m_scene.add(name, EntityAccess::makeCircle({.centre = centre, .radius = number("the radius")}));
    } else if (kind == "point") {
        m_scene.add(name, EntityAccess::makePoint(point("the position")));
    } else if (kind == "arc") {
        readArc(name);
    } else if (kind == "ellipse") {
        readEllipse(name);
    } else if (kind == "spline") {
        readSpline(name);
    } else if (kind == "polyline") {
        readPolyline(name);
    } else {
        readText(kind, name);
    }
    return true;
}

void SceneReader::readArc(const std::string& name) {
    ArcData data;
    expect("centre");
    data.centre = point("the centre");
    expect("radius");
    data.radius = number("the radius");
    expect("from");
    data.startAngle = angle("the start angle");
    expect("to");
    data.endAngle = angle("the end angle");
    if (accept("down"))
        data.normal = {0.0, 0.0, -1.0};
    m_scene.add(name, EntityAccess::makeArc(data));
}

void SceneReader::readEllipse(const std::string& name) {
    EllipseData data;
    expect("centre");
    data.centre = point("the centre");
    expect("major");
    data.majorAxis = vector("the major axis");
    expect("ratio");
    data.ratio = number("the ratio");
    if (accept("from")) {
        data.startAngle = angle("the start angle");
        expect("to");
        data.endAngle = angle("the end angle");
    }
    m_scene.add(name, EntityAccess::makeEllipse(data));
}

void SceneReader::readSpline(const std::string& name) {
    SplineData data;
    expect("degree");
    data.degree = static_cast<int>(number("the degree"));
    expect("at");
    while (!atEnd() && m_words[m_next].find(',') != std::string::npos)
        data.control.push_back(point("a control point"));
    const auto numbers = [&](std::vector<double>& values) {
        while (!atEnd() && numberIn(m_words[m_next]))
            values.push_back(number("a number"));
    };
    if (accept("knots"))
        numbers(data.knots);
    if (accept("weights"))
        numbers(data.weights);
    data.periodic = accept("periodic");
    if (data.knots.empty()) {
        // Clamped at both ends, evenly spaced between.
        const auto count = static_cast<int>(data.control.size());
        for (int i = 0; i < count + data.degree + 1; ++i)
            data.knots.push_back(std::clamp(i - data.degree, 0, std::max(1, count - data.degree)));
    }
    m_scene.add(name, EntityAccess::makeSpline(std::move(data)));
}

void SceneReader::readPolyline(const std::string& name) {
    PolylineData data;
    while (!atEnd() && m_words[m_next].find(',') != std::string::npos) {
        std::string word = take("a vertex");
        PolylineVertex vertex;
        const auto cut = [&](char mark) {
            const std::size_t at = word.find(mark);
            if (at == std::string::npos)
                return std::optional<double>();
            const std::optional<double> value = numberIn(std::string_view(word).substr(at + 1));
            if (!value)
                fail(std::string("expected a number behind ") + mark);
            word.resize(at);
            return value;
        };
        vertex.bulge = cut('^').value_or(0.0);
        vertex.identifier = static_cast<int>(cut('#').value_or(0.0));
        const std::size_t comma = word.find(',');
        const auto x = numberIn(std::string_view(word).substr(0, comma));
        const auto y = numberIn(std::string_view(word).substr(comma + 1));
        if (!x || !y)
            fail("expected a vertex such as 10,0#12^0.5");
        vertex.point = {*x, *y};
        data.vertices.push_back(vertex);
    }
    data.closed = accept("closed");
    m_scene.add(name, EntityAccess::makePolyline(data));
}

void SceneReader::readText(const std::string& kind, const std::string& name) {
    TextData data;
    data.position = point("the position");
    if (accept("rotation"))
        data.rotation = angle("the rotation");
    if (!atEnd()) {
        const std::string quoted = take("a text");
        data.text = quoted.size() >= 2 ? quoted.substr(1, quoted.size() - 2) : quoted;
    }
    if (kind == "text")
        m_scene.add(name, EntityAccess::makeText(data));
    else
        m_scene.add(name, EntityAccess::makeMText(data));
}

YxGeomConstraint& SceneReader::readConstraint() {
    std::string name = "c" + std::to_string(++m_constraintCount);
    if (m_words[m_next].ends_with(":"))
        name = take("a name").substr(0, m_words[m_next - 1].size() - 1);
    const bool internal = accept("internal");
    const bool implied = accept("implied");
    const std::string kind = take("a kind of constraint");
    YxGeomConstraint* made = nullptr;
    if (kind == "composite")
        made = &readComposite(kind);
    else if (kind == "smooth")
        made = &readSmooth();
    else if (dimensionNamed(kind))
        made = &readDimension(kind);
    else if (const AddConstraint add = constraintClassNamed(kind))
        made = &add(HostBuilder::group(m_group), readGeometries());
    else
        fail("\"" + kind + "\" is no kind of entity, setting or constraint");
    HostAccess::setInternal(*made, internal);
    if (implied)
        made->setIsImplied(true);
    nameConstraint(*made, name);
    return *made;
}

YxGeomConstraint& SceneReader::readComposite(const std::string&) {
    const std::size_t open = m_statement.find('{'), close = m_statement.rfind('}');
    if (open == std::string::npos || close == std::string::npos)
        fail("expected members in braces: composite { coincident a.end b.start; fixed a }");
    SceneReader members(m_scene, std::string_view(m_statement).substr(open + 1, close - open - 1));
    auto& composite =
        static_cast<YxCompositeConstraint&>(addAs<YxCompositeConstraint>(HostBuilder::group(m_group), {}));
    members.m_group = m_group;
    members.m_constraintCount = m_constraintCount;
    for (const std::string& statement : members.m_statements) {
        members.m_statement = statement;
        members.m_words = wordsOf(statement);
        members.m_next = 0;
        if (!members.atEnd())
            HostAccess::own(composite, members.readConstraint());
    }
    m_constraintCount = members.m_constraintCount;
    m_next = m_words.size();
    return composite;
}

YxGeomConstraint& SceneReader::readSmooth() {
    const std::vector<YxConstrainedGeometry*> points = readGeometries();
    YxDbAssoc2dConstraintGroup& group = HostBuilder::group(m_group);
    auto& smooth = static_cast<YxG2SmoothConstraint&>(addAs<YxG2SmoothConstraint>(group, {}));
    YxGeomConstraint& coincidence = addAs<YxPointCoincidenceConstraint>(group, points);
    nameConstraint(coincidence, "c" + std::to_string(++m_constraintCount));
    HostAccess::own(smooth, coincidence);
    return smooth;
}

YxGeomConstraint& SceneReader::readDimension(const std::string& kind) {
    const std::vector<YxConstrainedGeometry*> geometries = readGeometries();
    expect("=");
    const double value = kind == "angle" ? angle("a value") : number("a value");
    auto& dimension =
        static_cast<YxDimensionConstraint&>(addAs<YxDimensionConstraint>(HostBuilder::group(m_group), geometries));
    HostAccess::setDimension(dimension, *dimensionNamed(kind), value, !accept("measured"));
    return dimension;
}

void SceneReader::nameConstraint(YxGeomConstraint& constraint, std::string name) {
    if (!m_scene.m_constraints.emplace(name, &constraint).second)
        fail("the name \"" + name + "\" is taken; choose another");
    m_scene.m_process.name(&constraint, name);
    m_scene.m_constraintNames.emplace(&constraint, std::move(name));
}

void SceneReader::nameDependency(const std::string& text, const YxDbObjectId& id) {
    const std::string curve = text.substr(0, text.find('.'));
    for (const auto& [known, dependency] : m_scene.m_dependencies)
        if (dependency == id)
            return;
    m_scene.m_dependencies.emplace_back(curve, id);
    m_scene.m_process.name(HostAccess::peek(id), "dependency " + curve);
}

std::vector<YxConstrainedGeometry*> SceneReader::readGeometries() {
    std::vector<YxConstrainedGeometry*> geometries;
    while (!atEnd() && m_words[m_next] != "=")
        geometries.push_back(&geometryAt(take("a place")));
    if (geometries.empty())
        fail("expected a place such as a, a.end or p[2]");
    return geometries;
}

YxConstrainedGeometry& SceneReader::geometryAt(const std::string& text) {
    YxDbAssoc2dConstraintGroup& group = HostBuilder::group(m_group);
    const BuiltPlace at = place(text);
    YxConstrainedGeometry& geometry = m_scene.m_builder.geometry(group, at);
    nameDependency(text, m_scene.m_builder.dependency(group, at)->objectId());
    return geometry;
}

BuiltPlace SceneReader::place(std::string_view text) const {
    const std::size_t end = text.find_first_of("[.");
    BuiltPlace place;
    place.entity = m_scene.id(text.substr(0, end));
    if (place.entity.isNull())
        fail("there is no entity \"" + std::string(text.substr(0, end)) + "\"; write it before its constraints");
    std::string_view rest = end == std::string_view::npos ? std::string_view() : text.substr(end);
    if (rest.starts_with("[")) {
        const std::size_t close = rest.find(']');
        const auto segment = numberIn(rest.substr(1, close == std::string_view::npos ? close : close - 1));
        if (!segment)
            fail("expected a segment such as p[2]");
        place.segment = static_cast<int>(*segment);
        rest = rest.substr(close + 1);
    }
    if (rest.empty())
        return place;
    place.isPoint = true;
    const std::string_view point = rest.substr(1);
    const bool spline = HostAccess::peek(place.entity)->isKindOf(YxDbSpline::desc());
    if (point == "start" || point == "end") {
        place.pointType = point == "start" ? YxDb::kStartImplicit : YxDb::kEndImplicit;
        if (spline)
            place.pointIndex =
                point == "start" ? 0 : static_cast<YxDbSpline*>(HostAccess::peek(place.entity))->numControlPoints() - 1;
    } else if (point == "mid") {
        place.pointType = YxDb::kMidImplicit;
    } else if (point == "centre") {
        place.pointType = YxDb::kCenterImplicit;
    } else if (point.starts_with("control") && numberIn(point.substr(7))) {
        place.pointType = YxDb::kControlImplicit;
        place.pointIndex = static_cast<int>(*numberIn(point.substr(7)));
    } else {
        fail("\"" + std::string(point) + "\" is no point; use start, end, mid, centre or control0");
    }
    return place;
}

std::string SceneReader::take(const char* expected) {
    if (atEnd())
        fail(std::string("expected ") + expected + ", but the statement ends");
    return m_words[m_next++];
}

bool SceneReader::accept(const char* word) {
    if (atEnd() || m_words[m_next] != word)
        return false;
    ++m_next;
    return true;
}

void SceneReader::expect(const char* word) {
    if (!accept(word))
        fail(std::string("expected \"") + word + "\"" +
             (atEnd() ? ", but the statement ends" : ", found \"" + m_words[m_next] + "\""));
}

YxGePoint3d SceneReader::point(const char* expected) {
    const std::string word = take(expected);
    const std::size_t comma = word.find(',');
    const auto x = numberIn(std::string_view(word).substr(0, comma));
    const auto y = comma == std::string::npos ? std::nullopt : numberIn(std::string_view(word).substr(comma + 1));
    if (!x || !y)
        fail(std::string("expected ") + expected + " such as 10,0.5, found \"" + word + "\"");
    return {*x, *y, 0.0};
}

YxGeVector3d SceneReader::vector(const char* expected) {
    return point(expected) - YxGePoint3d::kOrigin;
}

double SceneReader::number(const char* expected) {
    const std::string word = take(expected);
    const std::optional<double> value = numberIn(word);
    if (!value)
        fail(std::string("expected ") + expected + ", a number, found \"" + word + "\"");
    return *value;
}

double SceneReader::angle(const char* expected) {
    return number(expected) * kRadiansPerDegree;
}

void SceneReader::fail(const std::string& message) const {
    throw std::invalid_argument("scene statement \"" + m_statement + "\": " + message);
}

}  // namespace holdfast
