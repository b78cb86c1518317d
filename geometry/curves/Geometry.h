#pragma once

// Everything that editing commands ask about curves.

#include "geometry/GeometryError.h"
#include "geometry/Transforms.h"
#include "geometry/construction/Extending.h"
#include "geometry/construction/Splitting.h"
#include "geometry/construction/TangentArcs.h"
#include "geometry/crossings/Intersections.h"
#include "geometry/curves/Lengths.h"
#include "geometry/curves/Nearest.h"
#include "geometry/curves/Parameters.h"
#include "geometry/curves/Polylines.h"
#include "geometry/curves/Soundness.h"
