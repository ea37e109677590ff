// SPDX-License-Identifier: MIT
//
// Reads files by their descriptors: those of sysfs have no size that says how much can be read.

#include "simulator/host/HostFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

namespace sim {
namespace {

constexpr std::size_t kMaxText = 4096;  // a page, as sysfs hands texts over

class Descriptor {
public:
    explicit Descriptor(const std::string& path)
        : value_(open(path.c_str(), O_RDONLY | O_LARGEFILE | O_CLOEXEC | O_NONBLOCK)) {
        if (value_ < 0) throw HostFileError(path, errno);
    }
    ~Descriptor() { (void)close(value_); }  // result not used: nothing was written
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return value_; }

private:
    int value_;
};

}  // namespace

HostFileError::HostFileError(const std::string& file, int why)
    : std::runtime_error(file + ": " + std::strerror(why)), path(file), error(why) {}

Bytes HostFiles::Read(const std::string& name, std::size_t limit) const {
    const std::string path = Path(name);
    const Descriptor file(path);
    Bytes bytes;
    std::array<std::uint8_t, kMaxText> part;
    while (bytes.size() < limit) {
        const std::size_t wanted = std::min(part.size(), limit - bytes.size());
        const ssize_t got = read(file.Get(), part.data(), wanted);
        if (got < 0) throw HostFileError(path, errno);
        if (got == 0) break;
        bytes.insert(bytes.end(), part.begin(), part.begin() + got);
    }
    return bytes;
}

std::string HostFiles::Text(const std::string& name) const {
    try {
        const Bytes bytes = Read(name, kMaxText);
        const auto isBlank = [](std::uint8_t byte) { return byte <= ' '; };
        const auto first = std::find_if_not(bytes.begin(), bytes.end(), isBlank);
        const auto last = std::find_if_not(bytes.rbegin(), bytes.rend(), isBlank).base();
        return first < last ? std::string(first, last) : std::string();
    } catch (const HostFileError&) {
        return "";
    }
}

std::vector<std::string> HostFiles::List(const std::string& name) const {
    const std::string path = Path(name);
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(path.c_str()), closedir);
    if (folder == nullptr) throw HostFileError(path, errno);
    std::vector<std::string> names;
    errno = 0;
    // The 64-bit form: positions in a folder of a 64-bit kernel can be too large for the other.
    while (const dirent64* const entry = readdir64(folder.get())) {
        if (entry->d_name[0] != '.') names.emplace_back(entry->d_name);
        errno = 0;
    }
    if (errno != 0) throw HostFileError(path, errno);
    std::sort(names.begin(), names.end());
    return names;
}

std::string CannotOpen(const std::string& path, int error, const char* whyAbsent,
                       const char* rightsAdvice) {
    std::string text = "cannot open " + path + ": " + std::strerror(error);
    if (error == EACCES || error == EPERM) text += std::string(" (") + rightsAdvice + ")";
    if (error == ENOENT || error == ENODEV || error == ENXIO)
        text += std::string(" (") + whyAbsent + ")";
    return text;
}

}  // namespace sim
