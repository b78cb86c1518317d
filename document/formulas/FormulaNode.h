#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "document/Uses.h"

namespace holdfast::document {

/// A piece of a formula, with the pieces that it is calculated from.
struct FormulaNode {
    enum class Kind { number, unit, name, negative, operation, function };

    Kind kind = Kind::number;
    std::size_t column = 0;  ///< of its sign or word
    double number = 0.0;
    int power = 1;       ///< of a unit
    char operation = 0;  ///< + - * / ^
    std::string word{};  ///< of a unit, a name or a function
    std::vector<FormulaNode> operands{};
};

}  // namespace holdfast::document
