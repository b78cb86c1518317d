#include "report/labels/LabelPlacer.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <numeric>
#include <optional>
#include <string>
#include <unordered_map>

namespace holdfast::report {

namespace {

/// Boxes in a hashed grid: a question looks only at the cells that it touches.
class BoxGrid {
public:
    bool isFree(const Box& box) const {
        return eachCell(box, [&](std::int64_t key) {
            const auto found = m_cells.find(key);
            return found == m_cells.end() || std::none_of(found->second.begin(), found->second.end(),
                                                          [&](const Box& taken) { return taken.overlaps(box); });
        });
    }
    void take(const Box& box) {
        eachCell(box, [&](std::int64_t key) {
            m_cells[key].push_back(box);
            return true;
        });
    }

private:
    static constexpr double kCell = 24.0;

    /// Until one of them says no: then false.
    template <typename Visit>
    static bool eachCell(const Box& box, Visit visit) {
        const auto index = [](double value) { return static_cast<std::int64_t>(std::floor(value / kCell)); };
        for (std::int64_t row = index(box.low.y); row <= index(box.high.y); ++row)
            for (std::int64_t column = index(box.low.x); column <= index(box.high.x); ++column)
                if (!visit(row * 4'000'037 + column))
                    return false;
        return true;
    }

    std::unordered_map<std::int64_t, std::vector<Box>> m_cells;
};

constexpr double kGap = 1.0;              // between two labels
constexpr double kCalm = 0.05;            // share of the picture that quiet labels may cover side by side
constexpr double kElbowRoom = 14.0;       // what they keep between each other where they would cover all of it
constexpr double kBadgeRoom = 7.0;        // for the badges and strokes that reach over a loud label's edge
constexpr double kDearestInCrowd = 0.38;  // a quiet label that covers more, or stands farther off, is only counted
constexpr double kFarther = 0.012;        // a spot further down the list must save this share of covered lines
constexpr double kHiddenLeader = 0.15;
constexpr double kClusterCell = 40.0;

class Placer {
public:
    Placer(std::span<const Label> labels, const InkMap& ink, double width, double height)
        : m_labels(labels), m_ink(ink), m_lines(width, height), m_picture{{0.0, 0.0}, {width, height}} {
        m_ink.sumUp();
        m_placement.labels.resize(labels.size());
        m_waiting.resize(labels.size());
        std::iota(m_waiting.begin(), m_waiting.end(), std::size_t{0});
        std::stable_sort(m_waiting.begin(), m_waiting.end(),
                         [&](std::size_t a, std::size_t b) { return labels[a].urgency < labels[b].urgency; });
    }

    LabelPlacement run() && {
        for (const int level : kLevels) {
            if (m_waiting.empty())
                break;
            startLevel(level);
            placeWaiting();
            gatherClusters();
            std::erase_if(m_waiting, [&](std::size_t index) { return m_placement.labels[index].level > 0; });
        }
        for (const std::size_t index : m_waiting)
            settle(index, 0, kLevelWithoutClusters);
        return std::move(m_placement);
    }

private:
    void startLevel(int level) {
        m_level = level;
        m_elbow = elbowRoom();
        m_taken = BoxGrid();
        for (std::size_t i = 0; i < m_labels.size(); ++i)
            if (const PlacedLabel& placed = m_placement.labels[i]; placed.level > 0)
                m_taken.take(boxAround(placed.spot.at(level), m_labels[i].width, m_labels[i].height));
    }

    /// Quiet labels keep the more distance the fuller the picture: a few of them and a count read better than a carpet.
    double elbowRoom() const {
        double covered = 0.0;
        for (const Label& label : m_labels)
            covered += label.urgency > 0 ? label.width * label.height : 0.0;
        const double share = covered / (m_picture.width() * m_picture.height() * m_level * m_level);
        return kGap + std::clamp((share - kCalm) * 4.0, 0.0, 1.0) * kElbowRoom;
    }

