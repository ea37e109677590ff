// SPDX-License-Identifier: MIT
//
// The library copies an answer over the caller's buffer and leaves the rest of it untouched. An
// answer that seems to end too early is asked for again into a buffer that is filled differently:
// what differs has not arrived.

#include "tools/sensors/BmcRequest.h"

#include <algorithm>

#include "tools/library/SensorRepository.h"

namespace tool {
namespace {

AnswerBuffer AnswerOver(const BmcMessage& request, unsigned char fill) {
    AnswerBuffer answer;
    answer.fill(fill);
    Send(Controller(), request, answer);
    return answer;
}

std::size_t LengthOver(const AnswerBuffer& answer, unsigned char fill) {
    const auto last = std::find_if(answer.rbegin(), answer.rend(),
                                   [fill](unsigned char byte) { return byte != fill; });
    return static_cast<std::size_t>(answer.rend() - last);
}

// `expected` says how many bytes the answer should at least have, by its first bytes.
template <class Expected>
BmcAnswer Ask(const BmcMessage& request, Expected expected) {
    constexpr unsigned char kFirstFill = 0xFF;
    constexpr unsigned char kSecondFill = 0x00;
    AnswerBuffer answer = AnswerOver(request, kFirstFill);
    std::size_t length = LengthOver(answer, kFirstFill);
    if (length < expected(answer)) {
        answer = AnswerOver(request, kSecondFill);
        length = std::max(length, LengthOver(answer, kSecondFill));
    }
    return BmcAnswer(answer.begin(), answer.begin() + static_cast<std::ptrdiff_t>(length));
}

unsigned char Byte(int value, int shift) {
    return static_cast<unsigned char>(value >> shift & 0xFF);
}

}  // namespace

BmcAnswer AskExactly(const BmcMessage& request) {
    return Ask(request, [](const AnswerBuffer& answer) { return answer.size(); });
}

BmcAnswer AskRecord(int recordId) {
    constexpr unsigned char kWholeRecord = 0xFF;
    constexpr std::size_t kHeader = 2 + 5;  // the next record's ID, and the record's header
    constexpr std::size_t kBodyLengthAt = kHeader - 1;
    return Ask({IPMIbase::STORAGE_CMD,
                IPMIbase::Get_SDR,
                IPMIbase::BMC_LUN,
                {0, 0, Byte(recordId, 0), Byte(recordId, 8), 0, kWholeRecord}},
               [](const AnswerBuffer& answer) {
                   return std::min(kHeader + answer[kBodyLengthAt], answer.size());
               });
}

BmcAnswer AskReading(int lun, int sensorNumber) {
    constexpr std::size_t kReadingFlagsStates = 3;
    return Ask(
        {IPMIbase::SENSER_EVENT_CMD, IPMIbase::Get_sensor_reading, lun, {Byte(sensorNumber, 0)}},
        [](const AnswerBuffer&) { return kReadingFlagsStates; });
}

BmcAnswer AskThresholds(int lun, int sensorNumber) {
    constexpr std::size_t kMaskAndSix = 7;
    return Ask(
        {IPMIbase::SENSER_EVENT_CMD, IPMIbase::get_sensor_threshold, lun, {Byte(sensorNumber, 0)}},
        [](const AnswerBuffer&) { return kMaskAndSix; });
}

}  // namespace tool
