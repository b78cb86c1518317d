#include "report/labels/LabelSpots.h"

#include <array>

#include "report/picture/Markup.h"

namespace holdfast::report {

namespace {

constexpr double kPlate = 13.0, kLoudPlate = 17.0;

/// The family of entities' names; those of marks are their tones.
constexpr int kNames = -1;

/// Directions seen from the outward one: either side of a line serves a sign equally well, its ends hardly.
constexpr std::array kTurns{0.0, 180.0, 35.0, -35.0, 145.0, -145.0, 68.0, -68.0, 112.0, -112.0, 90.0, -90.0};
constexpr std::array kQuietGaps{2.5, 7.0, 13.0, 21.0};
constexpr std::array kLoudGaps{7.0, 12.0, 19.0, 28.0, 40.0, 56.0, 76.0, 100.0, 130.0};

/// Distance of a box's centre from a point so that a gap stays between them in this direction.
double reachOf(Vec2 direction, double width, double height, double gap) {
    return std::min(width / 2 / std::max(std::fabs(direction.x), 1e-9),
                    height / 2 / std::max(std::fabs(direction.y), 1e-9)) +
           gap;
}

template <typename Gaps>
void addRings(Label& label, Vec2 outward, const Gaps& gaps, double firstGap) {
    const double start = std::atan2(outward.y, outward.x);
    for (const double gap : gaps)
        for (const double turn : kTurns) {
            const Vec2 direction = polar(1.0, start + inRadians(turn));
            label.spots.push_back(
                {label.anchor, direction * reachOf(direction, label.width, label.height, gap + firstGap)});
        }
}

/// Rows parallel to what is measured, near ones first, each with a few shifts along it; and between the points
/// themselves where they lie far apart across the measured direction.
void addRows(Label& label, const Span& span) {
    const Vec2 across = leftOf(span.along);
    const double half = std::fabs(dot(span.to - span.from, across)) / 2;
    const double room = std::fabs(dot(span.to - span.from, span.along)) / 2;
    const double step = reachOf(across, label.width, label.height, 5.0);
    if (half > 2 * step)
        label.spots.push_back({span.anchor, {}});
    for (const double row : {0.0, 14.0, 28.0, 42.0, 60.0, 80.0})
        for (const double shift : {0.0, 0.35, -0.35})
            for (const double side : {1.0, -1.0})
                label.spots.push_back({span.anchor + across * (half * side) + span.along * (room * shift),
                                       across * ((step + row) * side)});
}

}  // namespace

double textWidth(std::string_view text) {
    double width = 0.0;
    for (const char c : text)
        width += c == '.' || c == ' ' ? 3.0 : c == '(' || c == ')' ? 3.6 : (c & 0x80) != 0 ? 3.2 : 6.1;
    return width;
}

Span spanOf(const Measured& measured, const Frame& frame) {
    const Vec2 from = frame.toPicture(measured.from), to = frame.toPicture(measured.to);
    return {from, to, unitOr(Frame::turned(measured.along), {1.0, 0.0}), midway(from, to)};
}

bool hasRoomBetween(const Span& span, double width, double height) {
    const double needed =
        std::min(width / std::max(std::fabs(span.along.x), 1e-9), height / std::max(std::fabs(span.along.y), 1e-9));
    return std::fabs(dot(span.to - span.from, span.along)) >= needed + 16.0;
}

Label labelFor(const Mark& mark, const Frame& frame) {
    const bool loud = mark.tone != MarkTone::kept;
    Label label;
    label.anchor = frame.toPicture(mark.anchor);
    label.height = loud ? kLoudPlate : kPlate;
    label.width = mark.text.empty() ? label.height : textWidth(mark.text) + (loud ? 10.0 : 4.0);
    label.urgency = loud ? static_cast<int>(mark.tone) - 10 : mark.text.empty() ? 1 : 0;
    label.family = mark.entity.empty() ? static_cast<int>(mark.tone) : kNames;
    if (mark.measured) {
        const Span span = spanOf(*mark.measured, frame);
        if (hasRoomBetween(span, label.width, label.height)) {
            addRows(label, span);
            label.line = LabelLine{span.from, span.to, span.along};
            return label;
        }
    }
    const double firstGap = mark.opening ? 16.0 : 0.0;
    if (loud)
        addRings(label, Frame::turned(mark.outward), kLoudGaps, firstGap);
    else
        addRings(label, Frame::turned(mark.outward), kQuietGaps, firstGap);
    return label;
}

}  // namespace holdfast::report
