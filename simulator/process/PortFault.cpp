// SPDX-License-Identifier: MIT
//
// The SIGSEGV handler. The faults are synchronous: the program is at its own `in` or `out`, not
// inside malloc. So the handler may do whatever an ordinary function may do.

#include "simulator/process/PortFault.h"

#include <ucontext.h>

#include <cstdint>

#include "simulator/machine/Machine.h"
#include "simulator/process/Interpose.h"
#include "simulator/process/PortInstruction.h"

namespace sim {
namespace {

struct sigaction previousAction;

// Executes the instruction and moves past it; false when it is not a port instruction.
bool ExecutePortInstruction(mcontext_t& registers, Machine& machine) {
    greg_t* const general = registers.gregs;
    const auto* const code = reinterpret_cast<const std::uint8_t*>(general[REG_EIP]);
    const std::optional<PortInstruction> instruction = DecodePortInstruction(code);
    if (!instruction) return false;

    const auto eax = static_cast<std::uint32_t>(general[REG_EAX]);
    const std::uint16_t port =
        instruction->port ? *instruction->port : static_cast<std::uint16_t>(general[REG_EDX]);
    if (instruction->output) {
        machine.PortOut(port, instruction->width, ValueOfOut(eax, instruction->width));
    } else {
        const std::uint32_t value = machine.PortIn(port, instruction->width);
        general[REG_EAX] = static_cast<greg_t>(AccumulatorAfterIn(eax, instruction->width, value));
    }
    general[REG_EIP] += static_cast<greg_t>(instruction->length);
    return true;
}

void PassFaultOn(int signal, siginfo_t* info, void* context) {
    if ((previousAction.sa_flags & SA_SIGINFO) != 0) {
        previousAction.sa_sigaction(signal, info, context);
    } else if (previousAction.sa_handler != SIG_DFL && previousAction.sa_handler != SIG_IGN) {
        previousAction.sa_handler(signal);
    } else {
        // The fault occurs again on return and ends the process as it would without this handler.
        (void)sigaction(SIGSEGV, &previousAction, nullptr);
    }
}

// The attribute: QEMU's user emulation calls handlers with the stack less aligned than the ABI
// says.
[[gnu::force_align_arg_pointer]] void OnSegmentationFault(int signal, siginfo_t* info,
                                                          void* context) {
    const int before = errno;
    Machine* const machine = Interposition::GetMachine();
    auto& registers = static_cast<ucontext_t*>(context)->uc_mcontext;
    // SI_KERNEL means a general protection fault: the instruction was fetched, so it can be read.
    // A page fault has another code, and its instruction may not even be mapped.
    const bool executed = info->si_code == SI_KERNEL && machine != nullptr &&
                          ExecutePortInstruction(registers, *machine);
    if (!executed) PassFaultOn(signal, info, context);
    errno = before;
}

}  // namespace

PortFaultHandler::PortFaultHandler() {
    struct sigaction action {};
    action.sa_sigaction = OnSegmentationFault;
    // SA_NODEFER: an action inside a port access may itself use ports. SA_ONSTACK: the previous
    // handler may need its own stack to report an overflow of the ordinary one.
    action.sa_flags = SA_SIGINFO | SA_NODEFER | SA_ONSTACK;
    (void)sigemptyset(&action.sa_mask);
    (void)sigaction(SIGSEGV, &action, &previousAction);
}

PortFaultHandler::~PortFaultHandler() {
    (void)sigaction(SIGSEGV, &previousAction, nullptr);
}

}  // namespace sim
