#include "formats/slvs/SlvsReader.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_map>

#include "document/EntityIndex.h"
#include "document/Names.h"
#include "document/checks/ConstraintCheck.h"
#include "document/checks/ShapeCheck.h"
#include "document/text/DrawingError.h"
#include "document/text/Suggest.h"
#include "formats/slvs/SlvsConstraintReader.h"
#include "formats/slvs/SlvsPlane.h"
#include "formats/slvs/SlvsRecords.h"
#include "formats/slvs/SlvsSplines.h"
#include "geometry/Angles.h"

namespace holdfast::formats {
namespace {

using Request = SlvsRequestKind;

constexpr const char* kOrigin = "origin";
constexpr std::size_t kEntityDigits = 8;  // of handles of entities and parameters, which the program shows in full

bool isSketch(const SlvsGroup& group) {
    return group.type == static_cast<int>(SlvsGroupKind::plane);
}

SlvsSketchName nameOf(const SlvsGroup& group) {
    return {slvsName('g', group.handle), std::string(group.name)};
}

std::string spokenRequest(int kind) {
    switch (static_cast<Request>(kind)) {
        case Request::workplane:
            return "workplane";
        case Request::point:
            return "point";
        case Request::line:
            return "line";
        case Request::cubic:
        case Request::closedCubic:
            return "cubic";
        case Request::circle:
            return "circle";
        case Request::arc:
            return "arc";
        case Request::text:
            return "text";
        case Request::image:
            return "image";
    }
    return "kind " + std::to_string(kind);
}

const SlvsGroup& chosen(const SlvsFile& records, const std::string& sketch, const std::string& file) {
    std::vector<const SlvsGroup*> sketches;
    for (const SlvsGroup& group : records.groups)
        if (isSketch(group))
            sketches.push_back(&group);
    if (sketch.empty() && sketches.size() == 1)
        return *sketches.front();
    std::vector<const SlvsGroup*> labelled;
    std::vector<std::string> names;
    for (const SlvsGroup* group : sketches) {
        const SlvsSketchName name = nameOf(*group);
        if (name.name == sketch)
            return *group;
        if (name.label == sketch || name.name + "-" + name.label == sketch)
            labelled.push_back(group);
        names.push_back(name.name);
    }
    if (labelled.size() == 1)
        return *labelled.front();
    const std::vector<std::string_view> views(names.begin(), names.end());
    const std::string found =
        sketch.empty() ? "a file of " + std::to_string(names.size()) + " sketches" : "the sketch " + inQuotes(sketch);
    throw DrawingError(file, {"", found, names.empty() ? "a file with a sketch in a plane" : oneOf(views)});
}

/// One group's requests and constraints as they become a drawing.
class SlvsSketch final : public SlvsPlaces {
public:
    SlvsSketch(const SlvsFile& records, const SlvsGroup& group, const SlvsPlane& plane, const std::string& file)
        : m_records(records), m_plane(plane), m_workplane(planeOf(group)), m_group(group.handle), m_file(file) {
        m_out.document.plane = plane.inWorld();
        readEntities();
        readConstraints();
    }

    static SlvsHandle planeOf(const SlvsGroup& group) {
        return group.plane != 0 ? group.plane : ofGroup(group.handle, 0);
    }

    SlvsDrawing take() { return std::move(m_out); }

    std::optional<Place> place(SlvsHandle entity) override {
        const auto own = m_own.find(entity >> 16U);
        if (own == m_own.end())
            return outside(entity);
        return placeOn(*own->second, m_out.document.entities[m_places.at(slvsName('r', entity >> 16U))],
                       entity & 0xffffU);
    }
    const Shape& shapeOf(const std::string& entity) const override {
        return m_out.document.entities[m_places.at(entity)].shape;
    }
    Place axis(bool isX) override {
        return reference(isX ? "x_axis" : "y_axis", XlineShape{{}, isX ? Vec2{1.0, 0.0} : Vec2{0.0, 1.0}});
    }
    Place origin() override { return reference(kOrigin, PointShape{}); }
    const SlvsFile& file() const override { return m_records; }
    const SlvsPlane& plane() const override { return m_plane; }
    SlvsHandle workplane() const override { return m_workplane; }

private:
    void leaveOut(const std::string& name, const std::string& why) {
        m_out.notUnderstood.push_back(name + " (" + why + ")");
    }

