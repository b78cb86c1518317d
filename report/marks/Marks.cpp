#include "report/marks/Marks.h"

#include "document/Names.h"
#include "report/page/Wording.h"
#include "report/picture/Gaps.h"
#include "report/picture/PlacePoint.h"

namespace holdfast::report {

namespace {

/// A reference of a constraint whose entity was found.
struct Ref {
    const Shape* shape = nullptr;
    Place place;

    Spot spot() const { return spotOf(*shape, place); }
    Vec2 point() const { return spot().point; }
    /// A place that names a point counts as a point of its own.
    Shape curve() const { return isPointLike() ? Shape(PointShape{point()}) : curveAt(*shape, place); }
    bool isPointLike() const { return isPoint(*shape, place); }
};

std::optional<LineShape> asLine(const Shape& curve) {
    if (const auto* line = std::get_if<LineShape>(&curve))
        return *line;
    if (const auto* line = std::get_if<XlineShape>(&curve))
        return LineShape{line->point, line->point + line->direction};
    if (const auto* ray = std::get_if<RayShape>(&curve))
        return LineShape{ray->point, ray->point + ray->direction};
    return std::nullopt;
}

/// Where two unbounded lines meet.
std::optional<Vec2> crossing(const LineShape& one, const LineShape& other) {
    const Vec2 along = one.end - one.start, across = other.end - other.start;
    const double turn = cross(along, across);
    if (std::fabs(turn) <= 1e-9 * norm(along) * norm(across))
        return std::nullopt;
    return one.start + along * (cross(other.start - one.start, across) / turn);
}

Measured measuredBetween(const Ref& one, const Ref& other) {
    const Gap gap = gapBetween(one.curve(), other.curve());
    return {gap.from, gap.to, unit(gap.to - gap.from)};
}

class MarkMaker {
public:
    MarkMaker(const Constraint& constraint, std::vector<Ref> refs, const Frame& frame)
        : m_constraint(constraint), m_refs(std::move(refs)), m_frame(frame) {}

    std::vector<Mark> marks() const {
        if (m_refs.empty())
            return {};
        if (isDimension(m_constraint.type))
            return {dimension()};
        return geometric();
    }

private:
    Mark at(Vec2 anchor, Vec2 outward) const {
        Mark mark;
        mark.type = m_constraint.type;
        mark.active = m_constraint.active;
        mark.anchor = anchor;
        mark.outward = unitOr(outward, {0.0, 1.0});
        return mark;
    }
    Mark at(const Spot& spot) const { return at(spot.point, leftOf(spot.tangent)); }

    std::vector<Mark> geometric() const {
        switch (traitsOf(m_constraint.type).mark) {
            case ConstraintMark::atEach:
                return atEach();
            case ConstraintMark::between:
                return {m_refs.size() > 1 ? between(m_refs[0].point(), m_refs[1].point()) : at(m_refs[0].spot())};
            case ConstraintMark::atCorner:
                return crossed();
            case ConstraintMark::atTouch:
                return {touching()};
            default:
                return {at(m_refs[0].spot())};
        }
    }

    Mark between(Vec2 one, Vec2 other) const { return at(midway(one, other), leftOf(other - one)); }

    std::vector<Mark> atEach() const {
        std::vector<Mark> marks;
        for (const Ref& ref : m_refs)
            marks.push_back(at(ref.spot()));
        return marks;
    }

    const Ref* namedPoint() const {
        for (const Ref& ref : m_refs)
            if (ref.isPointLike())
                return &ref;
        return nullptr;
    }

    /// At the corner where the lines meet, if that is near both; else at each line.
    std::vector<Mark> crossed() const {
        if (const Ref* point = namedPoint())
            return {at(point->spot())};
        if (m_refs.size() < 2)
            return {at(m_refs[0].spot())};
        const auto one = asLine(m_refs[0].curve()), other = asLine(m_refs[1].curve());
        if (one && other) {
            const auto corner = crossing(*one, *other);
            if (corner && isNear(*corner, *m_refs[0].shape) && isNear(*corner, *m_refs[1].shape)) {
                const Vec2 inside = unit(m_refs[0].point() - *corner) + unit(m_refs[1].point() - *corner);
                return {at(*corner, inside)};
            }
        }
        return atEach();
    }

