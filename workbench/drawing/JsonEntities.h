#pragma once

#include "workbench/drawing/JsonView.h"

namespace holdfast {

/// One element of the list "entities", its fields complete and of the right type, their values not yet judged.
Entity readEntity(const JsonView& view);

}  // namespace holdfast
