// SPDX-License-Identifier: MIT
//
// The statements about the management controller, and descriptions of one that cannot be used.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "MachineFolder.h"
#include "simulator/description/MachineFile.h"
#include "simulator/machine/Machine.h"

namespace {

using sim::Bytes;

class BmcStatementsTest : public testing::Test {
protected:
    Bytes Ask(std::uint8_t netFn, std::uint8_t command, Bytes data) {
        sim::BmcRequest request;
        request.netFn = netFn;
        request.command = command;
        request.data = std::move(data);
        machine.GetBmc().Answer(request);
        return request.response;
    }
    bool Answers(std::uint16_t port) { return machine.Ports().Find(port, 1)->In(port, 1) != 0xFF; }

    sim::Machine machine;
};

TEST_F(BmcStatementsTest, InterfaceAnswersAtItsPort) {
    for (const auto& [name, kcs, smic] : {std::tuple<std::string, bool, bool>{"kcs", true, false},
                                          {"smic", false, true},
                                          {"both", true, true},
                                          {"none", false, false}}) {
        sim::Machine described;
        LoadMachine(MachineFolder("bmc " + name).path, described);
        EXPECT_EQ(described.Ports().Find(0xCA3, 1)->In(0xCA3, 1) != 0xFF, kcs) << name;
        EXPECT_EQ(described.Ports().Find(0xCAA, 1)->In(0xCAA, 1) != 0xFF, smic) << name;
    }
    EXPECT_FALSE(Answers(0xCA3));
}

TEST_F(BmcStatementsTest, AnswerIsGivenToItsRequestAlone) {
    LoadMachine(MachineFolder("bmc kcs\nsensor 0x30 \"FAN 1\"\nreading 0x30 70\n"
                              "answer \"Get Sensor Reading\" 30 -> 00 46 40\n"
                              "answer \"Get Sensor Reading\" lun 1 30 -> CB\n"
                              "answer \"Get Device ID\" -> 00 01 02\n")
                    .path,
                machine);
    EXPECT_EQ(Ask(0x04, 0x2D, {0x30}), (Bytes{0x46, 0x40}));
    EXPECT_EQ(Ask(0x06, 0x01, {}), (Bytes{1, 2}));
    EXPECT_EQ(Ask(0x04, 0x2D, {0x31}), Bytes());
    sim::BmcRequest request;
    request.netFn = 0x04;
    request.command = 0x2D;
    request.data = {0x30};
    request.lun = 1;
    machine.GetBmc().Answer(request);
    EXPECT_EQ(request.completion, 0xCB);
    EXPECT_EQ(request.response, Bytes());
    request.lun = 2;
    machine.GetBmc().Answer(request);
    EXPECT_EQ(request.response, (Bytes{70, 0xC0, 0, 0}));
}

TEST_F(BmcStatementsTest, AnswerHoldsUntilACommandSetsWhatItAsksFor) {
    LoadMachine(MachineFolder("bmc kcs\nsensor 0x30 \"FAN 1\"\nsensor 0x31 \"FAN 2\"\n"
                              "answer \"Get Sensor Thresholds\" 30 -> CB\n"
                              "answer \"Get Sensor Thresholds\" 31 -> CB\n"
                              "answer \"Get Sensor Reading\" 30 -> 00 46 40\n"
                              "answer \"Get Watchdog Timer\" -> CB\n")
                    .path,
                machine);
    EXPECT_EQ(Ask(0x04, 0x27, {0x30}), Bytes());
    (void)Ask(0x04, 0x26, {0x30, 0x01, 9, 0, 0, 0, 0, 0});
    EXPECT_EQ(Ask(0x04, 0x2D, {0x30}), (Bytes{0x46, 0x40})) << "the answer to another command";
    EXPECT_EQ(Ask(0x04, 0x27, {0x30}), (Bytes{0, 9, 0, 0, 0, 0, 0}));
    EXPECT_EQ(Ask(0x04, 0x27, {0x31}), Bytes());
    EXPECT_EQ(Ask(0x06, 0x25, {}), Bytes());
    (void)Ask(0x06, 0x24, {0, 0, 0, 0, 10, 0});
    EXPECT_EQ(Ask(0x06, 0x25, {}).size(), 8u);
}

TEST_F(BmcStatementsTest, ImpossibleAnswerIsRefused) {
    const auto complaint = [](const std::string& statement) {
        sim::Machine refused;
        try {
            LoadMachine(MachineFolder("bmc kcs\n" + statement).path, refused);
        } catch (const sim::MachineError& error) {
            const std::string text = error.what();
            return text.substr(text.find("machine.txt:") + 12);
        }
        return std::string("none");
    };
    EXPECT_EQ(complaint("answer \"Get Spoon\" -> 00"),
              "2: the controller knows no command \"Get Spoon\"");
    EXPECT_EQ(complaint("answer \"Get Device ID\""), "2: the byte or \"->\" is missing");
    EXPECT_EQ(complaint("answer \"Get Device ID\" ->"), "2: the byte is missing");
    EXPECT_EQ(complaint("answer \"Get Device ID\" lun 4 -> 00"), "2: the LUN 4 is above 3");
    EXPECT_EQ(complaint("answer \"Get Device ID\" 123 -> 00"),
              "2: the byte or \"->\" \"123\" is not two hexadecimal digits");
    std::string most = "answer \"Get Device ID\" ->";
    for (int i = 0; i < 257; ++i) most += " 00";
    EXPECT_EQ(complaint(most), "none");
    EXPECT_EQ(complaint(most + " 00"), "2: an answer has at most 256 bytes");
}

TEST_F(BmcStatementsTest, SensorWithFieldsBecomesARecord) {
    LoadMachine(MachineFolder("reading 0x30 70\n"
                              "bmc kcs firmware 2 34\n"
                              "sensor 0x10 \"CPU Temp\"\n"
                              "sensor 0x30 \"FAN 1\"\n"
                              "  type 4\n  entity 29 2\n  event 0x6F\n  unit 18 22\n  format 0x42\n"
                              "  factors -2 3 -4 5\n  linearization 7\n  limits 200 10\n"
                              "  masks 0x3F 0x1B\n"
                              "states 0x30 1 2\n"
                              "thresholds 0x30 0x3F 1 2 3 4 5 6\n")
                    .path,
                machine);
    Bytes expected = sim::SdrRecord("FAN 1", 0x30)
                         .Kind(4)
                         .Entity(29, 2)
                         .Event(0x6F)
                         .Unit(18, 22)
                         .Unit1(0x42)
                         .Factors(-2, 3, -4, 5)
                         .Linearization(7)
                         .Limits(200, 10)
                         .ThresholdMasks(0x3F, 0x1B)
                         .Byte(0, 1)
                         .Image();
    expected.insert(expected.begin(), {0xFF, 0xFF});
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 1, 0, 0, 0xFF}), expected);
    EXPECT_EQ(Ask(4, 0x2D, {0x30}), (Bytes{70, 0xC0, 1, 2}));
    EXPECT_EQ(Ask(4, 0x27, {0x30}), (Bytes{0x3F, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(Ask(6, 0x01, {})[2], 2);
    EXPECT_EQ(Ask(6, 0x01, {})[3], 0x34);
}

TEST_F(BmcStatementsTest, CapturesAndChannelsReachTheController) {
    const MachineFolder folder("bmc smic\nsdr records.bin\ninventory fru.bin\nchannel 1 4 1\n");
    const Bytes record = sim::SdrRecord("A", 1).Byte(0, 0x42).Image();
    folder.Write("records.bin", std::string(record.begin(), record.end()));
    folder.Write("fru.bin", "inventory");
    LoadMachine(folder.path, machine);
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 0x42, 0, 0, 0}), (Bytes{0xFF, 0xFF}));
    EXPECT_EQ(Ask(0x0A, 0x11, {0, 2, 0, 3}), (Bytes{3, 'v', 'e', 'n'}));
    EXPECT_EQ(Ask(6, 0x42, {1})[1], 4);
}

