// SPDX-License-Identifier: MIT
//
// What keeps the bridge from starting, and what it says then.

#include <gmock/gmock.h>

#include <cerrno>
#include <functional>
#include <string>
#include <thread>

#include "bridge/CharacterDevice.h"
#include "tests/bridge/device/FakeKernel.h"
#include "tests/support/DescriptorLimit.h"

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

class StartTest : public ::testing::Test {
protected:
    // Starts the bridge, which has to end by itself with status 1. Returns what it logs. The thread
    // is there for the rights that it may lose.
    static std::string LogOfStart(const std::string& name, const std::string& user = "") {
        return LogOf([&] { return bridge::ServeDevice({FakeKernel::kIpmiDevice, name}, user); });
    }

    // The same while the process can have this many more descriptors.
    static std::string LogOfStartWith(rlim_t descriptors) {
        return LogOf([&] {
            const DescriptorLimit limit(descriptors);
            return bridge::ServeDevice({FakeKernel::kIpmiDevice, "talvane-test"}, "");
        });
    }

    FakeKernel kernel;

private:
    static std::string LogOf(const std::function<int()>& start) {
        CaptureStderr();
        int status = -1;
        std::thread bridge([&] { status = start(); });
        bridge.join();
        EXPECT_EQ(status, 1);
        return GetCapturedStderr();
    }
};

TEST_F(StartTest, ADeviceThatExistsIsLeftAlone) {
    EXPECT_EQ(LogOfStart("null"), "talvane-ipmi-bridge: /dev/null exists already\n");
}

TEST_F(StartTest, WithoutCuseTheMessageNamesTheModule) {
    kernel.SetCuseError(ENOENT);
    const std::string log = LogOfStart("talvane-test");
    EXPECT_THAT(log, HasSubstr("talvane-ipmi-bridge: cuse: ")) << "what libfuse says";
    EXPECT_THAT(log, EndsWith("cannot serve a device through /dev/cuse (is the module cuse loaded, "
                              "and may this user open the device?)\n"));
}

TEST_F(StartTest, AUserThatDoesNotExistIsNamed) {
    EXPECT_EQ(LogOfStart("talvane-test", "no such user"),
              "talvane-ipmi-bridge: cannot become user no such user: No such file or directory\n");
}

TEST_F(StartTest, WithoutDescriptorsTheMessageNamesTheCall) {
    if (kChecksNeedDescriptors) GTEST_SKIP() << "the sanitizer would end the program";
    EXPECT_EQ(LogOfStartWith(0), "talvane-ipmi-bridge: eventfd: Too many open files\n");
    EXPECT_EQ(LogOfStartWith(1), "talvane-ipmi-bridge: signalfd: Too many open files\n");
}

}  // namespace
