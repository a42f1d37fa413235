// How a symbol leaves the shared library that defines it, and how it enters the others.
//
// Every library of the house compiles with hidden visibility; what carries one of these macros,
// and nothing else, can be linked against.
#pragma once

#if defined(_WIN32)
#define RV_EXPORT __declspec(dllexport)
#define RV_IMPORT __declspec(dllimport)
#else
#define RV_EXPORT __attribute__((visibility("default")))
#define RV_IMPORT __attribute__((visibility("default")))
#endif

// CMake defines <target>_EXPORTS while it compiles that target's own sources.
#if defined(RVPlatform_EXPORTS)
#define RVPLATFORM_API RV_EXPORT
#else
#define RVPLATFORM_API RV_IMPORT
#endif
