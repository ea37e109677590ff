// SPDX-License-Identifier: MIT
//
// What a capture takes of a BMC that answers in unusual ways.

#include <gmock/gmock.h>

#include "base/Bytes.h"
#include "simulator/machine/Machine.h"
#include "support/IpmiTest.h"
#include "tools/capture/MachineCapture.h"

namespace tool {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class CaptureBmcTest : public IpmiTest {
protected:
    // Get SDR with this ID is answered with these bytes: the next ID, and a record.
    void AnswerRecord(std::uint8_t id, const sim::Bytes& answer) {
        sim::Bytes bytes{0};
        bytes.insert(bytes.end(), answer.begin(), answer.end());
        bmc.SetAnswer("Get SDR", 0, {0, 0, id, 0, 0, 0xFF}, bytes);
    }

    const BmcCapture& Capture() {
        CaptureBmc(capture);
        EXPECT_TRUE(capture.bmc.has_value());
        return *capture.bmc;
    }

    // The answers to this command that the records and other statements do not give alike, by the
    // ID or other number that was asked for.
    std::vector<std::pair<int, CapturedBytes>> Others(const char* command, std::size_t numberAt) {
        std::vector<std::pair<int, CapturedBytes>> found;
        for (const BmcExchange& exchange : capture.bmc->others)
            if (std::string(exchange.command) == command)
                found.emplace_back(talvane::Le16(talvane::ByteView(exchange.data), numberAt),
                                   exchange.answer);
        return found;
    }

    MachineCapture capture;
};

TEST_F(CaptureBmcTest, WithoutPortAccessNoInterfaceIsSeen) {
    server.GetMachine().RefusePorts(EPERM);
    EXPECT_EQ(Capture().interface, "none");
    EXPECT_THAT(capture.notRead, ElementsAre(&kBmc));
}

TEST_F(CaptureBmcTest, RefusedDeviceIdIsNotedBesideTheUsualFirmware) {
    Add(Temperature("T", 1), 40);
    bmc.Inject("Get Device ID", sim::BmcFault::Kind::kRefused, 0xC0);
    EXPECT_EQ(Capture().majorFirmware, 1);
    EXPECT_EQ(capture.bmc->minorFirmware, 0);
    EXPECT_THAT(Others("Get Device ID", 0), ElementsAre(Pair(0, CapturedBytes())));
}

TEST_F(CaptureBmcTest, RecordsThatAreNotWholeOrHaveNoIdOfTheirOwnAreNotedAsAnswers) {
    const sim::Bytes first{2, 0, 1, 0, 0x51, 0xC0, 1, 'a'};
    const sim::Bytes sameId{3, 0, 1, 0, 0x51, 0xC0, 1, 'b'};
    const sim::Bytes noId{4, 0, 0xFF, 0xFF, 0x51, 0xC0, 1, 'c'};
    const sim::Bytes longer{5, 0, 6, 0, 0x51, 0xC0, 2, 'd'};
    const sim::Bytes header{6, 0, 7, 0, 0x51};
    AnswerRecord(0, first);
    AnswerRecord(2, sameId);
    AnswerRecord(3, noId);
    AnswerRecord(4, longer);
    AnswerRecord(5, header);
    EXPECT_THAT(Capture().records, ElementsAre(CapturedBytes{1, 0, 0x51, 0xC0, 1, 'a'}));
    EXPECT_THAT(Others("Get SDR", 2), ElementsAre(Pair(0, first), Pair(2, sameId), Pair(3, noId),
                                                  Pair(4, longer), Pair(5, header)))
        << "that record 6 is refused goes without saying";
}

TEST_F(CaptureBmcTest, RepositoryThatLeadsBackToItselfIsReadOnce) {
    Add(Temperature("A", 1), 40);
    Add(Temperature("B", 2), 40);
    bmc.SetNextRecord(1, 0);
    EXPECT_THAT(Capture().records, SizeIs(2));
    CapturedBytes last{0, 0};
    last.insert(last.end(), capture.bmc->records[1].begin(), capture.bmc->records[1].end());
    EXPECT_THAT(Others("Get SDR", 2), ElementsAre(Pair(1, last)));
}

TEST_F(CaptureBmcTest, RepositoryWithoutEndIsReadUpTo4096Records) {
    bmc.Intercept([](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
        if (request.netFn != 0x0A || request.command != 0x23) return std::nullopt;
        const int next = request.data[2] + request.data[3] * 256 + 1;
        return sim::Bytes{talvane::LowByte(next), talvane::HighByte(next), 0xEE};
    });
    EXPECT_THAT(Capture().records, IsEmpty());
    const auto others = Others("Get SDR", 2);
    ASSERT_THAT(others, SizeIs(4097));
    EXPECT_EQ(others[4095].first, 4095);
    EXPECT_EQ(others[4096].first, 0xFFFF) << "which the library asks for as well";
}

TEST_F(CaptureBmcTest, SensorsThatHaveNoReadingAreNotNamed) {
    constexpr std::uint8_t kEventOnly = 3;
    AnswerRecord(0,
                 {1, 0, 0, 0, 0x51, kEventOnly, 12, 0x20, 0, 0x44, 7, 1, 5, 0x6F, 1, 0, 0, 0, 0});
    AnswerRecord(1, {0xFF, 0xFF, 1, 0, 0x51, 0xC0, 2, 'a', 'b'});
    EXPECT_THAT(Capture().records, SizeIs(2));
    EXPECT_THAT(capture.bmc->names, IsEmpty());
    ASSERT_THAT(capture.bmc->readings, SizeIs(1))
        << "the library asks for the number of the first, and the second has none";
    EXPECT_EQ(capture.bmc->readings[0].data, CapturedBytes{0x44});
}

}  // namespace
}  // namespace tool
