// SPDX-License-Identifier: MIT
//
// A controller whose responses are damaged, one byte or one length at a time. Whatever it says, no
// text leaves its 64 bytes and no record is written past its end.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <numeric>

#include "Talvane.h"
#include "support/IpmiTest.h"

namespace {

// The values that each byte gets in turn: some, or with TALVANE_EXHAUSTIVE all.
std::vector<std::uint8_t> HostileValues() {
    if (std::getenv("TALVANE_EXHAUSTIVE") == nullptr)
        return {0x00, 0x01, 0x3F, 0x7F, 0x80, 0xC0, 0xFE, 0xFF};
    std::vector<std::uint8_t> all(256);
    std::iota(all.begin(), all.end(), std::uint8_t{0});
    return all;
}

// Something to write to, and bytes after it that no call may touch.
template <class Record>
struct Guarded {
    Record record;
    unsigned char after[32];

    Guarded() { std::memset(this, 0xA5, sizeof *this); }
    bool IsIntact() const {
        return std::all_of(std::begin(after), std::end(after),
                           [](unsigned char byte) { return byte == 0xA5; });
    }
};

struct Text {
    char bytes[64];
};

class HostileResponseTest : public IpmiTest {
protected:
    HostileResponseTest() {
        Add(Fan("FAN 1", 0x30).Entity(29, 1).Event(10).Limits(100, 0), 70);
        Add(Voltage("3.3V", 0x20).Entity(3, 1).Limits(250, 10), 165);
        // Powers of ten: with a higher reading the text is longer than its field.
        Add(Temperature("CPU", 0x10)
                .Entity(3, 1)
                .Event(7)
                .Linearization(5)
                .ThresholdMasks(0x3F, 0x3F),
            42);
        bmc.SetInventory({1, 0,    1,   2,    3,   0,    0,    0,     // header
                          1, 1,    23,  0xC1, 'C', 0xC1, 'D',  0,     // chassis
                          1, 1,    0,   0,    0,   0,    0xC1, 'M',   // board
                          1, 2,    0,   0xC3, 'A', 'B',  'C',  0x41,  // product
                          5, 0x81, 'x', 0xC2, 'V', '1',  0xC1, 0});
    }

    // What a run asks for, and the responses to it.
    template <class Run>
    void Learn(Run run) {
        bmc.ForgetRequests();
        run();
        genuine.clear();
        for (const sim::BmcRequest& request : bmc.Requests())
            genuine[request.Text()] = request.response;
    }

    // Runs once for every length and every hostile value of every byte of the learnt responses.
    template <class Run>
    void DamageEach(Run run) {
        for (const auto& [text, response] : std::map(genuine)) {
            for (std::size_t at = 0; at < response.size(); ++at) {
                sim::Bytes damaged(response.begin(),
                                   response.begin() + static_cast<std::ptrdiff_t>(at));
                RunWith(text, damaged, run);
                damaged = response;
                for (const std::uint8_t value : HostileValues()) {
                    damaged[at] = value;
                    RunWith(text, damaged, run);
                }
                ASSERT_FALSE(HasFailure()) << text << ", byte " << at;
            }
        }
    }

    template <class Run>
    void RunWith(const std::string& text, const sim::Bytes& response, Run run) {
        ++runs;
        bmc.ForgetRequests();
        bmc.Intercept([&](const sim::BmcRequest& request) -> std::optional<sim::Bytes> {
            if (request.Text() != text) return std::nullopt;
            return response;
        });
        run();
        bmc.Intercept(nullptr);
    }

