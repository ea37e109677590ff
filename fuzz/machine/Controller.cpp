// SPDX-License-Identifier: MIT
//
// The commands that the library sends (IPMI 2.0, appendix G), each with its answer.

#include "fuzz/machine/Controller.h"

#include <algorithm>
#include <memory>

#include "IPMI/IPMIbase.h"

namespace fuzz {
namespace {

constexpr std::size_t kMaxRecords = 64;
constexpr unsigned kNoMoreRecords = 0xFFFF;

unsigned char Low(std::size_t value) {
    return talvane::LowByte(static_cast<int>(value));
}

unsigned char High(std::size_t value) {
    return talvane::HighByte(static_cast<int>(value));
}

class StandardController {
public:
    explicit StandardController(ControllerParts parts) : parts_(std::move(parts)) {
        if (parts_.records.size() > kMaxRecords) parts_.records.resize(kMaxRecords);
    }

    Bytes operator()(const BmcRequest& request) const {
        if (request.netFunction == IPMIbase::STORAGE_CMD) return AnswerStorage(request);
        if (request.netFunction == IPMIbase::SENSER_EVENT_CMD) return AboutSensor(request);
        return AboutSensor({0, 0, 0, {}});
    }

private:
    Bytes AnswerStorage(const BmcRequest& request) const {
        constexpr unsigned char kVersion = 0x51;
        switch (request.command) {
            case IPMIbase::Get_SDR_RepositoryInfo:
                return {kVersion, Low(parts_.records.size()), High(parts_.records.size())};
            case IPMIbase::Get_SDR:
                return RecordOf(talvane::Le16(request.data, 2));
            case IPMIbase::Get_FRU_info:
                return {Low(parts_.inventory.size()), High(parts_.inventory.size()), 0};
            case IPMIbase::Read_FRU_info:
                return InventoryFrom(talvane::Le16(request.data, 1),
                                     talvane::ByteAt(request.data, 3));
            default:
                return {};
        }
    }

    // The ID of the next record, then the record. IDs are the records' places.
    Bytes RecordOf(unsigned id) const {
        if (id >= parts_.records.size()) return {};
        const unsigned next = id + 1 < parts_.records.size() ? id + 1 : kNoMoreRecords;
        Bytes answer{Low(next), High(next)};
        answer.insert(answer.end(), parts_.records[id].begin(), parts_.records[id].end());
        return answer;
    }

    Bytes InventoryFrom(std::size_t offset, std::size_t count) const {
        if (offset >= parts_.inventory.size()) return {};
        const auto rest = parts_.inventory.subspan(offset);
        const auto read = rest.first(std::min(count, rest.size()));
        Bytes answer{Low(read.size())};
        answer.insert(answer.end(), read.begin(), read.end());
        return answer;
    }

    Bytes AboutSensor(const BmcRequest& request) const {
        constexpr std::size_t kLongest = 8;
        const talvane::ByteView bytes = parts_.sensors;
        if (bytes.empty()) return {};
        Bytes answer;
        for (std::size_t i = 0; i < kLongest; ++i)
            answer.push_back(bytes[(talvane::ByteAt(request.data, 0) + i) % bytes.size()]);
        return answer;
    }

    ControllerParts parts_;
};

}  // namespace

std::vector<talvane::ByteView> TakeRecords(Input& input) {
    std::vector<talvane::ByteView> records;
    for (talvane::ByteView record = input.TakeCounted(); !record.empty();
         record = input.TakeCounted())
        records.push_back(record);
    return records;
}

std::function<Bytes(const BmcRequest&)> ControllerOf(ControllerParts parts) {
    return StandardController(std::move(parts));
}

std::function<Bytes(const BmcRequest&)> ScriptedController(talvane::ByteView responses) {
    auto script = std::make_shared<Input>(responses.data(), responses.size());
    return [script](const BmcRequest& request) {
        const talvane::ByteView next = script->TakeCounted();
        Bytes answer(next.begin(), next.end());
        if (request.netFunction == IPMIbase::STORAGE_CMD &&
            request.command == IPMIbase::Get_SDR_RepositoryInfo && answer.size() > 2) {
            answer[1] %= kMaxRecords + 1;
            answer[2] = 0;
        }
        return answer;
    };
}

}  // namespace fuzz
