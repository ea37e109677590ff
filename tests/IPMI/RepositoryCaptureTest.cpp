// SPDX-License-Identifier: MIT
//
// Repositories of real machines, compared sensor by sensor with what ipmitool says of them. Values
// are compared where both mean to tell the same: of unsigned readings with positive factors; for
// signed readings and negative factors the library has rules of its own.

#include <cstring>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "IPMI/SensorNames.h"
#include "support/IpmiTest.h"
#include "support/SharedData.h"

namespace {

std::vector<std::string> LinesOf(const std::string& name) {
    std::istringstream stream(ContentOf(SharedData("ipmi") / name));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

// What ipmitool says about a sensor.
struct Account {
    std::string name;
    int number = 0;
    std::map<std::string, std::string> facts;  // by label

    bool Has(const std::string& label) const { return facts.contains(label); }
    // The number at the front of a fact; nothing when it is not told, or told in words.
    std::optional<double> Value(const std::string& label) const {
        const auto fact = facts.find(label);
        if (fact == facts.end() || fact->second.find_first_of("0123456789") > 1)
            return std::nullopt;
        return std::stod(fact->second);
    }
    // "7.1 (System Board)": the entity and its instance.
    int Entity() const { return std::stoi(facts.at("Entity ID")); }
    int Instance() const {
        const std::string& text = facts.at("Entity ID");
        return std::stoi(text.substr(text.find('.') + 1));
    }
    // "Temperature (0x01)": the code.
    int Type() const {
        const std::string& text = facts.at("Sensor Type (Threshold)");
        return std::stoi(text.substr(text.rfind('(') + 1), nullptr, 0);
    }
    // "38 (+/- 0) degrees C": the unit.
    std::string Unit() const {
        const auto fact = facts.find("Sensor Reading");
        if (fact == facts.end() || fact->second.find(") ") == std::string::npos) return "";
        return fact->second.substr(fact->second.rfind(") ") + 2);
    }
};

// From lines such as "Sensor ID              : BB Inlet Temp (0x20)" and
// " Nominal Reading       : 45.000", a sensor's one after another.
std::vector<Account> AccountsOf(const std::string& capture) {
    std::vector<Account> accounts;
    for (const std::string& line : LinesOf(capture + ".sdr-v.txt")) {
        const std::size_t colon = line.find(" : ");
        if (colon == std::string::npos) continue;
        const std::string value = line.substr(colon + 3);
        if (line.starts_with("Sensor ID")) {
            const std::size_t number = value.rfind(" (0x");
            accounts.push_back(
                {value.substr(0, number), std::stoi(value.substr(number + 2), nullptr, 0), {}});
        } else if (!accounts.empty() && line.starts_with(' ')) {
            const std::string label = line.substr(1, line.find_last_not_of(' ', colon));
            accounts.back().facts.emplace(label, value);
        }
    }
    return accounts;
}

// ipmitool's name of a unit and the library's.
std::string LibrarysUnit(const std::string& unit) {
    const std::map<std::string, std::string> kOwn = {
        {"degrees C", "degree C"}, {"Volts", "V"}, {"percent", "%"}};
    const auto own = kOwn.find(unit);
    return own == kOwn.end() ? unit : own->second;
}

class RepositoryCaptureTest : public IpmiTest, public ::testing::WithParamInterface<std::string> {
protected:
    void SetUp() override {
        if (GetParam().empty()) GTEST_SKIP() << kNoCaptures;
        const std::string text = ContentOf(SharedData("ipmi") / (GetParam() + ".sdr.bin"));
        dump.assign(text.begin(), text.end());
        bmc.LoadRepository(dump);
        TakeApart();
        accounts = AccountsOf(GetParam());
    }

    // The records, by hand.
    void TakeApart() {
        constexpr std::size_t kHeader = 5;
        constexpr std::size_t kType = 3;
        for (std::size_t at = 0; at + kHeader <= dump.size(); at += kHeader + dump[at + 4]) {
            ++records;
            const auto begin = dump.begin() + static_cast<std::ptrdiff_t>(at);
            if (dump[at + kType] == 1 && dump[at + 7] != 0xFF)
                full.emplace_back(begin, begin + static_cast<std::ptrdiff_t>(kHeader) + begin[4]);
        }
    }

    void Walk() {
        int count = 0;
        int version = 0;
        ASSERT_EQ(Sensors().GetSDRRepositoryInfo(count, version), 0);
        ASSERT_EQ(count, records);
        ASSERT_EQ(Sensors().GetSensorNumbers(count), 0);
    }
    const SensorDescription& Entry(std::size_t k) { return Sensors().SensorsInformation[k]; }

    static bool HasComparableValues(const SensorDescription& entry) {
        return entry.sfp.Unit1 >> 6 == 0 && entry.sfp.M > 0 && entry.sfp.B >= 0;
    }

    // Numbers that several sensors have, of other controllers or units, tell nothing.
    bool IsUnique(int number) const {
        int found = 0;
        for (const sim::Bytes& record : full) found += record[7] == number ? 1 : 0;
        return found == 1;
    }

    // The words of the simulator's configuration that concern the controller's own sensors, from
    // lines such as "sensor_set_value 0x20 0x0 0x0e 0xa8 0x1", by sensor number.
    std::map<int, std::vector<std::string>> Configured(const std::string& statement) {
        constexpr int kOwn = 0x20;
        std::map<int, std::vector<std::string>> found;
        for (const std::string& line : LinesOf(GetParam() + ".emu")) {
            std::istringstream stream(line);
            const std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
            if (words.size() < 5 || words[0] != statement) continue;
            if (std::stoi(words[1], nullptr, 0) == kOwn)
                found[std::stoi(words[3], nullptr, 0)] = {words.begin() + 4, words.end()};
        }
        return found;
    }

    sim::Bytes dump;
    int records = 0;
    std::vector<sim::Bytes> full;  // full sensor records
    std::vector<Account> accounts;
};

TEST_P(RepositoryCaptureTest, TheWalkKeepsEveryFullSensorRecordAndZerosAfterThem) {
    if (full.empty()) GTEST_SKIP() << "no full sensor records";
    Walk();
    for (std::size_t k = 0; k < full.size(); ++k) EXPECT_EQ(Entry(k).SensorNumbers, full[k][7]);
    const SensorDescription none{};
    for (std::size_t k = full.size(); k < static_cast<std::size_t>(records); ++k)
        EXPECT_EQ(std::memcmp(&Entry(k), &none, sizeof none), 0) << k;
}

TEST_P(RepositoryCaptureTest, NamesNumbersEntitiesAndTypesAreThoseOfIpmitool) {
    if (accounts.empty()) GTEST_SKIP() << "no account of this repository";
    Walk();
    ASSERT_EQ(full.size(), accounts.size());
    constexpr std::size_t kLongestName = 15;
    constexpr int kRelative = 0x60;
    for (std::size_t k = 0; k < accounts.size(); ++k) {
        const Account& account = accounts[k];
        SCOPED_TRACE(account.name);
        EXPECT_EQ(Entry(k).IDString, account.name.substr(0, kLongestName));
        EXPECT_EQ(Entry(k).SensorNumbers, account.number);
        EXPECT_EQ(Entry(k).SensorEntityID, account.Entity());
        const int instance = account.Instance();
        EXPECT_EQ(Entry(k).SensorEntityInstance,
                  instance >= kRelative && instance < 0x80 ? instance - kRelative : instance);
        EXPECT_EQ(Entry(k).SensorType, account.Type());
    }
}

// The names of the two differ where ipmitool shortens or rewords.
TEST_P(RepositoryCaptureTest, TheNamesOfTypesAreThoseOfIpmitool) {
    if (accounts.empty()) GTEST_SKIP() << "no account of this repository";
    const std::map<std::string, std::string> kReworded = {{"Other", "other Units-based Sensor"},
                                                          {"Module / Board", "Module/Board"}};
    for (const Account& account : accounts) {
        const std::string& text = account.facts.at("Sensor Type (Threshold)");
        const std::string told = text.substr(0, text.rfind(" ("));
        const auto reworded = kReworded.find(told);
        EXPECT_EQ(SensorsType[account.Type()],
                  reworded == kReworded.end() ? told : reworded->second);
    }
}

TEST_P(RepositoryCaptureTest, UnitsAreThoseOfIpmitool) {
    Walk();
    int compared = 0;
    int told = 0;
    for (std::size_t k = 0; k < accounts.size(); ++k) {
        const std::string unit = accounts[k].Unit();
        if (unit.empty()) continue;
        ++told;
        EXPECT_EQ(Entry(k).SensorUnit, LibrarysUnit(unit)) << accounts[k].name;
        ++compared;
    }
    if (told == 0) GTEST_SKIP() << "no units are told";
    EXPECT_EQ(compared, told);
}

struct RecordValue {
    const char* label;
    std::size_t offset;
};

// Readings and thresholds that the records themselves hold.
TEST_P(RepositoryCaptureTest, FactorsGiveTheValuesOfTheRecords) {
    constexpr RecordValue kValues[] = {
        {"Nominal Reading", 31},       {"Normal Maximum", 32}, {"Normal Minimum", 33},
        {"Upper non-recoverable", 36}, {"Upper critical", 37}, {"Upper non-critical", 38},
        {"Lower non-recoverable", 39}, {"Lower critical", 40}, {"Lower non-critical", 41}};
    Walk();
    int compared = 0;
    for (std::size_t k = 0; k < accounts.size(); ++k) {
        if (!HasComparableValues(Entry(k))) continue;
        for (const RecordValue& value : kValues) {
            const auto told = accounts[k].Value(value.label);
            if (!told) continue;
            double converted = 0.0;
            ASSERT_EQ(
                Sensors().GetReadingConversion(Entry(k).sfp, full[k][value.offset], converted), 0);
            EXPECT_NEAR(converted, *told, 0.0006) << accounts[k].name << " " << value.label;
            ++compared;
        }
    }
    const std::set<std::string> kTellNone = {"openipmi-ipmisim1", "qemu-ipmi-bmc-sim"};
    if (kTellNone.contains(GetParam())) GTEST_SKIP() << "no values in the records";
    EXPECT_GT(compared, 20);
}

TEST_P(RepositoryCaptureTest, UnsignedReadingsAreThoseOfIpmitool) {
    const auto configured = Configured("sensor_set_value");
    if (configured.empty()) GTEST_SKIP() << "no readings with this repository";
    for (const auto& [number, words] : configured)
        bmc.SetReading(static_cast<std::uint8_t>(number),
                       static_cast<std::uint8_t>(std::stoi(words[0], nullptr, 0)));
    Walk();
    int compared = 0;
    for (std::size_t k = 0; k < accounts.size(); ++k) {
        const int number = Entry(k).SensorNumbers;
        const auto told = accounts[k].Value("Sensor Reading");
        if (!HasComparableValues(Entry(k)) || !told) continue;
        if (!configured.contains(number) || !IsUnique(number)) continue;
        unsigned char raw = 0;
        double value = 0.0;
        ASSERT_EQ(Sensors().ReadSensor(Entry(k).SensorNumbers, raw), 0);
        ASSERT_EQ(Sensors().GetReadingConversion(Entry(k).sfp, raw, value), 0);
        EXPECT_NEAR(value, *told, 0.0006) << accounts[k].name << " " << int{raw};
        ++compared;
    }
    EXPECT_GT(compared, 5);
}

// The thresholds that ipmitool lists for a sensor, the lowest first; nothing for "na".
using Listed = std::vector<std::optional<double>>;

// From lines such as "FAN_1 | 9590.000 | RPM | ok | na | 1050.000 | na | na | 17850.000 | na", by
// name; names that several sensors have are left out.
std::map<std::string, Listed> ListedThresholds(const std::string& capture) {
    std::map<std::string, Listed> listed;
    std::set<std::string> twice;
    for (const std::string& line : LinesOf(capture + ".sensor.txt")) {
        std::istringstream cells(line);
        std::vector<std::string> row;
        for (std::string cell; std::getline(cells, cell, '|');) {
            cell.erase(0, cell.find_first_not_of(' '));
            row.push_back(cell.substr(0, cell.find_last_not_of(' ') + 1));
        }
        if (row.size() != 10) continue;
        Listed thresholds;
        for (std::size_t i = 4; i < row.size(); ++i)
            thresholds.push_back(row[i] == "na" ? std::nullopt : std::optional(std::stod(row[i])));
        if (!listed.emplace(row[0], thresholds).second) twice.insert(row[0]);
    }
    for (const std::string& name : twice) listed.erase(name);
    return listed;
}

// In the configuration the highest threshold comes first, in the mask as in the values.
TEST_P(RepositoryCaptureTest, ThresholdsAreThoseThatIpmitoolLists) {
    const auto configured = Configured("sensor_set_threshold");
    if (configured.empty()) GTEST_SKIP() << "no thresholds with this repository";
    for (const auto& [number, words] : configured) {
        if (words[0] == "none") continue;
        ASSERT_EQ(words.size(), 8U);
        sim::BmcThresholds thresholds;
        thresholds.readable = static_cast<std::uint8_t>(std::stoi(words[1], nullptr, 2));
        for (std::size_t i = 0; i < 6; ++i)
            thresholds.values[5 - i] =
                static_cast<std::uint8_t>(std::stoi(words[2 + i], nullptr, 0));
        bmc.SetThresholds(static_cast<std::uint8_t>(number), thresholds);
    }
    Walk();
    const auto listed = ListedThresholds(GetParam());
    int compared = 0;
    for (std::size_t k = 0; k < accounts.size(); ++k) {
        const SensorDescription& entry = Entry(k);
        const auto told = listed.find(accounts[k].name);
        if (told == listed.end() || !configured.contains(entry.SensorNumbers)) continue;
        if (!HasComparableValues(entry) || !IsUnique(entry.SensorNumbers)) continue;
        SensorThresholdInfoRaw raw;
        SensorThresholdInfoConverted converted;
        ASSERT_EQ(Sensors().GetSensorThreshold(entry.SensorNumbers, entry.sfp, raw, converted), 0);
        const double values[] = {
            converted.LowerNonRecoverThreshold,    converted.LowerCriticalThreshold,
            converted.LowerNonCriticalThreshold,   converted.UpperNonCriticalThresholdValue,
            converted.UpperCriticalThresholdValue, converted.UpperNonRecoverThresholdValue};
        for (std::size_t i = 0; i < std::size(values); ++i) {
            if (!told->second[i]) continue;
            EXPECT_NEAR(values[i], *told->second[i], 0.0006) << accounts[k].name << " " << i;
            ++compared;
        }
    }
    EXPECT_GT(compared, 5);
}

INSTANTIATE_TEST_SUITE_P(Ipmi, RepositoryCaptureTest,
                         ::testing::ValuesIn(CapturesOrNone("ipmi", ".sdr.bin")));

}  // namespace
