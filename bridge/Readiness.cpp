// SPDX-License-Identifier: MIT
//
// The notification protocol of sd_notify(3): one datagram to the socket that $NOTIFY_SOCKET names.

#include "bridge/Readiness.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "bridge/Log.h"

namespace bridge {

void ReportReady() {
    const char* path = std::getenv("NOTIFY_SOCKET");
    if (path == nullptr) return;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::size_t length = std::strlen(path);
    if (length == 0 || length >= sizeof(address.sun_path)) return;
    std::memcpy(address.sun_path, path, length);
    if (path[0] == '@') address.sun_path[0] = '\0';  // an abstract socket
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length);

    constexpr std::string_view kReady = "READY=1";
    const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0 || sendto(descriptor, kReady.data(), kReady.size(), MSG_NOSIGNAL,
                                 reinterpret_cast<const sockaddr*>(&address), size) < 0)
        Log(Priority::kWarning, WithReason("cannot tell the service manager", errno));
    if (descriptor >= 0) (void)close(descriptor);  // result not used: the datagram is on its way
}

}  // namespace bridge
