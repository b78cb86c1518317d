#pragma once

#include <cmath>

namespace holdfast::solver::detail {

/// By how much the value of a place is shaken, between -1 and 1: neighbours not alike, and the same in every run.
/// Another number gives another shake.
inline double shake(int place, int number = 0) {
    constexpr double phase = 2.7;  // radians from place to place: no simple part of a turn, so that none move alike
    return std::sin(1.0 + number + phase * place);
}

}  // namespace holdfast::solver::detail
