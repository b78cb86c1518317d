#include <gtest/gtest.h>

#include "tests/slvs/ExampleDrawings.h"

#ifdef HOLDFAST_WITH_SLVS

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <set>

#include "formats/slvs/SlvsReader.h"
#include "formats/slvs/SlvsRecords.h"
#include "formats/slvs/SlvsWriter.h"
#include "hosting/DocumentSketch.h"

// Uses memset without declaring it.
#include <slvs.h>

namespace holdfast::formats {
namespace {

using Type = ConstraintType;

/// The library's number for a kind of the file's. It begins the place of a point on a line at the line's end, and moves
/// both to get on from there; a distance of 0 says the same.
int kindOf(int kind) {
    static const std::map<int, int> kinds = {{20, SLVS_C_POINTS_COINCIDENT},
                                             {30, SLVS_C_PT_PT_DISTANCE},
                                             {31, SLVS_C_PT_PLANE_DISTANCE},
                                             {32, SLVS_C_PT_LINE_DISTANCE},
                                             {34, SLVS_C_PROJ_PT_DISTANCE},
                                             {41, SLVS_C_PT_IN_PLANE},
                                             {42, SLVS_C_PT_LINE_DISTANCE},
                                             {50, SLVS_C_EQUAL_LENGTH_LINES},
                                             {60, SLVS_C_SYMMETRIC},
                                             {61, SLVS_C_SYMMETRIC_HORIZ},
                                             {62, SLVS_C_SYMMETRIC_VERT},
                                             {63, SLVS_C_SYMMETRIC_LINE},
                                             {70, SLVS_C_AT_MIDPOINT},
                                             {80, SLVS_C_HORIZONTAL},
                                             {81, SLVS_C_VERTICAL},
                                             {90, SLVS_C_DIAMETER},
                                             {100, SLVS_C_PT_ON_CIRCLE},
                                             {120, SLVS_C_ANGLE},
                                             {121, SLVS_C_PARALLEL},
                                             {122, SLVS_C_PERPENDICULAR},
                                             {123, SLVS_C_ARC_LINE_TANGENT},
                                             {124, SLVS_C_CUBIC_LINE_TANGENT},
                                             {125, SLVS_C_CURVE_CURVE_TANGENT},
                                             {130, SLVS_C_EQUAL_RADIUS},
                                             {200, SLVS_C_WHERE_DRAGGED}};
    return kinds.at(kind);
}

/// Builds the library's entities of a file's requests as the program does, those that one constraint needs or all.
class Judge {
public:
    explicit Judge(const std::string& text) : m_text(text), m_file(slvsRecords(m_text, "judged")) {
        for (const SlvsRequest& request : m_file.requests)
            m_requests[request.handle] = &request;
    }

    const std::vector<SlvsConstraint>& constraints() const { return m_file.constraints; }

    /// How far the library moves anything for one constraint to hold; infinite where it finds no way.
    double movedFor(const SlvsConstraint& constraint) {
        clear();
        add(constraint);
        return solve() == SLVS_RESULT_OKAY ? moved() : INFINITY;
    }

    struct Whole {
        int result = 0, freedom = 0;
        double moved = 0.0;
    };
    Whole solveWhole() {
        clear();
        for (const SlvsRequest& request : m_file.requests)
            if (request.handle > 3)
                addRequest(request.handle);
        for (const SlvsConstraint& constraint : m_file.constraints)
            add(constraint);
        const int result = solve();
        return {result, m_system.dof, moved()};
    }

private:
    static constexpr Slvs_hGroup kFree = 2;

    void clear() {
        m_params.clear();
        m_entities.clear();
        m_constraints.clear();
        m_made.clear();
        for (const SlvsHandle plane : {1U, 2U, 3U})
            addPlane(ofRequest(plane, 0), ofRequest(plane, 1), ofRequest(plane, kSlvsNormal), plane);
        addPlane(ofGroup(2, 0), ofGroup(2, 2), ofGroup(2, 1), 1);
    }

    void addParam(SlvsHandle handle, Slvs_hGroup group, double value) {
        m_params.push_back(Slvs_MakeParam(handle, group, value));
    }