    void settle(std::size_t index, std::size_t choice, int level) {
        const Label& label = m_labels[index];
        const LabelSpot spot = label.spots.empty() ? LabelSpot{label.anchor, {}} : label.spots[choice];
        m_placement.labels[index] = {spot, level, choice};
        if (label.line) {
            const Vec2 centre = spot.at(level) * (1.0 / level);
            m_lines.addRun({label.line->startFor(centre), label.line->endFor(centre)});
        }
    }

    void placeWaiting() {
        std::vector<std::size_t> left;
        for (const std::size_t index : m_waiting) {
            const Label& label = m_labels[index];
            const auto choice = bestSpot(wishOf(label));
            if (!choice) {
                left.push_back(index);
                continue;
            }
            settle(index, *choice, m_level);
            m_taken.take(boxAround(label.spots[*choice].at(m_level), label.width, label.height));
        }
        m_waiting = std::move(left);
    }

    /// What is asked for one label or cluster.
    struct Wish {
        const std::vector<LabelSpot>& spots;
        Vec2 size;
        const std::optional<LabelLine>& line;
        double gap = kGap;
        double dearest = std::numeric_limits<double>::infinity();  ///< no spot is better than one that costs more
    };

    Wish wishOf(const Label& label) const {
        Wish wish{label.spots, {label.width, label.height}, label.line, kGap};
        if (label.urgency < 0)
            wish.gap = kBadgeRoom;
        if (label.urgency > 0 && m_elbow > kGap) {
            wish.gap = m_elbow;
            wish.dearest = kDearestInCrowd;
        }
        return wish;
    }

    /// Among the free spots the one that covers least, early spots preferred.
    std::optional<std::size_t> bestSpot(const Wish& wish) const {
        std::optional<std::size_t> best;
        double least = wish.dearest;
        for (std::size_t i = 0; i < wish.spots.size() && kFarther * static_cast<double>(i) < least; ++i) {
            if (const auto cost = costBelow(least, wish, i)) {
                least = *cost;
                best = i;
            }
        }
        return best;
    }

    /// What a spot costs, if that is less. In a crowd it hardly ever is: what is quick to tell comes first.
    std::optional<double> costBelow(double least, const Wish& wish, std::size_t i) const {
        const LabelSpot& spot = wish.spots[i];
        const Vec2 centre = spot.at(m_level);
        const double edge = std::min(wish.gap, kBadgeRoom);
        if (m_level == 1 && !insidePicture(boxAround(centre, wish.size.x + edge, wish.size.y + edge)))
            return std::nullopt;
        const Box box = boxAround(centre, wish.size.x + wish.gap, wish.size.y + wish.gap);
        const double scale = 1.0 / m_level, farther = kFarther * static_cast<double>(i);
        const Box covered{box.low * scale, box.high * scale};
        double cost = m_ink.shareIn(covered);
        if (!(cost + farther < least) || !m_taken.isFree(box))
            return std::nullopt;
        cost += m_lines.shareIn(covered);
        // A leader that runs under another label seems to belong to that one.
        if (!m_taken.isFree(boxAround(centre - spot.offset * 0.6, 1.0, 1.0)))
            cost += kHiddenLeader;
        cost += wish.line ? lineCost(*wish.line, centre * scale) : 0.0;
        return cost + farther < least ? std::optional(cost + farther) : std::nullopt;
    }

    /// Two dimension lines on one another, or on a line of the drawing, read as one.
    double lineCost(const LabelLine& line, Vec2 centre) const {
        const Vec2 from = line.startFor(centre), to = line.endFor(centre);
        return m_lines.shareAlong(from, to) + 0.5 * m_ink.shareAlong(from, to);
    }

    bool insidePicture(const Box& box) const { return m_picture.contains(box.low) && m_picture.contains(box.high); }

