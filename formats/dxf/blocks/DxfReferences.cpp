#include "formats/dxf/blocks/DxfReferences.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "formats/dxf/DxfCodes.h"
#include "formats/dxf/DxfLooks.h"
#include "formats/dxf/DxfText.h"
#include "formats/dxf/records/DxfPolylines.h"
#include "formats/dxf/records/DxfRewrite.h"
#include "geometry/Angles.h"

namespace holdfast::formats {
namespace {

/// The order in which an INSERT says where it is.
constexpr std::array kPlaceCodes{2, 10, 20, 30, 41, 42, 43, 50, 70, 71, 44, 45};

/// Numbers as the record has them: on a plane that looks down, those that are seen from there.
struct Seen {
    Vec2 at;
    double rotation, yScale, rowSpacing;

    Seen(const Placement& placement, bool down)
        : at{down ? -placement.at.x : placement.at.x, placement.at.y},
          rotation(down ? kPi - placement.rotation : placement.rotation),
          yScale(down ? -placement.yScale : placement.yScale),
          rowSpacing(down ? -placement.spacing.y : placement.spacing.y) {}
};

class PlaceWriter {
public:
    explicit PlaceWriter(DxfItems& record) : m_record(record), m_style(styleOf(record)) {}

    void write(const Placement& before, const Placement& now) {
        const bool down = looksDown(m_record);
        const Seen was(before, down), is(now, down);
        put(10, was.at.x, is.at.x, 0.0);
        put(20, was.at.y, is.at.y, 0.0);
        put(41, before.xScale, now.xScale, 1.0);
        put(42, was.yScale, is.yScale, 1.0);
        if (was.rotation != is.rotation)
            put(50, number(50, 0.0), degreesInTurn(is.rotation), 0.0);
        put(44, before.spacing.x, now.spacing.x, 0.0);
        put(45, was.rowSpacing, is.rowSpacing, 0.0);
    }

private:
    double number(int code, double otherwise) const { return ownNumber(m_record, code, otherwise); }

    static double degreesInTurn(double radians) { return degreesOf(radians - kTurn * std::floor(radians / kTurn)); }

    void put(int code, double was, double is, double otherwise) {
        if (was == is || number(code, otherwise) == is)
            return;
        if (const auto found = findOwn(m_record, code))
            m_record[*found].value = numberLike(is, m_record[*found].value);
        else
            add(newNumber(code, is, m_style));
    }

    /// Behind those that stand before it in every file.
    void add(DxfItem item) {
        const auto order = [](int code) { return std::find(kPlaceCodes.begin(), kPlaceCodes.end(), code); };
        std::size_t behind = 0;
        for (const std::size_t i : ownGroups(m_record))
            if (order(m_record[i].code) < order(item.code))
                behind = i;
        m_record.insert(m_record.begin() + static_cast<std::ptrdiff_t>(behind + 1), std::move(item));
    }

    DxfItems& m_record;
    DxfStyle m_style;
};

void putItem(DxfItems& record, int code, const std::string& value, const std::string& usual) {
    const auto found = findOwn(record, code);
    const auto at = [&](std::size_t i) { return record.begin() + static_cast<std::ptrdiff_t>(i); };
    if (found && value == usual && code != 8)
        record.erase(at(*found));
    else if (found)
        record[*found].value = value;
    else if (const auto layer = findOwn(record, 8); value != usual)
        record.insert(at(layer.value_or(0) + 1), newItem(code, value, styleOf(record)));
}

DxfItems joined(std::vector<DxfItems> parts) {
    DxfItems record;
    for (DxfItems& part : parts)
        record.insert(record.end(), std::make_move_iterator(part.begin()), std::make_move_iterator(part.end()));
    return record;
}

}  // namespace

void rewriteReference(DxfItems& record, const BlockReference& before, const BlockReference& now, DxfHandles& handles) {
    std::vector<DxfItems> parts = partsOf(record);
    PlaceWriter(parts.front()).write(before.placement, now.placement);
    for (std::size_t i = 0; i < now.attributes.size() && i + 1 < parts.size(); ++i)
        if (before.attributes[i].shape != now.attributes[i].shape)
            rewrite(parts[i + 1], before.attributes[i].shape, now.attributes[i].shape, handles);
    record = joined(std::move(parts));
}

void putLook(DxfItems& record, const Look& before, const Look& now, const std::string& owner) {
    std::vector<DxfItems> parts = partsOf(record);
    const auto layer = [](const Look& look) { return look.layer.empty() ? "0" : encodedDxfText(look.layer); };
    DxfItems& head = parts.front();
    for (DxfItems& part : parts)  // vertices and attributes are on the layer of what they belong to
        if (const auto found = findOwn(part, 8); found && before.layer != now.layer)
            part[*found].value = layer(now);
    if (before.colour != now.colour) {
        putItem(head, 62, std::to_string(paletteNumber(now.colour)), std::to_string(paletteNumber({})));
        putItem(head, 420, now.colour.kind == Colour::Kind::rgb ? std::to_string(now.colour.value) : "", "");
    }
    if (before.linetype != now.linetype)
        putItem(head, 6, encodedDxfText(now.linetype), "");
    if (before.weight != now.weight)
        putItem(head, 370, std::to_string(now.weight), std::to_string(kWeightByLayer));
    if (before.visible != now.visible)
        putItem(head, 60, now.visible ? "0" : "1", "0");
    if (const auto found = findOwn(head, kOwner); found && !owner.empty())
        head[*found].value = owner;
    record = joined(std::move(parts));
}

}  // namespace holdfast::formats
