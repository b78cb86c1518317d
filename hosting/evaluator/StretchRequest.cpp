// What one step of a stretch asks of the sketch as it was when the stretch began.

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <unordered_set>

#include "geometry/Angles.h"
#include "host/model/DynamicEdits.h"
#include "hosting/HostShapes.h"
#include "hosting/evaluator/EditRequests.h"
#include "solver/src/sketch/Index.h"

namespace holdfast::hosting {

namespace {

using Indices = YxArray<int>;

/// The index list of each constrained object. Lists are given for free objects too; where there are any, the edit that
/// the host runs tells which object each one belongs to.
std::vector<const Indices*> listsOf(const AssocConstraintHeader& header, const YxArray<YxDbObjectId>& ids,
                                    const YxArray<Indices>& lists) {
    std::vector<const Indices*> found;
    if (lists.length() == ids.length()) {
        for (const Indices& list : lists)
            found.push_back(&list);
        return found;
    }
    const ConstraintDynamicEdit* edit = dynamicEditOf(header);
    if (edit == nullptr)
        return found;
    const std::unordered_set<const void*> freeSources(header.unconstrainedEntities.begin(),
                                                      header.unconstrainedEntities.end());
    const YxArray<YxDbObjectId>& edited = HostAccess::editedIds(*edit);
    const YxArray<void*>& sources = HostAccess::sourceEntities(*edit);
    int next = 0;
    for (int i = 0; i < edited.length() && next < lists.length(); ++i) {
        const int constrained = static_cast<int>(found.size());
        if (constrained < ids.length() && edited[i] == ids[constrained])
            found.push_back(&lists[next++]);
        else if (i < sources.length() && freeSources.contains(sources[i]))
            ++next;
    }
    return found;
}

/// One element of the step: its grips, the vector, and its special records.
struct Stretched {
    EditRequest& request;
    const SketchEntity& element;
    const std::vector<double>& values;  ///< of the sketch
    const Indices& grips;
    YxGeVector3d by;
    std::vector<const ConverterRecord*> specials{};
    bool fromBelow = false;

    bool has(int grip) const { return grips.contains(grip); }
    double value(int index) const { return values[at(element.firstValue + index)]; }
    void put(int index, double goal) { request.targets.push_back({element.firstValue + index, goal}); }
    void keep(int index, double goal) { request.kept.push_back({element.firstValue + index, goal}); }
    void move(int index, const YxGeVector3d& way) {
        put(index, value(index) + way.x);
        put(index + 1, value(index + 1) + way.y);
    }
    void carry(int index, const YxGeVector3d& way) {
        keep(index, value(index) + way.x);
        keep(index + 1, value(index + 1) + way.y);
    }
};

YxGeVector3d translationOf(const YxGeMatrix3d& transform) {
    const YxGePoint3d origin = transform * YxGePoint3d::kOrigin;
    return {origin.x, origin.y, origin.z};
}

void askLine(Stretched& line) {
    if (line.has(0) || line.has(2))
        line.move(0, line.by);
    if (line.has(1) || line.has(2))
        line.move(2, line.by);
}

void askAxis(Stretched& axis) {
    if (axis.has(0)) {
        axis.move(0, axis.by);
        axis.keep(2, axis.value(2));
        return;
    }
    double turn = 0.0;
    if (!axis.specials.empty()) {
        YxGeVector3d x = YxGeVector3d::kXAxis;
        x.transformBy(axis.specials.back()->transform);
        turn = std::atan2(x.y, x.x);
    } else {
        // The second point lies one unit ahead and is what moves; a construction line has another one behind.
        const double angle = axis.value(2), way = axis.has(1) ? 1.0 : -1.0;
        const double x = std::cos(angle) + way * axis.by.x, y = std::sin(angle) + way * axis.by.y;
        turn = nearestTurn(std::atan2(y, x), angle) - angle;
    }
    axis.put(2, axis.value(2) + turn);
    axis.carry(0, YxGeVector3d::kIdentity);
}

void askArc(Stretched& arc) {
    const int start = arc.fromBelow ? 5 : 3, end = arc.fromBelow ? 3 : 5;
    const bool isWhole = arc.has(0) && arc.has(1);
    if (isWhole || arc.specials.empty()) {
        if (isWhole || arc.has(2))
            arc.move(0, arc.by);
        if (isWhole || arc.has(0))
            arc.move(start, arc.by);
        if (isWhole || arc.has(1))
            arc.move(end, arc.by);
        arc.keep(2, arc.value(2));
        return;
    }
    const YxGeVector3d ofCentre = translationOf(arc.specials.back()->transform);
    const int listed = arc.has(0) ? start : arc.has(1) ? end : -1;
    if (listed < 0) {
        arc.move(0, ofCentre);
        arc.carry(3, ofCentre);
        arc.carry(5, ofCentre);
    } else {
        arc.move(listed, arc.by);
        arc.carry(0, ofCentre);
        arc.carry(listed == 3 ? 5 : 3, YxGeVector3d::kIdentity);
    }
    arc.keep(2, arc.specials.back()->value1);
}

/// tan(angle / 4) of an arc of a radius over a chord, on the side and the half of the old one.
double bulgeFor(double chord, double radius, double old) {
    if (!(chord <= 2.0 * radius))
        return old;
    const double half = std::asin(chord / (2.0 * radius));
    const double bulge = std::tan((std::abs(old) <= 1.0 ? half : kPi - half) / 2.0);
    return std::copysign(bulge, old);
}

/// What becomes of the vertices and segments of a stretched polyline.
class StretchedVertices {
public:
    explicit StretchedVertices(Stretched& polyline)
        : m_polyline(polyline), m_count(polyline.element.vertexCount), m_moves(at(m_count), 0) {
        for (const int vertex : polyline.grips)
            if (vertex >= 0 && vertex < m_count)
                m_moves[at(vertex)] = 1;
        for (const ConverterRecord* special : polyline.specials)
            m_radii[special->number] = special->value1;
    }