    bool isNear(Vec2 point, const Shape& shape) const {
        if (!m_frame.window.contains(point))
            return false;
        const bool unbounded = std::holds_alternative<XlineShape>(shape) || std::holds_alternative<RayShape>(shape);
        return unbounded || boundsOf(shape).grownBy(12.0 / m_frame.scale).contains(point);
    }

    Mark touching() const {
        if (const Ref* point = namedPoint())
            return at(point->spot());
        if (m_refs.size() < 2)
            return at(m_refs[0].spot());
        const Measured touch = measuredBetween(m_refs[0], m_refs[1]);
        return between(touch.from, touch.to);
    }

    Mark dimension() const {
        Mark mark = traitsOf(m_constraint.type).mark == ConstraintMark::opening ? angle() : lengthMark();
        mark.text = labelText(m_constraint);
        if (mark.text.empty())
            mark.text.push_back('?');
        return mark;
    }

    Mark lengthMark() const {
        const std::optional<Measured> measured = measuredLength();
        if (!measured)
            return at(m_refs[0].spot().point, radial(m_refs[0]));
        Mark mark = between(measured->from, measured->to);
        mark.measured = measured;
        mark.outward = leftOf(measured->along);
        return mark;
    }

    /// Away from the centre of a round curve, so that its radius stands outside.
    static Vec2 radial(const Ref& ref) {
        const Spot spot = ref.spot();
        const Spot centre = spotOf(ref.curve(), {.entity = {}, .kind = PlaceKind::centre, .index = 0});
        return distance(spot.point, centre.point) > 0.0 ? spot.point - centre.point : leftOf(spot.tangent);
    }

    std::optional<Measured> measuredLength() const {
        const ConstraintTraits& traits = traitsOf(m_constraint.type);
        if (traits.mark == ConstraintMark::radial)
            return std::nullopt;
        const bool isAlongAxis = traits.coordinate >= 0;
        std::optional<Measured> measured;
        if (m_refs.size() > 1)
            measured = measuredBetween(m_refs[0], m_refs[1]);
        else if (const auto line = asLine(m_refs[0].curve()))
            measured = Measured{line->start, line->end, unit(line->end - line->start)};
        else if (m_refs[0].isPointLike() && isAlongAxis)
            measured = Measured{{}, m_refs[0].point(), {}};
        if (measured && isAlongAxis)
            measured->along = traits.coordinate == 0 ? Vec2{1.0, 0.0} : Vec2{0.0, 1.0};
        return measured;
    }

    Mark angle() const {
        const std::optional<LineShape> one = directed(0), other = m_refs.size() == 2 ? directed(1) : std::nullopt;
        const double value = m_constraint.value.value_or(0.0);
        if (m_refs.size() == 1 && one)
            return opened(one->start, 0.0, value);
        if (!one || !other)
            return at((m_refs.size() > 2 ? m_refs[2] : m_refs[0]).spot());
        const auto apex = crossing(*one, *other);
        if (!apex || !m_frame.window.contains(*apex))
            return at(visibleRef().spot());
        Vec2 first = one->end - one->start;
        const Vec2 second = other->end - other->start;
        // Both lines may run towards the apex: the same angle lies on the side where they are drawn.
        const bool behind = dot(first, midway(one->start, one->end) - *apex) < 0.0 &&
                            dot(second, midway(other->start, other->end) - *apex) < 0.0;
        if (behind)
            first = first * -1.0;
        return opened(*apex, std::atan2(first.y, first.x), value);
    }

    /// Axes have their middle where nobody looks.
    const Ref& visibleRef() const {
        for (const Ref& ref : m_refs)
            if (m_frame.window.contains(ref.point()))
                return ref;
        return m_refs[0];
    }

    /// The line of a reference, run as the constraint takes it: with its end named, from end to start.
    std::optional<LineShape> directed(std::size_t index) const {
        const Place& place = m_refs[index].place;
        Place whole = place;
        if (place.kind == PlaceKind::start || place.kind == PlaceKind::end)
            whole.kind = PlaceKind::whole;
        const auto line = asLine(curveAt(*m_refs[index].shape, whole));
        return line && place.kind == PlaceKind::end ? LineShape{line->end, line->start} : line;
    }

