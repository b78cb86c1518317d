#include "tests/module/commands/fillet/CurveFilletCommand.h"

#include <stdexcept>

namespace holdfast::module {
namespace {

template <class T>
T* as(YxDbEntity& entity) {
    return entity.isKindOf(T::desc()) ? static_cast<T*>(&entity) : nullptr;
}

}  // namespace

void putInPlace(YxDbEntity& target, const YxDbEntity& data) {
    if (target.isA() != data.isA())
        throw std::invalid_argument("a fillet leaves an entity of its class");
    if (auto* line = as<YxDbLine>(target)) {
        const LineData ends = EntityAccess::line(static_cast<const YxDbLine&>(data));
        EntityAccess::setLine(*line, ends.start, ends.end);
    } else if (auto* ray = as<YxDbRay>(target)) {
        const DirectedData placed = EntityAccess::ray(static_cast<const YxDbRay&>(data));
        EntityAccess::setRay(*ray, placed.base, placed.direction);
    } else if (auto* xline = as<YxDbXline>(target)) {
        const DirectedData placed = EntityAccess::xline(static_cast<const YxDbXline&>(data));
        EntityAccess::setXline(*xline, placed.base, placed.direction);
    } else if (auto* arc = as<YxDbArc>(target)) {
        EntityAccess::setArc(*arc, EntityAccess::arc(static_cast<const YxDbArc&>(data)));
    } else if (auto* circle = as<YxDbCircle>(target)) {
        EntityAccess::setCircle(*circle, EntityAccess::circle(static_cast<const YxDbCircle&>(data)));
    } else if (auto* ellipse = as<YxDbEllipse>(target)) {
        EntityAccess::setEllipse(*ellipse, EntityAccess::ellipse(static_cast<const YxDbEllipse&>(data)));
    } else if (auto* spline = as<YxDbSpline>(target)) {
        EntityAccess::setSpline(*spline, EntityAccess::spline(static_cast<const YxDbSpline&>(data)));
    }
}

}  // namespace holdfast::module
