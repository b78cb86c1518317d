#include "report/marks/MarkDrawing.h"

#include <algorithm>
#include <array>

#include "report/labels/LabelSpots.h"
#include "report/marks/Glyphs.h"
#include "report/picture/Markup.h"

namespace holdfast::report {

namespace {

std::string number(double value) {
    return decimal(value, 2);
}
std::string pair(Vec2 at) {
    return number(at.x) + " " + number(at.y);
}
std::string movedTo(Vec2 at) {
    return " transform=\"translate(" + pair(at) + ")\"";
}

std::string_view className(MarkTone tone) {
    static constexpr std::array<std::string_view, 5> names{"kept", "deleted", "pointed", "added", "broken"};
    return names[static_cast<std::size_t>(tone)];
}

std::string joinedIds(const std::vector<std::string>& ids) {
    std::string all;
    for (const std::string& id : ids)
        all += (all.empty() ? "" : " ") + idToken(id);
    return all;
}

std::string plate(double width, double height) {
    return "<rect class=\"plate\" x=\"" + number(-width / 2) + "\" y=\"" + number(-height / 2) + "\" width=\"" +
           number(width) + "\" height=\"" + number(height) + "\" rx=\"3.5\"/>";
}

std::string centredText(const std::string& text) {
    return "<text y=\"3.7\">" + escaped(text) + "</text>";
}

/// What tells the tones apart without their colours.
std::string toneSign(MarkTone tone, double width, double height) {
    const Vec2 corner{width / 2, -height / 2};
    switch (tone) {
        case MarkTone::kept:
            return {};
        case MarkTone::deleted:
            return "<path class=\"strike\" d=\"M" + pair({-width / 2 - 2.5, height / 2 + 2.5}) + "L" +
                   pair({width / 2 + 2.5, -height / 2 - 2.5}) + "\"/>";
        case MarkTone::rePointed:
            return "<g" + movedTo(corner) + "><circle class=\"badge\" r=\"5\"/>" +
                   "<path class=\"badge-sign\" d=\"M-2.4 0H2M.2 -2L2.2 0L.2 2\"/></g>";
        case MarkTone::added:
            return "<g" + movedTo(corner) + "><circle class=\"badge\" r=\"5\"/>" +
                   "<path class=\"badge-sign\" d=\"M-2.4 0H2.4M0 -2.4V2.4\"/></g>";
        case MarkTone::broken:
            return "<g" + movedTo(corner) + "><circle class=\"badge\" r=\"5\"/>" +
                   "<path class=\"badge-sign\" d=\"M0 -2.6V.4M0 2.5V2.6\"/></g>";
    }
    return {};
}

class MarkWriter {
public:
    MarkWriter(const std::vector<Mark>& marks, const Frame& frame, InkMap& ink, const PictureNotes& notes,
               const MarkOptions& options, SpotMemory* memory)
        : m_marks(marks), m_frame(frame), m_ink(ink), m_notes(notes), m_options(options), m_memory(memory) {}

    std::string text() {
        std::string spots;
        const std::string size = spotSize();
        for (const Mark& mark : m_marks) {
            if (isSpot(mark))
                spots += spot(mark, size);
            else
                choose(mark);
        }
        const LabelPlacement placement = placeLabels(m_labels, m_ink, m_frame.width, m_frame.height);
        remember(placement);
        std::string quiet, loud;
        for (std::size_t i = 0; i < m_chosen.size(); ++i)
            if (isSeen(placement.labels[i].level))
                (m_chosen[i]->tone == MarkTone::kept ? quiet : loud) += labelled(i, placement.labels[i]);
        for (const LabelCluster& each : placement.clusters)
            if (isSeen(each.level))
                (m_chosen[each.labels.front()]->tone == MarkTone::kept ? quiet : loud) += cluster(each);
        return "<g class=\"marks\">\n" + spots + quiet + loud + "</g>\n";
    }

private:
    bool isSeen(int level) const { return level <= 1 || !m_options.seenWhole; }

    /// A kept mark that lies outside the picture stays outside; a change is shown at the picture's edge.
    void choose(const Mark& mark) {
        const bool visible = m_frame.window.contains(mark.anchor);
        if (!visible && mark.tone == MarkTone::kept)
            return;
        Label label = labelFor(mark, m_frame);
        if (!visible) {
            const Vec2 edge{std::clamp(label.anchor.x, 0.0, m_frame.width),
                            std::clamp(label.anchor.y, 0.0, m_frame.height)};
            for (LabelSpot& each : label.spots)
                each.base = each.base + edge - label.anchor;
            label.anchor = edge;
        }
        // No constraint's id begins so.
        const std::string key = mark.entity.empty() ? mark.constraints.front() : "\n" + mark.entity;
        m_keys.push_back(key + " " + std::to_string(m_seen[key]++));
        recall(label);
        m_labels.push_back(std::move(label));
        m_chosen.push_back(&mark);
    }

