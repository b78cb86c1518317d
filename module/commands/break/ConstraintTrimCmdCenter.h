#pragma once

#include "commands/break/ConstraintBreakCmdCenter.h"

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual"
#endif

/// Keeps the constraints of one curve true while TRIM cuts it back to an edge: a break that learns its cut points from
/// the pieces that the cutting edges make.
///
/// Calls:  setPtParam  setFirstCurve  setSecondCurve?  deleteConstraint
class HOLDFAST_EXPORT ConstraintTrimCmdCenter : public ConstraintBreakCmdCenter {
public:
    ConstraintTrimCmdCenter() = default;
    ConstraintTrimCmdCenter(const ConstraintTrimCmdCenter& other) = default;
    ConstraintTrimCmdCenter& operator=(const ConstraintTrimCmdCenter& other) = default;
    ~ConstraintTrimCmdCenter() override;

    /// Records the curve's parameters at the ends of the first piece that is a curve, smaller first. `indices` name the
    /// pieces to be removed among `pieces`, entities or null, and are never negative; those past the end are skipped.
    /// No such piece, or the trimmed object is not a curve: nothing changes.
    // KEEP: hides the break's operation instead of overriding it (TrimCentre.HidesTheBreakOperationOfTheSameName).
    void setPtParam(const YxDbEntity* trimmed, YxArray<int> indices, const YxArray<void*>& pieces);
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
