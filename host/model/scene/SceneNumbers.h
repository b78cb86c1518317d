#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <yxbase/YxGePoint2d.h>
#include <yxbase/YxGePoint3d.h>

namespace holdfast {

// Numbers of scene texts. What is printed reads back to the very same bits.

std::optional<double> numberIn(std::string_view text);
std::optional<int> integerIn(std::string_view text);
/// "x,y" or "x,y,z".
std::optional<YxGePoint3d> pointIn(std::string_view text);
/// Radians from "30" (degrees) or "0.5rad".
std::optional<double> angleIn(std::string_view text);

/// The shortest digits that read back to the value.
std::string numberText(double value);
/// "x,y", and ",z" where it is not 0.
std::string pointText(const YxGePoint3d& point);
std::string pointText(const YxGePoint2d& point);
std::string vectorText(const YxGeVector3d& vector);
/// Degrees where some number of them reads back to the very angle, else radians with "rad".
std::string angleText(double radians);

/// For texts in double quotes: \" \\ and \n.
std::string escaped(std::string_view text);
std::string unescaped(std::string_view text);

}  // namespace holdfast
