# The command ./orbel, where everything is built: it passes arguments, output and status through and adds nothing.
set(picture "${BUILD}/../pictures/view.png")
unset(ENV{DISPLAY})

# Runs ./orbel with `arguments`; status, standard output and standard error must match.
function(expect status out err)
  execute_process(COMMAND "${SOURCE}/orbel" ${ARGN} WORKING_DIRECTORY "${SOURCE}/data" TIMEOUT 120
                  RESULT_VARIABLE found_status OUTPUT_VARIABLE found_out ERROR_VARIABLE found_err)
  if(NOT found_status EQUAL status OR NOT found_out MATCHES "${out}" OR NOT found_err MATCHES "${err}")
    message(FATAL_ERROR "orbel ${ARGN}\nstatus ${found_status}\nstandard output: ${found_out}\nstandard error: ${found_err}")
  endif()
  message(STATUS "as expected: orbel ${ARGN}")
endfunction()

expect(0 "^orbel_view ${VERSION} " "^$" view --version)
# A path that is relative to where the caller is, and JSON from the first character to the last.
expect(0 "^{.*}\n$" "^$" view --info samples/bridge_beams.vtk)
expect(1 "^$" "^orbel_view: [^\n]*no_such_file.vtu[^\n]*\n$" view --info no_such_file.vtu)
expect(2 "^$" "^orbel_view: [^\n]*\n$" view --no-such-option)
expect(0 "^{.*Superelement.*}\n$" "^$" view --info)
file(REMOVE "${picture}")
expect(0 "^$" "no display[^\n]*pictures/view.png\n$" view)
if(NOT EXISTS "${picture}")
  message(FATAL_ERROR "${picture} was not written")
endif()
expect(0 "view .*test.*bench" "^$" help)
expect(2 "^$" "view .*test.*bench")
expect(2 "^$" "view .*test.*bench" no_such_command)
