#pragma once

#include "core/Export.h"

#include <yxbase/YxArray.h>
#include <yxbase/YxGePoint3d.h>
#include <yxdb/YxDbObjectId.h>

/// Tries out how the constraints of a selection stand a ROTATE about a base point, and has the host evaluate at once.
///
/// Calls:  analysisRotateBox
/// Holds nothing; what it hands to the header is borrowed.
class HOLDFAST_EXPORT CYxRotateReleaseConstraint {
public:
    /// Appends the constrained ids to constrainedIds and fills the header of the first one's group with them, the base
    /// point and the rotation. False, and the header stays, without a constrained id or a header. An object that is no
    /// entity throws YxError_NotThatKindOfClass.
    // KEEP: exported spelling (ExportedNames.AreSpeltAsHostsCallThem).
    static bool addDataToBoxEvalute(YxArray<YxDbObjectId> ids, YxGePoint3d basePoint,
                                    YxArray<YxDbObjectId>& constrainedIds);
    /// Fills the header as above and, in the group of the first given id, marks the group changed and evaluates.
    // KEEP: neither flag ever tells anything: the first stays as it is, the second becomes false
    // (RotateAnalysis.SetsTheResultFlagFalseInEveryCase, RotateAnalysis.LeavesTheIgnoredFlagAlone).
    static void analysisRotateBox(YxArray<YxDbObjectId> ids, YxGePoint3d basePoint, bool& ignoredFlag,
                                  YxArray<YxDbObjectId>& constrainedIds, bool& resultFlag);
};
