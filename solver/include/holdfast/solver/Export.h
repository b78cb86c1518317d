#pragma once

/// Marks what programs may call. Everything else of the solver stays inside its library.
#if defined(_WIN32)
#if defined(HOLDFAST_SOLVER_BUILDING)
#define HOLDFAST_SOLVER_EXPORT __declspec(dllexport)
#else
#define HOLDFAST_SOLVER_EXPORT __declspec(dllimport)
#endif
#else
#define HOLDFAST_SOLVER_EXPORT __attribute__((visibility("default")))
#endif
