#include "solver/src/sketch/ConstraintLists.h"

#include <algorithm>

#include "solver/src/sketch/Index.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

void ConstraintLists::append(std::span<const SketchPlace> places) {
    const int constraint = static_cast<int>(m_ends.size());
    for (const SketchPlace& place : places) {
        if (place.entity < 0)
            continue;
        if (at(place.entity) >= m_lastOf.size())
            m_lastOf.resize(at(place.entity) + 1, -1);
        m_uses.push_back({constraint, place.entity, m_lastOf[at(place.entity)]});
        m_lastOf[at(place.entity)] = static_cast<int>(m_uses.size()) - 1;
    }
    m_ends.push_back(m_uses.size());
}

void ConstraintLists::shorten(std::size_t count) noexcept {
    const std::size_t kept = count == 0 ? 0 : count <= m_ends.size() ? m_ends[count - 1] : m_uses.size();
    while (m_uses.size() > kept) {
        m_lastOf[at(m_uses.back().entity)] = m_uses.back().before;
        m_uses.pop_back();
    }
    while (m_ends.size() > count)
        m_ends.pop_back();
}

}  // namespace holdfast::solver::detail
