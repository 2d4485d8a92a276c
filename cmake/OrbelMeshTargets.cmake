# What every target of this project has in common.

# Lets sources and hosts in this tree write <orbel_mesh/mesh/...>, as hosts of the installed package do.
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/include")
file(CREATE_LINK "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}/include/orbel_mesh" SYMBOLIC)

function(orbel_mesh_configure_target target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF CXX_VISIBILITY_PRESET hidden
                                             VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>"
                                              "$<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>")
  # No contraction of a * b + c: the same results on every machine.
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Woverloaded-virtual -Wshadow -Wsuggest-override
                                           -ffp-contract=off)
  if(ORBEL_MESH_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(ORBEL_MESH_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-omit-frame-pointer
                                             -fno-sanitize-recover=undefined)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  endif()
endfunction()

# A shared library of the package: versioned, known outside the build as `namespace::name` and inside by both names. It
# exports what cmake/exports/<target>.map lists and nothing else. Hidden visibility alone is not enough: inline functions
# of VTK's exported classes would leave it as weak symbols, VTK's libraries would bind to them, and dlclose would no
# longer unload it.
function(orbel_mesh_add_shared_library target)
  cmake_parse_arguments(arg "" "EXPORT_NAME" "SOURCES" ${ARGN})
  string(REPLACE "::" ";" names "${arg_EXPORT_NAME}")
  list(GET names 1 name)
  add_library(${target} SHARED ${arg_SOURCES})
  add_library(${arg_EXPORT_NAME} ALIAS ${target})
  orbel_mesh_configure_target(${target})
  # Installed, it looks beside itself and where the libraries outside this build were found: a VTK in a folder of its
  # own, a host's platform.
  # Until version 1 every minor version may change the binary interface.
  set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} EXPORT_NAME ${name} INSTALL_RPATH "$ORIGIN"
                                             INSTALL_RPATH_USE_LINK_PATH ON
                                             SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
  set(map "${PROJECT_SOURCE_DIR}/cmake/exports/${target}.map")
  target_link_options(${target} PRIVATE -Wl,--no-undefined "-Wl,--version-script=${map}")
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${map}")
endfunction()

# An executable that draws owns the rendering back end: without it VTK draws nothing and says nothing.
function(orbel_mesh_add_rendering_backend target)
  target_link_libraries(${target} PRIVATE VTK::RenderingOpenGL2 VTK::RenderingFreeType VTK::InteractionStyle)
  vtk_module_autoinit(TARGETS ${target} MODULES VTK::RenderingOpenGL2 VTK::RenderingFreeType VTK::InteractionStyle)
  if(ORBEL_MESH_SANITIZE)
    target_sources(${target} PRIVATE "${PROJECT_SOURCE_DIR}/tests/support/keep_libraries_loaded.cpp")
    target_link_options(${target} PRIVATE -Wl,--export-dynamic-symbol=dlclose)
  endif()
endfunction()
