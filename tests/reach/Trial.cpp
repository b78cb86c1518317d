#include "tests/reach/Trial.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

#include "benchmarks/Timing.h"
#include "editing/Session.h"
#include "hosting/evaluator/SketchFromDocument.h"
#include "solver/src/sketch/Index.h"
#include "tests/reach/Judge.h"

namespace holdfast::reach {

using namespace editing;

namespace {

/// Steps in which a way is gone whose end looks turned inside out, and how near its end is to the answer's, as a part
/// of the size: another of the many answers of a loose drawing is another answer.
constexpr int kStepsOfSweep = 50;
constexpr double kSamePlace = 0.05;

std::string shortly(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", number);
    return text;
}

/// As a drawing's owner changes a dimension: the value is another, everything follows.
SolveResult changeDimension(SketchData& sketch, int constraint, double value, bool namesConflicts) {
    sketch.constraints[at(constraint)].value = value;
    return solve(sketch, {.keepsShapes = true, .namesConflicts = namesConflicts});
}

/// The value of a dimension after so many steps of all; the last is exact.
double valueAt(double first, double last, int step, int steps) {
    return step == steps ? last : first + (last - first) * step / steps;
}

/// An answer that looks turned inside out beside the beginning may have come there by a sound way: a sweep that grows
/// by more than half a turn does. Then every step of that way is sound beside the one before, and it ends where the
/// answer is.
template <class Step>
bool isWholeAllTheWay(const SketchData& start, const SketchData& answer, const Step& take) {
    SketchData now = start;
    for (int step = 1; step <= kStepsOfSweep; ++step) {
        const SketchData before = now;
        if (!take(step, now) || now.values.size() != before.values.size() || !isSoundAfter(before, now))
            return false;
    }
    if (now.values.size() != answer.values.size())
        return false;
    for (std::size_t v = 0; v < now.values.size(); ++v)
        if (!(std::abs(now.values[v] - answer.values[v]) <= kSamePlace * start.size()))
            return false;
    return true;
}

/// Step by step, each from where the one before ended. The end has to be sound beside the beginning.
bool reachesDimension(const SketchData& start, int constraint, double value, int steps) {
    SketchData sketch = start;
    const double first = start.constraints[at(constraint)].value;
    for (int step = 1; step <= steps; ++step) {
        sketch.takeReference();
        if (!changeDimension(sketch, constraint, valueAt(first, value, step, steps), false).isSolved())
            return false;
    }
    return worstResidual(start, sketch) <= kExact && isSoundAfter(start, sketch);
}

std::string answerOf(const SketchData& sketch, const SolveResult& result) {
    if (result.conflicting.empty())
        return result.degeneracy ? result.degeneracy->what : "no way was found";
    constexpr std::size_t most = 8;
    std::string names =
        (result.isConflictMinimal ? "conflict of " : "among ") + std::to_string(result.conflicting.size()) + ":";
    for (std::size_t i = 0; i < std::min(most, result.conflicting.size()); ++i)
        names += " " + sketch.constraints[at(result.conflicting[i])].id;
    return names;
}

/// What a session did with the edits, one after the other.
struct Outcome {
    bool isDone = true;  ///< and as a whole: a drag that falls short is not
    std::string error{};
    Document document{};
    std::size_t deleted = 0;  ///< constraints
};

template <class E>
Outcome applied(const Document& document, const std::vector<E>& edits) {
    Session session(document);
    Outcome outcome;
    for (const E& edit : edits) {
        const EditResult& result = session.apply(edit);
        outcome.isDone = result.outcome.done();
        outcome.error = result.outcome.error;
        if (outcome.isDone && result.outcome.shortfall.by > 0.0) {
            outcome.isDone = false;
            outcome.error = "falls short by " + shortly(result.outcome.shortfall.by);
        }
        if (!outcome.isDone)
            return outcome;
    }
    outcome.document = session.document();
    const std::size_t left = outcome.document.constraints.size();
    outcome.deleted = document.constraints.size() - std::min(document.constraints.size(), left);
    return outcome;
}

const Entity& entityIn(const Document& document, const std::string& id) {
    return *std::find_if(document.entities.begin(), document.entities.end(),
                         [&](const Entity& entity) { return entity.id == id; });
}

const LineShape& lineIn(const Document& document, const std::string& id) {
    return std::get<LineShape>(entityIn(document, id).shape);
}

bool isSoundAfter(const Document& before, const Document& after) {
    return reach::isSoundAfter(sketchFrom(before), sketchFrom(after));
}

template <class Divide>
bool isWholeAllTheWay(const Document& before, const Document& after, const Divide& divided) {
    Session session(before);
    const auto edits = divided(kStepsOfSweep);
    return isWholeAllTheWay(sketchFrom(before), sketchFrom(after), [&](int step, SketchData& now) {
        if (!session.apply(edits[at(step - 1)]).outcome.done())
            return false;
        now = sketchFrom(session.document());
        return true;
    });
}

/// The line stays where the edit has put it; other sizes may have followed in vain.
int sizesInVain(const Document& before, const Document& after, const std::string& line) {
    const SketchData was = sketchFrom(before), is = sketchFrom(after);
    if (was.entities.size() != is.entities.size())
        return 0;
    std::vector<Target> targets;
    for (const SketchEntity& entity : is.entities) {
        if (entity.id != line)
            continue;
        for (int v = entity.firstValue; v < entity.firstValue + entity.valueCount; ++v)
            targets.push_back({v, is.values[at(v)]});
    }
    return reach::sizesInVain(was, is, targets);
}

/// How the whole edit is divided into steps, and how far its result is from what was asked, as a length.
template <class Divide, class Miss>
Trial tryEdit(const Document& document, const std::string& line, std::string what, Divide divided, Miss miss,
              Judging judging) {
    Trial trial{.what = std::move(what)};
    Outcome whole;
    trial.milliseconds = timed([&] { whole = applied(document, divided(1)); });
    if (whole.isDone) {
        const SketchData before = sketchFrom(document), after = sketchFrom(whole.document);
        trial.residual = std::max(worstResidual(before, after), miss(whole.document) / before.size());
        trial.isRuined = !isSoundAfter(document, whole.document) &&
                         (judging == Judging::atOnce || !isWholeAllTheWay(document, whole.document, divided));
        if (judging == Judging::atOnce)
            return trial;
        trial.sizesInVain = sizesInVain(document, whole.document, line);
        if (whole.deleted > 0) {
            const Outcome inSteps = applied(document, divided(kStepCounts[0]));
            if (inSteps.isDone && inSteps.deleted < whole.deleted && isSoundAfter(document, inSteps.document))
                trial.releasedInVain = static_cast<int>(whole.deleted - inSteps.deleted);
        }
        return trial;
    }
    trial.answer = whole.error;
    const bool namesConflict =
        whole.error.find(" in the way") != std::string::npos || whole.error.find("cannot hold") != std::string::npos;
    trial.ending = namesConflict ? Ending::conflict : Ending::howFar;
    if (judging == Judging::atOnce)
        return trial;
    for (const int steps : kStepCounts) {
        const Outcome inSteps = applied(document, divided(steps));
        if (!inSteps.isDone || inSteps.deleted > 0 || !isSoundAfter(document, inSteps.document))
            continue;
        trial.steps = steps;
        break;
    }
    trial.isProven = namesConflict && trial.steps == 0;
    return trial;
}

double lengthOf(const LineShape& line) {
    return std::hypot(line.end.x - line.start.x, line.end.y - line.start.y);
}

}  // namespace

SketchData heldSketch(const Document& document) {
    SketchData sketch = sketchFrom(document);
    sketch.takeReference();
    return sketch;
}

double radiusOf(const Shape& shape) {
    if (const auto* circle = std::get_if<CircleShape>(&shape))
        return circle->radius;
    const auto* arc = std::get_if<ArcShape>(&shape);
    return arc != nullptr ? arc->radius : 0.0;
}

Trial tryDimension(const SketchData& sketch, int constraint, double factor, Judging judging) {
    const SketchConstraint& dimension = sketch.constraints[at(constraint)];
    const double value = factor * dimension.value;
    Trial trial{.what = dimension.id + " " + shortly(dimension.value) + " -> " + shortly(value)};
    SketchData after = sketch;
    SolveResult result;
    trial.milliseconds = timed([&] { result = changeDimension(after, constraint, value, true); });
    if (result.isSolved()) {
        trial.residual = worstResidual(sketch, after);
        trial.isRuined =
            !isSoundAfter(sketch, after) &&
            (judging == Judging::atOnce || !isWholeAllTheWay(sketch, after, [&](int step, SketchData& now) {
                 now.takeReference();
                 return changeDimension(now, constraint, valueAt(dimension.value, value, step, kStepsOfSweep), false)
                     .isSolved();
             }));
        if (judging == Judging::atOnce)
            return trial;
        trial.sizesInVain = reach::sizesInVain(sketch, after, {});
        return trial;
    }
    trial.answer = answerOf(sketch, result);
    trial.ending = result.isConflictMinimal ? Ending::conflict : Ending::howFar;
    if (judging == Judging::atOnce)
        return trial;
    for (const int steps : kStepCounts) {
        if (!reachesDimension(sketch, constraint, value, steps))
            continue;
        trial.steps = steps;
        return trial;
    }
    trial.isProven = isProvenConflict(sketch, after, result.conflicting);
    return trial;
}

Trial tryLengthening(const Document& document, const Entity& line, double part, Judging judging) {
    const double length = lengthOf(std::get<LineShape>(line.shape));
    const auto divided = [&](int steps) {
        return std::vector<Lengthen>(at(steps),
                                     Lengthen{line.id, CurveEnd::end, Lengthen::Way::by, part * length / steps});
    };
    const auto miss = [&](const Document& after) {
        return std::abs(lengthOf(lineIn(after, line.id)) - (1.0 + part) * length);
    };
    return tryEdit(document, line.id, "lengthen " + line.id + " end by " + shortly(part * length), divided, miss,
                   judging);
}

Trial tryRotation(const Document& document, const Entity& line, double degrees, Judging judging) {
    const LineShape& shape = std::get<LineShape>(line.shape);
    const Vec2 about = shape.start;
    const auto divided = [&](int steps) {
        return std::vector<Rotate>(at(steps), Rotate{{line.id}, about, degrees / steps});
    };
    const auto miss = [&](const Document& after) {
        const LineShape& turned = lineIn(after, line.id);
        const double angle = degrees * std::numbers::pi / 180.0, c = std::cos(angle), s = std::sin(angle);
        const Vec2 was{shape.end.x - shape.start.x, shape.end.y - shape.start.y};
        const Vec2 asked{c * was.x - s * was.y, s * was.x + c * was.y};
        const Vec2 is{turned.end.x - turned.start.x, turned.end.y - turned.start.y};
        const double length = std::hypot(is.x, is.y), wanted = std::hypot(asked.x, asked.y);
        return std::hypot(is.x / length - asked.x / wanted, is.y / length - asked.y / wanted) * wanted;
    };
    return tryEdit(document, line.id, "rotate " + line.id + " by " + shortly(degrees), divided, miss, judging);
}

Trial trySetting(const Document& document, const Entity& round, double factor, Judging judging) {
    const double radius = radiusOf(round.shape);
    const auto divided = [&](int steps) {
        std::vector<Set> edits;
        for (int step = 1; step <= steps; ++step)
            edits.push_back({round.id, Property::radius, 0, radius * (1.0 + (factor - 1.0) * step / steps)});
        return edits;
    };
    const auto miss = [&](const Document& after) {
        return std::abs(radiusOf(entityIn(after, round.id).shape) - factor * radius);
    };
    return tryEdit(document, round.id, "set " + round.id + " radius " + shortly(factor * radius), divided, miss,
                   judging);
}

Trial tryDragging(const Document& document, const Entity& line, double part, Judging judging) {
    const LineShape& shape = std::get<LineShape>(line.shape);
    const Vec2 by{-part * (shape.end.y - shape.start.y), part * (shape.end.x - shape.start.x)};
    const auto divided = [&](int steps) {
        const Place end{line.id, PlaceKind::end};
        return std::vector<Drag>(at(steps), Drag{Sourced<Place>(end), {by.x / steps, by.y / steps}});
    };
    const auto miss = [&](const Document& after) {
        const Vec2 end = lineIn(after, line.id).end;
        return std::hypot(end.x - shape.end.x - by.x, end.y - shape.end.y - by.y);
    };
    return tryEdit(document, line.id, "drag " + line.id + ".end by " + shortly(by.x) + "," + shortly(by.y), divided,
                   miss, judging);
}

}  // namespace holdfast::reach
