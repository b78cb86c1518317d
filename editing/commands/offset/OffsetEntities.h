#pragma once

#include <string>
#include <utility>
#include <vector>

#include "document/Document.h"
#include "editing/Uses.h"
#include "hosting/Drawing.h"

namespace holdfast::editing {

using NamedCurves = std::vector<std::pair<std::string, Shape>>;

/// An entity that comes to lie beside others.
struct OffsetEntity {
    Shape shape;
    std::string origin;     ///< the entity beside which it lies; of a rounded corner the one before it
    bool isImage = false;   ///< its places mean the same as those of that entity
    Place start{}, end{};   ///< in the direction of its chain; without the name that it does not have yet
    Place first{}, last{};  ///< the curves that begin and end there: itself, or a segment
};

/// Where two of them meet.
struct OffsetJoint {
    std::size_t before = 0, behind = 0;
    bool isSmooth = false;  ///< they run on in one direction, and one of them is bent
};

/// What lies beside a single curve or a chain.
struct OffsetEntities {
    std::vector<OffsetEntity> entities;
    std::vector<OffsetJoint> joints;
    std::vector<std::string> remarks;  ///< what a user may not expect: what vanished, a corner that is rounded
};

/// Named curves in groups: chains of lines, arcs and open polylines whose ends meet, and single curves; each by the
/// first that was named. EditError where three ends meet.
std::vector<NamedCurves> offsetGroups(const NamedCurves& curves);

/// What lies beside a group at a distance: outside of circles, arcs and what is closed, and to the left of lines and
/// open polylines on their way from start to end; negative on the other side. Of an open chain the first curve counts.
/// EditError, which names the curve, for curves whose offset is of no kind that drawings have (ellipses, splines), and
/// where nothing would be left.
OffsetEntities offsetOf(const NamedCurves& group, double by, bool rounded);

}  // namespace holdfast::editing
