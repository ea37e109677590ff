# SPDX-License-Identifier: MIT
#
# As i686-linux.cmake, with clang: for the builds that are watched by sanitizers or count what the tests
# reach, and for no other.
include(${CMAKE_CURRENT_LIST_DIR}/i686-linux.cmake)
set(CMAKE_C_COMPILER clang-14)
set(CMAKE_CXX_COMPILER clang++-14)
