#include "document/text/DrawingError.h"

#include <utility>

namespace holdfast::document {
namespace {

std::string sentence(const std::string& file, const Fault& fault, int line) {
    std::string text = file;
    if (line > 0)
        text += ":" + std::to_string(line);
    if (!fault.place.empty())
        text += ": " + fault.place;
    return text + ": found " + fault.found + "; expected " + fault.expected;
}

}  // namespace

DrawingError::DrawingError(std::string file, Fault fault, int line)
    : std::runtime_error(sentence(file, fault, line)),
      m_file(std::move(file)),
      m_fault(std::move(fault)),
      m_line(line) {}

}  // namespace holdfast::document
