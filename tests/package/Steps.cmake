# What the package tests have in common: each is a script of steps, and the first that fails ends it.
set(toolchain -G Ninja "-DCMAKE_BUILD_TYPE=Release" "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}")

function(step)
  execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Configures and builds afresh.
function(build source folder)
  file(REMOVE_RECURSE "${folder}")
  step(${CMAKE_COMMAND} -S "${source}" -B "${folder}" ${toolchain} ${ARGN})
  step(${CMAKE_COMMAND} --build "${folder}")
endfunction()

function(build_and_install source folder prefix)
  build("${source}" "${folder}" ${ARGN})
  file(REMOVE_RECURSE "${prefix}")
  step(${CMAKE_COMMAND} --install "${folder}" --prefix "${prefix}")
endfunction()
