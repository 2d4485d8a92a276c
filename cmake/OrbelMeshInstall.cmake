# What is installed: the libraries, their headers as they lie here, and the package files for CMake and pkg-config.

# The public headers. Every other header is the library's own affair.
set(tovan_util_headers
    platform/util/TovanBox.h platform/util/TovanColor.h platform/util/TovanColorTable.h platform/util/TovanString.h
    platform/util/TovanVector.h platform/util/tovan_util_api.h)
set(tovan_tarn_headers
    mesh/database/ElementType.h mesh/database/Handle.h mesh/database/MDBDefines.h mesh/database/MeshClipper.h
    mesh/database/MeshData.h mesh/database/MeshSkinner.h mesh/database/SMeshOwnerType.h mesh/database/Side.h
    mesh/database/SideToElement.h mesh/database/tovan_tarn_api.h)
set(reference_headers reference/tarn/MeshDatabase.h)
set(orbel_base_headers
    platform/base/EntitySelection.h platform/base/GDataGroup.h platform/base/GDataGroupEntity.h
    platform/base/GExtractEdges.h platform/base/GLabelMapper.h platform/base/GModel.h platform/base/GPicker.h
    platform/base/GPickerBase.h platform/base/GView.h platform/base/MultiCellPicker.h platform/base/OBPickUtil.h
    platform/base/OBUtil.h platform/base/PickBounds.h platform/base/PickCallbackNow.h platform/base/PickCircle.h
    platform/base/PickPolygon.h platform/base/PickRectangle.h platform/base/PickedEntity.h
    platform/base/orbel_base_api.h)
set(orbel_mesh_headers
    group/GMeshGroup.h highlight/GMeshHighlight.h highlight/GMeshHighlightProperties.h mesh/MeshQueries.h
    mesh/MeshVector.h mesh/orbel_mesh_api.h mesh/orbel_mesh_version.h model/GMeshDataGroup.h model/GMeshLabels.h
    model/GMeshModel.h model/GNodeGlypher.h pick/GMeshPicker.h pick/PickInterface.h pick/PickedElement.h
    pick/PickedMeshEntity.h pick/PickedNode.h)
if(ORBEL_MESH_PLATFORM STREQUAL "reference")
  list(APPEND tovan_tarn_headers ${reference_headers})
  set(installed_libraries tovan_util tovan_tarn orbel_base orbel_mesh)
else()
  # The host's libraries are the host's; their declarations come with ours.
  list(APPEND orbel_mesh_headers ${tovan_util_headers} ${tovan_tarn_headers} ${orbel_base_headers})
  set(installed_libraries orbel_mesh)
  # Installed, the library finds the host's where they were found now, also inside this tree.
  foreach(platform_library IN ITEMS orbel::base tovan::tarn tovan::util)
    get_target_property(is_imported ${platform_library} IMPORTED)
    if(is_imported)
      set_property(TARGET orbel_mesh APPEND PROPERTY INSTALL_RPATH "$<TARGET_FILE_DIR:${platform_library}>")
    endif()
  endforeach()
endif()

set(ORBEL_MESH_PUBLIC_HEADERS "")
foreach(library IN LISTS installed_libraries)
  list(TRANSFORM ${library}_headers PREPEND "${PROJECT_SOURCE_DIR}/")
  list(APPEND ORBEL_MESH_PUBLIC_HEADERS ${${library}_headers})
  target_sources(${library} PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${${library}_headers})
  # The folder of each header's own project-relative includes, and the one that hosts write <orbel_mesh/...> against.
  target_include_directories(${library} INTERFACE "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>"
                                                  "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/orbel_mesh>")
endforeach()

if(NOT ORBEL_MESH_INSTALL)
  return()
endif()

include(CMakePackageConfigHelpers)
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/orbel_mesh")

foreach(library IN LISTS installed_libraries)
  string(REGEX MATCH "^[a-z]+" namespace ${library})
  install(TARGETS ${library} EXPORT orbel_mesh_${namespace}
          LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
          FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/orbel_mesh")
endforeach()
# One export set for each namespace; orbel's refers to tovan's.
if(ORBEL_MESH_PLATFORM STREQUAL "reference")
  install(EXPORT orbel_mesh_tovan NAMESPACE tovan:: FILE tovan-targets.cmake DESTINATION "${package_dir}")
else()
  install(FILES "${PROJECT_SOURCE_DIR}/cmake/OrbelMeshExternalPlatform.cmake" DESTINATION "${package_dir}")
endif()
install(EXPORT orbel_mesh_orbel NAMESPACE orbel:: FILE orbel-targets.cmake DESTINATION "${package_dir}")

# Consumers need the modules that show in headers and no others.
string(REPLACE "VTK::" "" ORBEL_MESH_VTK_COMPONENTS "${ORBEL_MESH_VTK_PUBLIC}")
list(JOIN ORBEL_MESH_VTK_COMPONENTS " " ORBEL_MESH_VTK_COMPONENTS)
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/orbel_mesh-config.cmake.in"
                              "${PROJECT_BINARY_DIR}/package/orbel_mesh-config.cmake"
                              INSTALL_DESTINATION "${package_dir}" NO_SET_AND_CHECK_MACRO)
# Until version 1 a minor version may break what an earlier one promised.
write_basic_package_version_file("${PROJECT_BINARY_DIR}/package/orbel_mesh-config-version.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/package/orbel_mesh-config.cmake"
              "${PROJECT_BINARY_DIR}/package/orbel_mesh-config-version.cmake" DESTINATION "${package_dir}")

# VTK brings no pkg-config files, so ours names its folder and libraries.
get_target_property(vtk_include_dirs VTK::CommonCore INTERFACE_INCLUDE_DIRECTORIES)
set(ORBEL_MESH_PC_VTK_CFLAGS "")
foreach(dir IN LISTS vtk_include_dirs)
  string(APPEND ORBEL_MESH_PC_VTK_CFLAGS " -isystem ${dir}")
endforeach()
set(ORBEL_MESH_PC_VTK_LIBS "")
foreach(module IN LISTS ORBEL_MESH_VTK_PUBLIC)
  string(REPLACE "VTK::" "vtk" library "${module}")
  string(APPEND ORBEL_MESH_PC_VTK_LIBS " -l${library}-${VTK_MAJOR_VERSION}.${VTK_MINOR_VERSION}")
endforeach()
string(STRIP "${ORBEL_MESH_PC_VTK_CFLAGS}" ORBEL_MESH_PC_VTK_CFLAGS)
string(STRIP "${ORBEL_MESH_PC_VTK_LIBS}" ORBEL_MESH_PC_VTK_LIBS)
# The file finds the prefix from where it lies, so that an installed tree can be moved.
file(RELATIVE_PATH ORBEL_MESH_PC_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" ORBEL_MESH_PC_PREFIX "${ORBEL_MESH_PC_PREFIX}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/orbel_mesh.pc.in" "${PROJECT_BINARY_DIR}/package/orbel_mesh.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/package/orbel_mesh.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

if(TARGET orbel_view)
  file(RELATIVE_PATH libraries_from_programs "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(orbel_view PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_programs}")
  install(TARGETS orbel_view RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
