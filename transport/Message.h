// SPDX-License-Identifier: MIT
//
// A request to the baseboard management controller (BMC), its response, and the interface of
// whatever carries them.
#ifndef TALVANE_TRANSPORT_MESSAGE_H
#define TALVANE_TRANSPORT_MESSAGE_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace transport {

using Bytes = std::vector<std::uint8_t>;
using Deadline = std::chrono::steady_clock::time_point;

struct Request {
    std::uint8_t netFn = 0;
    std::uint8_t lun = 0;
    std::uint8_t command = 0;
    Bytes data;
};

struct Response {
    std::uint8_t completion = 0;  // IPMI 2.0, table 5-2
    Bytes data;                   // after the completion code
};

class Controller {
public:
    virtual ~Controller() = default;

    // Sends the request and waits for its response until the deadline. Returns 0, or an errno when
    // there is no response; `response` is then unspecified.
    [[nodiscard]] virtual int Exchange(const Request& request, Deadline deadline,
                                       Response& response) = 0;
};

}  // namespace transport

#endif
