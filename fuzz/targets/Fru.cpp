// SPDX-License-Identifier: MIT
//
// The BMC's inventory. Input: the image of the inventory device.

#include "IPMI/FRU.h"

#include <memory>

#include "fuzz/Input.h"
#include "fuzz/machine/Controller.h"

namespace {

// The decoders with a room of their own: they write no more than it.
void DecodeField(talvane::ByteView bytes) {
    fuzz::Input input(bytes.data(), bytes.size());
    const std::uint8_t language = input.TakeByte();
    const std::uint8_t encoding = input.TakeByte();
    const std::size_t room = input.TakeByte();
    fuzz::Bytes field(input.Rest().begin(), input.Rest().end());
    const auto text = std::make_unique<char[]>(room);
    FRU fru;
    (void)fru.DecodeByte(language, encoding & 7U, field.data(), static_cast<int>(field.size()),
                         text.get(), static_cast<int>(room));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FedMachine machine;
    const talvane::ByteView image(data, size);
    fuzz::ControllerParts parts;
    parts.inventory = image;
    machine.bmc = fuzz::ControllerOf(parts);
    fuzz::CallInventoryOperations();
    DecodeField(image);
    return 0;
}
