#pragma once

/// Marks what libtovan_util exports. Everything else in it is hidden.
#if defined(_WIN32)
#if defined(tovan_util_EXPORTS)
#define TOVAN_UTIL_API __declspec(dllexport)
#else
#define TOVAN_UTIL_API __declspec(dllimport)
#endif
#else
#define TOVAN_UTIL_API __attribute__((visibility("default")))
#endif
