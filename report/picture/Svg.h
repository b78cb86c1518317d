#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "document/Document.h"
#include "report/Uses.h"

namespace holdfast::report {

/// How loud a constraint's mark is drawn.
enum class MarkTone {
    kept,       ///< quiet
    deleted,    ///< red, struck out
    rePointed,  ///< amber, with a chevron; also one that says another thing than before
    added,      ///< green, with a plus
    broken      ///< red, with an exclamation mark: it does not hold
};

/// How an entity is drawn.
enum class EntityTone { plain, edited, followed, created, erased };

/// A mark or an entity left out of these maps is kept, or plain.
struct PictureNotes {
    std::unordered_map<std::string, MarkTone> constraints;
    std::unordered_map<std::string, EntityTone> entities;
    std::unordered_map<std::string, std::string> remarks;  ///< by constraint: words for its mark's tooltip
};

struct PictureOptions {
    double width = 960.0;        ///< of the picture at most, in its own units (CSS pixels)
    double lowest = 0.35;        ///< least height as a share of the width
    double highest = 0.9;        ///< greatest height as a share of the width; tall drawings get a narrower picture
    bool marks = true;           ///< constraint marks and dimensions
    bool dimensionLines = true;  ///< false: values alone, for crowded drawings
    bool names = false;          ///< of entities, beside them
    bool colours = false;        ///< those of the drawing: of entities, or of their layers
};

/// What the style of a picture has more where it shows names.
inline constexpr std::string_view kNameStyle =
    ".name { color: #1550c4; font-weight: 600; }\n"
    "@media screen and (prefers-color-scheme: dark) { .name { color: #78adff; } }\n";

/// A picture of a drawing with its constraint marks, complete in itself: style and signs inside, light and dark by the
/// reader's setting, no outside references. Stroke widths do not depend on the scale. Entities and marks carry their
/// ids (data-e, data-c); where there are thousands they are drawn in few elements without ids.
std::string writePicture(const Document& document, const PictureNotes& notes = {}, const PictureOptions& options = {});

/// The geometry alone in true size: one picture unit is one drawing unit and width and height carry the drawing's
/// length unit (or the nearest that SVG has), so that cutters and drawing programs take it at its measure. Unbounded
/// lines end at the drawing's box, points are dots, texts are in the reader's type.
std::string writeTrueSizeSvg(const Document& document);

}  // namespace holdfast::report
