#include "benchmarks/solver/OtherSolver.h"

#ifdef HOLDFAST_WITH_SLVS

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <set>

#include "geometry/DisjointSets.h"

// Uses memset without declaring it.
#include <slvs.h>

namespace holdfast::solver::detail {

namespace {

constexpr Slvs_hGroup kBase = 1, kSketch = 2;
constexpr Slvs_hEntity kOrigin = 1, kNormal = 2, kPlane = 3, kFirstEntity = 10;

}  // namespace

struct OtherSolver::Data {
    std::vector<Slvs_Param> params;
    std::vector<Slvs_Entity> entities;
    std::vector<Slvs_Constraint> constraints;
    std::vector<Slvs_hEntity> elements;                  ///< by number in the sketch
    DisjointSets meeting{0};                             ///< first values of points that coincide
    std::map<int, Slvs_hEntity> pointOfValue;            ///< by the first value of its set
    std::map<int, Slvs_hParam> paramOfValue;             ///< by value of the sketch
    std::map<std::pair<int, int>, Slvs_hEntity> points;  ///< by element and place
    std::vector<Slvs_hParam> dragged;
    std::set<int> held;  ///< first values of the sets of points that do not move

    Slvs_hParam addParam(Slvs_hGroup group, double value) {
        const auto handle = static_cast<Slvs_hParam>(params.size() + 1);
        params.push_back(Slvs_MakeParam(handle, group, value));
        return handle;
    }

    Slvs_hEntity nextEntity() const { return kFirstEntity + static_cast<Slvs_hEntity>(entities.size()); }

    void addPlane() {
        const Slvs_hParam x = addParam(kBase, 0.0), y = addParam(kBase, 0.0), z = addParam(kBase, 0.0);
        entities.push_back(Slvs_MakePoint3d(kOrigin, kBase, x, y, z));
        const Slvs_hParam w = addParam(kBase, 1.0), i = addParam(kBase, 0.0), j = addParam(kBase, 0.0),
                          k = addParam(kBase, 0.0);
        entities.push_back(Slvs_MakeNormal3d(kNormal, kBase, w, i, j, k));
        entities.push_back(Slvs_MakeWorkplane(kPlane, kBase, kOrigin, kNormal));
    }

    /// Points that coincide are one point there, as programs hand it over that know it: equations that only say so take
    /// it twice the time in a chain.
    Slvs_hEntity addPoint(const SketchData& sketch, int firstValue) {
        const int joined = static_cast<int>(meeting.find(static_cast<std::size_t>(firstValue)));
        const auto known = pointOfValue.find(joined);
        const Slvs_hEntity point = known != pointOfValue.end() ? known->second : newPoint(sketch, joined);
        pointOfValue[joined] = point;
        for (const int coordinate : {0, 1})
            paramOfValue[firstValue + coordinate] = paramOfValue.at(joined + coordinate);
        return point;
    }

    Slvs_hEntity newPoint(const SketchData& sketch, int firstValue) {
        const auto v = static_cast<std::size_t>(firstValue);
        const Slvs_hGroup group = held.contains(firstValue) ? kBase : kSketch;
        const Slvs_hParam x = addParam(group, sketch.values[v]), y = addParam(group, sketch.values[v + 1]);
        paramOfValue[firstValue] = x;
        paramOfValue[firstValue + 1] = y;
        const Slvs_hEntity handle = nextEntity();
        entities.push_back(Slvs_MakePoint2d(handle, group, kPlane, x, y));
        return handle;
    }

    /// The first value of the start point; that of the end follows.
    static int endsOf(const SketchEntity& entity) {
        return entity.firstValue + (entity.kind == EntityKind::arc ? 3 : 0);
    }

