#pragma once

#include "hosting/Uses.h"
#include "hosting/evaluator/ConverterFeed.h"
#include "hosting/evaluator/EditRequest.h"
#include "hosting/evaluator/HostSketch.h"

namespace holdfast::hosting {

// One function for each kind of edit: what its header and converter ask of the sketch. Where the edit tells how its
// entities were before, branches are chosen by that. An entity that is in no group or erased is skipped.

/// ALIGN: the edited entities as they were, transformed.
EditRequest alignDemand(const Drawing& drawing, HostSketch& host, const AssocConstraintHeader& header,
                        const ConverterFeed& feed);

/// LENGTHEN: moved ends stay where the command has put them.
EditRequest lengthenDemand(const Drawing& drawing, HostSketch& host, const AssocConstraintHeader& header,
                           const ConverterFeed& feed);

/// Properties of the palette: the new values, on the entities as they were.
EditRequest propertiesDemand(const Drawing& drawing, HostSketch& host, const AssocConstraintHeader& header,
                             const ConverterFeed& feed);

/// MIRROR, and everything else that the host has done itself: the entities stay where they are now.
EditRequest placedDemand(const HostSketch& host, std::vector<int> edited);

/// The same where it is known how the entities were before: the others follow along the way between, and branches are
/// chosen by it.
void knowBefore(HostSketch& host, const std::vector<int>& edited, const HostSketch& before);

/// STRETCH, one step from the sketch as it was when the stretch began: the listed grips move by one vector, and the
/// special entities as their records tell.
EditRequest stretchDemand(const Drawing& drawing, const HostSketch& host, const AssocConstraintHeader& header,
                          const ConverterFeed& feed);

/// Edited entities under a transform, from where they were when the sketch was read.
EditRequest transformDemand(const HostSketch& host, std::vector<int> edited, const YxGeMatrix3d& transform);

/// Adds what one record of the palette asks of an element, `base` being the entity before the change.
void askProperty(EditRequest& request, const HostSketch& host, int number, const YxDbEntity& base,
                 const ConverterRecord& record);

/// The copy that the header keeps of an entity as it was before the edit, else the entity itself.
const YxDbEntity& baseOf(const Drawing& drawing, const HostSketch& host, const AssocConstraintHeader& header,
                         int number);

}  // namespace holdfast::hosting
