#include "formats/slvs/SlvsWriter.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "document/Names.h"
#include "document/text/DrawingError.h"
#include "document/text/NumberText.h"
#include "formats/LostFacts.h"
#include "formats/slvs/SlvsConstraintWriter.h"
#include "formats/slvs/SlvsCubics.h"
#include "formats/slvs/SlvsSplines.h"
#include "formats/slvs/SlvsText.h"
#include "geometry/Vec2.h"

namespace holdfast::formats {
namespace {

using Use = SlvsWritten::Use;
using SketchRequest = SlvsSketchRecords::Request;

class SlvsWriter {
public:
    SlvsWriter(const Document& document, double tolerance) : m_document(document), m_tolerance(tolerance) {}

    SlvsOutput write() {
        noteNamed();
        for (const Entity& entity : m_document.entities)
            addEntity(entity);
        addConstraints();
        noteRest();
        return {slvsTextOf(m_sketch), std::move(m_notes)};
    }

private:
    void noteNamed() {
        for (const Constraint& constraint : m_document.constraints)
            for (const Place& place : constraint.refs)
                m_named.insert(place.entity);
    }

    /// What the sketch has anyway: its origin, where something holds on it, and its axes.
    std::optional<Use> ownOf(const Entity& entity) const {
        if (!entity.fixed)
            return std::nullopt;
        const auto* point = std::get_if<PointShape>(&entity.shape);
        if (point != nullptr && point->position == Vec2{} && m_named.contains(entity.id))
            return Use::origin;
        const auto* line = std::get_if<XlineShape>(&entity.shape);
        if (line == nullptr || cross(line->point, line->direction) != 0.0)
            return std::nullopt;
        if (line->direction.y == 0.0 && line->direction.x > 0.0)
            return Use::xAxis;
        if (line->direction.x == 0.0 && line->direction.y > 0.0)
            return Use::yAxis;
        return std::nullopt;
    }

    void add(const Entity& entity, Use use, std::vector<SketchRequest> requests) {
        const std::size_t first = SlvsSketchRecords::kFirstRequest + m_sketch.requests.size();
        const std::size_t last = first + requests.size() - (requests.empty() ? 0 : 1);
        if (last > kSlvsMostRequests)
            throw DrawingError("the drawing", {"", "more than 32764 lines, arcs, circles, points and curves",
                                               "as many as a SolveSpace file can hold"});
        for (SketchRequest& request : requests) {
            request.isConstruction = entity.construction;
            m_points += request.points.size();
            m_sketch.requests.push_back(std::move(request));
        }
        m_handles.add({&entity, use, static_cast<SlvsHandle>(first), static_cast<SlvsHandle>(last)});
    }

    void addEntity(const Entity& entity) {
        if (const std::optional<Use> own = ownOf(entity))
            return add(entity, *own, {});
        if (std::optional<SketchRequest> request = requestOf(entity.shape)) {
            if (entity.fixed)
                m_fixed.push_back(entity.id);
            return add(entity, Use::curve, {std::move(*request)});
        }
        addPieces(entity);
    }

    static std::optional<SketchRequest> requestOf(const Shape& shape) {
        using Kind = SlvsRequestKind;
        if (const auto* line = std::get_if<LineShape>(&shape))
            return SketchRequest{Kind::line, {line->start, line->end}};
        if (const auto* arc = std::get_if<ArcShape>(&shape))
            return SketchRequest{Kind::arc,
                                 {arc->centre, arc->centre + arc->radius * polar(arc->startAngle),
                                  arc->centre + arc->radius * polar(arc->endAngle)}};
        if (const auto* circle = std::get_if<CircleShape>(&shape))
            return SketchRequest{Kind::circle, {circle->centre}, circle->radius};
        if (const auto* point = std::get_if<PointShape>(&shape))
            return SketchRequest{Kind::point, {point->position}};
        if (const auto* spline = std::get_if<SplineShape>(&shape))
            if (std::optional<std::vector<Vec2>> points = slvsPointsOf(*spline))
                return SketchRequest{spline->periodic ? Kind::closedCubic : Kind::cubic, std::move(*points)};
        return std::nullopt;
    }

