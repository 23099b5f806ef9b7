// KALO_EXPORT marks what the shared library exports; everything else stays hidden.
// A static build on Windows defines KALO_STATIC, the build of the library itself KALO_BUILDING.
#pragma once

#if defined(_WIN32) && !defined(KALO_STATIC)
#if defined(KALO_BUILDING)
#define KALO_EXPORT __declspec(dllexport)
#else
#define KALO_EXPORT __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define KALO_EXPORT __attribute__((visibility("default")))
#else
#define KALO_EXPORT
#endif

// Private members of an exported class that no caller's code can reach.
#if defined(__GNUC__) && !defined(_WIN32)
#define KALO_LOCAL __attribute__((visibility("hidden")))
#else
#define KALO_LOCAL
#endif
