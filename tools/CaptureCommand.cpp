// SPDX-License-Identifier: MIT
//
// Reads the sources one after the other, and writes the archive.

#include "tools/CaptureCommand.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <string>

#include "archive/Gzip.h"
#include "archive/Tar.h"
#include "tools/AtomicFile.h"
#include "tools/Report.h"
#include "tools/base/SourceProblem.h"
#include "tools/capture/MachineFolder.h"
#include "tools/capture/Redaction.h"

namespace tool {
namespace {

struct CaptureStep {
    const char* what;
    void (*read)(MachineCapture& capture);
};

constexpr CaptureStep kCaptureSteps[] = {
    {"SMBIOS", CaptureSmbios}, {"the BMC", CaptureBmc},   {"PCI functions", CapturePci},
    {"drives", CaptureDrives}, {"the load", CaptureLoad},
};

// One line of a terminal that the next one replaces.
class ProgressLine {
public:
    explicit ProgressLine(std::ostream& err) : err_(err), isShown_(isatty(STDERR_FILENO) != 0) {}
    ~ProgressLine() { Show(""); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void Show(const std::string& text) {
        constexpr const char* kStartOfClearedLine = "\r\x1B[K";
        if (isShown_) err_ << kStartOfClearedLine << text << std::flush;
    }

private:
    std::ostream& err_;
    bool isShown_;
};

std::string KernelText() {
    utsname kernel{};
    (void)uname(&kernel);  // result not used: it fails for a wrong address alone
    return std::string(kernel.sysname) + ' ' + kernel.release + ' ' + kernel.version + ' ' +
           kernel.machine;
}

std::vector<std::string> ProblemsOf(const MachineCapture& capture, const std::vector<Way>& ways) {
    std::vector<std::string> problems;
    for (const Source* source : capture.notRead) {
        const std::string problem = ProblemOf(*source, ways).message;
        if (std::find(problems.begin(), problems.end(), problem) == problems.end())
            problems.push_back(problem);
    }
    return problems;
}

CaptureHead HeadOf(const std::vector<std::string>& problems, bool isRedacted) {
    CaptureHead head{"Captured by talvane " TALVANE_VERSION " on " + TimeNow() + '.',
                     "Kernel: " + KernelText()};
    if (isRedacted)
        head.push_back("Redacted: serial numbers, UUIDs, asset tags and service tags are marks.");
    for (const std::string& problem : problems) head.push_back("Not read: " + problem);
    return head;
}

// The files in one folder, so that unpacking them leaves others alone.
archive::Bytes ArchiveOf(archive::Files files) {
    constexpr const char* kFolder = "machine/";
    archive::Files inFolder;
    for (auto& [name, bytes] : files) inFolder.emplace(kFolder + name, std::move(bytes));
    const archive::Bytes tar = archive::WriteTar(inFolder, std::time(nullptr));
    (void)archive::ReadTar(tar);  // throws where nobody could replay it
    return archive::Compress(tar);
}

}  // namespace

bool WriteCapture(const CaptureOrder& order, const Settings& settings, std::ostream& err) {
    RequireReplaceable(order.file);  // before the machine is read, which takes its time
    MachineCapture capture;
    {
        ProgressLine progress(err);
        for (const CaptureStep& step : kCaptureSteps) {
            progress.Show(std::string("Reading ") + step.what + " ...");
            step.read(capture);
        }
    }
    const std::vector<std::string> problems = ProblemsOf(capture, settings.ways);
    if (order.isRedacted) Redact(capture);
    const archive::Bytes bytes =
        ArchiveOf(MachineFolderOf(capture, HeadOf(problems, order.isRedacted), settings.ways));
    constexpr mode_t kOwnerOnly = 0600;  // it holds serial numbers
    WriteAtomically(order.file, {reinterpret_cast<const char*>(bytes.data()), bytes.size()},
                    kOwnerOnly);
    for (const std::string& problem : problems) err << "talvane: " << problem << '\n';
    return problems.empty();
}

}  // namespace tool
