#include "formats/TemporaryFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <set>

namespace holdfast::formats {

namespace {

/// The names of all temporary files. Neither is ever destroyed: another thread may ask while the process ends.
std::mutex& guard() {
    static auto* const mutex = new std::mutex;
    return *mutex;
}

std::set<std::string>& names() {
    static auto* const set = new std::set<std::string>;
    return *set;
}

}  // namespace

void endTemporaryFiles() {
    guard().lock();  // for good
    for (const std::string& name : names())
        ::unlink(name.c_str());
}

Undisturbed::Undisturbed() : m_lock(guard()) {}

TemporaryFile::TemporaryFile(const std::filesystem::path& beside) : m_path(beside.string() + ".XXXXXX") {
    const Undisturbed undisturbed;
    m_number = ::mkostemp(m_path.data(), O_CLOEXEC);
    const int error = errno;
    if (m_number >= 0)
        names().insert(m_path);
    errno = error;
}

TemporaryFile::~TemporaryFile() {
    if (m_number < 0)
        return;
    const Undisturbed undisturbed;
    if (m_target.empty() || m_former == Former::kept)
        ::unlink(m_path.c_str());
    names().erase(m_path);
    ::close(m_number);
}

bool TemporaryFile::moveTo(const std::filesystem::path& target, bool canComeBack, const Undisturbed& /*undisturbed*/) {
    m_former = Former::lost;
    if (canComeBack) {
        if (::renameat2(AT_FDCWD, m_path.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) == 0)
            m_former = Former::kept;
        else if (errno == ENOENT)
            m_former = Former::none;
        else if (errno == EPERM || errno == EACCES)
            return false;
    }
    if (m_former != Former::kept && ::rename(m_path.c_str(), target.c_str()) != 0)
        return false;
    m_target = target;
    return true;
}

void TemporaryFile::moveBack(const Undisturbed& /*undisturbed*/) noexcept {
    if (m_target.empty() || m_former == Former::lost)
        return;
    if (m_former == Former::kept)
        ::renameat2(AT_FDCWD, m_path.c_str(), AT_FDCWD, m_target.c_str(), RENAME_EXCHANGE);
    else
        ::rename(m_target.c_str(), m_path.c_str());
    m_target.clear();
}

}  // namespace holdfast::formats
