// SPDX-License-Identifier: MIT
//
// The SIGSEGV handler. The faults are synchronous (the program stands at its own `in` or `out`, not
// inside malloc), so the handler may do what any call may.

#include "simulator/process/PortFault.h"

#include <ucontext.h>

#include <cstdint>

#include "simulator/machine/Machine.h"
#include "simulator/process/Interpose.h"
#include "simulator/process/PortInstruction.h"

namespace sim {
namespace {

struct sigaction previousAction;

// Answers the instruction and moves behind it; false when it is not a port instruction.
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
        // The fault strikes again on return and ends the process as it would have without us.
        (void)sigaction(SIGSEGV, &previousAction, nullptr);
    }
}

void OnSegmentationFault(int signal, siginfo_t* info, void* context) {
    const int before = errno;
    Machine* const machine = Interposition::GetMachine();
    auto& registers = static_cast<ucontext_t*>(context)->uc_mcontext;
    // SI_KERNEL: a general protection fault, so the instruction itself was fetched and is readable.
    // Page faults carry another code, and their instruction may not be there at all.
    const bool executed = info->si_code == SI_KERNEL && machine != nullptr &&
                          ExecutePortInstruction(registers, *machine);
    if (!executed) PassFaultOn(signal, info, context);
    errno = before;
}

}  // namespace

PortFaultHandler::PortFaultHandler() {
    struct sigaction action {};
    action.sa_sigaction = OnSegmentationFault;
    // SA_NODEFER: what runs inside a port access may itself use ports. SA_ONSTACK: the handler
    // before ours may depend on its own stack to report an overflow of the ordinary one.
    action.sa_flags = SA_SIGINFO | SA_NODEFER | SA_ONSTACK;
    (void)sigemptyset(&action.sa_mask);
    (void)sigaction(SIGSEGV, &action, &previousAction);
}

PortFaultHandler::~PortFaultHandler() {
    (void)sigaction(SIGSEGV, &previousAction, nullptr);
}

}  // namespace sim
