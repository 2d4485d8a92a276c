# Builds and runs the host in README.md, with the README's own build file, against the installed package.
include("${CMAKE_CURRENT_LIST_DIR}/Steps.cmake")

# The text between ```<language> and the next ```.
function(extract language file)
  file(READ "${SOURCE}/README.md" text)
  string(FIND "${text}" "```${language}\n" begin)
  if(begin EQUAL -1)
    message(FATAL_ERROR "README.md has no ${language}")
  endif()
  string(LENGTH "```${language}\n" length)
  math(EXPR begin "${begin} + ${length}")
  string(SUBSTRING "${text}" ${begin} -1 text)
  string(FIND "${text}" "```" end)
  string(SUBSTRING "${text}" 0 ${end} text)
  file(WRITE "${file}" "${text}")
endfunction()

file(REMOVE_RECURSE "${WORK}")
extract(cpp "${WORK}/source/host.cpp")
extract(cmake "${WORK}/source/CMakeLists.txt")
file(STRINGS "${WORK}/source/host.cpp" lines)
list(LENGTH lines count)
if(count LESS 15 OR NOT count LESS 40)
  message(FATAL_ERROR "the host in README.md has ${count} lines")
endif()
build("${WORK}/source" "${WORK}/build" -DCMAKE_PREFIX_PATH=${PREFIX}-moved)

execute_process(COMMAND ${DISPLAY} ${CMAKE_COMMAND} -E env "LD_PRELOAD=${PICTURE_INTERACTOR}" "${WORK}/build/host"
                OUTPUT_VARIABLE output TIMEOUT 60 COMMAND_ERROR_IS_FATAL ANY)
message(STATUS "${output}")
if(NOT output MATCHES "the block is seen")
  message(FATAL_ERROR "the host did not reach its event loop")
endif()
