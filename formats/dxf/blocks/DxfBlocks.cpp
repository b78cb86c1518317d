#include "formats/dxf/blocks/DxfBlocks.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "document/checks/ShapeCheck.h"
#include "document/text/Capitals.h"
#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"
#include "formats/dxf/DxfLooks.h"
#include "formats/dxf/DxfPlane.h"
#include "formats/dxf/DxfShapes.h"
#include "formats/dxf/DxfText.h"
#include "formats/dxf/blocks/DxfHatch.h"
#include "geometry/Angles.h"

namespace holdfast::formats {
namespace {

/// Deeper than blocks of people stand in each other, and as deep as a stack bears.
constexpr int kDeepest = 100;

DxfReferenceReading notRead(std::string reason) {
    return {std::nullopt, std::move(reason)};
}

/// On a plane that looks down x runs to the left: a half turn, and a reflection at the x axis before it.
Placement seenFromAbove(Placement placement) {
    placement.rotation = kPi - placement.rotation;
    placement.yScale = -placement.yScale;
    placement.spacing.y = -placement.spacing.y;
    return placement;
}

Placement placementOf(const DxfEntity& insert, Facing facing) {
    Placement placement{.at = turned({insert.number(10, 0.0), insert.number(20, 0.0)}, facing),
                        .rotation = inRadians(insert.number(50, 0.0)),
                        .xScale = insert.number(41, 1.0),
                        .yScale = insert.number(42, 1.0),
                        .columns = std::max(1, insert.integer(70, 1)),
                        .rows = std::max(1, insert.integer(71, 1)),
                        .spacing = {insert.number(44, 0.0), insert.number(45, 0.0)}};
    return facing == Facing::down ? seenFromAbove(placement) : placement;
}

/// False where one of them cannot be shown.
bool addAttributes(BlockReference& reference, std::span<const DxfEntity> attributes) {
    constexpr unsigned hidden = 1;
    for (const DxfEntity& attribute : attributes) {
        const std::optional<TextShape> text = readDxfAttribute(attribute);
        if (!text)
            return false;
        Look look = lookOf(attribute);
        look.visible = look.visible && (static_cast<unsigned>(attribute.integer(70, 0)) & hidden) == 0;
        reference.attributes.push_back({*text, SharedLook(std::move(look))});
    }
    return true;
}

std::string blockNameOf(const DxfEntity& entity) {
    const DxfGroup* block = entity.find(2);
    return block == nullptr ? "" : keyOf(decodedDxfText(block->value, entity.source->codePage()));
}

DxfReferenceReading readInsert(const DxfEntity& insert, std::span<const DxfEntity> attributes, DxfReference read) {
    const std::string name(insert.name);
    read.block = blockNameOf(insert);
    read.reference.placement = placementOf(insert, facingOf(insert));
    if (read.block.empty())
        return notRead(name + " without a block's name");
    if (read.reference.placement.xScale == 0.0 || read.reference.placement.yScale == 0.0)
        return notRead(name + " scaled to nothing");
    if (!addAttributes(read.reference, attributes))
        return notRead(name + " with an attribute that has no height or is on a tilted plane");
    return {std::move(read), {}};
}

/// What it shows stands in a block of its own, where the drawing has it.
DxfReferenceReading readDimension(const DxfEntity& dimension, DxfReference read) {
    read.reference.kind = BlockReference::Kind::dimension;
    read.block = blockNameOf(dimension);
    if (read.block.empty())
        return notRead(std::string(dimension.name) + " without a picture of it");
    return {std::move(read), {}};
}

DxfReferenceReading readHatch(const DxfEntity& hatch, DxfReference read) {
    read.reference.kind = BlockReference::Kind::hatch;
    read.reference.block = SharedBlock(readDxfHatch(hatch));
    if (facingOf(hatch) == Facing::down)
        read.reference.placement = seenFromAbove({});
    if (read.reference.block->parts.empty())
        return notRead(std::string(hatch.name) + " without an outline");
    return {std::move(read), {}};
}

DxfReferenceReading readAny(const DxfEntity& entity, std::span<const DxfEntity> attributes, DxfRange range) {
    const std::string name(entity.name);
    if (entity.integer(67, 0) == 1)
        return notRead(name + " in paper space");
    if (facingOf(entity) == Facing::sideways)
        return notRead(name + " on a tilted plane");
    DxfReference read{.reference = {.id = {}}, .block = {}, .record = name, .range = range};
    read.reference.look = SharedLook(lookOf(entity));
    if (name == "INSERT")
        return readInsert(entity, attributes, std::move(read));
    return name == "HATCH" ? readHatch(entity, std::move(read)) : readDimension(entity, std::move(read));
}

/// Filled triangles and quadrangles, of which arrow heads are made: their outline, round which the points of a record
/// do not lead.
std::optional<Shape> outlineOfSolid(const DxfEntity& solid) {
    if (solid.name != "SOLID" && solid.name != "TRACE")
        return std::nullopt;
    PolylineShape outline;
    outline.closed = true;
    for (const int code : {10, 11, 13, 12}) {
        const bool isTriangle = code == 13 && solid.find(code) == nullptr;
        const Vec2 point = turned({solid.number(code, 0.0), solid.number(code + 10, 0.0)}, facingOf(solid));
        if (!isTriangle && (outline.vertices.empty() || outline.vertices.back() != point))
            outline.vertices.push_back(point);
    }
    outline.bulges.assign(outline.vertices.size(), 0.0);
    outline.ids.assign(outline.vertices.size(), 0);
    if (facingOf(solid) == Facing::sideways || faultIn(outline))
        return std::nullopt;
    return outline;
}

/// Reads the entities of one block.
class BlockReader {
public:
    explicit BlockReader(DxfGroups& groups) : m_groups(groups) {}