    void ask() {
        for (int vertex = 0; vertex < m_count; ++vertex)
            if (moves(vertex))
                m_polyline.move(2 * vertex, m_polyline.by);
        for (int segment = 0; segment < m_polyline.element.segmentCount(); ++segment)
            if (moves(segment) || moves((segment + 1) % m_count))
                keepBulge(segment);
    }

private:
    bool moves(int vertex) const { return m_moves[at(vertex)] != 0; }

    /// The host's source tells the radius that the segment is to have; without one its bulge stays.
    void keepBulge(int segment) {
        if (m_polyline.element.bulgeValues[at(segment)] < 0)
            return;
        const int bulge = m_polyline.element.bulgeValues[at(segment)] - m_polyline.element.firstValue;
        double goal = m_polyline.value(bulge);
        if (const auto radius = m_radii.find(segment); radius != m_radii.end())
            goal = bulgeFor(chordOf(segment), radius->second, goal);
        m_polyline.keep(bulge, goal);
    }

    /// After the step.
    double chordOf(int segment) const {
        const int p = segment, q = (segment + 1) % m_count;
        const double steps = double(moves(q)) - double(moves(p));
        return std::hypot(m_polyline.value(2 * q) - m_polyline.value(2 * p) + steps * m_polyline.by.x,
                          m_polyline.value(2 * q + 1) - m_polyline.value(2 * p + 1) + steps * m_polyline.by.y);
    }

    Stretched& m_polyline;
    int m_count;
    std::vector<char> m_moves;
    std::unordered_map<int, double> m_radii;  ///< by segment, as the special records tell them
};

void askGrips(Stretched& stretched) {
    switch (stretched.element.kind) {
        case EntityKind::line:
            return askLine(stretched);
        case EntityKind::ray:
        case EntityKind::xline:
            return askAxis(stretched);
        case EntityKind::arc:
            return askArc(stretched);
        case EntityKind::polyline:
            return StretchedVertices(stretched).ask();
        case EntityKind::spline:
            for (const int control : stretched.grips)
                if (control >= 0 && 2 * control + 1 < stretched.element.valueCount)
                    stretched.move(2 * control, stretched.by);
            return;
        case EntityKind::ellipticalArc:
        case EntityKind::circle:
        case EntityKind::ellipse:
        case EntityKind::point:
        case EntityKind::text:
            if (!stretched.has(0))
                return;
            stretched.move(0, stretched.by);
            for (int value = 2; value < stretched.element.valueCount; ++value) {
                const bool isEnd = stretched.element.kind == EntityKind::ellipticalArc && value >= 5;
                const double way = !isEnd ? 0.0 : value % 2 == 1 ? stretched.by.x : stretched.by.y;
                stretched.keep(value, stretched.value(value) + way);
            }
            return;
    }
}

}  // namespace

EditRequest stretchDemand(const Drawing& drawing, const HostSketch& host, const AssocConstraintHeader& header,
                          const ConverterFeed& feed) {
    const ConverterRecord* objects = feed.last("setObjectIds");
    const ConverterRecord* grips = feed.last("resetData(lists)");
    const ConverterRecord* way = feed.last("setTransform(vector)");
    EditRequest request;
    if (objects == nullptr || grips == nullptr || way == nullptr)
        return request;
    std::unordered_map<std::string, std::vector<const ConverterRecord*>> specials;
    for (const ConverterRecord* special : feed.allSince("beginStep", "addSpecialInfo"))
        specials[drawing.nameOf(special->id)].push_back(special);
    const std::vector<const Indices*> lists = listsOf(header, objects->ids, grips->indexLists);
    for (std::size_t i = 0; i < lists.size(); ++i) {
        const std::string name = drawing.nameOf(objects->ids[static_cast<int>(i)]);
        const int number = host.numberOf(name);
        if (number < 0)
            continue;
        request.edited.push_back(number);
        Stretched stretched{
            request,        host.sketch.entities[at(number)],     host.sketch.values, *lists[i], way->vector,
            specials[name], isSeenFromBelow(drawing.entity(name))};
        askGrips(stretched);
    }
    request.keepOthers(host.sketch, host.sketch.values);
    return request;
}

}  // namespace holdfast::hosting
