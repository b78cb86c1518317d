#pragma once

#include "workbench/evaluator/Figure.h"

namespace holdfast {

/// Elements that constraints tie together, and how freely they can move.
struct FigurePart {
    std::vector<int> entities;  ///< ascending
    int freedom = 0;            ///< values that remain to be chosen
};

/// A constraint that others imply, all of it or some of its equations.
struct Redundancy {
    int constraint = -1;
    int spareEquations = 0;
    bool isWhole = false;
};

struct Diagnosis {
    int freedom = 0;                          ///< of the whole figure
    std::vector<FigurePart> parts;            ///< by their first element; fixed elements belong to none
    std::vector<Redundancy> redundant;        ///< ascending; of two that imply each other the later drawn one
    std::vector<std::vector<int>> conflicts;  ///< sets of constraints that cannot hold together
    int worstConstraint = -1;                 ///< the binding constraint that is farthest from holding
    double worstMiss = 0.0;                   ///< by how much, as a length
};

/// Degrees of freedom, redundancy and conflicts of a figure where it is. Conflicts are searched for only when a
/// constraint does not hold; the figure is not changed. Throws FigureError as solve does.
Diagnosis diagnose(const Figure& figure);

}  // namespace holdfast
