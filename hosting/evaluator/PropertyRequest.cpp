// What a changed property asks of an element, by its kind: which values are the user's, and which of the others stay
// where they can.

#include <cmath>

#include "hosting/HostShapes.h"
#include "hosting/evaluator/EditRequests.h"
#include "hosting/evaluator/SketchFromDocument.h"

namespace holdfast::hosting {

namespace {

using EntType = LvEvaDataConverterGripEdit::EntType;

/// The turn about z that a transform makes.
double angleOf(const YxGeMatrix3d& transform) {
    YxGeVector3d x = YxGeVector3d::kXAxis;
    x.transformBy(transform);
    return std::atan2(x.y, x.x);
}

/// The values of one element before the edit, to be changed one by one.
class Change {
public:
    Change(EditRequest& request, const HostSketch& host, int number, const YxDbEntity& base)
        : m_demand(request),
          m_element(host.sketch.entities[static_cast<std::size_t>(number)]),
          m_before(readShape(base)),
          m_values(parametersOf(m_before)) {}

    const SketchEntity& element() const { return m_element; }
    const Shape& before() const { return m_before; }
    const std::vector<double>& values() const { return m_values; }
    /// A shape of another layout has nothing to change.
    bool fits() const { return m_values.size() == static_cast<std::size_t>(m_element.valueCount); }

