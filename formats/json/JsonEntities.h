#pragma once

#include "formats/Uses.h"
#include "formats/json/JsonView.h"

namespace holdfast::formats {

/// One element of the list "entities", its fields complete and of the right type, their values not yet judged.
Entity readEntity(const JsonView& view);

}  // namespace holdfast::formats
