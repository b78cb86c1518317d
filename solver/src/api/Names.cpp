#include <cstdio>
#include <cstdlib>

#include "solver/src/api/SketchImpl.h"

/// Ids and errors in words.
namespace holdfast::solver {

std::string toString(EntityId id) {
    return "e" + std::to_string(id.number());
}

std::string toString(ConstraintId id) {
    return "c" + std::to_string(id.number());
}

std::string toString(PointId id) {
    std::string index = std::to_string(id.index()), entity = toString(id.entity());
    switch (id.place()) {
        case PointId::Place::self:
            return entity;
        case PointId::Place::start:
            return "the start of " + entity;
        case PointId::Place::end:
            return "the end of " + entity;
        case PointId::Place::centre:
            return "the centre of " + entity;
        case PointId::Place::middle:
            return "the middle of " + entity;
        case PointId::Place::control:
            return "control point " + index + " of " + entity;
        case PointId::Place::vertex:
            return "vertex " + index + " of " + entity;
        case PointId::Place::segmentMiddle:
            return "the middle of segment " + index + " of " + entity;
        case PointId::Place::segmentCentre:
            break;
    }
    return "the centre of segment " + index + " of " + entity;
}

std::string toString(CurveId id) {
    const std::string entity = toString(id.entity());
    return id.isSegment() ? "segment " + std::to_string(id.segment()) + " of " + entity : entity;
}

void endWith(const Error& error) noexcept {
    std::fprintf(stderr, "holdfast: %s: %s; %s\n", error.where.c_str(), error.what.c_str(), error.remedy.c_str());
    std::abort();
}

Error noSuch(EntityId entity) {
    return {"the sketch has no such entity", toString(entity), "it was removed, or belongs to another sketch"};
}

Error noSuch(ConstraintId constraint) {
    return {"the sketch has no such constraint", toString(constraint), "it was removed, or belongs to another sketch"};
}

std::string withoutName(const std::string& message) {
    const std::size_t colon = message.find(": ");
    return colon == std::string::npos ? message : message.substr(colon + 2);
}

}  // namespace holdfast::solver
