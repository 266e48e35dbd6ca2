# Line editing at a terminal through editline, when it is there: found with
# pkg-config (libedit), or as histedit.h and a library named edit where no
# pkg-config file is installed (macOS). Without it the shell reads plain
# lines at a terminal too. Sets LABSH_CON_EDITLINE.
#
# The shell is not linked with the library: it loads it when a line is first
# read at a terminal, so a script or a pipe starts without it (and without the
# terminal libraries it pulls in). Only its header is needed to build.
set(LABSH_CON_EDITLINE OFF)
if(NOT LABSH_EDITLINE)
  message(STATUS "labsh: editline turned off (LABSH_EDITLINE=OFF): lines are read without editing")
  return()
endif()

find_package(PkgConfig QUIET)
if(PKG_CONFIG_FOUND)
  pkg_check_modules(LIBEDIT QUIET libedit)
endif()
set(labsh_libedit "")
if(LIBEDIT_FOUND)
  set(labsh_editline_includes ${LIBEDIT_INCLUDE_DIRS})
  foreach(l ${LIBEDIT_LINK_LIBRARIES})
    get_filename_component(n ${l} NAME)
    if(n MATCHES "^(lib)?edit[.]")
      set(labsh_libedit ${l})
    endif()
  endforeach()
else()
  find_path(LABSH_HISTEDIT_DIR histedit.h)
  find_library(LABSH_LIBEDIT edit)
  if(LABSH_HISTEDIT_DIR AND LABSH_LIBEDIT)
    set(labsh_editline_includes ${LABSH_HISTEDIT_DIR})
    set(labsh_libedit ${LABSH_LIBEDIT})
  endif()
endif()
if(NOT labsh_libedit)
  message(STATUS "labsh: editline not found (libedit-dev): lines are read without editing")
  return()
endif()

# The name to load the library by: the one a program linked with it would
# record, so the dynamic linker finds it where it would (an ELF SONAME, the
# install name of a macOS library or of its SDK stub). Failing that, the
# library found here, by its full path.
function(labsh_nombre_de_carga libreria salida)
  get_filename_component(real ${libreria} REALPATH)
  set(nombre "")
  if(real MATCHES "[.]tbd$")
    file(STRINGS ${real} lineas REGEX "install-name:")
    if(lineas MATCHES "install-name: *'?([^' ]+)")
      set(nombre ${CMAKE_MATCH_1})
    endif()
  elseif(APPLE)
    find_program(LABSH_OTOOL otool)
    if(LABSH_OTOOL)
      execute_process(COMMAND ${LABSH_OTOOL} -D ${real} OUTPUT_VARIABLE texto ERROR_QUIET)
      if(texto MATCHES ":\n([^\n]+)")
        set(nombre ${CMAKE_MATCH_1})
      endif()
    endif()
  else()
    set(readelf ${CMAKE_READELF})
    set(objdump ${CMAKE_OBJDUMP})
    if(NOT readelf)
      find_program(LABSH_READELF readelf)
      set(readelf ${LABSH_READELF})
    endif()
    if(NOT objdump)
      find_program(LABSH_OBJDUMP objdump)
      set(objdump ${LABSH_OBJDUMP})
    endif()
    if(readelf)
      execute_process(COMMAND ${readelf} -d ${real} OUTPUT_VARIABLE texto ERROR_QUIET)
      if(texto MATCHES "soname: \\[([^]]+)\\]")
        set(nombre ${CMAKE_MATCH_1})
      endif()
    endif()
    if(NOT nombre AND objdump)
      execute_process(COMMAND ${objdump} -p ${real} OUTPUT_VARIABLE texto ERROR_QUIET)
      if(texto MATCHES "SONAME +([^ \n]+)")
        set(nombre ${CMAKE_MATCH_1})
      endif()
    endif()
  endif()
  if(NOT nombre)
    set(nombre ${real})
  endif()
  set(${salida} ${nombre} PARENT_SCOPE)
endfunction()
labsh_nombre_de_carga(${labsh_libedit} labsh_editline_nombre)

# Editline versions differ in what the function that reads a character
# receives: a wide character in the current ones, a byte in older ones.
include(CheckCXXSourceCompiles)
set(CMAKE_REQUIRED_INCLUDES ${labsh_editline_includes})
set(CMAKE_REQUIRED_QUIET ON)
check_cxx_source_compiles([[
#include <cwchar>
#include <histedit.h>
int f(EditLine *, wchar_t *) { return 0; }
int main() { el_rfunc_t p = f; return p == nullptr; }
]] LABSH_EDITLINE_ANCHA)
unset(CMAKE_REQUIRED_INCLUDES)
unset(CMAKE_REQUIRED_QUIET)

target_include_directories(labsh_lib PRIVATE ${labsh_editline_includes})
target_link_libraries(labsh_lib PUBLIC ${CMAKE_DL_LIBS})
target_compile_definitions(labsh_lib PRIVATE LABSH_EDITLINE LABSH_EDITLINE_BIBLIOTECA="${labsh_editline_nombre}")
if(NOT LABSH_EDITLINE_ANCHA)
  target_compile_definitions(labsh_lib PRIVATE LABSH_EDITLINE_ESTRECHA)
endif()
set(LABSH_CON_EDITLINE ON)
message(STATUS "labsh: line editing at a terminal through editline, loaded as ${labsh_editline_nombre} when needed")