    void add(Entity entity) {
        m_places.emplace(entity.id, m_out.document.entities.size());
        m_out.document.entities.push_back(std::move(entity));
    }

    Place reference(const std::string& name, Shape shape) {
        if (!m_places.contains(name))
            add({.id = name, .shape = std::move(shape), .construction = true, .fixed = true});
        return {.entity = name};
    }

    void readEntities() {
        for (const SlvsRequest& request : m_records.requests) {
            if (request.group != m_group)
                continue;
            const std::string name = slvsName('r', request.handle);
            const std::string kind = spokenRequest(request.type);
            if (request.plane != m_workplane) {
                leaveOut(name, kind + " outside the sketch's plane");
                continue;
            }
            std::optional<Shape> shape = shapeIn(request);
            if (!shape) {
                leaveOut(name, kind);
            } else if (const std::optional<Fault> fault = faultIn(*shape)) {
                leaveOut(name, kind + ": " + fault->place + (fault->place.empty() ? "" : " ") + fault->found);
            } else {
                add({.id = name, .shape = std::move(*shape), .construction = request.isConstruction});
                m_own.emplace(request.handle, &request);
            }
        }
    }

    double number(const SlvsRequest& request, SlvsHandle handle) const {
        const SlvsParam* param = m_records.param(handle);
        if (param == nullptr)
            throw DrawingError(m_file, {"",
                                        slvsName('r', request.handle) + " without its parameter " +
                                            slvsName('p', handle, kEntityDigits).substr(1),
                                        "it; the file was cut short, or is of another version"});
        return param->value;
    }

    Vec2 point(const SlvsRequest& request, SlvsHandle number) const {
        return {this->number(request, coordinateOf(request.handle, number, 0)),
                this->number(request, coordinateOf(request.handle, number, 1))};
    }

    std::optional<Shape> shapeIn(const SlvsRequest& request) const {
        switch (static_cast<Request>(request.type)) {
            case Request::point:
                return PointShape{point(request, 0)};
            case Request::line:
                return LineShape{point(request, 0), point(request, 1)};
            case Request::circle:
                return CircleShape{point(request, 0), number(request, ofRequest(request.handle, kSlvsDistance))};
            case Request::arc:
                return arcIn(request);
            case Request::cubic:
            case Request::closedCubic:
                return cubicIn(request);
            case Request::workplane:
            case Request::text:
            case Request::image:
                break;
        }
        return std::nullopt;
    }

    Shape arcIn(const SlvsRequest& request) const {
        constexpr double whole = 1e-6;  // ends that are nearer than this angle are those of a whole turn
        const Vec2 centre = point(request, 0), start = point(request, 1), end = point(request, 2);
        const Vec2 from = start - centre, to = end - centre;
        const double startAngle = std::atan2(from.y, from.x);
        double sweep = std::atan2(to.y, to.x) - startAngle;
        while (sweep < whole)
            sweep += kTurn;
        return ArcShape{centre, norm(from), startAngle, startAngle + std::min(sweep, kTurn)};
    }

    static bool isClosed(const SlvsRequest& request) {
        return static_cast<Request>(request.type) == Request::closedCubic;
    }
    std::optional<Shape> cubicIn(const SlvsRequest& request) const {
        if (request.extraPoints < 0 || request.extraPoints > static_cast<int>(kSlvsMostExtraPoints))
            return std::nullopt;
        const std::size_t count =
            static_cast<std::size_t>(request.extraPoints) + (isClosed(request) ? kSlvsClosedPoints : kSlvsCubicPoints);
        std::vector<Vec2> points;
        for (SlvsHandle i = 0; i < count; ++i)
            points.push_back(point(request, i));
        return splineThrough(points, isClosed(request));
    }

