#pragma once

#include <filesystem>
#include <utility>
#include <vector>

#include "editing/Session.h"
#include "formats/FileIo.h"

namespace holdfast::formats {

/// The drawings of the examples, with lines and arcs for polylines.
inline std::vector<Document> exampleDrawings() {
    std::vector<Document> drawings;
    for (const char* folder : {"drawings", "following"})
        for (const auto& each :
             std::filesystem::directory_iterator(std::filesystem::path(HOLDFAST_EXAMPLES) / folder)) {
            if (each.path().extension() != ".json")
                continue;
            Document drawing = readDrawing(each.path());
            drawing.name = each.path().stem().string();
            editing::Explode explode;
            for (const Entity& entity : drawing.entities)
                if (std::holds_alternative<PolylineShape>(entity.shape))
                    explode.entities.push_back(entity.id);
            if (!explode.entities.empty()) {
                editing::Session session(drawing);
                if (!session.apply(explode).outcome.done())
                    continue;
                drawing = session.document();
            }
            drawings.push_back(std::move(drawing));
        }
    return drawings;
}

}  // namespace holdfast::formats
