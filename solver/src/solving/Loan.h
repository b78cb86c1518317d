#pragma once

#include <utility>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/sketch/SketchData.h"

namespace holdfast::solver::detail {

/// A sketch on loan: what its values are and what its constraints ask for is put back in the end.
class Loan {
public:
    explicit Loan(SketchData& sketch) : m_sketch(sketch), m_values(sketch.values) {
        m_asked.reserve(sketch.constraints.size());
        for (const SketchConstraint& constraint : sketch.constraints)
            m_asked.push_back({constraint.value, constraint.active});
    }
    Loan(const Loan&) = delete;
    Loan& operator=(const Loan&) = delete;
    ~Loan() { giveBack(); }

    void giveBack() {
        if (std::exchange(m_isGivenBack, true))
            return;
        m_sketch.values = std::move(m_values);
        for (std::size_t c = 0; c < m_asked.size(); ++c) {
            m_sketch.constraints[c].value = m_asked[c].value;
            m_sketch.constraints[c].active = m_asked[c].isActive;
        }
    }

private:
    struct Asked {
        double value;
        bool isActive;
    };

    SketchData& m_sketch;
    std::vector<double> m_values;
    std::vector<Asked> m_asked;
    bool m_isGivenBack = false;
};

}  // namespace holdfast::solver::detail
