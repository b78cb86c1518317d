#include "formats/FileIo.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <functional>
#include <memory>
#include <system_error>
#include <vector>

#include "document/text/Suggest.h"
#include "formats/FileError.h"
#include "formats/TemporaryFiles.h"
#include "formats/json/JsonReader.h"
#include "formats/json/JsonWriter.h"

namespace holdfast::formats {
namespace {

namespace fs = std::filesystem;

std::string reasonOf(int code) {
    return std::generic_category().message(code);
}

[[noreturn]] void fail(const fs::path& path, std::string found, std::string expected) {
    throw FileError(FileError::Work::writing, path.string(), std::move(found), std::move(expected));
}

[[noreturn]] void failReading(const fs::path& path, std::string found, std::string expected) {
    throw FileError(FileError::Work::reading, path.string(), std::move(found), std::move(expected));
}

/// An open file, closed at the end of its scope.
class Descriptor {
public:
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (m_number >= 0)
            ::close(m_number);
    }

    int number() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }

private:
    int m_number;
};

std::string similarNameBeside(const fs::path& path) {
    std::error_code error;
    std::vector<std::string> names;
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error))
        names.push_back(it->path().filename().string());
    const std::vector<std::string_view> views(names.begin(), names.end());
    return suggestion(path.filename().string(), views);
}

