#pragma once

#include <string>
#include <vector>

#include "formats/Uses.h"
#include "formats/slvs/SlvsRecords.h"
#include "geometry/Vec2.h"

namespace holdfast::formats {

/// A sketch's part of a file that is to be written, without what every file has.
struct SlvsSketchRecords {
    struct Request {
        SlvsRequestKind kind = SlvsRequestKind::line;
        std::vector<Vec2> points;
        double radius = 0.0;  ///< of a circle
        bool isConstruction = false;
    };
    static constexpr SlvsHandle kFirstRequest = 4;  ///< the three before are the planes that every file has
    static constexpr SlvsHandle kGroup = 2;
    static constexpr SlvsHandle kPlane = ofGroup(kGroup, 0), kOrigin = ofGroup(kGroup, 2);

    std::vector<Request> requests;  ///< their handles count on from kFirstRequest
    std::vector<SlvsConstraint> constraints;
    std::vector<SlvsParam> params;  ///< of the constraints
};

/// The text of a file with one sketch, in the world's xy plane.
std::string slvsTextOf(const SlvsSketchRecords& sketch);

}  // namespace holdfast::formats
