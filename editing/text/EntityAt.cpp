#include "editing/text/EntityAt.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "document/OutOfReach.h"
#include "document/Places.h"
#include "editing/EditContext.h"
#include "geometry/Box.h"
#include "geometry/GeometryError.h"
#include "geometry/Tolerances.h"
#include "geometry/curves/Nearest.h"
#include "geometry/curves/Parameters.h"
#include "geometry/curves/Soundness.h"

namespace holdfast::editing {

namespace {

/// Parts of the drawing's size beyond which a user may have meant another entity: what is read off a picture is better.
constexpr double kFarFromCurve = 0.01;

/// The same, of the drawing with the point: the point is farther from every entity than the drawing is wide, and nobody
/// can have meant one of them.
constexpr double kOutside = 0.5;

/// More names than a message bears.
constexpr std::size_t kMostNear = 4;

/// How far a shape is from a point, and the box around all that were asked.
class Distances {
public:
    explicit Distances(Vec2 point) : m_point(point) { m_box.add(point); }

    std::optional<double> to(const Shape& shape) {
        if (!isCurve(shape)) {
            const bool isPoint = std::holds_alternative<PointShape>(shape);
            const auto at = pointAt(shape, {{}, isPoint ? PlaceKind::whole : PlaceKind::start});
            return at ? std::optional(distance(*at, m_point)) : std::nullopt;
        }
        try {
            const Nearest nearest = nearestOn(shape, m_point);
            if (const Box its = boundsOf(shape); std::isfinite(its.diagonal()))
                m_box.add(its);
            return nearest.distance;
        } catch (const GeometryError&) {
            return std::nullopt;  // a line without length, for instance
        }
    }
    double size() const { return m_box.diagonal(); }

private:
    Vec2 m_point;
    Box m_box;
};

}  // namespace

EntityAt entityAt(const Drawing& drawing, Vec2 point, std::size_t column) {
    std::vector<std::pair<double, std::string>> near, unseen;
    Distances distances(point);
    const OutOfReach outOfReach(drawing.layers());
    for (const std::string& name : drawing.names())
        if (const auto away = distances.to(drawing.shape(name)))
            (outOfReach.holds(drawing.look(name)) ? unseen : near).emplace_back(*away, name);
    if (near.empty() && !unseen.empty())
        throw RefusedWord({"there is no entity at " + spoken(point) +
                               " but what is invisible or on a layer that is "
                               "frozen, off or locked; name it",
                           {},
                           column});
    if (near.empty())
        throw RefusedWord({"there is no entity at " + spoken(point), {}, column});
    const double size = distances.size();
    const double least = std::min_element(near.begin(), near.end())->first;
    if (least > kOutside * size)
        throw RefusedWord(
            {"there is no entity near " + spoken(point) + "; the nearest is " + spoken(least) + " away", {}, column});
    std::erase_if(near, [&](const auto& each) { return each.first > least + kSamePoint * size; });
    if (near.size() > 1) {
        std::string names;
        for (std::size_t i = 0; i < std::min(near.size(), kMostNear); ++i)
            names += (i == 0 ? "" : ", ") + near[i].second;
        throw RefusedWord({"several entities are equally near to " + spoken(point) + ": " + names +
                               (near.size() > kMostNear ? ", ..." : "") + "; name one, or a point that is nearer to it",
                           {},
                           column});
    }
    EntityAt found{near.front().second};
    const auto nearest = std::min_element(unseen.begin(), unseen.end());
    if (nearest != unseen.end() && nearest->first < least)
        found.remark =
            "took " + found.name + " for the entity at " + spoken(point) + "; " + leftOutOfReach({nearest->second});
    else if (least > kFarFromCurve * size)
        found.remark =
            "took " + found.name + " for the entity at " + spoken(point) + ", which is " + spoken(least) + " away";
    return found;
}

}  // namespace holdfast::editing
