#include "tests/editing/ties/CutNeed.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "document/EntityIndex.h"
#include "document/Places.h"
#include "document/checks/ConstraintCheck.h"
#include "geometry/Tolerances.h"
#include "geometry/Vec2.h"
#include "geometry/curves/Nearest.h"
#include "hosting/DocumentSketch.h"

namespace holdfast::editing {

namespace {

const Shape* shapeIn(const Document& document, const std::string& name) {
    const Entity* entity = EntityIndex(document).find(name);
    return entity == nullptr ? nullptr : &entity->shape;
}

/// The entities that are not in another drawing, or not like that.
Document changedIn(const Document& document, const Document& other) {
    Document changed;
    const EntityIndex index(other);
    for (const Entity& entity : document.entities)
        if (const Entity* known = index.find(entity.id); known == nullptr || !(known->shape == entity.shape))
            changed.entities.push_back(entity);
    return changed;
}

int numbersOf(const Document& curves) {
    return DocumentSketch(curves).diagnose().freedom;
}

std::vector<Vec2> endsOfShape(const Shape& shape) {
    std::vector<Vec2> ends;
    if (const auto* polyline = std::get_if<PolylineShape>(&shape)) {
        if (!polyline->closed)
            ends = {polyline->vertices.front(), polyline->vertices.back()};
        return ends;
    }
    for (const PlaceKind kind : {PlaceKind::start, PlaceKind::end})
        if (const Place place{{}, kind}; hasPlace(shape, place))
            if (const std::optional<Vec2> at = pointAt(shape, place))
                ends.push_back(*at);
    return ends;
}

/// What the edit was told to cut and what is left of it: pieces have the curve's name as their beginning.
struct Cut {
    const Shape* was;
    std::vector<const Shape*> pieces;
    std::vector<Vec2> newEnds;
    bool touch = false;  ///< two of the new ends are one point
};

Cut cutOf(const std::string& name, const Document& before, const Document& after, double near) {
    Cut cut{shapeIn(before, name), {}, {}};
    if (const Shape* left = shapeIn(after, name))
        cut.pieces.push_back(left);
    for (const Entity& entity : after.entities)
        if (entity.id.starts_with(name + "_") && shapeIn(before, entity.id) == nullptr)
            cut.pieces.push_back(&entity.shape);
    const std::vector<Vec2> former = endsOfShape(*cut.was);
    for (const Shape* piece : cut.pieces)
        for (const Vec2 end : endsOfShape(*piece))
            if (std::none_of(former.begin(), former.end(), [&](Vec2 each) { return distance(each, end) <= near; }))
                cut.newEnds.push_back(end);
    for (std::size_t i = 1; i < cut.newEnds.size(); ++i)
        cut.touch = cut.touch || distance(cut.newEnds[i - 1], cut.newEnds[i]) <= near;
    return cut;
}

/// So many numbers say on which curve a piece lies, beyond where it ends.
int numbersOfCarrier(const Shape& curve) {
    if (isStraight(curve))
        return 2;
    if (std::holds_alternative<ArcShape>(curve) || std::holds_alternative<CircleShape>(curve))
        return 3;
    if (std::holds_alternative<EllipseShape>(curve) || std::holds_alternative<EllipticalArcShape>(curve))
        return 5;
    return 0;
}

/// Two pieces lie on one curve, and end in one point where nothing is between them. Splines have control points of
/// their own, and run on in their direction; of polylines those are looked at that touch.
int saidOfPieces(const Cut& cut) {
    if (cut.pieces.size() != 2 || cut.was == nullptr)
        return 0;
    const int carrier = numbersOfCarrier(*cut.pieces.front());
    if (carrier > 0)
        return carrier + (cut.touch ? 1 : 0);
    if (std::holds_alternative<SplineShape>(*cut.was))
        return cut.touch ? 3 : 0;
    return cut.touch ? 2 : 0;
}

struct SaidOfCut {
    const Document &before, &after;
    double near;

