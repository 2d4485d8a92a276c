# Compares what a library exports with the list kept for it, or writes that list anew.
# cmake -DNM=... -DLIBRARY=... -DLIST=... [-DUPDATE=ON] -P check_symbols.cmake
execute_process(COMMAND "${NM}" -DC --defined-only --format=posix "${LIBRARY}"
                OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
# Names can hold semicolons and brackets, which lists would take apart; spaces are told from the columns by the type.
string(REGEX REPLACE " [A-Za-z] [0-9a-f]*( [0-9a-f]*)?\n" "\n" output "${output}")
string(REPLACE "[" "<bracket>" output "${output}")
string(REPLACE "]" "</bracket>" output "${output}")
string(REPLACE "\n" ";" symbols "${output}")
# Constructors and destructors come in several variants of one name.
list(REMOVE_ITEM symbols "")
list(SORT symbols)
list(REMOVE_DUPLICATES symbols)
list(JOIN symbols "\n" exported)
string(REPLACE "<bracket>" "[" exported "${exported}")
string(REPLACE "</bracket>" "]" exported "${exported}")

if(UPDATE)
  file(WRITE "${LIST}" "${exported}\n")
  return()
endif()

file(READ "${LIST}" listed)
if(NOT listed STREQUAL "${exported}\n")
  file(WRITE "${LIBRARY}.exported.txt" "${exported}\n")
  execute_process(COMMAND diff -U0 "${LIST}" "${LIBRARY}.exported.txt")
  message(FATAL_ERROR "${LIBRARY} does not export what ${LIST} lists. If the change is meant: build update_symbol_lists.")
endif()
