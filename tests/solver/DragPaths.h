#pragma once

#include <functional>
#include <string>
#include <vector>

#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// A mechanism and the way of a pointer that holds one of its points: there and back, or once round.
struct DragPath {
    std::string name;
    SketchData sketch;
    int handle = -1;          ///< first of two values
    std::vector<Vec2> goals;  ///< the last one is where the handle is at the beginning
};

/// Mechanisms of every kind, each led along 200 steps: a slider beside its rail, a slider-crank through its dead
/// centres, an arm of two bars through its straight position, a chain of equal links, a chain of tangent lines and
/// arcs, a four-bar linkage round 360 degrees, a point on a spline.
std::vector<DragPath> scriptedDrags();

/// What a path brought to light.
struct DragFigures {
    int unsolved = 0;         ///< steps that failed
    int held = 0;             ///< steps that constraints did not let through
    double jump = 0.0;        ///< longest movement of a value in one step, in steps of the pointer
    int flips = 0;            ///< steps after which something had turned inside out or over
    double hysteresis = 0.0;  ///< how far the end is from the beginning, as a part of the size
    double residual = 0.0;    ///< the worst of all steps, as a part of the size
    double milliseconds = 0.0;
};

/// Follows the path, and lands at its end.
DragFigures followed(DragPath path);

/// The same with another way of making a step, which leaves what it finds in the path's sketch and says whether it has
/// found anything, and of landing.
DragFigures figuresOf(DragPath& path, const std::function<bool(Vec2 goal)>& step, const std::function<void()>& land);

}  // namespace holdfast::solver::detail
