#pragma once

// The floors that this one stands on: their names are used here as they are.
namespace holdfast::geometry {}

namespace holdfast::document {
using namespace geometry;
}
