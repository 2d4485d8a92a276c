# Builds a user that takes in the sources, as add_subdirectory and FetchContent do, and runs it.
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")
build("${CMAKE_CURRENT_LIST_DIR}/consumer" "${WORK}" -DSOURCE_TREE=${SOURCE} -DEXPECTED_VERSION=${VERSION})
step("${WORK}/consumer")