    Mark opened(Vec2 apex, double startAngle, double value) const {
        const double turn = std::abs(value) < 2 * kPi ? value : std::remainder(value, 2 * kPi);
        Mark mark = at(apex, polar(1.0, startAngle + turn / 2));
        mark.opening = Opening{startAngle, startAngle + turn};
        return mark;
    }

    const Constraint& m_constraint;
    std::vector<Ref> m_refs;
    const Frame& m_frame;
};

std::vector<Ref> refsOf(const Constraint& constraint, const EntityIndex& entities) {
    std::vector<Ref> refs;
    for (const Place& place : constraint.refs)
        if (const Entity* entity = entities.find(place.entity))
            refs.push_back({&entity->shape, place});
    return refs;
}

/// Signs of one kind and tone closer than this, in picture units, become one.
constexpr double kSameSpot = 3.0;

class MarkList {
public:
    explicit MarkList(const Frame& frame) : m_frame(frame) {}

    void add(Mark mark, const std::string& constraint) {
        const Vec2 at = m_frame.toPicture(mark.anchor);
        if (!isFinite(at) || std::fabs(at.x) > 1e6 || std::fabs(at.y) > 1e6)
            return;
        const auto [entry, isNew] = m_spots.try_emplace(keyOf(mark, at), m_marks.size());
        if (isNew)
            m_marks.push_back(std::move(mark));
        std::vector<std::string>& ids = m_marks[entry->second].constraints;
        if (ids.empty() || ids.back() != constraint)
            ids.push_back(constraint);
    }
    std::vector<Mark> marks() && { return std::move(m_marks); }

private:
    static std::string keyOf(const Mark& mark, Vec2 at) {
        std::string key = mark.text;
        for (const double part : {static_cast<double>(mark.type), static_cast<double>(mark.tone),
                                  mark.active ? 1.0 : 0.0, at.x / kSameSpot, at.y / kSameSpot})
            key += ' ' + std::to_string(std::llround(part));
        return key;
    }

    const Frame& m_frame;
    std::vector<Mark> m_marks;
    std::unordered_map<std::string, std::size_t> m_spots;
};

}  // namespace

bool marksAPoint(ConstraintType type) {
    return traitsOf(type).mark == ConstraintMark::onPoint;
}

std::vector<Mark> marksOf(const Document& document, const EntityIndex& entities, const Frame& frame,
                          const std::unordered_map<std::string, MarkTone>& tones) {
    std::unordered_map<std::string, const Constraint*> byId;
    for (const Constraint& constraint : document.constraints)
        byId.emplace(constraint.id, &constraint);
    MarkList list(frame);
    for (const Constraint& constraint : document.constraints) {
        const auto noted = tones.find(constraint.id);
        const MarkTone tone = noted == tones.end() ? MarkTone::kept : noted->second;
        if (constraint.type == ConstraintType::internal && tone == MarkTone::kept)
            continue;
        std::vector<Ref> refs = refsOf(constraint, entities);
        for (const std::string& member : constraint.members)
            if (const auto found = byId.find(member); refs.empty() && found != byId.end())
                refs = refsOf(*found->second, entities);
        for (Mark& mark : MarkMaker(constraint, std::move(refs), frame).marks()) {
            mark.tone = tone;
            list.add(std::move(mark), constraint.id);
        }
    }
    return std::move(list).marks();
}

std::vector<Mark> namesOf(const Document& document) {
    std::vector<Mark> names;
    for (const Entity& entity : document.entities) {
        const Spot spot = spotOf(entity.shape, {entity.id});
        Mark name;
        name.anchor = spot.point;
        name.outward = leftOf(spot.tangent);
        name.text = name.entity = entity.id;
        names.push_back(std::move(name));
    }
    for (const BlockReference& reference : document.references) {
        Mark name;
        name.anchor = reference.placement.at;
        name.outward = {0.0, 1.0};
        name.text = name.entity = reference.id;
        names.push_back(std::move(name));
    }
    return names;
}

}  // namespace holdfast::report