TEST_F(BmcStatementsTest, ReadingsAndStatesFollowTheirMoments) {
    LoadMachine(MachineFolder("bmc kcs\nreading 1 20\nreading 1 at 5 80\n"
                              "reading 1 at 9 unavailable\nreading 2 unavailable 0xFF\n"
                              "states 1 at 5 2\n")
                    .path,
                machine);
    EXPECT_EQ(Ask(4, 0x2D, {1}), (Bytes{20, 0xC0, 0, 0}));
    EXPECT_EQ(Ask(4, 0x2D, {2}), (Bytes{0xFF, 0xE0, 0, 0}));
    (void)machine.Sleep(5);
    EXPECT_EQ(Ask(4, 0x2D, {1}), (Bytes{80, 0xC0, 2, 0}));
    (void)machine.Sleep(4);
    EXPECT_EQ(Ask(4, 0x2D, {1}), (Bytes{0, 0xE0, 2, 0}));
}

TEST_F(BmcStatementsTest, RepositoryShowsItsDescribedDefects) {
    LoadMachine(MachineFolder("bmc kcs\nrepository count 7\nrepository next 1 0\n"
                              "sensor 1 \"A\"\n  delivered 10\n  reread 8 0x42\n"
                              "record 0xC0 57 01 00 0D\n")
                    .path,
                machine);
    EXPECT_EQ(Ask(0x0A, 0x20, {})[1], 7);
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 0, 0, 0, 0xFF}),
              (Bytes{1, 0, 0, 0, 0x51, 1, 59, 0x20, 0, 1, 7, 1}));
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 0, 0, 8, 0xFF}), (Bytes{1, 0, 0x42, 1})) << "read again";
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 0, 0, 20, 4}), (Bytes{1, 0})) << "past its end";
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 1, 0, 0, 0xFF}),
              (Bytes{0, 0, 1, 0, 0x51, 0xC0, 4, 0x57, 0x01, 0x00, 0x0D}));
}

