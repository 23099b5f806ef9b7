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
