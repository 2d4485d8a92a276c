#pragma once

/// Marks what liborbel_base exports. Everything else in it is hidden.
#if defined(_WIN32)
#if defined(orbel_base_EXPORTS)
#define ORBEL_BASE_API __declspec(dllexport)
#else
#define ORBEL_BASE_API __declspec(dllimport)
#endif
#else
#define ORBEL_BASE_API __attribute__((visibility("default")))
#endif
