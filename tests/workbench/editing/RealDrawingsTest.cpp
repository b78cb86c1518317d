// Edits every entity of every real drawing once and checks what has to hold after any edit. The drawings that come with
// the project always; those of the folder in HOLDFAST_DRAWINGS too, all of them or (HOLDFAST_HALF=0 or 1) every other
// one.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>

#include <yxdb/YxDbPolyline.h>

#include "commands/break/ConstraintBreakCmdCenter.h"
#include "host/model/HostAudit.h"
#include "workbench/drawing/Drawing.h"
#include "workbench/drawing/EntityIndex.h"
#include "workbench/drawing/FileIo.h"
#include "workbench/drawing/HostShapes.h"
#include "workbench/drawing/JsonWriter.h"
#include "workbench/drawing/Places.h"
#include "workbench/editing/Session.h"
#include "workbench/geometry/GeometryError.h"
#include "workbench/geometry/Intersections.h"
#include "workbench/geometry/Parameters.h"

namespace holdfast {
namespace {

std::vector<std::filesystem::path> drawingFiles() {
    std::vector<std::filesystem::path> files;
    const char* folder = std::getenv("HOLDFAST_DRAWINGS");
    for (const std::filesystem::path& place :
         {std::filesystem::path("examples/drawings"), std::filesystem::path(folder == nullptr ? "" : folder)})
        if (!place.empty())
            for (const auto& entry : std::filesystem::directory_iterator(place))
                if (entry.path().extension() == ".json")
                    files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    const char* half = std::getenv("HOLDFAST_HALF");
    if (half == nullptr)
        return files;
    std::vector<std::filesystem::path> chosen;
    for (std::size_t i = half[0] == '1' ? 1 : 0; i < files.size(); i += 2)
        chosen.push_back(files[i]);
    return chosen;
}

std::string pointWord(Vec2 p) {
    char text[80];
    std::snprintf(text, sizeof text, "%.17g,%.17g", p.x, p.y);
    return text;
}

bool isCurve(const Entity& entity) {
    return !std::holds_alternative<PointShape>(entity.shape) && !std::holds_alternative<TextShape>(entity.shape);
}

/// A parameter at a share of a curve; of an unbounded one, of the part around its base point.
double paramAt(const Shape& shape, double share) {
    ParamRange range = paramRange(shape);
    range.first = std::max(range.first, -100.0);
    range.last = std::isfinite(range.last) ? range.last : range.first + 100.0;
    return range.first + share * (range.last - range.first);
}

std::string breakOf(const Entity& entity) {
    return "break " + entity.id + " at " + pointWord(pointAt(entity.shape, paramAt(entity.shape, 0.37))) + " to " +
           pointWord(pointAt(entity.shape, paramAt(entity.shape, 0.61)));
}

/// A trim of the entity by a few others that meet it; empty when none does.
std::string trimOf(const Document& document, const Entity& entity) {
    std::string edges;
    int count = 0;
    for (const Entity& other : document.entities) {
        if (count == 3 || &other == &entity || !isCurve(other))
            continue;
        const Box a = boundsOf(entity.shape), b = boundsOf(other.shape);
        if (a.low.x > b.high.x || b.low.x > a.high.x || a.low.y > b.high.y || b.low.y > a.high.y)
            continue;
        const auto crossings = intersect(entity.shape, other.shape);
        if (crossings.empty())
            continue;
        edges += " " + other.id;
        ++count;
    }
    if (edges.empty())
        return "";
    return "trim " + entity.id + " at " + pointWord(pointAt(entity.shape, paramAt(entity.shape, 0.5))) + " by" + edges;
}

/// The points of the edited entity at which a constraint holds stayed where they were. Horizontal and vertical ones
/// may hold at a point that slid along their own direction; in an angle, an end only says which way a line runs.
void expectKeptConstraintsAtStillPoints(const Document& before, const Document& after, const std::string& edited) {
    const EntityIndex was(before), is(after);
    for (const Constraint& constraint : after.constraints) {
        using enum ConstraintType;
        if (!constraint.active || constraint.type == angle || constraint.type == internal)
            continue;
        for (const Place& place : constraint.refs) {
            if (place.entity != edited || (place.kind != PlaceKind::start && place.kind != PlaceKind::end))
                continue;
            const std::optional<Vec2> from = pointAt(was.find(edited)->shape, place);
            const std::optional<Vec2> to = pointAt(is.find(edited)->shape, place);
            ASSERT_TRUE(from && to) << constraint.id << " holds at a place that is gone";
            const double dx = std::abs(from->x - to->x), dy = std::abs(from->y - to->y);
            const double moved = constraint.type == horizontal ? dy : constraint.type == vertical ? dx : dx + dy;
            EXPECT_LT(moved, 1e-6) << constraint.id << " was kept although " << edited << " moved there";
        }
    }
}

void expectOthersUntouched(const Document& before, const Document& after, const std::string& edited) {
    const EntityIndex is(after);
    for (const Entity& entity : before.entities) {
        if (entity.id == edited)
            continue;
        const Entity* now = is.find(entity.id);
        ASSERT_NE(now, nullptr) << entity.id << " is gone";
        EXPECT_TRUE(*now == entity) << entity.id << " was changed by an edit of " << edited;
    }
}

/// Judging the edited curve once more against itself finds nothing that is still to be deleted.
void expectSecondCleanUpFindsNothing(const Document& after, const std::string& edited) {
    Drawing drawing(after);
    const std::unique_ptr<YxDbEntity> same = makeEntity(drawing.shape(edited));
    if (same->isKindOf(YxDbPolyline::desc()))
        return;
    ConstraintBreakCmdCenter centre;
    centre.setFirstCurve(drawing.id(edited), same.get());
    EXPECT_EQ(centre.deleteConstraint(), 0);
}

void expectSoundNetwork(const Document& document) {
    Drawing drawing(document);
    for (const std::string& finding : auditNetwork(drawing.process()))
        ADD_FAILURE() << finding;
}

struct Tally {
    int done = 0;
    std::map<std::string, int> refused;
};

void editOnce(const Document& document, const Entity& entity, const std::string& edit, Tally& tally) {
    SCOPED_TRACE(edit);
    Session session(document);
    const EditResult& result = session.apply(edit);
    if (!result.outcome.done()) {
        ++tally.refused[result.outcome.error.substr(result.outcome.error.find(" "))];
        EXPECT_TRUE(session.document() == document) << "a refused edit changed the drawing";
        return;
    }
    ++tally.done;
    expectOthersUntouched(document, session.document(), entity.id);
    expectKeptConstraintsAtStillPoints(document, session.document(), entity.id);
    expectSoundNetwork(session.document());
    expectSecondCleanUpFindsNothing(session.document(), entity.id);
}

void editEveryEntity(const std::function<std::string(const Document&, const Entity&)>& editOf) {
    Tally tally;
    for (const std::filesystem::path& file : drawingFiles()) {
        SCOPED_TRACE(file.filename().string());
        const Document document = readDrawing(file);
        for (const Entity& entity : document.entities)
            if (isCurve(entity) && !entity.fixed)
                if (const std::string edit = editOf(document, entity); !edit.empty())
                    editOnce(document, entity, edit, tally);
        if (::testing::Test::HasFatalFailure())
            return;
    }
    std::cout << tally.done << " edits done\n";
    for (const auto& [error, count] : tally.refused)
        std::cout << "  refused " << count << ": " << error << "...\n";
    EXPECT_GT(tally.done, 0);
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
    editEveryEntity([](const Document&, const Entity& entity) { return breakOf(entity); });
}

TEST(RealDrawings, StaySoundWhenEveryEntityIsTrimmed) {
    editEveryEntity(&trimOf);
}

}  // namespace
}  // namespace holdfast
