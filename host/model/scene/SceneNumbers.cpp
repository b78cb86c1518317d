#include "host/model/scene/SceneNumbers.h"

#include <charconv>
#include <cmath>
#include <numbers>

namespace holdfast {

namespace {

constexpr double kRadiansPerDegree = std::numbers::pi / 180.0;

std::optional<std::string> degreesText(double radians) {
    const double degrees = radians / kRadiansPerDegree;
    // Rounding may have taken the degrees next to those that were written down: 30, not 30.000000000000004.
    char text[40];
    for (int digits = 1; digits <= 17; ++digits) {
        const auto [end, error] = std::to_chars(text, text + sizeof text, degrees, std::chars_format::general, digits);
        const std::string_view written(text, static_cast<std::size_t>(end - text));
        if (const auto read = numberIn(written); read && *read * kRadiansPerDegree == radians)
            return numberText(*read);
    }
    return std::nullopt;
}

}  // namespace

std::optional<double> numberIn(std::string_view text) {
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<int> integerIn(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

std::optional<YxGePoint3d> pointIn(std::string_view text) {
    const std::size_t first = text.find(',');
    if (first == std::string_view::npos)
        return std::nullopt;
    const std::size_t second = text.find(',', first + 1);
    const bool isFlat = second == std::string_view::npos;
    const auto x = numberIn(text.substr(0, first));
    const auto y = numberIn(text.substr(first + 1, isFlat ? second : second - first - 1));
    const auto z = isFlat ? std::optional(0.0) : numberIn(text.substr(second + 1));
    return x && y && z ? std::optional(YxGePoint3d(*x, *y, *z)) : std::nullopt;
}

std::optional<double> angleIn(std::string_view text) {
    if (text.ends_with("rad"))
        return numberIn(text.substr(0, text.size() - 3));
    const std::optional<double> degrees = numberIn(text);
    return degrees ? std::optional(*degrees * kRadiansPerDegree) : std::nullopt;
}

std::string numberText(double value) {
    char text[40];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value);
    return {text, end};
}

std::string pointText(const YxGePoint3d& point) {
    return numberText(point.x) + "," + numberText(point.y) + (point.z == 0.0 ? "" : "," + numberText(point.z));
}

std::string pointText(const YxGePoint2d& point) {
    return numberText(point.x) + "," + numberText(point.y);
}

std::string vectorText(const YxGeVector3d& vector) {
    return pointText(YxGePoint3d::kOrigin + vector);
}

std::string angleText(double radians) {
    if (const std::optional<std::string> degrees = degreesText(radians))
        return *degrees;
    return numberText(radians) + "rad";
}

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '"' || c == '\\')
            result += '\\';
        result += c == '\n' ? "\\n" : std::string(1, c);
    }
    return result;
}

std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            result += text[i];
            continue;
        }
        ++i;
        result += text[i] == 'n' ? '\n' : text[i];
    }
    return result;
}

}  // namespace holdfast
