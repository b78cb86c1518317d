#pragma once

#include <cstddef>
#include <vector>

#include "solver/src/api/SketchImpl.h"

namespace holdfast::solver {

/// Takes back what was being appended when memory ran out.
class Appending {
public:
    explicit Appending(SketchImpl& sketch)
        : m_sketch(sketch),
          m_entities(sketch.data.entities.size()),
          m_splines(sketch.data.splines.size()),
          m_constraints(sketch.data.constraints.size()),
          m_values(sketch.data.values.size()),
          m_entityIds(sketch.entityOf.size()),
          m_constraintIds(sketch.constraintOf.size()) {}
    ~Appending() {
        if (m_isDone)
            return;
        shorten(m_sketch.data.entities, m_entities);
        shorten(m_sketch.data.splines, m_splines);
        shorten(m_sketch.data.constraints, m_constraints);
        m_sketch.data.constraintsOn.shorten(m_constraints);
        shorten(m_sketch.data.values, m_values);
        shorten(m_sketch.data.reference, m_values);
        shorten(m_sketch.kinds, m_constraints);
        shorten(m_sketch.idOfEntity, m_entities);
        shorten(m_sketch.idOfConstraint, m_constraints);
        shorten(m_sketch.entityOf, m_entityIds);
        shorten(m_sketch.constraintOf, m_constraintIds);
    }
    Appending(const Appending&) = delete;
    Appending& operator=(const Appending&) = delete;

    void finish() { m_isDone = true; }

private:
    template <class T>
    static void shorten(std::vector<T>& list, std::size_t size) {
        if (list.size() > size)
            list.erase(list.begin() + static_cast<std::ptrdiff_t>(size), list.end());
    }

    SketchImpl& m_sketch;
    std::size_t m_entities, m_splines, m_constraints, m_values, m_entityIds, m_constraintIds;
    bool m_isDone = false;
};

}  // namespace holdfast::solver
