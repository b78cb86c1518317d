#include "document/BlockContents.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <utility>

#include "document/BlockPlacement.h"
#include "document/checks/ShapeCheck.h"
#include "document/text/Capitals.h"

namespace holdfast::document {

namespace {

constexpr std::string_view kPart = "g", kAttribute = "attrib:";

/// What is left to the block, the reference says.
SharedLook lookWithin(const SharedLook& own, const SharedLook& reference) {
    Look look = *own;
    if (look.layer.empty())
        look.layer = reference->layer;
    if (look.colour.kind == Colour::Kind::byBlock)
        look.colour = reference->colour;
    if (isCalled(look.linetype, "BYBLOCK"))
        look.linetype = reference->linetype;
    if (look.weight == kWeightByBlock)
        look.weight = reference->weight;
    look.visible = look.visible && reference->visible;
    return look == *own ? own : look == *reference ? reference : SharedLook(std::move(look));
}

class Walk {
public:
    Walk(const std::function<void(Entity&&)>& take, const std::function<void(BlockReference&&)>* takeReference)
        : m_take(take), m_takeReference(takeReference) {}

    void over(const BlockReference& reference, const std::string& name, const SharedLook& look, const Affine& outer) {
        for (int row = 0; row < reference.placement.rows; ++row)
            for (int column = 0; column < reference.placement.columns; ++column) {
                const bool isFirst = row == 0 && column == 0;
                const std::string cell =
                    isFirst ? name : name + "[" + std::to_string(column) + "," + std::to_string(row) + "]";
                overCell(*reference.block, cell, look, chained(outer, transformOf(reference, column, row)));
            }
        for (std::size_t i = 0; i < reference.attributes.size(); ++i)
            give(reference.attributes[i], name + "/" + std::string(kAttribute) + std::to_string(i), look, outer);
    }

private:
    void overCell(const Block& block, const std::string& name, const SharedLook& look, const Affine& transform) {
        for (std::size_t i = 0; i < block.parts.size(); ++i)
            give(block.parts[i], name + "/" + std::string(kPart) + std::to_string(i), look, transform);
        for (const BlockReference& inner : block.references) {
            const std::string innerName = name + "/" + inner.id;
            const SharedLook innerLook = lookWithin(inner.look, look);
            if (!giveReference(inner, innerName, innerLook, transform))
                over(inner, innerName, innerLook, transform);
        }
    }

    void give(const BlockPart& part, std::string name, const SharedLook& look, const Affine& transform) {
        Shape shape = transformed(part.shape, transform);
        if (!faultIn(shape))
            m_take({.id = std::move(name), .shape = std::move(shape), .look = lookWithin(part.look, look)});
    }

    bool giveReference(const BlockReference& inner, const std::string& name, const SharedLook& look,
                       const Affine& transform) {
        std::optional<BlockReference> placed = m_takeReference == nullptr || inner.kind != BlockReference::Kind::insert
                                                   ? std::nullopt
                                                   : transformed(inner, transform);
        if (!placed)
            return false;
        placed->id = name;
        placed->look = look;
        (*m_takeReference)(std::move(*placed));
        return true;
    }

    const std::function<void(Entity&&)>& m_take;
    const std::function<void(BlockReference&&)>* m_takeReference;
};

/// The number behind a word: 2 of "g2_3", 0 of "insert:0[1,0]".
std::optional<std::size_t> numberBehind(std::string_view text, std::string_view word) {
    if (!text.starts_with(word))
        return std::nullopt;
    std::size_t number = 0;
    const char* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data() + word.size(), last, number);
    constexpr std::string_view behind = "_[";
    if (error != std::errc() || (end != last && behind.find(*end) == std::string_view::npos))
        return std::nullopt;
    return number;
}

/// The reference of a block that is called so, by its kind and number.
const BlockReference* referenceCalled(const Block& block, std::string_view name) {
    const auto isTheOne = [&](const BlockReference& reference) {
        const std::size_t length = reference.id.size();
        constexpr std::string_view behind = "_[";
        return name.starts_with(reference.id) &&
               (name.size() == length || behind.find(name[length]) != std::string_view::npos);
    };
    const auto found = std::find_if(block.references.begin(), block.references.end(), isTheOne);
    return found == block.references.end() ? nullptr : &*found;
}

std::optional<PartSource> attributeOf(const BlockReference& reference, std::string_view name) {
    const auto number = numberBehind(name, kAttribute);
    if (!number || *number >= reference.attributes.size())
        return std::nullopt;
    return PartSource{.number = *number, .part = &reference.attributes[*number]};
}

}  // namespace

void forEachPart(const BlockReference& reference, const std::function<void(Entity&&)>& take) {
    Walk(take, nullptr).over(reference, reference.id, reference.look, {});
}

void forEachShownPart(const BlockReference& reference, const std::function<void(Entity&&)>& take) {
    forEachPart(reference, [&](Entity&& part) {
        if (part.look->visible && !isCalled(part.look->layer, "DEFPOINTS"))
            take(std::move(part));
    });
}

void forEachPart(const BlockReference& reference, const std::function<void(Entity&&)>& take,
                 const std::function<void(BlockReference&&)>& takeReference) {
    Walk(take, &takeReference).over(reference, reference.id, reference.look, {});
}

std::vector<std::string_view> wholesOf(std::string_view part) {
    std::vector<std::string_view> wholes;
    for (std::size_t slash = part.rfind('/'); slash != std::string_view::npos && slash > 0;
         slash = part.rfind('/', slash - 1)) {
        const std::string_view whole = part.substr(0, slash);
        const std::size_t bracket = whole.ends_with(']') ? whole.rfind('[') : std::string_view::npos;
        wholes.push_back(whole.substr(0, bracket));
    }
    return wholes;
}

std::optional<PartSource> sourceOf(const BlockReference& reference, std::string_view part) {
    const Block& block = *reference.block;
    const std::size_t slash = part.find('/');
    const std::string_view head = part.substr(0, slash);
    if (slash != std::string_view::npos) {
        const BlockReference* inner = referenceCalled(block, head);
        std::optional<PartSource> source = inner == nullptr ? std::nullopt : sourceOf(*inner, part.substr(slash + 1));
        if (source && inner->kind == BlockReference::Kind::hatch)
            source->block = nullptr;
        return source;
    }
    if (const auto number = numberBehind(head, kPart); number && *number < block.parts.size())
        return PartSource{.block = &block, .number = *number, .part = &block.parts[*number]};
    if (const BlockReference* inner = referenceCalled(block, head))
        return PartSource{
            .block = &block, .number = static_cast<std::size_t>(inner - block.references.data()), .reference = inner};
    return attributeOf(reference, head);
}

bool isPartOf(const BlockReference& reference, std::string_view name) {
    if (!name.starts_with(reference.id))
        return false;
    const std::size_t slash = name.find('/', reference.id.size());
    const auto wholes = wholesOf(name.substr(0, slash == std::string_view::npos ? 0 : slash + 1));
    return !wholes.empty() && wholes.front() == reference.id && sourceOf(reference, name.substr(slash + 1)).has_value();
}

}  // namespace holdfast::document