    DxfBlock take() {
        takeHead(takeEntity(m_groups));
        while (!atName("ENDBLK") && !atName("ENDSEC") && !atName("BLOCK") && !atName("SECTION") && !atName("EOF"))
            takePart();
        if (atName("ENDBLK"))
            takeEntity(m_groups);
        return std::move(m_block);
    }

private:
    bool atName(std::string_view name) {
        if (!m_groups.peek())
            m_groups.take("EOF as the value of group 0; the file is not complete");
        return m_groups.peek()->code == 0 && m_groups.peek()->value == name;
    }

    void takeHead(const DxfEntity& head) {
        constexpr unsigned externalFlags = 4 | 8 | 32;
        if (const DxfGroup* name = head.find(2))
            m_block.block.name = decodedDxfText(name->value, m_groups.codePage());
        try {
            m_block.block.base = {head.number(10, 0.0), head.number(20, 0.0)};
            if ((static_cast<unsigned>(head.integer(70, 0)) & externalFlags) != 0)
                m_block.fault = "which is a drawing of its own";
        } catch (const DrawingError&) {
            m_block.fault = "which is faulty";
        }
    }

    void takePart() {
        const DxfEntity entity = takeEntity(m_groups);
        DxfRange range{entity.begin, entity.end};
        std::vector<DxfEntity> behind;
        const std::string_view follower = entity.name == "POLYLINE" ? "VERTEX"
                                          : entity.name == "INSERT" ? "ATTRIB"
                                                                    : "";
        if (!follower.empty())
            behind = takeBehind(m_groups, follower, range.end);
        try {
            add(entity, behind, range);
        } catch (const DrawingError&) {
            m_block.notUnderstood.push_back(std::string(entity.name) + " with faulty groups");
        }
    }

    void add(const DxfEntity& entity, std::span<const DxfEntity> behind, DxfRange range) {
        if (entity.name == "ATTDEF" || entity.name == "SEQEND")
            return;  // a reference has the attribute itself
        if (isDxfReference(entity.name))
            return addReference(readDxfReference(entity, behind, range));
        DxfReading reading = readDxfEntity(entity, behind);
        if (!reading.shape)
            reading.shape = outlineOfSolid(entity);
        if (!reading.shape) {
            m_block.notUnderstood.push_back(std::move(reading.reason));
            return;
        }
        if (Look look = lookOf(entity); *m_look != look)  // most look like the one before them
            m_look = SharedLook(std::move(look));
        m_block.block.parts.push_back({std::move(*reading.shape), m_look});
        m_block.parts.push_back(range);
    }

