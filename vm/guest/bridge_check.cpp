// SPDX-License-Identifier: MIT
//
// Asks the bridge's device what agents ask, and what they should not ask. Prints for each check
// whether the answer was right. Runs in the emulated machine, as a 32-bit program like the agents.
// Usage: bridge_check requests|nonsense|many|silent|gone

#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr unsigned long kSendMessage = 0xC0045301;
constexpr std::uint8_t kUntouched = 0xA5;
constexpr std::uint8_t kStorage = 0x0A;
constexpr std::uint8_t kSensors = 0x04;
constexpr std::uint8_t kApplication = 0x06;

// The driver's record, in the layout of a 32-bit program.
struct Record {
    std::uint8_t command = 0;
    std::uint8_t responder = 0xFF;
    std::uint8_t bus = 0;
    std::uint8_t netFn = 0;
    std::uint8_t lun = 0;
    const void* data = nullptr;
    std::uint32_t dataLength = 0;
    std::uint32_t timeout = 3000;
    void* response = nullptr;
    std::uint32_t responseLength = 0xDEADBEEF;
    std::uint8_t completion = kUntouched;
};
static_assert(sizeof(Record) == 32);

struct Answer {
    int error = 0;
    std::uint8_t completion = 0;
    Bytes data;
    bool restUntouched = false;  // of the response buffer, after the data
};

bool allRight = true;

void Check(const std::string& what, bool right) {
    std::cout << (right ? "ok      " : "FAILED  ") << what << std::endl;
    allRight = allRight && right;
}

int Open() {
    const int device = open("/dev/ipmi", O_RDONLY);
    if (device < 0) Check("/dev/ipmi can be opened", false);
    return device;
}

int Send(int device, Record record) {
    return ioctl(device, kSendMessage, &record) == 0 ? 0 : errno;
}

Answer Ask(int device, std::uint8_t netFn, std::uint8_t command, const Bytes& data,
           std::uint32_t timeout = 3000) {
    std::array<std::uint8_t, 256> response;
    response.fill(kUntouched);
    Record record;
    record.netFn = netFn;
    record.command = command;
    record.data = data.empty() ? nullptr : data.data();
    record.dataLength = static_cast<std::uint32_t>(data.size());
    record.timeout = timeout;
    record.response = response.data();
    Answer answer;
    if (ioctl(device, kSendMessage, &record) != 0) {
        answer.error = errno;
        return answer;
    }
    answer.completion = record.completion;
    const auto length = std::min<std::size_t>(record.responseLength, response.size());
    const auto end = response.begin() + static_cast<std::ptrdiff_t>(length);
    answer.data.assign(response.begin(), end);
    answer.restUntouched =
        std::all_of(end, response.end(), [](std::uint8_t byte) { return byte == kUntouched; });
    return answer;
}