    void put(int value, double goal) { m_demand.targets.push_back({m_element.firstValue + value, goal}); }
    void add(int value, double delta) { put(value, m_values[static_cast<std::size_t>(value)] + delta); }
    void move(int point, const YxGeVector3d& delta) {
        add(point, delta.x);
        add(point + 1, delta.y);
    }
    /// Values that stay, or follow by a delta, unless that makes the edit impossible.
    void keep(std::initializer_list<int> kept, double delta = 0.0) {
        for (const int value : kept)
            keepAt(value, m_values[static_cast<std::size_t>(value)] + delta);
    }
    void keepAt(int value, double goal) { m_demand.kept.push_back({m_element.firstValue + value, goal}); }
    /// The points from one value on follow by a vector, where they can.
    void carry(int firstPoint, const YxGeVector3d& delta) {
        for (int value = firstPoint; value + 1 < m_element.valueCount; value += 2) {
            keep({value}, delta.x);
            keep({value + 1}, delta.y);
        }
    }

private:
    EditRequest& m_demand;
    const SketchEntity& m_element;
    Shape m_before;
    std::vector<double> m_values;
};

void askAxis(Change& change, const ConverterRecord& record) {
    if (record.number == 0) {
        change.move(0, record.vector);
        change.keep({2});
        return;
    }
    change.add(2, angleOf(record.transform));
    change.keep({0, 1});
}

void askCircle(Change& change, const ConverterRecord& record) {
    if (record.number == 0) {
        change.move(0, record.vector);
        change.keep({2});
        return;
    }
    change.put(2, record.value1);
    change.keep({0, 1});
}

/// The ends of an arc that keeps centre and angles.
void keepAngles(Change& change, double radius) {
    const auto& v = change.values();
    const double scale = radius / v[2];
    for (const int end : {3, 5}) {
        const std::size_t x = static_cast<std::size_t>(end);
        change.keepAt(end, v[0] + scale * (v[x] - v[0]));
        change.keepAt(end + 1, v[1] + scale * (v[x + 1] - v[1]));
    }
}

void askArc(Change& change, const ConverterRecord& record, bool fromBelow) {
    switch (record.number) {
        case 0:
            change.move(0, record.vector);
            change.keep({2});
            change.carry(3, record.vector);
            break;
        case 1:
        case 2: {
            const bool isStart = (record.number == 1) != fromBelow;
            change.move(isStart ? 3 : 5, record.vector);
            change.keep({0, 1, 2});
            change.keep(isStart ? std::initializer_list<int>{5, 6} : std::initializer_list<int>{3, 4});
            break;
        }
        case 3:
            change.put(2, record.value1);
            change.keep({0, 1});
            keepAngles(change, record.value1);
            break;
        default:
            break;
    }
}

/// The ends of an elliptical arc with other radii, at the parameters that they have.
void keepParams(Change& change, Vec2 majorAxis, double minorRadius) {
    const auto* arc = std::get_if<EllipticalArcShape>(&change.before());
    if (arc == nullptr)
        return;
    EllipticalArcShape now = *arc;
    now.majorAxis = majorAxis;
    now.ratio = minorRadius / std::hypot(majorAxis.x, majorAxis.y);
    const std::vector<double> values = parametersOf(now);
    for (int value = 5; value < 9; ++value)
        change.keepAt(value, values[static_cast<std::size_t>(value)]);
}

void askEllipse(Change& change, const ConverterRecord& record, bool fromBelow) {
    const auto& v = change.values();
    const double major = std::hypot(v[2], v[3]);
    switch (record.number) {
        case 0:
            change.move(0, record.vector);
            change.keep({2, 3, 4});
            change.carry(5, record.vector);
            break;
        case 1: {
            const Vec2 axis{v[2] * record.value1 / major, v[3] * record.value1 / major};
            change.put(2, axis.x);
            change.put(3, axis.y);
            change.keep({0, 1, 4});
            keepParams(change, axis, v[4]);
            break;
        }
        case 2:
            change.put(4, record.value2);
            change.keep({0, 1, 2, 3});
            keepParams(change, {v[2], v[3]}, record.value2);
            break;
        default: {
            if (change.element().kind != EntityKind::ellipticalArc)
                return;
            const bool isStart = (record.number == 3) != fromBelow;
            change.move(isStart ? 5 : 7, record.vector);
            change.keep({0, 1, 2, 3, 4});
            change.keep(isStart ? std::initializer_list<int>{7, 8} : std::initializer_list<int>{5, 6});
        }
    }
}

void askVertex(Change& change, const ConverterRecord& record) {
    const SketchEntity& polyline = change.element();
    const int vertex = record.number;
    if (vertex < 0 || vertex >= polyline.vertexCount)
        return;
    change.move(2 * vertex, record.vector);
    for (const int segment : {vertex, (vertex + polyline.vertexCount - 1) % polyline.vertexCount}) {
        if (segment >= polyline.segmentCount())
            continue;
        if (const int bulge = polyline.bulgeValues[static_cast<std::size_t>(segment)]; bulge >= 0)
            change.keep({bulge - polyline.firstValue});
    }
}

void askText(Change& change, const ConverterRecord& record) {
    constexpr int kRotation = 7;
    if (record.number == kRotation) {
        change.add(2, angleOf(record.transform));
        change.keep({0, 1});
    } else {
        change.move(0, record.vector);
        change.keep({2});
    }
}

/// A line that may not move reports a change of nothing.
bool changesNothing(const ConverterRecord& record) {
    return record.vector.isZeroLength(YxGeContext::gTol);
}

}  // namespace

void askProperty(EditRequest& request, const HostSketch& host, int number, const YxDbEntity& base,
                 const ConverterRecord& record) {
    Change change(request, host, number, base);
    if (!change.fits())
        return;
    switch (record.entType) {
        case EntType::kLine:
            if (!changesNothing(record))
                change.move(record.number == 0 ? 0 : 2, record.vector);
            break;
        case EntType::kPolyline:
            askVertex(change, record);
            break;
        case EntType::kRay:
        case EntType::kXline:
            askAxis(change, record);
            break;
        case EntType::kCircle:
            askCircle(change, record);
            break;
        case EntType::kArc:
            askArc(change, record, isSeenFromBelow(base));
            break;
        case EntType::kEllipse:
            askEllipse(change, record, isSeenFromBelow(base));
            break;
        case EntType::kPoint:
            change.move(0, record.vector);
            break;
        case EntType::kText:
        case EntType::kMText:
            askText(change, record);
            break;
        case EntType::kSpline:
            if (record.number >= 0 && 2 * record.number + 1 < change.element().valueCount)
                change.move(2 * record.number, record.vector);
            break;
        default:
            break;
    }
}

}  // namespace holdfast::hosting
