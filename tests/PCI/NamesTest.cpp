// SPDX-License-Identifier: MIT
//
// The names of classes and sub-classes, for every code that has some and for all those between. The
// report takes its functions from this program.
#include <cstdlib>
#include <cstring>

#include "PCI/ExpectedNames.h"
#include "PCI/PciTest.h"
#include "PCI/ReplacedScan.h"

namespace {

struct Code {
    unsigned classCode;
    unsigned subClass;
    unsigned progIf;
};

bool Matches(const NameRow& row, const Code& code) {
    char* end = nullptr;
    if (std::strtoul(row.match, &end, 16) != code.subClass) return false;
    return *end == '\0' || std::strtoul(end + 1, nullptr, 16) == code.progIf;
}

// What the rows of one class make of a text.
void Apply(unsigned classCode, const Code& code, std::string& type) {
    for (const NameRow& row : kNameRows)
        if (row.classCode == classCode && Matches(row, code)) type = std::string(row.name, 0, 63);
}

std::string ExpectedType(const Code& code, std::string before) {
    std::string type = code.subClass == 0x80 ? "other" : std::move(before);
    Apply(code.classCode, code, type);
    if (code.classCode == 0x0D) Apply(0x0E, code, type);
    if (code.classCode == 0x0D || code.classCode == 0x0E) Apply(0x0F, code, type);
    return type;
}

class PciNamesTest : public PciTest {
protected:
    // The record after a report of functions with these codes, at most 64.
    const DeviceInformation& ReportOf(const std::vector<Code>& codes) {
        functionsFound.clear();
        for (const Code& code : codes) {
            PCIdevice function;
            function.header.ClassCode = static_cast<unsigned char>(code.classCode);
            function.header.SubClassCode = static_cast<unsigned char>(code.subClass);
            function.header.ProgIF = static_cast<unsigned char>(code.progIf);
            functionsFound.push_back(function);
        }
        for (DEV& entry : record.dev) {
            std::memset(&entry, 0, sizeof entry);
            std::strcpy(entry.model, "model before");
            std::strcpy(entry.type, "type before");
        }
        EXPECT_EQ(GetPciInfo(&record), 0);
        return record;
    }

