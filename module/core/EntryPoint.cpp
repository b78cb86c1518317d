#if defined(_WIN32)

#include <windows.h>

/// What the operating system's loader calls. The module keeps nothing per thread, so it asks not to be told of threads.
BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH)
        DisableThreadLibraryCalls(module);
    return TRUE;
}

#endif
