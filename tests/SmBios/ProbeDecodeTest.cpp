// SPDX-License-Identifier: MIT
//
// What the probe getters read of a probe. They begin at index 0, which the library's own GetItem
// never finds; this program is an agent whose GetItem does.
#include <deque>

#include "support/InterfaceTest.h"
#include "support/SmBiosTest.h"

namespace {

struct AgentsProbe {
    int type;
    sim::SmbiosStructure structure;
};
std::deque<AgentsProbe> agentsProbes;  // in the order of their indexes, from 0

}  // namespace

BiosDataItem* SmBios::GetItem(unsigned char wanted, unsigned char index) {
    for (const AgentsProbe& probe : agentsProbes) {
        if (probe.type != wanted || index-- != 0) continue;
        sim::Bytes bytes = probe.structure.Image();
        return new BiosDataItem(bytes.data());
    }
    return nullptr;
}

namespace {

constexpr int kVoltage = SmBios::TYPE_VOLTAGE_PROBE;
constexpr int kTemperature = SmBios::TYPE_TEMPERATURE_PROBE;
constexpr int kLocation = SmBios::TnV_PROCESSOR;

sim::SmbiosStructure& AddAgentsProbe(int type, int locationAndStatus, int length = 22) {
    sim::SmbiosStructure probe(static_cast<std::uint8_t>(type), 0x1A00,
                               static_cast<std::uint8_t>(length));
    probe.Byte(5, static_cast<std::uint8_t>(locationAndStatus));
    agentsProbes.push_back({type, probe});
    return agentsProbes.back().structure;
}

class ProbeDecodeTest : public SmBiosTest {
protected:
    ProbeDecodeTest() { Open(); }
    ~ProbeDecodeTest() override { agentsProbes.clear(); }

