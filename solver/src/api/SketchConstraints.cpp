#include <holdfast/solver/Sketch.h>

#include <cassert>
#include <utility>

#include "solver/src/api/Appending.h"
#include "solver/src/api/ConstraintReading.h"

// The constraints of a sketch.
namespace holdfast::solver {

using detail::at;

Result<ConstraintId> Sketch::add(const Constraint& constraint) {
    auto read = readConstraint(*m_impl, constraint);
    if (!read)
        return read.error();
    Appending appending(*m_impl);
    const ConstraintId id(static_cast<int>(m_impl->constraintOf.size()));
    detail::SketchConstraint binding = std::move(read).value();
    binding.id = toString(id);
    const int number = m_impl->data.addConstraint(std::move(binding));
    m_impl->kinds.push_back(constraint);
    m_impl->idOfConstraint.push_back(id.number());
    m_impl->constraintOf.push_back(number);
    if (auto fault = faultOfEquations(*m_impl, number, constraint, m_impl->data.constraints.back().value))
        return *std::move(fault);
    appending.finish();
    ++m_impl->revision;
    return id;
}

Result<Done> Sketch::remove(ConstraintId constraint) {
    const int number = m_impl->find(constraint);
    if (number < 0)
        return noSuch(constraint);
    std::vector<char> isGone(m_impl->data.entities.size(), 0), isConstraintGone(m_impl->data.constraints.size(), 0);
    isConstraintGone[at(number)] = 1;
    m_impl->removeMarked(isGone, isConstraintGone);
    return Done{};
}

Result<Done> Sketch::setValue(ConstraintId dimension, double value) {
    const auto number = dimensionFor(*m_impl, dimension, value);
    if (!number)
        return number.error();
    giveValue(*m_impl, number.value(), value);
    ++m_impl->revision;
    return Done{};
}

Result<Done> Sketch::setActive(ConstraintId constraint, bool isActive) {
    const int number = m_impl->find(constraint);
    if (number < 0)
        return noSuch(constraint);
    m_impl->data.constraints[at(number)].active = isActive;
    ++m_impl->revision;
    return Done{};
}

Result<Done> Sketch::setDriving(ConstraintId dimension, bool isDriving) {
    const int number = m_impl->find(dimension);
    if (number < 0)
        return noSuch(dimension);
    if (valueIn(m_impl->kinds[at(number)]) == nullptr)
        return Error{"it is no dimension and always drives", describe(m_impl->kinds[at(number)]),
                     "switch it off by setActive"};
    m_impl->data.constraints[at(number)].driving = isDriving;
    ++m_impl->revision;
    return Done{};
}

bool Sketch::contains(ConstraintId constraint) const {
    return m_impl->find(constraint) >= 0;
}

bool Sketch::isActive(ConstraintId constraint) const {
    const int number = m_impl->find(constraint);
    return number >= 0 && m_impl->data.constraints[at(number)].active;
}

bool Sketch::isDriving(ConstraintId constraint) const {
    const int number = m_impl->find(constraint);
    return number >= 0 && m_impl->data.constraints[at(number)].driving;
}

const Constraint& Sketch::constraint(ConstraintId constraint) const {
    const int number = m_impl->find(constraint);
    assert(number >= 0);
    return m_impl->kinds[at(number)];
}

std::vector<ConstraintId> Sketch::constraints() const {
    std::vector<ConstraintId> ids;
    for (const int id : m_impl->idOfConstraint)
        ids.emplace_back(id);
    return ids;
}

}  // namespace holdfast::solver
