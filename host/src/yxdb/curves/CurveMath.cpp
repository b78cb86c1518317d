#include "host/src/yxdb/curves/CurveMath.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace holdfast {
namespace {

constexpr double kFullTurn = 2.0 * std::numbers::pi;
constexpr double kAngleRounding = 1e-10;

double sweepBetween(double start, double end) {
    const double sweep = end - start;
    if (sweep > 0.0 && sweep <= kFullTurn)
        return sweep;
    const double rest = std::fmod(sweep, kFullTurn);
    const double positive = rest <= 0.0 ? rest + kFullTurn : rest;
    return positive <= kAngleRounding ? kFullTurn : positive;
}

}  // namespace

bool isFinite(const YxGePoint3d& point) {
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

Yxrt::ErrorStatus answer(const YxGePoint3d& result, YxGePoint3d& point) {
    if (!isFinite(result))
        return Yxrt::eInvalidInput;
    point = result;
    return Yxrt::eOk;
}

Yxrt::ErrorStatus answer(double result, double& param) {
    if (!std::isfinite(result))
        return Yxrt::eInvalidInput;
    param = result;
    return Yxrt::eOk;
}

Yxrt::ErrorStatus answerOnCurve(double param, const YxGePoint3d& nearest, const YxGePoint3d& asked, double& answered) {
    // Ten digits above what rounding does to a point of the curve, and the digits that a drawing file may have cut off.
    constexpr double kOnCurve = 1e-6;
    const double size = std::max({1.0, std::abs(asked.x), std::abs(asked.y), std::abs(asked.z)});
    if (!(nearest.distanceTo(asked) <= kOnCurve * size))
        return Yxrt::eInvalidInput;
    return answer(param, answered);
}

double clampedTo(double value, double low, double high) {
    return value >= low ? std::min(value, high) : low;
}

std::optional<double> inRange(double param, double first, double last) {
    constexpr double kRounding = 1e-10;
    const double slack = kRounding * std::max({1.0, std::abs(first), std::abs(last)});
    if (!(param >= first - slack && param <= last + slack))
        return std::nullopt;
    return clampedTo(param, first, last);
}

double atEndWithin(double param, double first, double last) {
    const double tolerance = YxGeContext::gTol.equalPoint();
    if (param - first <= tolerance)
        return first;
    return last - param <= tolerance ? last : param;
}

double remainderOf(double value, double period) {
    const double rest = std::fmod(value, period);
    const double positive = rest < 0.0 ? rest + period : rest;
    return positive >= period ? 0.0 : positive;
}

double withinTurn(double angle) {
    return remainderOf(angle, kFullTurn);
}

double shiftedAngle(double angle, double shift) {
    return shift == 0.0 ? angle : withinTurn(angle + shift);
}

AngleRange::AngleRange(double start, double end) : m_start(start), m_sweep(sweepBetween(start, end)) {}

bool AngleRange::isFullTurn() const {
    return m_sweep >= kFullTurn - kAngleRounding;
}

double AngleRange::atOrAfterStart(double angle) const {
    return m_start + withinTurn(angle - m_start);
}

std::optional<double> AngleRange::inside(double angle) const {
    const double beyondStart = withinTurn(angle - m_start);
    if (beyondStart <= m_sweep + kAngleRounding)
        return m_start + std::min(beyondStart, m_sweep);
    if (kFullTurn - beyondStart <= kAngleRounding)
        return m_start;
    return std::nullopt;
}

double AngleRange::nearest(double angle) const {
    const double beyondStart = withinTurn(angle - m_start);
    if (beyondStart <= m_sweep)
        return m_start + beyondStart;
    return beyondStart - m_sweep < kFullTurn - beyondStart ? end() : m_start;
}

}  // namespace holdfast
