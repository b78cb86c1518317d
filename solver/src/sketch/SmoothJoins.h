#pragma once

#include <optional>
#include <span>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/sketch/Degeneracy.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// Where arcs run on in lines or other arcs: ends that coincidences join, and that are smooth in given values. Many are
/// so without being tangent by name, as where the middle of an arc is held above the end of a horizontal line.
class SmoothJoins {
public:
    /// Those with none of these entities, ascending, whose direction the user may want to turn. Linear in the sketch.
    SmoothJoins(const SketchData& sketch, std::span<const double> values, std::span<const int> without);

    /// The first of them that has become a cusp: both still have one direction there, but run back on each other. Of
    /// the two it is told of the one that has turned round, through having no length or no sweep.
    std::optional<Degeneracy> findCusp(const SketchData& sketch, std::span<const double> now) const;

private:
    /// One end: the entity, and whether it is where it starts.
    struct End {
        int entity = -1;
        bool isStart = false;
    };
    /// With the directions that they had from there, of length 1.
    struct Join {
        End a, b;
        Vec2 wasA{}, wasB{};
    };

    enum class Meeting { smooth, cusp, corner };

    static Meeting meetingOf(Vec2 a, Vec2 b);
    static Vec2 inwards(const SketchData& sketch, const End& end, std::span<const double> v);

    std::vector<Join> m_joins;
};

}  // namespace holdfast::solver::detail
