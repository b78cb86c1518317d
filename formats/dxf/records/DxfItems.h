#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/Uses.h"

namespace holdfast::formats {

/// One group of a record that is being rewritten: its value, and the very bytes around it. Comments belong to the group
/// before them.
struct DxfItem {
    int code = 0;
    std::string before, value, after;
};

using DxfItems = std::vector<DxfItem>;

/// The groups of a record that has been read without a fault.
DxfItems itemsOf(std::string_view record);
std::string textOf(const DxfItems& items);

/// How a file writes its groups.
struct DxfStyle {
    std::string lineEnd = "\n";
    std::size_t codeWidth = 3;   ///< codes are filled up to it with blanks in front
    std::string sample = "0.0";  ///< a coordinate
};

/// The style of the first groups of a text.
DxfStyle styleOf(const DxfItems& items);

/// New groups in a file's style.
DxfItem newItem(int code, std::string_view value, const DxfStyle& style);
DxfItem newNumber(int code, double value, const DxfStyle& style);

/// A number that reads back as the same double, with as many decimals at least as the sample has, and without an
/// exponent unless the sample has one or the number is huge or tiny. value is finite.
std::string numberLike(double value, std::string_view sample);

/// Positions of an entity's own groups: not those of other programs (from code 1000), of embedded objects (from code
/// 101) and of lists in braces (code 102). The first is that of its name.
std::vector<std::size_t> ownGroups(const DxfItems& items);

/// The first of an entity's own groups with a code; nothing when there is none.
std::optional<std::size_t> findOwn(const DxfItems& items, int code);

/// The value of the first of its own groups with a code as a number, or a default when there is none.
double ownNumber(const DxfItems& items, int code, double otherwise);

/// True for an entity on a plane that is seen from below.
bool looksDown(const DxfItems& items);

}  // namespace holdfast::formats
