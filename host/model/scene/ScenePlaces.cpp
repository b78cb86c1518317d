#include "host/model/scene/ScenePlaces.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <stdexcept>

#include "host/model/entities/EntityAccess.h"
#include "host/model/scene/SceneNumbers.h"

namespace holdfast {

namespace {

struct PointName {
    std::string_view name;
    YxDb::ImplicitPointType type;
};

constexpr PointName kPoints[] = {
    {"start", YxDb::kStartImplicit},
    {"end", YxDb::kEndImplicit},
    {"mid", YxDb::kMidImplicit},
    {"centre", YxDb::kCenterImplicit},
};
constexpr std::string_view kControl = "control";

[[noreturn]] void refuse(std::string_view text, const std::string& message) {
    throw std::invalid_argument("\"" + std::string(text) + "\": " + message);
}

std::optional<YxDb::ImplicitPointType> pointTypeNamed(std::string_view name) {
    for (const PointName& point : kPoints)
        if (point.name == name)
            return point.type;
    return std::nullopt;
}

/// The points that an entity has, for complaints; the control points of splines come on top.
std::string_view pointsOf(const YxDbEntity& entity) {
    struct Row {
        const YxRxClass* type;
        std::string_view points;
    };
    static const Row rows[] = {
        {YxDbCircle::desc(), "centre"},
        {YxDbArc::desc(), "start, end, mid, centre"},
        {YxDbEllipse::desc(), "start, end, mid, centre"},
        {YxDbPolyline::desc(), "start, end, mid, centre"},
        {YxDbText::desc(), "start, position"},
        {YxDbMText::desc(), "start, position"},
        {YxDbPoint::desc(), "start"},
        {YxDbRay::desc(), "start, end, mid"},
        {YxDbXline::desc(), "start, end, mid"},
    };
    for (const Row& row : rows)
        if (entity.isKindOf(row.type))
            return row.points;
    return "start, end, mid";
}

bool hasPoint(const YxDbEntity& entity, std::string_view name) {
    const std::string_view points = pointsOf(entity);
    const std::size_t at = points.find(name);
    if (at == std::string_view::npos)
        return false;
    const std::size_t behind = at + name.size();
    return (at == 0 || points[at - 1] == ' ') && (behind == points.size() || points[behind] == ',');
}

void readControlPoint(std::string_view text, std::string_view number, const YxDbEntity& entity, BuiltPlace& place) {
    if (!entity.isKindOf(YxDbSpline::desc()))
        refuse(text, "only splines have control points");
    const std::size_t count = EntityAccess::spline(static_cast<const YxDbSpline&>(entity)).control.size();
    const std::optional<int> index = integerIn(number);
    if (!index || *index < 0 || static_cast<std::size_t>(*index) >= count)
        refuse(text, "the spline has control0 to control" + std::to_string(count - 1));
    place.pointType = YxDb::kControlImplicit;
    place.pointIndex = *index;
}

/// The ends of a spline are its first and last control point, and say so.
int indexOfEnd(const YxDbEntity& entity, YxDb::ImplicitPointType type) {
    if (!entity.isKindOf(YxDbSpline::desc()) || type > YxDb::kEndImplicit)
        return -1;
    const std::size_t count = EntityAccess::spline(static_cast<const YxDbSpline&>(entity)).control.size();
    return type == YxDb::kStartImplicit ? 0 : static_cast<int>(count) - 1;
}

void readPoint(std::string_view text, std::string_view name, const YxDbEntity& entity, BuiltPlace& place) {
    if (name.starts_with(kControl)) {
        place.isPoint = true;
        readControlPoint(text, name.substr(kControl.size()), entity, place);
        return;
    }
    if (!hasPoint(entity, name))
        refuse(text, "there is no such point; the points of a " + std::string(entity.isA()->name()) + " are " +
                         std::string(pointsOf(entity)));
    const std::optional<YxDb::ImplicitPointType> type = pointTypeNamed(name);
    place.isPosition = !type.has_value();
    place.isPoint = type.has_value();
    place.pointType = type.value_or(YxDb::kStartImplicit);
    place.pointIndex = indexOfEnd(entity, place.pointType);
}

const YxDbEntity& entityNamed(const Scene& scene, std::string_view text, std::string_view name) {
    const auto* entity = scene.entity<YxDbEntity>(name);
    if (entity == nullptr)
        refuse(text, "there is no entity \"" + std::string(name) + "\"; write it before its constraints");
    return *entity;
}

}  // namespace

BuiltPlace scenePlace(const Scene& scene, std::string_view text) {
    const std::size_t nameEnd = std::min(text.find_first_of("[."), text.size());
    const YxDbEntity& entity = entityNamed(scene, text, text.substr(0, nameEnd));
    BuiltPlace place;
    place.entity = HostAccess::idOf(entity);
    std::string_view rest = text.substr(nameEnd);
    if (rest.starts_with("[")) {
        const std::size_t close = rest.find(']');
        const std::optional<int> segment =
            close == std::string_view::npos ? std::nullopt : integerIn(rest.substr(1, close - 1));
        if (!segment || !entity.isKindOf(YxDbPolyline::desc()))
            refuse(text, segment ? "only polylines have segments" : "expected a segment such as p[2]");
        place.segment = *segment;
        rest = rest.substr(close + 1);
    }
    if (rest.starts_with("."))
        readPoint(text, rest.substr(1), entity, place);
    else if (!rest.empty())
        refuse(text, "expected a place such as a, a.end or p[2].start");
    return place;
}

std::string pointSuffix(const YxConstrainedImplicitPoint& point) {
    const YxDb::ImplicitPointType type = HostAccess::pointType(point);
    if (type == YxDb::kControlImplicit)
        return "." + std::string(kControl) + std::to_string(HostAccess::pointIndex(point));
    const auto* found =
        std::find_if(std::begin(kPoints), std::end(kPoints), [&](const PointName& row) { return row.type == type; });
    return found == std::end(kPoints) ? ".?" : "." + std::string(found->name);
}

}  // namespace holdfast
