// SPDX-License-Identifier: MIT
//
// Port instructions of the process itself, answered by devices of the server.

#include <cerrno>
#include <memory>
#include <string>
#include <vector>

#include "ProbedServer.h"
#include "simulator/machine/Machine.h"

namespace {

using testing::ElementsAre;
using testing::Property;

// Reads a fixed value and keeps what was written.
class Latch : public sim::PortDevice {
public:
    std::uint32_t In(std::uint16_t, unsigned) override { return 0xAABBCCDD; }
    void Out(std::uint16_t port, unsigned width, std::uint32_t value) override {
        written.push_back({port, width, value});
    }
    struct Write {
        std::uint16_t port;
        unsigned width;
        std::uint32_t value;
        bool operator==(const Write&) const = default;
    };
    std::vector<Write> written;
};

class PortsTest : public ProbedServer {
protected:
    PortsTest() {
        server.GetMachine().Ports().Install(0x40, 8, latch);
        server.GetMachine().Ports().Install(0x1000, 4, latch);
        probe::Iopl(3);
        server.GetLog().Clear();
    }
    std::shared_ptr<Latch> latch = std::make_shared<Latch>();
};

TEST_F(PortsTest, InReplacesItsWidthOfTheAccumulator) {
    EXPECT_EQ(probe::In8(0x1000, 0x11223344), 0x112233DDu);
    EXPECT_EQ(probe::In16(0x1000, 0x11223344), 0x1122CCDDu);
    EXPECT_EQ(probe::In32(0x1000, 0x11223344), 0xAABBCCDDu);
    EXPECT_EQ(probe::In8FromPort0x42(0x11223344), 0x112233DDu);
}

TEST_F(PortsTest, OutWritesItsWidthOfTheAccumulator) {
    probe::Out8(0x1001, 0x11223344);
    probe::Out16(0x1002, 0x11223344);
    probe::Out32(0x1000, 0x11223344);
    probe::Out32ToPort0x42(0x11223344);
    EXPECT_THAT(
        latch->written,
        ElementsAre(Latch::Write{0x1001, 1, 0x44}, Latch::Write{0x1002, 2, 0x3344},
                    Latch::Write{0x1000, 4, 0x11223344}, Latch::Write{0x42, 4, 0x11223344}));
}

TEST_F(PortsTest, ProbePortWithoutADeviceReadsAllOnes) {
    EXPECT_EQ(probe::In8(0xCA3, 0), 0xFFu);
    EXPECT_EQ(probe::In8(0xCAA, 0), 0xFFu);
    probe::Out8(0xCA3, 0x61);
    EXPECT_EQ(probe::In8(0xCA3, 0), 0xFFu) << "nobody takes what is written";
    probe::Out32(0xCF8, 0x80000000);
    EXPECT_EQ(probe::In32(0xCFC, 0), 0xFFFFFFFFu) << "no PCI function is there";
}

TEST_F(PortsTest, InstalledDeviceReplacesTheEmptyPort) {
    server.GetMachine().Ports().Install(0xCA3, 1, latch);
    EXPECT_EQ(probe::In8(0xCA3, 0), 0xDDu);
}

TEST_F(PortsTest, LogShowsPortWidthAndValue) {
    probe::In8(0xCA3, 0);
    probe::Out32(0xCF8, 0x80001234);
    EXPECT_THAT(server.GetLog().Lines(),
                ElementsAre("in 0xCA3 1 -> 0xFF", "out 0xCF8 4 0x80001234 -> ok"));
}

TEST_F(PortsTest, CallsOfTheLogLeavePortInstructionsOut) {
    probe::In8(0xCA3, 0);
    probe::Iopl(0);
    probe::Iopl(3);
    probe::Out32(0xCF8, 0x80001234);
    EXPECT_THAT(server.GetLog().Calls(), ElementsAre(Property(&sim::Access::Text, "iopl 0 -> 0"),
                                                     Property(&sim::Access::Text, "iopl 3 -> 0")));
}

TEST_F(PortsTest, PrivilegeLevelOutsideZeroToThreeIsRefused) {
    EXPECT_EQ(probe::Iopl(4), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(probe::Iopl(-1), -1);
    EXPECT_EQ(probe::In8(0xCA3, 0), 0xFFu) << "a refused level changes nothing";
    EXPECT_EQ(probe::Iopl(0), 0);
    EXPECT_THAT(server.GetLog().Lines(), ElementsAre("iopl 4 -> -1 EINVAL", "iopl -1 -> -1 EINVAL",
                                                     "in 0xCA3 1 -> 0xFF", "iopl 0 -> 0"));
}

TEST_F(PortsTest, AccessLeavesErrnoAlone) {
    errno = ERANGE;
    probe::In8(0xCA3, 0);
    EXPECT_EQ(errno, ERANGE);
}

TEST_F(PortsTest, SleepTakesNoTimeAndMovesTheClock) {
    EXPECT_EQ(server.Clock().count(), 0);
    EXPECT_EQ(probe::Sleep(86400), 0u);
    EXPECT_EQ(probe::Sleep(2), 0u);
    EXPECT_EQ(server.Clock().count(), 86402);
    EXPECT_THAT(server.GetLog().Lines(), ElementsAre("sleep 86400 -> 0", "sleep 2 -> 0"));
}

}  // namespace