    void addReference(DxfReferenceReading reading) {
        if (reading.reference)
            m_block.references.push_back(std::move(*reading.reference));
        else
            m_block.notUnderstood.push_back(std::move(reading.reason));
    }

    DxfGroups& m_groups;
    DxfBlock m_block;
    SharedLook m_look;
};

}  // namespace

std::string keyOf(std::string_view blockName) {
    return inCapitals(blockName);
}

bool isDxfReference(std::string_view record) {
    return record == "INSERT" || record == "HATCH" || record == "DIMENSION" || record == "ARC_DIMENSION" ||
           record == "LARGE_RADIAL_DIMENSION";
}

DxfReferenceReading readDxfReference(const DxfEntity& entity, std::span<const DxfEntity> attributes, DxfRange range) {
    try {
        return readAny(entity, attributes, range);
    } catch (const DrawingError&) {
        return notRead(std::string(entity.name) + " with faulty groups");
    }
}

std::string spokenFault(const DxfReference& reference, const std::string& fault) {
    return reference.record + (reference.block.empty() ? "" : " of block " + inQuotes(reference.block)) + ", " + fault;
}

DxfBlock takeBlock(DxfGroups& groups) {
    return BlockReader(groups).take();
}

void DxfBlocks::add(DxfBlock block) {
    std::string key = keyOf(block.block.name);
    m_known.try_emplace(std::move(key), Known{std::move(block)});
}

DxfBlocks::Found DxfBlocks::find(const DxfReference& reference, int depth) {
    if (reference.block.empty())
        return {reference.reference.block, {}, 0};
    const auto known = m_known.find(reference.block);
    if (known == m_known.end())
        return {std::nullopt, "which is not there", 0};
    if (known->second.state == Known::State::beingFound)
        return {std::nullopt, "which contains itself", 0};
    if (known->second.state == Known::State::unasked) {
        known->second.state = Known::State::beingFound;
        known->second.found = shown(known->second, depth);
        known->second.state = Known::State::found;
    }
    return known->second.found;
}

/// What contains what cannot be shown, cannot be shown either, unless that is missing only.
DxfBlocks::Found DxfBlocks::shown(Known& known, int depth) {
    DxfBlock& definition = known.definition;
    if (!definition.fault.empty())
        return {std::nullopt, definition.fault, 0};
    const Found tooDeep{std::nullopt,
                        "in which blocks stand in each other more than " + std::to_string(kDeepest) + " deep", 0};
    if (depth > kDeepest)
        return tooDeep;
    int below = 0;
    Block block = std::move(definition.block);
    DxfBlockRecords records{std::move(definition.parts), {}};
    ReferenceNames names;
    for (DxfReference& inner : definition.references) {
        Found found = find(inner, depth + 1);
        if (found.depth >= kDeepest)
            return tooDeep;
        if (found.block) {
            below = std::max(below, found.depth);
            inner.reference.id = names.next(inner.reference.kind);
            inner.reference.block = std::move(*found.block);
            block.references.push_back(std::move(inner.reference));
            records.references.push_back(inner.range);
        } else if (m_known.contains(inner.block)) {
            return {std::nullopt, std::move(found.fault), 0};
        } else {
            m_notUnderstood.push_back(spokenFault(inner, found.fault));
        }
    }
    for (const std::string& what : definition.notUnderstood)
        m_notUnderstood.push_back(what + " in a block");
    m_records.emplace(block.name, std::move(records));
    return {SharedBlock(std::move(block)), {}, below + 1};
}

int DxfBlocks::unused() const {
    return static_cast<int>(std::count_if(
        m_known.begin(), m_known.end(), [](const auto& known) { return known.second.state == Known::State::unasked; }));
}

}  // namespace holdfast::formats
