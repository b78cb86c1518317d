#pragma once

#include <string>

#include "document/Uses.h"

namespace holdfast::document {

/// Appends the shortest decimal text that reads back as the very same double: 3.0, -0.0, 1e-05, 3e-16, 1e+16.
/// Powers of ten from -4 to 15 are written out, others with an exponent of two digits or more. value is finite.
void appendNumber(std::string& out, double value);

std::string numberText(double value);

}  // namespace holdfast::document
