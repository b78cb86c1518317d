#pragma once

#include <numbers>

namespace holdfast::geometry {

inline constexpr double kPi = std::numbers::pi;
/// A full turn, a quarter of one, and how many degrees a radian has.
inline constexpr double kTurn = 2.0 * kPi;
inline constexpr double kQuarterTurn = 0.5 * kPi;
inline constexpr double kDegrees = 180.0 / kPi;

}  // namespace holdfast::geometry
