#pragma once

#include <filesystem>
#include <mutex>
#include <string>

#include "formats/Uses.h"

namespace holdfast::formats {

/// Takes away all temporary files, and whoever makes or moves one waits from now on: the process is about to end. Files
/// that belong together are in place all or none. Not for a signal handler, which may not wait.
void endTemporaryFiles();

/// While it lives endTemporaryFiles() waits: what is done meanwhile is done whole. Not to be nested.
class Undisturbed {
public:
    Undisturbed();

private:
    std::unique_lock<std::mutex> m_lock;
};

/// A file of an odd name beside another one, which is away again at the end of its scope unless it was moved.
class TemporaryFile {
public:
    /// A file that could not be made has the number -1, and errno tells why.
    explicit TemporaryFile(const std::filesystem::path& beside);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    /// The open file.
    int number() const { return m_number; }
    const std::string& path() const { return m_path; }

    /// Takes the place of a file, or that of none, whole and at once. What can come back keeps what stood there until
    /// the end of its scope, as far as the file system can exchange files; `undisturbed` shows that the process does
    /// not end between this and what belongs to it. False: nothing has changed, and errno tells why.
    bool moveTo(const std::filesystem::path& target, bool canComeBack, const Undisturbed& undisturbed);
    /// What moveTo did is undone, where it can come back.
    void moveBack(const Undisturbed& undisturbed) noexcept;

private:
    std::string m_path;
    std::filesystem::path m_target;  // once it has been moved
    int m_number = -1;
    enum class Former {
        none,
        kept,
        lost
    } m_former = Former::none;  // what stood in the target; kept: now called m_path
};

}  // namespace holdfast::formats
