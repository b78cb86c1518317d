#pragma once

#include "core/Export.h"

/// What the centres of edits have in common that are finished before the constraints are solved again: align, join,
/// lengthen, mirror, properties. Holds nothing.
class HOLDFAST_EXPORT ConstraintStaticEditCmdCenter {
public:
    ConstraintStaticEditCmdCenter() = default;
    ConstraintStaticEditCmdCenter(const ConstraintStaticEditCmdCenter&) = default;
    ConstraintStaticEditCmdCenter& operator=(const ConstraintStaticEditCmdCenter&) = default;
    virtual ~ConstraintStaticEditCmdCenter();
};
