#include "tests/editing/RealDrawings.h"
#include "tests/editing/BareSession.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <unordered_map>

#include <yxdb/YxDbPolyline.h>

#include "commands/break/ConstraintBreakCmdCenter.h"
#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/Places.h"
#include "formats/FileIo.h"
#include "geometry/curves/Geometry.h"
#include "host/model/HostAudit.h"
#include "hosting/Drawing.h"
#include "hosting/HostShapes.h"
#include "tests/editing/BareSession.h"

namespace holdfast::editing {

using namespace formats;

namespace {

/// One constraint in the drawing before and after an edit.
struct KeptConstraint {
    const Constraint& was;
    const Constraint& is;
};

/// A drawing before and after an edit.
struct EditedDrawing {
    EditedDrawing(const Document& from, const Document& to) : before(from), after(to), was(from), is(to) {
        for (const Constraint& constraint : from.constraints)
            constraintsBefore.emplace(constraint.id, &constraint);
    }
    const Document& before;
    const Document& after;
    EntityIndex was, is;
    std::unordered_map<std::string_view, const Constraint*> constraintsBefore;
};

bool names(const RealEdit& edit, const std::string& entity) {
    return std::find(edit.edited.begin(), edit.edited.end(), entity) != edit.edited.end();
}

bool isEndPlace(const Place& place) {
    return place.kind == PlaceKind::start || place.kind == PlaceKind::end || place.kind == PlaceKind::segmentStart ||
           place.kind == PlaceKind::segmentEnd;
}

/// The place at which a constraint holds stayed where it was. Horizontal and vertical ones may hold at a point that
/// slid along their own direction.
void expectStillPoint(const EditedDrawing& drawing, const KeptConstraint& kept, std::size_t ref) {
    const Place &from = kept.was.refs[ref], &to = kept.is.refs[ref];
    const std::optional<Vec2> old = pointAt(drawing.was.find(from.entity)->shape, from);
    const Entity* entity = drawing.is.find(to.entity);
    const std::optional<Vec2> now = entity == nullptr ? std::nullopt : pointAt(entity->shape, to);
    ASSERT_TRUE(old && now) << kept.is.id << " holds at a place that is gone";
    const double dx = std::abs(old->x - now->x), dy = std::abs(old->y - now->y);
    const bool levels = kept.is.type == ConstraintType::horizontal, plumbs = kept.is.type == ConstraintType::vertical;
    EXPECT_LT(levels ? dy : plumbs ? dx : dx + dy, 1e-6) << kept.is.id << " was kept although its place moved";
}

/// The segment that a constraint names lies on the carrier of the one that it named, and runs the same way or back.
void expectSameCarrier(const EditedDrawing& drawing, const KeptConstraint& kept, std::size_t ref) {
    const Place &from = kept.was.refs[ref], &to = kept.is.refs[ref];
    const auto* entity = drawing.is.find(to.entity);
    ASSERT_NE(entity, nullptr) << kept.is.id << " holds on an entity that is gone";
    ASSERT_TRUE(hasPlace(entity->shape, to)) << kept.is.id << " holds on a segment that is gone";
    const auto segmentAt = [](const Shape& shape, const Place& place) {
        return segmentCurve(std::get<PolylineShape>(shape), static_cast<std::size_t>(place.index));
    };
    const Shape old = segmentAt(drawing.was.find(from.entity)->shape, from), now = segmentAt(entity->shape, to);
    EXPECT_EQ(old.index(), now.index()) << kept.is.id << " went from " << placeText(from) << " to " << placeText(to);
    const double size = boundsOf(now).diagonal() + boundsOf(old).diagonal();
    for (const std::optional<Vec2>& point : {startPoint(now), endPoint(now)})
        EXPECT_LT(nearestOn(old, *point, Extent::carrier).distance, 1e-6 * size)
            << kept.is.id << " went from " << placeText(from) << " to " << placeText(to);
}

/// What a dimension of two places says without a sign: how far they are apart, or a point from the carrier of a curve.
double measuredOn(const EntityIndex& entities, const Constraint& constraint) {
    const auto shapeAt = [&](std::size_t ref) {
        const Place& place = constraint.refs[ref];
        const Shape& shape = entities.find(place.entity)->shape;
        return place.kind == PlaceKind::segment
                   ? segmentCurve(std::get<PolylineShape>(shape), static_cast<std::size_t>(place.index))
                   : shape;
    };
    const auto pointOf = [&](std::size_t ref) {
        const Place& place = constraint.refs[ref];
        return pointAt(entities.find(place.entity)->shape, place);
    };
    const std::optional<Vec2> a = pointOf(0), b = pointOf(1);
    if (a && b && constraint.type == ConstraintType::distanceX)
        return std::abs(a->x - b->x);
    if (a && b && constraint.type == ConstraintType::distanceY)
        return std::abs(a->y - b->y);
    if (a && b)
        return distance(*a, *b);
    return a || b ? nearestOn(shapeAt(a ? 1 : 0), a ? *a : *b, Extent::carrier).distance : 0.0;
}

/// The places of a dimension may have moved as long as it measures what it did; one that only measures follows.
void expectSameMeasure(const EditedDrawing& drawing, const KeptConstraint& kept) {
    if (!kept.is.driving || kept.is.refs.size() != 2)
        return;
    const double was = measuredOn(drawing.was, kept.was);
    EXPECT_NEAR(measuredOn(drawing.is, kept.is), was, 1e-6 * (1.0 + was)) << kept.is.id << " holds no longer";
}

bool comesBack(const Document& document, const RealEdit& edit) {
    const EntityIndex entities(document);
    for (const std::string& name : edit.edited) {
        const Entity* entity = entities.find(name);
        const auto* polyline = entity == nullptr ? nullptr : std::get_if<PolylineShape>(&entity->shape);
        if (polyline == nullptr)
            continue;
        std::vector<Vec2> points = polyline->vertices;
        std::sort(points.begin(), points.end(), [](Vec2 a, Vec2 b) { return a.x < b.x; });
        for (std::size_t i = 0; i < points.size(); ++i)
            for (std::size_t j = i + 1; j < points.size() && points[j].x < points[i].x + 1e-9; ++j)
                if (std::abs(points[j].y - points[i].y) < 1e-9)
                    return true;
    }
    return false;
}

void expectKept(const EditedDrawing& drawing, const RealEdit& edit) {
    for (const Constraint& now : drawing.after.constraints) {
        const auto found = drawing.constraintsBefore.find(now.id);
        ASSERT_NE(found, drawing.constraintsBefore.end()) << now.id << " is new";
        const KeptConstraint kept{*found->second, now};
        // In an angle, an end only says which way a line runs.
        if (!now.active || now.type == ConstraintType::angle || now.type == ConstraintType::internal)
            continue;
        for (std::size_t ref = 0; ref < now.refs.size(); ++ref) {
            if (!names(edit, kept.was.refs[ref].entity))
                continue;
            if (isDimension(now.type))
                expectSameMeasure(drawing, kept);
            else if (isEndPlace(now.refs[ref]))
                expectStillPoint(drawing, kept, ref);
            else if (now.refs[ref].kind == PlaceKind::segment)
                expectSameCarrier(drawing, kept, ref);
        }
    }
}

void expectLostOnlyWhatWasEdited(const EditedDrawing& drawing, const RealEdit& edit) {
    std::unordered_map<std::string_view, bool> stays;
    for (const Constraint& constraint : drawing.after.constraints)
        stays[constraint.id] = true;
    for (const Constraint& constraint : drawing.before.constraints) {
        if (stays[constraint.id])
            continue;
        const bool touches = std::any_of(constraint.refs.begin(), constraint.refs.end(), [&](const Place& place) {
            return names(edit, place.entity) && (!edit.mayLose || edit.mayLose(place));
        });
        EXPECT_TRUE(touches) << constraint.id << " went although it did not hold on what was edited";
    }
}

void expectOthersUntouched(const EditedDrawing& drawing, const RealEdit& edit) {
    for (const Entity& entity : drawing.before.entities) {
        if (names(edit, entity.id))
            continue;
        const Entity* now = drawing.is.find(entity.id);
        ASSERT_NE(now, nullptr) << entity.id << " is gone";
        EXPECT_TRUE(*now == entity) << entity.id << " was changed";
    }
}

/// Judging the edited curves once more against themselves finds nothing that is still to be deleted.
void expectSecondCleanUpFindsNothing(Drawing& drawing, const RealEdit& edit) {
    for (const std::string& name : edit.edited) {
        if (drawing.id(name).isNull())
            continue;
        const std::unique_ptr<YxDbEntity> same = makeEntity(drawing.shape(name));
        if (same->isKindOf(YxDbPolyline::desc()))
            continue;
        ConstraintBreakCmdCenter centre;
        centre.setFirstCurve(drawing.id(name), same.get());
        EXPECT_EQ(centre.deleteConstraint(), 0) << name;
    }
}

/// A reason without the names and numbers of the single case: words with a digit become "#".
std::string generalReason(const std::string& error) {
    std::string general, word;
    const auto endWord = [&] {
        general += word.find_first_of("0123456789") == std::string::npos ? word : "#";
        word.clear();
    };
    for (const char c : error) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.' || c == '-') {
            word += c;
            continue;
        }
        endWord();
        general += c;
    }
    endWord();
    return general;
}

}  // namespace

