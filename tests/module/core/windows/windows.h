#pragma once

// As much of the operating system as the entry point sees, so that it can be run anywhere.

using BOOL = int;
using DWORD = unsigned long;
using LPVOID = void*;
using HINSTANCE = struct WindowsModule*;

#define WINAPI
#define TRUE 1
#define DLL_PROCESS_ATTACH 1

BOOL DisableThreadLibraryCalls(HINSTANCE module);
BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);
