#pragma once

#include <yxbase/YxGeVector3d.h>

namespace holdfast::module {

/// The z direction of the user coordinate system that is current in the host's working database: of paper space when
/// that is worked in, else of model space. The world's without a database.
YxGeVector3d currentZAxis();

}  // namespace holdfast::module
