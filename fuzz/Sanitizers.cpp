// SPDX-License-Identifier: MIT
//
// What AddressSanitizer takes for granted in every target: it keeps freed blocks back for a while,
// but not so many that new pages are needed all the time, and gives none back to the system. A
// block of more than 64 MiB, as for a table at a high address, is refused like one for which memory
// has run out: to mark its bytes takes longer than a thousand other inputs.

extern "C" const char* __asan_default_options() {
    return "quarantine_size_mb=1:allocator_release_to_os_interval_ms=-1:"
           "max_allocation_size_mb=64:allocator_may_return_null=1";
}
