#include "formats/slvs/SlvsHandles.h"

#include <cstddef>

#include "formats/slvs/SlvsSplines.h"
#include "formats/slvs/SlvsText.h"

namespace holdfast::formats {
namespace {

using Use = SlvsWritten::Use;

bool isAnEnd(const Place& place) {
    return place.kind == PlaceKind::start || place.kind == PlaceKind::end;
}

}  // namespace

const SlvsWritten* SlvsHandles::find(const std::string& entity) const {
    const auto found = m_written.find(entity);
    return found == m_written.end() ? nullptr : &found->second;
}

std::optional<SlvsHandle> SlvsHandles::point(const Place& place) const {
    const SlvsWritten* written = find(place.entity);
    if (written == nullptr)
        return std::nullopt;
    switch (written->use) {
        case Use::curve:
            return pointOnCurve(*written, place);
        case Use::pieces: {
            constexpr SlvsHandle first = 1, last = 4;
            const auto* spline = std::get_if<SplineShape>(&written->entity->shape);
            if (!isAnEnd(place) || std::holds_alternative<EllipseShape>(written->entity->shape) ||
                (spline != nullptr && spline->periodic))
                return std::nullopt;
            return place.kind == PlaceKind::start ? ofRequest(written->first, first) : ofRequest(written->last, last);
        }
        case Use::origin:
            return SlvsSketchRecords::kOrigin;
        case Use::xAxis:
        case Use::yAxis:
            break;
    }
    return std::nullopt;
}

std::optional<SlvsHandle> SlvsHandles::pointOnCurve(const SlvsWritten& written, const Place& place) const {
    const Shape& shape = written.entity->shape;
    const auto at = [&](std::size_t number) {
        return std::optional(ofRequest(written.first, static_cast<SlvsHandle>(number)));
    };
    const bool isStart = place.kind == PlaceKind::start, isEnd = place.kind == PlaceKind::end;
    if (std::holds_alternative<PointShape>(shape))
        return place.kind == PlaceKind::whole ? at(0) : std::nullopt;
    if (std::holds_alternative<LineShape>(shape))
        return isStart ? at(1) : isEnd ? at(2) : std::nullopt;
    if (place.kind == PlaceKind::centre)
        return at(1);
    if (std::holds_alternative<ArcShape>(shape))
        return isStart ? at(2) : isEnd ? at(3) : std::nullopt;
    const auto* spline = std::get_if<SplineShape>(&shape);
    if (spline == nullptr || spline->periodic)
        return std::nullopt;
    if (isStart || isEnd)
        return at(isStart ? 1 : spline->control.size());
    const auto control = static_cast<std::size_t>(place.index);
    return place.kind == PlaceKind::control && isSlvsControl(*spline, control) ? at(control + 1) : std::nullopt;
}

std::optional<SlvsHandles::End> SlvsHandles::endAt(const Place& place) const {
    const std::optional<SlvsHandle> at = isAnEnd(place) ? point(place) : std::nullopt;
    const SlvsWritten* written = find(place.entity);
    if (!at || written->use == Use::origin)
        return std::nullopt;
    const Shape& shape = written->entity->shape;
    const End::Kind kind = std::holds_alternative<LineShape>(shape)  ? End::Kind::line
                           : std::holds_alternative<ArcShape>(shape) ? End::Kind::arc
                                                                     : End::Kind::cubic;
    return End{kind, ofRequest(*at >> 16U, 0), *at, place.kind == PlaceKind::end};
}

std::optional<bool> SlvsHandles::axis(const Place& place) const {
    const SlvsWritten* written = find(place.entity);
    if (written == nullptr || (written->use != Use::xAxis && written->use != Use::yAxis))
        return std::nullopt;
    return written->use == Use::xAxis;
}

}  // namespace holdfast::formats
