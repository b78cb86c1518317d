#include "editing/ties/MirrorTies.h"

#include <algorithm>
#include <variant>

#include "document/Names.h"
#include "editing/commands/move/MirrorLine.h"
#include "editing/commands/move/TransformedConstraints.h"
#include "geometry/Segments.h"

namespace holdfast::editing {

namespace {

/// The places of a shape that are tied to those of its reflection. Reflected arcs run counter-clockwise again.
struct Pairing {
    void operator()(const LineShape&) { pair({PlaceKind::start, PlaceKind::end}); }
    void operator()(const ArcShape&) {
        pairArcEnds();
        equal(PlaceKind::whole, 0);
    }
    void operator()(const EllipticalArcShape&) {
        pair({PlaceKind::centre});
        pairArcEnds();
    }
    void operator()(const CircleShape&) { pairRound(); }
    void operator()(const EllipseShape&) { pairRound(); }
    void operator()(const SplineShape& spline) {
        for (std::size_t i = 0; i < spline.control.size(); ++i)
            tie(PlaceKind::control, PlaceKind::control, static_cast<int>(i));
    }
    void operator()(const PointShape&) { pair({PlaceKind::whole}); }
    void operator()(const XlineShape&) { pair({PlaceKind::start}); }
    void operator()(const RayShape&) { pair({PlaceKind::start}); }
    void operator()(const PolylineShape& polyline) {
        const int count = static_cast<int>(segmentCount(polyline));
        for (int i = 0; i < count; ++i)
            tie(PlaceKind::segmentStart, PlaceKind::segmentStart, i);
        if (!polyline.closed && count > 0)
            tie(PlaceKind::segmentEnd, PlaceKind::segmentEnd, count - 1);
        for (int i = 0; i < count; ++i)
            if (polyline.bulges[static_cast<std::size_t>(i)] != 0.0)
                equal(PlaceKind::segment, i);
    }
    void operator()(const TextShape&) {}

    void pairRound() {
        pair({PlaceKind::centre});
        equal(PlaceKind::whole, 0);
    }
    void pairArcEnds() {
        tie(PlaceKind::start, PlaceKind::end, 0);
        tie(PlaceKind::end, PlaceKind::start, 0);
    }
    void pair(std::initializer_list<PlaceKind> kinds) {
        for (const PlaceKind kind : kinds)
            tie(kind, kind, 0);
    }
    void tie(PlaceKind kind, PlaceKind reflected, int index) {
        ties.push_back(tieOf(ConstraintType::symmetric,
                             {{original, kind, index}, {copy, reflected, index}, {axis, PlaceKind::whole}},
                             copy + " is the reflection of " + original));
    }
    void equal(PlaceKind kind, int index) {
        ties.push_back(tieOf(ConstraintType::equal, {{original, kind, index}, {copy, kind, index}},
                             copy + " is the reflection of " + original));
    }

    const std::string& original;
    const std::string& copy;
    const std::string& axis;
    std::vector<Tie>& ties;
};

/// Points do not say which way these lie.
bool isFreeToTurn(const Shape& shape) {
    return std::holds_alternative<RayShape>(shape) || std::holds_alternative<XlineShape>(shape) ||
           std::holds_alternative<EllipseShape>(shape) || std::holds_alternative<TextShape>(shape);
}

bool isOnFreeToTurn(const TieScene& scene, const Constraint& constraint) {
    return std::any_of(constraint.refs.begin(), constraint.refs.end(),
                       [&](const Place& place) { return isFreeToTurn(*scene.now(place.entity)); });
}

}  // namespace

void tieMirrored(const TieScene& scene, const Mirror& edit, std::vector<Tie>& ties) {
    CopyNames copies;
    std::vector<std::string> names;
    for (const auto& [original, copy] : scene.copies()) {
        std::visit(Pairing{original, copy, edit.about.value, ties}, *scene.now(original));
        copies.emplace(original, copy);
        names.push_back(original);
    }
    const Shape* axis = scene.now(edit.about.value);
    if (names.empty() || axis == nullptr)
        return;
    for (Constraint& constraint : CopiedConstraints(scene.drawing(), names).of(copies, *reflectionAt(*axis)))
        if (isOnFreeToTurn(scene, constraint))
            ties.push_back({std::move(constraint), "the reflection has what holds among the originals"});
}

}  // namespace holdfast::editing
