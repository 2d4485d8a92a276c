#pragma once

/// Marks what liborbel_mesh exports. Everything else in it is hidden.
#if defined(_WIN32)
#if defined(orbel_mesh_EXPORTS)
#define ORBEL_MESH_API __declspec(dllexport)
#else
#define ORBEL_MESH_API __declspec(dllimport)
#endif
#else
#define ORBEL_MESH_API __attribute__((visibility("default")))
#endif
