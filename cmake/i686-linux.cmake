# SPDX-License-Identifier: MIT
#
# Toolchain: 32-bit x86 Linux on any x86 Debian with g++-multilib.
# i686 without SSE2 is the baseline, so that results of floating point do not depend on the
# processor. Fortified variants of read and friends are off: the library makes the plain calls.
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_C_FLAGS_INIT "-m32 -march=i686 -U_FORTIFY_SOURCE")
set(CMAKE_CXX_FLAGS_INIT "-m32 -march=i686 -U_FORTIFY_SOURCE")
