# SPDX-License-Identifier: MIT
#
# GoogleTest, built from Debian's sources with the flags of the project that includes this.

set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
# Sanitizers are to watch the tests and what they try, and would take most of the time that it takes to
# compile.
foreach(library gtest gmock gmock_main)
  target_compile_options(${library} PRIVATE -fno-sanitize=all)
endforeach()
include(GoogleTest)
