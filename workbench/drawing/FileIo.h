#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "workbench/drawing/Document.h"

namespace holdfast {

/// The bytes of a file. Throws DrawingError for a file that is missing (naming one with a similar name beside it), a
/// folder, or not readable.
std::string readFile(const std::filesystem::path& path);

/// Puts text into a file so that the file is at every moment either as it was or complete: written beside it under
/// another name, flushed to the disk, renamed. A symbolic link stays one; its target is replaced. The permissions of a
/// file that is replaced stay. What is no regular file (a terminal, a pipe) is written to directly.
/// Throws DrawingError; the file is then as it was, and nothing is left beside it.
void writeFile(const std::filesystem::path& path, std::string_view text);

/// readFile and readJson, writeFile and jsonText.
Document readDrawing(const std::filesystem::path& path);
void writeDrawing(const Document& document, const std::filesystem::path& path);

}  // namespace holdfast
