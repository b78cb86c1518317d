#include "formats/dxf/dimensions/DxfLinesThrough.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <variant>

#include "geometry/Segments.h"

namespace holdfast::formats {
namespace {

constexpr std::size_t kMostLooks = 20'000'000;
/// More lines than pass through one point of a drawing that somebody has made.
constexpr std::size_t kMostThroughAPoint = 16;

bool isBetween(const DxfLine& line, Vec2 point, double tolerance) {
    const Vec2 way = line.end - line.start;
    const double size = norm(way), along = dot(point - line.start, way) / size;
    return std::abs(cross(way, point - line.start)) <= tolerance * size && along >= -tolerance &&
           along <= size + tolerance;
}

}  // namespace

DxfLinesThrough::DxfLinesThrough(const std::vector<Entity>& entities, const std::vector<Vec2>& wanted, double tolerance)
    : m_tolerance(tolerance) {
    for (const Vec2 point : wanted)
        m_lines[{point.x, point.y}];
    for (const Entity& entity : entities) {
        const auto* polyline = std::get_if<PolylineShape>(&entity.shape);
        const std::size_t segments = polyline == nullptr ? 1 : segmentCount(*polyline);
        for (std::size_t i = 0; i < segments; ++i)
            if (const auto line = lineOf(entity, {entity.id, PlaceKind::segment, static_cast<int>(i)}))
                add(*line);
    }
}

void DxfLinesThrough::add(const DxfLine& line) {
    const auto [left, right] = std::minmax(line.start.x, line.end.x);
    const auto [low, high] = std::minmax(line.start.y, line.end.y);
    const double least = -std::numeric_limits<double>::infinity();
    for (auto at = m_lines.lower_bound({left - m_tolerance, least});
         at != m_lines.end() && at->first.first <= right + m_tolerance && m_looks < kMostLooks; ++at, ++m_looks) {
        const Vec2 point{at->first.first, at->first.second};
        if (point.y >= low - m_tolerance && point.y <= high + m_tolerance && at->second.size() < kMostThroughAPoint &&
            isBetween(line, point, m_tolerance))
            at->second.push_back(line);
    }
}

const std::vector<DxfLine>& DxfLinesThrough::at(Vec2 point) const {
    static const std::vector<DxfLine> none;
    const auto found = m_lines.find({point.x, point.y});
    return found == m_lines.end() ? none : found->second;
}

}  // namespace holdfast::formats
