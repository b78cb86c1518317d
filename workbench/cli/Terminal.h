#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace holdfast {

// What the program's processes answer.
inline constexpr int kExitDone = 0;
inline constexpr int kExitUnsolved = 1;  ///< the constraints of a drawing cannot hold together; no output was written
/// A file, an edit or an argument was refused and no file was written, or standard output could not be.
inline constexpr int kExitBadInput = 2;

/// Columns of the terminal on standard output, 0 when that is no terminal.
std::size_t terminalWidth();

/// True when standard error is a terminal, where a line can be written over.
bool isErrorTerminal();

/// True when standard output is a terminal whose user wants colours (NO_COLOR is not set).
bool wantsColours();

/// A number in four digits at most.
std::string shortNumber(double value);

/// One line on standard error, with the program's name before it.
void complain(std::string_view message);

}  // namespace holdfast
