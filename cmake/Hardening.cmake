# SPDX-License-Identifier: MIT
#
# `talvane_hardening` is what the programs of this project, and the library that they preload, are
# built with against attacks through memory. libTalvane.so itself has less of it; its target says
# why. None of them is fortified but the bridge, which alone needs no plain calls: the simulated
# server answers those of the others.
add_library(talvane_hardening INTERFACE)
target_compile_options(talvane_hardening INTERFACE -fstack-protector-strong -fcf-protection)
target_link_options(talvane_hardening INTERFACE
  LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack
  $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)

# Adds it to a target.
function(talvane_harden target)
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_link_libraries(${target} PRIVATE talvane_hardening)
endfunction()
