#include "commands/break/ConstraintTrimCmdCenter.h"

#include "core/CurveEnds.h"

#include <yxdb/YxDbCurve.h>

namespace {

bool isCurve(const YxDbEntity* entity) {
    return entity != nullptr && entity->isKindOf(YxDbCurve::desc());
}

const YxDbCurve* curveAt(const YxArray<void*>& pieces, int index) {
    if (index >= pieces.length())
        return nullptr;
    const auto* piece = static_cast<const YxDbEntity*>(pieces[index]);
    return isCurve(piece) ? static_cast<const YxDbCurve*>(piece) : nullptr;
}

}  // namespace

ConstraintTrimCmdCenter::~ConstraintTrimCmdCenter() = default;

// The interface takes the indices by value; they end with the call.
void ConstraintTrimCmdCenter::setPtParam(const YxDbEntity* trimmed,
                                         YxArray<int> indices,  // NOLINT(performance-unnecessary-value-param)
                                         const YxArray<void*>& pieces) {
    if (!isCurve(trimmed))
        return;
    for (const int index : indices) {
        const YxDbCurve* piece = curveAt(pieces, index);
        if (piece == nullptr)
            continue;
        const YxArray<YxGePoint3d> ends = holdfast::module::curveEnds(*piece);
        return ConstraintBreakCmdCenter::setPtParam(trimmed, ends[0], ends[1]);
    }
}
