// SPDX-License-Identifier: MIT
//
// The sweep: for each kind of call the first, second, ... use fails, once and for ever, until a run
// has made fewer calls than that.
#include "faults/Sweep.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <new>

#include "faults/LibraryCalls.h"
#include "simulator/machine/Machine.h"

namespace faults {
namespace {

constexpr std::uint8_t kFill = 0xA5;
constexpr std::uint8_t kOtherFill = 0x5A;
constexpr std::size_t kFence = 64;
constexpr std::size_t kMaxComplaints = 20;
constexpr std::size_t kMaxCalls = 32;  // kinds of them

// Of a kind of call, the first uses fail in every way, the others in one way each by turns.
constexpr int kUsesThatFailInEveryWay = 2;

struct Outcome {
    int result = 0;
    std::vector<std::uint8_t> bytes;  // the record and the fence after it
};

int OpenDescriptors() {
    constexpr int kMaxDescriptor = 64;
    int count = 0;
    for (int descriptor = 0; descriptor < kMaxDescriptor; ++descriptor)
        if (fcntl(descriptor, F_GETFD) != -1) ++count;
    return count;
}

// Memory, filled with zeros, that a process shares with those it starts.
class Shared {
public:
    explicit Shared(std::size_t size)
        : size_(size),
          memory_(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
        if (memory_ == MAP_FAILED) throw std::bad_alloc();
    }
    ~Shared() { (void)munmap(memory_, size_); }
    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;

    void* Get() const { return memory_; }

private:
    std::size_t size_;
    void* memory_;
};

class OperationSweep {
public:
    OperationSweep(sim::SimulatedServer& server, const Operation& operation, SweepResult& result)
        : server_(server), operation_(operation), result_(result), uses_(server) {}

    void Run() {
        LearnCleanRun();
        for (const Call& call : Calls()) {
            if (usesWithoutFault_[call.name] == 0) continue;
            Strike(call, sim::Strikes::kOnce);
            if (call.endsWhenForEver) Strike(call, sim::Strikes::kForEver);
        }
    }

private:
    // What a process reports to the one that started it.
    struct Report {
        int uses;
        char complaints[4000];
    };

    // What a run without a fault reports, before the bytes of its record.
    struct CleanReport {
        int result;
        int uses[kMaxCalls];
    };

    Outcome RunOnce(std::uint8_t fill) {
        Outcome outcome;
        outcome.bytes.assign(operation_.recordSize + kFence, fill);
        try {
            outcome.result = operation_.run(outcome.bytes.data());
        } catch (const std::bad_alloc&) {
            outcome.result = kThrew;
        }
        return outcome;
    }

    // Runs the function, in a process of its own where the operation needs one. Returns the status
    // of that process.
    template <typename Function>
    int Apart(Function function) {
        if (!operation_.ownProcess) {
            function();
            return 0;
        }
        const pid_t child = fork();
        if (child == 0) {
            function();
            _exit(0);
        }
        int status = 0;
        (void)waitpid(child, &status, 0);
        return status;
    }

    // Learns what a run without a fault answers and which bytes of the record it writes.
    void LearnCleanRun() {
        writable_.assign(operation_.recordSize + kFence, false);
        clean_ = CleanOutcome(kFill);
        const Outcome other = CleanOutcome(kOtherFill);
        for (std::size_t i = 0; i < operation_.recordSize; ++i) {
            if (clean_.bytes[i] != kFill || other.bytes[i] != kOtherFill) SetWritable(i);
        }
        for (const Operation::Field& field : operation_.otherFields)
            for (std::size_t i = 0; i < field.size; ++i)
                SetWritable(operation_.firstElement + field.offset + i);
    }

    // A byte that may be written in one element may be written in all.
    void SetWritable(std::size_t at) {
        writable_[at] = true;
        if (operation_.elementSize == 0 || at < operation_.firstElement) return;
        at = (at - operation_.firstElement) % operation_.elementSize + operation_.firstElement;
        for (; at < operation_.recordSize; at += operation_.elementSize) writable_[at] = true;
    }

    Outcome CleanOutcome(std::uint8_t fill) {
        const std::size_t size = sizeof(CleanReport) + operation_.recordSize + kFence;
        Shared shared(size);
        CleanReport& report = *static_cast<CleanReport*>(shared.Get());
        auto* const bytes = static_cast<std::uint8_t*>(shared.Get()) + sizeof(CleanReport);
        (void)Apart([&] {
            Restart();
            Clear(server_);
            uses_.Clear();
            const Outcome outcome = RunOnce(fill);
            report.result = outcome.result;
            std::copy(outcome.bytes.begin(), outcome.bytes.end(), bytes);
            std::size_t i = 0;
            for (const Call& call : Calls()) report.uses[i++] = uses_.Of(call.name);
            Restart();
        });
        std::size_t i = 0;
        for (const Call& call : Calls()) usesWithoutFault_[call.name] = report.uses[i++];
        return {report.result, {bytes, bytes + operation_.recordSize + kFence}};
    }

    void Restart() {
        if (operation_.restart) operation_.restart();
    }

