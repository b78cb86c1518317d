#include "formats/dxf/records/DxfPolylines.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "formats/dxf/DxfCodes.h"

namespace holdfast::formats {
namespace {

constexpr unsigned kClosed = 1, kFitted = 2 | 4, kOfFit = 1 | 8, kFrame = 16;

unsigned flagsOf(const DxfItems& items) {
    return static_cast<unsigned>(ownNumber(items, 70, 0.0));
}

void setFlags(DxfItems& items, unsigned flags, const DxfStyle& style) {
    if (flags == flagsOf(items))
        return;
    if (const auto found = findOwn(items, 70))
        items[*found].value = std::to_string(flags);
    else
        items.push_back(newItem(70, std::to_string(flags), style));
}

void setNumber(DxfItems& items, int code, double value, const DxfStyle& style) {
    const auto found = findOwn(items, code);
    if (!found)
        items.insert(items.begin() + static_cast<std::ptrdiff_t>(ownGroups(items).back() + 1),
                     newNumber(code, value, style));
    else if (ownNumber(items, code, 0.0) != value)
        items[*found].value = numberLike(value, items[*found].value);
}

void append(DxfItems& items, const DxfItems& more) {
    items.insert(items.end(), more.begin(), more.end());
}

/// For each new vertex the former one that stands there; none for one that is new.
std::vector<std::optional<std::size_t>> formerOf(const PolylineShape& before, const PolylineShape& now) {
    std::vector<std::optional<std::size_t>> former(now.vertices.size());
    if (before.vertices.size() == now.vertices.size()) {
        for (std::size_t i = 0; i < former.size(); ++i)
            former[i] = i;
        return former;
    }
    std::multimap<std::pair<double, double>, std::size_t> places;
    for (std::size_t i = 0; i < before.vertices.size(); ++i)
        places.emplace(std::pair(before.vertices[i].x, before.vertices[i].y), i);
    for (std::size_t i = 0; i < former.size(); ++i)
        if (const auto at = places.find({now.vertices[i].x, now.vertices[i].y}); at != places.end()) {
            former[i] = at->second;
            places.erase(at);
        }
    return former;
}

/// The groups of one vertex, or its record, with another place and bulge.
class Vertices {
public:
    Vertices(std::vector<DxfItems> former, const PolylineShape& before, const PolylineShape& now, bool looksDown,
             DxfStyle style, DxfHandles& handles)
        : m_former(std::move(former)),
          m_before(before),
          m_now(now),
          m_sign(looksDown ? -1.0 : 1.0),
          m_style(std::move(style)),
          m_handles(handles) {}

    DxfItems all() {
        DxfItems items;
        std::size_t last = 0;
        const auto former = formerOf(m_before, m_now);
        for (std::size_t i = 0; i < former.size(); ++i) {
            last = former[i].value_or(last);
            DxfItems vertex = former[i] ? m_former[last] : another(m_former[last]);
            setNumber(vertex, 10, m_sign * m_now.vertices[i].x, m_style);
            setNumber(vertex, 20, m_now.vertices[i].y, m_style);
            const bool keepsEnd = former[i] && endsOpen(m_before, last) && endsOpen(m_now, i);
            if (const double bulge = m_sign * m_now.bulges[i]; !keepsEnd && ownNumber(vertex, 42, 0.0) != bulge)
                setNumber(vertex, 42, bulge, m_style);
            append(items, vertex);
        }
        return items;
    }

private:
    /// The bulge there belongs to no segment.
    static bool endsOpen(const PolylineShape& polyline, std::size_t vertex) {
        return !polyline.closed && vertex + 1 == polyline.vertices.size();
    }

    /// A vertex beside one that is there, without what tells that one from others.
    DxfItems another(DxfItems vertex) {
        constexpr int number = 91;
        std::erase_if(vertex, [](const DxfItem& item) { return item.code == number; });
        if (const auto own = findOwn(vertex, kHandle))
            vertex[*own].value = m_handles.take();
        return vertex;
    }

