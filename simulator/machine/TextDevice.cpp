// SPDX-License-Identifier: MIT
//
// The text is made when the file is opened and stays the same for that open file.

#include "simulator/machine/TextDevice.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace sim {
namespace {

class OpenText : public OpenFile {
public:
    explicit OpenText(std::string text) : text_(std::move(text)) {}

    Answer Read(void* out, std::size_t size) override {
        if (position_ >= text_.size()) return {0};
        const std::size_t left = text_.size() - static_cast<std::size_t>(position_);
        const std::size_t delivered = std::min(size, left);
        std::memcpy(out, text_.data() + position_, delivered);
        position_ += delivered;
        return {static_cast<std::int64_t>(delivered)};
    }

    Answer Seek(std::int64_t offset, int whence) override {
        // SEEK_END is refused, since the kernel does not know where such a file ends.
        if (whence != SEEK_SET && whence != SEEK_CUR) return Answer::Failed(EINVAL);
        const std::int64_t target =
            offset + (whence == SEEK_CUR ? static_cast<std::int64_t>(position_) : 0);
        if (target < 0) return Answer::Failed(EINVAL);
        position_ = static_cast<std::uint64_t>(target);
        return {target};
    }

    std::uint64_t Position() const override { return position_; }

private:
    std::string text_;
    std::uint64_t position_ = 0;
};

}  // namespace

std::unique_ptr<OpenFile> TextDevice::Open(int flags, int& error) {
    if ((flags & O_ACCMODE) != O_RDONLY) {
        error = EACCES;
        return nullptr;
    }
    return std::make_unique<OpenText>(text_());
}

}  // namespace sim