    void Strike(const Call& call, sim::Strikes strikes) {
        for (int nth = 1; result_.complaints.size() < kMaxComplaints; ++nth) {
            if (operation_.slow && nth > usesWithoutFault_[call.name]) return;
            const bool everyWay = !operation_.slow && nth <= kUsesThatFailInEveryWay;
            const std::size_t values = everyWay ? call.values.size() : 1;
            bool struck = false;
            for (std::size_t i = 0; i < values; ++i) {
                const std::size_t value = (static_cast<std::size_t>(nth) + i) % call.values.size();
                struck = Try({call.name, nth, strikes, call.values[value]});
                if (!struck) return;
            }
        }
    }

    // One run with a fault, and the run after it. Returns whether the fault has struck.
    bool Try(const Fault& fault) {
        Shared shared(sizeof(Report));
        Report& report = *static_cast<Report*>(shared.Get());
        const int status = Apart([&] { Check(fault, report); });
        ++result_.runs;
        if (status != 0) {
            const bool allowed = operation_.mayEnd && operation_.mayEnd(fault, status);
            if (!allowed) Complain(fault, "ends the process: " + std::to_string(status));
            return report.uses >= fault.nth || allowed || WIFSIGNALED(status);
        }
        std::string_view complaints = report.complaints;
        while (!complaints.empty()) {
            const std::size_t end = complaints.find('\n');
            Complain(fault, std::string(complaints.substr(0, end)));
            complaints.remove_prefix(end + 1);
        }
        return report.uses >= fault.nth;
    }

    void Complain(const Fault& fault, const std::string& text) {
        result_.complaints.push_back(operation_.name + ", " + fault.Text() + ": " + text);
    }

    static void Note(Report& report, const std::string& text) {
        const std::size_t used = std::strlen(report.complaints);
        if (used + text.size() + 2 > sizeof report.complaints) return;
        std::memcpy(report.complaints + used, (text + "\n").c_str(), text.size() + 2);
    }

    void Check(const Fault& fault, Report& report) {
        const int descriptors = OpenDescriptors();
        const std::size_t blocks = LiveBlocks();
        Clear(server_);
        uses_.Clear();
        Set(server_, fault);
        const Outcome outcome = RunOnce(kFill);
        report.uses = uses_.Of(fault.call);
        const bool struck = report.uses >= fault.nth;
        const bool privilegeLowered = IsPrivilegeLowered();
        Clear(server_);

        if (outcome.result != clean_.result &&
            (!struck || !operation_.mayAnswer || !operation_.mayAnswer(fault, outcome.result)))
            Note(report, "answers " + std::to_string(outcome.result));
        CheckRecord(outcome, report);
        if (!privilegeLowered) Note(report, "leaves the I/O privilege raised");

        const int left = operation_.descriptorsLeft ? operation_.descriptorsLeft(fault) : 0;
        if (operation_.mayAnswerNext) CheckNext(fault, report);
        Restart();
        if (LiveBlocks() != blocks)
            Note(report, std::to_string(static_cast<int>(LiveBlocks() - blocks)) +
                             " blocks are not released");
        if (OpenDescriptors() > descriptors + left)
            Note(report,
                 std::to_string(OpenDescriptors() - descriptors) + " descriptors stay open");
        if (!operation_.mayAnswerNext) CheckNext(fault, report);
        Restart();
    }

    // The call after the faulty one.
    void CheckNext(const Fault& fault, Report& report) {
        const Outcome next = RunOnce(kFill);
        if (operation_.mayAnswerNext) {
            if (next.result != clean_.result && !operation_.mayAnswerNext(fault, next.result))
                Note(report, "the next call answers " + std::to_string(next.result));
        } else if (next.result != clean_.result || next.bytes != clean_.bytes) {
            Note(report, "the next call answers otherwise: " + std::to_string(next.result));
        }
    }

    void CheckRecord(const Outcome& outcome, Report& report) {
        const bool failed = outcome.result != 0 && operation_.failureLeavesRecord;
        for (std::size_t i = 0; i < outcome.bytes.size(); ++i) {
            if (outcome.bytes[i] == kFill || (writable_[i] && !failed)) continue;
            Note(report, "writes byte " + std::to_string(i));
            return;
        }
    }

    // Whether the last call of iopl, if there was one, lowered the level.
    bool IsPrivilegeLowered() {
        const auto calls = server_.GetLog().Calls();
        const auto last = std::find_if(calls.rbegin(), calls.rend(),
                                       [](const auto& access) { return access.call == "iopl"; });
        return last == calls.rend() || last->what == "0" || last->answer != "0";
    }

    std::size_t LiveBlocks() {
        return server_.Allocations() - server_.GetMachine().GetFaults().RefusedAllocations() -
               LibraryDeletes();
    }

    sim::SimulatedServer& server_;
    const Operation& operation_;
    SweepResult& result_;
    Uses uses_;
    Outcome clean_;
    std::map<std::string_view, int> usesWithoutFault_;
    std::vector<bool> writable_;  // which bytes of the record a run may write
};

}  // namespace

void Sweep(sim::SimulatedServer& server, const Operation& operation, SweepResult& result) {
    OperationSweep(server, operation, result).Run();
}

}  // namespace faults