    std::vector<DxfItems> m_former;
    const PolylineShape &m_before, &m_now;
    double m_sign;
    DxfStyle m_style;
    DxfHandles& m_handles;
};

void rewriteLight(DxfItems& record, const PolylineShape& before, const PolylineShape& now, DxfHandles& handles) {
    const auto isOfVertex = [](int code) {
        return code == 10 || code == 20 || code == 30 || (code >= 40 && code <= 42) || code == 91;
    };
    const auto isVertex = [&](std::size_t i) { return record[i].code == 10; };
    const std::vector<std::size_t> own = ownGroups(record);
    const auto first = std::find_if(own.begin(), own.end(), isVertex);
    const auto last = std::find_if(own.rbegin(), own.rend(), isVertex).base();
    const auto behind = std::find_if(last, own.end(), [&](std::size_t i) { return !isOfVertex(record[i].code); });
    const std::size_t begin = *first, end = behind == own.end() ? own.back() + 1 : *behind;
    DxfItems head(record.begin(), record.begin() + static_cast<std::ptrdiff_t>(begin));
    std::vector<DxfItems> vertices;
    for (std::size_t i = begin; i < end; ++i) {
        const bool isOwn = std::binary_search(own.begin(), own.end(), i);
        if (isOwn && isVertex(i))
            vertices.emplace_back();
        // What stands between vertices and belongs to none of them is the polyline's.
        (isOwn && isOfVertex(record[i].code) ? vertices.back() : head).push_back(record[i]);
    }
    const DxfStyle style = styleOf(record);
    if (const auto count = findOwn(head, 90); count && before.vertices.size() != now.vertices.size())
        head[*count].value = std::to_string(now.vertices.size());
    setFlags(head, (flagsOf(head) & ~kClosed) | (now.closed ? kClosed : 0), style);
    const DxfItems tail(record.begin() + static_cast<std::ptrdiff_t>(end), record.end());
    record = head;
    append(record, Vertices(vertices, before, now, looksDown(head) || looksDown(tail), style, handles).all());
    append(record, tail);
}

void rewriteOld(DxfItems& record, const PolylineShape& before, const PolylineShape& now, DxfHandles& handles) {
    std::vector<DxfItems> parts = partsOf(record);
    DxfItems head = std::move(parts.front()), end = std::move(parts.back());
    std::vector<DxfItems> vertices;
    for (std::size_t i = 1; i + 1 < parts.size(); ++i)
        if ((flagsOf(parts[i]) & kFrame) == 0)
            vertices.push_back(std::move(parts[i]));
    const DxfStyle style = styleOf(vertices.front());
    if ((flagsOf(head) & kFitted) != 0)
        for (DxfItems& vertex : vertices)
            setFlags(vertex, flagsOf(vertex) & ~kOfFit, style);
    if (const auto smooth = findOwn(head, 75); smooth && (flagsOf(head) & kFitted) != 0)
        head[*smooth].value.assign(1, '0');
    setFlags(head, (flagsOf(head) & ~(kClosed | kFitted)) | (now.closed ? kClosed : 0), style);
    record = head;
    append(record, Vertices(vertices, before, now, looksDown(head), style, handles).all());
    append(record, end);
}

}  // namespace

std::vector<DxfItems> partsOf(const DxfItems& record) {
    std::vector<DxfItems> parts;
    for (const DxfItem& item : record) {
        if (item.code == 0 || parts.empty())
            parts.emplace_back();
        parts.back().push_back(item);
    }
    return parts;
}

void rewritePolyline(DxfItems& record, const PolylineShape& before, const PolylineShape& now, DxfHandles& handles) {
    if (record.front().value == "LWPOLYLINE")
        rewriteLight(record, before, now, handles);
    else
        rewriteOld(record, before, now, handles);
}

}  // namespace holdfast::formats
