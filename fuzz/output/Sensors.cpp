// SPDX-License-Identifier: MIT
//
// The decoders of records and answers, one after the other.

#include "fuzz/output/Sensors.h"

#include "fuzz/machine/Controller.h"
#include "tools/sensors/SensorValue.h"

namespace fuzz {

tool::AllSensors SensorsOf(Input input) {
    constexpr int kParts = 3;  // before the records
    for (int part = 0; part < kParts; ++part) (void)input.Take(input.TakeLe16());
    const auto records = TakeRecords(input);
    tool::AllSensors all;
    all.records = static_cast<int>(records.size());
    all.isComplete = input.Rest().size() % 2 == 0;
    for (const talvane::ByteView bytes : records) {
        for (const tool::SensorRecord& record : tool::DecodeSensorRecord(bytes)) {
            tool::SensorNow now{record, tool::DecodeReading(input.Rest()), {}, {}};
            now.limits = tool::DecodeThresholds(input.Rest(), record.formula);
            if (tool::IsRead(now)) now.value = tool::ReadingValue(record.formula, now.answer.raw);
            all.sensors.push_back(now);
        }
    }
    return all;
}

}  // namespace fuzz
