# The shell needs nothing of the C++ runtime: no operator new or delete, no
# exception support, no static-object guards, no out-of-line function of the
# standard library. Then none of it is loaded or initialised when the shell
# starts.
#   cmake -DNM=<nm> -DLABSH=<shell> [-DCONFIG=<build type>] -P runtime.cmake
# Only optimised builds are held to this (see the message).
if(CONFIG STREQUAL "Debug")
  message("skipped: a Debug build calls the C++ runtime from the standard library's inline functions")
  return()
endif()
if(NOT NM)
  message("skipped: no nm to read the symbols of ${LABSH}")
  return()
endif()
execute_process(COMMAND "${NM}" "${LABSH}" RESULT_VARIABLE rc OUTPUT_VARIABLE symbols ERROR_VARIABLE err)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "${NM} ${LABSH} failed (${rc}):\n${err}")
endif()

# Mangled names, with the extra leading underscore some systems add. Entry
# points of the runtime count whether defined (linked in) or not; a standard
# library name counts only when the shell needs it from outside: inline
# functions and templates instantiated in the shell's own code are its own.
set(runtime "_?_Z(nw|na|dl|da)[jmy]|_?__cxa_|_?__gxx_personality|_?_Unwind_|_?_ZSt9terminate|_?_ZTVN10__cxxabiv1")
set(library "_?_Z(N|NK)?St")
string(REPLACE "\n" ";" lines "${symbols}")
set(found "")
foreach(line IN LISTS lines)
  if(line MATCHES "^[0-9a-fA-F ]* ([A-Za-z?-]) (.*)$")
    set(kind "${CMAKE_MATCH_1}")
    set(name "${CMAKE_MATCH_2}")
    # These two belong to the C library, which builds atexit on them and
    # whose start files call them in any program.
    if(name MATCHES "^_?__cxa_(finalize|atexit)")
    elseif(name MATCHES "^(${runtime})" OR (kind STREQUAL "U" AND name MATCHES "^(${library})"))
      list(APPEND found "${line}")
    endif()
  endif()
endforeach()
if(found)
  string(REPLACE ";" "\n" found "${found}")
  message(FATAL_ERROR "${LABSH} uses the C++ runtime:\n${found}")
endif()
