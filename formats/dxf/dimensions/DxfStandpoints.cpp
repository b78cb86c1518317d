#include "formats/dxf/dimensions/DxfStandpoints.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

#include "document/Places.h"
#include "geometry/Segments.h"

namespace holdfast::formats {
namespace {

/// More places than meet in one point of a drawing that somebody has made.
constexpr std::size_t kMostOnASpot = 16;

constexpr std::array<double, 3> kNeighbours{-1.0, 0.0, 1.0};

int rankOf(PlaceKind kind) {
    switch (kind) {
        case PlaceKind::centre:
        case PlaceKind::segmentCentre:
            return 1;
        case PlaceKind::mid:
        case PlaceKind::segmentMid:
            return 2;
        case PlaceKind::control:
            return 3;
        default:
            return 0;
    }
}

}  // namespace

DxfStandpoints::DxfStandpoints(const std::vector<Entity>& entities, const std::vector<Vec2>& wanted, double tolerance)
    : m_tolerance(tolerance) {
    for (const Vec2 point : wanted) {
        const Cell cell = cellOf(point);
        for (const double right : kNeighbours)
            for (const double up : kNeighbours)
                m_cells[{cell.first + right, cell.second + up}];
    }
    for (std::size_t i = 0; i < entities.size(); ++i)
        addPlaces(i, entities[i]);
}

/// As whole numbers without a limit: coordinates may be as large as they like.
DxfStandpoints::Cell DxfStandpoints::cellOf(Vec2 point) const {
    return {std::floor(point.x / m_tolerance), std::floor(point.y / m_tolerance)};
}

void DxfStandpoints::add(std::size_t entity, const Entity& of, PlaceKind kind, int index) {
    const Place place{std::string(), kind, index};
    const std::optional<Vec2> point = pointAt(of.shape, place);
    if (!point)
        return;
    const auto cell = m_cells.find(cellOf(*point));
    if (cell == m_cells.end() || cell->second.size() >= kMostOnASpot)
        return;
    cell->second.push_back({entity, {of.id, kind, index}, *point});
}

void DxfStandpoints::addPlaces(std::size_t entity, const Entity& of) {
    if (const auto* polyline = std::get_if<PolylineShape>(&of.shape)) {
        for (int i = 0; i < static_cast<int>(segmentCount(*polyline)); ++i)
            for (const PlaceKind kind :
                 {PlaceKind::segmentStart, PlaceKind::segmentEnd, PlaceKind::segmentMid, PlaceKind::segmentCentre})
                add(entity, of, kind, i);
        return;
    }
    if (const auto* spline = std::get_if<SplineShape>(&of.shape))
        for (int i = 0; i < static_cast<int>(spline->control.size()); ++i)
            add(entity, of, PlaceKind::control, i);
    for (const PlaceKind kind : {PlaceKind::whole, PlaceKind::start, PlaceKind::end, PlaceKind::centre, PlaceKind::mid})
        add(entity, of, kind);
}

std::vector<DxfStandpoint> DxfStandpoints::near(Vec2 point) const {
    std::vector<DxfStandpoint> found;
    const Cell middle = cellOf(point);
    for (const double right : kNeighbours)
        for (const double up : kNeighbours)
            if (const auto cell = m_cells.find({middle.first + right, middle.second + up}); cell != m_cells.end())
                for (const DxfStandpoint& each : cell->second)
                    if (distance(each.point, point) <= m_tolerance)
                        found.push_back(each);
    std::stable_sort(found.begin(), found.end(), [](const DxfStandpoint& a, const DxfStandpoint& b) {
        const int first = rankOf(a.place.kind), second = rankOf(b.place.kind);
        return first != second ? first < second : a.entity < b.entity;
    });
    if (found.size() > kMostOnASpot)
        found.resize(kMostOnASpot);
    return found;
}

}  // namespace holdfast::formats