    void addPlane(SlvsHandle plane, SlvsHandle origin, SlvsHandle normal, SlvsHandle like) {
        const SlvsHandle own = plane == ofGroup(2, 0) ? 0x7ff00000U : ofRequest(like, 0);
        for (const SlvsHandle i : {0U, 1U, 2U})
            addParam(own + 0x10 + i, 1, 0.0);
        for (const SlvsHandle i : {0U, 1U, 2U, 3U})
            addParam(own + 0x20 + i, 1, m_file.param(ofRequest(like, kSlvsNormal + i))->value);
        m_entities.push_back(Slvs_MakePoint3d(origin, 1, own + 0x10, own + 0x11, own + 0x12));
        m_entities.push_back(Slvs_MakeNormal3d(normal, 1, own + 0x20, own + 0x21, own + 0x22, own + 0x23));
        m_entities.push_back(Slvs_MakeWorkplane(plane, 1, origin, normal));
    }

    SlvsHandle addPoint(SlvsHandle request, SlvsHandle number, SlvsHandle entity) {
        for (const SlvsHandle i : {0U, 1U})
            addParam(coordinateOf(request, number, i), kFree, m_file.param(coordinateOf(request, number, i))->value);
        m_entities.push_back(Slvs_MakePoint2d(entity, kFree, ofGroup(2, 0), coordinateOf(request, number, 0),
                                              coordinateOf(request, number, 1)));
        return entity;
    }

    void addRequest(SlvsHandle handle) {
        if (!m_made.insert(handle).second)
            return;
        const SlvsRequest& request = *m_requests.at(handle);
        if (request.type == 101) {
            addPoint(handle, 0, ofRequest(handle, 0));
            return;
        }
        const SlvsHandle counts[] = {2, 4, 1, 3};
        const SlvsHandle count = counts[request.type / 100 - 2] + static_cast<SlvsHandle>(request.extraPoints) -
                                 (request.type == 301 ? 1 : 0);
        std::vector<SlvsHandle> p;
        for (SlvsHandle i = 0; i < count; ++i)
            p.push_back(addPoint(handle, i, ofRequest(handle, i + 1)));
        const SlvsHandle entity = ofRequest(handle, 0), plane = ofGroup(2, 0), normal = ofGroup(2, 1);
        switch (request.type) {
            case 200:
                m_entities.push_back(Slvs_MakeLineSegment(entity, kFree, plane, p[0], p[1]));
                return;
            case 300:  // the library knows none with points in between; its ends are those of one
                m_entities.push_back(Slvs_MakeCubic(entity, kFree, plane, p[0], p[1], p[count - 2], p[count - 1]));
                return;
            case 301:
                return;
            case 400: {
                const SlvsHandle radius = ofRequest(handle, kSlvsDistance);
                addParam(radius, kFree, m_file.param(radius)->value);
                m_entities.push_back(Slvs_MakeDistance(radius, kFree, plane, radius));
                m_entities.push_back(Slvs_MakeCircle(entity, kFree, plane, p[0], normal, radius));
                return;
            }
            default:
                m_entities.push_back(Slvs_MakeArcOfCircle(entity, kFree, plane, normal, p[0], p[1], p[2]));
        }
    }

    void add(const SlvsConstraint& constraint) {
        for (const SlvsHandle entity : {constraint.pointA, constraint.pointB, constraint.entityA, constraint.entityB})
            if (const SlvsHandle request = entity >> 16U; request > 3 && request < 0x8000)
                addRequest(request);
        Slvs_Constraint made =
            Slvs_MakeConstraint(constraint.handle, kFree, kindOf(constraint.type), constraint.plane, constraint.value,
                                constraint.pointA, constraint.pointB, constraint.entityA, constraint.entityB);
        made.other = constraint.other ? 1 : 0;
        made.other2 = constraint.other2 ? 1 : 0;
        m_constraints.push_back(made);
    }