    /// Neighbours share a sign; groups without room join with their neighbours until there is some.
    void gatherClusters() {
        std::vector<std::vector<std::size_t>> groups;
        for (const std::size_t index : m_waiting)
            groups.push_back({index});
        for (double cell = kClusterCell + 2.0 * m_elbow; !groups.empty() && cell < 5000.0; cell *= 1.5) {
            groups = joined(groups, cell);
            std::erase_if(groups, [&](const auto& group) { return placeCluster(group, cell, false); });
        }
        for (const auto& group : groups)
            placeCluster(group, kClusterCell, true);
    }

    Vec2 meanAnchor(const std::vector<std::size_t>& group) const {
        Vec2 sum;
        for (const std::size_t index : group)
            sum = sum + m_labels[index].anchor * m_level;
        return sum * (1.0 / static_cast<double>(group.size()));
    }

    std::vector<std::vector<std::size_t>> joined(const std::vector<std::vector<std::size_t>>& groups,
                                                 double cell) const {
        std::map<std::array<long, 3>, std::vector<std::size_t>> cells;
        for (const auto& group : groups) {
            const Vec2 mean = meanAnchor(group);
            auto& all = cells[{m_labels[group.front()].family, std::lround(mean.x / cell), std::lround(mean.y / cell)}];
            all.insert(all.end(), group.begin(), group.end());
        }
        std::vector<std::vector<std::size_t>> result;
        result.reserve(cells.size());
        for (auto& entry : cells)
            result.push_back(std::move(entry.second));
        return result;
    }

    /// The larger the neighbourhood, the farther away its sign may stand.
    bool placeCluster(const std::vector<std::size_t>& group, double cell, bool force) {
        if (group.size() == 1)
            return placeAlone(group.front(), force);
        const Vec2 size = clusterSize(group.size());
        const std::vector<LabelSpot> spots = ringsAround(meanAnchor(group) * (1.0 / m_level), cell / 5);
        const auto choice = bestSpot({spots, size, std::nullopt});
        if (!choice && !force)
            return false;
        const LabelSpot spot = spots[choice.value_or(0)];
        m_taken.take(boxAround(spot.at(m_level), size.x, size.y));
        m_placement.clusters.push_back({group, spot, m_level, size.x, size.y});
        return true;
    }

    /// A cluster of one would hide what it stands for: such a label goes farther away than it likes instead.
    bool placeAlone(std::size_t index, bool force) {
        const Label& label = m_labels[index];
        const std::vector<LabelSpot> spots = ringsAround(label.anchor, label.height + 4.0);
        const auto choice = bestSpot({spots, {label.width, label.height}, std::nullopt});
        if (!choice && !force)
            return false;
        m_placement.labels[index] = {spots[choice.value_or(0)], m_level, kNoChoice};
        m_taken.take(boxAround(spots[choice.value_or(0)].at(m_level), label.width, label.height));
        return true;
    }

    static std::vector<LabelSpot> ringsAround(Vec2 base, double step) {
        std::vector<LabelSpot> spots{{base, {}}};
        for (int ring = 1; ring <= 5; ++ring)
            for (int turn = 0; turn < 12; ++turn)
                spots.push_back({base, polar(step * ring, turn * kPi / 6)});
        return spots;
    }

    std::span<const Label> m_labels;
    InkMap m_ink;
    InkMap m_lines;  ///< dimension lines drawn so far
    Box m_picture;
    LabelPlacement m_placement;
    std::vector<std::size_t> m_waiting;
    BoxGrid m_taken;
    int m_level = 1;
    double m_elbow = kGap;
};

}  // namespace

InkMap::InkMap(double width, double height)
    : m_columns(static_cast<int>(std::ceil(width / kCell)) + 1),
      m_rows(static_cast<int>(std::ceil(height / kCell)) + 1),
      m_cells(static_cast<std::size_t>(m_columns) * static_cast<std::size_t>(m_rows), 0) {}

void InkMap::mark(double x, double y) {
    const double column = std::floor(x / kCell), row = std::floor(y / kCell);
    if (!(column >= 0 && row >= 0 && column < m_columns && row < m_rows))
        return;
    m_cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) + static_cast<std::size_t>(column)] = 1;
    m_isInked = true;
    m_sums.clear();
}

