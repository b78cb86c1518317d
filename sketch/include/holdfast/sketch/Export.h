#pragma once

/// Marks what programs may call. Everything else of the engine stays inside its library.
#if defined(_WIN32)
#if defined(HOLDFAST_SKETCH_BUILDING)
#define HOLDFAST_SKETCH_EXPORT __declspec(dllexport)
#else
#define HOLDFAST_SKETCH_EXPORT __declspec(dllimport)
#endif
#else
#define HOLDFAST_SKETCH_EXPORT __attribute__((visibility("default")))
#endif
