#pragma once

#include <string>
#include <string_view>

#include "holdfast/editing/Edit.h"
#include "holdfast/editing/EditError.h"
#include "holdfast/sketch/Export.h"

namespace holdfast::sketch {

// One struct of plain values for each editing command.
using editing::Align;
using editing::AlignDirection;
using editing::Break;
using editing::Chamfer;
using editing::ChamferCorner;
using editing::ChamferLengths;
using editing::Constrain;
using editing::Coordinate;
using editing::Copy;
using editing::CopyGrid;
using editing::CopyRing;
using editing::CopyRow;
using editing::Define;
using editing::Delete;
using editing::Drag;
using editing::Draw;
using editing::DrawnArc;
using editing::DrawnEllipse;
using editing::DrawnEndless;
using editing::DrawnPolyline;
using editing::DrawnSpline;
using editing::DrawnText;
using editing::Edit;
using editing::EllipseSpan;
using editing::Erase;
using editing::Explode;
using editing::Extend;
using editing::Figure;
using editing::Fillet;
using editing::FilletCorner;
using editing::FilletPicks;
using editing::FilletSegments;
using editing::Join;
using editing::Lengthen;
using editing::Mirror;
using editing::Move;
using editing::Name;
using editing::Offset;
using editing::Property;
using editing::Redo;
using editing::Rotate;
using editing::Scale;
using editing::Set;
using editing::SetActive;
using editing::SetDimension;
using editing::SetDriving;
using editing::SetFormula;
using editing::SetParameter;
using editing::Sourced;
using editing::Stretch;
using editing::Trim;
using editing::Undo;
using geometry::CurveEnd;

// Why one is refused.
using editing::EditError;
using editing::EditSyntaxError;
using editing::Refusal;

/// The edit that a text says, as users type it: "break g3 at 4,0". Knows no drawing. Lengths are in the drawing's unit,
/// angles in degrees. Throws EditSyntaxError, which points at the word that does not fit. Cost: linear in the text.
HOLDFAST_SKETCH_EXPORT Edit parse(std::string_view text);

/// The text of an edit: parse(toText(edit)) == edit, to the last bit of every number. Cost: linear in the text.
HOLDFAST_SKETCH_EXPORT std::string toText(const Edit& edit);

}  // namespace holdfast::sketch
