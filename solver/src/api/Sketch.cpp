#include <holdfast/solver/Sketch.h>

#include <algorithm>
#include <cassert>
#include <cmath>

#include "solver/src/api/Appending.h"
#include "solver/src/api/EntityChecks.h"

// A sketch as a whole, and its entities.
namespace holdfast::solver {

using detail::at;

namespace {

/// add: appends the entity, whose name it is given, to the data.
template <class Add>
Result<EntityId> append(SketchImpl& sketch, std::optional<Error> fault, Add add) {
    if (fault)
        return *std::move(fault);
    Appending appending(sketch);
    const EntityId id(static_cast<int>(sketch.entityOf.size()));
    try {
        const int number = add(sketch.data, toString(id));
        sketch.idOfEntity.push_back(id.number());
        sketch.entityOf.push_back(number);
    } catch (const std::runtime_error& e) {
        return Error{withoutName(e.what()), "entity", "see the description of the entity"};
    }
    appending.finish();
    ++sketch.revision;
    return id;
}

}  // namespace

Sketch::Sketch() : m_impl(std::make_unique<Impl>()) {}
Sketch::~Sketch() = default;
Sketch::Sketch(const Sketch& other) : m_impl(std::make_unique<Impl>(*other.m_impl)) {}
Sketch::Sketch(Sketch&& other) noexcept = default;
Sketch& Sketch::operator=(Sketch&& other) noexcept = default;

Sketch& Sketch::operator=(const Sketch& other) {
    if (this != &other)
        m_impl = std::make_unique<Impl>(*other.m_impl);
    return *this;
}

Result<EntityId> Sketch::addPoint(Vec2 position) {
    return append(*m_impl, faultOf(position, 0.0, "point"),
                  [&](detail::SketchData& data, std::string name) { return data.addPoint(std::move(name), position); });
}

Result<EntityId> Sketch::addLine(Vec2 start, Vec2 end) {
    return append(*m_impl, faultOf(geometry::LineShape{start, end}), [&](detail::SketchData& data, std::string name) {
        return data.addLine(std::move(name), start, end);
    });
}

Result<EntityId> Sketch::addRay(Vec2 base, double angle) {
    return append(*m_impl, faultOf(base, angle, "ray"), [&](detail::SketchData& data, std::string name) {
        return data.addRay(std::move(name), base, angle);
    });
}

Result<EntityId> Sketch::addXline(Vec2 base, double angle) {
    return append(*m_impl, faultOf(base, angle, "unbounded line"), [&](detail::SketchData& data, std::string name) {
        return data.addXline(std::move(name), base, angle);
    });
}

Result<EntityId> Sketch::addCircle(Vec2 centre, double radius) {
    return append(
        *m_impl, faultOf(geometry::CircleShape{centre, radius}),
        [&](detail::SketchData& data, std::string name) { return data.addCircle(std::move(name), centre, radius); });
}

Result<EntityId> Sketch::addArc(Vec2 centre, double radius, double startAngle, double endAngle) {
    const geometry::ArcShape arc{centre, radius, startAngle, endAngle};
    return append(*m_impl, faultOf(arc),
                  [&](detail::SketchData& data, std::string name) { return data.addArc(std::move(name), arc); });
}

Result<EntityId> Sketch::addEllipse(Vec2 centre, Vec2 majorAxis, double ratio) {
    return append(*m_impl, faultOf(geometry::EllipticalArcShape{centre, majorAxis, ratio, 0.0, 1.0}, "ellipse"),
                  [&](detail::SketchData& data, std::string name) {
                      return data.addEllipse(std::move(name), {centre, majorAxis, ratio});
                  });
}

Result<EntityId> Sketch::addEllipticalArc(Vec2 centre, Vec2 majorAxis, double ratio, double startAngle,
                                          double endAngle) {
    const geometry::EllipticalArcShape arc{centre, majorAxis, ratio, startAngle, endAngle};
    return append(*m_impl, faultOf(arc, "elliptical arc"), [&](detail::SketchData& data, std::string name) {
        return data.addEllipticalArc(std::move(name), arc);
    });
}

Result<EntityId> Sketch::addSpline(const SplineData& spline) {
    return append(*m_impl, faultOf(spline), [&](detail::SketchData& data, std::string name) {
        return data.addSpline(std::move(name), shapeOf(spline));
    });
}

Result<EntityId> Sketch::addPolyline(const PolylineData& polyline) {
    return append(*m_impl, faultOf(polyline), [&](detail::SketchData& data, std::string name) {
        return data.addPolyline(std::move(name), shapeOf(polyline));
    });
}

Result<EntityId> Sketch::addText(Vec2 position, double angle, double height) {
    auto fault = faultOf(position, angle, "text");
    if (!fault && !(height > 0.0 && std::isfinite(height)))
        fault = Error{"its height is not above 0", "text", "give a finite height above 0"};
    return append(*m_impl, std::move(fault), [&](detail::SketchData& data, std::string name) {
        return data.addText(std::move(name), position, angle, height);
    });
}

Result<std::vector<ConstraintId>> Sketch::remove(EntityId entity) {
    const int number = m_impl->find(entity);
    if (number < 0)
        return noSuch(entity);
    std::vector<char> isGone(m_impl->data.entities.size(), 0), isConstraintGone(m_impl->data.constraints.size(), 0);
    isGone[at(number)] = 1;
    std::vector<ConstraintId> removed;
    for (std::size_t c = 0; c < isConstraintGone.size(); ++c) {
        const auto& refs = m_impl->data.constraints[c].refs;
        if (std::none_of(refs.begin(), refs.end(), [&](const auto& place) { return place.entity == number; }))
            continue;
        isConstraintGone[c] = 1;
        removed.push_back(m_impl->constraintId(static_cast<int>(c)));
    }
    m_impl->removeMarked(isGone, isConstraintGone);
    return removed;
}

Result<Done> Sketch::fix(EntityId entity) {
    const int number = m_impl->find(entity);
    if (number < 0)
        return noSuch(entity);
    m_impl->data.entities[at(number)].fixed = true;
    ++m_impl->revision;
    return Done{};
}

Result<Done> Sketch::unfix(EntityId entity) {
    const int number = m_impl->find(entity);
    if (number < 0)
        return noSuch(entity);
    m_impl->data.entities[at(number)].fixed = false;
    ++m_impl->revision;
    return Done{};
}

bool Sketch::contains(EntityId entity) const {
    return m_impl->find(entity) >= 0;
}

bool Sketch::isFixed(EntityId entity) const {
    const int number = m_impl->find(entity);
    return number >= 0 && m_impl->data.entities[at(number)].fixed;
}

EntityKind Sketch::kindOf(EntityId entity) const {
    static_assert(static_cast<int>(EntityKind::polyline) == static_cast<int>(detail::EntityKind::polyline));
    const int number = m_impl->find(entity);
    assert(number >= 0);
    return static_cast<EntityKind>(m_impl->data.entities[at(number)].kind);
}

std::vector<EntityId> Sketch::entities() const {
    std::vector<EntityId> ids;
    for (const int id : m_impl->idOfEntity)
        ids.emplace_back(id);
    return ids;
}

}  // namespace holdfast::solver
