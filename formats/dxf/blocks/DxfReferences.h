#pragma once

#include <string>
#include <string_view>

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/dxf/records/DxfHandles.h"
#include "formats/dxf/records/DxfItems.h"

namespace holdfast::formats {

/// Gives the record of an INSERT, with its attributes, another place: groups whose number differs get a new one, and
/// those that it needs besides are added. `before` is the reference that was read from the record.
void rewriteReference(DxfItems& record, const BlockReference& before, const BlockReference& now, DxfHandles& handles);

/// Gives a record the layer, colour, line type, weight and visibility that something has outside of its block, and the
/// owner of what stands there, where the record has one. Groups that say the same already stay to the byte.
void putLook(DxfItems& record, const Look& before, const Look& now, const std::string& owner);

}  // namespace holdfast::formats