bool writeAll(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(file, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// Asked for once: the system tells it only to those who change it, and another thread would see that.
mode_t newFileMask() {
    static const mode_t mask = [] {
        const mode_t now = ::umask(0);
        ::umask(now);
        return now;
    }();
    return mask;
}

/// What the new file's permissions are to be: the old file's, or those of any new file.
mode_t permissionsFor(const fs::path& target) {
    struct stat status {};
    if (::stat(target.c_str(), &status) == 0)
        return status.st_mode & 07777U;
    return 0666U & ~newFileMask();
}

void flushFolder(const fs::path& target) {
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    const Descriptor directory(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.isOpen())
        ::fsync(directory.number());
}

void refuseMissingFolder(const fs::path& path, const fs::path& target) {
    const fs::path folder = target.parent_path();
    std::error_code error;
    if (folder.empty() || fs::is_directory(folder, error))
        return;
    fail(path,
         fs::exists(folder, error) ? "a file where its folder should be" : "no folder " + inQuotes(folder.string()),
         "a folder that exists; create it first");
}

/// Where a name leads when the symbolic links in its place are followed, also when nothing stands there yet.
fs::path behindLinks(const fs::path& path) {
    constexpr int longestChain = 40;  // as long as the system itself follows
    std::error_code error;
    fs::path target = path;
    for (int links = 0; fs::is_symlink(fs::symlink_status(target, error)); ++links) {
        if (links == longestChain)
            fail(path, "a symbolic link that leads in a circle", "the name of a file");
        const fs::path next = fs::read_symlink(target, error);
        target = next.is_absolute() ? next : target.parent_path() / next;
    }
    return target;
}

using Put = std::function<void(std::string_view)>;
/// Puts a whole text, piece by piece; the same one whenever it is asked.
using Text = std::function<void(const Put& put)>;

/// How far a text came that was written into an open file.
struct Written {
    bool isWhole = true;
    int error = 0;
    std::size_t size = 0;  // of the text
};

Written writeText(int file, const Text& text) {
    Written written;
    text([&](std::string_view piece) {
        written.size += piece.size();
        if (written.isWhole && !writeAll(file, piece)) {
            written.isWhole = false;
            written.error = errno;
        }
    });
    return written;
}

/// What cannot be replaced gets nothing of a text that turns out to be broken.
void writeThrough(const fs::path& path, const Text& text) {
    std::string whole;
    text([&](std::string_view piece) { whole += piece; });
    const Descriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (!file.isOpen() || !writeAll(file.number(), whole))
        fail(path, reasonOf(errno), "a place that takes " + std::to_string(whole.size()) + " bytes");
}

/// One file on its way to its place.
class Arrival {
public:
    Arrival(const fs::path& path, const Text& text) : m_path(path), m_target(path) {
        if (m_path.empty())
            fail("(no name)", "an empty file name", "the name of a file");
        m_target = behindLinks(m_path);
        refuseMissingFolder(m_path, m_target);
        std::error_code error;
        const fs::file_status status = fs::status(m_target, error);
        if (fs::is_directory(status))
            fail(m_path, "a folder", "the name of a file");
        if (fs::exists(status) && !fs::is_regular_file(status)) {
            writeThrough(m_path, text);
            return;
        }
        if (fs::exists(status) && ::faccessat(AT_FDCWD, m_target.c_str(), W_OK, AT_EACCESS) != 0)
            fail(m_path, reasonOf(errno), "a file that may be written");
        m_beside = std::make_unique<TemporaryFile>(m_target);
        fill(text);
    }

    void arrive(bool canComeBack, const Undisturbed& undisturbed) {
        if (m_beside != nullptr && !m_beside->moveTo(m_target, canComeBack, undisturbed))
            fail(m_path, reasonOf(errno), "a name that may be replaced; the file is as it was");
    }

    void goBack(const Undisturbed& undisturbed) noexcept {
        if (m_beside != nullptr)
            m_beside->moveBack(undisturbed);
    }

    void flush() const {
        if (m_beside != nullptr)
            flushFolder(m_target);
    }

private:
    void fill(const Text& text) {
        if (m_beside->number() < 0)
            fail(m_path, reasonOf(errno), "a folder in which files may be made");
        const int file = m_beside->number();
        Written written = writeText(file, text);
        if (written.isWhole && (::fchmod(file, permissionsFor(m_target)) != 0 || ::fsync(file) != 0))
            written = {false, errno, written.size};
        if (!written.isWhole)
            fail(m_path, reasonOf(written.error),
                 "room for " + std::to_string(written.size) + " bytes; the file is as it was");
    }

    fs::path m_path, m_target;
    std::unique_ptr<TemporaryFile> m_beside;  // null: written already, to what cannot be replaced
};

/// All of them or, when one may not be replaced, none.
void arriveTogether(std::vector<Arrival>& arrivals) {
    {
        const Undisturbed undisturbed;
        try {
            for (Arrival& arrival : arrivals)
                arrival.arrive(arrivals.size() > 1, undisturbed);
        } catch (...) {
            for (Arrival& arrival : arrivals)
                arrival.goBack(undisturbed);
            throw;
        }
    }
    for (const Arrival& arrival : arrivals)
        arrival.flush();
}

std::string readToEnd(int file, const fs::path& path) {
    std::string text;
    struct stat status {};
    if (::fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0)
        text.reserve(static_cast<std::size_t>(status.st_size));
    std::array<char, 65536> buffer{};
    for (;;) {
        const ssize_t count = ::read(file, buffer.data(), buffer.size());
        if (count == 0)
            return text;
        if (count > 0)
            text.append(buffer.data(), static_cast<std::size_t>(count));
        else if (errno != EINTR)
            failReading(path, reasonOf(errno), "a file that can be read to its end");
    }
}

}  // namespace

std::string readFile(const fs::path& path) {
    std::error_code error;
    if (fs::is_directory(path, error))
        failReading(path, "a folder", "a file");
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen() && errno == ENOENT)
        failReading(path, "no such file", "the name of a file" + similarNameBeside(path));
    if (!file.isOpen())
        failReading(path, reasonOf(errno), "a file that may be read");
    return readToEnd(file.number(), path);
}

std::string readStandardInput() {
    return readToEnd(STDIN_FILENO, "standard input");
}

void writeFiles(std::span<const NamedText> files, const std::function<void()>& beforeTheyArrive) {
    std::vector<Arrival> arrivals;
    arrivals.reserve(files.size());
    for (const NamedText& file : files)
        arrivals.emplace_back(file.path, [&file](const Put& put) { put(file.text); });
    if (beforeTheyArrive)
        beforeTheyArrive();
    arriveTogether(arrivals);
}

void writeFile(const fs::path& path, std::string_view text) {
    std::vector<Arrival> arrivals;
    arrivals.emplace_back(path, [text](const Put& put) { put(text); });
    arriveTogether(arrivals);
}

Document readDrawing(const fs::path& path) {
    return readJson(readFile(path), path.string());
}

void writeDrawing(const Document& document, const fs::path& path) {
    std::vector<Arrival> arrivals;
    arrivals.emplace_back(path, [&document](const Put& put) { writeJson(document, put); });
    arriveTogether(arrivals);
}

}  // namespace holdfast::formats
