#pragma once

#include <sstream>
#include <string>

namespace holdfast::formats {

/// A DXF text from "code value" pairs, one a line: "0 LINE\n10 1.5".
inline std::string dxfLines(const std::string& pairs) {
    std::istringstream in(pairs);
    std::string text;
    for (std::string line; std::getline(in, line);) {
        const std::size_t begin = line.find_first_not_of(' ');
        if (begin == std::string::npos)
            continue;
        const std::size_t blank = line.find(' ', begin);
        text += line.substr(begin, blank - begin) + "\n" + (blank == std::string::npos ? "" : line.substr(blank + 1)) +
                "\n";
    }
    return text;
}

/// The same as the entities of a whole file.
inline std::string dxfFile(const std::string& entities) {
    return dxfLines("0 SECTION\n2 ENTITIES\n" + entities + "\n0 ENDSEC\n0 EOF\n");
}

}  // namespace holdfast::formats
