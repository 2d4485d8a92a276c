# VTK modules by user. PUBLIC ones show in installed headers.
set(ORBEL_MESH_VTK_PUBLIC VTK::CommonCore VTK::CommonDataModel VTK::CommonExecutionModel VTK::RenderingCore)
set(ORBEL_MESH_VTK_PRIVATE VTK::CommonMath VTK::FiltersCore VTK::FiltersGeometry)

set(components CommonCore CommonDataModel CommonExecutionModel CommonMath FiltersCore FiltersGeometry RenderingCore
               RenderingFreeType RenderingOpenGL2)
# A platform of the host's comes without the programs. Theirs; and by the readers of CGNS and Exodus their C libraries.
if(ORBEL_MESH_PLATFORM STREQUAL "reference"
   AND (ORBEL_MESH_BUILD_VIEWER OR ORBEL_MESH_BUILD_TESTS OR ORBEL_MESH_BUILD_BENCH OR ORBEL_MESH_BUILD_EXAMPLES))
  list(APPEND components FiltersExtraction FiltersGeneral FiltersSources FiltersVerdict IOCGNSReader IOExodus IOGeometry
       IOImage IOLegacy IOPLY IOXML InteractionStyle RenderingLabel RenderingUI)
endif()
find_package(VTK 9.1 REQUIRED COMPONENTS ${components})
unset(components)
