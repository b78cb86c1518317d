#include <array>
#include <cstdio>

#include <holdfast/solver/Diagnose.h>
#include <holdfast/solver/Solve.h>

/// Results as text.
namespace holdfast::solver {

namespace {

std::string inDigits(double number) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.2g", number);
    return text.data();
}

std::string count(std::size_t number, const char* one, const char* many) {
    return std::to_string(number) + " " + (number == 1 ? one : many);
}

template <class Id>
std::string list(const std::vector<Id>& ids) {
    std::string text;
    for (const Id& id : ids)
        text += (text.empty() ? "" : ", ") + toString(id);
    return text;
}

std::string inMilliseconds(double seconds) {
    return inDigits(1e3 * seconds) + " ms";
}

/// "c3 led from 30 to 52.25"
std::string spoken(const LedDimension& led) {
    const auto digits = [](double value) {
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "%.6g", value);
        return std::string(text.data());
    };
    return toString(led.dimension) + " led from " + digits(led.from) + " to " + digits(led.to);
}

std::vector<LedDimension> ledFrom(const std::optional<Reached>& reached) {
    return reached && reached->part > 0.0 ? reached->dimensions : std::vector<LedDimension>();
}

std::string_view nameOf(Firmness firmness) {
    constexpr std::string_view names[] = {"exact", "sizes kept", "wishes"};
    return names[static_cast<std::size_t>(firmness)];
}

}  // namespace

std::string_view toString(Ending ending) {
    switch (ending) {
        case Ending::unchanged:
            return "unchanged";
        case Ending::solved:
            return "solved";
        case Ending::conflicting:
            return "conflicting";
        case Ending::degenerate:
            return "degenerate";
        case Ending::unreached:
            return "unreached";
        case Ending::iterationLimit:
            return "iteration limit";
        case Ending::timeLimit:
            return "time limit";
        case Ending::cancelled:
            return "cancelled";
        case Ending::invalid:
            break;
    }
    return "invalid";
}

std::string toString(const FreeMotion& motion) {
    const auto pair = [](Vec2 p) { return "(" + inDigits(p.x) + ", " + inDigits(p.y) + ")"; };
    switch (motion.kind) {
        case MotionKind::slide:
            return "slide along " + pair(motion.direction);
        case MotionKind::turn:
            return "turn about " + pair(motion.centre);
        case MotionKind::length:
            return std::string("change its length at its ") + (motion.isAtStart ? "start" : "end");
        case MotionKind::radius:
            return "change its radius";
        case MotionKind::other:
            break;
    }
    return "change its shape";
}

std::string SolveResult::briefReport() const {
    std::string text(toString(ending));
    if (error)
        return text + ": " + error->message();
    text += " in " + count(static_cast<std::size_t>(iterations), "iteration", "iterations") + ", worst residual " +
            inDigits(worstResidual);
    for (const LedDimension& led : ledFrom(reached))
        text += ", " + spoken(led);
    if (!conflicting.empty())
        return text + ", in conflict: " + list(conflicting);
    if (!flaw.empty())
        return text + ", as " + flaw;
    return isSolved() ? text + ", " + count(moved.size(), "entity", "entities") + " moved" : text;
}

std::string SolveResult::fullReport() const {
    std::string text = "ending          " + std::string(toString(ending)) + "\n";
    if (error)
        return text + "error           " + error->message() + "\n";
    text += "firmness        " + std::string(nameOf(firmness)) + "\n";
    text += "iterations      " + std::to_string(iterations) + "\n";
    text += "worst residual  " + inDigits(worstResidual);
    text += worstConstraint ? " of " + toString(*worstConstraint) + "\n" : "\n";
    for (const Movement& movement : moved)
        text += "moved           " + toString(movement.entity) + " by " + inDigits(movement.distance) + "\n";
    if (!conflicting.empty())
        text += "in conflict     " + list(conflicting) + (isConflictMinimal ? "\n" : "; perhaps fewer of them are\n");
    for (const std::size_t target : contradictedTargets)
        text += "in conflict     target " + std::to_string(target) + "\n";
    if (!flaw.empty())
        text += "flaw            " + flaw + "\n";
    if (reached)
        text += "reached         " + inDigits(reached->part) + " of the way\n";
    for (const LedDimension& led : ledFrom(reached))
        text += "reached         " + spoken(led) + "\n";
    if (!leftAlone.empty())
        text += "left alone      " + list(leftAlone) + "\n";
    text += "time            " + inMilliseconds(times.total()) + ": building " + inMilliseconds(times.building) +
            ", iterating " + inMilliseconds(times.iterating) + ", explaining " + inMilliseconds(times.explaining) +
            "\n";
    return text;
}

std::string Diagnosis::report() const {
    std::string text = count(static_cast<std::size_t>(freedom), "degree of freedom", "degrees of freedom") + " in " +
                       count(parts.size(), "part", "parts") + "\n";
    for (const Part& part : parts)
        text += "  " + std::to_string(part.freedom) + " in " + list(part.entities) + "\n";
    for (const Redundancy& r : redundant)
        text += "redundant: " + toString(r.constraint) + (r.isWhole ? "" : ", in part") + "\n";
    for (const Conflict& conflict : conflicts)
        text += "in conflict: " + list(conflict.constraints) + (conflict.isMinimal ? "" : ", perhaps not all of them") +
                "\n";
    text += "worst residual " + inDigits(worstResidual);
    text += worstConstraint ? " of " + toString(*worstConstraint) + "\n" : "\n";
    if (endedEarly)
        text += "the search for conflicts and motions ended early: " + std::string(toString(*endedEarly)) + "\n";
    return text;
}

}  // namespace holdfast::solver