    std::string TypeOf(const Code& code) { return ReportOf({code}).dev[0].type; }
    std::string ModelOf(unsigned classCode) { return ReportOf({{classCode, 0, 0}}).dev[0].model; }
};

TEST_F(PciNamesTest, ClassTableHasTwentyRowsOfSixtyFourCharacters) {
    static_assert(sizeof MainDev == 20 * 64);
    static_assert(std::size(kClassNames) == 20);
    for (unsigned i = 0; i < 20; ++i) {
        EXPECT_STREQ(MainDev[i], kClassNames[i]) << i;
        EXPECT_EQ(ModelOf(i), kClassNames[i]) << i;
    }
}

TEST_F(PciNamesTest, ClassesPastTheTableLeaveTheModel) {
    for (unsigned i = 0x14; i < 0x100; ++i) EXPECT_EQ(ModelOf(i), "model before") << i;
}

TEST_F(PciNamesTest, EveryRowNamesItsSubClass) {
    for (const NameRow& row : kNameRows) {
        char* end = nullptr;
        const unsigned subClass = static_cast<unsigned>(std::strtoul(row.match, &end, 16));
        const unsigned progIf =
            *end == '/' ? static_cast<unsigned>(std::strtoul(end + 1, nullptr, 16)) : 0x55;
        const Code code = {row.classCode, subClass, progIf};
        if (row.classCode == 0x0D || row.classCode == 0x0E) continue;  // have tests of their own
        EXPECT_EQ(TypeOf(code), std::string(row.name, 0, 63)) << row.classCode << " " << row.match;
    }
}

TEST_F(PciNamesTest, EveryCodeHasTheNameOfItsLastRowOrKeepsTheTextBefore) {
    for (unsigned classCode = 0; classCode <= 0x14; ++classCode) {
        for (unsigned subClass = 0; subClass < 0x100; ++subClass) {
            for (unsigned first = 0; first < 0x100; first += 64) {
                std::vector<Code> codes;
                for (unsigned progIf = first; progIf < first + 64; ++progIf)
                    codes.push_back({classCode, subClass, progIf});
                ReportOf(codes);
                for (unsigned i = 0; i < 64; ++i)
                    ASSERT_STREQ(record.dev[i].type, ExpectedType(codes[i], "type before").c_str())
                        << classCode << " " << subClass << " " << codes[i].progIf;
            }
            server.GetLog().Clear();
        }
    }
}

TEST_F(PciNamesTest, SubClassesOfClassesWithoutRowsKeepTheTextBeforeOrAreOther) {
    for (unsigned classCode = 0x12; classCode < 0x100; ++classCode) {
        EXPECT_EQ(TypeOf({classCode, 0x00, 0x00}), "type before") << classCode;
        EXPECT_EQ(TypeOf({classCode, 0x80, 0x00}), "other") << classCode;
    }
}

TEST_F(PciNamesTest, BridgeOfSubClassFourIsPciToPci) {
    ReportOf({{0x06, 0x04, 0x00}});
    EXPECT_STREQ(record.dev[0].model, "Bridge device");
    EXPECT_STREQ(record.dev[0].type, "PCI-to-PCI bridge");
}

TEST_F(PciNamesTest, OwnRowForTheOtherSubClassReplacesOther) {
    EXPECT_EQ(TypeOf({0x02, 0x80, 0x00}), "Other network controller");
}

TEST_F(PciNamesTest, ProcessorOfTheOtherSubClassKeepsOther) {
    EXPECT_EQ(TypeOf({0x0B, 0x80, 0x00}), "other");
}

TEST_F(PciNamesTest, UnknownClassReadsUnknownAndOther) {
    ReportOf({{0x12, 0x80, 0x00}});
    EXPECT_STREQ(record.dev[0].model, "Unknown");
    EXPECT_STREQ(record.dev[0].type, "other");
}

TEST_F(PciNamesTest, UsbControllerOfALaterInterfaceKeepsTheTextBefore) {
    EXPECT_EQ(TypeOf({0x0C, 0x03, 0x30}), "type before");
}

TEST_F(PciNamesTest, BothOldUsbInterfacesHaveOneName) {
    EXPECT_EQ(TypeOf({0x0C, 0x03, 0x00}), "Universal Serial Bus");
    EXPECT_EQ(TypeOf({0x0C, 0x03, 0x10}), "Universal Serial Bus");
}

TEST_F(PciNamesTest, WirelessControllersRunOnIntoIntelligentIoAndSatellites) {
    EXPECT_EQ(TypeOf({0x0D, 0x00, 0x00}), "Intelligent I/O");
    EXPECT_EQ(TypeOf({0x0D, 0x01, 0x00}), "TV");
    EXPECT_EQ(TypeOf({0x0D, 0x02, 0x00}), "Audio");
    EXPECT_EQ(TypeOf({0x0D, 0x10, 0x00}), "RF controller");
    EXPECT_EQ(TypeOf({0x0D, 0x11, 0x00}), "Bluetooth");
    EXPECT_EQ(TypeOf({0x0D, 0x80, 0x00}), "Other type of wireless controller");
}

TEST_F(PciNamesTest, IntelligentIoRunsOnIntoSatellites) {
    EXPECT_EQ(TypeOf({0x0E, 0x00, 0x00}), "Intelligent I/O");
    EXPECT_EQ(TypeOf({0x0E, 0x01, 0x00}), "TV");
    EXPECT_EQ(TypeOf({0x0E, 0x04, 0x00}), "Data");
    EXPECT_EQ(TypeOf({0x0E, 0x05, 0x00}), "type before");
}

TEST_F(PciNamesTest, NoOtherClassRunsOnIntoTheNext) {
    EXPECT_EQ(TypeOf({0x0C, 0x10, 0x00}), "type before");  // RF controller in the next class
    EXPECT_EQ(TypeOf({0x0F, 0x10, 0x00}), "type before");  // entertainment in the next class
    EXPECT_EQ(TypeOf({0x05, 0x02, 0x00}), "type before");  // EISA bridge in the next class
}

TEST_F(PciNamesTest, OpenHciFireWireIsMatchedOnInterfaceOne) {
    EXPECT_EQ(TypeOf({0x0C, 0x00, 0x01}), "IEEE 1394 following the 1394 OpenHCI specification");
    EXPECT_EQ(TypeOf({0x0C, 0x00, 0x10}), "type before");
}

TEST_F(PciNamesTest, NameLongerThanTheFieldIsCut) {
    EXPECT_EQ(TypeOf({0x11, 0x10, 0x00}),
              "Communications synchronization plus time and frequency test/mea");
}

TEST_F(PciNamesTest, ShorterNameLeavesNothingOfALongerOneBefore) {
    ReportOf({{0x07, 0x03, 0x00}});
    std::strcpy(record.dev[0].model, MainDev[0x11]);
    std::strcpy(record.dev[0].type, "Hayes compatible modem, 16450-compatible interface");
    EXPECT_EQ(GetPciInfo(&record), 0);
    EXPECT_STREQ(record.dev[0].model, "Simple communication controllers");
    EXPECT_STREQ(record.dev[0].type, "Generic modem");
}

}  // namespace
