#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "editing/fates/FateReport.h"
#include "report/Uses.h"

namespace holdfast::report::test {

inline Entity line(const std::string& id, Vec2 start, Vec2 end) {
    return {.id = id, .shape = LineShape{start, end}, .construction = false, .fixed = false};
}

inline Place at(const std::string& entity, PlaceKind kind = PlaceKind::whole, int index = 0) {
    return {entity, kind, index};
}

inline Constraint constraint(const std::string& id, ConstraintType type, std::vector<Place> refs) {
    Constraint made;
    made.id = id;
    made.type = type;
    made.refs = std::move(refs);
    return made;
}

inline Constraint dimension(const std::string& id, ConstraintType type, std::vector<Place> refs, double value) {
    Constraint made = constraint(id, type, std::move(refs));
    made.value = value;
    return made;
}

/// A plate of 100 by 60 with a corner radius, a hole and dimensions; one of every fate after a break of its base line.
Document plate();
FateReport brokenPlate();

/// One entity of every kind.
Document everyShape();

/// The drawings to try things on: those in the folder that HOLDFAST_DRAWINGS names, or else the shipped examples.
std::vector<std::filesystem::path> realDrawings();
Document readDrawing(const std::filesystem::path& path);

}  // namespace holdfast::report::test
