#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include <YxDbConstraints/YxDbAssoc2dConstraintGroup.h>

namespace holdfast {

/// A kind of constraint by its word in scene texts.
struct ConstraintKind {
    std::string_view word;
    int fewestPlaces;
    int mostPlaces;
    std::string_view places;  ///< for complaints: "two lines"
    YxRxClass* (*type)();
    YxGeomConstraint& (*add)(YxDbAssoc2dConstraintGroup&, const std::vector<YxConstrainedGeometry*>&);
    std::optional<YxDimensionConstraint::Kind> dimension;  ///< set for measures, which take a value
};

/// Null for a word that is no kind of constraint.
const ConstraintKind* constraintKindNamed(std::string_view word);
/// Null for composites and for classes without a word.
const ConstraintKind* kindOf(const YxGeomConstraint& constraint);

}  // namespace holdfast
