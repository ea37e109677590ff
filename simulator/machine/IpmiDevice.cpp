// SPDX-License-Identifier: MIT
//
// The driver's one request, number 1 of type 'S': send a message and wait for its response. Its
// argument is a record laid out as in a 32-bit program; it is read and written byte by byte here.

#include "simulator/machine/IpmiDevice.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "simulator/machine/Machine.h"

namespace sim {
namespace {

constexpr unsigned long kSendMessage = 0xC0045301;

// Offsets of the fields in the request record.
constexpr std::size_t kCommandOffset = 0;
constexpr std::size_t kResponderOffset = 1;
constexpr std::size_t kBusOffset = 2;
constexpr std::size_t kNetFunctionOffset = 3;
constexpr std::size_t kLunOffset = 4;
constexpr std::size_t kDataOffset = 8;
constexpr std::size_t kDataLengthOffset = 12;
constexpr std::size_t kTimeoutOffset = 16;
constexpr std::size_t kResponseOffset = 20;
constexpr std::size_t kResponseLengthOffset = 24;
constexpr std::size_t kCompletionOffset = 28;

// The data of a request or a response is never longer.
constexpr std::size_t kMaxMessage = 256;

template <typename Value>
Value ReadField(const void* record, std::size_t offset) {
    Value value;
    std::memcpy(&value, static_cast<const std::uint8_t*>(record) + offset, sizeof value);
    return value;
}

template <typename Value>
void WriteField(void* record, std::size_t offset, Value value) {
    std::memcpy(static_cast<std::uint8_t*>(record) + offset, &value, sizeof value);
}

class OpenIpmi : public OpenFile {
public:
    explicit OpenIpmi(std::shared_ptr<Bmc> bmc) : bmc_(std::move(bmc)) {}

    Answer Read(void*, std::size_t) override { return Answer::Failed(EINVAL); }
    Answer Seek(std::int64_t, int) override { return Answer::Failed(ESPIPE); }
    std::uint64_t Position() const override { return 0; }

    std::optional<Answer> Ioctl(unsigned long request, void* argument) override {
        if (request != kSendMessage) return std::nullopt;
        if (argument == nullptr) return Answer::Failed(EFAULT);
        BmcRequest message;
        message.command = ReadField<std::uint8_t>(argument, kCommandOffset);
        message.responder = ReadField<std::uint8_t>(argument, kResponderOffset);
        message.bus = ReadField<std::uint8_t>(argument, kBusOffset);
        message.netFn = ReadField<std::uint8_t>(argument, kNetFunctionOffset);
        message.lun = ReadField<std::uint8_t>(argument, kLunOffset);
        message.timeout = ReadField<unsigned>(argument, kTimeoutOffset);
        const auto* const data = ReadField<const std::uint8_t*>(argument, kDataOffset);
        const unsigned length = ReadField<unsigned>(argument, kDataLengthOffset);
        if (length > kMaxMessage) return Answer::Failed(EINVAL);
        if (length != 0 && data == nullptr) return Answer::Failed(EFAULT);
        message.data.assign(data, data + length);

        bmc_->Answer(message);
        if (message.error != 0) return Answer::Failed(message.error);

        const std::size_t size = std::min(message.response.size(), kMaxMessage);
        auto* const response = ReadField<std::uint8_t*>(argument, kResponseOffset);
        if (size != 0 && response == nullptr) return Answer::Failed(EFAULT);
        std::copy_n(message.response.begin(), size, response);
        WriteField(argument, kResponseLengthOffset, static_cast<unsigned>(size));
        WriteField(argument, kCompletionOffset, message.completion);
        return Answer{};
    }

private:
    std::shared_ptr<Bmc> bmc_;
};

}  // namespace

std::unique_ptr<OpenFile> IpmiDevice::Open(int, int&) {
    return std::make_unique<OpenIpmi>(bmc_);
}

void Machine::GiveBmc(bool kcs, bool smic) {
    if (bmc_ != nullptr) throw std::logic_error("the machine has a controller");
    bmc_ = std::make_shared<Bmc>([this] { return clock_; }, log_);
    Install("/dev/ipmi", std::make_unique<IpmiDevice>(bmc_));
    constexpr std::uint8_t kIdle = 0x00;
    const auto idle = std::make_shared<InterfaceRegister>(kIdle);
    if (kcs) ports_.Install(kKcsStatusPort, 1, idle);
    if (smic) ports_.Install(kSmicFlagsPort, 1, idle);
}

Bmc& Machine::GetBmc() {
    if (bmc_ == nullptr) GiveBmc(true, false);
    return *bmc_;
}

}  // namespace sim
