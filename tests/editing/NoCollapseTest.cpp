// Of nothing that random edits move less than a hundredth is left, unless they ask for it. HOLDFAST_COLLAPSE_EDITS says
// how many edits are done, HOLDFAST_SEED where the dice begin; with HOLDFAST_TELL the drawing is printed in which
// something has collapsed.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <map>
#include <unordered_map>

#include "editing/Session.h"
#include "editing/fates/Sizes.h"
#include "formats/json/JsonWriter.h"
#include "geometry/Box.h"
#include "geometry/GeometryError.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Parameters.h"
#include "tests/editing/RandomEdits.h"
#include "tests/editing/SmallDrawings.h"
#include "tests/support/Environment.h"

namespace holdfast::editing {
namespace {

/// Larger drawings take longer, and collapse no otherwise.
constexpr std::size_t kMostEntities = 60;

/// So many edits at most begin at one drawing as it came.
constexpr int kInARow = 12;

/// The part of a size that has to be left of it, and of the drawing's size what is no size.
constexpr double kLeft = 0.01, kNothing = 1e-6;

/// Nothing is to go farther away than this many times the drawing's size.
constexpr double kAway = 1e4;

double extentOf(const Document& document) {
    Box box;
    for (const Entity& entity : document.entities)
        try {
            if (const Box bounds = boundsOf(entity.shape); bounds.isBounded())
                box.add(bounds);
        } catch (const GeometryError&) {  // real drawings have curves that are none
        }
    return box.isEmpty() ? 1.0 : box.diagonal();
}

/// Lengths, radii and sweeps; of a polyline those of its segments.
std::vector<double> sizesIn(const Shape& shape) {
    std::vector<double> sizes;
    if (const auto* polyline = std::get_if<PolylineShape>(&shape)) {
        for (std::size_t i = 0; i + 1 < polyline->vertices.size(); ++i)
            sizes.push_back(distance(polyline->vertices[i], polyline->vertices[i + 1]));
        return sizes;
    }
    for (const EntitySize& size : sizesOf(shape))
        sizes.push_back(std::abs(size.value));
    return sizes;
}

bool hasCollapsed(const Shape& before, const Shape& after, double extent) {
    const std::vector<double> was = sizesIn(before), is = sizesIn(after);
    for (std::size_t i = 0; i < was.size() && was.size() == is.size(); ++i)
        if (was[i] > kNothing * extent && is[i] < kLeft * was[i])
            return true;
    return false;
}

/// A turned or mirrored entity keeps its sizes, and so does one that is dragged whole. Of others the edit asks for
/// sizes.
bool asksForSizes(const std::string& edit) {
    if (edit.starts_with("rotate") || edit.starts_with("mirror"))
        return false;
    const std::string held = edit.substr(0, edit.find(" by "));
    return !edit.starts_with("drag") || held.find('.') != std::string::npos;
}

std::string collapsedIn(const Document& before, const Session& session, const std::string& edit) {
    std::unordered_map<std::string_view, EntityFate> fates;
    for (const EntityOutcome& outcome : session.results().back().fates.entities)
        fates[outcome.entity] = outcome.fate;
    std::unordered_map<std::string_view, const Shape*> then;
    for (const Entity& entity : before.entities)
        then[entity.id] = &entity.shape;
    const double extent = extentOf(before);
    if (extentOf(session.document()) > kAway * extent)
        return "the drawing";
    for (const Entity& entity : session.document().entities) {
        const auto was = then.find(entity.id);
        if (was == then.end() || (fates[entity.id] == EntityFate::edited && asksForSizes(edit)))
            continue;
        if (hasCollapsed(*was->second, entity.shape, extent))
            return entity.id;
    }
    return "";
}

TEST(RandomMoves, LeaveMoreThanAHundredthOfEverySize) {
    const int wanted = testing::numberFrom("HOLDFAST_COLLAPSE_EDITS", 30);
    const bool tells = std::getenv("HOLDFAST_TELL") != nullptr;
    RandomEdits edits(static_cast<unsigned>(testing::numberFrom("HOLDFAST_SEED", 1)));
    const std::vector<Document> drawings = smallDrawings(kMostEntities);
    std::map<std::string, std::pair<int, int>> counts;  // done, refused
    int done = 0;
    for (std::size_t next = 0; done < wanted; ++next) {
        const Document& drawing = drawings[next % drawings.size()];
        Session session(drawing);
        for (int i = 0; i < kInARow && done < wanted; ++i) {
            const Document before = session.document();
            const std::string edit = edits.moving(before);
            const bool isDone = session.apply(edit).outcome.done();
            auto& [ofDone, ofRefused] = counts[edit.substr(0, edit.find(' '))];
            ++(isDone ? ofDone : ofRefused);
            done += isDone ? 1 : 0;
            const std::string collapsed = isDone ? collapsedIn(before, session, edit) : "";
            EXPECT_EQ(collapsed, "") << drawing.name << ": " << edit;
            if (tells && !collapsed.empty())
                std::cout << formats::jsonText(before);
        }
    }
    for (const auto& [verb, count] : counts)
        std::cout << verb << ": " << count.first << " done, " << count.second << " refused\n";
}

}  // namespace
}  // namespace holdfast::editing
