// SPDX-License-Identifier: MIT
//
// Repositories and inventories of real machines, compared with what ipmitool and ipmi-fru say of
// them. Compared is what both mean to tell: unsigned readings with positive factors, and English
// 8-bit texts; for signed readings and negative factors the library has rules of its own.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/IpmiTest.h"

namespace {

namespace fs = std::filesystem;

fs::path Folder() {
    const char* const given = std::getenv("TALVANE_SHARED_DATA");
    return fs::path(given != nullptr ? given : TALVANE_SHARED_DATA) / "ipmi";
}

// The captures with this ending, by name; empty where the folder is absent.
std::vector<std::string> Captures(const std::string& ending) {
    std::vector<std::string> names;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(Folder(), error)) {
        const std::string name = entry.path().filename();
        if (name.ends_with(ending)) names.push_back(name.substr(0, name.size() - ending.size()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string Contents(const std::string& name) {
    std::ifstream stream(Folder() / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

sim::Bytes BytesOf(const std::string& name) {
    const std::string text = Contents(name);
    return {text.begin(), text.end()};
}

std::vector<std::string> LinesOf(const std::string& name) {
    std::istringstream stream(Contents(name));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

// What stands behind the first colon and a blank.
std::string Behind(const std::string& line) {
    const std::size_t colon = line.find(": ");
    return colon == std::string::npos ? "" : line.substr(colon + 2);
}

// One name that stands for none, so that the test can say what it misses.
std::vector<std::string> OrNone(std::vector<std::string> names) {
    if (names.empty()) names.emplace_back();
    return names;
}

class Capture : public IpmiTest, public ::testing::WithParamInterface<std::string> {
protected:
    void SetUp() override {
        if (GetParam().empty()) GTEST_SKIP() << "no captures in " << Folder();
    }
};

class RepositoryCapture : public Capture {
protected:
    // Numbers that several sensors have, of other controllers or units, tell nothing.
    template <class Value>
    void AddOnce(std::map<int, Value>& values, int number, Value value) {
        if (!values.emplace(number, value).second) shared.insert(number);
    }

    // Raw readings, from lines such as "sensor_set_value 0x20 0x0 0x0e 0xa8 0x1".
    std::map<int, int> SetReadings() {
        std::map<int, int> given;
        for (const std::string& line : LinesOf(GetParam() + ".emu")) {
            std::istringstream words(line);
            std::string word, owner, lun, number, raw;
            words >> word >> owner >> lun >> number >> raw;
            if (word == "sensor_set_value")
                AddOnce(given, std::stoi(number, nullptr, 0), std::stoi(raw, nullptr, 0));
        }
        for (const auto& [sensor, raw] : given)
            bmc.setReading(static_cast<std::uint8_t>(sensor), static_cast<std::uint8_t>(raw));
        return given;
    }

    // What ipmitool prints for a sensor, by number, from pairs of lines such as
    // "Sensor ID : Temp (0xe)" and "Sensor Reading : 40 (+/- 1) degrees C".
    std::map<int, double> Readings() {
        std::map<int, double> readings;
        int number = -1;
        for (const std::string& line : LinesOf(GetParam() + ".sdr-v.txt")) {
            if (line.starts_with("Sensor ID"))
                number = std::stoi(line.substr(line.rfind('(') + 1), nullptr, 0);
            if (line.starts_with(" Sensor Reading") && line.find("(+/-") != std::string::npos)
                AddOnce(readings, number, std::stod(Behind(line)));
        }
        return readings;
    }

    std::set<int> shared;
};

TEST_P(RepositoryCapture, UnsignedReadingsAreThoseOfIpmitool) {
    const std::map<int, double> readings = Readings();
    if (readings.empty() || !fs::exists(Folder() / (GetParam() + ".emu")))
        GTEST_SKIP() << "no readings with this repository";
    bmc.loadRepository(BytesOf(GetParam() + ".sdr.bin"));
    const std::map<int, int> given = SetReadings();
    int count = 0;
    int version = 0;
    ASSERT_EQ(Sensors().GetSDRRepositoryInfo(count, version), 0);
    ASSERT_EQ(Sensors().GetSensorNumbers(count), 0);

    int compared = 0;
    for (int k = 0; k < count; ++k) {
        const SensorDescription& entry = Sensors().SensorsInformation[k];
        const auto reading = readings.find(entry.SensorNumbers);
        const bool isUnsigned = entry.sfp.Unit1 >> 6 == 0;
        const bool isPositive = entry.sfp.M > 0 && entry.sfp.B >= 0;
        if (!isUnsigned || !isPositive || reading == readings.end()) continue;
        if (!given.contains(entry.SensorNumbers) || shared.contains(entry.SensorNumbers)) continue;
        unsigned char raw = 0;
        double value = 0.0;
        ASSERT_EQ(Sensors().ReadSensor(entry.SensorNumbers, raw), 0);
        ASSERT_EQ(Sensors().GetReadingConversion(entry.sfp, raw, value), 0);
        EXPECT_NEAR(value, reading->second, 0.0006) << entry.IDString << " " << int{raw};
        ++compared;
    }
    RecordProperty("compared", compared);
}

// Every full sensor record is kept: walked record by record, here by hand.
TEST_P(RepositoryCapture, TheWalkKeepsEveryFullSensorRecord) {
    const sim::Bytes dump = BytesOf(GetParam() + ".sdr.bin");
    bmc.loadRepository(dump);
    std::vector<int> numbers;
    int records = 0;
    for (std::size_t at = 0; at + 5 <= dump.size(); at += 5u + dump[at + 4], ++records)
        if (dump[at + 3] == 1 && dump[at + 7] != 0xFF) numbers.push_back(dump[at + 7]);

    int count = 0;
    int version = 0;
    ASSERT_EQ(Sensors().GetSDRRepositoryInfo(count, version), 0);
    ASSERT_EQ(count, records);
    ASSERT_EQ(Sensors().GetSensorNumbers(count), 0);
    std::vector<int> kept;
    for (std::size_t k = 0; k < numbers.size(); ++k)
        kept.push_back(Sensors().SensorsInformation[k].SensorNumbers);
    EXPECT_EQ(kept, numbers);
}

INSTANTIATE_TEST_SUITE_P(Ipmi, RepositoryCapture,
                         ::testing::ValuesIn(OrNone(Captures(".sdr.bin"))));

class InventoryCapture : public Capture {
protected:
    // What stands behind a label of ipmi-fru's text; nothing when the label does not.
    std::optional<std::string> Told(const std::string& label) const {
        for (const std::string& line : LinesOf(GetParam() + ".ipmi-fru.txt"))
            if (line.starts_with("  FRU " + label + ":")) return Behind(line);
        return std::nullopt;
    }

    // Compares a text that is stored as 8-bit characters.
    void Compare(const char* label, int typeCode, int (FRU::*getter)(char*)) {
        constexpr int kLatin = 3;
        const std::optional<std::string> told = Told(label);
        if (!told || typeCode != kLatin) return;
        char text[64] = {};
        EXPECT_EQ((Support().fru.*getter)(text), 0);
        EXPECT_EQ(text, *told) << label;
    }

    static bool IsEnglish(int language) { return language == 0 || language == 25; }
    static constexpr int kLongestArea = 255;
};

TEST_P(InventoryCapture, TextsAreThoseOfIpmiFru) {
    bmc.setInventory(BytesOf(GetParam() + ".bin"));
    FRU& fru = Support().fru;
    if (fru.GetFRUInfo() != 0) GTEST_SKIP() << "no inventory";
    const auto& board = fru.BoardInfo;
    if (board.version == 1 && IsEnglish(board.languageCode) &&
        board.boardInfoAreaLength <= kLongestArea) {
        Compare("Board Manufacturer", board.ManufacturerInfo.typeCode, &FRU::GetBoardManufacturer);
        Compare("Board Product Name", board.ProductNameInfo.typeCode, &FRU::GetBoardProductName);
        Compare("Board Serial Number", board.SerialNumberInfo.typeCode, &FRU::GetBoardSerialNumber);
        Compare("Board Part Number", board.PartNumberInfo.typeCode, &FRU::GetBoardPartNumber);
    }
    const auto& chassis = fru.ChassisInfo;
    if (chassis.version == 1 && chassis.chassisInfoAreaLength <= kLongestArea) {
        Compare("Chassis Part Number", chassis.PartNumberInfo.typeCode, &FRU::GetChassisPartNumber);
        Compare("Chassis Serial Number", chassis.SerialNumberInfo.typeCode,
                &FRU::GetChassisSerialNumber);
    }
    const auto& product = fru.ProductInfo;
    if (product.version == 1 && IsEnglish(product.languageCode) &&
        product.productInfoAreaLength <= kLongestArea) {
        Compare("Product Manufacturer Name", product.ManufacturerNameInfo.typeCode,
                &FRU::GetProductManufacturerName);
        Compare("Product Name", product.ProductNameInfo.typeCode, &FRU::GetProductName);
        Compare("Product Part/Model Number", product.PartModuleInfo.typeCode,
                &FRU::GetProductPartName);
        // The version stands for the serial number.
        Compare("Product Version", product.SerialNumberInfo.typeCode, &FRU::GetProductSerialNumber);
    }
}

INSTANTIATE_TEST_SUITE_P(Ipmi, InventoryCapture,
                         ::testing::ValuesIn(OrNone(Captures(".ipmi-fru.txt"))));

}  // namespace
