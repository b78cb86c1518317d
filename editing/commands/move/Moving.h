#pragma once

#include <span>
#include <string>
#include <vector>

#include <yxbase/YxGeMatrix3d.h>

#include "editing/EditContext.h"
#include "editing/Uses.h"
#include "geometry/Transforms.h"

namespace holdfast::editing {

/// The entities that a command is to move: each at most once, none that may not move. `end` is the word that ends their
/// list in an edit's text.
std::vector<std::string> requireSelection(const Drawing& drawing, const std::vector<Name>& entities,
                                          std::string_view end = {});

/// The entities that a command works on: each named once. `ends` are the words that end their list in an edit's text.
std::vector<std::string> requireOnce(const Drawing& drawing, const std::vector<Name>& entities,
                                     std::span<const std::string_view> ends = {});

/// The transform as the host has it: the drawing plane is its xy plane, z scales alike.
YxGeMatrix3d matrixOf(const PlaneTransform& transform);

/// The host moves an entity itself. Of a mirrored arc each end stays that end: the arc is seen from below afterwards.
void moveEntity(const EditContext& context, const std::string& name, const PlaneTransform& transform);

/// Writes a shape that an edit made; EditError for one that is none, which tells what is wrong with it.
void writeEdited(const EditContext& context, const std::string& name, const Shape& shape);

/// EditError unless the edit makes a proper shape of the entity.
void refuseUnsound(const std::string& name, const Shape& shape);

}  // namespace holdfast::editing