    /// Puts the spot of the earlier picture first among the label's own.
    void recall(Label& label) const {
        if (m_memory == nullptr)
            return;
        const auto found = m_memory->find(m_keys.back());
        if (found == m_memory->end() || found->second >= label.spots.size())
            return;
        const auto spot = label.spots.begin() + static_cast<std::ptrdiff_t>(found->second);
        std::rotate(label.spots.begin(), spot, spot + 1);
    }

    void remember(const LabelPlacement& placement) const {
        if (m_memory == nullptr)
            return;
        m_memory->clear();
        for (std::size_t i = 0; i < m_labels.size(); ++i)
            m_memory->emplace(m_keys[i], placement.labels[i].choice);
    }

    static bool isSpot(const Mark& mark) {
        return mark.entity.empty() && mark.tone == MarkTone::kept && marksAPoint(mark.type);
    }

    /// Hundreds of points in one picture would hide the curves that they lie on: then they are smaller.
    std::string spotSize() const {
        const auto count = std::count_if(m_marks.begin(), m_marks.end(), isSpot);
        constexpr double roomForOne = 2100.0;  // square picture units
        const bool crowded = static_cast<double>(count) * roomForOne > m_frame.width * m_frame.height;
        return crowded ? " transform=\"scale(.6)\"" : "";
    }

    std::string spot(const Mark& mark, const std::string& size) {
        const Vec2 at = m_frame.toPicture(mark.anchor);
        m_ink.addSpot(at);
        const std::string sign = size.empty() ? spotUse(mark.type) : "<g" + size + ">" + spotUse(mark.type) + "</g>";
        return opening(mark, "spot", 1) + movedTo(at) + "><g class=\"z\">" + sign + "</g></g>\n";
    }

    std::string opening(const Mark& mark, std::string_view more, int level) const {
        std::string classes = "m " + std::string(className(mark.tone));
        if (!more.empty())
            classes += " " + std::string(more);
        if (!mark.active)
            classes += " off";
        if (level > 1)
            classes += " from" + std::to_string(level);
        return "<g" + attribute("class", classes) +
               (m_options.seenWhole   ? std::string()
                : mark.entity.empty() ? attribute("data-c", joinedIds(mark.constraints))
                                      : attribute("data-e", idToken(mark.entity)));
    }

    /// The reader's tooltip for a change; what was kept has its words in the table only, to keep the picture small.
    std::string remark(const Mark& mark) const {
        std::string text;
        for (const std::string& id : mark.constraints)
            if (const auto found = m_notes.remarks.find(id); found != m_notes.remarks.end())
                text += (text.empty() ? "" : "\n") + found->second;
        return text.empty() ? text : "<title>" + escaped(text) + "</title>";
    }

    std::string labelled(std::size_t index, const PlacedLabel& placed) const {
        const Mark& mark = *m_chosen[index];
        const Label& label = m_labels[index];
        if (label.line)
            return dimension(mark, label, placed);
        const std::string_view kind = !mark.entity.empty()          ? "name bare"
                                      : mark.text.empty()           ? ""
                                      : mark.tone == MarkTone::kept ? "dim bare"
                                                                    : "dim";
        return opening(mark, kind, placed.level) + movedTo(placed.spot.base) + ">" + remark(mark) + "<g class=\"z\">" +
               arc(mark) + leader(label, placed) + "<g" + movedTo(placed.spot.offset) + ">" + sign(mark, label) +
               "</g></g></g>\n";
    }

    static std::string sign(const Mark& mark, const Label& label) {
        const std::string tone = toneSign(mark.tone, label.width, label.height);
        if (mark.text.empty())
            return plate(label.width, label.height) + glyphUse(mark.type) + tone;
        return plate(label.width, label.height) + tone + centredText(mark.text);  // the value stays legible
    }

    /// From the anchor to the label's near edge; a label right at its anchor needs none.
    static std::string leader(const Label& label, const PlacedLabel& placed) {
        const Vec2 way = placed.spot.offset;
        const double inside = std::min(label.width / 2 / std::max(std::fabs(way.x), 1e-9),
                                       label.height / 2 / std::max(std::fabs(way.y), 1e-9));
        if (norm(way) * (1.0 - inside) < 4.0)
            return {};
        return "<path class=\"lead\" d=\"M0 0L" + pair(way * (1.0 - inside)) + "\"/>";
    }

