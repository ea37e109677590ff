// SPDX-License-Identifier: MIT
//
// Moves the bytes of a request between the caller's memory and a session. The record has the
// addresses of this process, which is one of 32 bits.

#include "simulator/host/HostIpmi.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "simulator/base/CallText.h"
#include "transport/CallerRecord.h"
#include "transport/KernelController.h"
#include "transport/ReadingCommands.h"
#include "transport/Session.h"

namespace sim {
namespace {

using transport::kRecordSize;

constexpr std::uint8_t kInsufficientPrivilege = 0xD4;  // IPMI 2.0, table 5-2

template <typename Byte>
Byte* At(std::uint32_t address) {
    return reinterpret_cast<Byte*>(static_cast<std::uintptr_t>(address));
}

class OpenHostIpmi : public OpenFile {
public:
    OpenHostIpmi(std::unique_ptr<transport::Controller> controller,
                 transport::Reservation& reservation, bool mayChange)
        : controller_(std::move(controller)),
          session_(*controller_, reservation),
          mayChange_(mayChange) {}

    Answer Read(void*, std::size_t) override { return Answer::Failed(EINVAL); }
    Answer Seek(std::int64_t, int) override { return Answer::Failed(ESPIPE); }
    std::uint64_t Position() const override { return 0; }

    std::optional<Answer> Ioctl(unsigned long request, void* argument) override {
        if (request != transport::kSendMessage) return std::nullopt;
        if (argument == nullptr) return Answer::Failed(EFAULT);
        std::array<std::uint8_t, kRecordSize> bytes;
        std::memcpy(bytes.data(), argument, bytes.size());
        transport::CallerRecord record;
        if (const int error = DecodeRecord(bytes, record)) return Answer::Failed(error);
        if (!mayChange_ && !transport::OnlyReads(record.netFn, record.command)) {
            std::fprintf(stderr,
                         "talvane: refused to pass a command on that may change the BMC: network "
                         "function %s, command %s\n",
                         Hex(record.netFn).c_str(), Hex(record.command).c_str());
            transport::StoreResult(bytes, kInsufficientPrivilege, 0);
            std::memcpy(argument, bytes.data(), bytes.size());
            return Answer{};
        }
        return Serve(record, bytes, argument);
    }

private:
    Answer Serve(const transport::CallerRecord& record,
                 const std::array<std::uint8_t, kRecordSize>& bytes, void* argument) {
        transport::Bytes call(bytes.begin(), bytes.end());
        const auto* const data = At<const std::uint8_t>(record.dataAddress);
        call.insert(call.end(), data, data + record.dataLength);
        transport::Bytes answer;
        if (const int error = session_.Serve(call, answer)) return Answer::Failed(error);
        std::memcpy(argument, answer.data(), kRecordSize);
        std::copy(answer.begin() + kRecordSize, answer.end(),
                  At<std::uint8_t>(record.responseAddress));
        return Answer{};
    }

    std::unique_ptr<transport::Controller> controller_;
    transport::Session session_;
    bool mayChange_;
};

}  // namespace

std::unique_ptr<OpenFile> HostIpmi::Open(int, int& error) {
    std::unique_ptr<transport::Controller> controller = connect_(error);
    if (controller == nullptr) return nullptr;
    return std::make_unique<OpenHostIpmi>(std::move(controller), reservation_, mayChange_);
}

HostIpmi::Connect ThroughKernel(const std::string& path) {
    return [path](int& error) -> std::unique_ptr<transport::Controller> {
        auto controller = std::make_unique<transport::KernelController>(path);
        error = controller->Open();
        if (error != 0) return nullptr;
        return controller;
    };
}

}  // namespace sim
