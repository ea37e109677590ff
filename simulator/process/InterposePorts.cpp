// SPDX-License-Identifier: MIT
//
// The library's two port primitives of a PCI scan, answered as plain calls. As instructions each
// access would cost a fault and its signal, and a scan of all buses makes 90,112 of them.

#include <sys/io.h>

#include <cerrno>
#include <cstdint>

#include "simulator/machine/Machine.h"
#include "simulator/process/Interpose.h"
#include "simulator/process/RealFunction.h"

namespace {

using OutFunction = void(void*, unsigned short, unsigned long);
using InFunction = unsigned long(void*, unsigned short);

constexpr const char* kOutName = "_ZN7PCIscan3outEtm";
constexpr const char* kInName = "_ZN7PCIscan2inEt";
constexpr unsigned kDoubleWord = 4;  // bytes

}  // namespace

namespace sim {

void LinkInterposedPorts() {}

}  // namespace sim

// PCIscan::out and PCIscan::in under their names of the i686 C++ ABI, so that this needs no header
// of the library. Weak: a program that defines the methods itself keeps its own. Each leaves errno
// alone, as the instruction does.
extern "C" {

[[gnu::weak]] void OutOfPciScan(void* scan, unsigned short port,
                                unsigned long value) asm("_ZN7PCIscan3outEtm");
[[gnu::weak]] unsigned long InOfPciScan(void* scan, unsigned short port) asm("_ZN7PCIscan2inEt");

void OutOfPciScan(void* scan, unsigned short port, unsigned long value) {
    if (sim::Machine* const machine = sim::Interposition::GetMachine(); machine != nullptr) {
        const int before = errno;
        machine->PortOut(port, kDoubleWord, static_cast<std::uint32_t>(value));
        errno = before;
    } else if (OutFunction* const real = sim::RealFunction<OutFunction>(kOutName);
               real != nullptr) {
        real(scan, port, value);
    } else {  // the library was loaded for one module only, where dlsym does not look
        outl(static_cast<unsigned>(value), port);
    }
}

unsigned long InOfPciScan(void* scan, unsigned short port) {
    if (sim::Machine* const machine = sim::Interposition::GetMachine(); machine != nullptr) {
        const int before = errno;
        const std::uint32_t value = machine->PortIn(port, kDoubleWord);
        errno = before;
        return value;
    }
    InFunction* const real = sim::RealFunction<InFunction>(kInName);
    return real != nullptr ? real(scan, port) : inl(port);
}

}  // extern "C"