TEST_F(BmcStatementsTest, UnstoppableWatchdogRunsOnAfterSetWatchdogTimer) {
    LoadMachine(MachineFolder("bmc kcs\nwatchdog action 1 seconds 60 unstoppable\n").path, machine);
    (void)Ask(6, 0x24, {4, 0, 0, 0, 200, 0});
    EXPECT_TRUE(machine.GetBmc().Watchdog().running);
    sim::Machine other;
    LoadMachine(MachineFolder("bmc kcs\nwatchdog unstoppable\n").path, other);
    EXPECT_FALSE(other.GetBmc().Watchdog().running);
}

TEST_F(BmcStatementsTest, FaultStrikesItsRequestOnly) {
    LoadMachine(MachineFolder("bmc kcs\nreading 1 20\nfault \"Get Sensor Reading\" 2 short 1\n"
                              "fault \"Get Device ID\" every empty\n")
                    .path,
                machine);
    EXPECT_EQ(Ask(4, 0x2D, {1}), (Bytes{20, 0xC0, 0, 0}));
    EXPECT_EQ(Ask(4, 0x2D, {1}), Bytes{20});
    EXPECT_EQ(Ask(4, 0x2D, {1}), (Bytes{20, 0xC0, 0, 0}));
    EXPECT_EQ(Ask(6, 0x01, {}), Bytes{});
    EXPECT_EQ(Ask(6, 0x01, {}), Bytes{});
}

TEST_F(BmcStatementsTest, EachKindOfFaultIsThatOfTheController) {
    LoadMachine(MachineFolder("bmc kcs\nreading 1 20\n"
                              "fault \"Get Sensor Reading\" 2 refused 0xC3\n"
                              "fault \"Get Sensor Reading\" 3 stale\n"
                              "fault \"Get Device ID\" 1 fails\n"
                              "fault \"Get Device ID\" 2 fails EBUSY\n")
                    .path,
                machine);
    const Bytes reading{20, 0xC0, 0, 0};
    EXPECT_EQ(Ask(4, 0x2D, {1}), reading);
    EXPECT_EQ(Ask(4, 0x2D, {1}), Bytes{}) << "refused, without data";
    EXPECT_EQ(Ask(4, 0x2D, {1}), Bytes{}) << "the response before";
    EXPECT_EQ(Ask(4, 0x2D, {1}), reading);
    for (const int error : {EIO, EBUSY, 0}) {
        sim::BmcRequest request;
        request.netFn = 6;
        request.command = 1;
        machine.GetBmc().Answer(request);
        EXPECT_EQ(request.error, error);
    }
}

