#pragma once

#include <string_view>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/dxf/DxfLayout.h"
#include "formats/dxf/DxfWriter.h"

namespace holdfast::formats {

/// The text of a DXF file as it is after edits of the drawing that was read from it. Records of entities that are as
/// they were, and everything that is no entity of the drawing, come back byte for byte.
///
/// A changed entity keeps all groups that do not say its geometry, and of these the ones whose number is the same. One
/// that is gone takes its record with it, up to its last group: comments behind that stay. New entities stand behind
/// all others, with a handle of their own where the file has handles, and with layer, colour and all else of the
/// entity that they were made of; what comes of none stands on the layer 0. An entity of another kind than its record
/// is written in the form that the file's records show: with marks of classes if these have them, a polyline as
/// LWPOLYLINE if there is one. Kinds that neither the file nor its version has go out as in dxfText; the notes tell.
///
/// Block references are kept, moved and copied with their attributes; what was made of one that was exploded has all
/// that its record in the block says. Of `after` they have to be parts or copies of those of `before`, by their names.
///
/// `before` is the drawing as readDxf gave it with the layout. What an entity of `after` was made of, its name tells:
/// g3_2 is a piece or copy of g3, as the edits of a session name them. Throws DrawingError as dxfText does. Cost:
/// linear in the text and both drawings.
DxfOutput patchedDxf(std::string_view text, const DxfLayout& layout, const Document& before, const Document& after,
                     double tolerance = 0.01);

}  // namespace holdfast::formats
