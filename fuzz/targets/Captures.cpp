// SPDX-License-Identifier: MIT
//
// What a machine file takes from other files. Input: a byte that chooses the kind of capture, and
// the capture: what a tool of the field has printed or dumped, or an archive without its
// compression.

#include <cstdlib>
#include <iterator>
#include <string_view>

#include "archive/Tar.h"
#include "fuzz/Folder.h"
#include "fuzz/Input.h"
#include "simulator/description/MachineFile.h"
#include "simulator/machine/Machine.h"

namespace {

// The descriptions that name one capture.
constexpr std::string_view kDescriptions[] = {
    "smbios dump capture",
    "smbios dump capture anchor dmi",
    "bmc kcs\nsdr capture",
    "bmc kcs\ninventory capture",
    "pci capture capture",
    "drive hda sectors 1000000 dump capture",
    "drive hda sectors 1000000 identity capture",
    "stat capture",
    "free capture",
};
constexpr std::size_t kKinds = std::size(kDescriptions) + 1;  // the last one is an archive

void LoadCapture(std::string_view description, std::span<const std::uint8_t> capture) {
    static const fuzz::Folder folder;
    fuzz::WriteFile(
        folder.Path() / "machine.txt",
        {reinterpret_cast<const std::uint8_t*>(description.data()), description.size()});
    fuzz::WriteFile(folder.Path() / "capture", capture);
    try {
        sim::Machine machine;
        sim::LoadMachine(folder.Path(), machine);
    } catch (const sim::MachineError&) {  // what a capture that cannot be used ends with
    }
}

// What is taken from an archive is the same after it has been written and read again.
void ReadArchive(std::span<const std::uint8_t> tar) {
    archive::Files files;
    try {
        files = archive::ReadTar(tar);
    } catch (const archive::Error&) {
        return;
    }
    archive::Bytes written;
    try {
        written = archive::WriteTar(files, 0);
    } catch (const std::length_error&) {  // a name that is read in two parts, and too long in one
        return;
    }
    if (archive::ReadTar(written) != files) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const std::size_t kind = input.TakeByte() % kKinds;
    if (kind < std::size(kDescriptions))
        LoadCapture(kDescriptions[kind], input.Rest());
    else
        ReadArchive(input.Rest());
    return 0;
}
