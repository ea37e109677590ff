// SPDX-License-Identifier: MIT
//
// A machine, put in front of the real one for as long as the object lives.

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
    void start() {
        interposition_.emplace(machine);
        ports_.emplace();
    }

private:
    std::optional<Interposition> interposition_;
    std::optional<PortFaultHandler> ports_;
};

SimulatedServer::SimulatedServer() : state_(std::make_unique<State>()) {
    state_->start();
}

SimulatedServer::SimulatedServer(const std::filesystem::path& machineFolder)
    : state_(std::make_unique<State>()) {
    loadMachine(machineFolder, state_->machine);
    state_->start();
}

SimulatedServer::~SimulatedServer() = default;

PhysicalMemory& SimulatedServer::memory() {
    return state_->machine.memory();
}

PciBus& SimulatedServer::pci() {
    return state_->machine.pci();
}

ProcStat& SimulatedServer::stat() {
    return state_->machine.stat();
}

FreeProgram& SimulatedServer::freeProgram() {
    return state_->machine.freeProgram();
}

Bmc& SimulatedServer::bmc() {
    return state_->machine.bmc();
}

AccessLog& SimulatedServer::log() {
    return state_->machine.log();
}

Machine& SimulatedServer::machine() {
    return state_->machine;
}

void SimulatedServer::fail(std::string_view call, int nth, int error) {
    state_->machine.faults().fail(call, nth, error);
}

void SimulatedServer::shortRead(int nth, std::size_t bytes) {
    state_->machine.faults().shortRead(nth, bytes);
}

void SimulatedServer::failAllocation(int nth) {
    state_->machine.faults().failAllocation(nth);
}

std::size_t SimulatedServer::allocations() const {
    return state_->machine.allocations();
}

void SimulatedServer::refuse(const std::string& path, int error) {
    state_->machine.refuse(path, error);
}

void SimulatedServer::observe(const std::string& library) {
    observeLibrary(library);
}

std::chrono::seconds SimulatedServer::clock() const {
    return state_->machine.clock();
}

void SimulatedServer::during(std::string_view call, void (*action)()) {
    state_->machine.faults().during(call, action);
}

}  // namespace sim
