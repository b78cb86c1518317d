#include "editing/commands/copy/CopyPlaces.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "editing/EditContext.h"
#include "geometry/Angles.h"
#include "geometry/Tolerances.h"

namespace holdfast::editing {

namespace {

/// Copies in one row, and entities that one edit makes: ten times what the largest patterns of real drawings have. A
/// slip of a digit is refused before it fills the memory.
constexpr int kMostTimes = 10'000;
constexpr std::size_t kMostMade = 100'000;

void requireTimes(const Sourced<int>& times) {
    if (times.value < 1 || times.value > kMostTimes)
        throw RefusedWord({"copies are made 1 to " + std::to_string(kMostTimes) + " times", {}, times.column});
}

void requireStep(Vec2 by) {
    if (by == Vec2{})
        throw EditError("a displacement of 0,0 puts copies onto the originals; give another one");
}

std::vector<Vec2> displacements(const CopyGrid& grid) {
    std::vector<Vec2> found;
    const int rows = grid.rows ? grid.rows->times.value : 0;
    for (int j = 0; j <= rows; ++j)
        for (int i = 0; i <= grid.row.times.value; ++i)
            found.push_back(static_cast<double>(i) * grid.row.by +
                            static_cast<double>(j) * (grid.rows ? grid.rows->by : Vec2{}));
    return found;
}

/// Only rows in one direction can meet: their copies lie on one line, in the order of their distances.
void refuseMeeting(const CopyGrid& grid, const std::vector<Vec2>& places) {
    const Vec2 along = unit(grid.row.by);
    if (!grid.rows || std::abs(cross(along, unit(grid.rows->by))) > kSameDirection)
        return;
    std::vector<double> distances;
    distances.reserve(places.size());
    for (const Vec2 place : places)
        distances.push_back(dot(along, place));
    std::sort(distances.begin(), distances.end());
    const double same = kSamePoint * (distances.back() - distances.front());
    for (std::size_t i = 1; i < distances.size(); ++i)
        if (distances[i] - distances[i - 1] <= same)
            throw EditError("both rows run in one direction and some of their copies would lie on each other; give " +
                            std::string("rows that run in two directions"));
}

std::size_t countOf(const CopyGrid& grid) {
    const auto inRow = static_cast<std::size_t>(grid.row.times.value) + 1;
    return inRow * (grid.rows ? static_cast<std::size_t>(grid.rows->times.value) + 1 : 1) - 1;
}

std::size_t countOf(const CopyRing& ring) {
    return static_cast<std::size_t>(ring.times.value);
}

void requireSteps(const CopyGrid& grid) {
    for (const CopyRow* row : {&grid.row, grid.rows ? &*grid.rows : nullptr})
        if (row != nullptr) {
            requireTimes(row->times);
            requireStep(row->by);
        }
}

/// How far a number of steps leads from where they begin, up to half a turn.
double degreesAfter(const CopyRing& ring, int steps) {
    return std::abs(std::remainder(ring.degrees * steps, 360.0));
}

void requireSteps(const CopyRing& ring) {
    requireTimes(ring.times);
    for (int i = 1; i <= ring.times.value; ++i)
        if (degreesAfter(ring, i) <= inDegrees(kSameDirection))
            throw EditError(i == 1 ? "a turn by " + spoken(ring.degrees) +
                                         " degrees puts copies onto the originals; give another angle"
                                   : "copy " + std::to_string(i) + " would lie on the originals; " +
                                         std::to_string(i - 1) + " times goes all the way round");
}

std::vector<PlaneTransform> transformsOf(const CopyGrid& grid) {
    const std::vector<Vec2> places = displacements(grid);
    refuseMeeting(grid, places);
    std::vector<PlaneTransform> transforms;
    for (std::size_t i = 1; i < places.size(); ++i)
        transforms.push_back(translation(places[i]));
    return transforms;
}

std::vector<PlaneTransform> transformsOf(const CopyRing& ring) {
    std::vector<PlaneTransform> transforms;
    for (int i = 1; i <= ring.times.value; ++i)
        transforms.push_back(rotation(ring.about, inRadians(std::remainder(ring.degrees * i, 360.0))));
    return transforms;
}

}  // namespace

std::vector<PlaneTransform> copyPlaces(const Copy& edit) {
    return std::visit(
        [&](const auto& array) {
            requireSteps(array);
            const std::size_t made = countOf(array) * edit.entities.size();
            if (made > kMostMade)
                throw EditError("that would make " + std::to_string(made) + " entities, and one edit makes " +
                                std::to_string(kMostMade) + " at most; copy fewer times");
            return transformsOf(array);
        },
        edit.to);
}

}  // namespace holdfast::editing
