#pragma once

#include <memory>
#include <span>
#include <vector>

#include "solver/src/Uses.h"
#include "solver/src/diagnosis/Extract.h"

namespace holdfast::solver::detail {

/// What stands near the handles of a drag, as a sketch of its own: equations are built for that alone. Entities at its
/// rim lack constraints that lead away from it; unknowns of theirs say nothing about the whole sketch.
class DragVicinity {
public:
    /// Null where all that is connected is about as large as what would be near. Cost: a byte for each entity and each
    /// constraint, and the extent of the sketch; all else follows what is near.
    static std::unique_ptr<DragVicinity> around(const SketchData& sketch, std::span<const int> handles);

    SketchData& sketch() { return m_extract.sketch(); }
    std::span<const char> isRim() const { return m_isRim; }     ///< by entity of the part
    std::span<const int> handles() const { return m_handles; }  ///< values of the part

    /// Takes over what has moved, and says whose numbers the result means there.
    void takeOver(SolveResult& result, SketchData& whole) const;

    /// Values of the part, of now or of before, into those of the whole.
    void copyNow(std::vector<double>& values) const { copy(m_extract.sketch().values, values); }
    void copyStart(std::vector<double>& values) const { copy(m_start, values); }

private:
    DragVicinity(const SketchData& whole, std::vector<int> constraints, std::span<const int> handles,
                 std::span<const char> isInside);
    void copy(std::span<const double> from, std::vector<double>& to) const;
    void copyEntity(int number, std::span<const double> from, std::vector<double>& to) const;

    std::vector<int> m_constraints;  ///< of the whole, by number here
    Extract m_extract;
    std::vector<char> m_isRim;
    std::vector<int> m_handles;
    std::vector<double> m_start;
    std::vector<int> m_firstThere;  ///< first value in the whole, by entity here
};

}  // namespace holdfast::solver::detail
