#pragma once

namespace holdfast::geometry {

enum class CurveEnd { start, end };

}  // namespace holdfast::geometry
