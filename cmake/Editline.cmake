# Line editing at a terminal through editline, when it is there: found with
# pkg-config (libedit), or as histedit.h and a library named edit where no
# pkg-config file is installed (macOS). Without it the shell reads plain
# lines at a terminal too. Sets LABSH_CON_EDITLINE.
set(LABSH_CON_EDITLINE OFF)
if(NOT LABSH_EDITLINE)
  message(STATUS "labsh: editline turned off (LABSH_EDITLINE=OFF): lines are read without editing")
  return()
endif()

find_package(PkgConfig QUIET)
if(PKG_CONFIG_FOUND)
  pkg_check_modules(LIBEDIT QUIET IMPORTED_TARGET libedit)
endif()
if(LIBEDIT_FOUND)
  set(labsh_editline PkgConfig::LIBEDIT)
  set(labsh_editline_includes ${LIBEDIT_INCLUDE_DIRS})
else()
  find_path(LABSH_HISTEDIT_DIR histedit.h)
  find_library(LABSH_LIBEDIT edit)
  if(LABSH_HISTEDIT_DIR AND LABSH_LIBEDIT)
    set(labsh_editline ${LABSH_LIBEDIT})
    set(labsh_editline_includes ${LABSH_HISTEDIT_DIR})
    target_include_directories(labsh_lib PRIVATE ${LABSH_HISTEDIT_DIR})
  endif()
endif()
if(NOT labsh_editline)
  message(STATUS "labsh: editline not found (libedit-dev): lines are read without editing")
  return()
endif()

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

target_link_libraries(labsh_lib PUBLIC ${labsh_editline})
target_compile_definitions(labsh_lib PRIVATE LABSH_EDITLINE)
if(NOT LABSH_EDITLINE_ANCHA)
  target_compile_definitions(labsh_lib PRIVATE LABSH_EDITLINE_ESTRECHA)
endif()
set(LABSH_CON_EDITLINE ON)
message(STATUS "labsh: line editing at a terminal through editline (${labsh_editline})")
