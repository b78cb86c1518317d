#pragma once

// Everything that editing commands ask about curves.

#include "workbench/geometry/Extending.h"
#include "workbench/geometry/GeometryError.h"
#include "workbench/geometry/Intersections.h"
#include "workbench/geometry/Lengths.h"
#include "workbench/geometry/Nearest.h"
#include "workbench/geometry/Parameters.h"
#include "workbench/geometry/Polylines.h"
#include "workbench/geometry/Soundness.h"
#include "workbench/geometry/Splitting.h"
#include "workbench/geometry/TangentArcs.h"
#include "workbench/geometry/Transforms.h"
