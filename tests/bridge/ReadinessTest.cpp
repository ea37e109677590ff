// SPDX-License-Identifier: MIT
//
// The datagram that a service manager waits for.

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>

#include "bridge/Readiness.h"
#include "tests/support/DescriptorLimit.h"

namespace {

// A service manager's socket, in the name space of abstract ones.
class ReadinessTest : public ::testing::Test {
protected:
    ReadinessTest() : name_("talvane-readiness-" + std::to_string(getpid())) {
        Listen('\0' + name_);
    }
    ~ReadinessTest() override {
        close(socket_);
        unsetenv("NOTIFY_SOCKET");
    }

    // Replaces the socket by one of this name.
    void Listen(const std::string& name) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, name.data(), name.size());
        const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
        if (socket_ >= 0) close(socket_);
        socket_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK, 0);
        EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&address), size), 0);
    }

    std::string Received() {
        std::array<char, 64> text;
        const ssize_t length = recv(socket_, text.data(), text.size(), 0);
        return {text.data(), length > 0 ? static_cast<std::size_t>(length) : 0};
    }

    std::string name_;
    int socket_ = -1;
};

TEST_F(ReadinessTest, ReadyIsSentToTheSocketThatTheServiceManagerNames) {
    setenv("NOTIFY_SOCKET", ('@' + name_).c_str(), 1);
    bridge::ReportReady();
    EXPECT_EQ(Received(), "READY=1");
}

TEST_F(ReadinessTest, ReadyIsSentToASocketThatIsAFile) {
    const std::string path = ::testing::TempDir() + name_;
    Listen(path);
    setenv("NOTIFY_SOCKET", path.c_str(), 1);
    bridge::ReportReady();
    EXPECT_EQ(Received(), "READY=1");
    unlink(path.c_str());
}

TEST_F(ReadinessTest, WithoutDescriptorsThereIsAWarning) {
    setenv("NOTIFY_SOCKET", ('@' + name_).c_str(), 1);
    ::testing::internal::CaptureStderr();
    {
        const DescriptorLimit none(0);
        bridge::ReportReady();
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "talvane-ipmi-bridge: cannot tell the service manager: Too many open files\n");
}

TEST_F(ReadinessTest, NothingIsSentWithoutAUsableSocketName) {
    bridge::ReportReady();
    setenv("NOTIFY_SOCKET", "", 1);
    bridge::ReportReady();
    setenv("NOTIFY_SOCKET", std::string(200, 'x').c_str(), 1);
    bridge::ReportReady();
    EXPECT_EQ(Received(), "");
}

TEST_F(ReadinessTest, ASocketThatDoesNotExistIsAWarning) {
    setenv("NOTIFY_SOCKET", ('@' + name_ + "-gone").c_str(), 1);
    ::testing::internal::CaptureStderr();
    bridge::ReportReady();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "talvane-ipmi-bridge: cannot tell the service manager: Connection refused\n");
}

}  // namespace
