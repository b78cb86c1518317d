#pragma once

#include <cstddef>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/fcstd/FcstdConstraintPatch.h"
#include "formats/fcstd/FcstdSketch.h"

namespace holdfast::formats {

/// Makes the expressions of a sketch those of a drawing that was edited. They follow the numbers and names of the
/// constraints, and go with these; dimensions have those that say the formulas which the drawing has now, as far as
/// expressions can.
///
/// Borrows all that it is given; the constraints are patched already, and notes are added to those that are there.
/// Serves one edited drawing.
class FcstdExpressionPatch {
public:
    FcstdExpressionPatch(FcstdSketch& sketch, const Document& after, const FcstdConstraintPatch& constraints,
                         std::vector<std::string>& notes);

    void apply();

private:
    bool patch(pugi::xml_node each);
    std::optional<std::string> textOfDimension(std::size_t record, std::optional<std::string> text);
    void add(const Constraint& dimension);
    std::optional<std::string> tailOf(std::size_t record) const;
    std::optional<std::string> expressionName(const std::string& name) const;
    std::optional<std::string> expressionFor(const Constraint& dimension) const;
    void noteFormula(const Constraint& dimension);

    FcstdSketch& m_sketch;
    const Document& m_after;
    const FcstdConstraintPatch& m_constraints;
    pugi::xml_node m_list;
    std::unordered_map<std::string, const Constraint*> m_byName;  // dimensions
    std::unordered_set<std::string> m_done;                       // dimensions, by id
    std::vector<std::string>& m_notes;
};

}  // namespace holdfast::formats
