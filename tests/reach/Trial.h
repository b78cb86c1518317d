#pragma once

#include <string>
#include <vector>

#include "document/Document.h"
#include "solver/src/solving/Solve.h"

namespace holdfast::reach {

using namespace document;
using namespace solver::detail;

/// How an edit that was asked for in one go ended.
enum class Ending { done, conflict, howFar };

/// One edit of one drawing, in one go and, where that was refused, along its way in small steps.
struct Trial {
    std::string what;      ///< the edit in words: "c9 22 -> 26.4"
    std::string answer{};  ///< what a refusal said
    Ending ending = Ending::done;
    int steps = 0;              ///< refused at once: how many steps reach it; 0: none that was tried
    bool isProven = false;      ///< the conflict: it really needs every member
    bool isRuined = false;      ///< done, but something collapsed or turned over
    int releasedInVain = 0;     ///< constraints that were given up at once and stay in steps
    int sizesInVain = 0;        ///< that changed and could have stayed
    double residual = 0.0;      ///< of what was asked and of all constraints, as a part of the drawing's size
    double milliseconds = 0.0;  ///< at once, of processor time

    bool isFalseRefusal() const { return ending != Ending::done && steps > 0; }
};

/// Everything that holds after an edit holds to this part of the drawing's size.
constexpr double kExact = 1e-9;

/// The numbers of steps that a way is divided into where it is refused in one go.
constexpr int kStepCounts[] = {20, 100};

/// How closely an edit is looked at.
enum class Judging {
    whole,   ///< what is refused is tried in steps, what is done is held against what could have stayed
    atOnce,  ///< only what it does in one go, and how long that takes
};

/// A drawing whose constraints hold, as a sketch; its branches are those of now.
SketchData heldSketch(const Document& document);

/// A driving dimension of the drawing gets its value times the factor.
Trial tryDimension(const SketchData& sketch, int constraint, double factor, Judging judging);

/// A line is made longer at its end by this part of its length.
Trial tryLengthening(const Document& document, const Entity& line, double part, Judging judging);

/// A line is turned about its start.
Trial tryRotation(const Document& document, const Entity& line, double degrees, Judging judging);

/// The radius of a circle or an arc; 0 for others.
double radiusOf(const Shape& shape);

/// A circle or an arc gets its radius times the factor.
Trial trySetting(const Document& document, const Entity& round, double factor, Judging judging);

/// The end of a line is dragged across it, by this part of its length.
Trial tryDragging(const Document& document, const Entity& line, double part, Judging judging);

}  // namespace holdfast::reach
