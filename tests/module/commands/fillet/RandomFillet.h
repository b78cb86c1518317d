#pragma once

#include <string>
#include <vector>

#include "host/model/Scene.h"
#include "tests/module/commands/fillet/PolylineFilletCommand.h"
#include "tests/module/commands/fillet/SelfFilletCommand.h"

namespace holdfast::module {

/// A polyline on a coarse grid, on which vertices of one polyline and of several fall together now and then.
struct RandomPolylineShape {
    int count = 2;
    bool closed = false;

    int segments() const { return closed ? count : count - 1; }
};

/// Polylines with arcs among their segments and identifiers that are no indices, a line b, random constraints on all of
/// them, and two lines elsewhere with constraints of their own.
struct RandomPolylines {
    std::vector<std::string> names;
    std::vector<RandomPolylineShape> polylines;  // by name
    bool repeatedIdentifier = false;
    std::string text;

    /// What the text cannot say: coincidences at corners, an identifier that stands twice.
    void prepare(Scene& scene) const;
};

RandomPolylines randomPolylines(const std::vector<std::string>& names, int least, bool mayClose);

/// A fillet in one of the five modes that the polyline allows, with its points on or beside the grid.
SelfFilletEdit randomSelfFillet(const RandomPolylineShape& shape);
PolylineCutBack randomCutBack(const RandomPolylineShape& shape);

}  // namespace holdfast::module
