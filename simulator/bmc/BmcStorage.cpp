// SPDX-License-Identifier: MIT
//
// The sensor data record repository (IPMI 2.0, 33) and the inventory device (34).

#include <algorithm>
#include <stdexcept>

#include "simulator/base/CallText.h"
#include "simulator/bmc/Bmc.h"
#include "simulator/bmc/BmcReply.h"

namespace sim {
namespace {

constexpr std::uint8_t kWholeRecord = 0xFF;

unsigned RecordId(const Bytes& record) {
    return record[0] | (unsigned{record[1]} << 8);
}

}  // namespace

void Bmc::AddRecord(Bytes record, bool keepId, BmcRecordQuirks quirks) {
    if (record.size() < SdrRecord::kHeaderSize)
        throw std::invalid_argument("a sensor data record has a header of 5 bytes");
    if (!keepId) {
        const std::size_t id = records_.empty() ? 0 : RecordId(records_.back().bytes) + 1;
        record[0] = Low(id);
        record[1] = High(id);
    }
    const auto id = static_cast<std::uint16_t>(RecordId(record));
    constexpr std::uint16_t kEnd = 0xFFFF;  // named as the next record after the last one
    if (id == kEnd) throw std::invalid_argument("0xFFFF marks the end and is not a record ID");
    if (HasRecord(id))
        throw std::invalid_argument("the repository has a record " + Hex(id) + " already");
    constexpr std::size_t kNumber = 7;
    constexpr std::uint8_t kFullSensor = 1;
    constexpr std::uint8_t kCompactSensor = 2;
    const bool isSensor = record[3] == kFullSensor || record[3] == kCompactSensor;
    if (isSensor && record.size() > kNumber) sensors_.try_emplace(record[kNumber]);
    for (const auto& [offset, value] : quirks.reread)
        if (offset >= record.size())
            throw std::invalid_argument("the record has no byte " + std::to_string(offset));
    records_.push_back({std::move(record), std::move(quirks)});
}

bool Bmc::HasRecord(std::uint16_t id) const {
    return std::any_of(records_.begin(), records_.end(),
                       [id](const Record& record) { return RecordId(record.bytes) == id; });
}

void Bmc::LoadRepository(std::span<const std::uint8_t> dump) {
    while (!dump.empty()) {
        const std::size_t size =
            dump.size() < SdrRecord::kHeaderSize ? 0 : SdrRecord::kHeaderSize + dump[4];
        if (size == 0 || size > dump.size())
            throw std::runtime_error("not a dump of a sensor data record repository");
        AddRecord(Bytes(dump.begin(), dump.begin() + static_cast<std::ptrdiff_t>(size)), true);
        dump = dump.subspan(size);
    }
}

Bmc::Reply Bmc::GetRepositoryInfo(const Bytes&) {
    constexpr std::uint8_t kVersion = 0x51;
    Bytes info(14);
    info[0] = kVersion;
    const std::size_t count = claimedCount_ ? *claimedCount_ : records_.size();
    info[1] = Low(count);
    info[2] = High(count);
    return {0, info};
}

Bmc::Reply Bmc::ReserveRepository(const Bytes&) {
    reservation_ = static_cast<std::uint16_t>(reservation_ + 1);
    return {0, {Low(reservation_), High(reservation_)}};
}

Bmc::Reply Bmc::GetRecord(const Bytes& data) {
    constexpr unsigned kFirst = 0x0000;
    const unsigned wanted = data[2] | (unsigned{data[3]} << 8);
    const auto record =
        std::find_if(records_.begin(), records_.end(), [=](const Record& candidate) {
            return wanted == kFirst || RecordId(candidate.bytes) == wanted;
        });
    if (record == records_.end()) return {kNotPresent, {}};
    Bytes bytes = record->bytes;
    if (record->wasRead)
        for (const auto& [offset, value] : record->quirks.reread) bytes[offset] = value;
    record->wasRead = true;
    const auto next = record + 1;
    unsigned nextId = next == records_.end() ? 0xFFFF : RecordId(next->bytes);
    if (const auto given = nextIds_.find(static_cast<std::uint16_t>(RecordId(record->bytes)));
        given != nextIds_.end())
        nextId = given->second;

    const std::size_t offset = data[4];
    if (offset > bytes.size()) return {kOutOfRange, {}};
    const std::size_t there =
        std::min(bytes.size(), record->quirks.delivered.value_or(bytes.size()));
    const std::size_t left = there - std::min(offset, there);
    const std::size_t count = data[5] == kWholeRecord ? left : std::min<std::size_t>(data[5], left);
    Bytes reply{Low(nextId), High(nextId)};
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(offset, there));
    reply.insert(reply.end(), begin, begin + static_cast<std::ptrdiff_t>(count));
    return {0, reply};
}

Bmc::Reply Bmc::GetInventoryArea(const Bytes& data) {
    if (data[0] != 0 || inventory_.empty()) return {kNotPresent, {}};
    constexpr std::uint8_t kByBytes = 0;
    return {0, {Low(inventory_.size()), High(inventory_.size()), kByBytes}};
}

Bmc::Reply Bmc::ReadInventory(const Bytes& data) {
    if (data[0] != 0 || inventory_.empty()) return {kNotPresent, {}};
    const std::size_t offset = data[1] | (std::size_t{data[2]} << 8);
    if (offset >= inventory_.size()) return {kOutOfRange, {}};
    const std::size_t count = std::min<std::size_t>(data[3], inventory_.size() - offset);
    Bytes reply{Low(count)};
    reply.insert(reply.end(), inventory_.begin() + static_cast<std::ptrdiff_t>(offset),
                 inventory_.begin() + static_cast<std::ptrdiff_t>(offset + count));
    return {0, reply};
}

}  // namespace sim
