# Cross-building with zig's bundled clang, libc++ and C library headers.
#
#   cmake -S . -B build-mac -DCMAKE_TOOLCHAIN_FILE=cmake/zig-toolchain.cmake \
#         -DLABSH_ZIG_TARGET=aarch64-macos [-DLABSH_ZIG=/path/to/zig]
#
# LABSH_ZIG_TARGET is a zig target triple: x86_64-macos, aarch64-macos,
# x86_64-linux-musl, ... LABSH_ZIG names the zig executable (default: zig on
# PATH). zig takes the target as an option, and CMake wants one program per
# tool, so small wrapper scripts are written into the build directory.
cmake_minimum_required(VERSION 3.25)

if(NOT LABSH_ZIG_TARGET)
  set(LABSH_ZIG_TARGET "$ENV{LABSH_ZIG_TARGET}")
endif()
if(NOT LABSH_ZIG_TARGET)
  message(FATAL_ERROR "zig toolchain: set LABSH_ZIG_TARGET (for example aarch64-macos)")
endif()
if(NOT LABSH_ZIG AND NOT "$ENV{LABSH_ZIG}" STREQUAL "")
  set(LABSH_ZIG "$ENV{LABSH_ZIG}" CACHE FILEPATH "The zig executable")
endif()
if(NOT LABSH_ZIG)
  unset(LABSH_ZIG)
  find_program(LABSH_ZIG zig REQUIRED)
endif()
# try_compile runs this file again in scratch projects: hand the choices on.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES LABSH_ZIG_TARGET LABSH_ZIG)

if(LABSH_ZIG_TARGET MATCHES "macos")
  set(CMAKE_SYSTEM_NAME Darwin)
  # No SDK: zig brings the headers and links against its own stubs.
  set(CMAKE_OSX_SYSROOT "" CACHE PATH "" FORCE)
  set(CMAKE_OSX_DEPLOYMENT_TARGET "" CACHE STRING "" FORCE)
else()
  set(CMAKE_SYSTEM_NAME Linux)
endif()
string(REGEX MATCH "^[^-]+" CMAKE_SYSTEM_PROCESSOR "${LABSH_ZIG_TARGET}")
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64" AND CMAKE_SYSTEM_NAME STREQUAL "Darwin")
  set(CMAKE_SYSTEM_PROCESSOR arm64)
endif()

# The wrappers live beside the cache of the build (or of a try_compile).
set(_labsh_zig_bin "${CMAKE_BINARY_DIR}/zig-tools")
if(CMAKE_BINARY_DIR MATCHES "CMakeFiles/CMakeScratch" OR CMAKE_BINARY_DIR MATCHES "CMakeTmp")
  string(REGEX REPLACE "/CMakeFiles/.*" "/zig-tools" _labsh_zig_bin "${CMAKE_BINARY_DIR}")
endif()
foreach(tool cc c++ ar ranlib)
  set(_script "${_labsh_zig_bin}/zig-${tool}")
  if(tool STREQUAL "cc" OR tool STREQUAL "c++")
    # zig refuses the linker's -v that CMake passes to learn the ABI.
    string(CONCAT _body "for a; do shift; [ \"$a\" = -Wl,-v ] || set -- \"$@\" \"$a\"; done\n"
              "exec \"${LABSH_ZIG}\" ${tool} -target ${LABSH_ZIG_TARGET} \"$@\"\n")
  else()
    set(_body "exec \"${LABSH_ZIG}\" ${tool} \"$@\"\n")
  endif()
  set(_old "")
  if(EXISTS "${_script}")
    file(READ "${_script}" _old)
  endif()
  if(NOT _old STREQUAL "#!/bin/sh\n${_body}")
    file(WRITE "${_script}" "#!/bin/sh\n${_body}")
    file(CHMOD "${_script}" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
         WORLD_READ WORLD_EXECUTE)
  endif()
endforeach()

if(LABSH_ZIG_TARGET MATCHES "musl")
  # A musl program that runs on any Linux, whatever its C library.
  set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
endif()

set(CMAKE_C_COMPILER "${_labsh_zig_bin}/zig-cc")
set(CMAKE_CXX_COMPILER "${_labsh_zig_bin}/zig-c++")
set(CMAKE_AR "${_labsh_zig_bin}/zig-ar" CACHE FILEPATH "" FORCE)
set(CMAKE_RANLIB "${_labsh_zig_bin}/zig-ranlib" CACHE FILEPATH "" FORCE)
if(CMAKE_SYSTEM_NAME STREQUAL "Darwin")
  # Only shared libraries would need it, and nothing here builds one.
  find_program(LABSH_TRUE true REQUIRED)
  set(CMAKE_INSTALL_NAME_TOOL "${LABSH_TRUE}" CACHE FILEPATH "" FORCE)
endif()

# Libraries and packages are searched for in an empty root only: the build
# machine's own (GoogleTest among them) are for another system.
set(CMAKE_FIND_ROOT_PATH "${_labsh_zig_bin}/no-root")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