    // A probe of the asked location that has this value at this offset, and others elsewhere.
    void OnlyProbe(int type, std::size_t offset, int value) {
        agentsProbes.clear();
        sim::SmbiosStructure& probe = AddAgentsProbe(type, kLocation);
        for (const std::size_t other : {6u, 8u, 20u}) probe.Word(other, 0x1111);
        probe.Word(offset, static_cast<std::uint16_t>(value));
    }
};

const std::vector<std::pair<int, std::string>> kValues = {
    {0, "0"}, {1, "1"}, {0x7FFF, "32767"}, {0x8001, "32769"}, {0xFFFF, "65535"}};

TEST_F(ProbeDecodeTest, VoltagesAreAtTheirOffsetsInMillivolts) {
    for (const auto& [value, number] : kValues) {
        const Answer text = Terminated(number + " mv");
        OnlyProbe(kVoltage, 20, value);
        EXPECT_EQ(Ask(&SmBios::GetVoltageCurrent, kLocation), text);
        OnlyProbe(kVoltage, 6, value);
        EXPECT_EQ(Ask(&SmBios::GetVoltageMax, kLocation), text);
        OnlyProbe(kVoltage, 8, value);
        EXPECT_EQ(Ask(&SmBios::GetVoltageMin, kLocation), text);
    }
}

TEST_F(ProbeDecodeTest, TemperatureIsAtItsOffsetInDegrees) {
    for (const auto& [value, number] : kValues) {
        OnlyProbe(kTemperature, 20, value);
        EXPECT_EQ(Ask(&SmBios::GetTemperatureCurrent, kLocation), Terminated(number + " C"));
    }
}

TEST_F(ProbeDecodeTest, Value8000IsUnknownAndAnswersMinusOne) {
    OnlyProbe(kVoltage, 20, 0x8000);
    EXPECT_EQ(Ask(&SmBios::GetVoltageCurrent, kLocation), Refused("Unknown"));
    OnlyProbe(kVoltage, 6, 0x8000);
    EXPECT_EQ(Ask(&SmBios::GetVoltageMax, kLocation), Refused("Unknown"));
    OnlyProbe(kVoltage, 8, 0x8000);
    EXPECT_EQ(Ask(&SmBios::GetVoltageMin, kLocation), Refused("Unknown"));
    OnlyProbe(kTemperature, 20, 0x8000);
    EXPECT_EQ(Ask(&SmBios::GetTemperatureCurrent, kLocation), Refused("Unknown"));
}

TEST_F(ProbeDecodeTest, StructureBelow21BytesCanNotSupplyTheCurrentValue) {
    const Answer refused = Refused("SmBios can not supply this information");
    for (const int length : {6, 19, 20}) {
        agentsProbes.clear();
        AddAgentsProbe(kVoltage, kLocation, length).String("12");
        AddAgentsProbe(kTemperature, kLocation, length).String("12");
        EXPECT_EQ(Ask(&SmBios::GetVoltageCurrent, kLocation), refused) << length;
        EXPECT_EQ(Ask(&SmBios::GetTemperatureCurrent, kLocation), refused) << length;
    }
}

TEST_F(ProbeDecodeTest, StructureOf21BytesHasTheValuesLowByte) {
    AddAgentsProbe(kVoltage, kLocation, 21).Byte(20, 0x34).String("12");
    AddAgentsProbe(kTemperature, kLocation, 21).Byte(20, 0x34).String("12");
    EXPECT_EQ(Ask(&SmBios::GetVoltageCurrent, kLocation), Terminated("52 mv"));
    EXPECT_EQ(Ask(&SmBios::GetTemperatureCurrent, kLocation), Terminated("52 C"));
}

TEST_F(ProbeDecodeTest, StructureOf22BytesHasTheWholeValue) {
    AddAgentsProbe(kVoltage, kLocation, 22).Word(20, 0x1234);
    AddAgentsProbe(kTemperature, kLocation, 22).Word(20, 0x1234);
    EXPECT_EQ(Ask(&SmBios::GetVoltageCurrent, kLocation), Terminated("4660 mv"));
    EXPECT_EQ(Ask(&SmBios::GetTemperatureCurrent, kLocation), Terminated("4660 C"));
}

TEST_F(ProbeDecodeTest, EveryStatusReadsError) {
    for (int status = 0; status < 8; ++status) {
        agentsProbes.clear();
        AddAgentsProbe(kVoltage, status << 5 | kLocation);
        AddAgentsProbe(kTemperature, status << 5 | kLocation);
        EXPECT_EQ(Ask(&SmBios::GetVoltageStatus, kLocation), Terminated("error")) << status;
        EXPECT_EQ(Ask(&SmBios::GetTemperatureStatus, kLocation), Terminated("error")) << status;
    }
}

TEST_F(ProbeDecodeTest, DescriptionIsABoundedCopyOfTheStringItNames) {
    AddAgentsProbe(kVoltage, kLocation).String("not this one").String(4, "+12 V");
    AddAgentsProbe(kTemperature, kLocation).String("not this one").String(4, "Inlet");
    EXPECT_EQ(Ask(&SmBios::GetVoltageDescription, kLocation, 6), Copied("+12 V"));
    EXPECT_EQ(Ask(&SmBios::GetVoltageDescription, kLocation, 5), Copied("+12 "));
    EXPECT_EQ(Ask(&SmBios::GetTemperatureDescription, kLocation, 6), Copied("Inlet"));
    EXPECT_EQ(Ask(&SmBios::GetTemperatureDescription, kLocation, 5), Copied("Inle"));
}

TEST_F(ProbeDecodeTest, ProbeWithoutADescriptionAnswersMinusOne) {
    AddAgentsProbe(kVoltage, kLocation);
    AddAgentsProbe(kTemperature, kLocation);
    EXPECT_EQ(Ask(&SmBios::GetVoltageDescription, kLocation, 32), Missing());
    EXPECT_EQ(Ask(&SmBios::GetTemperatureDescription, kLocation, 32), Missing());
}

TEST_F(ProbeDecodeTest, FirstProbeThatHasAllBitsOfTheLocationIsTaken) {
    for (const int type : {kVoltage, kTemperature}) {
        AddAgentsProbe(type, 0x61).String(4, "first");
        AddAgentsProbe(type, 0x63).String(4, "second");
        AddAgentsProbe(type, 0x07).String(4, "third");
    }
    const std::vector<std::pair<int, Answer>> answers = {
        {1, Copied("first")}, {2, Copied("second")}, {3, Copied("second")},   {7, Copied("third")},
        {0, Copied("first")}, {8, Missing()},        {0x60, Copied("first")},  // a status bit, too
        {0x67, Missing()},    {0x103, Missing()},    {-1, Missing()},
    };
    for (const auto& [location, answer] : answers) {
        EXPECT_EQ(Ask(&SmBios::GetVoltageDescription, location, 32), answer) << location;
        EXPECT_EQ(Ask(&SmBios::GetTemperatureDescription, location, 32), answer) << location;
    }
}

TEST_F(ProbeDecodeTest, EveryGetterPassesOverAProbeElsewhere) {
    for (const int type : {kVoltage, kTemperature}) {
        AddAgentsProbe(type, 0x62).String(4, "elsewhere").Word(6, 1).Word(8, 1).Word(20, 1);
        AddAgentsProbe(type, 0x63).String(4, "here").Word(6, 12600).Word(8, 11400).Word(20, 12000);
    }
    EXPECT_EQ(Ask(&SmBios::GetVoltageDescription, 3, 32), Copied("here"));
    EXPECT_EQ(Ask(&SmBios::GetVoltageStatus, 3), Terminated("error"));
    EXPECT_EQ(Ask(&SmBios::GetVoltageCurrent, 3), Terminated("12000 mv"));
    EXPECT_EQ(Ask(&SmBios::GetVoltageMax, 3), Terminated("12600 mv"));
    EXPECT_EQ(Ask(&SmBios::GetVoltageMin, 3), Terminated("11400 mv"));
    EXPECT_EQ(Ask(&SmBios::GetTemperatureDescription, 3, 32), Copied("here"));
    EXPECT_EQ(Ask(&SmBios::GetTemperatureStatus, 3), Terminated("error"));
    EXPECT_EQ(Ask(&SmBios::GetTemperatureCurrent, 3), Terminated("12000 C"));
}

class ProbeRecordsTest : public InterfaceTest {
protected:
    ~ProbeRecordsTest() override { agentsProbes.clear(); }

