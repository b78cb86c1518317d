#pragma once

#include <functional>
#include <string>
#include <vector>

#include "document/Document.h"

namespace holdfast::cli::kept {

using document::Document;

/// Something that a drawing can have, and a small drawing that has it.
struct Feature {
    std::string name;
    Document drawing;
    std::string groups;  ///< of a line in a DXF file that has it; empty: edits give it to a drawing
    /// What a drawing that has come back has of it: "yes", what it has instead, or nothing.
    std::function<std::string(const Document& back)> found;
};

/// In the order of the table's rows.
std::vector<Feature> features();

}  // namespace holdfast::cli::kept
