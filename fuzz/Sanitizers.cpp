// SPDX-License-Identifier: MIT
//
// What AddressSanitizer takes for granted in every target: it keeps freed blocks back for a while,
// but not so many that new pages are needed all the time, and gives none back to the system.

extern "C" const char* __asan_default_options() {
    return "quarantine_size_mb=1:allocator_release_to_os_interval_ms=-1";
}