// The last bytes before memory that cannot be touched.
template <typename Object>
Object* AtTheEdge() {
    constexpr std::size_t kPage = 4096;
    void* const pages =
        mmap(nullptr, 2 * kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    auto* const edge = static_cast<std::uint8_t*>(pages) + kPage;
    (void)mprotect(edge, kPage, PROT_NONE);
    return reinterpret_cast<Object*>(edge - sizeof(Object));
}

// The record with this ID, read in two pieces of the caller's own.
Bytes RecordInPieces(int device, std::uint8_t id) {
    const Bytes reservation = Ask(device, kStorage, 0x22, {}).data;
    if (reservation.size() != 2) return {};
    Bytes record;
    std::uint8_t end = 5;
    while (record.size() < end) {
        const auto offset = static_cast<std::uint8_t>(record.size());
        const auto count = static_cast<std::uint8_t>(std::min(end - offset, 16));
        const Answer piece =
            Ask(device, kStorage, 0x23, {reservation[0], reservation[1], id, 0, offset, count});
        if (piece.completion != 0 || piece.data.size() != count + 2U) return {};
        record.insert(record.end(), piece.data.begin() + 2, piece.data.end());
        if (offset == 0) end = static_cast<std::uint8_t>(5 + record[4]);
    }
    return record;
}

void CheckRequests() {
    const int device = Open();
    const Answer id = Ask(device, kApplication, 0x01, {});
    Check("Get Device ID: completion code 0", id.error == 0 && id.completion == 0);
    Check("Get Device ID: the response begins after the completion code",
          id.data.size() == 15 && id.data[0] == 0x2A && id.data[2] == 0x02 && id.data[3] == 0x41);
    Check("Get Device ID: the bytes after the response are untouched", id.restUntouched);
    using Exact = std::array<std::uint8_t, 15>;
    Record exact;
    exact.netFn = kApplication;
    exact.command = 0x01;
    exact.response = AtTheEdge<Exact>();
    Check("Get Device ID: a response buffer of just its 15 bytes is enough",
          Send(device, exact) == 0 && (*static_cast<const Exact*>(exact.response))[0] == 0x2A);

    const Answer unknown = Ask(device, kApplication, 0x7D, {});
    Check("unknown command: completion code 0xC1 in its field", unknown.completion == 0xC1);
    Check("unknown command: no byte of response", unknown.data.empty() && unknown.restUntouched);

    const Answer whole = Ask(device, kStorage, 0x23, {0, 0, 1, 0, 0, 0xFF});
    const Bytes pieces = RecordInPieces(device, 1);
    Check("whole sensor data record: longer than the BMC's buffer", whole.data.size() > 50);
    Check("whole sensor data record: the bytes of its pieces",
          whole.data.size() == pieces.size() + 2 &&
              std::equal(pieces.begin(), pieces.end(), whole.data.begin() + 2));
    Check("whole sensor data record: the bytes after it are untouched", whole.restUntouched);

    const Answer area = Ask(device, kStorage, 0x11, {0, 0, 0, 0xF8});
    Check("long inventory read: all 248 bytes", area.completion == 0 && area.data.size() == 249 &&
                                                    area.data[0] == 248 && area.data[1] == 1);
    (void)close(device);
}

void CheckNonsense() {
    const int device = Open();
    std::array<std::uint8_t, 256> response;
    Record good;
    good.netFn = kApplication;
    good.command = 0x01;
    good.response = response.data();
    const auto with = [&](const std::function<void(Record&)>& change) {
        Record record = good;
        change(record);
        return Send(device, record);
    };
    Check("another ioctl: ENOTTY", ioctl(device, 0xC0045302UL, &good) != 0 && errno == ENOTTY);
    Check("no record: EFAULT", ioctl(device, kSendMessage, nullptr) != 0 && errno == EFAULT);
    Check("network function of a response: EINVAL",
          with([](Record& r) { r.netFn = 0x07; }) == EINVAL);
    Check("network function of seven bits: EINVAL",
          with([](Record& r) { r.netFn = 0x46; }) == EINVAL);
    Check("another responder: EINVAL", with([](Record& r) { r.responder = 0x82; }) == EINVAL);
    Check("another bus: EINVAL", with([](Record& r) { r.bus = 1; }) == EINVAL);
    Check("fifth LUN: EINVAL", with([](Record& r) { r.lun = 4; }) == EINVAL);
    Check("data of 4 GB: EINVAL", with([&](Record& r) {
                                      r.data = &good;
                                      r.dataLength = 0xFFFFFFFF;
                                  }) == EINVAL);
    Check("data longer than the kernel takes: EINVAL", with([&](Record& r) {
                                                           r.data = &good;
                                                           r.dataLength = 273;
                                                       }) == EINVAL);
    Check("data beyond the last address: EFAULT",
          with([](Record& r) {
              r.data = reinterpret_cast<const void*>(static_cast<std::uintptr_t>(0xFFFFFFF0));
              r.dataLength = 32;
          }) == EFAULT);
    using Half = std::array<std::uint8_t, sizeof(Record) / 2>;
    Check("half a record: EFAULT",
          ioctl(device, kSendMessage, AtTheEdge<Half>()) != 0 && errno == EFAULT);
    Check("data nowhere: EFAULT", with([](Record& r) { r.dataLength = 4; }) == EFAULT);
    Check("response nowhere: EFAULT", with([](Record& r) { r.response = nullptr; }) == EFAULT);
    void* const closed = mmap(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    Check("data not readable: EFAULT", with([&](Record& r) {
                                           r.data = closed;
                                           r.dataLength = 4;
                                       }) == EFAULT);
    Check("response not writable: EFAULT", with([&](Record& r) { r.response = closed; }) == EFAULT);
    std::mt19937 random(3);
    int refused = 0;
    for (int i = 0; i < 500; ++i) {
        std::array<std::uint32_t, sizeof(Record) / 4> words;
        for (std::uint32_t& word : words) word = static_cast<std::uint32_t>(random());
        words[0] |= 0x01000000;  // the network function of a response: none reaches the BMC
        if (ioctl(device, kSendMessage, words.data()) != 0 && errno == EINVAL) ++refused;
    }
    Check("500 arbitrary records: all EINVAL", refused == 500);
    Check("and a good request is answered as ever", Send(device, good) == 0);
    (void)close(device);
}

// A caller among several: whole records, for which all want the one reservation, and readings.
bool AskManyTimes(int device, int caller) {
    constexpr std::uint32_t kPatient = 30000;
    const auto id = static_cast<std::uint8_t>(caller + 1);
    const Bytes record = Ask(device, kStorage, 0x23, {0, 0, id, 0, 0, 0xFF}, kPatient).data;
    bool right = record.size() > 50;
    for (int i = 0; i < 10 && right; ++i) {
        const Answer again = Ask(device, kStorage, 0x23, {0, 0, id, 0, 0, 0xFF}, kPatient);
        const Answer reading = Ask(device, kSensors, 0x2D, {record[9]}, kPatient);
        right = again.error == 0 && again.data == record && reading.completion == 0 &&
                reading.data.size() >= 2;
    }
    return right;
}

// Runs callers with numbers from 0 on, each in a process of its own. Returns how many were right.
int RunCallers(int count, const std::function<bool(int)>& caller) {
    for (int number = 0; number < count; ++number)
        if (fork() == 0) _exit(caller(number) ? 0 : 1);
    int right = 0;
    int status = 0;
    while (wait(&status) > 0)
        if (status == 0) ++right;
    return right;
}

void CheckMany() {
    constexpr int kCallers = 6;
    const std::string callers = std::to_string(kCallers) + " callers at once: ";
    Check(callers + "each gets its own answers", RunCallers(kCallers, [](int caller) {
                                                     const int device = Open();
                                                     return AskManyTimes(device, caller) &&
                                                            close(device) == 0;
                                                 }) == kCallers);
    const int shared = Open();
    Check(callers + "on one descriptor, too", RunCallers(kCallers, [&](int caller) {
                                                  return AskManyTimes(shared, caller);
                                              }) == kCallers);

    std::vector<int> open;
    while (open.size() < 60) {
        const int device = ::open("/dev/ipmi", O_RDONLY);
        if (device < 0) break;
        open.push_back(device);
    }
    Check("more open files than the bridge allows: EBUSY",
          open.size() > 20 && open.size() < 60 && errno == EBUSY);
    Check("the last of them is answered",
          !open.empty() && Ask(open.back(), kApplication, 0x01, {}).data.size() == 15);
    for (const int device : open) (void)close(device);
    (void)close(shared);
}

// The emulator's side of the console stops and continues the BMC.
void TellHost(const std::string& order) {
    std::fstream console("/dev/ttyS0");
    console << order << std::endl;
    std::string done;
    std::getline(console, done);
}

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// What an emulated machine on a busy computer may take longer.
constexpr double kSlackSeconds = 10;

// Whether a request with this time-out ends by it.
bool TimesOut(int device, std::uint32_t timeout) {
    const auto start = Clock::now();
    const Answer answer = Ask(device, kApplication, 0x01, {}, timeout);
    const double waited = SecondsSince(start);
    return answer.error == ETIMEDOUT && waited >= timeout / 1000.0 &&
           waited < timeout / 1000.0 + kSlackSeconds;
}

// Whether a request that a signal interrupts ends with EINTR, long before its time-out.
bool IsInterrupted(int device) {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    (void)sigaction(SIGALRM, &action, nullptr);
    const auto start = Clock::now();
    (void)alarm(1);
    const Answer answer = Ask(device, kApplication, 0x01, {}, 50000);
    return answer.error == EINTR && SecondsSince(start) < 1 + kSlackSeconds;
}

// Callers that all ask this file, and wait for a minute unless they are refused.
std::vector<pid_t> StartCrowd(int device, int count) {
    std::vector<pid_t> crowd;
    for (int i = 0; i < count; ++i) {
        const pid_t caller = fork();
        if (caller == 0) _exit(Ask(device, kApplication, 0x01, {}, 60000).error == EBUSY ? 0 : 1);
        crowd.push_back(caller);
    }
    usleep(1000000);
    return crowd;
}

// Kills those that still wait. Returns how many were refused.
int EndCrowd(const std::vector<pid_t>& crowd) {
    int refused = 0;
    for (const pid_t caller : crowd) {
        (void)kill(caller, SIGKILL);
        int status = 0;
        if (waitpid(caller, &status, 0) == caller && WIFEXITED(status) && WEXITSTATUS(status) == 0)
            ++refused;
    }
    return refused;
}

// What the bridge lets a file have under way is soon used up by requests that nobody answers.
void GiveUpMany(int device) {
    int ended = 0;
    bool busy = false;
    for (int i = 0; i < 130; ++i) {
        const int error = Ask(device, kApplication, 0x01, {}, 5).error;
        if (error == ETIMEDOUT || error == EBUSY) ++ended;
        busy = error == EBUSY;
    }
    Check("130 requests given up: each an errno, EBUSY at last", ended == 130 && busy);
}

void CheckSilent() {
    const int device = Open();
    const int crowded = Open();
    TellHost("@bmc stop");
    const bool inTime = TimesOut(device, 1000);
    const int right = RunCallers(4, [&](int caller) {
        const auto timeout = static_cast<std::uint32_t>(500 + 500 * caller);
        return TimesOut(caller < 2 ? device : Open(), timeout);
    });
    const pid_t killed = fork();
    if (killed == 0) {
        (void)Ask(device, kApplication, 0x01, {}, 50000);
        _exit(0);
    }
    usleep(300000);
    (void)kill(killed, SIGKILL);
    const auto start = Clock::now();
    (void)waitpid(killed, nullptr, 0);
    const double lingered = SecondsSince(start);
    const bool interrupted = IsInterrupted(Open());
    const std::vector<pid_t> crowd = StartCrowd(Open(), 40);
    const auto before = Clock::now();
    (void)close(Open());
    const double openedIn = SecondsSince(before);
    const int refused = EndCrowd(crowd);
    GiveUpMany(crowded);
    TellHost("@bmc continue");
    Check("BMC that does not answer: ETIMEDOUT after the stated second", inTime);
    Check("BMC that does not answer: four callers, each its own time-out", right == 4);
    Check("BMC that does not answer: a killed caller ends at once", lingered < kSlackSeconds);
    Check("BMC that does not answer: a signal ends the wait with EINTR", interrupted);
    Check("BMC that does not answer: another file opens at once", openedIn < kSlackSeconds);
    Check("BMC that does not answer: 40 callers of one file, most refused with EBUSY",
          refused > 20);
    for (const int file : {device, crowded}) {
        Answer next;
        for (int tries = 0; tries < 1000 && (tries == 0 || next.error == EBUSY); ++tries) {
            if (tries > 0) usleep(100000);
            next = Ask(file, kSensors, 0x2D, {4}, 20000);
        }
        Check(std::string("and when it does again: the answer to this question, not to ") +
                  (file == device ? "the last" : "130 given up"),
              next.error == 0 && next.completion == 0 && next.data.size() < 15 &&
                  next.data[0] == 192);
        (void)close(file);
    }
}

void Write(const std::string& file, const std::string& text) {
    std::ofstream(file) << text << std::flush;
}

// In place of the bridge's rule of udev.
void GiveToBridge() {
    (void)!chown("/dev/ipmi0", 0, 990);
    (void)chmod("/dev/ipmi0", 0660);
}

void CheckGone() {
    const std::filesystem::path interface = "/sys/class/ipmi/ipmi0/device";
    const std::string name = std::filesystem::canonical(interface).filename();
    const std::string driver = std::filesystem::canonical(interface / "driver").string() + '/';
    const int device = Open();
    Check("before the device disappears: answered", Ask(device, kApplication, 0x01, {}).error == 0);
    Write(driver + "unbind", name);
    Check("device that disappears: ENODEV", Ask(device, kApplication, 0x01, {}).error == ENODEV);
    Check("and as long as it is away", Ask(device, kApplication, 0x01, {}).error == ENODEV);
    const int late = open("/dev/ipmi", O_RDONLY);
    Check("without the device: /dev/ipmi cannot be opened (ENODEV)", late < 0 && errno == ENODEV);
    Write(driver + "bind", name);
    Answer back;
    for (int tries = 0; tries < 1000 && back.data.empty(); ++tries) {
        usleep(100000);
        GiveToBridge();
        back = Ask(device, kApplication, 0x01, {});
    }
    Check("device that comes back: answered on the same descriptor", back.data.size() == 15);
    (void)close(device);
}

}  // namespace

int main(int argc, char** argv) {
    const std::map<std::string, void (*)()> checks = {{"requests", CheckRequests},
                                                      {"nonsense", CheckNonsense},
                                                      {"many", CheckMany},
                                                      {"silent", CheckSilent},
                                                      {"gone", CheckGone}};
    const auto check = checks.find(argc == 2 ? argv[1] : "");
    if (check == checks.end()) {
        std::cerr << "usage: bridge_check requests|nonsense|many|silent|gone\n";
        return 2;
    }
    check->second();
    return allRight ? 0 : 1;
}
