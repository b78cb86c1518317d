#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "apps/cli/Uses.h"

namespace holdfast::cli {

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

/// One line on standard error, with the program's name before it; of a thread that keeps its messages, later.
void complain(std::string_view message);

/// Keeps what this thread complains of while it lives, for others to tell in their order.
class KeptComplaints {
public:
    KeptComplaints();
    KeptComplaints(const KeptComplaints&) = delete;
    KeptComplaints& operator=(const KeptComplaints&) = delete;
    ~KeptComplaints();

    std::vector<std::string> taken() { return std::move(m_messages); }

private:
    friend void complain(std::string_view message);
    std::vector<std::string> m_messages;
};

/// Has standard output take what it was told. ReportedError when it does not.
void flushStandardOutput();

}  // namespace holdfast::cli
