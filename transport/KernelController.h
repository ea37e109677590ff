// SPDX-License-Identifier: MIT
//
// The BMC, reached through the kernel's own IPMI device, /dev/ipmi0.
#ifndef TALVANE_TRANSPORT_KERNELCONTROLLER_H
#define TALVANE_TRANSPORT_KERNELCONTROLLER_H

#include <linux/ipmi.h>

#include <array>
#include <cstdint>
#include <string>

#include "transport/Flag.h"
#include "transport/Message.h"

namespace transport {

// Requests that the BMC has been sent and whose responses have not been taken, those that were
// given up among them. Few, because every program waits while the BMC works them off; the kernel
// would allow 100.
constexpr unsigned kMaxUnderWay = 4;

class KernelController : public Controller {
public:
    // While `cancelled` is raised, exchanges end at once. It outlives the controller.
    explicit KernelController(std::string device, const Flag* cancelled = nullptr)
        : device_(std::move(device)), cancelled_(cancelled) {}
    ~KernelController() override { Close(); }
    KernelController(const KernelController&) = delete;
    KernelController& operator=(const KernelController&) = delete;

    // Opens the device unless it is open. Returns 0 or an errno: ENODEV when there is no device.
    [[nodiscard]] int Open();

    // Opens the device again when it went away and came back. EBUSY when kMaxUnderWay requests are
    // under way; ECANCELED when cancelled, also after the request was sent.
    [[nodiscard]] int Exchange(const Request& request, Deadline deadline,
                               Response& response) override;

    // Waits until no request is under way, until the deadline, or until cancelled.
    void WorkOff(Deadline deadline);

    // Requests that the kernel has taken.
    [[nodiscard]] unsigned long Sent() const { return sent_; }

private:
    using MessageBuffer = std::array<unsigned char, IPMI_MAX_MSG_LENGTH>;

    [[nodiscard]] int Send(const Request& request);
    [[nodiscard]] int Receive(Deadline deadline, Response& response);
    [[nodiscard]] int Take(ipmi_recv& message, MessageBuffer& data);
    [[nodiscard]] int WaitForMessage(Deadline deadline);
    int DropLate();
    void Close();

    std::string device_;
    const Flag* cancelled_;
    int descriptor_ = -1;
    std::uint32_t lastId_ = 0;  // of the last request; its response carries the same
    unsigned long sent_ = 0;
    unsigned underWay_ = 0;
};

}  // namespace transport

#endif