    static std::string arc(const Mark& mark) {
        if (!mark.opening)
            return {};
        constexpr double radius = 15.0;
        const Vec2 from = Frame::turned(polar(radius, mark.opening->startAngle));
        const Vec2 to = Frame::turned(polar(radius, mark.opening->endAngle));
        const double turn = mark.opening->endAngle - mark.opening->startAngle;
        return "<path class=\"line\" d=\"M" + pair(from) + "A15 15 0 " + (std::fabs(turn) > kPi ? "1" : "0") +
               (turn > 0.0 ? " 0 " : " 1 ") + pair(to) + "\"/>";
    }

    /// A dimension line through its label, with lines out to it and arrows at its ends. It grows with the picture.
    std::string dimension(const Mark& mark, const Label& label, const PlacedLabel& placed) const {
        const LabelLine& line = *label.line;
        const Vec2 at = placed.spot.at(placed.level) * (1.0 / placed.level);
        const Vec2 from = line.startFor(at), to = line.endFor(at);
        const bool kept = mark.tone == MarkTone::kept;
        std::string text = opening(mark, kept ? "dim bare" : "dim", placed.level) + ">" + remark(mark);
        if (m_options.dimensionLines || !kept)
            text += "<path class=\"line\" vector-effect=\"non-scaling-stroke\" d=\"" + outward(line.from, from) +
                    outward(line.to, to) + "M" + pair(from) + "L" + pair(to) + "\"/>" + arrow(from, to) +
                    arrow(to, from);
        return text + "<g" + movedTo(at) + "><g class=\"z\">" + sign(mark, label) + "</g></g></g>\n";
    }

    /// The line from a measured point to the dimension line, a little beyond it; none where both are one.
    static std::string outward(Vec2 point, Vec2 foot) {
        const double way = distance(point, foot);
        if (way < 2.0)
            return {};
        const Vec2 direction = unitOr(foot - point, {0.0, 1.0});
        return "M" + pair(point + direction * std::min(2.0, way / 2)) + "L" + pair(foot + direction * 2.5);
    }

    static std::string arrow(Vec2 tip, Vec2 tail) {
        const Vec2 back = unitOr(tail - tip, {1.0, 0.0}) * 5.5, side = leftOf(back) * 0.27;
        return "<g" + movedTo(tip) + "><path class=\"z arrow\" d=\"M0 0L" + pair(back + side) + "L" +
               pair(back - side) + "Z\"/></g>";
    }

    std::string idsIn(const LabelCluster& cluster) const {
        std::vector<std::string> ids;
        for (const std::size_t index : cluster.labels) {
            const std::vector<std::string>& more = m_chosen[index]->constraints;
            ids.insert(ids.end(), more.begin(), more.end());
            if (const std::string& entity = m_chosen[index]->entity; !entity.empty())
                ids.push_back(entity);
        }
        const bool isOfNames = !m_chosen[cluster.labels.front()]->entity.empty();
        return attribute(isOfNames ? "data-e" : "data-c", joinedIds(ids));
    }

    std::string cluster(const LabelCluster& cluster) const {
        const MarkTone tone = m_chosen[cluster.labels.front()]->tone;
        return "<g class=\"m cluster at" + std::to_string(cluster.level) + " " + std::string(className(tone)) + "\"" +
               (m_options.seenWhole ? std::string() : idsIn(cluster)) + movedTo(cluster.spot.base) +
               "><g class=\"z\"><g" + movedTo(cluster.spot.offset) + ">" + plate(cluster.width, cluster.height) +
               centredText(std::to_string(cluster.labels.size())) + toneSign(tone, cluster.width, cluster.height) +
               "</g></g></g>\n";
    }

    const std::vector<Mark>& m_marks;
    const Frame& m_frame;
    InkMap& m_ink;
    const PictureNotes& m_notes;
    MarkOptions m_options;
    SpotMemory* m_memory;
    std::vector<Label> m_labels;
    std::vector<const Mark*> m_chosen;
    std::vector<std::string> m_keys;  ///< of the chosen marks: the constraint and a running number
    std::unordered_map<std::string, int> m_seen;
};

}  // namespace

std::string drawMarks(const std::vector<Mark>& marks, const Frame& frame, InkMap& ink, const PictureNotes& notes,
                      const MarkOptions& options, SpotMemory* memory) {
    return MarkWriter(marks, frame, ink, notes, options, memory).text();
}

}  // namespace holdfast::report
