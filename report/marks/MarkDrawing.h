#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "report/Uses.h"
#include "report/labels/LabelPlacer.h"
#include "report/marks/Marks.h"

namespace holdfast::report {

/// Which of its spots each sign took in an earlier picture; in a later one it takes the same where that is free, so
/// that a reader who compares both finds it there.
using SpotMemory = std::unordered_map<std::string, std::size_t>;

struct MarkOptions {
    bool dimensionLines = true;  ///< false: values alone
    /// Nobody looks closer or asks for names: what is seen in an enlargement alone is left out, and ids are not said.
    bool seenWhole = false;
};

/// The marks as elements of a picture, placed so that they do not lie on each other, nor on lines where that can be
/// avoided. `ink` knows the geometry; signs drawn on points are added to it. `memory` is read, then written; may be
/// null.
std::string drawMarks(const std::vector<Mark>& marks, const Frame& frame, InkMap& ink, const PictureNotes& notes,
                      const MarkOptions& options, SpotMemory* memory);

}  // namespace holdfast::report
