#include "formats/LostFacts.h"

#include <algorithm>

namespace holdfast::formats {
namespace {

/// The axes and the origin stand for those of other programs.
bool isOwn(const Entity& entity) {
    return entity.id != "origin" && entity.id != "x_axis" && entity.id != "y_axis";
}

struct Row {
    Fact fact;
    const char* name;
    bool (*isOf)(const Entity& entity);
    bool (*isIn)(const Document& drawing) = [](const Document&) { return false; };  ///< of the drawing as a whole
};

constexpr Row kRows[] = {
    {Fact::construction, "construction", [](const Entity& e) { return e.construction; }},
    {Fact::fixedEntities, "that entities are fixed", [](const Entity& e) { return e.fixed && isOwn(e); }},
    {Fact::layers, "layers", [](const Entity& e) { return !e.look->layer.empty(); },
     [](const Document& drawing) { return !drawing.layers.empty(); }},
    {Fact::colours, "colours", [](const Entity& e) { return e.look->colour != Colour(); }},
    {Fact::linetypes, "line types", [](const Entity& e) { return !e.look->linetype.empty(); }},
    {Fact::widths, "widths", [](const Entity& e) { return e.look->weight != kWeightByLayer; }},
    {Fact::invisibility, "that entities are invisible", [](const Entity& e) { return !e.look->visible; }},
    {Fact::plane, "the plane in space", [](const Entity&) { return false; },
     [](const Document& drawing) { return drawing.plane.has_value(); }},
};

bool has(const Document& drawing, const Row& row) {
    return row.isIn(drawing) || std::any_of(drawing.entities.begin(), drawing.entities.end(), row.isOf);
}

}  // namespace

std::string lostFacts(const Document& drawing, std::initializer_list<Fact> kept) {
    std::string list;
    for (const Row& row : kRows)
        if (std::find(kept.begin(), kept.end(), row.fact) == kept.end() && has(drawing, row))
            list += (list.empty() ? "" : ", ") + std::string(row.name);
    return list.empty() ? list : "left out, since the form does not have it: " + list;
}

}  // namespace holdfast::formats
