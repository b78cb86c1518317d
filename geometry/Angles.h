#pragma once

#include <numbers>

namespace holdfast::geometry {

inline constexpr double kPi = std::numbers::pi;
/// A full turn and a quarter of one.
inline constexpr double kTurn = 2.0 * kPi;
inline constexpr double kQuarterTurn = 0.5 * kPi;

// Whole and right angles in degrees come out as closely as their radians allow: first times, then divided.
constexpr double inDegrees(double radians) {
    return radians * 180.0 / kPi;
}

constexpr double inRadians(double degrees) {
    return degrees * kPi / 180.0;
}

}  // namespace holdfast::geometry
