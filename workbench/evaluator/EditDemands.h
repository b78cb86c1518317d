#pragma once

#include "workbench/evaluator/ConverterFeed.h"
#include "workbench/evaluator/EditDemand.h"
#include "workbench/evaluator/HostFigure.h"

namespace holdfast {

// One function for each kind of edit: what its header and converter ask of the figure. Where the edit tells how its
// entities were before, branches are chosen by that. An entity that is in no group or erased is skipped.

/// ALIGN: the edited entities as they were, transformed.
EditDemand alignDemand(const Drawing& drawing, HostFigure& host, const AssocConstraintHeader& header,
                       const ConverterFeed& feed);

/// LENGTHEN: moved ends stay where the command has put them.
EditDemand lengthenDemand(const Drawing& drawing, HostFigure& host, const AssocConstraintHeader& header,
                          const ConverterFeed& feed);

/// Properties of the palette: the new values, on the entities as they were.
EditDemand propertiesDemand(const Drawing& drawing, HostFigure& host, const AssocConstraintHeader& header,
                            const ConverterFeed& feed);

/// MIRROR, and everything else that the host has done itself: the entities stay where they are now.
EditDemand placedDemand(const HostFigure& host, std::vector<int> edited);

/// STRETCH, one step from the figure as it was when the stretch began: the listed grips move by one vector, and the
/// special entities as their records tell.
EditDemand stretchDemand(const Drawing& drawing, const HostFigure& host, const AssocConstraintHeader& header,
                         const ConverterFeed& feed);

/// Edited entities under a transform, from where they were when the figure was read.
EditDemand transformDemand(const HostFigure& host, std::vector<int> edited, const YxGeMatrix3d& transform);

/// Adds what one record of the palette asks of an element, `base` being the entity before the change.
void askProperty(EditDemand& demand, const HostFigure& host, int number, const YxDbEntity& base,
                 const ConverterRecord& record);

/// The copy that the header keeps of an entity as it was before the edit, else the entity itself.
const YxDbEntity& baseOf(const Drawing& drawing, const HostFigure& host, const AssocConstraintHeader& header,
                         int number);

}  // namespace holdfast
