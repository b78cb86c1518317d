#pragma once

#include <string>

#include "document/text/DrawingError.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// What is wrong with a file as a whole, whatever stands in it: it is not there, may not be read, has no room.
class FileError : public DrawingError {
public:
    enum class Work { reading, writing };

    FileError(Work work, std::string file, std::string found, std::string expected)
        : DrawingError(std::move(file), {"", std::move(found), std::move(expected)}), m_work(work) {}

    Work work() const { return m_work; }

private:
    Work m_work;
};

}  // namespace holdfast::formats
