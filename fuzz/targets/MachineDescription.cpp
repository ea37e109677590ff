// SPDX-License-Identifier: MIT
//
// The simulated server's machine files. Input: the text of a machine.txt, in a folder of its own.

#include "fuzz/Folder.h"
#include "simulator/description/MachineFile.h"
#include "simulator/machine/Machine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::Folder folder;
    fuzz::WriteFile(folder.Path() / "machine.txt", {data, size});
    try {
        sim::Machine machine;
        sim::LoadMachine(folder.Path(), machine);
    } catch (const sim::MachineError&) {  // what a description that cannot be used ends with
    }
    return 0;
}
