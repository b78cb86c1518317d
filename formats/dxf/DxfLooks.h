#pragma once

#include "document/Document.h"
#include "formats/Uses.h"
#include "formats/dxf/DxfGroups.h"

namespace holdfast::formats {

/// How an entity is drawn. What its groups say that nobody can mean (a colour that is no number) is as the layer has
/// it.
Look lookOf(const DxfEntity& entity);

/// A layer from its entry in the table.
Layer layerOf(const DxfEntity& entry);

/// The number of a colour in the palette of 255; of one in red, green and blue the nearest of the seven pure ones.
int paletteNumber(const Colour& colour);

}  // namespace holdfast::formats
