#pragma once

/// The library's version, in three numbers and as text. The one place that it is written down: the build, the package
/// files and the programs take it from here.
#define ORBEL_MESH_VERSION_MAJOR 0
#define ORBEL_MESH_VERSION_MINOR 1
#define ORBEL_MESH_VERSION_PATCH 0
#define ORBEL_MESH_VERSION "0.1.0"
