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

// Do nothing. The calls to them make the linker take the files of the allocating operators and of
// the port primitives from the archive, since nothing else refers to those files.
void LinkInterposedAllocations();
void LinkInterposedPorts();

}  // namespace sim

#endif
