// SPDX-License-Identifier: MIT
//
// Walks over the repository and asks for each sensor.

#include "tools/sensors/AllSensors.h"

#include <set>

#include "tools/base/Text.h"
#include "tools/sensors/BmcRequest.h"
#include "tools/sensors/SensorValue.h"

namespace tool {
namespace {

constexpr int kBmcOwner = 0x20;

struct Repository {
    std::vector<SensorRecord> sensors;
    int records = 0;
    bool isComplete = false;
};

// Follows the IDs that the BMC names as the next ones, each once.
Repository ReadRepository() {
    constexpr int kFirstRecord = 0x0000;
    constexpr int kNoMoreRecords = 0xFFFF;
    constexpr std::size_t kRecordAt = 2;  // after the next record's ID
    Repository repository;
    std::set<int> asked;
    int id = kFirstRecord;
    while (asked.insert(id).second) {
        const BmcAnswer answer = AskRecord(id);
        const talvane::ByteView bytes(answer);
        if (bytes.size() <= kRecordAt) return repository;
        ++repository.records;
        for (const SensorRecord& sensor : DecodeSensorRecord(bytes.subspan(kRecordAt)))
            repository.sensors.push_back(sensor);
        id = talvane::Le16(bytes, 0);
        if (id == kNoMoreRecords) {
            repository.isComplete = true;
            return repository;
        }
    }
    return repository;
}

const Repository& KnownRepository() {
    static const Repository repository = ReadRepository();
    return repository;
}

SensorNow ReadNow(const SensorRecord& record) {
    SensorNow now{record, {}, {}, {}};
    if (record.kind == SensorRecord::Kind::kEventOnly) {
        now.answer.status = SensorAnswer::Status::kEventsOnly;
        return now;
    }
    if (record.owner != kBmcOwner) {
        now.answer.status = SensorAnswer::Status::kOther;
        return now;
    }
    now.answer = DecodeReading(AskReading(record.lun, record.number));
    if (HasThresholds(record))
        now.limits = DecodeThresholds(AskThresholds(record.lun, record.number), record.formula);
    if (IsRead(now)) now.value = ReadingValue(record.formula, now.answer.raw);
    return now;
}

}  // namespace

AllSensors ReadAllSensors() {
    const Repository& repository = KnownRepository();
    AllSensors all{{}, repository.records, repository.isComplete};
    for (const SensorRecord& record : repository.sensors) all.sensors.push_back(ReadNow(record));
    return all;
}

std::string SensorNumberText(const SensorRecord& record) {
    const std::string text = HexText(static_cast<unsigned>(record.number));
    return record.lun == 0 ? text : text + '.' + std::to_string(record.lun);
}

std::string SensorName(const SensorRecord& record) {
    return record.name.empty() ? "sensor " + SensorNumberText(record) : record.name;
}

const char* WhyNoReading(const SensorNow& sensor) {
    switch (sensor.answer.status) {
        case SensorAnswer::Status::kNotScanned:
            return "not scanned";
        case SensorAnswer::Status::kUnavailable:
            return "unavailable";
        case SensorAnswer::Status::kOther:
            return "kept by another controller";
        case SensorAnswer::Status::kEventsOnly:
            return "sends events only";
        case SensorAnswer::Status::kNoAnswer:
        case SensorAnswer::Status::kRead:
            break;
    }
    return "no answer";
}

}  // namespace tool
