#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "formats/FileIo.h"
#include "tests/support/DrawingFolder.h"

namespace holdfast::editing {

/// The real drawings that have entities, and at most so many of them.
inline std::vector<Document> smallDrawings(std::size_t mostEntities) {
    std::vector<Document> drawings;
    for (const auto& file : testing::drawingFiles())
        if (Document document = formats::readDrawing(file);
            !document.entities.empty() && document.entities.size() <= mostEntities)
            drawings.push_back(std::move(document));
    return drawings;
}

}  // namespace holdfast::editing
