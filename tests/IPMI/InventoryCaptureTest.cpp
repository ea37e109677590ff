// SPDX-License-Identifier: MIT
//
// Inventories of real machines, compared with what ipmi-fru says of them. Compared is what both
// mean to tell: English 8-bit texts, in areas that the library reads whole.

#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "support/IpmiTest.h"
#include "support/SharedData.h"

namespace {

// A field where the image has it: of the area at the header's slot, that many fields from its
// start.
struct FieldPlace {
    const char* label;  // in the account
    std::size_t slot;
    std::size_t firstField;  // from the area's start
    bool hasLanguage;
    int index;
    int (IPMIsupport::*getter)(char*);
};

constexpr std::size_t kChassisSlot = 2;
constexpr std::size_t kBoardSlot = 3;
constexpr std::size_t kProductSlot = 4;

constexpr FieldPlace kComparedFields[] = {
    {"Board Manufacturer", kBoardSlot, 6, true, 0, &IPMIsupport::GetBoardManufacturer},
    {"Board Product Name", kBoardSlot, 6, true, 1, &IPMIsupport::GetBoardProductName},
    {"Board Serial Number", kBoardSlot, 6, false, 2, &IPMIsupport::GetBoardSerialNumber},
    {"Board Part Number", kBoardSlot, 6, true, 3, &IPMIsupport::GetBoardPartNumber},
    {"Chassis Part Number", kChassisSlot, 3, false, 0, &IPMIsupport::GetChassisPartNumber},
    {"Chassis Serial Number", kChassisSlot, 3, false, 1, &IPMIsupport::GetChassisSerialNumber},
    {"Product Manufacturer Name", kProductSlot, 3, true, 0,
     &IPMIsupport::GetProductManufacturerName},
    {"Product Name", kProductSlot, 3, true, 1, &IPMIsupport::GetProductName},
    {"Product Part/Model Number", kProductSlot, 3, true, 2, &IPMIsupport::GetProductPartName},
    // The version stands for the serial number.
    {"Product Version", kProductSlot, 3, false, 3, &IPMIsupport::GetProductSerialNumber},
};

// The serial number stands for the asset tag, from its type/length byte on.
constexpr FieldPlace kSerialNumber = {"Product Serial Number",         kProductSlot, 3, true, 4,
                                      &IPMIsupport::GetProductAssetTag};

// An image and what ipmi-fru says of it.
class Capture {
public:
    explicit Capture(const std::string& name)
        : image(ContentOf(SharedData("ipmi") / (name + ".bin"))),
          account_(ContentOf(SharedData("ipmi") / (name + ".ipmi-fru.txt"))) {}

    // The account's text of a field that is stored as English 8-bit characters.
    std::optional<std::string> ComparableText(const FieldPlace& field) const {
        constexpr std::size_t kLongestArea = 31;
        constexpr std::size_t kLatin = 3;
        constexpr std::size_t kEnglish = 25;
        const std::size_t area = ByteAt(field.slot) * 8;
        const std::size_t language = ByteAt(area + 2);
        if (area == 0 || ByteAt(area) != 1 || ByteAt(area + 1) > kLongestArea) return std::nullopt;
        if (field.hasLanguage && language != 0 && language != kEnglish) return std::nullopt;
        return HeadOf(field) >> 6 == kLatin ? Told(field.label) : std::nullopt;
    }

    // The field's type/length byte.
    std::size_t HeadOf(const FieldPlace& field) const {
        std::size_t at = ByteAt(field.slot) * 8 + field.firstField;
        for (int i = 0; i < field.index; ++i) at += 1 + (ByteAt(at) & kLength);
        return ByteAt(at);
    }
    static constexpr std::size_t kLength = 0x3F;

    const std::string image;

private:
    // The text after a label; nothing where there is no such label.
    std::optional<std::string> Told(const std::string& label) const {
        std::istringstream stream(account_);
        const std::string wanted = "  FRU " + label + ": ";
        for (std::string line; std::getline(stream, line);)
            if (line.starts_with(wanted)) return line.substr(wanted.size());
        return std::nullopt;
    }

    std::size_t ByteAt(std::size_t at) const {
        return at < image.size() ? static_cast<unsigned char>(image[at]) : 0;
    }

    std::string account_;
};

class InventoryCaptureTest : public IpmiTest, public ::testing::WithParamInterface<std::string> {
protected:
    void SetUp() override {
        if (GetParam().empty()) GTEST_SKIP() << kNoCaptures;
        capture.emplace(GetParam());
        bmc.SetInventory(sim::Bytes(capture->image.begin(), capture->image.end()));
        ASSERT_EQ(Support().GetFRUInfo(), 0);
    }

    std::string Text(const FieldPlace& field) {
        char text[64] = {};
        EXPECT_EQ((Support().*field.getter)(text), 0);
        return text;
    }

    std::optional<Capture> capture;
};

TEST_P(InventoryCaptureTest, TheSizeIsThatOfTheImage) {
    EXPECT_EQ(Support().fru.FRUInfo.FRUInfoSize, capture->image.size());
}

TEST_P(InventoryCaptureTest, TextsAreThoseOfIpmiFru) {
    for (const FieldPlace& field : kComparedFields) {
        const auto told = capture->ComparableText(field);
        if (!told) continue;
        EXPECT_EQ(Text(field), *told) << field.label;
    }
    if (const auto told = capture->ComparableText(kSerialNumber); told && !told->empty()) {
        const std::size_t head = capture->HeadOf(kSerialNumber);
        EXPECT_EQ(Text(kSerialNumber),
                  static_cast<char>(head) + told->substr(0, (head & Capture::kLength) - 1));
    }
}

// Else the test above would compare nothing.
TEST(InventoryCapturesTest, HoldTextsToCompare) {
    const std::vector<std::string> names = CapturesEndingIn("ipmi", ".ipmi-fru.txt");
    if (names.empty()) GTEST_SKIP() << kNoCaptures;
    std::map<std::string, int> found;
    for (const std::string& name : names) {
        const Capture capture(name);
        for (const FieldPlace& field : kComparedFields)
            found[field.label] += capture.ComparableText(field) ? 1 : 0;
        found[kSerialNumber.label] += capture.ComparableText(kSerialNumber) ? 1 : 0;
    }
    for (const auto& [label, count] : found) EXPECT_GT(count, 2) << label;
}

INSTANTIATE_TEST_SUITE_P(Ipmi, InventoryCaptureTest,
                         ::testing::ValuesIn(CapturesOrNone("ipmi", ".ipmi-fru.txt")));

}  // namespace
