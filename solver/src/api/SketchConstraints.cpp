#include <holdfast/solver/Sketch.h>

#include <cassert>
#include <utility>

#include "solver/src/api/Appending.h"
#include "solver/src/api/ConstraintReading.h"
#include "solver/src/diagnosis/Extract.h"
#include "solver/src/residuals/EquationSystem.h"

// The constraints of a sketch.
namespace holdfast::solver {

using detail::at;

namespace {

/// Why the solver cannot have this constraint of its sketch; nothing when it can.
std::optional<Error> faultOfEquations(const SketchImpl& sketch, int number, const Constraint& constraint) {
    try {
        detail::Extract extract(sketch.data, {&number, 1});
        extract.sketch().takeReference();
        extract.sketch().constraints.front().active = true;
        extract.sketch().constraints.front().driving = true;
        const int first = 0;
        detail::buildPlainSystem(extract.sketch(), {&first, 1});
    } catch (const detail::SketchError& e) {
        return Error{withoutName(e.what()), describe(constraint), "it takes " + std::string(takenBy(constraint))};
    }
    return std::nullopt;
}

}  // namespace

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
    if (auto fault = faultOfEquations(*m_impl, number, constraint))
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
    const int number = m_impl->find(dimension);
    if (number < 0)
        return noSuch(dimension);
    Constraint changed = m_impl->kinds[at(number)];
    Value* const now = valueIn(changed);
    if (now == nullptr)
        return Error{"it is no dimension and has no value", describe(changed), "add a dimension"};
    *now = value;
    if (const auto read = readConstraint(*m_impl, changed); !read)
        return read.error();
    double& stored = m_impl->data.constraints[at(number)].value;
    const double old = std::exchange(stored, value);
    try {
        if (auto fault = faultOfEquations(*m_impl, number, changed)) {
            stored = old;
            return *std::move(fault);
        }
    } catch (...) {
        stored = old;
        throw;
    }
    m_impl->kinds[at(number)] = std::move(changed);
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
