# Installs a build under a throw-away prefix and checks what lands there: the
# shell, labsh-diff, their manual pages and the assignment scripts and
# nothing else; a shell that starts and leaves with status 0, and a labsh-diff
# that finds the installed shell and scripts by itself.
#   cmake -DBUILD_DIR=<build> -DPREFIX=<dir> -DBINDIR=bin -DMANDIR=share/man -DDATADIR=share -P install.cmake
foreach(v BUILD_DIR PREFIX BINDIR MANDIR DATADIR)
  if(NOT DEFINED ${v})
    message(FATAL_ERROR "${v} not given")
  endif()
endforeach()

# A DESTDIR from the caller's environment would send the files elsewhere.
unset(ENV{DESTDIR})
file(REMOVE_RECURSE "${PREFIX}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${PREFIX}"
  RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "cmake --install failed (${rc}):\n${out}${err}")
endif()

set(expected "${BINDIR}/labsh" "${MANDIR}/man1/labsh.1" "${BINDIR}/labsh-diff" "${MANDIR}/man1/labsh-diff.1")
foreach(n 0 1 2 3)
  list(APPEND expected "${DATADIR}/labsh/practicas/p${n}.txt")
endforeach()
file(GLOB_RECURSE installed LIST_DIRECTORIES false RELATIVE "${PREFIX}" "${PREFIX}/*")
list(SORT installed)
list(SORT expected)
if(NOT installed STREQUAL expected)
  message(FATAL_ERROR "installed files: ${installed}\nexpected: ${expected}")
endif()

# Run from outside the build tree, so only the installed copy can answer.
set(work "${PREFIX}.run")
file(REMOVE_RECURSE "${work}")
file(MAKE_DIRECTORY "${work}")
file(WRITE "${work}/input" "numserie\nexit\nnumserie\n")
execute_process(COMMAND "${PREFIX}/${BINDIR}/labsh" -p
  INPUT_FILE "${work}/input" WORKING_DIRECTORY "${work}" TIMEOUT 30
  RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
execute_process(COMMAND "${PREFIX}/${BINDIR}/labsh-diff" --practica 0 "${PREFIX}/${BINDIR}/labsh"
  WORKING_DIRECTORY "${work}" TIMEOUT 60 RESULT_VARIABLE drc OUTPUT_VARIABLE dout ERROR_VARIABLE derr)
file(REMOVE_RECURSE "${work}" "${PREFIX}")
if(NOT drc STREQUAL "0")
  message(FATAL_ERROR "installed labsh-diff on the installed labsh ended with ${drc}\n${dout}${derr}")
endif()
if(NOT rc STREQUAL "0")
  message(FATAL_ERROR "installed labsh ended with ${rc}\n${out}${err}")
endif()
# exit must end the shell: the second numserie is never read.
string(REGEX MATCHALL "numserie del shell" seen "${out}")
list(LENGTH seen n)
if(NOT out MATCHES "^Iniciando shell\\.\\.\n" OR NOT n EQUAL 1 OR NOT err STREQUAL "")
  message(FATAL_ERROR "unexpected output of the installed labsh:\n${out}\nstderr:\n${err}")
endif()
