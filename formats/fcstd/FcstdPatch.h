#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

struct FcstdOutput {
    std::string archive;  ///< the bytes of the file
    /// What the document does not hold of the drawing, a sentence each: "g7, a polyline, was left out".
    std::vector<std::string> notes;
};

/// A document as it is after edits of the drawing that readFcstd read from one of its sketches. The archive is the same
/// but for the sketch's properties Geometry, Constraints and ExpressionEngine; all other entries, and all other text of
/// Document.xml, come back byte for byte, and so do all of them where the drawing is as it was.
///
/// What a record says besides (identifiers, layers, labels, kinds that drawings do not have) stays. An entity that is
/// made of another, as its name tells (g3_2), has what that one's record says, with an identifier of its own. New
/// entities and constraints stand behind the others, whose numbers close up; expressions over constraints that have
/// another number follow. Helpers of a spline follow it.
///
/// Polylines, endless lines and texts have no record there, nor have constraints that only drawings know: they are left
/// out and told. Coincidences that a tangency or right angle between ends says already are left out in silence, for the
/// program calls them redundant. Throws DrawingError as readFcstd does.
FcstdOutput patchedFcstd(std::string_view archive, const std::string& sketch, const Document& after,
                         const std::string& file);

}  // namespace holdfast::formats
