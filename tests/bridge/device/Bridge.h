// SPDX-License-Identifier: MIT
//
// The bridge at work between the two devices of a FakeKernel, in a thread of its own.
#ifndef TALVANE_TESTS_BRIDGE_DEVICE_BRIDGE_H
#define TALVANE_TESTS_BRIDGE_DEVICE_BRIDGE_H

#include <gmock/gmock.h>

#include <csignal>
#include <thread>

#include "bridge/CharacterDevice.h"
#include "tests/bridge/device/Connection.h"
#include "tests/bridge/device/FakeKernel.h"
#include "transport/CallerRecord.h"

// Long enough to be told apart from a reply at once on the slowest machine.
constexpr std::uint32_t kMinute = 60000;

constexpr std::uint8_t kApplication = 0x06;
constexpr std::uint8_t kGetDeviceId = 0x01;

class BridgeTest : public ::testing::Test {
protected:
    using Fetched = Connection::Fetched;
    using Reply = Connection::Reply;

    BridgeTest() {
        bridge_ = std::thread([this] {
            status_ = bridge::ServeDevice({FakeKernel::kIpmiDevice, "talvane-test"}, "");
        });
        init = connection.ReplyTo(connection.SendInit());
    }
    ~BridgeTest() override { (void)Stop(); }

    // Ends the bridge with a signal. Returns its exit status.
    int Stop() {
        if (bridge_.joinable()) (void)pthread_kill(bridge_.native_handle(), SIGTERM);
        return Join();
    }
    // Waits until the bridge ends by itself. Returns its exit status.
    int Join() {
        if (bridge_.joinable()) bridge_.join();
        return status_;
    }

    // Opens the device, which has to succeed.
    std::uint64_t Opened() {
        std::uint64_t file = 0;
        EXPECT_EQ(connection.Open(file), 0);
        return file;
    }

    // A request without data, as the kernel passes it when it has fetched all of it.
    static Fetched Request(std::uint32_t timeout, std::uint8_t netFn = kApplication,
                           std::uint8_t command = kGetDeviceId) {
        transport::Bytes record(transport::kRecordSize);
        record[0] = command;
        record[1] = 0xFF;
        record[3] = netFn;
        for (std::size_t i = 0; i < 4; ++i)
            record[16 + i] = static_cast<std::uint8_t>(timeout >> (8 * i));
        record[21] = 0x20;
        return {0x1000, record, transport::kRecordSize + transport::kMaxResponse};
    }

    std::uint64_t Ask(std::uint64_t file, std::uint32_t timeout = kMinute) {
        return connection.SendIoctl(file, Request(timeout));
    }
    // Asks and waits for the reply. Returns its errno.
    int Answer(std::uint64_t file, std::uint32_t timeout = kMinute) {
        return connection.ReplyTo(Ask(file, timeout)).error;
    }

    FakeKernel kernel;
    Connection connection{kernel.Connection()};
    Reply init;

private:
    int status_ = -1;
    std::thread bridge_;
};

#endif