    static std::optional<Place> placeOn(const SlvsRequest& request, const Entity& entity, SlvsHandle number) {
        Place place{.entity = entity.id};
        const auto kind = static_cast<Request>(request.type);
        if (number == 0)
            return place;
        if (kind == Request::circle || kind == Request::arc || kind == Request::line) {
            constexpr PlaceKind points[] = {PlaceKind::centre, PlaceKind::start, PlaceKind::end};
            const SlvsHandle point = number - (kind == Request::line ? 0 : 1);
            if (point >= std::size(points) || (kind == Request::circle && point > 0))
                return std::nullopt;
            place.kind = points[point];
            return place;
        }
        const auto* spline = std::get_if<SplineShape>(&entity.shape);
        if (spline == nullptr || !isSlvsControl(*spline, number - 1))
            return std::nullopt;
        const bool isFirst = number == 1, isLast = number == spline->control.size();
        place.kind = isFirst ? PlaceKind::start : isLast ? PlaceKind::end : PlaceKind::control;
        place.index = isFirst || isLast ? 0 : static_cast<int>(number) - 1;
        return place;
    }

    static bool isPoint(const SlvsEntity& entity) {
        return entity.type >= static_cast<int>(SlvsEntityKind::point3d) &&
               entity.type < static_cast<int>(SlvsEntityKind::normal3d);
    }

    /// What other groups have drawn stays where it is.
    std::optional<Place> outside(SlvsHandle handle) {
        const SlvsEntity* entity = m_records.entity(handle);
        if (entity == nullptr)
            return std::nullopt;
        const std::string name = slvsName('e', handle, kEntityDigits);
        if (isPoint(*entity)) {
            const Vec2 at = m_plane.seen(entity->at);
            return at == Vec2{} ? origin() : reference(name, PointShape{at});
        }
        const SlvsEntity *start = m_records.entity(entity->points[0]), *end = m_records.entity(entity->points[1]);
        if (entity->type != static_cast<int>(SlvsEntityKind::line) || start == nullptr || end == nullptr)
            return std::nullopt;
        const LineShape line{m_plane.seen(start->at), m_plane.seen(end->at)};
        return faultIn(Shape(line)) ? std::nullopt : std::optional(reference(name, line));
    }

    void readConstraints() {
        std::vector<std::pair<const SlvsConstraint*, std::optional<Constraint>>> found;
        for (const SlvsConstraint& record : m_records.constraints)
            if (record.group == m_group)
                found.emplace_back(&record, constraintIn(record, *this));
        const EntityIndex entities(m_out.document);
        for (auto& [record, constraint] : found) {
            const std::string name = slvsName('c', record->handle);
            if (!constraint || faultIn(*constraint, entities)) {
                leaveOut(name, spokenSlvsKind(record->type));
                continue;
            }
            constraint->id = name;
            m_out.document.constraints.push_back(std::move(*constraint));
        }
    }

    const SlvsFile& m_records;
    const SlvsPlane& m_plane;
    SlvsHandle m_workplane, m_group;
    const std::string& m_file;
    SlvsDrawing m_out;
    std::unordered_map<SlvsHandle, const SlvsRequest*> m_own;  // that the drawing has
    std::unordered_map<std::string, std::size_t> m_places;     // of entities, by name
};

}  // namespace

std::vector<SlvsSketchName> sketchesInSlvs(std::string_view text, const std::string& file) {
    std::vector<SlvsSketchName> sketches;
    for (const SlvsGroup& group : slvsRecords(text, file).groups)
        if (isSketch(group))
            sketches.push_back(nameOf(group));
    return sketches;
}

SlvsDrawing readSlvs(std::string_view text, const std::string& sketch, const std::string& file) {
    const SlvsFile records = slvsRecords(text, file);
    const SlvsGroup& group = chosen(records, sketch, file);
    const std::optional<SlvsPlane> plane = SlvsPlane::of(records, SlvsSketch::planeOf(group));
    if (!plane)
        throw DrawingError(file, {"", nameOf(group).name + " without the plane that it is drawn in",
                                  "the plane's entities; SolveSpace writes them when it saves the file again"});
    return SlvsSketch(records, group, *plane, file).take();
}

}  // namespace holdfast::formats
