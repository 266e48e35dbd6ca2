# A manual page formats without a warning. labsh's names the current
# assignment lists word for word as the shell's help prints them;
# labsh-diff's names every option of its usage text.
#   cmake -DGROFF=<groff> -DPAGE=<labsh.1> -DLABSH=<shell> -P manpage.cmake
#   cmake -DGROFF=<groff> -DPAGE=<labsh-diff.1> -DDIFF=<labsh-diff> -P manpage.cmake
execute_process(COMMAND "${GROFF}" -man -Tutf8 -ww -P-cbu "${PAGE}"
  RESULT_VARIABLE rc OUTPUT_VARIABLE page ERROR_VARIABLE warnings)
if(NOT rc EQUAL 0 OR NOT warnings STREQUAL "")
  message(FATAL_ERROR "groff (${rc}) on ${PAGE}:\n${warnings}")
endif()

# Pages fill their text to the width: compare with runs of blanks made
# one, and with the formatter's hyphen and minus glyphs made plain '-'.
function(flatten text out)
  string(ASCII 226 128 144 hyphen)  # U+2010 and U+2212 in UTF-8
  string(ASCII 226 136 146 minus)
  string(REPLACE "${hyphen}" "-" text "${text}")
  string(REPLACE "${minus}" "-" text "${text}")
  string(REGEX REPLACE "[ \t\n]+" " " text "${text}")
  string(STRIP "${text}" text)
  set(${out} "${text}" PARENT_SCOPE)
endfunction()
flatten("${page}" page)

if(DEFINED DIFF)
  execute_process(COMMAND "${DIFF}" -h TIMEOUT 30 RESULT_VARIABLE rc OUTPUT_VARIABLE usage)
  string(TOLOWER "${usage}" usage)
  string(REGEX MATCHALL "[ \n]-[-a-z]+" options "${usage}")
  if(NOT rc EQUAL 0 OR options STREQUAL "")
    message(FATAL_ERROR "labsh-diff -h printed no options (${rc}):\n${usage}")
  endif()
  string(TOLOWER " ${page} " page)
  foreach(option IN LISTS options)
    string(STRIP "${option}" option)
    if(NOT page MATCHES "[^-a-z]${option}[^-a-z]")
      message(FATAL_ERROR "the manual page lacks the option ${option}")
    endif()
  endforeach()
  return()
endif()

execute_process(COMMAND "${LABSH}" INPUT_FILE "${CMAKE_CURRENT_LIST_DIR}/help.input" TIMEOUT 30
  RESULT_VARIABLE rc OUTPUT_VARIABLE help)
string(REGEX MATCHALL "Cmds practica [0-9]+:[^\n]*" lists "${help}")
list(LENGTH lists n)
if(NOT rc EQUAL 0 OR n EQUAL 0)
  message(FATAL_ERROR "help printed no assignment lists (${rc}):\n${help}")
endif()

foreach(line IN LISTS lists)
  flatten("${line}" line)
  string(FIND "${page}" "${line} " at)
  if(at EQUAL -1)
    message(FATAL_ERROR "the manual page lacks: ${line}")
  endif()
endforeach()
