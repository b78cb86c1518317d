#include <algorithm>
#include <cmath>
#include <utility>

#include "host/model/entities/EntityAccess.h"
#include "host/src/EntityCheck.h"
#include "host/src/yxdb/curves/SplineView.h"

namespace holdfast {
namespace {

constexpr EntityCheck kSpline("spline");

std::string item(const char* list, std::size_t index) {
    return std::string(list) + ' ' + std::to_string(index);
}

std::size_t order(const SplineData& data) {
    return static_cast<std::size_t>(data.degree) + 1;
}

/// How often the knot at an index stands in the ascending list, from there on.
std::size_t multiplicity(std::span<const double> knots, std::size_t first) {
    const auto begin = knots.begin() + static_cast<std::ptrdiff_t>(first);
    return static_cast<std::size_t>(std::upper_bound(begin, knots.end(), *begin) - begin);
}

void checkNumbers(const SplineData& data) {
    for (std::size_t i = 0; i < data.control.size(); ++i)
        if (!isFinite(data.control[i]))
            kSpline.finite(item("control point", i), data.control[i]);
    for (std::size_t i = 0; i < data.knots.size(); ++i)
        if (!std::isfinite(data.knots[i]))
            kSpline.finite(item("knot", i), data.knots[i]);
    for (std::size_t i = 0; i < data.weights.size(); ++i)
        if (!(std::isfinite(data.weights[i]) && data.weights[i] > 0.0))
            kSpline.positive(item("weight", i), data.weights[i]);
}

void checkCounts(const SplineData& data) {
    if (data.degree < 1 || data.degree > SplineView::kHighestDegree)
        kSpline.refuse("degree is " + std::to_string(data.degree) + "; give 1 to " +
                       std::to_string(SplineView::kHighestDegree));
    const std::size_t count = data.control.size();
    const std::size_t fewest = data.periodic ? 1 : order(data);
    if (count < fewest)
        kSpline.refuse(std::to_string(count) + " control points; give at least " + std::to_string(fewest) +
                       " for degree " + std::to_string(data.degree));
    if (!data.weights.empty() && data.weights.size() != count)
        kSpline.refuse(std::to_string(data.weights.size()) + " weights for " + std::to_string(count) +
                       " control points; give as many, or none");
    if (!data.periodic && data.knots.size() != count + order(data))
        kSpline.refuse(std::to_string(data.knots.size()) + " knots; give " + std::to_string(count + order(data)) +
                       " (control points + degree + 1)");
    if (data.periodic && (data.knots.size() <= count || data.knots.size() >= count + order(data)))
        kSpline.refuse(std::to_string(data.knots.size()) + " knots of a period; give " + std::to_string(count + 1) +
                       " to " + std::to_string(count + order(data) - 1) +
                       " (control points + multiplicity of the first knot)");
}

void checkMultiplicities(const SplineData& data) {
    const std::span<const double> knots(data.knots);
    const double last = knots.back();
    for (std::size_t i = 0; i < knots.size(); i += multiplicity(knots, i)) {
        const bool atEnd = knots[i] == knots.front() || knots[i] == last;
        const std::size_t most = atEnd && !data.periodic ? order(data) : order(data) - 1;
        if (multiplicity(knots, i) > most)
            kSpline.refuse(item("knot", i) + " stands " + std::to_string(multiplicity(knots, i)) +
                           " times; give it at most " + std::to_string(most) + " times");
    }
}

void checkKnots(const SplineData& data) {
    const std::span<const double> knots(data.knots);
    const auto falls = std::is_sorted_until(knots.begin(), knots.end());
    if (falls != knots.end())
        kSpline.refuse(item("knot", static_cast<std::size_t>(falls - knots.begin())) +
                       " is smaller than the one before; give the knots in ascending order");
    const double first = data.periodic ? knots.front() : knots[order(data) - 1];
    const double last = data.periodic ? knots.back() : knots[data.control.size()];
    if (!(first < last))
        kSpline.refuse("the knots span no parameter range; give different first and last knots");
    checkMultiplicities(data);
    const auto lastRepeats = static_cast<std::size_t>(std::count(knots.begin(), knots.end(), knots.back()));
    const std::size_t firstRepeats = multiplicity(knots, 0);
    if (data.periodic && (firstRepeats != lastRepeats || knots.size() != data.control.size() + firstRepeats))
        kSpline.refuse("the first knot stands " + std::to_string(firstRepeats) + " times and the last " +
                       std::to_string(lastRepeats) + " times; give both " +
                       std::to_string(knots.size() - data.control.size()) + " times (knots - control points)");
}

void check(const SplineData& data) {
    checkCounts(data);
    checkNumbers(data);
    checkKnots(data);
}

}  // namespace

std::unique_ptr<YxDbSpline> EntityAccess::makeSpline(SplineData data) {
    std::unique_ptr<YxDbSpline> made(new YxDbSpline);
    setSpline(*made, std::move(data));
    return made;
}

void EntityAccess::setSpline(YxDbSpline& spline, SplineData data) {
    check(data);
    requireOpenForWrite(spline, "setSpline");
    spline.m_degree = data.degree;
    spline.m_periodic = data.periodic;
    spline.m_controlPoints = std::move(data.control);
    spline.m_knots = std::move(data.knots);
    spline.m_weights = std::move(data.weights);
}

void EntityAccess::setControlPoint(YxDbSpline& spline, int index, const YxGePoint3d& point) {
    if (index < 0 || static_cast<std::size_t>(index) >= spline.m_controlPoints.size())
        kSpline.refuse("there is no control point " + std::to_string(index) + "; give 0 to " +
                       std::to_string(spline.m_controlPoints.size() - 1));
    kSpline.finite("control point " + std::to_string(index), point);
    requireOpenForWrite(spline, "setControlPoint");
    spline.m_controlPoints[static_cast<std::size_t>(index)] = point;
}

SplineData EntityAccess::spline(const YxDbSpline& spline) {
    return {spline.m_degree, spline.m_periodic, spline.m_controlPoints, spline.m_knots, spline.m_weights};
}

}  // namespace holdfast
