// SPDX-License-Identifier: MIT
//
// The BMC, reached through the kernel's own IPMI device, /dev/ipmi0.
#ifndef TALVANE_TRANSPORT_KERNELCONTROLLER_H
#define TALVANE_TRANSPORT_KERNELCONTROLLER_H

#include <linux/ipmi.h>

#include <array>
#include <cstdint>
#include <string>

#include "transport/Message.h"

namespace transport {

class KernelController : public Controller {
public:
    explicit KernelController(std::string device) : device_(std::move(device)) {}
    ~KernelController() override { Close(); }
    KernelController(const KernelController&) = delete;
    KernelController& operator=(const KernelController&) = delete;

    // Opens the device unless it is open. Returns 0 or an errno: ENODEV when there is no device.
    [[nodiscard]] int Open();

    // Opens the device again when it went away and came back.
    [[nodiscard]] int Exchange(const Request& request, Deadline deadline,
                               Response& response) override;

    // Requests that the kernel has taken.
    [[nodiscard]] unsigned long Sent() const { return sent_; }

private:
    using MessageBuffer = std::array<unsigned char, IPMI_MAX_MSG_LENGTH>;

    [[nodiscard]] int Send(const Request& request);
    [[nodiscard]] int Receive(Deadline deadline, Response& response);
    [[nodiscard]] int Take(ipmi_recv& message, MessageBuffer& data);
    void DropLate();
    void Close();

    std::string device_;
    int descriptor_ = -1;
    std::uint32_t lastId_ = 0;  // of the last request; its response carries the same
    unsigned long sent_ = 0;
};

}  // namespace transport

#endif
