#pragma once

namespace holdfast {

enum class CurveEnd { start, end };

}  // namespace holdfast