TEST_F(BmcStatementsTest, RecordOrInventoryLongerThanItsLengthCanSayIsRefused) {
    std::string record = "bmc kcs\nrecord 0xC0";
    for (int i = 0; i < 255; ++i) record += " 5A";
    LoadMachine(MachineFolder(record).path, machine);
    EXPECT_EQ(Ask(0x0A, 0x23, {0, 0, 0, 0, 0, 0xFE}).size(), 2u + 0xFE);
    const auto complaint = [](const MachineFolder& folder) {
        sim::Machine refused;
        try {
            LoadMachine(folder.path, refused);
        } catch (const sim::MachineError& error) {
            const std::string text = error.what();
            return text.substr(text.find("machine.txt:") + 12);
        }
        return std::string("none");
    };
    EXPECT_EQ(complaint(MachineFolder(record + " 5A")),
              "2: a record has at most 255 bytes after its header");
    const MachineFolder inventory("bmc kcs\ninventory fru.bin");
    inventory.Write("fru.bin", std::string(65535, 'f'));
    EXPECT_EQ(complaint(inventory), "none");
    inventory.Write("fru.bin", std::string(65536, 'f'));
    EXPECT_EQ(complaint(inventory), "2: an inventory has at most 65535 bytes");
}

struct BadController {
    const char* text;
    const char* complaint;
};

void PrintTo(const BadController& bad, std::ostream* out) {
    *out << bad.text;
}

class BmcStatementErrorTest : public testing::TestWithParam<BadController> {};

TEST_P(BmcStatementErrorTest, MistakeIsReportedWithItsLine) {
    const MachineFolder folder(GetParam().text);
    folder.Write("short.bin", "short");
    folder.Write("one.bin", std::string("\1\0\x51\xC0\0", 5));
    sim::Machine machine;
    try {
        LoadMachine(folder.path, machine);
        FAIL() << "nothing to complain about";
    } catch (const sim::MachineError& error) {
        EXPECT_EQ(error.what(),
                  (folder.path / "machine.txt").string() + ":" + GetParam().complaint);
    }
}

