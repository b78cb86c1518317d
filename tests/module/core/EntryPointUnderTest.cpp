#if !defined(_WIN32)
#define _WIN32  // this translation unit sees nothing but the entry point
#endif
#include "core/EntryPoint.cpp"
