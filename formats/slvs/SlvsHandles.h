#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/slvs/SlvsRecords.h"

namespace holdfast::formats {

/// What an entity of a drawing is in a file.
struct SlvsWritten {
    enum class Use { curve, pieces, origin, xAxis, yAxis };

    const Entity* entity = nullptr;
    Use use = Use::curve;
    SlvsHandle first = 0, last = 0;  ///< requests: one, or the pieces of the curve in their order
};

/// Finds the handles of a drawing's places.
class SlvsHandles {
public:
    void add(SlvsWritten written) { m_written.emplace(written.entity->id, written); }

    const SlvsWritten* find(const std::string& entity) const;
    std::optional<SlvsHandle> point(const Place& place) const;
    /// A whole curve of one kind.
    template <class Kind>
    const Kind* curve(const Place& place) const {
        const SlvsWritten* written = place.kind == PlaceKind::whole ? find(place.entity) : nullptr;
        return written == nullptr || written->use != SlvsWritten::Use::curve
                   ? nullptr
                   : std::get_if<Kind>(&written->entity->shape);
    }
    /// The line, arc or cubic that ends at a place; of a curve in pieces the first or the last.
    struct End {
        enum class Kind { line, arc, cubic } kind = Kind::line;
        SlvsHandle curve = 0, point = 0;
        bool isEnd = false;
    };
    std::optional<End> endAt(const Place& place) const;
    SlvsHandle curveHandle(const Place& place) const { return ofRequest(find(place.entity)->first, 0); }
    /// True for the x axis, false for the y axis.
    std::optional<bool> axis(const Place& place) const;

private:
    std::optional<SlvsHandle> pointOnCurve(const SlvsWritten& written, const Place& place) const;

    std::unordered_map<std::string_view, SlvsWritten> m_written;
};

}  // namespace holdfast::formats
