#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

/// The bytes of a file. Throws DrawingError for a file that is missing (naming one with a similar name beside it), a
/// folder, or not readable.
std::string readFile(const std::filesystem::path& path);

/// Puts text into a file so that the file is at every moment either as it was or complete: written beside it under
/// another name, flushed to the disk, renamed. A symbolic link stays one; what it leads to is replaced or made. The
/// permissions of a file that is replaced stay. What is no regular file (a terminal, a pipe) is written to directly.
/// Throws DrawingError; the file is then as it was, and nothing is left beside it.
void writeFile(const std::filesystem::path& path, std::string_view text);

/// A file that is to be written, with what goes into it.
struct NamedText {
    std::filesystem::path path;
    std::string text;
};

/// writeFile for several files that belong together: all are complete beside their places before the first is renamed,
/// so that a full disk or a wrong name leaves every one of them as it was.
void writeFiles(std::span<const NamedText> files);

/// readFile and readJson; writeFile with the text of jsonText, of which only a piece at a time is in memory.
Document readDrawing(const std::filesystem::path& path);
void writeDrawing(const Document& document, const std::filesystem::path& path);

}  // namespace holdfast::formats
