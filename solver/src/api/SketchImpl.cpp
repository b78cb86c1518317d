#include "solver/src/api/SketchImpl.h"

#include <cassert>
#include <utility>

namespace holdfast::solver {

using detail::at;

detail::SketchPlace Sketch::Impl::placeOf(PointId point) const {
    using enum geometry::PlaceKind;
    using Place = PointId::Place;
    const int number = find(point.entity());
    assert(number >= 0);
    const detail::SketchEntity& entity = data.entities[at(number)];
    switch (point.place()) {
        case Place::self:
            return {number, whole, 0};
        case Place::start:
            return {number, start, 0};
        case Place::end:
            return {number, geometry::PlaceKind::end, 0};
        case Place::centre:
            return {number, centre, 0};
        case Place::middle:
            return {number, mid, 0};
        case Place::control:
            return {number, control, point.index()};
        case Place::vertex:
            // The last vertex of an open polyline begins no segment.
            if (point.index() > 0 && point.index() == entity.segmentCount() && !entity.closed)
                return {number, segmentEnd, point.index() - 1};
            return {number, segmentStart, point.index()};
        case Place::segmentMiddle:
            return {number, segmentMid, point.index()};
        case Place::segmentCentre:
            break;
    }
    return {number, segmentCentre, point.index()};
}

namespace {

/// The entity that is number `from` there, at the end here.
void takeEntity(const SketchImpl& sketch, std::size_t from, SketchImpl& kept) {
    detail::SketchEntity entity = sketch.data.entities[from];
    const auto first = sketch.data.values.begin() + entity.firstValue;
    const int shift = static_cast<int>(kept.data.values.size()) - entity.firstValue;
    kept.data.values.insert(kept.data.values.end(), first, first + entity.valueCount);
    entity.firstValue += shift;
    for (int& bulge : entity.bulgeValues)
        bulge = bulge < 0 ? bulge : bulge + shift;
    if (entity.spline >= 0) {
        kept.data.splines.push_back(sketch.data.splines[at(entity.spline)]);
        entity.spline = static_cast<int>(kept.data.splines.size()) - 1;
    }
    kept.entityOf[at(sketch.idOfEntity[from])] = static_cast<int>(kept.data.entities.size());
    kept.idOfEntity.push_back(sketch.idOfEntity[from]);
    kept.data.entities.push_back(std::move(entity));
}

/// The constraint that is number `from` there, at the end here; its entities have been taken.
void takeConstraint(const SketchImpl& sketch, std::size_t from, SketchImpl& kept) {
    detail::SketchConstraint constraint = sketch.data.constraints[from];
    for (detail::SketchPlace& place : constraint.refs) {
        place.entity = kept.entityOf[at(sketch.idOfEntity[at(place.entity)])];
        assert(place.entity >= 0);
    }
    kept.constraintOf[at(sketch.idOfConstraint[from])] = static_cast<int>(kept.data.constraints.size());
    kept.idOfConstraint.push_back(sketch.idOfConstraint[from]);
    kept.kinds.push_back(sketch.kinds[from]);
    kept.data.addConstraint(std::move(constraint));
}

}  // namespace

void Sketch::Impl::removeMarked(const std::vector<char>& isGone, const std::vector<char>& isConstraintGone) {
    assert(isGone.size() == data.entities.size() && isConstraintGone.size() == data.constraints.size());
    Impl kept;
    kept.entityOf.assign(entityOf.size(), -1);
    kept.constraintOf.assign(constraintOf.size(), -1);
    kept.revision = revision + 1;
    for (std::size_t i = 0; i < isGone.size(); ++i) {
        if (!isGone[i])
            takeEntity(*this, i, kept);
    }
    for (std::size_t c = 0; c < isConstraintGone.size(); ++c) {
        if (!isConstraintGone[c])
            takeConstraint(*this, c, kept);
    }
    kept.data.takeReference();
    *this = std::move(kept);
}

}  // namespace holdfast::solver
