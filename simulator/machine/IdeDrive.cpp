// SPDX-License-Identifier: MIT
//
// IDE drives as devices of a machine: the files in /proc/ide, and the drive itself.

#include "simulator/machine/IdeDrive.h"

#include <fcntl.h>
#include <linux/hdreg.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "simulator/machine/Machine.h"
#include "simulator/machine/RealFile.h"
#include "simulator/machine/TextDevice.h"

namespace sim {
namespace {

// The sectors are those of a real file. The identity is the machine's own.
class OpenDrive : public RealFile {
public:
    OpenDrive(int descriptor, std::optional<DriveIdentity> identity)
        : RealFile(descriptor), identity_(std::move(identity)) {}

    std::optional<Answer> Ioctl(unsigned long request, void* argument) override {
        if (request != HDIO_GET_IDENTITY) return std::nullopt;
        if (!identity_) return Answer::Failed(ENOMSG);
        std::memcpy(argument, identity_->data(), identity_->size());
        return Answer{};
    }

private:
    std::optional<DriveIdentity> identity_;
};

class DriveDevice : public Device {
public:
    DriveDevice(std::optional<DriveIdentity> identity, std::shared_ptr<DiskImage> image)
        : identity_(std::move(identity)), image_(std::move(image)) {}

    std::unique_ptr<OpenFile> Open(int flags, int& error) override {
        error = EACCES;
        if ((flags & O_ACCMODE) != O_RDONLY) return nullptr;
        error = ENOMEDIUM;
        if (image_ == nullptr) return nullptr;
        const int descriptor = image_->Open();
        error = errno;
        if (descriptor < 0) return nullptr;
        return std::make_unique<OpenDrive>(descriptor, identity_);
    }

private:
    std::optional<DriveIdentity> identity_;
    std::shared_ptr<DiskImage> image_;
};

// A drive stores the texts of its identity block as words with the first character in the upper
// half. The kernel swaps them before a program sees them, so here they are in plain order.
void PutText(DriveIdentity& identity, std::size_t offset, std::size_t size, std::string text) {
    text.resize(size, ' ');
    std::copy(text.begin(), text.end(), identity.begin() + static_cast<std::ptrdiff_t>(offset));
}

}  // namespace

DriveIdentity MakeIdentity(const std::string& serial, const std::string& firmware,
                           const std::string& model) {
    DriveIdentity identity{};
    PutText(identity, 20, 20, serial);
    PutText(identity, 46, 8, firmware);
    PutText(identity, 54, 40, model);
    return identity;
}

IdeDrive MakeDisk(const std::string& model, std::uint64_t sectors, const std::string& serial) {
    return {.files = {{"media", "disk\n"},
                      {"model", model + "\n"},
                      {"capacity", std::to_string(sectors) + "\n"}},
            .identity = MakeIdentity(serial, "1.00", model),
            .image = std::make_shared<DiskImage>(sectors)};
}

void InstallDrive(Machine& machine, char letter, const IdeDrive& drive) {
    if (letter < 'a' || letter > 'd') throw std::invalid_argument("IDE drives are hda to hdd");
    const std::string name = std::string("hd") + letter;
    const std::string folder = "/proc/ide/ide" + std::to_string((letter - 'a') / 2) + "/" + name;
    machine.InstallDirectory(folder);
    for (const auto& [file, text] : drive.files)
        machine.Install(folder + "/" + file, std::make_unique<TextDevice>(text));
    machine.Install("/dev/" + name, std::make_unique<DriveDevice>(drive.identity, drive.image));
}

}  // namespace sim
