// SPDX-License-Identifier: MIT
//
// Tries the system calls by which the library and the tool read a machine. Nothing is changed.

#include "tools/doctor/Facts.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/io.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string_view>

#include "Talvane.h"
#include "tools/base/Descriptor.h"
#include "transport/KernelController.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

Attempt TryOpen(const fs::path& path, int flags = O_RDONLY) {
    const Descriptor file(path.c_str(), flags | O_NONBLOCK | O_LARGEFILE);
    return {file.IsOpen() ? 0 : errno};
}

// The names in a folder; none, with the errno in `attempt`, when it cannot be read.
std::vector<std::string> List(const fs::path& path, Attempt& attempt) {
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(path.c_str()), closedir);
    attempt.error = folder == nullptr ? errno : 0;
    std::vector<std::string> names;
    if (folder == nullptr) return names;
    while (const dirent64* const entry = readdir64(folder.get()))
        if (entry->d_name[0] != '.') names.emplace_back(entry->d_name);
    std::sort(names.begin(), names.end());
    return names;
}

std::string TextIn(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool Exists(const fs::path& path) {
    return access(path.c_str(), F_OK) == 0;
}

// The library's read of the BIOS segment and the mebibyte after it.
Attempt TryReadMemory(const fs::path& path) {
    constexpr off_t kSegment = 0xF0000;
    constexpr std::size_t kSize = 1 << 20;
    const Descriptor memory(path.c_str(), O_RDONLY);
    if (!memory.IsOpen()) return {errno};
    std::vector<char> bytes(kSize);
    if (lseek(memory.Get(), kSegment, SEEK_SET) == -1) return {errno};
    return {read(memory.Get(), bytes.data(), bytes.size()) < 0 ? errno : 0};
}

Attempt TryPorts() {
    if (iopl(3) != 0) return {errno};
    (void)iopl(0);  // result not used: lowering is always allowed
    return {};
}

// "none [integrity] confidentiality": the word in brackets.
std::string LockdownOf(const std::string& text) {
    const std::size_t begin = text.find('[');
    const std::size_t end = text.find(']', begin);
    if (end == std::string::npos) return "";
    return text.substr(begin + 1, end - begin - 1);
}

std::size_t CountPciFunctions(const std::vector<std::string>& names) {
    constexpr std::string_view kDomain = "0000:";
    constexpr unsigned kLastBus = 10;
    return static_cast<std::size_t>(
        std::count_if(names.begin(), names.end(), [&](const std::string& name) {
            unsigned bus = kLastBus + 1;
            if (name.size() < 7 || !name.starts_with(kDomain)) return false;
            (void)std::from_chars(name.data() + 5, name.data() + 7, bus,
                                  16);  // stays when no number
            return bus <= kLastBus;
        }));
}

Attempt TryBmc(const fs::path& path) {
    constexpr std::chrono::seconds kPatience{2};
    const transport::Request getDeviceId{.netFn = 0x06, .lun = 0, .command = 0x01, .data = {}};
    transport::KernelController bmc(path.string());
    transport::Response response;
    const transport::Deadline deadline = transport::Deadline::clock::now() + kPatience;
    return {bmc.Exchange(getDeviceId, deadline, response)};
}

bool IsIpmiDevice(const fs::path& file, const fs::path& root) {
    return file == root / "dev/ipmi" || file == root / "dev/ipmi0";
}

// The names of other processes that have a device of the BMC open, as far as they can be seen.
std::vector<std::string> IpmiPrograms(const fs::path& root) {
    std::vector<std::string> programs;
    Attempt ignored;
    for (const std::string& process : List(root / "proc", ignored)) {
        if (process.find_first_not_of("0123456789") != std::string::npos) continue;
        if (process == std::to_string(getpid())) continue;
        const fs::path folder = root / "proc" / process;
        for (const std::string& file : List(folder / "fd", ignored)) {
            std::error_code error;
            if (!IsIpmiDevice(fs::read_symlink(folder / "fd" / file, error), root)) continue;
            std::string name = TextIn(folder / "comm");
            programs.push_back(name.substr(0, name.find('\n')));
            break;
        }
    }
    return programs;
}

std::string FirstDisk(const std::vector<std::string>& names, const fs::path& root) {
    for (const std::string_view kind : {"sd", "nvme", "vd", "hd"})
        for (const std::string& name : names)
            if (name.starts_with(kind)) return (root / "dev" / name).string();
    return "";
}

bool IsInPath(const char* program) {
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (access((folder + "/" + program).c_str(), X_OK) == 0) return true;
    return false;
}

void ReadIpmi(const fs::path& root, Facts& facts) {
    const fs::path modules = root / "sys/module";
    const fs::path device = root / "dev/ipmi0";
    // Drivers can also be part of the kernel. Then there is the device.
    const bool isThere = Exists(device);
    facts.hasInterfaceDriver =
        isThere || Exists(modules / "ipmi_si") || Exists(modules / "ipmi_ssif");
    facts.hasDeviceDriver = isThere || Exists(modules / "ipmi_devintf");
    facts.openKernelIpmi = TryOpen(device, O_RDWR);
    facts.askBmc = facts.openKernelIpmi.Succeeded() ? TryBmc(device) : facts.openKernelIpmi;
    facts.openBridge = TryOpen(root / "dev/ipmi");
    facts.otherIpmiPrograms = IpmiPrograms(root);
}

void ReadFiles(const fs::path& root, Facts& facts) {
    facts.hasUefi = Exists(root / "sys/firmware/efi");
    facts.lockdown = LockdownOf(TextIn(root / "sys/kernel/security/lockdown"));
    facts.isEmulated = TextIn(root / "proc/sys/fs/binfmt_misc/qemu-i386").starts_with("enabled");
    const std::string parameters = TextIn(root / "proc/cmdline");
    facts.refuses32Bit = parameters.find("ia32_emulation=0") != std::string::npos ||
                         parameters.find("ia32_emulation=off") != std::string::npos;
    facts.openMemory = TryOpen(root / "dev/mem");
    facts.readMemory = TryReadMemory(root / "dev/mem");
    facts.openTables = TryOpen(root / "sys/firmware/dmi/tables/DMI");
    facts.pciFunctions = CountPciFunctions(List(root / "sys/bus/pci/devices", facts.listPci));
    (void)List(root / "proc/ide", facts.listIde);
    facts.firstDisk = FirstDisk(List(root / "sys/block", facts.listDisks), root);
    facts.openDisk = TryOpen(facts.firstDisk);
    facts.openStat = TryOpen(root / "proc/stat");
}

// The library that this process has loaded, and the one that lies where the tool expects it: beside
// it as installed, or as built.
void ReadLibraries(Facts& facts) {
    Dl_info info{};
    std::error_code error;
    if (dladdr(reinterpret_cast<const void*>(&GetInfo), &info) != 0)
        facts.library = fs::canonical(info.dli_fname, error);
    const fs::path here = fs::read_symlink("/proc/self/exe", error).parent_path();
    facts.hasPreloadLibrary = false;
    for (const char* const folder : {TALVANE_LIBRARY_FOLDER, ".."}) {
        const fs::path library = here / folder / "libTalvane.so.1";
        if (facts.meantLibrary.empty() && Exists(library))
            facts.meantLibrary = fs::canonical(library, error);
    }
    for (const char* const folder : {TALVANE_LIBRARY_FOLDER "/talvane", "../simulator", "."})
        facts.hasPreloadLibrary =
            facts.hasPreloadLibrary || Exists(here / folder / "libtalvane-sim.so");
}

}  // namespace

Facts ReadFacts(const fs::path& root) {
    Facts facts;
    facts.isRoot = geteuid() == 0;
    facts.portAccess = TryPorts();
    facts.hasFree = IsInPath("free");
    facts.hasAwk = IsInPath("awk");
    facts.writeHere = {access(".", W_OK) == 0 ? 0 : errno};
    ReadFiles(root, facts);
    ReadIpmi(root, facts);
    ReadLibraries(facts);
    return facts;
}

}  // namespace tool
