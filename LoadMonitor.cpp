// SPDX-License-Identifier: MIT
//
// How busy the processors and the memory are.

#include "LoadMonitor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "Talvane.h"
#include "base/DoubleArithmetic.h"
#include "interface/CallResult.h"
#include "load/CpuTimeText.h"

using namespace talvane;

int ExecuteFirstTime = 0;

namespace {

constexpr int kMostCpus = sizeof CpuUsageRageInformation{}.UsageRate / sizeof(int);
constexpr const char* kStatFile = "/proc/stat";
constexpr int kFewestCounters = 2;

// Counters since the processor's start, now and at the sample before, and what came in between.
long cp_time[kMostCpus][kCpuCounters];
long cp_old[kMostCpus][kCpuCounters];
long UserTime[kMostCpus];
long NiceTime[kMostCpus];
long SysTime[kMostCpus];
long IdleTime[kMostCpus];

// The 32-bit arithmetic of the counters wraps around, as they do themselves.
long Wrapped(unsigned long value) {
    return static_cast<long>(value);
}

long Elapsed(long now, long before) {
    return Wrapped(static_cast<unsigned long>(now) - static_cast<unsigned long>(before));
}

class StatFile {
public:
    StatFile() : descriptor(open(kStatFile, O_RDONLY)) {}
    ~StatFile() {
        if (IsOpen()) (void)close(descriptor);  // result not used: nothing was written
    }
    StatFile(const StatFile&) = delete;
    StatFile& operator=(const StatFile&) = delete;

    bool IsOpen() const { return descriptor >= 0; }

    ssize_t Read(char* text, std::size_t size) {
        (void)lseek(descriptor, 0, SEEK_SET);
        return read(descriptor, text, size);
    }

private:
    int descriptor;
};

// Takes one sample of a processor. Returns 0, or -1 when the file has no line with two numbers or
// more for it. Kept: a file that cannot be read is reported on a standard stream and is a success
// that leaves everything as it was.
int RetrieveCpuTime(int nr_cpu) {
    static int n;
    constexpr std::size_t kSearched = 1024;  // Kept: what lies behind is not looked at.
    StatFile stat;
    if (!stat.IsOpen()) {
        (void)std::printf("File open failed!\n");
        return kSuccess;
    }
    char text[kSearched + 1];
    n = static_cast<int>(stat.Read(text, kSearched));
    if (n < 0) {
        std::perror(kStatFile);
        return kSuccess;
    }
    text[n] = '\0';

    long(&now)[kCpuCounters] = cp_time[nr_cpu];
    long(&before)[kCpuCounters] = cp_old[nr_cpu];
    if (ScanCpuTimes(text, nr_cpu, now) < kFewestCounters) return kFailure;
    if (ExecuteFirstTime == 0) {
        ExecuteFirstTime = 1;
    } else {
        IdleTime[nr_cpu] = Elapsed(now[kIdleTicks], before[kIdleTicks]);
        UserTime[nr_cpu] = Elapsed(now[kUserTicks], before[kUserTicks]);
        NiceTime[nr_cpu] = Elapsed(now[kNiceTicks], before[kNiceTicks]);
        SysTime[nr_cpu] = Elapsed(now[kSystemTicks], before[kSystemTicks]);
    }
    std::memcpy(before, now, sizeof before);
    return kSuccess;
}

int SampleAll(int quantity) {
    for (int cpu = 0; cpu < quantity; ++cpu)
        if (RetrieveCpuTime(cpu) == kFailure) return kFailure;
    return kSuccess;
}

int CountCpus() {
    int count = 0;
    while (count < kMostCpus && RetrieveCpuTime(count) != kFailure) ++count;
    return count;
}

// Share of the ticks between two samples that were not idle. Kept: no ticks at all divide by zero;
// the caller lets time pass.
int BusyPercent(int cpu) {
    const unsigned long idle = static_cast<unsigned long>(IdleTime[cpu]);
    const long total = Wrapped(idle + static_cast<unsigned long>(UserTime[cpu]) +
                               static_cast<unsigned long>(NiceTime[cpu]) +
                               static_cast<unsigned long>(SysTime[cpu]));
    // In 64 bits: of two wrapped numbers the lowest by -1 has a quotient that 32 do not hold.
    const long long idlePercent = static_cast<long long>(Wrapped(idle * 100)) / total;
    return static_cast<int>(Wrapped(static_cast<unsigned long>(100 - idlePercent)));
}

constexpr const char* kMemoryFile = "Memusage_dat";

struct CloseFile {
    void operator()(std::FILE* file) const {
        (void)std::fclose(file);  // result not used: nothing was written
    }
};

// The number in the file's next line; a line that is missing or no number is 0.
long ReadNumber(std::FILE* file) {
    char line[256] = {};
    (void)std::fgets(line, sizeof line, file);
    return std::strtol(line, nullptr, 10);
}

}  // namespace

extern "C" {

int GetCpuUsageRate(int interval, CpuUsageRageInformation* buffer) {
    static int retrieve_all_cpus = 1;
    static int quantity = 0;
    *buffer = {};
    if (retrieve_all_cpus != 0) {
        quantity = CountCpus();
        retrieve_all_cpus = 0;
    }
    if (SampleAll(quantity) == kFailure) return kFailure;
    (void)sleep(static_cast<unsigned>(interval));  // an interrupted sleep is not resumed
    if (SampleAll(quantity) == kFailure) return kFailure;
    for (int cpu = 0; cpu < quantity; ++cpu) buffer->UsageRate[cpu] = BusyPercent(cpu);
    buffer->quantity = quantity;
    return kSuccess;
}

int GetMemUsageRate(void) {
    char command[255] = {};
    std::strcat(command, "free |awk '{FS=");
    std::strcat(command, "\":\"");
    std::strcat(command, "; if ($1~/Mem/){print $2}}'|awk '{print $1;print $2}' > Memusage_dat ");
    (void)std::system(command);  // result not used: the file tells

    double rate = 0;
    {
        const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(kMemoryFile, "r"));
        if (file == nullptr) {
            (void)std::printf("File is not exist!\n");
            return 0;
        }
        const long total = ReadNumber(file.get());
        const long used = ReadNumber(file.get());
        rate = Quotient(Product(static_cast<double>(used), 100.0), static_cast<double>(total));
    }
    (void)std::remove(kMemoryFile);  // result not used: the next call overwrites it
    // Kept: the share is narrowed before it is truncated, so it can round up to a whole percent.
    const volatile float percent = static_cast<float>(rate);
    return ToInt32(percent);
}

}  // extern "C"
