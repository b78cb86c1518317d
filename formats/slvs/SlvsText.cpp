#include "formats/slvs/SlvsText.h"

#include <charconv>
#include <string_view>

namespace holdfast::formats {
namespace {

constexpr std::string_view kHeader = "\xB1\xB2\xB3SolveSpaceREVa\n\n\n";
constexpr SlvsHandle kReferences = 1;  // the group of the three planes
constexpr SlvsHandle kPlanes = 3;

/// The group that has the three planes, and that of the sketch. The sketch may say something twice, as drawings may.
constexpr std::string_view kGroups = R"(Group.h.v=00000001
Group.type=5000
Group.name=#references
Group.color=ff000000
Group.skipFirst=0
Group.predef.swapUV=0
Group.predef.negateU=0
Group.predef.negateV=0
Group.visible=1
Group.suppress=0
Group.relaxConstraints=0
Group.allowRedundant=0
Group.allDimsReference=0
Group.scale=1.00000000000000000000
Group.remap={
}
AddGroup

Group.h.v=00000002
Group.type=5001
Group.order=1
Group.name=sketch-in-plane
Group.activeWorkplane.v=80020000
Group.color=ff000000
Group.subtype=6000
Group.skipFirst=0
Group.predef.q.w=1.00000000000000000000
Group.predef.origin.v=00010001
Group.predef.swapUV=0
Group.predef.negateU=0
Group.predef.negateV=0
Group.visible=1
Group.suppress=0
Group.relaxConstraints=0
Group.allowRedundant=1
Group.allDimsReference=0
Group.scale=1.00000000000000000000
Group.remap={
}
AddGroup

)";
constexpr double kTurns[kPlanes][4] = {{1.0, 0.0, 0.0, 0.0}, {0.5, 0.5, 0.5, 0.5}, {0.5, -0.5, -0.5, -0.5}};

SlvsEntityKind entityOf(SlvsRequestKind kind) {
    switch (kind) {
        case SlvsRequestKind::line:
            return SlvsEntityKind::line;
        case SlvsRequestKind::cubic:
            return SlvsEntityKind::cubic;
        case SlvsRequestKind::closedCubic:
            return SlvsEntityKind::closedCubic;
        case SlvsRequestKind::circle:
            return SlvsEntityKind::circle;
        case SlvsRequestKind::arc:
            return SlvsEntityKind::arc;
        case SlvsRequestKind::workplane:
        case SlvsRequestKind::point:
        case SlvsRequestKind::text:
        case SlvsRequestKind::image:
            break;
    }
    return SlvsEntityKind::point2d;
}

bool hasNormal(SlvsRequestKind kind) {
    return kind == SlvsRequestKind::circle || kind == SlvsRequestKind::arc;
}
bool hasRadius(SlvsRequestKind kind) {
    return kind == SlvsRequestKind::circle;
}
bool isPoint(SlvsRequestKind kind) {
    return kind == SlvsRequestKind::point;
}

class SlvsTextWriter {
public:
    std::string write(const SlvsSketchRecords& sketch) {
        m_text = kHeader;
        m_text += kGroups;
        addParams(sketch);
        addRequests(sketch);
        addEntities(sketch);
        for (const SlvsConstraint& constraint : sketch.constraints)
            addConstraint(constraint);
        return std::move(m_text);
    }

private:
    // As the program does it, values of 0 are left out, those of flags are not.
    void key(std::string_view name) {
        m_text += name;
        m_text += '=';
    }
    void handle(std::string_view name, SlvsHandle value) {
        if (value == 0)
            return;
        key(name);
        char digits[9] = {};
        const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), value, 16);
        m_text.append(static_cast<std::size_t>(std::begin(digits) + 8 - end), '0');
        m_text.append(std::begin(digits), end);
        m_text += '\n';
    }
    void integer(std::string_view name, int value) {
        if (value == 0)
            return;
        key(name);
        m_text += std::to_string(value) + '\n';
    }
    void flag(std::string_view name, bool value) {
        key(name);
        m_text += value ? "1\n" : "0\n";
    }
    /// With 20 decimals, as the program writes it; a number that these do not hold in full as short as it can be.
    void number(std::string_view name, double value) {
        if (value == 0.0)
            return;
        key(name);
        char digits[400] = {};  // the largest number has 309 digits before its point
        auto written = std::to_chars(std::begin(digits), std::end(digits), value, std::chars_format::fixed, 20);
        double readBack = 0.0;
        std::from_chars(std::begin(digits), written.ptr, readBack);
        if (readBack != value)
            written = std::to_chars(std::begin(digits), std::end(digits), value);
        m_text.append(std::begin(digits), written.ptr);
        m_text += '\n';
    }
    void end(std::string_view kind) {
        m_text += "Add";
        m_text += kind;
        m_text += "\n\n";
    }

    void addParam(SlvsHandle param, double value) {
        handle("Param.h.v.", param);  // with the dot at its end
        number("Param.val", value);
        end("Param");
    }

    static SlvsHandle handleOf(std::size_t request) {
        return SlvsSketchRecords::kFirstRequest + static_cast<SlvsHandle>(request);
    }

    void addParams(const SlvsSketchRecords& sketch) {
        for (SlvsHandle plane = 1; plane <= kPlanes; ++plane) {
            for (SlvsHandle i = 0; i < 3; ++i)
                addParam(coordinateOf(plane, 0, i), 0.0);
            for (SlvsHandle i = 0; i < 4; ++i)
                addParam(ofRequest(plane, kSlvsNormal + i), kTurns[plane - 1][i]);
        }
        for (std::size_t r = 0; r < sketch.requests.size(); ++r) {
            const SlvsSketchRecords::Request& request = sketch.requests[r];
            for (SlvsHandle i = 0; i < request.points.size(); ++i) {
                addParam(coordinateOf(handleOf(r), i, 0), request.points[i].x);
                addParam(coordinateOf(handleOf(r), i, 1), request.points[i].y);
            }
            if (hasRadius(request.kind))
                addParam(ofRequest(handleOf(r), kSlvsDistance), request.radius);
        }
        for (const SlvsParam& param : sketch.params)
            addParam(param.handle, param.value);
    }

    void addRequest(SlvsHandle request, SlvsRequestKind kind, int extraPoints, SlvsHandle plane, SlvsHandle group,
                    bool isConstruction) {
        handle("Request.h.v", request);
        integer("Request.type", static_cast<int>(kind));
        integer("Request.extraPoints", extraPoints);
        handle("Request.workplane.v", plane);
        handle("Request.group.v", group);
        flag("Request.construction", isConstruction);
        end("Request");
    }

    static int extraPointsOf(const SlvsSketchRecords::Request& request) {
        const auto count = static_cast<int>(request.points.size());
        if (request.kind == SlvsRequestKind::cubic)
            return count - 4;
        return request.kind == SlvsRequestKind::closedCubic ? count - 3 : 0;
    }

    void addRequests(const SlvsSketchRecords& sketch) {
        for (SlvsHandle plane = 1; plane <= kPlanes; ++plane)
            addRequest(plane, SlvsRequestKind::workplane, 0, 0, kReferences, false);
        for (std::size_t r = 0; r < sketch.requests.size(); ++r)
            addRequest(handleOf(r), sketch.requests[r].kind, extraPointsOf(sketch.requests[r]),
                       SlvsSketchRecords::kPlane, SlvsSketchRecords::kGroup, sketch.requests[r].isConstruction);
    }

    void beginEntity(SlvsHandle entity, SlvsEntityKind kind, bool isConstruction) {
        handle("Entity.h.v", entity);
        integer("Entity.type", static_cast<int>(kind));
        flag("Entity.construction", isConstruction);
    }
    void endEntity() {
        flag("Entity.actVisible", true);
        end("Entity");
    }
    void turn(const double (&quaternion)[4]) {
        number("Entity.actNormal.w", quaternion[0]);
        number("Entity.actNormal.vx", quaternion[1]);
        number("Entity.actNormal.vy", quaternion[2]);
        number("Entity.actNormal.vz", quaternion[3]);
    }

    /// A plane with its origin and its normal, which the program makes of a request or of a group.
    void addPlane(SlvsHandle plane, SlvsHandle origin, SlvsHandle normal, bool isCopy, const double (&quaternion)[4]) {
        beginEntity(plane, SlvsEntityKind::workplane, false);
        handle("Entity.point[0].v", origin);
        handle("Entity.normal.v", normal);
        endEntity();
        const auto addOrigin = [&] {
            beginEntity(origin, isCopy ? SlvsEntityKind::pointCopy : SlvsEntityKind::point3d, true);
            endEntity();
        };
        if (!isCopy)  // entities stand in the order of their handles
            addOrigin();
        beginEntity(normal, isCopy ? SlvsEntityKind::normalCopy : SlvsEntityKind::normal3d, false);
        handle("Entity.point[0].v", origin);
        turn(quaternion);
        endEntity();
        if (isCopy)
            addOrigin();
    }

    void addEntities(const SlvsSketchRecords& sketch) {
        for (SlvsHandle plane = 1; plane <= kPlanes; ++plane)
            addPlane(ofRequest(plane, 0), ofRequest(plane, 1), ofRequest(plane, kSlvsNormal), false, kTurns[plane - 1]);
        for (std::size_t r = 0; r < sketch.requests.size(); ++r)
            addEntitiesOf(handleOf(r), sketch.requests[r]);
        addPlane(SlvsSketchRecords::kPlane, SlvsSketchRecords::kOrigin, ofGroup(SlvsSketchRecords::kGroup, 1), true,
                 kTurns[0]);
    }

    void addPoint(SlvsHandle entity, Vec2 at, bool isConstruction) {
        beginEntity(entity, SlvsEntityKind::point2d, isConstruction);
        handle("Entity.workplane.v", SlvsSketchRecords::kPlane);
        number("Entity.actPoint.x", at.x);
        number("Entity.actPoint.y", at.y);
        endEntity();
    }

    void addEntitiesOf(SlvsHandle request, const SlvsSketchRecords::Request& from) {
        const bool isCurve = !isPoint(from.kind);
        if (isCurve)
            addCurve(request, from);
        for (SlvsHandle i = 0; i < from.points.size(); ++i)
            addPoint(ofRequest(request, i + (isCurve ? 1 : 0)), from.points[i], from.isConstruction);
        if (hasNormal(from.kind)) {
            beginEntity(ofRequest(request, kSlvsNormal), SlvsEntityKind::normal2d, from.isConstruction);
            handle("Entity.point[0].v", ofRequest(request, 1));
            handle("Entity.workplane.v", SlvsSketchRecords::kPlane);
            turn(kTurns[0]);
            endEntity();
        }
        if (hasRadius(from.kind)) {
            beginEntity(ofRequest(request, kSlvsDistance), SlvsEntityKind::distance, false);
            handle("Entity.workplane.v", SlvsSketchRecords::kPlane);
            number("Entity.actDistance", from.radius);
            endEntity();
        }
    }

    void addCurve(SlvsHandle request, const SlvsSketchRecords::Request& from) {
        beginEntity(ofRequest(request, 0), entityOf(from.kind), from.isConstruction);
        for (SlvsHandle i = 0; i < from.points.size(); ++i)
            handle("Entity.point[" + std::to_string(i) + "].v", ofRequest(request, i + 1));
        integer("Entity.extraPoints", extraPointsOf(from));
        if (hasNormal(from.kind))
            handle("Entity.normal.v", ofRequest(request, kSlvsNormal));
        if (hasRadius(from.kind))
            handle("Entity.distance.v", ofRequest(request, kSlvsDistance));
        handle("Entity.workplane.v", SlvsSketchRecords::kPlane);
        endEntity();
    }

    void addConstraint(const SlvsConstraint& constraint) {
        handle("Constraint.h.v", constraint.handle);
        integer("Constraint.type", constraint.type);
        handle("Constraint.group.v", constraint.group);
        handle("Constraint.workplane.v", constraint.plane);
        number("Constraint.valA", constraint.value);
        handle("Constraint.valP.v", constraint.param);
        handle("Constraint.ptA.v", constraint.pointA);
        handle("Constraint.ptB.v", constraint.pointB);
        handle("Constraint.entityA.v", constraint.entityA);
        handle("Constraint.entityB.v", constraint.entityB);
        flag("Constraint.other", constraint.other);
        flag("Constraint.other2", constraint.other2);
        flag("Constraint.reference", constraint.isReference);
        end("Constraint");
    }

    std::string m_text;
};

}  // namespace

std::string slvsTextOf(const SlvsSketchRecords& sketch) {
    return SlvsTextWriter().write(sketch);
}

}  // namespace holdfast::formats
