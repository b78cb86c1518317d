#include "solver/src/sketch/Layout.h"

namespace holdfast::solver::detail {

namespace {

/// So many points one after the other, from the first to the last.
Layout pathOf(int first, int count) {
    Layout layout;
    for (int i = 0; i < count; ++i)
        layout.points.push_back(first + 2 * i);
    if (count > 0) {
        layout.start = layout.points.front();
        layout.end = layout.points.back();
    }
    return layout;
}

}  // namespace

Layout layoutOf(const SketchEntity& entity) {
    const int first = entity.firstValue;
    switch (entity.kind) {
        case EntityKind::line:
            return pathOf(first, 2);
        case EntityKind::spline:
            return pathOf(first, entity.valueCount / 2);
        case EntityKind::polyline:
            return pathOf(first, entity.vertexCount);
        case EntityKind::arc:
            return {.points = {first, first + 3, first + 5}, .start = first + 3, .end = first + 5};
        case EntityKind::ellipticalArc:
            return {.points = {first, first + 5, first + 7}, .start = first + 5, .end = first + 7, .vector = first + 2};
        case EntityKind::ellipse:
            return {.points = {first}, .vector = first + 2};
        case EntityKind::ray:
        case EntityKind::xline:
        case EntityKind::text:
            return {.points = {first}, .direction = first + 2};
        case EntityKind::circle:
        case EntityKind::point:
            break;
    }
    return {.points = {first}};
}

}  // namespace holdfast::solver::detail