void checkEdit(const Document& document, const RealEdit& edit, Tally& tally) {
    SCOPED_TRACE(edit.text);
    BareSession session(document);
    const EditResult& result = session.apply(edit.text);
    if (!result.outcome.done()) {
        ++tally.refused;
        ++tally.reasons[generalReason(result.outcome.error)];
        EXPECT_TRUE(session.document() == document) << "a refused edit changed the drawing";
        return;
    }
    ++tally.done;
    const EditedDrawing edited(document, session.document());
    expectOthersUntouched(edited, edit);
    if (!edit.mayTurn || !comesBack(session.document(), edit))
        expectKept(edited, edit);
    expectLostOnlyWhatWasEdited(edited, edit);
    Drawing drawing(session.document());
    for (const std::string& finding : auditNetwork(drawing.process()))
        ADD_FAILURE() << finding;
    expectSecondCleanUpFindsNothing(drawing, edit);
}

void checkEdits(const std::function<std::vector<RealEdit>(const Document&)>& editsOf, int least) {
    Tally tally;
    for (const std::filesystem::path& file : drawingFiles()) {
        SCOPED_TRACE(file.filename().string());
        const Document document = readDrawing(file);
        for (const RealEdit& edit : editsOf(document))
            checkEdit(document, edit, tally);
        if (::testing::Test::HasFatalFailure())
            return;
    }
    tell(tally, least);
}

void tell(const Tally& tally, int least) {
    std::cout << tally.done << " edits done, " << tally.refused << " refused\n";
    for (const auto& [reason, count] : tally.reasons)
        std::cout << "  " << count << ": " << reason << '\n';
    // One half of the shipped drawings may hold nearly all that can be edited so.
    EXPECT_GE(tally.done, std::getenv("HOLDFAST_HALF") == nullptr ? least : 1);
}

std::string numberWord(double number) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", number);
    return text;
}

std::string pointWord(Vec2 point) {
    return numberWord(point.x) + "," + numberWord(point.y);
}

bool isOpenToEdits(const Entity& entity) {
    return isCurve(entity.shape) && !entity.fixed;
}

}  // namespace holdfast::editing
