#pragma once

#include <string>

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace holdfast {

/// A shared library, loaded while this lives, to see what it exports.
class LoadedLibrary {
public:
#if defined(_WIN32)
    explicit LoadedLibrary(const std::string& path) : m_library(LoadLibraryA(path.c_str())) {}
    ~LoadedLibrary() {
        if (m_library != nullptr)
            FreeLibrary(m_library);
    }
    bool exports(const std::string& mangled) const {
        return GetProcAddress(m_library, mangled.c_str()) != nullptr;
    }
    static std::string whyNot() {
        return "Windows error " + std::to_string(GetLastError());
    }
#else
    explicit LoadedLibrary(const std::string& path) : m_library(dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL)) {}
    ~LoadedLibrary() {
        if (m_library != nullptr)
            dlclose(m_library);
    }
    bool exports(const std::string& mangled) const {
        return dlsym(m_library, mangled.c_str()) != nullptr;
    }
    static std::string whyNot() {
        return dlerror();
    }
#endif
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    bool isOpen() const {
        return m_library != nullptr;
    }

private:
#if defined(_WIN32)
    HMODULE m_library;
#else
    void* m_library;
#endif
};

}  // namespace holdfast
