// SPDX-License-Identifier: MIT
//
// The libc functions that a simulated server answers in place of libc. They are defined in
// Interpose*.cpp with C linkage and must be found before libc's by the dynamic linker: in the
// program itself, exported, or in a preloaded library.
#ifndef TALVANE_SIMULATOR_PROCESS_INTERPOSE_H
#define TALVANE_SIMULATOR_PROCESS_INTERPOSE_H

namespace sim {

class Machine;

// Which machine answers the interposed calls of this process.
class Interposition {
public:
    // std::logic_error when another machine answers already.
    explicit Interposition(Machine& machine);
    ~Interposition();
    Interposition(const Interposition&) = delete;
    Interposition& operator=(const Interposition&) = delete;

    // Null while nothing is simulated.
    static Machine* GetMachine();
};

// Does nothing; calling it keeps the allocating operators in a program that links them from an
// archive, where nothing else would ask for their file.
void LinkInterposedAllocations();

}  // namespace sim

#endif
