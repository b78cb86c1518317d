#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace holdfast::testing {

/// The real drawings that come with the project, and those of the folder in HOLDFAST_DRAWINGS: all of them or
/// (HOLDFAST_HALF=0 or 1) every other one.
inline std::vector<std::filesystem::path> drawingFiles() {
    std::vector<std::filesystem::path> files;
    const char* folder = std::getenv("HOLDFAST_DRAWINGS");
    for (const std::filesystem::path& place :
         {std::filesystem::path("examples/drawings"), std::filesystem::path(folder == nullptr ? "" : folder)})
        if (!place.empty())
            for (const auto& entry : std::filesystem::directory_iterator(place))
                if (entry.path().extension() == ".json")
                    files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    const char* half = std::getenv("HOLDFAST_HALF");
    if (half == nullptr)
        return files;
    std::vector<std::filesystem::path> chosen;
    for (std::size_t i = half[0] == '1' ? 1 : 0; i < files.size(); i += 2)
        chosen.push_back(files[i]);
    return chosen;
}

}  // namespace holdfast::testing
