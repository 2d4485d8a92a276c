# Builds a foreign platform, the library for it, and a host on both, each from what the one before has installed.
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")
build_and_install("${CMAKE_CURRENT_LIST_DIR}/foreign_platform" "${WORK}/platform" "${WORK}/platform-prefix"
                  -DDECLARATIONS=${SOURCE})
build_and_install("${SOURCE}" "${WORK}/library" "${WORK}/library-prefix" -DORBEL_MESH_PLATFORM=external
                  -DCMAKE_PREFIX_PATH=${WORK}/platform-prefix -DORBEL_MESH_WERROR=ON)
# Mesh files are the viewer's business, and the viewer the reference platform's.
file(STRINGS "${WORK}/library/CMakeCache.txt" file_libraries REGEX "^HDF5_")
if(file_libraries)
  message(FATAL_ERROR "the library alone looks for what reads files: ${file_libraries}")
endif()
foreach(file IN ITEMS include/orbel_mesh/reference/tarn/MeshDatabase.h ${LIBDIR}/liborbel_base.so)
  if(EXISTS "${WORK}/library-prefix/${file}")
    message(FATAL_ERROR "${file} belongs to the reference platform and was installed all the same")
  endif()
endforeach()
set(ENV{CMAKE_PREFIX_PATH} "${WORK}/platform-prefix:${WORK}/library-prefix")
build("${CMAKE_CURRENT_LIST_DIR}/foreign_host" "${WORK}/host" -DOWN_DATABASE=${SOURCE}/examples/own_database)
step(${DISPLAY} "${WORK}/host/foreign_host")
