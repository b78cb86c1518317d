#pragma once

#include <string>

#include "formats/Uses.h"

namespace holdfast::formats {

/// What is wrong with an attribute, thrown before it is known in which line of which file it stands.
struct SvgFault {
    std::string found, expected;
};

}  // namespace holdfast::formats
