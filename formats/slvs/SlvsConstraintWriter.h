#pragma once

#include <cstddef>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/slvs/SlvsHandles.h"
#include "formats/slvs/SlvsRecords.h"
#include "formats/slvs/SlvsText.h"
#include "geometry/DisjointSets.h"

namespace holdfast::formats {

/// Says constraints in the file's terms.
class SlvsConstraintWriter {
public:
    /// Most so many points are known.
    SlvsConstraintWriter(const SlvsHandles& handles, std::size_t points) : m_handles(handles), m_meeting(points) {}

    /// Notes that two points are one by what the drawing says. All such are known before the first constraint is added.
    void noteMeeting(const Constraint& constraint);
    /// False for what the file cannot say.
    bool add(const Constraint& constraint);
    /// Holds all points of an entity, and its radius, where they are.
    bool hold(const Place& place);
    /// Of each two cubics the second begins where the first ends.
    void joinPieces(const std::vector<std::pair<SlvsHandle, SlvsHandle>>& pieces);

    /// Gives what was added to the sketch.
    void giveTo(SlvsSketchRecords& sketch) {
        sketch.constraints = std::move(m_out);
        sketch.params = std::move(m_params);
    }

private:
    struct Fields {
        SlvsHandle pointA = 0, pointB = 0, entityA = 0, entityB = 0;
        double value = 0.0;
        bool other = false, other2 = false;
    };
    bool put(SlvsConstraintKind kind, const Fields& fields);
    void join(SlvsHandle a, SlvsHandle b);
    bool areOne(SlvsHandle a, SlvsHandle b);
    std::size_t numberOf(SlvsHandle point);

    bool addCoincidence(const Constraint& constraint);
    bool addMidpoint(const Place& point, const Place& line);
    bool addOnCurve(const Place& point, const Place& curve);
    bool addUpright(const std::vector<Place>& refs, SlvsConstraintKind kind);
    bool addParallel(const Constraint& constraint);
    bool addPerpendicular(const Constraint& constraint);
    bool addCollinear(const Constraint& constraint);
    bool addEqual(const Constraint& constraint);
    bool addSymmetry(const Constraint& constraint);
    bool addDistance(const Constraint& constraint);
    bool addGapOfLine(const Place& point, const Place& line, double value);
    bool addCoordinate(const Constraint& constraint, bool isX);
    bool addSize(const Constraint& constraint, double factor, bool isRadius);
    bool addAngle(const Constraint& constraint);
    bool addAngleBetween(const Place& a, const Place& b, double value);
    bool addTangency(const Constraint& constraint);
    bool touch(const Place& a, const Place& b, bool meetsThere);
    bool drag(SlvsHandle point);

    const SlvsHandles& m_handles;
    DisjointSets m_meeting;
    std::unordered_map<SlvsHandle, std::size_t> m_numbers;  // of points in m_meeting
    std::unordered_set<SlvsHandle> m_dragged;
    bool m_isReference = false;
    std::vector<SlvsConstraint> m_out;
    std::vector<SlvsParam> m_params;
};

}  // namespace holdfast::formats
