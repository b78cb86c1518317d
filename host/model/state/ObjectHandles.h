#pragma once

#include <cstddef>

class YxDbObject;

namespace holdfast {

/// The number of a resident object in its database, counted from 1 in the order in which objects were added; another
/// object in its place has the same. 0 for a copy and for null.
std::size_t handleOf(const YxDbObject* object);

}  // namespace holdfast
