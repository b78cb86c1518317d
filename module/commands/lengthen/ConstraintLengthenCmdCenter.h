#pragma once

#include "core/Export.h"
#include "evaluation/ConstraintStaticEditCmdCenter.h"
#include "evaluation/CopiesInWaiting.h"

#include <map>

#include <YxDbConstraints/LvEvaDataConverter.h>
#include <yxbase/YxGePoint3d.h>
#include <yxdb/YxDbObjectId.h>

class AssocConstraintHeader;
class YxDbCurve;
class YxRxObject;

/// A curve as it stood before LENGTHEN changed it.
struct OriCurveInfo {
    YxGePoint3d startPoint;
    YxGePoint3d endPoint;
    YxRxObject* pOriEntity = nullptr;  ///< a copy: the centre's until it is handed over, then the header's
    LvEvaDataConverterGripEdit::EntType entType = LvEvaDataConverterGripEdit::kLine;
};

/// Hands the ends of curves that LENGTHEN moved to the evaluator.
///
/// Calls:  addOriCurveInfo*  addDataToWork
/// addOriCurveInfo runs while the curves are unedited, addDataToWork when they are edited and closed. The command
/// evaluates the network afterwards. Owns the copies that no header has taken; serves one command.
class HOLDFAST_EXPORT ConstraintLengthenCmdCenter : public ConstraintStaticEditCmdCenter {
public:
    ConstraintLengthenCmdCenter();
    ConstraintLengthenCmdCenter(const ConstraintLengthenCmdCenter&) = default;
    ConstraintLengthenCmdCenter& operator=(const ConstraintLengthenCmdCenter&) = default;
    ~ConstraintLengthenCmdCenter() override;

    /// Records ends, kind and a copy of a constrained line, arc, polyline or ellipse. False, and nothing recorded, for
    /// any other curve, for one without constraints or recorded before, and when it cannot be copied.
    bool addOriCurveInfo(const YxDbCurve* curve, const YxDbObjectId& id);
    /// Fills the header of the first recorded curve's group with every recorded curve, reports each moved end to its
    /// converter and marks the group changed. False when there is no header to fill or no converter to be had; then
    /// nothing but a converter is written. With nothing recorded the header of the null group is taken, if there is
    /// one.
    bool addDataToWork();

protected:
    friend struct LvTestAccess;
    void handOver(AssocConstraintHeader& header, const YxDbObjectId& id, const OriCurveInfo& original);

    std::map<YxDbObjectId, OriCurveInfo> m_originals;

private:
    holdfast::module::CopiesInWaiting m_copies;
};
