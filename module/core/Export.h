#pragma once

/// Marks the classes that hosts call. Everything else of the module stays inside it.
#if defined(_WIN32)
#if defined(HOLDFAST_BUILDING)
#define HOLDFAST_EXPORT __declspec(dllexport)
#else
#define HOLDFAST_EXPORT __declspec(dllimport)
#endif
#else
#define HOLDFAST_EXPORT __attribute__((visibility("default")))
#endif
