#pragma once

#include "report/Uses.h"
#include "report/labels/LabelPlacer.h"
#include "report/marks/Marks.h"
#include "report/picture/Frame.h"

namespace holdfast::report {

/// A length as it lies in the picture.
struct Span {
    Vec2 from, to, along, anchor;  ///< anchor: the middle of both points
};

Span spanOf(const Measured& measured, const Frame& frame);

/// Whether arrows and value find room between the two points of a dimension, measured along its line.
bool hasRoomBetween(const Span& span, double width, double height);

/// The spots for a mark's sign: rows above and below a dimension's points, rings round any other anchor.
Label labelFor(const Mark& mark, const Frame& frame);

/// A guess at the width of a text in the pictures' font, from the average digit.
double textWidth(std::string_view text);

}  // namespace holdfast::report
