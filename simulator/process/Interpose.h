// SPDX-License-Identifier: MIT
//
// The functions that a simulated server answers in place of the real ones. Interpose*.cpp defines
// them under the real names. The dynamic linker must find them first: in the program itself, which
// exports them, or in a preloaded library.
#ifndef TALVANE_SIMULATOR_PROCESS_INTERPOSE_H
#define TALVANE_SIMULATOR_PROCESS_INTERPOSE_H

namespace sim {

class Machine;

// Makes a machine answer the interposed calls of this process for as long as the object lives.
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

// Does nothing. The call to it makes the linker take the file of the allocating operators from the
// archive, which nothing else refers to.
void LinkInterposedAllocations();

}  // namespace sim

#endif