    int operator()(const Break& edit) const { return saidOfPieces(cutOf(edit.entity.value, before, after, near)); }
    int operator()(const Trim& edit) const {
        const Cut cut = cutOf(edit.entity.value, before, after, near);
        return saidOfPieces(cut) + static_cast<int>(cut.newEnds.size());
    }
    int operator()(const Extend&) const { return 1; }
    int operator()(const Fillet& edit) const {
        if (edit.radius.value == 0.0)
            return saidOfSharpCorner({edit.first.value, edit.second.value});
        return (edit.keepCorner ? 2 : 0) + saidOfArc({edit.first.value, edit.second.value});
    }
    int operator()(const FilletCorner& edit) const {
        return edit.radius.value == 0.0 ? 0 : 2 + (edit.keepCorner ? 2 : 0);
    }
    int operator()(const FilletSegments& edit) const { return edit.radius.value == 0.0 ? 0 : 2; }
    template <class Command>
    int operator()(const Command&) const {
        return 0;
    }

    /// New ends meet each other, or one of them lies on a curve that has stayed as it was.
    int saidOfSharpCorner(const std::vector<std::string>& curves) const {
        int said = 0;
        for (const std::string& name : curves)
            said += std::min<int>(1, static_cast<int>(cutOf(name, before, after, near).newEnds.size()));
        return said;
    }

    /// An arc begins at an end and is tangent there, or it touches a curve that has stayed as it was.
    int saidOfArc(const std::vector<std::string>& curves) const {
        const bool isArcThere = std::any_of(after.entities.begin(), after.entities.end(), [&](const Entity& entity) {
            return std::holds_alternative<ArcShape>(entity.shape) && shapeIn(before, entity.id) == nullptr;
        });
        int said = isArcThere ? 0 : 2;
        for (const std::string& name : curves) {
            const Shape *was = shapeIn(before, name), *is = shapeIn(after, name);
            said += !isArcThere ? 0 : was != nullptr && is != nullptr && *was == *is ? 2 : 3;
        }
        return said;
    }
};

/// True where a constraint could stand in a drawing as it is.
bool holdsIn(const Document& document, const Constraint& constraint) {
    Document alone = document;
    alone.constraints.assign(1, constraint);
    if (faultIn(constraint, EntityIndex(alone)))
        return false;
    const DocumentSketch sketch(alone);
    return sketch.shortfallOf(0) <= kSamePoint * sketch.size();
}

/// A point on a curve, or a touch, that would hold on the prolongation only of what is left.
bool isOnlyProlonged(const Document& document, const Constraint& constraint) {
    if (constraint.type != ConstraintType::pointOnCurve && constraint.type != ConstraintType::tangent)
        return false;
    for (const Place& place : constraint.refs) {
        const Shape* shape = shapeIn(document, place.entity);
        const std::optional<Vec2> at = shape == nullptr ? std::nullopt : pointAt(*shape, place);
        for (const Place& curve : constraint.refs)
            if (at && curve != place)
                if (const Shape* other = shapeIn(document, curve.entity))
                    return nearestOn(*other, *at).distance > kHolds * DocumentSketch(document).size();
    }
    return constraint.type == ConstraintType::tangent;
}

/// The drawing as it was, with that only which the cut could keep.
Document withoutWhatFell(const EditResult& result, const Document& before, const Document& after) {
    Document kept = before;
    for (const ConstraintOutcome& outcome : result.fates.constraints) {
        const auto was =
            std::find_if(kept.constraints.begin(), kept.constraints.end(),
                         [&](const Constraint& constraint) { return constraint.id == outcome.constraint; });
        if (was == kept.constraints.end())
            continue;
        const auto is = std::find_if(after.constraints.begin(), after.constraints.end(),
                                     [&](const Constraint& constraint) { return constraint.id == outcome.constraint; });
        if (is == after.constraints.end()) {
            if (!holdsIn(after, *was) || isOnlyProlonged(after, *was))
                kept.constraints.erase(was);
        } else if (holdsIn(before, *is)) {
            *was = *is;  // it says less now, or the same of others
        }
    }
    return kept;
}

}  // namespace

int needOfCut(const EditResult& result, const Document& before, const Document& after) {
    const int made = numbersOf(changedIn(after, before)) - numbersOf(changedIn(before, after));
    const double near = kSamePoint * DocumentSketch(after).size();
    const int lost = DocumentSketch(withoutWhatFell(result, before, after)).diagnose().freedom -
                     DocumentSketch(before).diagnose().freedom;
    return made - std::visit(SaidOfCut{before, after, near}, *result.edit) + lost;
}

}  // namespace holdfast::editing
