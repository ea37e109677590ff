// SPDX-License-Identifier: MIT
//
// In builds that count coverage, and in no other: the preloaded library starts its server before
// the counters would get their file, and what was counted until then would be lost.

extern "C" void __llvm_profile_initialize(void);  // of the runtime that counts

namespace {

// Before all constructors without a priority.
[[gnu::constructor(101)]] void GiveCountersTheirFile() {
    __llvm_profile_initialize();
}

}  // namespace
