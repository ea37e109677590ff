// SPDX-License-Identifier: MIT
//
// Removes the temporary file on every way out but the last.

#include "tools/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <system_error>

#include "tools/base/Descriptor.h"

namespace tool {
namespace {

class TemporaryFile {
public:
    // Throws std::system_error with the name of the file that it stands for.
    explicit TemporaryFile(const std::filesystem::path& file)
        : target_(file),
          path_((file.parent_path() / ("." + file.filename().string() + ".XXXXXX")).string()),
          descriptor_(mkostemp(path_.data(), O_CLOEXEC)) {
        if (!descriptor_.IsOpen()) Fail();
    }
    ~TemporaryFile() {
        if (!isRenamed_) (void)unlink(path_.c_str());  // result not used: nothing is left to try
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void Write(std::string_view text) {
        while (!text.empty()) {
            const ssize_t written = write(descriptor_.Get(), text.data(), text.size());
            if (written < 0 && errno == EINTR) continue;
            if (written < 0) Fail();
            text.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    void Publish(mode_t mode) {
        if (fchmod(descriptor_.Get(), mode) != 0 || fsync(descriptor_.Get()) != 0 ||
            std::rename(path_.c_str(), target_.c_str()) != 0)
            Fail();
        isRenamed_ = true;
    }

private:
    [[noreturn]] void Fail() const {
        throw std::system_error(errno, std::generic_category(), "cannot write " + target_.string());
    }

    std::filesystem::path target_;
    std::string path_;
    Descriptor descriptor_;
    bool isRenamed_ = false;
};

}  // namespace

void RequireReplaceable(const std::filesystem::path& file) {
    std::error_code ignored;  // of a file that is not there
    const auto status = std::filesystem::status(file, ignored);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        throw std::runtime_error("cannot write " + file.string() + ": not a regular file");
}

void WriteAtomically(const std::filesystem::path& file, std::string_view text, mode_t mode) {
    RequireReplaceable(file);
    TemporaryFile temporary(file);
    temporary.Write(text);
    temporary.Publish(mode);
}

}  // namespace tool