    void joinPoints(const SketchData& sketch) {
        meeting = DisjointSets(sketch.values.size());
        const auto firstValue = [&](const SketchPlace& place) {
            const SketchEntity& entity = sketch.entities[static_cast<std::size_t>(place.entity)];
            return static_cast<std::size_t>(endsOf(entity) + (place.kind == PlaceKind::end ? 2 : 0));
        };
        const auto isEnd = [](const SketchPlace& place) {
            return place.kind == PlaceKind::start || place.kind == PlaceKind::end;
        };
        for (const SketchConstraint& constraint : sketch.constraints) {
            const SketchPlace &a = constraint.refs.front(), &b = constraint.refs.back();
            const bool isJoint = constraint.type == ConstraintType::tangent && isEnd(a) && isEnd(b);
            if (isJoint || constraint.type == ConstraintType::coincident)
                meeting.join(firstValue(a), firstValue(b));
        }
        for (const SketchEntity& entity : sketch.entities)
            if (entity.fixed)
                held.insert(static_cast<int>(meeting.find(static_cast<std::size_t>(entity.firstValue))));
        for (const SketchConstraint& constraint : sketch.constraints)
            if (constraint.type == ConstraintType::fixed && isEnd(constraint.refs.front()))
                held.insert(static_cast<int>(meeting.find(firstValue(constraint.refs.front()))));
    }

    void addElement(const SketchData& sketch, int number) {
        const SketchEntity& entity = sketch.entities[static_cast<std::size_t>(number)];
        if (entity.kind == EntityKind::point) {
            const Slvs_hEntity point = addPoint(sketch, entity.firstValue);
            points[{number, static_cast<int>(PlaceKind::whole)}] = point;
            elements.push_back(point);
            return;
        }
        const bool isArc = entity.kind == EntityKind::arc;
        if (!isArc && entity.kind != EntityKind::line)
            throw SketchError(entity.id + ": it has no counterpart in the other solver");
        const int ends = endsOf(entity);
        const Slvs_hEntity centre = isArc ? addPoint(sketch, entity.firstValue) : 0;
        const Slvs_hEntity start = addPoint(sketch, ends), end = addPoint(sketch, ends + 2);
        points[{number, static_cast<int>(PlaceKind::start)}] = start;
        points[{number, static_cast<int>(PlaceKind::end)}] = end;
        const Slvs_hEntity handle = nextEntity();
        entities.push_back(isArc ? Slvs_MakeArcOfCircle(handle, kSketch, kPlane, kNormal, centre, start, end)
                                 : Slvs_MakeLineSegment(handle, kSketch, kPlane, start, end));
        elements.push_back(handle);
    }

    void addConstraint(int type, Slvs_hEntity p, Slvs_hEntity q, Slvs_hEntity a, Slvs_hEntity b, int other = 0,
                       double value = 0.0) {
        const auto handle = static_cast<Slvs_hConstraint>(constraints.size() + 1);
        constraints.push_back(Slvs_MakeConstraint(handle, kSketch, type, kPlane, value, p, q, a, b));
        constraints.back().other = other;
    }

    Slvs_hEntity element(const SketchPlace& place) const { return elements[static_cast<std::size_t>(place.entity)]; }
    Slvs_hEntity point(const SketchPlace& place) const {
        return points.at({place.entity, static_cast<int>(place.kind)});
    }

    Slvs_hEntity endOf(const SketchPlace& place, PlaceKind end) const {
        return points.at({place.entity, static_cast<int>(end)});
    }

