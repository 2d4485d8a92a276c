# Builds a user of the installed package and runs it.
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")
build("${CMAKE_CURRENT_LIST_DIR}/consumer" "${WORK}" -DCMAKE_PREFIX_PATH=${PREFIX}-moved -DHEADERS=${PREFIX}-moved/include
      -DWANTED_VERSION=${MAJOR}.${MINOR} -DEXPECTED_VERSION=${VERSION})
step("${WORK}/consumer")
step("${WORK}/database_only")