#define FAN "bmc kcs\nsensor 1 \"FAN\"\n"
INSTANTIATE_TEST_SUITE_P(
    BmcStatements, BmcStatementErrorTest,
    testing::Values(
        BadController{"bmc", "1: the interface is missing"},
        BadController{"bmc ssif", "1: the interface \"ssif\" is none of kcs, smic, both, none"},
        BadController{"bmc kcs\nbmc kcs", "2: the controller was given in line 1"},
        BadController{"bmc kcs 1 20", "1: the word \"firmware\" was expected, not \"1\""},
        BadController{"bmc kcs firmware 128 0", "1: the major firmware revision 128 is above 127"},
        BadController{"bmc kcs firmware 1 100", "1: the minor firmware revision 100 is above 99"},
        BadController{"\nreading 1 2",
                      "2: this belongs to a controller, and no line begins with bmc"},
        BadController{"bmc kcs\ntype 4", "2: type belongs to a sensor, and there is none"},
        BadController{FAN "type 4\ntype 4", "4: type was given in line 3"},
        BadController{FAN "factors 512 0 0 0", "3: M 512 is not between -512 and 511"},
        BadController{FAN "factors 1 0 0 8", "3: the result exponent 8 is not between -8 and 7"},
        BadController{FAN "factors 0x1 0 0 0", "3: M \"0x1\" is not a decimal number"},
        BadController{FAN "factors few 0 0 0", "3: M \"few\" is not a decimal number"},
        BadController{FAN "factors 99999999999 0 0 0",
                      "3: M \"99999999999\" is not a decimal number"},
        BadController{"bmc kcs\nsensor 1 \"seventeen letters\"",
                      "2: the sensor name \"seventeen letters\" is longer than 16 characters"},
        BadController{"bmc kcs\nsensor 256 \"FAN\"", "2: the sensor number 256 is above 255"},
        BadController{FAN "reading 1 2\nreading 1 2", "4: the sensor has a reading already"},
        BadController{FAN "thresholds 1 0x3F 1 2 3 4 5 6\nthresholds 1 0x3F 1 2 3 4 5 6",
                      "4: the sensor has thresholds already"},
        BadController{"bmc kcs\nchannel 0x1G 4 1", "2: the channel \"0x1G\" is not a number"},
        BadController{FAN "states 1 2\nstates 1 2", "4: the sensor has states already"},
        BadController{FAN "thresholds 1 0x40 1 2 3 4 5 6",
                      "3: the readable thresholds 0x40 is above 63"},
        BadController{"bmc kcs\nsdr short.bin", "2: not a dump of a sensor data record repository"},
        BadController{"bmc kcs\nrecord 0xC0\nrecord 0xC0\nsdr one.bin",
                      "4: the repository has a record 0x1 already"},
        BadController{"bmc kcs\ninventory short.bin\ninventory short.bin",
                      "3: the controller has an inventory already"},
        BadController{"bmc kcs\nchannel 1 4 1\nchannel 1 4 1",
                      "3: the controller has this channel already"},
        BadController{"bmc kcs\nchannel 16 4 1", "2: the channel 16 is above 15"},
        BadController{"bmc kcs\nreading 1 at 5 2\nreading 1 at 5 3",
                      "3: the sensor has a reading from second 5 on already"},
        BadController{"bmc kcs\nreading 1 at 5", "2: the raw reading is missing"},
        BadController{"bmc kcs\nrepository size 5",
                      "2: the word \"next\" was expected, not \"size\""},
        BadController{"bmc kcs\nrepository count 5\nrepository count 5",
                      "3: the count was given already"},
        BadController{FAN "repository next 1 0", "3: the repository has no such record"},
        BadController{FAN "repository next 0 1\nrepository next 0 1",
                      "4: what follows the record was given already"},
        BadController{"bmc kcs\nrecord 0xC0 123",
                      "2: the byte \"123\" is not two hexadecimal digits"},
        BadController{FAN "delivered 65", "3: the number of bytes 65 is above 64"},
        BadController{FAN "reread 64 1", "3: the offset 64 is above 63"},
        BadController{FAN "reread 8 1\nreread 8 1", "4: the byte was given already"},
        BadController{FAN "record 0xC0\nreread 8 1",
                      "4: reread belongs to a sensor, and there is none"},
        BadController{"bmc kcs\ncontrol a\ncontrol b",
                      "3: the controller has a control file already"},
        BadController{"bmc kcs\nwatchdog", "2: the word \"unstoppable\" is missing"},
        BadController{"bmc kcs\nwatchdog action 4 seconds 60", "2: the action 4 is above 3"},
        BadController{"bmc kcs\nwatchdog unstoppable\nwatchdog unstoppable",
                      "3: the watchdog was given already"},
        BadController{"bmc kcs\nfault Get 1 empty", "2: the command must be in double quotes"},
        BadController{"bmc kcs\nfault \"Get SRD\" 1 empty",
                      "2: the controller knows no command \"Get SRD\""},
        BadController{"bmc kcs\nfault \"Get SDR\" 0 empty", "2: requests count from 1"},
        BadController{"bmc kcs\nfault \"Get SDR\" 1 late",
                      "2: the fault \"late\" is none of refused, short, empty, stale, fails"},
        BadController{"bmc kcs\nfault \"Get SDR\" 1 refused 0",
                      "2: the completion code 0 refuses nothing"},
        BadController{
            "bmc kcs\nfault \"Get SDR\" 1 fails EPERM",
            "2: the error \"EPERM\" is none of EIO EBUSY EAGAIN EINTR ENODEV ETIMEDOUT"}));

}  // namespace
