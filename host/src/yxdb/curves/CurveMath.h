#pragma once

#include <optional>

#include <yxbase/YxErrorStatus.h>
#include <yxbase/YxGePoint3d.h>

namespace holdfast {

/// A point on a curve and the derivative there with respect to the parameter.
struct CurveSample {
    YxGePoint3d point;
    YxGeVector3d derivative;
};

bool isFinite(const YxGePoint3d& point);

/// Hands a result out if it is finite; otherwise the argument stays as it was.
Yxrt::ErrorStatus answer(const YxGePoint3d& result, YxGePoint3d& point);
Yxrt::ErrorStatus answer(double result, double& param);

/// Hands out the parameter of the curve's nearest point to the one asked for; eInvalidInput, and the argument stays,
/// when that point is not on the curve: farther from it than 1e-6 drawing units, or 1e-6 of its coordinates.
Yxrt::ErrorStatus answerOnCurve(double param, const YxGePoint3d& nearest, const YxGePoint3d& asked, double& answered);

/// The value within the range; its lower end also for what is no number.
double clampedTo(double value, double low, double high);

/// The parameter within a curve's range; a rounding error outside counts as the end. Nothing for anything farther out.
std::optional<double> inRange(double param, double first, double last);

/// The parameter, or exactly the end of the range from which it is no farther away than equal points are.
double atEndWithin(double param, double first, double last);

/// The value in [0, period) that differs from this one by whole periods; NaN for what is not finite.
double remainderOf(double value, double period);

/// The part of a circle or an ellipse from one angle on to another, counter-clockwise.
class AngleRange {
public:
    /// Equal angles, or angles whole turns apart, make a full turn.
    AngleRange(double start, double end);

    double start() const { return m_start; }
    double end() const { return m_start + m_sweep; }
    double sweep() const { return m_sweep; }
    bool isFullTurn() const;
    /// The same angle up to whole turns, from start() on and less than one turn beyond it.
    double atOrAfterStart(double angle) const;
    /// As atOrAfterStart, but within the range; nothing when the angle lies outside it by more than a rounding error.
    std::optional<double> inside(double angle) const;
    /// As atOrAfterStart, but the nearer end when the angle lies outside.
    double nearest(double angle) const;

private:
    double m_start;
    double m_sweep;
};

/// The same angle in [0, 2 pi); NaN for what is not finite.
double withinTurn(double angle);

/// The sum in [0, 2 pi), but the angle itself, to the last digit, when nothing is added.
double shiftedAngle(double angle, double shift);

}  // namespace holdfast
