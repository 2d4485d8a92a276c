# VTK modules by user. PUBLIC ones show in installed headers.
set(ORBEL_MESH_VTK_PUBLIC VTK::CommonCore VTK::CommonDataModel VTK::CommonExecutionModel VTK::RenderingCore)
set(ORBEL_MESH_VTK_PRIVATE VTK::CommonMath VTK::FiltersCore VTK::FiltersGeometry)

set(components CommonCore CommonDataModel CommonExecutionModel CommonMath FiltersCore FiltersGeometry RenderingCore
               RenderingFreeType RenderingOpenGL2)
if(ORBEL_MESH_BUILD_VIEWER OR ORBEL_MESH_BUILD_TESTS OR ORBEL_MESH_BUILD_BENCH OR ORBEL_MESH_BUILD_EXAMPLES)
  list(APPEND components CommonColor CommonTransforms FiltersExtraction FiltersGeneral FiltersSources FiltersVerdict
       IOCGNSReader IOExodus IOGeometry IOImage IOLegacy IOPLY IOXML InteractionStyle InteractionWidgets RenderingAnnotation
       RenderingLabel RenderingOpenGL2 RenderingUI TestingCore TestingRendering)
endif()
find_package(VTK 9.1 REQUIRED COMPONENTS ${components})
unset(components)
