// SPDX-License-Identifier: MIT
//
// The driver's request 1 of type 'S': send a message and wait for its response. Its argument is the
// record of a 32-bit program, read and written byte by byte here.

#include "simulator/machine/IpmiDevice.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "simulator/machine/Machine.h"

namespace sim {
namespace {

constexpr unsigned long kSendMessage = 0xC0045301;

// Where the fields lie in the request record.
constexpr std::size_t kCommand = 0;
constexpr std::size_t kResponder = 1;
constexpr std::size_t kBus = 2;
constexpr std::size_t kNetFunction = 3;
constexpr std::size_t kLun = 4;
constexpr std::size_t kData = 8;
constexpr std::size_t kDataLength = 12;
constexpr std::size_t kTimeout = 16;
constexpr std::size_t kResponse = 20;
constexpr std::size_t kResponseLength = 24;
constexpr std::size_t kCompletion = 28;

// Neither a request's data nor a response is ever longer than this.
constexpr std::size_t kLongest = 256;

template <typename Value>
Value get(const void* record, std::size_t offset) {
    Value value;
    std::memcpy(&value, static_cast<const std::uint8_t*>(record) + offset, sizeof value);
    return value;
}

template <typename Value>
void put(void* record, std::size_t offset, Value value) {
    std::memcpy(static_cast<std::uint8_t*>(record) + offset, &value, sizeof value);
}

class OpenIpmi : public OpenFile {
public:
    explicit OpenIpmi(std::shared_ptr<Bmc> bmc) : bmc_(std::move(bmc)) {}

    Answer read(void*, std::size_t) override { return Answer::failed(EINVAL); }
    Answer seek(std::int64_t, int) override { return Answer::failed(ESPIPE); }
    std::uint64_t position() const override { return 0; }

    std::optional<Answer> ioctl(unsigned long request, void* argument) override {
        if (request != kSendMessage) return std::nullopt;
        if (argument == nullptr) return Answer::failed(EFAULT);
        BmcRequest message;
        message.command = get<std::uint8_t>(argument, kCommand);
        message.responder = get<std::uint8_t>(argument, kResponder);
        message.bus = get<std::uint8_t>(argument, kBus);
        message.netFn = get<std::uint8_t>(argument, kNetFunction);
        message.lun = get<std::uint8_t>(argument, kLun);
        message.timeout = get<unsigned>(argument, kTimeout);
        const auto* const data = get<const std::uint8_t*>(argument, kData);
        const unsigned length = get<unsigned>(argument, kDataLength);
        if (length > kLongest) return Answer::failed(EINVAL);
        if (length != 0 && data == nullptr) return Answer::failed(EFAULT);
        message.data.assign(data, data + length);

        bmc_->answer(message);
        if (message.error != 0) return Answer::failed(message.error);

        const std::size_t size = std::min(message.response.size(), kLongest);
        auto* const response = get<std::uint8_t*>(argument, kResponse);
        if (size != 0 && response == nullptr) return Answer::failed(EFAULT);
        std::copy_n(message.response.begin(), size, response);
        put(argument, kResponseLength, static_cast<unsigned>(size));
        put(argument, kCompletion, message.completion);
        return Answer{};
    }

private:
    std::shared_ptr<Bmc> bmc_;
};

}  // namespace

std::unique_ptr<OpenFile> IpmiDevice::open(int, int&) {
    return std::make_unique<OpenIpmi>(bmc_);
}

void Machine::giveBmc(bool kcs, bool smic) {
    if (bmc_ != nullptr) throw std::logic_error("the machine has a controller");
    bmc_ = std::make_shared<Bmc>([this] { return clock_; }, log_);
    install("/dev/ipmi", std::make_unique<IpmiDevice>(bmc_));
    constexpr std::uint16_t kKcsStatusPort = 0xCA3;  // IPMI 2.0, 9.5
    constexpr std::uint16_t kSmicFlagsPort = 0xCAA;  // IPMI 2.0, 10.2
    constexpr std::uint8_t kIdle = 0x00;
    const auto idle = std::make_shared<InterfaceRegister>(kIdle);
    if (kcs) ports_.install(kKcsStatusPort, 1, idle);
    if (smic) ports_.install(kSmicFlagsPort, 1, idle);
}

Bmc& Machine::bmc() {
    if (bmc_ == nullptr) giveBmc(true, false);
    return *bmc_;
}

}  // namespace sim