    void addPieces(const Entity& entity) {
        const CubicPieces cubics = cubicPiecesOf(entity.shape, m_tolerance);
        const std::string what = entity.id + " (" + std::string(typeName(entity.shape)) + ")";
        if (cubics.pieces.empty()) {
            m_leftOut.push_back(what);
            return;
        }
        const std::size_t first = SlvsSketchRecords::kFirstRequest + m_sketch.requests.size();
        std::vector<SketchRequest> requests;
        for (const CubicPiece& piece : cubics.pieces)
            requests.push_back({SlvsRequestKind::cubic, {piece.begin(), piece.end()}});
        const std::size_t count = requests.size();
        add(entity, Use::pieces, std::move(requests));
        for (std::size_t i = 1; i < count; ++i)
            m_joints.emplace_back(static_cast<SlvsHandle>(first + i - 1), static_cast<SlvsHandle>(first + i));
        const auto* spline = std::get_if<SplineShape>(&entity.shape);
        if (std::holds_alternative<EllipseShape>(entity.shape) || (spline != nullptr && spline->periodic))
            m_joints.emplace_back(static_cast<SlvsHandle>(first + count - 1), static_cast<SlvsHandle>(first));
        m_notes.push_back(what + " went out as " + std::to_string(count) + (count == 1 ? " cubic" : " cubics") +
                          (cubics.isExact ? "" : " within " + numberText(m_tolerance) + " " + m_document.lengthUnit));
    }

    void addConstraints() {
        SlvsConstraintWriter writer(m_handles, m_points + 1);
        for (const Constraint& constraint : m_document.constraints)
            writer.noteMeeting(constraint);
        for (const Constraint& constraint : m_document.constraints)
            if (writer.add(constraint))
                noteStricter(constraint);
            else
                m_leftOut.push_back(constraint.id + " (" + std::string(typeName(constraint.type)) +
                                    (constraint.active ? ")" : ", inactive)"));
        writer.joinPieces(m_joints);
        for (const std::string& entity : m_fixed)
            writer.hold({.entity = entity});
        writer.giveTo(m_sketch);
    }

    /// A line that is fixed may still grow along itself.
    void noteStricter(const Constraint& constraint) {
        const bool isWhole = constraint.type == ConstraintType::fixed && constraint.refs[0].kind == PlaceKind::whole;
        if (isWhole && m_handles.curve<LineShape>(constraint.refs[0]) != nullptr)
            m_fixed.push_back(constraint.refs[0].entity);
    }

    void noteRest() {
        const auto list = [](const std::vector<std::string>& names) {
            std::string text;
            for (const std::string& name : names)
                text += (text.empty() ? "" : ", ") + name;
            return text;
        };
        if (!m_leftOut.empty())
            m_notes.push_back("left out, since the form does not have them: " + list(m_leftOut));
        if (!m_fixed.empty())
            m_notes.push_back("fixed; their points are held where they are: " + list(m_fixed));
        const bool hasFormulas = std::any_of(m_document.constraints.begin(), m_document.constraints.end(),
                                             [](const Constraint& constraint) { return !constraint.formula.empty(); });
        if (hasFormulas || !m_document.parameters.empty())
            m_notes.emplace_back("parameters and formulas were left out; dimensions have their values");
        if (m_document.plane)
            m_notes.emplace_back("the plane in space was left out; the sketch is in the xy plane");
        const bool hasNames = std::any_of(m_document.constraints.begin(), m_document.constraints.end(),
                                          [](const Constraint& constraint) { return !constraint.name.empty(); });
        if (hasNames)
            m_notes.emplace_back("names of constraints were left out");
        if (std::string lost = lostFacts(m_document, {Fact::construction, Fact::fixedEntities, Fact::plane});
            !lost.empty())
            m_notes.push_back(std::move(lost));
        if (m_document.lengthUnit != "mm")
            m_notes.push_back("numbers are in the unit \"" + m_document.lengthUnit + "\", where the program has mm");
    }

    const Document& m_document;
    double m_tolerance;
    std::unordered_set<std::string> m_named;  // entities that constraints hold on
    SlvsSketchRecords m_sketch;
    SlvsHandles m_handles;
    std::size_t m_points = 0;
    std::vector<std::pair<SlvsHandle, SlvsHandle>> m_joints;  // pieces of curves, and those that begin where they end
    std::vector<std::string> m_leftOut, m_fixed, m_notes;
};

}  // namespace

SlvsOutput slvsText(const Document& document, double tolerance) {
    return SlvsWriter(document, tolerance).write();
}

}  // namespace holdfast::formats
