// SPDX-License-Identifier: MIT
//
// The entry point's address of the table (SMBIOS 2.3.4, section 2.1.1) decides where it lies.

#include "fuzz/machine/FirmwareTable.h"

#include <algorithm>

namespace fuzz {
namespace {

constexpr std::uint64_t kEntryPoint = 0xF0010;
constexpr std::size_t kEntryPointSize = 32;
constexpr std::size_t kLength = 22;
constexpr std::size_t kAddress = 24;
constexpr std::size_t kDmiLength = 6;
constexpr std::size_t kDmiAddress = 8;
constexpr std::size_t kMaxMissing = 64;
constexpr unsigned char kDmiMark = 'D';  // the second byte of "_DMI_"

}  // namespace

void AddFirmwareTable(FedMachine& machine, talvane::ByteView bytes) {
    Bytes& entry = machine.entryPoint;
    entry.assign(kEntryPointSize, 0);
    const talvane::ByteView given = bytes.first(std::min(bytes.size(), kEntryPointSize));
    std::copy(given.begin(), given.end(), entry.begin());
    const bool isDmi = entry[1] == kDmiMark;
    const std::size_t addressAt = isDmi ? kDmiAddress : kAddress;
    const std::size_t lengthAt = isDmi ? kDmiLength : kLength;
    entry[addressAt + 2] = entry[addressAt + 3] = 0;
    const talvane::ByteView table = bytes.subspan(given.size());
    const std::size_t length =
        std::min<std::size_t>(talvane::Le16(entry, lengthAt), table.size() + kMaxMissing);
    entry[lengthAt] = talvane::LowByte(static_cast<int>(length));
    entry[lengthAt + 1] = talvane::HighByte(static_cast<int>(length));
    machine.memory.push_back({talvane::Le32(entry, addressAt), table});
    machine.memory.push_back({kEntryPoint, entry});
}

}  // namespace fuzz
