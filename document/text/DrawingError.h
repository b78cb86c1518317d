#pragma once

#include <stdexcept>
#include <string>

#include "document/Uses.h"

namespace holdfast::document {

/// What is wrong with a piece of a drawing, before it is known which file it stands in.
struct Fault {
    std::string place;     ///< JSON pointer relative to the piece ("radius", "refs/0/point"), or empty for all of it
    std::string found;     ///< what stands there
    std::string expected;  ///< what should, or how to mend it
};

/// The one error of reading, checking or writing a drawing: which file, where in it, what was found and what is
/// expected instead. what() is all of it in one line.
class DrawingError : public std::runtime_error {
public:
    /// place is a JSON pointer, "line 3, column 7", or empty when the fault is the whole file's; line 0 is unknown.
    DrawingError(std::string file, Fault fault, int line = 0);

    const std::string& file() const { return m_file; }
    const std::string& place() const { return m_fault.place; }
    const std::string& found() const { return m_fault.found; }
    const std::string& expected() const { return m_fault.expected; }
    /// The line of the file, counted from 1; 0 when it is not known.
    int line() const { return m_line; }

private:
    std::string m_file;
    Fault m_fault;
    int m_line;
};

}  // namespace holdfast::document