    int solve() {
        std::memset(&m_system, 0, sizeof(m_system));
        m_system.param = m_params.data();
        m_system.params = static_cast<int>(m_params.size());
        m_system.entity = m_entities.data();
        m_system.entities = static_cast<int>(m_entities.size());
        m_system.constraint = m_constraints.data();
        m_system.constraints = static_cast<int>(m_constraints.size());
        std::vector<Slvs_hConstraint> failed(m_constraints.size());
        m_system.failed = failed.data();
        m_system.faileds = static_cast<int>(failed.size());
        Slvs_Solve(&m_system, kFree);
        return m_system.result;
    }

    double moved() const {
        double most = 0.0;
        for (const Slvs_Param& param : m_params)
            if (const SlvsParam* before = m_file.param(param.h))
                most = std::max(most, std::abs(param.val - before->value));
        return most;
    }

    std::string m_text;
    SlvsFile m_file;
    std::map<SlvsHandle, const SlvsRequest*> m_requests;
    std::vector<Slvs_Param> m_params;
    std::vector<Slvs_Entity> m_entities;
    std::vector<Slvs_Constraint> m_constraints;
    std::set<SlvsHandle> m_made;
    Slvs_System m_system{};
};

double sizeOf(const Document& drawing) {
    return hosting::DocumentSketch(drawing).size();
}

/// Drawings hold within what their authors' programs left; the library has to find the same.
double missOf(const Document& drawing) {
    const std::vector<double> misses = hosting::DocumentSketch(drawing).shortfalls();
    return *std::max_element(misses.begin(), misses.end());
}

TEST(SlvsSolver, FindsEveryConstraintOfTheExampleDrawingsHolding) {
    std::map<int, int> judged;
    for (const Document& drawing : exampleDrawings()) {
        Judge judge(slvsText(drawing, 0.01).text);
        const double most = 20.0 * missOf(drawing) + 1e-7 * sizeOf(drawing);
        for (const SlvsConstraint& constraint : judge.constraints()) {
            EXPECT_LE(judge.movedFor(constraint), most)
                << drawing.name << " " << slvsName('c', constraint.handle) << " of kind " << constraint.type;
            ++judged[constraint.type];
        }
    }
    EXPECT_GE(judged.size(), 12U);
}

/// One of every kind that can be written, all of which hold.
TEST(SlvsSolver, FindsConstraintsOfEveryKindHoldingAndOthersNot) {
    Document drawing;
    drawing.entities = {{"a", LineShape{{0, 0}, {10, 0}}},
                        {"b", LineShape{{10, 0}, {10, 5}}},
                        {"c", LineShape{{0, 2}, {7, 2}}},
                        {"d", LineShape{{1, 1}, {4, 5}}},
                        {"arc", ArcShape{{8, 5}, 2, 0, 3.141592653589793}},
                        {"round", ArcShape{{4, 5}, 2, 3.141592653589793, 6.283185307179586}},
                        {"circle", CircleShape{{4, 5}, 2}},
                        {"p", PointShape{{5, 0}}},
                        {"q", PointShape{{-5, 0}}},
                        {"s", SplineShape{3, false, {{10, 5}, {10, 7}, {4, 9}, {6, 9}}, {0, 0, 0, 0, 1, 1, 1, 1}, {}}},
                        {"x", XlineShape{{0, 0}, {1, 0}}, true, true},
                        {"y", XlineShape{{0, 0}, {0, 1}}, true, true}};
    const PlaceKind start = PlaceKind::start, end = PlaceKind::end, centre = PlaceKind::centre;
    const auto c = [](Type type, std::vector<Place> refs, std::optional<double> value = {}) {
        return Constraint{.id = "k", .type = type, .refs = std::move(refs), .value = value};
    };
    const std::vector<Constraint> holding = {c(Type::coincident, {{"a", end}, {"b", start}}),
                                             c(Type::concentric, {{"round", centre}, {"circle", centre}}),
                                             c(Type::pointOnCurve, {{"p"}, {"a"}}),
                                             c(Type::pointOnCurve, {{"arc", end}, {"circle"}}),
                                             c(Type::pointOnCurve, {{"p"}, {"x"}}),
                                             c(Type::pointOnCurve, {{"c", start}, {"y"}}),
                                             c(Type::fixed, {{"arc", end}}),
                                             c(Type::horizontal, {{"a"}}),
                                             c(Type::vertical, {{"b", start}, {"b", end}}),
                                             c(Type::parallel, {{"a"}, {"c"}}),
                                             c(Type::perpendicular, {{"a"}, {"b"}}),
                                             c(Type::equal, {{"arc"}, {"circle"}}),
                                             c(Type::symmetric, {{"p"}, {"q"}, {"y"}}),
                                             c(Type::midpoint, {{"p"}, {"a"}}),
                                             c(Type::distance, {{"b"}}, 5.0),
                                             c(Type::distance, {{"circle", centre}, {"c"}}, 3.0),
                                             c(Type::distance, {{"p"}, {"c"}}, 2.0),
                                             c(Type::distance, {{"circle", centre}, {"x"}}, 5.0),
                                             c(Type::distance, {{"q"}, {"y"}}, 5.0),
                                             c(Type::distanceX, {{"p"}, {"q"}}, -10.0),
                                             c(Type::distanceY, {{"p"}, {"d", end}}, 5.0),
                                             c(Type::radius, {{"arc"}}, 2.0),
                                             c(Type::diameter, {{"circle"}}, 4.0),
                                             c(Type::angle, {{"a"}, {"d"}}, std::atan2(4.0, 3.0)),
                                             c(Type::angle, {{"a", end}, {"d"}}, std::atan2(-4.0, -3.0)),
                                             c(Type::angle, {{"d"}}, std::atan2(4.0, 3.0)),
                                             c(Type::tangent, {{"b", end}, {"arc", start}}),
                                             c(Type::tangent, {{"b", end}, {"s", start}}),
                                             c(Type::tangent, {{"arc", end}, {"round", end}}),
                                             c(Type::tangent, {{"arc", start}, {"s", start}}),
                                             c(Type::perpendicular, {{"p"}, {"circle"}}),
                                             c(Type::collinear, {{"a"}, {"x"}})};
    for (const Constraint& constraint : holding) {
        drawing.constraints = {constraint};
        const SlvsOutput written = slvsText(drawing, 0.01);
        Judge judge(written.text);
        if (constraint.refs[0].entity == "p" && constraint.type == Type::perpendicular) {  // holds between no such
            EXPECT_TRUE(judge.constraints().empty());
            continue;
        }
        ASSERT_FALSE(judge.constraints().empty()) << static_cast<int>(constraint.type);
        for (const SlvsConstraint& record : judge.constraints()) {
            EXPECT_LE(judge.movedFor(record), 1e-9) << record.type << " " << constraint.refs[0].entity;
            if (record.value != 0.0) {
                SlvsConstraint wrong = record;
                wrong.value *= 1.1;
                EXPECT_GT(judge.movedFor(wrong), 1e-3) << record.type;
            }
        }
    }
}

/// Without redundant constraints the library counts degrees of freedom as the drawing does.
TEST(SlvsSolver, CountsTheDegreesOfFreedomThatTheDrawingHas) {
    int counted = 0;
    for (Document& drawing : exampleDrawings()) {
        const SlvsOutput written = slvsText(drawing, 0.01);
        if (!written.notes.empty())
            continue;  // the file is not all of it
        Judge judge(written.text);
        const Judge::Whole whole = judge.solveWhole();
        if (whole.result != SLVS_RESULT_OKAY)
            continue;  // redundant there, or too large
        EXPECT_EQ(whole.freedom, hosting::DocumentSketch(drawing).diagnose().freedom) << drawing.name;
        EXPECT_LE(whole.moved, 20.0 * missOf(drawing) + 1e-7 * sizeOf(drawing)) << drawing.name;
        ++counted;
    }
    EXPECT_GE(counted, 4);
}

}  // namespace
}  // namespace holdfast::formats

#else

TEST(SlvsSolver, JudgesWrittenFiles) {
    GTEST_SKIP() << "libslvs was not found";
}

#endif
