# SPDX-License-Identifier: MIT
#
# What every target of this project is compiled with. `talvane_flags` carries the warnings;
# the machine flags (-m32 -march=i686) come from cmake/i686-linux.cmake so that they also reach
# CMake's own checks and GoogleTest.

set(CMAKE_C_STANDARD 99)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_library(talvane_flags INTERFACE)
target_compile_options(talvane_flags INTERFACE
  -Wall -Wextra -Wshadow -Wconversion -Wpedantic
  $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast -Wnon-virtual-dtor>
  -Werror)

option(TALVANE_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer of clang" OFF)
if(TALVANE_SANITIZE)
  # Without optimisation clang compiles the tests in half of gcc's time. gcc makes the definition by itself.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
    -D__SANITIZE_ADDRESS__)
  # A shared runtime: the simulated server passes calls on to what comes after it, and that is to be
  # the sanitizer's.
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -m32 -print-file-name=libclang_rt.asan-i386.so
    OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE)
  cmake_path(GET runtime PARENT_PATH runtime_folder)
  add_link_options(-fsanitize=address,undefined -shared-libasan LINKER:-rpath,${runtime_folder})
endif()

option(TALVANE_COVERAGE "Build with the coverage counters of clang" OFF)
if(TALVANE_COVERAGE)
  # The counters can be those of a file, which a process that is killed leaves behind. They are
  # exact, though many processes count in one file at a time.
  add_compile_options(-fprofile-instr-generate -fcoverage-mapping -fprofile-update=atomic
    "SHELL:-mllvm -runtime-counter-relocation")
  add_link_options(-fprofile-instr-generate)
endif()

# Both are builds of clang, and the code is written for the warnings of gcc.
if(TALVANE_SANITIZE OR TALVANE_COVERAGE)
  add_compile_options(-w)
endif()
