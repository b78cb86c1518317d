#include "workbench/geometry/Lengths.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "workbench/geometry/GeometryError.h"
#include "workbench/geometry/OpenCascade.h"
#include "workbench/geometry/Parameters.h"
#include "workbench/geometry/Soundness.h"

namespace holdfast {
namespace {

void requireFinite(double value) {
    if (!std::isfinite(value)) {
        throw GeometryError("a curve parameter or distance is not a finite number");
    }
}

double radiusOf(const ConicForm& conic) {
    return norm(conic.major);
}

double pieceLength(const Piece& piece, double first, double last) {
    if (std::holds_alternative<LineForm>(piece.form)) {
        return last - first;
    }
    if (isCircle(piece.form)) {
        return radiusOf(std::get<ConicForm>(piece.form)) * (last - first);
    }
    const Frame frame = frameOf(piece);
    return formLength(inFrame(piece, frame).form, first, last) / frame.scale;
}

double pieceParamAt(const Piece& piece, double from, double distance) {
    if (std::holds_alternative<LineForm>(piece.form)) {
        return from + distance;
    }
    if (isCircle(piece.form)) {
        return from + distance / radiusOf(std::get<ConicForm>(piece.form));
    }
    const Frame frame = frameOf(piece);
    return formParamAt(inFrame(piece, frame).form, from, distance * frame.scale);
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
        sum += from < to ? pieceLength(piece, from, to) : 0.0;
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
        const double length = pieceLength(piece, start, piece.last);
        if (distance <= length * (1.0 + 1e-12)) {
            return piece.ownerAt(std::min(piece.last, pieceParamAt(piece, start, distance)));
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
        const double length = pieceLength(*piece, piece->first, end);
        if (distance <= length * (1.0 + 1e-12)) {
            return piece->ownerAt(std::max(piece->first, pieceParamAt(*piece, end, -distance)));
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
        return pieceLength(pieceAt(shape, 0.0), first, last);
    }
    return first <= last ? chainLength(shape, first, last) : -chainLength(shape, last, first);
}

double paramAtDistance(const Shape& shape, double from, double distance) {
    requireFinite(from);
    requireFinite(distance);
    requireSound(shape);
    if (!isChain(shape)) {
        return pieceParamAt(pieceAt(shape, 0.0), from, distance);
    }
    return distance >= 0.0 ? chainParamForward(shape, from, distance) : chainParamBackward(shape, from, -distance);
}

}  // namespace holdfast
