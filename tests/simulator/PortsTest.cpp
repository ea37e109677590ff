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

// Reads a fixed value and keeps what was written.
class Latch : public sim::PortDevice {
public:
    std::uint32_t in(std::uint16_t, unsigned) override { return 0xAABBCCDD; }
    void out(std::uint16_t port, unsigned width, std::uint32_t value) override {
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

class Ports : public ProbedServer {
protected:
    Ports() {
        server.machine().ports().install(0x40, 8, latch);
        server.machine().ports().install(0x1000, 4, latch);
        probe::iopl(3);
        server.log().clear();
    }
    std::shared_ptr<Latch> latch = std::make_shared<Latch>();
};

TEST_F(Ports, InReplacesAsMuchOfTheAccumulatorAsItIsWide) {
    EXPECT_EQ(probe::in8(0x1000, 0x11223344), 0x112233DDu);
    EXPECT_EQ(probe::in16(0x1000, 0x11223344), 0x1122CCDDu);
    EXPECT_EQ(probe::in32(0x1000, 0x11223344), 0xAABBCCDDu);
    EXPECT_EQ(probe::in8FromPort0x42(0x11223344), 0x112233DDu);
}

TEST_F(Ports, OutWritesAsMuchOfTheAccumulatorAsItIsWide) {
    probe::out8(0x1001, 0x11223344);
    probe::out16(0x1002, 0x11223344);
    probe::out32(0x1000, 0x11223344);
    probe::out32ToPort0x42(0x11223344);
    EXPECT_THAT(
        latch->written,
        ElementsAre(Latch::Write{0x1001, 1, 0x44}, Latch::Write{0x1002, 2, 0x3344},
                    Latch::Write{0x1000, 4, 0x11223344}, Latch::Write{0x42, 4, 0x11223344}));
}

TEST_F(Ports, ProbePortsWithoutADeviceReadAllOnes) {
    EXPECT_EQ(probe::in8(0xCA3, 0), 0xFFu);
    EXPECT_EQ(probe::in8(0xCAA, 0), 0xFFu);
    probe::out32(0xCF8, 0x80000000);
    EXPECT_EQ(probe::in32(0xCFC, 0), 0xFFFFFFFFu) << "no PCI function is there";
}

TEST_F(Ports, ADeviceCoversTheEmptyPort) {
    server.machine().ports().install(0xCA3, 1, latch);
    EXPECT_EQ(probe::in8(0xCA3, 0), 0xDDu);
}

TEST_F(Ports, TheLogTellsPortWidthAndValue) {
    probe::in8(0xCA3, 0);
    probe::out32(0xCF8, 0x80001234);
    EXPECT_THAT(server.log().lines(),
                ElementsAre("in 0xCA3 1 -> 0xFF", "out 0xCF8 4 0x80001234 -> ok"));
}

TEST_F(Ports, PrivilegeLevelsAreZeroToThree) {
    EXPECT_EQ(probe::iopl(4), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(probe::iopl(-1), -1);
    EXPECT_EQ(probe::in8(0xCA3, 0), 0xFFu) << "a refused level changes nothing";
    EXPECT_EQ(probe::iopl(0), 0);
    EXPECT_THAT(server.log().lines(), ElementsAre("iopl 4 -> -1 EINVAL", "iopl -1 -> -1 EINVAL",
                                                  "in 0xCA3 1 -> 0xFF", "iopl 0 -> 0"));
}

TEST_F(Ports, AccessesLeaveErrnoAlone) {
    errno = ERANGE;
    probe::in8(0xCA3, 0);
    EXPECT_EQ(errno, ERANGE);
}

TEST_F(Ports, SleepingTakesNoTimeAndMovesTheClock) {
    EXPECT_EQ(server.clock().count(), 0);
    EXPECT_EQ(probe::sleep(86400), 0u);
    EXPECT_EQ(probe::sleep(2), 0u);
    EXPECT_EQ(server.clock().count(), 86402);
    EXPECT_THAT(server.log().lines(), ElementsAre("sleep 86400 -> 0", "sleep 2 -> 0"));
}

}  // namespace
