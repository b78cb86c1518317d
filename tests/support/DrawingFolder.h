#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace holdfast::testing {

inline std::vector<std::filesystem::path> drawingsIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == ".json")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

inline std::vector<std::filesystem::path> everyNth(const std::vector<std::filesystem::path>& files, std::size_t first,
                                                   std::size_t stride) {
    std::vector<std::filesystem::path> chosen;
    for (std::size_t i = first; i < files.size(); i += stride)
        chosen.push_back(files[i]);
    return chosen;
}

/// The real drawings that come with the project, and those of the folder in HOLDFAST_DRAWINGS: all of them, or with
/// HOLDFAST_STRIDE=n every n-th. With HOLDFAST_HALF=0 or 1 every other one of the whole list.
inline std::vector<std::filesystem::path> drawingFiles() {
    std::vector<std::filesystem::path> files = drawingsIn("examples/drawings");
    if (const char* folder = std::getenv("HOLDFAST_DRAWINGS")) {
        const char* stride = std::getenv("HOLDFAST_STRIDE");
        const int step = stride == nullptr ? 1 : std::max(1, std::atoi(stride));
        const auto others = everyNth(drawingsIn(folder), 0, static_cast<std::size_t>(step));
        files.insert(files.end(), others.begin(), others.end());
    }
    const char* half = std::getenv("HOLDFAST_HALF");
    return half == nullptr ? files : everyNth(files, half[0] == '1' ? 1 : 0, 2);
}

}  // namespace holdfast::testing
