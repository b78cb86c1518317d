#include "geometry/curves/Lengths.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "geometry/GeometryError.h"
#include "geometry/curves/Parameters.h"
#include "geometry/curves/Pieces.h"
#include "geometry/curves/Soundness.h"

namespace holdfast::geometry {
namespace {

double speedAt(const Form& form, double t) {
    return norm(derivatives(form, t).first);
}

/// The integral of the speed by the Gauss-Legendre rule with eight points (Abramowitz and Stegun, Handbook of
/// Mathematical Functions, table 25.4).
double gaussLength(const Form& form, double first, double last) {
    static constexpr double kPoints[] = {0.183434642495650, 0.525532409916329, 0.796666477413627, 0.960289856497536};
    static constexpr double kWeights[] = {0.362683783378362, 0.313706645877887, 0.222381034453374, 0.101228536290376};
    const double middle = 0.5 * (first + last);
    const double half = 0.5 * (last - first);
    double sum = 0.0;
    for (std::size_t i = 0; i < std::size(kPoints); ++i) {
        const double offset = half * kPoints[i];
        sum += kWeights[i] * (speedAt(form, middle - offset) + speedAt(form, middle + offset));
    }
    return half * sum;
}

/// Halves the range until both halves agree with the whole.
double adaptiveLength(const Form& form, double first, double last, double whole, int halvings) {
    const double middle = 0.5 * (first + last);
    const double before = gaussLength(form, first, middle);
    const double behind = gaussLength(form, middle, last);
    if (halvings == 0 || std::abs(before + behind - whole) <= 1e-13 * std::abs(whole)) {
        return before + behind;
    }
    return adaptiveLength(form, first, middle, before, halvings - 1) +
           adaptiveLength(form, middle, last, behind, halvings - 1);
}

/// Lines and circles run evenly, at this speed; other forms do not.
std::optional<double> evenSpeed(const Form& form) {
    if (std::holds_alternative<LineForm>(form)) {
        return 1.0;
    }
    return isCircle(form) ? std::optional(norm(std::get<ConicForm>(form).major)) : std::nullopt;
}

double formLength(const Form& form, double first, double last) {
    constexpr int kMostHalvings = 24;
    const auto even = evenSpeed(form);
    return even ? *even * (last - first)
                : adaptiveLength(form, first, last, gaussLength(form, first, last), kMostHalvings);
}

/// Newton's method for the length; where the curve almost stands still, halving the range takes over.
double unevenParamAt(const Form& form, double from, double target, double low, double high) {
    double t = std::clamp(from, low, high);
    double reached = formLength(form, from, t);
    for (int i = 0; i < 100; ++i) {
        const double missing = target - reached;
        (missing > 0.0 ? low : high) = t;
        const double speed = speedAt(form, t);
        const double step = t + missing / speed;
        const double next = speed > 0.0 && step >= low && step <= high ? step : 0.5 * (low + high);
        if (std::abs(missing) <= 1e-14 * std::abs(target) || next == t) {
            break;
        }
        reached += formLength(form, t, next);
        t = next;
    }
    return t;
}

/// The parameter between two bounds at a signed distance from another.
double formParamAt(const Form& form, double from, double target, double low, double high) {
    const auto even = evenSpeed(form);
    return even ? from + target / *even : unevenParamAt(form, from, target, low, high);
}

/// On an ellipse the distance is reached within so many turns at its least speed.
double simpleParamAt(const Form& form, double from, double distance) {
    const auto* conic = std::get_if<ConicForm>(&form);
    const double reach = conic != nullptr ? 2.0 * std::abs(distance) / norm(conic->minor) : 0.0;
    return formParamAt(form, from, distance, from - reach, from + reach);
}

bool isChain(const Shape& shape) {
    return std::holds_alternative<SplineShape>(shape) || std::holds_alternative<PolylineShape>(shape);
}

/// Sums over the pieces between two rising parameters.
double chainLength(const Shape& shape, double first, double last) {
    double sum = 0.0;
    for (const Piece& piece : spansOf(shape)) {
        const double from = std::max(piece.first, piece.localAt(first));
        const double to = std::min(piece.last, piece.localAt(last));
        sum += from < to ? formLength(piece.form, from, to) : 0.0;
    }
    return sum;
}

[[noreturn]] void refuseDistance(const Shape& shape) {
    throw GeometryError(std::string(kindName(shape)) + ": ends before that distance");
}

double chainParamForward(const Shape& shape, double from, double distance) {
    for (const Piece& piece : spansOf(shape)) {
        const double start = std::max(piece.first, piece.localAt(from));
        if (start >= piece.last) {
            continue;
        }
        const double length = formLength(piece.form, start, piece.last);
        if (distance <= length * (1.0 + 1e-12)) {
            return piece.ownerAt(formParamAt(piece.form, start, distance, start, piece.last));
        }
        distance -= length;
    }
    refuseDistance(shape);
}

double chainParamBackward(const Shape& shape, double from, double distance) {
    const std::vector<Piece> pieces = spansOf(shape);
    for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece) {
        const double end = std::min(piece->last, piece->localAt(from));
        if (end <= piece->first) {
            continue;
        }
        const double length = formLength(piece->form, piece->first, end);
        if (distance <= length * (1.0 + 1e-12)) {
            return piece->ownerAt(formParamAt(piece->form, end, -distance, piece->first, end));
        }
        distance -= length;
    }
    refuseDistance(shape);
}

}  // namespace

double lengthOf(const Shape& shape) {
    const ParamRange range = paramRange(shape);
    if (!std::isfinite(range.last)) {
        return std::numeric_limits<double>::infinity();
    }
    return lengthBetween(shape, range.first, range.last);
}

double lengthBetween(const Shape& shape, double first, double last) {
    requireFinite(first);
    requireFinite(last);
    requireSound(shape);
    if (!isChain(shape)) {
        return formLength(pieceAt(shape, 0.0).form, first, last);
    }
    return first <= last ? chainLength(shape, first, last) : -chainLength(shape, last, first);
}

double paramAtDistance(const Shape& shape, double from, double distance) {
    requireFinite(from);
    requireFinite(distance);
    requireSound(shape);
    if (!isChain(shape)) {
        return simpleParamAt(pieceAt(shape, 0.0).form, from, distance);
    }
    return distance >= 0.0 ? chainParamForward(shape, from, distance) : chainParamBackward(shape, from, -distance);
}

}  // namespace holdfast::geometry
