#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "apps/cli/Uses.h"

namespace holdfast::cli {

// What the program's processes answer.
inline constexpr int kExitDone = 0;
inline constexpr int kExitUnsolved = 1;  ///< the constraints of a drawing cannot hold together; no output was written
/// A file, an edit or an argument was refused and no file was written, or standard output could not be.
inline constexpr int kExitBadInput = 2;

/// Columns of the terminal on standard output, 0 when that is no terminal.
std::size_t terminalWidth();

/// True when standard error is a terminal, where a line can be written over.
bool isErrorTerminal();

/// True when standard output is a terminal that knows colours and whose user wants them (NO_COLOR is unset or empty).
bool wantsColours();

/// Puts a line on standard error that the next such line or message takes the place of. No longer than the terminal is
/// wide. The caller sees to it that there is a terminal.
void showPassingLine(std::string_view line);
/// Wipes the passing line, if there is one.
void wipePassingLine();

/// A number in four digits at most.
std::string shortNumber(double value);

/// One line on standard error, with the program's name before it.
void complain(std::string_view message);

}  // namespace holdfast::cli
