# Installs the package for the tests that use it, and looks for what must be there.
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")
file(REMOVE_RECURSE "${PREFIX}" "${PREFIX}-moved")
step(${CMAKE_COMMAND} --install "${BUILD}" --prefix "${PREFIX}")
# An installed tree works wherever it is put.
file(RENAME "${PREFIX}" "${PREFIX}-moved")
if(HAS_VIEWER)
  step("${PREFIX}-moved/bin/orbel_view" --version)
endif()
foreach(file IN ITEMS include/orbel_mesh/mesh/MeshVector.h include/orbel_mesh/reference/tarn/MeshDatabase.h
                      share/doc/orbel_mesh/LICENSE)
  if(NOT EXISTS "${PREFIX}-moved/${file}")
    message(FATAL_ERROR "${file} was not installed")
  endif()
endforeach()
