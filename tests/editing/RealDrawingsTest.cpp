// Breaks and trims every entity of every real drawing.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "formats/FileIo.h"
#include "formats/json/JsonWriter.h"
#include "geometry/curves/Geometry.h"
#include "host/model/HostAudit.h"
#include "hosting/Drawing.h"
#include "tests/editing/RealDrawings.h"

namespace holdfast::editing {

using namespace formats;
namespace {

/// A parameter at a share of a curve; of an unbounded one, of the part around its base point.
double paramAt(const Shape& shape, double share) {
    ParamRange range = paramRange(shape);
    range.first = std::max(range.first, -100.0);
    range.last = std::isfinite(range.last) ? range.last : range.first + 100.0;
    return range.first + share * (range.last - range.first);
}

std::vector<RealEdit> breaksOf(const Document& document) {
    std::vector<RealEdit> edits;
    for (const Entity& entity : document.entities)
        if (isOpenToEdits(entity))
            edits.push_back({"break " + entity.id + " at " +
                                 pointWord(pointAt(entity.shape, paramAt(entity.shape, 0.37))) + " to " +
                                 pointWord(pointAt(entity.shape, paramAt(entity.shape, 0.61))),
                             {entity.id}});
    return edits;
}

bool mayMeet(const Shape& one, const Shape& other) {
    const Box a = boundsOf(one), b = boundsOf(other);
    return a.low.x <= b.high.x && b.low.x <= a.high.x && a.low.y <= b.high.y && b.low.y <= a.high.y;
}

/// Up to three entities that meet one; empty when none does.
std::string edgesOf(const Document& document, const Entity& entity) {
    std::string edges;
    int count = 0;
    for (const Entity& other : document.entities)
        if (count < 3 && &other != &entity && isCurve(other.shape) && mayMeet(entity.shape, other.shape) &&
            !intersect(entity.shape, other.shape).empty()) {
            edges += " " + other.id;
            ++count;
        }
    return edges;
}

std::vector<RealEdit> trimsOf(const Document& document) {
    std::vector<RealEdit> edits;
    for (const Entity& entity : document.entities) {
        if (!isOpenToEdits(entity))
            continue;
        if (const std::string edges = edgesOf(document, entity); !edges.empty())
            edits.push_back({"trim " + entity.id + " at " +
                                 pointWord(pointAt(entity.shape, paramAt(entity.shape, 0.5))) + " by" + edges,
                             {entity.id}});
    }
    return edits;
}

TEST(RealDrawings, ComeBackFromTheHostAsTheyWere) {
    for (const std::filesystem::path& file : drawingFiles()) {
        SCOPED_TRACE(file.filename().string());
        const std::string text = readFile(file);
        const Document document = readDrawing(file);
        Drawing drawing(document);
        EXPECT_EQ(jsonText(drawing.document()), text);
        for (const std::string& finding : auditNetwork(drawing.process()))
            ADD_FAILURE() << finding;
    }
}

TEST(RealDrawings, StaySoundWhenEveryEntityIsBroken) {
    checkEdits(&breaksOf, 20);
}

TEST(RealDrawings, StaySoundWhenEveryEntityIsTrimmed) {
    checkEdits(&trimsOf, 20);
}

}  // namespace
}  // namespace holdfast::editing