    // Two probes of a kind, of which the second is at the location that the records tell.
    void AddProbes(int type) {
        for (int i = 0; i < 2; ++i) table.Add(static_cast<std::uint8_t>(type), 1, 22);
        AddAgentsProbe(type, 2).Word(6, 1).Word(8, 2).Word(20, 3);
        AddAgentsProbe(type, 3).Word(6, 12600).Word(8, 11400).Word(20, 12000);
    }

    static constexpr std::size_t kSize = 6916;
};

TEST_F(ProbeRecordsTest, VoltageOfLocation3FillsTheFirstElement) {
    AddProbes(kVoltage);
    Place();
    ExpectRecord(0x4000000, RecordImage(kSize),
                 RecordImage(kSize)
                     .Number(0, 2)
                     .Text(4 + 76, "12000 mv")     // CurrentVoltage
                     .Text(4 + 92, "11400 mv")     // min
                     .Text(4 + 108, "12600 mv"));  // max
}

TEST_F(ProbeRecordsTest, TemperatureOfLocation3FillsTheFirstElement) {
    AddProbes(kTemperature);
    Place();
    ExpectRecord(0x8000000, RecordImage(kSize),
                 RecordImage(kSize).Number(0, 2).Text(4 + 76, "12000 C"));
}

}  // namespace
