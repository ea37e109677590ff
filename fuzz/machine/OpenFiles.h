// SPDX-License-Identifier: MIT
//
// The files of a fed machine that are open. Their descriptors are far above those of the process.
#ifndef TALVANE_FUZZ_MACHINE_OPENFILES_H
#define TALVANE_FUZZ_MACHINE_OPENFILES_H

#include <cstdint>
#include <string>

namespace fuzz {

struct OpenFile {
    std::string path;
    std::uint64_t position = 0;
};

class OpenFiles {
public:
    // Returns the new descriptor.
    static int Add(const char* path);

    // Null for a descriptor that is not a fed machine's.
    static OpenFile* Find(int descriptor);

    // Returns whether it was there.
    static bool Remove(int descriptor);

    // How many are open.
    static int Count();
};

}  // namespace fuzz

#endif
