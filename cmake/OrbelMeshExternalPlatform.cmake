# The host's own platform libraries, as the targets tovan::util, tovan::tarn and orbel::base. Used by the build and by
# the installed package. A target that exists already is taken as it is; else the library is looked for under
# CMAKE_PREFIX_PATH, or taken from ORBEL_MESH_<NAME>_LIBRARY where that is set.
#
# Their headers are those of platform/ and mesh/database/, which declare what the host's libraries must define.

function(orbel_mesh_find_platform_library target library)
  if(TARGET ${target})
    return()
  endif()
  string(TOUPPER "ORBEL_MESH_${library}_LIBRARY" variable)
  find_library(${variable} NAMES ${library} DOC "The host's lib${library}")
  if(NOT ${variable})
    message(FATAL_ERROR "The host's lib${library} was not found: add its folder to CMAKE_PREFIX_PATH or set ${variable}.")
  endif()
  add_library(${target} UNKNOWN IMPORTED)
  set_target_properties(${target} PROPERTIES IMPORTED_LOCATION "${${variable}}")
  target_link_libraries(${target} INTERFACE ${ARGN})
  # Visible where the package was found, and below.
  set_target_properties(${target} PROPERTIES IMPORTED_GLOBAL TRUE)
endfunction()

orbel_mesh_find_platform_library(tovan::util tovan_util)
orbel_mesh_find_platform_library(tovan::tarn tovan_tarn tovan::util)
orbel_mesh_find_platform_library(orbel::base orbel_base tovan::util)
