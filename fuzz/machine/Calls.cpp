// SPDX-License-Identifier: MIT
//
// The calls of the C library that the library and the fuzzer's own runtime make: the linker sends
// them here (--wrap). Those that are not for a fed machine go to the C library.

#include <dirent.h>
#include <linux/hdreg.h>
#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "fuzz/machine/FedMachine.h"
#include "fuzz/machine/OpenFiles.h"

namespace fuzz {
namespace {

constexpr std::string_view kPhysicalMemory = "/dev/mem";
constexpr std::string_view kBmc = "/dev/ipmi";
constexpr std::string_view kScratchFile = "Memusage_dat";

// The driver's request "send and wait", and its argument in the layout of this program.
constexpr unsigned long kSendMessage = 0xC0045301;
struct DriverRequest {
    unsigned char command;
    unsigned char responder;
    unsigned char bus;
    unsigned char netFunction;
    unsigned char lun;
    unsigned char* data;
    unsigned dataLength;
};
struct DriverMessage {
    DriverRequest request;
    unsigned timeout;
    unsigned char* response;
    unsigned responseLength;
    unsigned char completion;
};
constexpr std::size_t kMaxResponse = 256;

int Fail(int error) {
    errno = error;
    return -1;
}

bool HasFile(const FedMachine& machine, std::string_view path) {
    if (path == kPhysicalMemory) return !machine.memory.empty();
    if (path == kBmc) return static_cast<bool>(machine.bmc);
    return machine.files.contains(std::string(path)) ||
           machine.identities.contains(std::string(path));
}

std::size_t ReadBytes(OpenFile& file, talvane::ByteView bytes, unsigned char* out,
                      std::size_t size) {
    if (file.position >= bytes.size()) return 0;
    const auto rest = bytes.subspan(static_cast<std::size_t>(file.position));
    const std::size_t length = std::min(size, rest.size());
    std::copy_n(rest.begin(), length, out);
    file.position += length;
    return length;
}

// Copies the pieces alone: what is between them stays as it is in `out`.
std::size_t ReadPieces(const std::vector<FedMachine::Piece>& pieces, OpenFile& file,
                       unsigned char* out, std::size_t size) {
    std::uint64_t end = 0;
    for (const FedMachine::Piece& piece : pieces) {
        const std::uint64_t pieceEnd = piece.address + piece.bytes.size();
        end = std::max(end, pieceEnd);
        const std::uint64_t from = std::max(piece.address, file.position);
        const std::uint64_t to = std::min(pieceEnd, file.position + size);
        if (from >= to) continue;
        std::copy_n(piece.bytes.begin() + static_cast<std::ptrdiff_t>(from - piece.address),
                    to - from, out + (from - file.position));
    }
    if (file.position >= end) return 0;
    const std::size_t length =
        static_cast<std::size_t>(std::min<std::uint64_t>(size, end - file.position));
    file.position += length;
    return length;
}

int SendMessage(const FedMachine& machine, const DriverMessage& message) {
    const DriverRequest& request = message.request;
    const Bytes answer = machine.bmc({request.netFunction, request.command, request.lun,
                                      talvane::ByteView(request.data, request.dataLength)});
    std::copy_n(answer.begin(), std::min(answer.size(), kMaxResponse), message.response);
    return 0;
}

int ReadIdentity(const FedMachine& machine, const OpenFile& file, void* out) {
    constexpr std::size_t kIdentitySize = 512;
    const auto found = machine.identities.find(file.path);
    if (found == machine.identities.end()) return Fail(ENOTTY);
    std::copy_n(found->second.begin(), std::min(found->second.size(), kIdentitySize),
                static_cast<unsigned char*>(out));
    return 0;
}

DIR* const kFedDirectory = reinterpret_cast<DIR*>(&ReadPieces);

}  // namespace

extern "C" {

int RealOpen(const char* path, int flags, ...) asm("__real_open");
int Open(const char* path, int flags, ...) asm("__wrap_open");
int Open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const int mode = va_arg(arguments, int);
    va_end(arguments);
    const FedMachine* const machine = FedMachine::Current();
    if (machine == nullptr) return RealOpen(path, flags, mode);
    if (!HasFile(*machine, path)) return Fail(ENOENT);
    return OpenFiles::Add(path);
}

int RealClose(int descriptor) asm("__real_close");
int Close(int descriptor) asm("__wrap_close");
int Close(int descriptor) {
    return OpenFiles::Remove(descriptor) ? 0 : RealClose(descriptor);
}

off_t RealLseek(int descriptor, off_t offset, int origin) asm("__real_lseek");
off_t Lseek(int descriptor, off_t offset, int origin) asm("__wrap_lseek");
off_t Lseek(int descriptor, off_t offset, int origin) {
    OpenFile* const file = OpenFiles::Find(descriptor);
    if (file == nullptr) return RealLseek(descriptor, offset, origin);
    file->position = static_cast<std::uint64_t>(offset);
    return offset;
}

ssize_t RealRead(int descriptor, void* out, std::size_t size) asm("__real_read");
ssize_t Read(int descriptor, void* out, std::size_t size) asm("__wrap_read");
ssize_t Read(int descriptor, void* out, std::size_t size) {
    OpenFile* const file = OpenFiles::Find(descriptor);
    if (file == nullptr) return RealRead(descriptor, out, size);
    const FedMachine& machine = *FedMachine::Current();
    unsigned char* const bytes = static_cast<unsigned char*>(out);
    if (file->path == kPhysicalMemory)
        return static_cast<ssize_t>(ReadPieces(machine.memory, *file, bytes, size));
    if (machine.identities.contains(file->path))
        return static_cast<ssize_t>(ReadPieces(machine.disk, *file, bytes, size));
    const auto found = machine.files.find(file->path);
    if (found == machine.files.end()) return 0;
    return static_cast<ssize_t>(ReadBytes(*file, found->second, bytes, size));
}

int RealIoctl(int descriptor, unsigned long request, ...) asm("__real_ioctl");
int Ioctl(int descriptor, unsigned long request, ...) asm("__wrap_ioctl");
int Ioctl(int descriptor, unsigned long request, ...) {
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    const OpenFile* const file = OpenFiles::Find(descriptor);
    if (file == nullptr) return RealIoctl(descriptor, request, argument);
    const FedMachine& machine = *FedMachine::Current();
    if (request == kSendMessage && file->path == kBmc)
        return SendMessage(machine, *static_cast<const DriverMessage*>(argument));
    if (request == HDIO_GET_IDENTITY) return ReadIdentity(machine, *file, argument);
    return Fail(ENOTTY);
}

int Iopl(int level) asm("__wrap_iopl");
int Iopl(int) {
    return 0;
}

DIR* RealOpendir(const char* path) asm("__real_opendir");
DIR* Opendir(const char* path) asm("__wrap_opendir");
DIR* Opendir(const char* path) {
    const FedMachine* const machine = FedMachine::Current();
    if (machine == nullptr) return RealOpendir(path);
    const auto first = machine->files.lower_bound(path);
    if (first == machine->files.end() || !first->first.starts_with(path)) return nullptr;
    return kFedDirectory;
}

int RealClosedir(DIR* directory) asm("__real_closedir");
int Closedir(DIR* directory) asm("__wrap_closedir");
int Closedir(DIR* directory) {
    return directory == kFedDirectory ? 0 : RealClosedir(directory);
}

// No time passes on a fed machine.
unsigned RealSleep(unsigned seconds) asm("__real_sleep");
unsigned Sleep(unsigned seconds) asm("__wrap_sleep");
unsigned Sleep(unsigned seconds) {
    return FedMachine::Current() == nullptr ? RealSleep(seconds) : 0;
}

// The one command that the library runs leaves the output of `free` in a file.
int RealSystem(const char* command) asm("__real_system");
int System(const char* command) asm("__wrap_system");
int System(const char* command) {
    return FedMachine::Current() == nullptr ? RealSystem(command) : 0;
}

std::FILE* RealFopen(const char* path, const char* mode) asm("__real_fopen");
std::FILE* Fopen(const char* path, const char* mode) asm("__wrap_fopen");
std::FILE* Fopen(const char* path, const char* mode) {
    FedMachine* const machine = FedMachine::Current();
    if (machine == nullptr || path != kScratchFile) return RealFopen(path, mode);
    std::string& text = machine->freeOutput;
    return text.empty() ? nullptr : fmemopen(text.data(), text.size(), mode);
}

int RealRemove(const char* path) asm("__real_remove");
int Remove(const char* path) asm("__wrap_remove");
int Remove(const char* path) {
    return path == kScratchFile ? 0 : RealRemove(path);
}

}  // extern "C"

}  // namespace fuzz
