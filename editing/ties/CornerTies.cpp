#include "editing/ties/CornerTies.h"

#include "document/Names.h"
#include "editing/ties/CarriedPlaces.h"
#include "editing/ties/EndPlaces.h"
#include "geometry/Segments.h"

namespace holdfast::editing {

namespace {

/// The curves that end in the corner: of a polyline the segments on both sides of its vertex there.
std::vector<Place> curvesAt(const TieScene& scene, const std::string& name, Vec2 corner) {
    const Shape* was = scene.before(name);
    const auto* polyline = was == nullptr ? nullptr : std::get_if<PolylineShape>(was);
    if (polyline == nullptr)
        return {{name, PlaceKind::whole}};
    const std::size_t count = segmentCount(*polyline);
    std::vector<Place> segments;
    for (std::size_t i = 0; i < polyline->vertices.size(); ++i) {
        if (!scene.isSame(polyline->vertices[i], corner))
            continue;
        if (i > 0 || polyline->closed)
            segments.push_back({name, PlaceKind::segment, static_cast<int>((i + count - 1) % count)});
        if (i < count)
            segments.push_back({name, PlaceKind::segment, static_cast<int>(i)});
    }
    return segments;
}

}  // namespace

void tieCorner(const TieScene& scene, std::vector<Tie>& ties) {
    if (!scene.keptCorner())
        return;
    const Place corner{*scene.keptCorner(), PlaceKind::whole};
    const Vec2 at = std::get<PointShape>(*scene.now(corner.entity)).position;
    CarriedPlaces places(scene);
    for (const std::string& name : scene.editedCurves())
        for (const Place& curve : curvesAt(scene, name, at))
            if (const std::optional<Place> now = places.renamed(curve))
                ties.push_back(tieOf(ConstraintType::pointOnCurve, {corner, *now},
                                     corner.entity + " is the corner to which " + spokenPlace(*now) + " leads"));
}

}  // namespace holdfast::editing
