// SPDX-License-Identifier: MIT
//
// Puts a machine in front of the real one for as long as the object lives.

#include "simulator/SimulatedServer.h"

#include <optional>

#include "simulator/description/MachineFile.h"
#include "simulator/machine/Machine.h"
#include "simulator/process/Callers.h"
#include "simulator/process/Interpose.h"
#include "simulator/process/PortFault.h"

namespace sim {

class SimulatedServer::State {
public:
    Machine machine;

    // From now on the machine answers.
    void Start() {
        interposition_.emplace(machine);
        ports_.emplace();
    }

private:
    std::optional<Interposition> interposition_;
    std::optional<PortFaultHandler> ports_;
};

SimulatedServer::SimulatedServer() : state_(std::make_unique<State>()) {
    state_->Start();
}

SimulatedServer::SimulatedServer(const std::filesystem::path& machine)
    : SimulatedServer([&](Machine& built) { LoadMachine(machine, built); }) {}

SimulatedServer::SimulatedServer(const std::function<void(Machine&)>& build)
    : state_(std::make_unique<State>()) {
    build(state_->machine);
    state_->Start();
}

SimulatedServer::~SimulatedServer() = default;

PhysicalMemory& SimulatedServer::GetMemory() {
    return state_->machine.GetMemory();
}

PciBus& SimulatedServer::GetPci() {
    return state_->machine.GetPci();
}

ProcStat& SimulatedServer::GetStat() {
    return state_->machine.GetStat();
}

FreeProgram& SimulatedServer::GetFreeProgram() {
    return state_->machine.GetFreeProgram();
}

Bmc& SimulatedServer::GetBmc() {
    return state_->machine.GetBmc();
}

AccessLog& SimulatedServer::GetLog() {
    return state_->machine.GetLog();
}

Machine& SimulatedServer::GetMachine() {
    return state_->machine;
}

void SimulatedServer::Fail(std::string_view call, int nth, int error) {
    state_->machine.GetFaults().Fail(call, nth, error);
}

void SimulatedServer::ShortRead(int nth, std::size_t bytes) {
    state_->machine.GetFaults().ShortRead(nth, bytes);
}

void SimulatedServer::FailAllocation(int nth) {
    state_->machine.GetFaults().FailAllocation(nth);
}

std::size_t SimulatedServer::Allocations() const {
    return state_->machine.Allocations();
}

void SimulatedServer::Refuse(const std::string& path, int error) {
    state_->machine.Refuse(path, error);
}

void SimulatedServer::Observe(const std::string& library) {
    ObserveLibrary(library);
}

std::chrono::seconds SimulatedServer::Clock() const {
    return state_->machine.Clock();
}

void SimulatedServer::During(std::string_view call, void (*action)()) {
    state_->machine.GetFaults().During(call, action);
}

}  // namespace sim
