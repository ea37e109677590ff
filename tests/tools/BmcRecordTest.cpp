// SPDX-License-Identifier: MIT
//
// Sensors and inventory of the BMC as the tool reads them, and the reasons when it cannot.

#include <gmock/gmock.h>

#include <cerrno>

#include "NoValue.h"
#include "simulator/machine/Machine.h"
#include "support/IpmiTest.h"
#include "tools/base/Source.h"
#include "tools/records/Bmc.h"
#include "tools/records/LibrarySensors.h"
#include "tools/records/Thresholds.h"
#include "tools/records/Watchdog.h"

namespace tool {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class BmcRecordTest : public IpmiTest {};

TEST_F(BmcRecordTest, SensorsHaveTheThresholdsThatTheBmcHoldsForThem) {
    Add(Temperature("T1", 0x10).Entity(3), 40);
    Add(Temperature("T2", 0x11).Entity(3), 96);
    bmc.SetThresholds(0x10, {0x38, {0, 0, 0, 80, 90, 100}});
    bmc.SetThresholds(0x11, {0x38, {0, 0, 0, 85, 95, 105}});
    bmc.SetThresholds(0, {0x3F, {0, 0, 0, 1, 2, 3}});
    const auto sensors = ReadLibrarySensors();
    ASSERT_TRUE(sensors.has_value());
    ASSERT_THAT(sensors->temperatures.listed, SizeIs(2));
    const SensorState& second = sensors->temperatures.listed[1];
    EXPECT_EQ(second.name, "T2");
    EXPECT_EQ(second.number, 0x11);
    EXPECT_EQ(second.reading, "96.00degree C");
    EXPECT_EQ(second.limits, (Limits{kNoValue, kNoValue, kNoValue, 85.0, 95.0, 105.0}));
    EXPECT_EQ(second.recordLimits, (Limits{0.0, 0.0, 0.0, 1.0, 2.0, 3.0}))
        << "the record has those of the first";
    EXPECT_EQ(LimitState(second), "upper critical");
}

TEST_F(BmcRecordTest, SensorsCanBeReadAgain) {
    Add(Temperature("T1", 0x10).Entity(3), 40);
    ASSERT_TRUE(ReadLibrarySensors().has_value());
    bmc.SetReading(0x10, 41);
    bmc.SetThresholds(0x10, {0x08, {0, 0, 0, 50, 0, 0}});
    const auto again = ReadLibrarySensors();
    ASSERT_THAT(again->temperatures.listed, SizeIs(1));
    EXPECT_EQ(again->temperatures.quantity, 1);
    EXPECT_EQ(again->temperatures.listed[0].reading, "41.00degree C");
    EXPECT_EQ(again->temperatures.listed[0].limits[3], 50.0);
}

TEST_F(BmcRecordTest, SensorsWithSignedFormatsAreMarked) {
    Add(Temperature("Plain", 1), 40);
    Add(Temperature("Ones", 2).Unit1(0x40), 40);
    Add(Temperature("Twos", 3).Unit1(0x80), 40);
    const auto listed = ReadLibrarySensors()->temperatures.listed;
    ASSERT_THAT(listed, SizeIs(3));
    EXPECT_FALSE(listed[0].isSigned);
    EXPECT_TRUE(listed[1].isSigned);
    EXPECT_TRUE(listed[2].isSigned);
}

TEST_F(BmcRecordTest, AReadingThatTheBmcCallsUnavailableIsMarked) {
    Add(Temperature("T1", 0x10).Entity(3), 40);
    Add(Temperature("T2", 0x11).Entity(3), 40);
    bmc.SetUnavailable(0x11);
    const auto before = ReadLibrarySensors()->temperatures.listed;
    ASSERT_THAT(before, SizeIs(2));
    EXPECT_FALSE(before[0].isUnavailable);
    EXPECT_TRUE(before[1].isUnavailable);
    bmc.SetReading(0x11, 41);
    EXPECT_FALSE(ReadLibrarySensors()->temperatures.listed[1].isUnavailable);
}

TEST_F(BmcRecordTest, ARefusedReadingIsMarkedUnavailable) {
    Add(Temperature("T1", 0x10).Entity(3), 40);
    ASSERT_TRUE(ReadLibrarySensors().has_value());
    bmc.Inject("Get Sensor Reading", sim::BmcFault::Kind::kRefused, 0xCB);
    EXPECT_TRUE(ReadLibrarySensors()->temperatures.listed[0].isUnavailable);
}

TEST_F(BmcRecordTest, AReadingOfASensorThatIsNotScannedIsMarkedUnavailable) {
    Add(Temperature("T1", 0x10).Entity(3), 40);
    bmc.Intercept([](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
        if (!request.Text().starts_with("Get Sensor Reading")) return std::nullopt;
        return sim::Bytes{40, 0x80, 0xC0, 0};
    });
    EXPECT_TRUE(ReadLibrarySensors()->temperatures.listed[0].isUnavailable);
}

TEST_F(BmcRecordTest, MoreFansThanTheRecordHoldsAreCounted) {
    for (int i = 0; i < 20; ++i) Add(Fan("FAN", static_cast<std::uint8_t>(i)).Entity(29), 70);
    const auto sensors = ReadLibrarySensors();
    EXPECT_EQ(sensors->fans.quantity, 20);
    EXPECT_THAT(sensors->fans.listed, SizeIs(16));
}

// The library takes the place among the sensors as one byte where it asks for the formula.
TEST_F(BmcRecordTest, ATemperatureAfter256FansHasNoThresholdsOfItsOwn) {
    for (int i = 0; i < 256; ++i) bmc.Add(Fan("FAN", 0x20));
    Add(Temperature("Last", 0x10).Entity(3), 40);
    bmc.SetThresholds(0x10, {0x38, {0, 0, 0, 80, 90, 100}});
    const auto sensors = ReadLibrarySensors();
    ASSERT_TRUE(sensors.has_value());
    ASSERT_THAT(sensors->temperatures.listed, SizeIs(1));
    EXPECT_EQ(sensors->temperatures.listed[0].name, "Last");
    EXPECT_EQ(sensors->temperatures.listed[0].limits, Limits{});
}

TEST_F(BmcRecordTest, AnEmptyRepositoryHasNoSensors) {
    const auto sensors = ReadLibrarySensors();
    ASSERT_TRUE(sensors.has_value());
    EXPECT_EQ(sensors->records, 0);
    EXPECT_EQ(sensors->voltages.quantity, 0);
    EXPECT_THAT(*ReadThresholds(), IsEmpty());
}

TEST_F(BmcRecordTest, FirmwareHasTwoMinorDigits) {
    bmc.SetFirmware(2, 0x05);
    EXPECT_EQ(ReadBmc()->firmware, "2.05");
}

// A FRU area's field: text of up to 63 Latin-1 characters.
void AddField(sim::Bytes& area, const std::string& text) {
    area.push_back(static_cast<std::uint8_t>(0xC0 | text.size()));
    area.insert(area.end(), text.begin(), text.end());
}

// Version, length in units of 8 bytes, and what follows, up to full length.
void AddArea(sim::Bytes& image, sim::Bytes area) {
    area.push_back(0xC1);
    while (area.size() % 8 != 0) area.push_back(0);
    area[1] = static_cast<std::uint8_t>(area.size() / 8);
    image.insert(image.end(), area.begin(), area.end());
}

TEST_F(BmcRecordTest, ProductFieldsAreNamedByWhatTheyHold) {
    sim::Bytes product{1, 0, 25};
    for (const char* text : {"Maker", "Product", "PART-1", "V7", "SERIAL42"})
        AddField(product, text);
    sim::Bytes image{1, 0, 0, 0, 1, 0, 0, 0};
    AddArea(image, product);
    bmc.SetInventory(image);
    const auto inventory = ReadBmc();
    EXPECT_EQ(inventory->productManufacturer, "Maker");
    EXPECT_EQ(inventory->productName, "Product");
    EXPECT_EQ(inventory->productPartNumber, "PART-1");
    EXPECT_EQ(inventory->productVersion, "V7");
    EXPECT_EQ(inventory->productSerialStart, "SERIAL4");
}

void ExpectNothingRead() {
    EXPECT_FALSE(ReadLibrarySensors().has_value());
    EXPECT_FALSE(ReadLibrarySensors().has_value());
    EXPECT_FALSE(ReadThresholds().has_value());
    EXPECT_FALSE(ReadWatchdog().has_value());
    EXPECT_FALSE(ReadBmc().has_value());
}

TEST(MissingBmcTest, IsExplainedByAMissingDevice) {
    const sim::SimulatedServer server;
    ExpectNothingRead();
    EXPECT_EQ(kBmc.whyNotRead(),
              "cannot open /dev/ipmi: No such file or directory (no BMC, or its driver is not "
              "loaded)");
}

TEST(MissingBmcTest, IsExplainedByRefusedPorts) {
    sim::SimulatedServer server;
    (void)server.GetBmc();
    server.Fail("iopl", 1, EPERM);
    EXPECT_EQ(kBmc.whyNotRead(),
              "cannot use the ports of the BMC: Operation not permitted (it takes root with "
              "CAP_SYS_RAWIO and a kernel that allows it)");
}

TEST(MissingBmcTest, IsExplainedByPortsThatNobodyAnswers) {
    sim::SimulatedServer server;
    server.GetMachine().GiveBmc(false, false);
    ExpectNothingRead();
    EXPECT_EQ(kBmc.whyNotRead(), "no BMC answers at port 0xCA3 (KCS) or 0xCAA (SMIC)");
}

TEST(MissingBmcTest, IsExplainedByABmcWhosePortsAnswerAndThatDoesNot) {
    for (const bool isKcs : {true, false}) {
        sim::SimulatedServer server;
        server.GetMachine().GiveBmc(isKcs, !isKcs);
        EXPECT_EQ(kBmc.whyNotRead(), "the BMC behind /dev/ipmi did not answer") << isKcs;
    }
}

}  // namespace
}  // namespace tool
