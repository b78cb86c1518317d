#pragma once

#include <string>
#include <string_view>

#include "report/Uses.h"

namespace holdfast::report {

/// Text as it may stand in XML and HTML, between tags and in quoted attributes: the five special characters become
/// entities; bytes that are no UTF-8 and characters that XML forbids become U+FFFD.
std::string escaped(std::string_view text);

/// A number with at most `places` decimals, without trailing zeros, a point as separator, never "-0".
/// Not finite: "0", so that no attribute of a picture is unreadable.
std::string decimal(double value, int places);

/// A number as a person wants to read it: four decimals at most, scientific where that would hide it. Not finite: "?".
std::string measure(double value);

/// name="value" with a leading space; the value is escaped.
std::string attribute(std::string_view name, std::string_view value);

/// The number of code points that a terminal or a line of text shows, at most the number of bytes.
std::size_t textLength(std::string_view text);

/// Bytes of the UTF-8 character that text begins with; 0 where they are no valid UTF-8.
std::size_t characterLength(std::string_view text);

/// Ids as tokens of a list separated by spaces: spaces and percent signs inside an id are percent-encoded.
std::string idToken(std::string_view id);

}  // namespace holdfast::report
