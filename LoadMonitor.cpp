// SPDX-License-Identifier: MIT
//
// The exported load functions: how busy the processors are and how much of the memory is in use.

#include "LoadMonitor.h"

#include <fcntl.h>
#include <sys/times.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "Talvane.h"
#include "interface/CallResult.h"
#include "load/CpuTimeText.h"
#include "load/UsageShare.h"

using namespace talvane;

int ExecuteFirstTime = 0;

namespace {

constexpr int kMaxCpus = sizeof CpuUsageRageInformation{}.UsageRate / sizeof(int);
constexpr const char* kStatFile = "/proc/stat";
constexpr std::size_t kSearchedLength = 1024;  // Kept: a line beyond these bytes is not found.
constexpr int kMinCounters = 2;

// Ticks since the processor's start, at the latest sample and at the one before, and the ticks of
// each kind in between.
long cp_time[kMaxCpus][kCpuCounters];
long cp_old[kMaxCpus][kCpuCounters];
long UserTime[kMaxCpus];
long NiceTime[kMaxCpus];
long SysTime[kMaxCpus];
long IdleTime[kMaxCpus];

// The difference wraps around at 32 bits, as the counters do.
long Elapsed(long now, long before) {
    return static_cast<long>(static_cast<unsigned long>(now) - static_cast<unsigned long>(before));
}

// An open /proc/stat, closed when it goes out of scope.
class StatFile {
public:
    StatFile() : descriptor_(open(kStatFile, O_RDONLY)) {}
    ~StatFile() {
        if (IsOpen()) (void)close(descriptor_);  // result not used: nothing was written
    }
    StatFile(const StatFile&) = delete;
    StatFile& operator=(const StatFile&) = delete;

    bool IsOpen() const { return descriptor_ >= 0; }

    // Reads from the start. Returns the number of bytes, or -1.
    ssize_t Read(char* text, std::size_t size) {
        (void)lseek(descriptor_, 0, SEEK_SET);  // result not used: a file just opened is there
        return read(descriptor_, text, size);
    }

private:
    int descriptor_;
};

// Takes one sample of a processor. Returns 0, or -1 when the file has no line of the processor with
// at least two numbers. Kept: a file that cannot be opened or read is reported on a standard stream
// and counts as a success; the counters stay as they were.
int RetrieveCpuTime(int nr_cpu) {
    static int n;
    StatFile stat;
    if (!stat.IsOpen()) {
        (void)std::printf("File open failed!\n");
        return kSuccess;
    }
    char text[kSearchedLength + 1];
    n = static_cast<int>(stat.Read(text, kSearchedLength));
    if (n < 0) {
        std::perror(kStatFile);
        return kSuccess;
    }
    text[n] = '\0';

    long(&now)[kCpuCounters] = cp_time[nr_cpu];
    long(&before)[kCpuCounters] = cp_old[nr_cpu];
    if (ScanCpuTimes(text, nr_cpu, now) < kMinCounters) return kFailure;
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
    while (count < kMaxCpus && RetrieveCpuTime(count) != kFailure) ++count;
    return count;
}

// Whether a signal ended this sleep early; `left` then holds the whole seconds that are left, of
// which there may be none.
bool SleepEndedEarly(unsigned seconds, unsigned& left) {
    errno = 0;
    left = sleep(seconds);
    return left != 0 || errno == EINTR;
}

// The time since some moment in the past, in ticks of the system. Other clocks would be finer, but
// old C libraries have them elsewhere.
long Ticks() {
    tms unused{};
    return times(&unused);
}

// Sleeps through all signals until so many seconds after `start`, at most a few ticks longer.
void WaitForSecond(long start, unsigned seconds) {
    constexpr long kNanoseconds = 1000000000;
    const long ticksPerSecond = sysconf(_SC_CLK_TCK);
    const long missing = static_cast<long>(seconds) * ticksPerSecond - Elapsed(Ticks(), start);
    if (missing <= 0) return;
    const long rest = missing + 1;  // the current tick has begun already
    timespec time{rest / ticksPerSecond, rest % ticksPerSecond * (kNanoseconds / ticksPerSecond)};
    while (nanosleep(&time, &time) != 0 && errno == EINTR) continue;
}

// Sleeps for the whole interval, whatever signals come: the answer describes the interval, and one
// without a tick would end the program by a division by zero. Leaves errno alone.
void SleepThrough(unsigned seconds) {
    const int errnoBefore = errno;
    unsigned left = seconds;
    do {
        seconds = left;
        const long start = Ticks();
        if (!SleepEndedEarly(seconds, left)) break;
        // sleep() says how many whole seconds are left and drops the fraction: wait for its end.
        WaitForSecond(start, seconds - left);
    } while (left != 0);
    errno = errnoBefore;
}

constexpr const char* kMemoryFile = "Memusage_dat";

struct CloseFile {
    void operator()(std::FILE* file) const {
        (void)std::fclose(file);  // result not used: nothing was written
    }
};

// The number in the file's next line; 0 for a line that is missing or holds no number.
long ReadNumber(std::FILE* file) {
    char line[256] = {};
    (void)std::fgets(line, sizeof line, file);  // result not used: the line then stays empty
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
    SleepThrough(static_cast<unsigned>(interval));
    if (SampleAll(quantity) == kFailure) return kFailure;
    for (int cpu = 0; cpu < quantity; ++cpu)
        buffer->UsageRate[cpu] =
            BusyPercent(IdleTime[cpu], UserTime[cpu], NiceTime[cpu], SysTime[cpu]);
    buffer->quantity = quantity;
    return kSuccess;
}

int GetMemUsageRate(void) {
    char command[255] = {};
    std::strcat(command, "free |awk '{FS=");
    std::strcat(command, "\":\"");
    std::strcat(command, "; if ($1~/Mem/){print $2}}'|awk '{print $1;print $2}' > Memusage_dat ");
    (void)std::system(command);  // result not used: the file shows whether the command ran

    int percent = 0;
    {
        const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(kMemoryFile, "r"));
        if (file == nullptr) {
            (void)std::printf("File is not exist!\n");
            return 0;
        }
        const long total = ReadNumber(file.get());
        const long used = ReadNumber(file.get());
        percent = UsedPercent(used, total);
    }
    (void)std::remove(kMemoryFile);  // result not used: the next call overwrites the file
    return percent;
}

}  // extern "C"
