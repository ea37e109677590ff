// SPDX-License-Identifier: MIT
//
// What AddressSanitizer takes for granted in every target: it keeps freed blocks back for a while,
// but not so many that new pages are needed all the time.

extern "C" const char* __asan_default_options() {
    return "quarantine_size_mb=8";
}
