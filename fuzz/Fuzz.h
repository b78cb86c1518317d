#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "document/Document.h"
#include "document/text/DrawingError.h"
#include "geometry/Shapes.h"

namespace holdfast::fuzz {

inline std::string textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Ends the run with a finding.
inline void require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

/// Runs a reader that may refuse the text with an error of its own kind, and with no other.
template <class Read>
bool accepts(const Read& read) {
    try {
        read();
        return true;
    } catch (const document::DrawingError&) {
        return false;
    }
}

/// What was read must be taken again: an error of any kind is a finding.
template <class Read>
void requireAccepted(const char* what, const Read& read) {
    try {
        read();
    } catch (const document::DrawingError& error) {
        std::fprintf(stderr, "%s: %s\n", what, error.what());
        std::abort();
    }
}

/// A drawing with what edits do to one: the first entity goes, every second one is another, the last one comes again.
inline document::Document edited(document::Document drawing) {
    using namespace geometry;
    std::vector<document::Entity>& entities = drawing.entities;
    drawing.constraints.clear();
    if (entities.empty())
        return drawing;
    document::Entity copy = entities.back();
    entities.erase(entities.begin());
    for (std::size_t i = 0; i < entities.size(); i += 2) {
        if (auto* line = std::get_if<LineShape>(&entities[i].shape))
            std::swap(line->start, line->end);
        else if (auto* circle = std::get_if<CircleShape>(&entities[i].shape))
            entities[i].shape = ArcShape{circle->centre, circle->radius, 0.0, 2.0};
        else if (auto* polyline = std::get_if<PolylineShape>(&entities[i].shape); polyline && !polyline->closed)
            polyline->closed = polyline->vertices.size() > 2;
        else if (auto* text = std::get_if<TextShape>(&entities[i].shape))
            text->height *= 2.0;
    }
    copy.id += "_2";
    entities.push_back(std::move(copy));
    return drawing;
}

}  // namespace holdfast::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
