#include "editing/constraints/HalfConstraints.h"

namespace holdfast::editing {

namespace {}  // namespace

std::optional<Constraint> halfOf(const Constraint& whole, bool first) {
    Constraint half = whole;
    switch (whole.type) {
        case ConstraintType::collinear:
            half.type = first ? ConstraintType::pointOnCurve : ConstraintType::parallel;
            if (first)
                half.refs = {startOfLine(whole.refs[1]), whole.refs[0]};
            return half;
        case ConstraintType::coincident:
        case ConstraintType::concentric:
            half.type = first ? ConstraintType::horizontal : ConstraintType::vertical;
            return half;
        default:
            return {};
    }
}

}  // namespace holdfast::editing
