#include "geometry/construction/SplineEnds.h"

#include <algorithm>
#include <cassert>
#include <optional>

#include "geometry/GeometryError.h"
#include "geometry/Tolerances.h"
#include "geometry/construction/Splitting.h"
#include "geometry/curves/Nearest.h"
#include "geometry/curves/Parameters.h"
#include "geometry/occ/OpenCascade.h"

namespace holdfast::geometry {
namespace {

/// How far a spline is followed, in spans, and the first and the least step.
constexpr double kFarthest = 64.0;
constexpr double kFarthestStraight = 1e6;
constexpr double kFirstStep = 0.5;
constexpr double kLeastStep = 1.0 / 64.0;

/// A spline and a parameter beyond it that no stretch reaches.
[[noreturn]] void refuseReach() {
    throw GeometryError("spline: cannot be prolonged so far, the curve of its outermost span ends before");
}

/// Does something to a spline in a frame of its own.
template <class Work>
std::optional<SplineShape> inOwnFrame(SplineShape spline, const Work& work) {
    const Box box = boundsOf(spline);
    const Frame frame = frameOf(box.centre(), box.diagonal());
    for (Vec2& pole : spline.control) {
        pole = frame.enter(pole);
    }
    std::optional<SplineShape> done = work(spline, frame);
    if (done) {
        for (Vec2& pole : done->control) {
            pole = frame.leave(pole);
        }
    }
    return done;
}

bool isClamped(const SplineShape& spline) {
    const ParamRange range = paramRange(spline);
    return range.first == spline.knots.front() && range.last == spline.knots.back();
}

SplineShape clamped(const SplineShape& spline) {
    const ParamRange range = paramRange(spline);
    return isClamped(spline) ? spline : splinePart(spline, range.first, range.last);
}

/// Only as many control points as the degree depend on the outermost knot.
void keepControlPoints(SplineShape& longer, const SplineShape& spline, CurveEnd end) {
    const auto moved = static_cast<std::ptrdiff_t>(spline.degree);
    if (longer.control.size() != spline.control.size() || !isClamped(spline)) {
        return;
    }
    if (end == CurveEnd::end) {
        std::copy(spline.control.begin(), spline.control.end() - moved, longer.control.begin());
    } else {
        std::copy(spline.control.begin() + moved, spline.control.end(), longer.control.begin() + moved);
    }
}

/// One stretch beyond an end, measured in spans from it.
SplineShape stretchBeyond(const BezierSpan& span, CurveEnd end, double from, double to) {
    const double width = span.lastKnot - span.firstKnot;
    const double first = end == CurveEnd::end ? 1.0 + from : -to;
    const double last = end == CurveEnd::end ? 1.0 + to : -from;
    BezierForm form = bezierPart(span.form, first, last);
    SplineShape stretch;
    stretch.degree = static_cast<int>(form.poles.size()) - 1;
    stretch.knots.assign(form.poles.size(), span.firstKnot + first * width);
    stretch.knots.insert(stretch.knots.end(), form.poles.size(), span.firstKnot + last * width);
    stretch.control = std::move(form.poles);
    stretch.weights = std::move(form.weights);
    return stretch;
}

bool hasPositiveWeights(const SplineShape& stretch) {
    return std::all_of(stretch.weights.begin(), stretch.weights.end(), [](double weight) { return weight > 0.0; });
}

void appendWeights(SplineShape& spline, const SplineShape& stretch) {
    const double factor = stretch.weights.empty() ? 1.0 : spline.weights.back() / stretch.weights.front();
    for (std::size_t i = 1; i < stretch.weights.size(); ++i) {
        spline.weights.push_back(factor * stretch.weights[i]);
    }
}

/// Behind a clamped end comes a span of its own: the knot in between stays as often as the degree.
void append(SplineShape& spline, const SplineShape& stretch) {
    spline.knots.pop_back();
    spline.knots.insert(spline.knots.end(), stretch.control.size(), stretch.knots.back());
    spline.control.insert(spline.control.end(), stretch.control.begin() + 1, stretch.control.end());
    appendWeights(spline, stretch);
}

void prepend(SplineShape& spline, const SplineShape& stretch) {
    spline.knots.erase(spline.knots.begin());
    spline.knots.insert(spline.knots.begin(), stretch.control.size(), stretch.knots.front());
    spline.control.insert(spline.control.begin(), stretch.control.begin(), stretch.control.end() - 1);
    const double factor = stretch.weights.empty() ? 1.0 : spline.weights.front() / stretch.weights.back();
    for (std::size_t i = stretch.weights.size(); i-- > 1;) {
        spline.weights.insert(spline.weights.begin(), factor * stretch.weights[i - 1]);
    }
}

/// A spline with the spans that lead on to a parameter.
SplineShape withFurtherSpans(const SplineShape& spline, CurveEnd end, double param) {
    SplineShape longer = clamped(spline);
    bool arrived = false;
    followBeyond(spline, end, [&](const SplineShape& stretch) {
        const double first = stretch.knots.front();
        const double last = stretch.knots.back();
        arrived = end == CurveEnd::end ? param <= last : param >= first;
        if (end == CurveEnd::end) {
            append(longer, arrived && param < last ? splinePart(stretch, first, param) : stretch);
        } else {
            prepend(longer, arrived && param > first ? splinePart(stretch, param, last) : stretch);
        }
        return arrived;
    });
    if (!arrived) {
        refuseReach();
    }
    return longer;
}

SplineShape prolonged(const SplineShape& spline, CurveEnd end, double param) {
    auto longer = inOwnFrame(
        spline, [&](const SplineShape& framed, const Frame&) { return splineProlonged(framed, end, param); });
    if (!longer) {
        return withFurtherSpans(spline, end, param);
    }
    keepControlPoints(*longer, spline, end);
    return *longer;
}

/// The parameter at which a spline's prolongation passes a point, if it does.
std::optional<double> paramBeyond(const SplineShape& spline, CurveEnd end, Vec2 point, double tolerance) {
    std::optional<double> found;
    followBeyond(spline, end, [&](const SplineShape& stretch) {
        found = paramAtPoint(stretch, point, tolerance);
        return found.has_value();
    });
    return found;
}

}  // namespace

void followBeyond(const SplineShape& spline, CurveEnd end, const std::function<bool(const SplineShape&)>& visit) {
    assert(!spline.periodic);
    const std::vector<BezierSpan> spans = bezierSpans(spline);
    const BezierSpan& span = end == CurveEnd::end ? spans.back() : spans.front();
    const bool isStraight = spline.degree == 1 && spline.weights.empty();
    const double farthest = isStraight ? kFarthestStraight : kFarthest;
    double from = 0.0;
    for (double step = kFirstStep; from < farthest && step >= kLeastStep;) {
        const SplineShape stretch = stretchBeyond(span, end, from, from + step);
        if (!hasPositiveWeights(stretch)) {
            step *= 0.5;
            continue;
        }
        if (visit(stretch)) {
            return;
        }
        from += step;
        step = std::max(step, from);
    }
}

SplineShape splineWithEndAt(const SplineShape& spline, CurveEnd end, double param) {
    assert(!spline.periodic);
    const ParamRange range = paramRange(spline);
    const bool isEnd = end == CurveEnd::end;
    if (isEnd ? !(param > range.first) : !(param < range.last)) {
        throw GeometryError("spline: nothing would be left of it");
    }
    if (isEnd ? param > range.last : param < range.first) {
        return prolonged(spline, end, param);
    }
    return std::get<SplineShape>(isEnd ? partOf(spline, range.first, param) : partOf(spline, param, range.last));
}

SplineShape splineExtendedTo(const SplineShape& spline, CurveEnd end, Vec2 point) {
    assert(!spline.periodic);
    const double tolerance = kSamePoint * boundsOf(spline).diagonal();
    if (const auto beyond = paramBeyond(spline, end, point, tolerance)) {
        return splineWithEndAt(spline, end, *beyond);
    }
    return *inOwnFrame(spline, [&](const SplineShape& framed, const Frame& frame) {
        return std::optional(splineLedTo(framed, end, frame.enter(point)));
    });
}

}  // namespace holdfast::geometry
