#pragma once

#include "core/Export.h"
#include "evaluation/ConstraintStaticEditCmdCenter.h"

#include <yxbase/YxArray.h>
#include <yxdb/YxDbObjectId.h>

/// Tells the evaluator which objects a MIRROR touches; everything else is the command's.
///
/// Calls:  addDataToWork
/// Holds nothing, serves one command.
class HOLDFAST_EXPORT ConstraintMirrorCmdCenter : public ConstraintStaticEditCmdCenter {
public:
    ConstraintMirrorCmdCenter() = default;
    ConstraintMirrorCmdCenter(const ConstraintMirrorCmdCenter&) = default;
    ConstraintMirrorCmdCenter& operator=(const ConstraintMirrorCmdCenter&) = default;
    ~ConstraintMirrorCmdCenter() override;

    /// Writes edit kind and ids into the header of the first object's group, and nothing else anywhere.
    void addDataToWork(YxArray<YxDbObjectId> ids);
};
