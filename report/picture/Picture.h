#pragma once

#include <cstddef>
#include <string>

#include "report/Uses.h"
#include "report/marks/MarkDrawing.h"
#include "report/picture/DrawnColours.h"
#include "report/picture/Frame.h"
#include "report/picture/Svg.h"

namespace holdfast::report {

/// A drawing too large to be read sign by sign: what no edit has touched is drawn in few elements that know no names,
/// and kept constraints have no marks. Pictures of one page in the same frame share one of these; the first draws what
/// is untouched, the others refer to it.
struct Crowd {
    bool isDrawn = false;
    /// A picture by itself, which nobody asks for names and looks at no closer: kept constraints have the marks that
    /// are seen in all of it, without their ids.
    bool isAlone = false;
};

/// Entities and constraints from which a drawing is a crowd: browsers open a page of more slowly.
inline constexpr std::size_t kCrowd = 6000;

/// What goes into a picture. Borrowed for one call.
struct PictureRequest {
    const Document& document;
    const PictureNotes& notes;
    Frame frame;
    const Document* ghost = nullptr;  ///< drawn faintly where an entity of it looks different now; may be null
    double overscan = 0.0;            ///< how far unbounded lines go beyond the frame, as a share of its size
    bool marks = true;
    bool dimensionLines = true;
    bool names = false;               ///< of entities, beside them
    SpotMemory* memory = nullptr;     ///< shared by pictures that will be compared; may be null
    DrawnColours* colours = nullptr;  ///< what no edit has touched is drawn in these; null: in the colour of ink
    Crowd* crowd = nullptr;           ///< null: everything is drawn by itself
};

/// The elements of a picture without the svg element, sheet and style round them. Every entity, and every part of a
/// block reference, carries its id in data-e (in a crowd those that were touched), every mark the ids of its
/// constraints in data-c, both as tokens; signs of constant size carry class z.
std::string pictureBody(const PictureRequest& request);

}  // namespace holdfast::report
