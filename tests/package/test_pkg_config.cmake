# Builds a user of the installed package with what pkg-config says, and nothing else.
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")
set(ENV{PKG_CONFIG_PATH} "${PREFIX}-moved/${LIBDIR}/pkgconfig")
function(ask_pkg_config result)
  execute_process(COMMAND pkg-config ${ARGN} orbel_mesh OUTPUT_VARIABLE answer OUTPUT_STRIP_TRAILING_WHITESPACE
                  COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(answer UNIX_COMMAND "${answer}")
  set(${result} "${answer}" PARENT_SCOPE)
endfunction()
ask_pkg_config(version --modversion)
if(NOT version STREQUAL VERSION)
  message(FATAL_ERROR "pkg-config says version ${version}, not ${VERSION}")
endif()
ask_pkg_config(flags --cflags --libs)
file(MAKE_DIRECTORY "${WORK}")
step(${CXX} -std=c++17 "-DEXPECTED_VERSION=\"${VERSION}\"" -Werror "${CMAKE_CURRENT_LIST_DIR}/consumer/main.cpp" -o "${WORK}/consumer"
     ${flags} "-Wl,-rpath,${PREFIX}-moved/${LIBDIR}")
step("${WORK}/consumer")
