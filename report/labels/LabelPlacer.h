#pragma once

#include <optional>
#include <span>
#include <vector>

#include "report/Uses.h"
#include "report/picture/Plane2.h"

namespace holdfast::report {

/// Labels round their anchors in picture units. A reader may enlarge the picture while labels keep their size, so a
/// label that finds no room at first has a level, the enlargement from which on there is room for it.
inline constexpr int kLevels[] = {1, 2, 4, 8, 16};
inline constexpr int kLevelWithoutClusters = 32;

/// A place where a label may stand: `base` moves with the picture's enlargement, `offset` does not.
struct LabelSpot {
    Vec2 base, offset;
    Vec2 at(int level) const { return base * level + offset; }
};

/// The line that a label stands on; it moves with the label and is drawn from one point's height to the other's.
struct LabelLine {
    Vec2 from, to, along;
    Vec2 startFor(Vec2 centre) const { return centre + along * dot(from - centre, along); }
    Vec2 endFor(Vec2 centre) const { return centre + along * dot(to - centre, along); }
};

struct Label {
    Vec2 anchor;
    double width = 0.0, height = 0.0;
    std::vector<LabelSpot> spots;   ///< of the label's centre, best first
    int urgency = 0;                ///< smaller ones are placed first
    int family = 0;                 ///< labels of one family may share a cluster
    std::optional<LabelLine> line;  ///< dimensions with a dimension line
};

inline constexpr std::size_t kNoChoice = static_cast<std::size_t>(-1);

struct PlacedLabel {
    LabelSpot spot;
    int level = 0;           ///< shown from this enlargement on
    std::size_t choice = 0;  ///< which of the label's spots, or kNoChoice: a place of its own
};

/// A counted sign in place of several labels, at one level only.
struct LabelCluster {
    std::vector<std::size_t> labels;
    LabelSpot spot;
    int level = 1;
    double width = 0.0, height = 0.0;
};

struct LabelPlacement {
    std::vector<PlacedLabel> labels;  ///< one for each label, in the order of the labels
    std::vector<LabelCluster> clusters;
};

/// How much is drawn where: labels keep off lines where they can.
class InkMap {
public:
    InkMap(double width, double height);
    void addRun(const std::vector<Vec2>& points);
    void addSpot(Vec2 point);
    /// The share of a straight line that runs where something is drawn, from 0 to 1.
    double shareAlong(Vec2 from, Vec2 to) const;
    /// The share of the box that is drawn on, roughly, from 0 to 1.
    double shareIn(const Box& box) const;
    /// Until more is added, shareIn() costs the same for every box, however large. Linear in the map.
    void sumUp();

private:
    static constexpr double kCell = 3.0;
    void mark(double x, double y);
    bool isMarked(double x, double y) const;
    int inkedIn(int left, int right, int top, int bottom) const;
    /// Steps that reach every cell of a line, without getting lost on one that leaves the picture far behind.
    int stepsFor(double length) const;

    int m_columns, m_rows;
    std::vector<unsigned char> m_cells;
    bool m_isInked = false;
    std::vector<int> m_sums;  ///< of all cells above and to the left; empty: not summed up
};

/// Size of the sign for so many labels.
Vec2 clusterSize(std::size_t count);

/// Where each label stands. At the first level no two labels or clusters overlap as long as there is any room in their
/// spots, and all lie inside the picture; what finds no room is collected into clusters of neighbours. Each level asks
/// every waiting label once for each of its spots.
LabelPlacement placeLabels(std::span<const Label> labels, const InkMap& ink, double width, double height);

}  // namespace holdfast::report
