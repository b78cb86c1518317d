#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// A part of a text, in bytes.
struct DxfRange {
    std::size_t begin = 0, end = 0;
};

/// How a file writes entities, as its own show.
struct DxfForm {
    std::set<std::string, std::less<>> kinds{};  ///< of the entities that it has, by their names
    bool hasMarks = false;                       ///< entities say the classes of their groups (code 100)
    bool hasHandles = false;                     ///< entities have handles (code 5)
    bool isNewer = false;                        ///< its version knows ellipses, splines, xlines, rays and paragraphs
    std::string owner{};                         ///< of the entities of the drawing's model (code 330), or empty
};

/// Where the parts of a block stand, and what stands in it by reference; both in the order of the block.
struct DxfBlockRecords {
    std::vector<DxfRange> parts, references;
};

/// A point that a dimension is measured from, and what it stands on.
struct DxfAnchor {
    enum class Kind {
        point,  ///< it is the place
        along,  ///< on a line or segment, or its continuation: it keeps its part of the length
        rim,    ///< on a circle or arc: it keeps its direction from the centre
        foot    ///< on a line or segment, at right angles below the anchor before it
    };

    int code = 0;  ///< of its x in the record
    Kind kind = Kind::point;
    Place place{};
};

/// A dimension of the file that is one of the drawing, too.
struct DxfMeasure {
    std::string constraint;  ///< the one that measures the same
    std::string reference;   ///< its picture, or empty
    DxfRange range;
    std::vector<DxfAnchor> anchors;
};

/// Where things stand in the text of a DXF file.
struct DxfLayout {
    std::vector<DxfRange> records;     ///< of the drawing's entities, in their order, each with its vertices
    std::vector<DxfRange> references;  ///< of the drawing's references, in their order, each with its attributes
    std::map<std::string, DxfBlockRecords, std::less<>> blocks;  ///< by name: those that are shown
    std::vector<DxfMeasure> measures;                            ///< in the order of the file
    std::size_t recordsEnd = 0;                                  ///< where a further record goes
    bool hasEntities = false;                                    ///< there is a section for it
    std::optional<DxfRange> handleSeed;                          ///< the value of the header's next free handle
    std::uint64_t freeHandle = 1;                                ///< it, and all above, are free
    DxfForm form;
};

}  // namespace holdfast::formats
