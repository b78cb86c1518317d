#include "commands/properties/PropertyTable.h"

#include <algorithm>
#include <iterator>

namespace holdfast::module {

namespace {

using enum LvEvaDataConverterGripEdit::EntType;

// clang-format off
constexpr EditableProperty kProperties[] = {
    // type    property  edited                 change kind
    {kLine,      1, Edited::position,      0},
    {kLine,      2, Edited::otherEnd,      1},
    {kPolyline,  1, Edited::vertex,        0},
    {kRay,       1, Edited::position,      0},
    {kRay,       2, Edited::secondPoint,   1},
    {kXline,     1, Edited::position,      0},
    {kXline,     2, Edited::secondPoint,   1},
    {kCircle,    1, Edited::position,      0},
    {kCircle,    2, Edited::radius,        1},
    {kCircle,    3, Edited::diameter,      1},
    {kCircle,    4, Edited::circumference, 1},
    {kCircle,    5, Edited::area,          1},
    {kArc,       2, Edited::position,      0},
    {kArc,       4, Edited::radius,        3},
    {kArc,       5, Edited::startAngle,    1},
    {kArc,       6, Edited::endAngle,      2},
    {kEllipse,   2, Edited::position,      0},
    {kEllipse,   4, Edited::majorRadius,   1},
    {kEllipse,   5, Edited::minorRadius,   2},
    {kEllipse,   6, Edited::radiusRatio,   2},
    {kEllipse,   7, Edited::startAngle,    3},
    {kEllipse,   8, Edited::endAngle,      4},
    {kPoint,     1, Edited::position,      0},
    {kText,     11, Edited::position,      0},
    {kText,      7, Edited::rotation,      7},
    {kMText,     8, Edited::position,      0},
    {kMText,     7, Edited::rotation,      7},
    {kSpline,    2, Edited::vertex,        0},
};
// clang-format on

}  // namespace

const EditableProperty* findProperty(LvEvaDataConverterGripEdit::EntType entType, int property) {
    const auto* found = std::ranges::find_if(
        kProperties, [=](const EditableProperty& row) { return row.entType == entType && row.property == property; });
    return found == std::end(kProperties) ? nullptr : found;
}

}  // namespace holdfast::module
