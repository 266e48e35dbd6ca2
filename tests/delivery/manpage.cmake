# The manual page formats without a warning, and it names the current
# assignment lists word for word as the shell's help prints them.
#   cmake -DGROFF=<groff> -DPAGE=<labsh.1> -DLABSH=<shell> -P manpage.cmake
execute_process(COMMAND "${GROFF}" -man -Tutf8 -ww -P-cbu "${PAGE}"
  RESULT_VARIABLE rc OUTPUT_VARIABLE page ERROR_VARIABLE warnings)
if(NOT rc EQUAL 0 OR NOT warnings STREQUAL "")
  message(FATAL_ERROR "groff (${rc}) on ${PAGE}:\n${warnings}")
endif()

execute_process(COMMAND "${LABSH}" INPUT_FILE "${CMAKE_CURRENT_LIST_DIR}/help.input" TIMEOUT 30
  RESULT_VARIABLE rc OUTPUT_VARIABLE help)
string(REGEX MATCHALL "Cmds practica [0-9]+:[^\n]*" lists "${help}")
list(LENGTH lists n)
if(NOT rc EQUAL 0 OR n EQUAL 0)
  message(FATAL_ERROR "help printed no assignment lists (${rc}):\n${help}")
endif()

# The page fills the lists to its width: compare with runs of blanks made
# one, and with the formatter's hyphen and minus glyphs made plain '-'.
function(flatten text out)
  string(REPLACE "\u2010" "-" text "${text}")
  string(REPLACE "\u2212" "-" text "${text}")
  string(REGEX REPLACE "[ \t\n]+" " " text "${text}")
  string(STRIP "${text}" text)
  set(${out} "${text}" PARENT_SCOPE)
endfunction()
flatten("${page}" page)
foreach(line IN LISTS lists)
  flatten("${line}" line)
  string(FIND "${page}" "${line} " at)
  if(at EQUAL -1)
    message(FATAL_ERROR "the manual page lacks: ${line}")
  endif()
endforeach()
