#include "formats/slvs/SlvsPlane.h"

#include <cmath>

namespace holdfast::formats {
namespace {

constexpr double kAligned = 1e-9;  // how far the parts of a unit vector may be from 0 and 1

double dotIn3d(const SlvsPoint& a, const SlvsPoint& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
SlvsPoint minus(const SlvsPoint& a, const SlvsPoint& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

SlvsPoint xAxisOf(const SlvsQuaternion& q) {
    const auto [w, x, y, z] = q;
    return {w * w + x * x - y * y - z * z, 2.0 * (w * z + x * y), 2.0 * (x * z - w * y)};
}
SlvsPoint yAxisOf(const SlvsQuaternion& q) {
    const auto [w, x, y, z] = q;
    return {2.0 * (x * y - w * z), w * w - x * x + y * y - z * z, 2.0 * (w * x + y * z)};
}
SlvsPoint normalOf(const SlvsQuaternion& q) {
    const auto [w, x, y, z] = q;
    return {2.0 * (w * y + x * z), 2.0 * (y * z - w * x), w * w - x * x - y * y + z * z};
}

/// The turn of a normal, of length 1; the three planes that every file has are where they are whatever it says.
std::optional<SlvsQuaternion> turnOf(const SlvsFile& file, SlvsHandle normal) {
    constexpr SlvsQuaternion references[] = {{1.0, 0.0, 0.0, 0.0}, {0.5, 0.5, 0.5, 0.5}, {0.5, -0.5, -0.5, -0.5}};
    for (SlvsHandle request = 1; request <= 3; ++request)
        if (normal == ofRequest(request, kSlvsNormal))
            return references[request - 1];
    const SlvsEntity* entity = file.entity(normal);
    if (entity == nullptr || entity->type < static_cast<int>(SlvsEntityKind::normal3d) ||
        entity->type >= static_cast<int>(SlvsEntityKind::distance))
        return std::nullopt;
    SlvsQuaternion turn = entity->turn;
    double size = 0.0;
    for (const double part : turn)
        size = std::hypot(size, part);
    if (!(size > kAligned) || !std::isfinite(size))
        return std::nullopt;
    for (double& part : turn)
        part /= size;
    return turn;
}

}  // namespace

std::optional<SlvsPlane> SlvsPlane::of(const SlvsFile& file, SlvsHandle workplane) {
    const SlvsEntity* entity = file.entity(workplane);
    if (entity == nullptr || entity->type != static_cast<int>(SlvsEntityKind::workplane))
        return std::nullopt;
    const SlvsEntity* origin = file.entity(entity->points[0]);
    const std::optional<SlvsQuaternion> turn = turnOf(file, entity->normal);
    if (origin == nullptr || !turn)
        return std::nullopt;
    SlvsPlane plane;
    plane.m_origin = origin->at;
    plane.m_x = xAxisOf(*turn);
    plane.m_y = yAxisOf(*turn);
    return plane;
}

Vec2 SlvsPlane::seen(const SlvsPoint& point) const {
    const SlvsPoint from = minus(point, m_origin);
    return {dotIn3d(from, m_x), dotIn3d(from, m_y)};
}

std::optional<SlvsAxis> SlvsPlane::alongNormal(const SlvsFile& file, SlvsHandle normal) const {
    const std::optional<SlvsQuaternion> turn = turnOf(file, normal);
    if (!turn)
        return std::nullopt;
    const SlvsPoint direction = normalOf(*turn);
    const double x = dotIn3d(direction, m_x), y = dotIn3d(direction, m_y);
    if (std::abs(std::abs(x) - 1.0) <= kAligned && std::abs(y) <= kAligned)
        return SlvsAxis{true, x < 0.0};
    if (std::abs(std::abs(y) - 1.0) <= kAligned && std::abs(x) <= kAligned)
        return SlvsAxis{false, y < 0.0};
    return std::nullopt;
}

std::optional<SlvsAxis> SlvsPlane::cutBy(const SlvsFile& file, SlvsHandle workplane) const {
    const SlvsEntity* entity = file.entity(workplane);
    if (entity == nullptr || entity->type != static_cast<int>(SlvsEntityKind::workplane))
        return std::nullopt;
    const SlvsEntity* origin = file.entity(entity->points[0]);
    const std::optional<SlvsAxis> normal = alongNormal(file, entity->normal);
    if (origin == nullptr || !normal)
        return std::nullopt;
    const Vec2 at = seen(origin->at);
    if (std::abs(normal->isX ? at.x : at.y) > kAligned)
        return std::nullopt;
    return SlvsAxis{!normal->isX, normal->isReversed};
}

std::optional<Plane> SlvsPlane::inWorld() const {
    const Plane plane{m_origin, m_x, m_y};
    return plane == Plane() ? std::nullopt : std::optional(plane);
}

}  // namespace holdfast::formats