bool InkMap::isMarked(double x, double y) const {
    const double column = std::floor(x / kCell), row = std::floor(y / kCell);
    return column >= 0 && row >= 0 && column < m_columns && row < m_rows &&
           m_cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
                   static_cast<std::size_t>(column)] != 0;
}

int InkMap::stepsFor(double length) const {
    const double reach = 2.0 * kCell * (m_columns + m_rows);
    return static_cast<int>(std::min(length, reach) / (kCell * 0.7)) + 1;
}

void InkMap::addRun(const std::vector<Vec2>& points) {
    for (std::size_t i = 1; i < points.size(); ++i) {
        const Vec2 from = points[i - 1], way = points[i] - from;
        const int steps = stepsFor(norm(way));
        for (int step = 0; step <= steps; ++step)
            mark(from.x + way.x * step / steps, from.y + way.y * step / steps);
    }
}

double InkMap::shareAlong(Vec2 from, Vec2 to) const {
    const Vec2 way = to - from;
    const int steps = stepsFor(norm(way));
    int marked = 0;
    for (int step = 0; step <= steps; ++step)
        marked += isMarked(from.x + way.x * step / steps, from.y + way.y * step / steps) ? 1 : 0;
    return static_cast<double>(marked) / (steps + 1);
}

void InkMap::addSpot(Vec2 point) {
    for (const double dx : {-kCell, 0.0, kCell})
        for (const double dy : {-kCell, 0.0, kCell})
            mark(point.x + dx, point.y + dy);
}

double InkMap::shareIn(const Box& box) const {
    const auto clampTo = [](double value, int last) {
        return static_cast<int>(std::clamp(std::floor(value / kCell), 0.0, static_cast<double>(last)));
    };
    const int left = clampTo(box.low.x, m_columns - 1), right = clampTo(box.high.x, m_columns - 1);
    const int top = clampTo(box.low.y, m_rows - 1), bottom = clampTo(box.high.y, m_rows - 1);
    return static_cast<double>(inkedIn(left, right, top, bottom)) / ((right - left + 1) * (bottom - top + 1));
}

void InkMap::sumUp() {
    const auto width = static_cast<std::size_t>(m_columns) + 1;
    m_sums.assign(width * (static_cast<std::size_t>(m_rows) + 1), 0);
    for (std::size_t row = 0; row < static_cast<std::size_t>(m_rows); ++row)
        for (std::size_t column = 0; column + 1 < width; ++column)
            m_sums[(row + 1) * width + column + 1] = m_cells[row * (width - 1) + column] +
                                                     m_sums[row * width + column + 1] +
                                                     m_sums[(row + 1) * width + column] - m_sums[row * width + column];
}

int InkMap::inkedIn(int left, int right, int top, int bottom) const {
    const auto sumTo = [&](int column, int row) {
        return m_sums[static_cast<std::size_t>(row) * (static_cast<std::size_t>(m_columns) + 1) +
                      static_cast<std::size_t>(column)];
    };
    if (!m_sums.empty())
        return sumTo(right + 1, bottom + 1) - sumTo(left, bottom + 1) - sumTo(right + 1, top) + sumTo(left, top);
    int inked = 0;
    for (int row = top; m_isInked && row <= bottom; ++row)
        for (int column = left; column <= right; ++column)
            inked += m_cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
                             static_cast<std::size_t>(column)];
    return inked;
}

Vec2 clusterSize(std::size_t count) {
    const double digits = static_cast<double>(std::to_string(count).size());
    return {9.0 + 6.0 * digits, 15.0};
}

LabelPlacement placeLabels(std::span<const Label> labels, const InkMap& ink, double width, double height) {
    return Placer(labels, ink, width, height).run();
}

}  // namespace holdfast::report
