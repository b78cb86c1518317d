#pragma once

#include <string>
#include <utility>
#include <vector>

#include "hosting/Uses.h"

namespace holdfast::hosting {

/// A dimension that could be led from its value to another one, but not to the one asked for.
struct LedDimension {
    std::string id;
    double from = 0.0, to = 0.0;
};

/// What the last evaluation of a drawing came to.
struct Evaluation {
    bool solved = true;
    bool unchanged = true;                 ///< nothing had to move
    std::vector<std::string> conflicting;  ///< ids of constraints that stand in the way, in drawing order
    std::string complaint;                 ///< what else was wrong, in words; else empty
    double followed = 0.0;                 ///< the part of its way that a failed edit could be followed; below 1
    std::vector<LedDimension> led;         ///< how far the dimensions of a failed edit could be led
    std::string worst;                     ///< id of the constraint that holds worst; empty: none
    double residual = 0.0;                 ///< of that one, as a length
    double miss = 0.0;                     ///< how far the edit stayed from what was asked; 0: it was met
    std::vector<std::string> heldBackBy;   ///< the constraints that made a drag miss, in drawing order
    std::vector<std::string> leftAlone;    ///< constraints that did not hold before, and need not afterwards
    int iterations = 0;
    std::vector<std::pair<std::string, double>> movements;  ///< entities that moved, and how far
};

}  // namespace holdfast::hosting
