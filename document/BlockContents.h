#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "document/Document.h"
#include "document/Uses.h"

namespace holdfast::document {

// What block references show, as entities that the drawing does not have. Parts are called by the reference and their
// number in the block ("insert:3/g2"), in columns and rows but the first by these as well ("insert:3[1,0]/g2"),
// attributes by theirs ("insert:3/attrib:0"), and what stands in the block by reference likewise
// ("insert:3/insert:0/g2"). What has the block's colour, layer 0 or such has that of the reference. Parts that a scale
// has left nothing proper of are passed over.

/// Calls `take` with each part, in the coordinates of the drawing. Cost: what the reference shows.
void forEachPart(const BlockReference& reference, const std::function<void(Entity&&)>& take);

/// The same with those parts alone that a picture shows: not what is invisible, nor the points of dimensions, which
/// stand on a layer that no program plots.
void forEachShownPart(const BlockReference& reference, const std::function<void(Entity&&)>& take);

/// One level of it: the inserts of the block are given to `takeReference`, where they can be some.
void forEachPart(const BlockReference& reference, const std::function<void(Entity&&)>& take,
                 const std::function<void(BlockReference&&)>& takeReference);

/// The names of references that one may be a part of, the longest first: "insert:3/insert:0" and "insert:3" for
/// "insert:3/insert:0/g2".
std::vector<std::string_view> wholesOf(std::string_view part);

/// What something was in its block, before a reference showed it.
struct PartSource {
    const Block* block = nullptr;               ///< that it stands in; null for attributes and outlines of hatches
    std::size_t number = 0;                     ///< among the block's parts or references, or the attributes
    const BlockPart* part = nullptr;            ///< null for what stands there by reference
    const BlockReference* reference = nullptr;  ///< that
};

/// Where a part comes from, by its name behind that of the reference: "g2", "insert:0[1,0]/g2". Numbers of copies are
/// passed over ("g2_2"). Nothing for what is no part of it.
std::optional<PartSource> sourceOf(const BlockReference& reference, std::string_view part);

/// True for the name of a part of the reference.
bool isPartOf(const BlockReference& reference, std::string_view name);

}  // namespace holdfast::document
