#pragma once

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "document/Document.h"
#include "formats/Uses.h"

namespace holdfast::formats {

// What goes wrong with files here is a FileError.

/// The bytes of a file. Throws for a file that is missing (naming one with a similar name beside it), a folder, or not
/// readable.
std::string readFile(const std::filesystem::path& path);
/// The bytes that come on standard input, to its end.
std::string readStandardInput();

/// Puts text into a file so that the file is at every moment either as it was or complete: written beside it under
/// another name, flushed to the disk, renamed. A symbolic link stays one; what it leads to is replaced or made. The
/// permissions of a file that is replaced stay. What is no regular file (a terminal, a pipe) is written to directly.
/// Throws; the file is then as it was, and nothing is left beside it.
void writeFile(const std::filesystem::path& path, std::string_view text);

/// A file that is to be written, with what goes into it.
struct NamedText {
    std::filesystem::path path;
    std::string text;
};

/// writeFile for several files that belong together: all are complete beside their places before the first is renamed,
/// and when one cannot be renamed those before it are put back, so that a full disk, a wrong name or a file that may
/// not be replaced leaves every one of them as it was. (Putting back takes a file system that can exchange two files.)
/// What else has to succeed is done between: when it throws, no file has changed.
void writeFiles(std::span<const NamedText> files, const std::function<void()>& beforeTheyArrive = {});

/// readFile and readJson; writeFile with the text of jsonText, of which only a piece at a time is in memory.
Document readDrawing(const std::filesystem::path& path);
void writeDrawing(const Document& document, const std::filesystem::path& path);

}  // namespace holdfast::formats
