#pragma once

/// Marks what libtovan_tarn exports. Everything else in it is hidden.
#if defined(_WIN32)
#if defined(tovan_tarn_EXPORTS)
#define TOVAN_TARN_API __declspec(dllexport)
#else
#define TOVAN_TARN_API __declspec(dllimport)
#endif
#else
#define TOVAN_TARN_API __attribute__((visibility("default")))
#endif