    std::map<std::string, sim::Bytes> genuine;
    int runs = 0;
};

template <class Getter>
void ExpectText(Getter get) {
    Guarded<Text> text;
    text.record.bytes[0] = '\0';
    (void)get(text.record.bytes);
    EXPECT_NE(std::memchr(text.record.bytes, '\0', sizeof text.record.bytes), nullptr);
    EXPECT_TRUE(text.IsIntact());
}

// Loads everything into a new object and asks for all of it.
void LoadAndAsk() {
    InitOK = 0;
    IPMIsupport ipmi;
    (void)ipmi.GetSensorInfo();
    using SensorText = int (IPMIsupport::*)(int, char*);
    for (const SensorText getter :
         {&IPMIsupport::GetFanSpeed, &IPMIsupport::GetVoltageCurrent,
          &IPMIsupport::GetTemperatureCurrent, &IPMIsupport::GetVoltageMax,
          &IPMIsupport::GetVoltageMin, &IPMIsupport::GetFanStatusDescription,
          &IPMIsupport::GetVoltageStatusDescription, &IPMIsupport::GetTemperatureStatusDescription,
          &IPMIsupport::GetFanIDString, &IPMIsupport::GetVoltageIDString,
          &IPMIsupport::GetTemperatureIDString})
        for (const int i : {0, 1, 63, 64})
            ExpectText([&](char* out) { return (ipmi.*getter)(i, out); });

    for (int i = -1; i < 5; ++i) {
        SensorThresholdInfoRaw raw{};
        SensorThresholdInfoConverted converted{};
        if (ipmi.GetThreshold(i, raw, converted) != 0) continue;
        EXPECT_EQ(raw.settableFlag & 0xC0, 0);
        (void)ipmi.SetThresholdOrder(raw, i, 100);
    }

    (void)ipmi.GetFRUInfo();
    using InventoryText = int (IPMIsupport::*)(char*);
    for (const InventoryText getter :
         {&IPMIsupport::GetBoardManufacturer, &IPMIsupport::GetBoardProductName,
          &IPMIsupport::GetBoardSerialNumber, &IPMIsupport::GetBoardPartNumber,
          &IPMIsupport::GetChassisPartNumber, &IPMIsupport::GetChassisSerialNumber,
          &IPMIsupport::GetProductManufacturerName, &IPMIsupport::GetProductName,
          &IPMIsupport::GetProductPartName, &IPMIsupport::GetProductSerialNumber,
          &IPMIsupport::GetProductVersion, &IPMIsupport::GetProductAssetTag}) {
        Guarded<Text[2]> text;  // 64 characters and a terminator
        (void)(ipmi.*getter)(text.record[0].bytes);
        EXPECT_NE(std::memchr(text.record[0].bytes, '\0', 65), nullptr);
        EXPECT_TRUE(text.IsIntact());
    }
}

TEST_F(HostileResponseTest, ResponsesOfTheWalkAndTheInventoryStayInTheirTexts) {
    Learn(LoadAndAsk);
    ASSERT_GE(genuine.size(), 15u);
    DamageEach(LoadAndAsk);
    EXPECT_GT(runs, 2000);
}

template <class Record, class Call>
void ExpectRecord(Call call) {
    Guarded<Record> guarded;
    (void)call(&guarded.record);
    EXPECT_TRUE(guarded.IsIntact());
}

void CallEverything() {
    ExpectRecord<FanInformation>([](void* out) { return GetIpmiInfo(TALVANE_FANS, out); });
    ExpectRecord<VoltageInformation>([](void* out) { return GetIpmiInfo(TALVANE_VOLTAGES, out); });
    ExpectRecord<TemperatureInformation>(
        [](void* out) { return GetIpmiInfo(TALVANE_TEMPERATURES, out); });
    ExpectRecord<SensorThresholdInformation>(GetAllThresholdInfo);
    ExpectRecord<SensorThresholdInformation>(
        [](SensorThresholdInformation* out) { return GetThresholdInfo(3, 1, out); });
    const int set = SetThresholdInfo(3, 1, THRESHOLD_UPPER_CRITICAL, 90.0);
    EXPECT_EQ(set, 0) << "not busy";
    EXPECT_EQ(SetWatchDogTimer(1, 20000), 0);
    unsigned char action = 0;
    int timeOut = 0;
    int present = 0;
    EXPECT_EQ(GetWatchDogTimer(&action, &timeOut, &present), 0);
    EXPECT_LE(action, 7);
    EXPECT_LE(timeOut, 0xFFFF * 100);
    EXPECT_LE(present, 0xFFFF * 100);
    EXPECT_EQ(ResetWatchDogTimer(), 0);
    EXPECT_EQ(StopWatchDogTimer(), 0);
    unsigned char minor = 0;
    EXPECT_EQ(GetBMCVersion(&action, &minor), 0);
    EXPECT_LE(action, 0x7F);
}

TEST_F(HostileResponseTest, ResponsesToTheExportedFunctionsStayInTheirRecords) {
    CallEverything();  // reads the repository
    Learn(CallEverything);
    ASSERT_GE(genuine.size(), 7u);
    DamageEach(CallEverything);
    EXPECT_GT(runs, 300);
}

// The library does not read the completion code, so a refusal is a response without data. What it
// makes of that does not depend on the code.
TEST_F(HostileResponseTest, EachCommandRefusedWithAnyCodeStaysInItsRecords) {
    CallEverything();
    bmc.ForgetRequests();
    CallEverything();
    std::map<std::pair<int, int>, sim::BmcRequest> commands;
    for (const sim::BmcRequest& request : bmc.Requests())
        commands[{request.netFn, request.command}] = request;
    ASSERT_GE(commands.size(), 7u);
    for (const auto& [numbers, request] : commands) {
        for (unsigned code = 1; code < 0x100; ++code) {
            bmc.ForgetRequests();
            bmc.Inject({request.netFn, request.command, 1, sim::BmcFault::Kind::kRefused, code});
            CallEverything();
            ASSERT_FALSE(HasFailure()) << request.Text() << ", code " << code;
        }
    }
}

}  // namespace