    void addConstraint(const SketchData& sketch, const SketchConstraint& constraint) {
        const SketchPlace& a = constraint.refs.front();
        const SketchPlace& b = constraint.refs.back();
        const auto isArc = [&](const SketchPlace& place) {
            return sketch.entities[static_cast<std::size_t>(place.entity)].kind == EntityKind::arc;
        };
        switch (constraint.type) {
            case ConstraintType::coincident:
                return;
            case ConstraintType::fixed:
                return;
            case ConstraintType::horizontal:
                if (constraint.refs.size() == 2)
                    return addConstraint(SLVS_C_HORIZONTAL, point(a), point(b), 0, 0);
                return addConstraint(SLVS_C_HORIZONTAL, 0, 0, element(a), 0);
            case ConstraintType::distance:
                return addConstraint(SLVS_C_PT_PT_DISTANCE, endOf(a, PlaceKind::start), endOf(a, PlaceKind::end), 0, 0,
                                     0, constraint.value);
            case ConstraintType::radius:
                return addConstraint(SLVS_C_DIAMETER, 0, 0, element(a), 0, 0, 2.0 * constraint.value);
            case ConstraintType::vertical:
                return addConstraint(SLVS_C_VERTICAL, 0, 0, element(a), 0);
            case ConstraintType::perpendicular:
                return addConstraint(SLVS_C_PERPENDICULAR, 0, 0, element(a), element(b));
            case ConstraintType::equal:
                return addConstraint(isArc(a) ? SLVS_C_EQUAL_RADIUS : SLVS_C_EQUAL_LENGTH_LINES, 0, 0, element(a),
                                     element(b));
            case ConstraintType::tangent: {
                const SketchPlace& arc = isArc(a) ? a : b;
                const SketchPlace& line = isArc(a) ? b : a;
                return addConstraint(SLVS_C_ARC_LINE_TANGENT, 0, 0, element(arc), element(line),
                                     arc.kind == PlaceKind::end ? 1 : 0);
            }
            default:
                throw SketchError("constraint " + constraint.id + ": it has no counterpart in the other solver");
        }
    }
};

bool OtherSolver::isThere() {
    return true;
}

OtherSolver::OtherSolver(const SketchData& sketch) : m_data(std::make_unique<Data>()) {
    m_data->addPlane();
    m_data->joinPoints(sketch);
    for (std::size_t i = 0; i < sketch.entities.size(); ++i)
        m_data->addElement(sketch, static_cast<int>(i));
    for (const SketchConstraint& constraint : sketch.constraints)
        m_data->addConstraint(sketch, constraint);
}

void OtherSolver::drag(int value, double goal) {
    const Slvs_hParam param = m_data->paramOfValue.at(value);
    m_data->params[param - 1].val = goal;
    if (std::find(m_data->dragged.begin(), m_data->dragged.end(), param) == m_data->dragged.end())
        m_data->dragged.push_back(param);
}

std::optional<const char*> OtherSolver::solve() {
    Slvs_System system;
    std::memset(&system, 0, sizeof(system));
    system.param = m_data->params.data();
    system.params = static_cast<int>(m_data->params.size());
    system.entity = m_data->entities.data();
    system.entities = static_cast<int>(m_data->entities.size());
    system.constraint = m_data->constraints.data();
    system.constraints = static_cast<int>(m_data->constraints.size());
    for (std::size_t i = 0; i < m_data->dragged.size() && i < 4; ++i)
        system.dragged[i] = m_data->dragged[i];
    std::vector<Slvs_hConstraint> failed(m_data->constraints.size());
    system.failed = failed.data();
    system.faileds = static_cast<int>(failed.size());
    Slvs_Solve(&system, kSketch);
    switch (system.result) {
        case SLVS_RESULT_OKAY:
            return std::nullopt;
        case SLVS_RESULT_INCONSISTENT:
            return "inconsistent";
        case SLVS_RESULT_TOO_MANY_UNKNOWNS:
            return "full";
        default:
            return "diverged";
    }
}

void OtherSolver::read(SketchData& sketch) const {
    for (const auto& [value, param] : m_data->paramOfValue)
        sketch.values[static_cast<std::size_t>(value)] = m_data->params[param - 1].val;
    for (const SketchEntity& entity : sketch.entities) {
        if (entity.kind != EntityKind::arc)
            continue;
        const auto v = static_cast<std::size_t>(entity.firstValue);
        sketch.values[v + 2] =
            std::hypot(sketch.values[v + 3] - sketch.values[v], sketch.values[v + 4] - sketch.values[v + 1]);
    }
}

}  // namespace holdfast::solver::detail

#else

namespace holdfast::solver::detail {

struct OtherSolver::Data {};
OtherSolver::OtherSolver(const SketchData&) {}
bool OtherSolver::isThere() {
    return false;
}
void OtherSolver::drag(int, double) {}
std::optional<const char*> OtherSolver::solve() {
    return "missing";
}
void OtherSolver::read(SketchData&) const {}

}  // namespace holdfast::solver::detail

#endif

namespace holdfast::solver::detail {
OtherSolver::~OtherSolver() = default;
}  // namespace holdfast::solver::detail
