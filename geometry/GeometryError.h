#pragma once

#include <stdexcept>

namespace holdfast::geometry {

/// A question about a curve that has no answer: an unsound shape, a parameter outside the curve, a construction that
/// does not exist. The text says what was found and what is expected.
class GeometryError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace holdfast::geometry
