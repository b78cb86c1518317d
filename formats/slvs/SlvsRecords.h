#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formats/Uses.h"

namespace holdfast::formats {

// The records of a .slvs file. Each has a handle, and handles tell how records belong together: request 4 makes the
// entities 00040000 (its curve), 00040001, ... (its points) and 00040040 (its radius), and the coordinates of its point
// i, counted from 0, are the parameters 00040010 + 3 i and the next one. What a group makes has the highest bit set:
// 80020000 is the plane of group 2, 80020001 its normal, 80020002 its origin.

using SlvsHandle = std::uint32_t;
using SlvsQuaternion = std::array<double, 4>;  ///< w, x, y, z
using SlvsPoint = std::array<double, 3>;

constexpr SlvsHandle ofRequest(SlvsHandle request, SlvsHandle number) {
    return request << 16U | number;
}
constexpr SlvsHandle ofGroup(SlvsHandle group, SlvsHandle number) {
    return 0x80000000U | group << 16U | number;
}
/// The parameter of coordinate 0 or 1 of point number `point`, counted from 0.
constexpr SlvsHandle coordinateOf(SlvsHandle request, SlvsHandle point, SlvsHandle coordinate) {
    return ofRequest(request, 0x10 + 3 * point + coordinate);
}
constexpr SlvsHandle ofConstraint(SlvsHandle constraint) {
    return 0x40000000U | constraint;
}
inline constexpr SlvsHandle kSlvsNormal = 0x20, kSlvsDistance = 0x40;  // of a request: entities, and parameters
inline constexpr SlvsHandle kSlvsMostRequests = 0x7fff;
/// "r004", "c01a", "g002", "e00040001": what the program calls requests, constraints, groups and, with at least eight
/// digits, entities.
std::string slvsName(char kind, SlvsHandle handle, std::size_t least = 3);

enum class SlvsGroupKind { space = 5000, plane = 5001 };

enum class SlvsRequestKind {
    workplane = 100,
    point = 101,
    line = 200,
    cubic = 300,
    closedCubic = 301,
    circle = 400,
    arc = 500,
    text = 600,
    image = 700
};

enum class SlvsEntityKind {
    point3d = 2000,
    point2d = 2001,
    pointCopy = 2012,
    normal3d = 3000,
    normal2d = 3001,
    normalCopy = 3010,
    distance = 4000,
    workplane = 10000,
    line = 11000,
    cubic = 12000,
    closedCubic = 12001,
    circle = 13000,
    arc = 14000
};

enum class SlvsConstraintKind {
    coincident = 20,
    distance = 30,
    planeDistance = 31,
    lineDistance = 32,
    projectedDistance = 34,
    onPlane = 41,
    onLine = 42,
    equalLength = 50,
    symmetric = 60,
    symmetricHorizontally = 61,
    symmetricVertically = 62,
    symmetricInLine = 63,
    midpoint = 70,
    horizontal = 80,
    vertical = 81,
    diameter = 90,
    onCircle = 100,
    angle = 120,
    parallel = 121,
    perpendicular = 122,
    arcLineTangent = 123,
    cubicLineTangent = 124,
    curvesTangent = 125,
    equalRadius = 130,
    dragged = 200,
    comment = 1000
};

struct SlvsGroup {
    SlvsHandle handle = 0;
    int type = 0;
    std::string_view name{};
    SlvsHandle plane = 0;  ///< in which it draws
};

struct SlvsParam {
    SlvsHandle handle = 0;
    double value = 0.0;
};

struct SlvsRequest {
    SlvsHandle handle = 0;
    int type = 0, extraPoints = 0;
    SlvsHandle plane = 0, group = 0;
    bool isConstruction = false;
};

/// Where an entity was when the file was written.
struct SlvsEntity {
    SlvsHandle handle = 0;
    int type = 0;
    std::array<SlvsHandle, 2> points{};
    SlvsHandle normal = 0;
    SlvsPoint at{};
    SlvsQuaternion turn{};
};

struct SlvsConstraint {
    SlvsHandle handle = 0;
    int type = 0;
    SlvsHandle group = 0, plane = 0;
    double value = 0.0;
    SlvsHandle param = 0;  ///< where on a line its point is, from 0 at the start to 1 at the end
    SlvsHandle pointA = 0, pointB = 0, entityA = 0, entityB = 0, entityC = 0, entityD = 0;
    bool other = false, other2 = false;
    bool isReference = false;  ///< it only measures
};

/// A file's records in their order. The text has to stay as long as they are used.
struct SlvsFile {
    std::vector<SlvsGroup> groups;
    std::vector<SlvsParam> params;
    std::vector<SlvsRequest> requests;
    std::vector<SlvsEntity> entities;
    std::vector<SlvsConstraint> constraints;

    // By handle: where a record is in its list.
    std::unordered_map<SlvsHandle, std::uint32_t> paramPlaces, entityPlaces, requestPlaces;

    const SlvsParam* param(SlvsHandle handle) const { return find(params, paramPlaces, handle); }
    const SlvsEntity* entity(SlvsHandle handle) const { return find(entities, entityPlaces, handle); }
    /// The request that an entity is of; none for what groups make.
    const SlvsRequest* requestOf(SlvsHandle entity) const { return find(requests, requestPlaces, entity >> 16U); }

private:
    template <class Record>
    static const Record* find(const std::vector<Record>& records,
                              const std::unordered_map<SlvsHandle, std::uint32_t>& places, SlvsHandle handle) {
        const auto found = places.find(handle);
        return found == places.end() ? nullptr : &records[found->second];
    }
};

/// Reads all records. Throws DrawingError, with the line, for what is no such file: another beginning, a number or
/// handle that is none, a record without handle or with that of another, one that the file breaks off in, more than
/// 64 MB or 600,000 records. Cost: linear.
SlvsFile slvsRecords(std::string_view text, const std::string& file);

}  // namespace holdfast::formats
