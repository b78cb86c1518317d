#include "report/picture/TextElement.h"

#include <algorithm>
#include <vector>

#include "report/picture/Markup.h"

namespace holdfast::report {

namespace {

constexpr double kFontSize = 1.38;                                // over the height of a capital letter
constexpr double kLetterWidth = 0.85, kLineDistance = 5.0 / 3.0;  // over the height

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        lines.push_back(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(lines.back().size() + 1, text.size()));
    }
    return lines;
}

}  // namespace

std::string textElement(const TextShape& text, const Frame& frame, const std::string& attributes, int places) {
    const Vec2 at = frame.toPicture(text.position);
    const double height = text.height * frame.scale;
    std::string element = "<text" + attributes + " transform=\"translate(" + decimal(at.x, places) + " " +
                          decimal(at.y, places) + ") rotate(" + decimal(-inDegrees(text.rotation), 3) +
                          ")\" font-size=\"" + decimal(height * kFontSize, places) + "\">";
    double drop = text.multiline ? height : 0.0;
    for (const std::string_view line : linesOf(text.text)) {
        element += "<tspan x=\"0\"" + attribute("dy", decimal(drop, places)) + ">" + escaped(line) + "</tspan>";
        drop = height * kLineDistance;
    }
    return element + "</text>\n";
}

Box textBounds(const TextShape& text) {
    const std::vector<std::string_view> lines = linesOf(text.text);
    std::size_t longest = 0;
    for (const std::string_view line : lines)
        longest = std::max(longest, textLength(line));
    const double rows = static_cast<double>(std::max<std::size_t>(lines.size(), 1));
    const Vec2 along = polar(text.height * kLetterWidth * static_cast<double>(longest), text.rotation);
    const Vec2 up = polar(text.height, text.rotation + kPi / 2);
    const Vec2 top = text.multiline ? text.position : text.position + up;
    const Vec2 bottom = top - up * (1.0 + (rows - 1.0) * kLineDistance);
    Box box;
    for (const Vec2 corner : {top, bottom})
        for (const Vec2 point : {corner, corner + along})
            box.add(point);
    return box;
}

}  // namespace holdfast::report
