#pragma once

#include "core/Export.h"
#include "evaluation/ConstraintStaticEditCmdCenter.h"

#include <yxbase/YxArray.h>
#include <yxbase/YxGeMatrix3d.h>
#include <yxdb/YxDbObjectId.h>

/// Moves the free objects of an ALIGN and hands the constrained ones to the evaluator together with the transform.
///
/// Calls:  seperateObjectes  updateCenterMat+  getAssocObjs?  addDataToWork
/// The command evaluates the network afterwards. Owns nothing, keeps nothing open between calls, serves one command.
class HOLDFAST_EXPORT ConstraintAlignCmdCenter : public ConstraintStaticEditCmdCenter {
public:
    ConstraintAlignCmdCenter() = default;
    ConstraintAlignCmdCenter(const ConstraintAlignCmdCenter&) = default;
    ConstraintAlignCmdCenter& operator=(const ConstraintAlignCmdCenter&) = default;
    ~ConstraintAlignCmdCenter() override;

    /// Appends each object to the constrained or to the free ones.
    // KEEP: exported spelling (ExportedNames.AreSpeltAsHostsCallThem).
    void seperateObjectes(YxArray<YxDbObjectId> objects);
    /// Composes the transform: the new one applies after those given before.
    void updateCenterMat(YxGeMatrix3d transform);
    /// The objects that the command leaves to the evaluator.
    YxArray<YxDbObjectId> getAssocObjs() const;
    /// Moves the free objects, fills the header of the first constrained object's group and marks the group changed.
    /// Nothing at all happens without a constrained object, or when the transform is singular, shears or scales
    /// unevenly. An object that is no entity throws YxError_NotThatKindOfClass; what was moved by then stays moved.
    void addDataToWork();

protected:
    friend struct LvTestAccess;
    void moveFreeObjects();

    YxGeMatrix3d centerMat;
    YxArray<YxDbObjectId> assocObjs;
    YxArray<YxDbObjectId> freeObjs;
};
