// SPDX-License-Identifier: MIT
//
// The names of classes and sub-classes, for every code that has some and for all those between. The
// report takes its functions from this program.
#include <cstdlib>
#include <cstring>

#include "PCI/PciTest.h"
#include "PCI/ReplacedScan.h"

namespace {

struct Code {
    unsigned classCode;
    unsigned subClass;
    unsigned progIf;
};

constexpr const char* kClassNames[] = {
    "Old devices",
    "Mass storage controller",
    "Network controller",
    "Display controller",
    "Multimedia device",
    "Memory controller",
    "Bridge device",
    "Simple communication controllers",
    "Base system peripherals",
    "Input devices",
    "Docking stations",
    "Processors",
    "Serial bus controllers",
    "Wireless controller",
    "Intelligent I/O controllers",
    "Satellite communication controllers",
    "Encryption/Decryption controllers",
    "Data acquisition and signal processing controllers",
    "Unknown",
    "",
};

// SUB or SUB/PROGIF.
struct Row {
    unsigned classCode;
    const char* match;
    const char* name;
};

constexpr Row kRows[] = {
    {0x00, "00", "Old Non VGA-compatible devices"},
    {0x00, "01", "Old VGA-compatible device"},
    {0x01, "00", "SCSI bus controller"},
    {0x01, "01", "IDE controller"},
    {0x01, "02", "Floppy disk controller"},
    {0x01, "03", "IPI bus controller"},
    {0x01, "04", "RAID controller"},
    {0x01, "05/20", "ATA controller with single DMA"},
    {0x01, "05/30", "ATA controller with chained DMA"},
    {0x01, "80", "Other mass storage controller"},
    {0x02, "00", "Ethernet controller"},
    {0x02, "01", "Token Ring controller"},
    {0x02, "02", "FDDI controller"},
    {0x02, "03", "ATM controller"},
    {0x02, "04", "ISDN controller"},
    {0x02, "05", "WorldFip controller"},
    {0x02, "06", "PICMG 2.14 Multi Computing"},
    {0x02, "80", "Other network controller"},
    {0x03, "00/00", "VGA-compatible controller"},
    {0x03, "00/01", "8514-compatible controller"},
    {0x03, "01", "XGA controller"},
    {0x03, "02", "3D controller"},
    {0x03, "80", "Other display controller"},
    {0x04, "00", "Video device"},
    {0x04, "01", "Audio device"},
    {0x04, "02", "Computer telephony device"},
    {0x04, "80", "Other multimedia device"},
    {0x05, "00", "RAM"},
    {0x05, "01", "Flash"},
    {0x05, "80", "Other memory controller"},
    {0x06, "00", "Host bridge"},
    {0x06, "01", "ISA bridge"},
    {0x06, "02", "EISA bridge"},
    {0x06, "03", "MCA bridge"},
    {0x06, "04/00", "PCI-to-PCI bridge"},
    {0x06, "04/01", "Subtractive Decode PCI-to-PCI bridge"},
    {0x06, "05", "PCMCIA bridge"},
    {0x06, "06", "NuBus bridge"},
    {0x06, "07", "CardBus bridge"},
    {0x06, "08", "RACEway bridge"},
    {0x06, "09", "PCI-to-PCI bridge"},
    {0x06, "0A", "InfniBand-to-PCI host bridge"},
    {0x06, "80", "Other bridge device"},
    {0x07, "00/00", "Generic XT-compatible serial controller"},
    {0x07, "00/01", "16450-compatible serial controller"},
    {0x07, "00/02", "16550-compatible serial controller"},
    {0x07, "00/03", "16650-compatible serial controller"},
    {0x07, "00/04", "16750-compatible serial controller"},
    {0x07, "00/05", "16850-compatible serial controller"},
    {0x07, "00/06", "16950-compatible serial controller"},
    {0x07, "01/00", "Parallel port"},
    {0x07, "01/01", "Bi-directional parallel port"},
    {0x07, "01/02", "ECP 1.X compliant parallel port"},
    {0x07, "01/03", "IEEE1284 controller"},
    {0x07, "01/FE", "IEEE1284 target device (not a controller)"},
    {0x07, "02", "Multiport serial controller"},
    {0x07, "03/00", "Generic modem"},
    {0x07, "03/01", "Hayes compatible modem, 16450-compatible interface"},
    {0x07, "03/02", "Hayes compatible modem, 16550-compatible interface"},
    {0x07, "03/03", "Hayes compatible modem, 16650-compatible interface"},
    {0x07, "03/04", "Hayes compatible modem, 16750-compatible interface"},
    {0x07, "04", "GPIB (IEEE 488.1/2) controller"},
    {0x07, "80", "Other communications device"},
    {0x08, "00/00", "Generic 8259 PIC"},
    {0x08, "00/01", "ISA PIC"},
    {0x08, "00/02", "EISA PIC"},
    {0x08, "00/10", "I/O APIC interrupt controller"},
    {0x08, "00/20", "I/O(x) APIC interrupt controller"},
    {0x08, "01/00", "Generic 8237 DMA controller"},
    {0x08, "01/01", "ISA DMA controller"},
    {0x08, "01/02", "EISA DMA controller"},
    {0x08, "02/00", "Generic 8254 system timer"},
    {0x08, "02/01", "ISA system timer"},
    {0x08, "02/02", "EISA system timers (two timers)"},
    {0x08, "03/00", "Generic RTC controller"},
    {0x08, "03/01", "ISA RTC controller"},
    {0x08, "04", "Generic PCI Hot-Plug controller"},
    {0x08, "80", "Other system peripheral"},
    {0x09, "00", "Keyboard controller"},
    {0x09, "01", "Digitizer (pen)"},
    {0x09, "02", "Mouse controller"},
    {0x09, "03", "Scanner controller"},
    {0x09, "04", "Gameport controller"},
    {0x09, "80", "Other input controller"},
    {0x0A, "00", "Generic docking station"},
    {0x0A, "80", "Other type of docking station"},
    {0x0B, "00", "386"},
    {0x0B, "01", "486"},
    {0x0B, "02", "Pentium"},
    {0x0B, "10", "Alpha"},
    {0x0B, "20", "PowerPC"},
    {0x0B, "30", "MIPS"},
    {0x0B, "40", "Co-processor"},
    {0x0C, "00/00", "IEEE 1394 (FireWire)"},
    {0x0C, "00/01", "IEEE 1394 following the 1394 OpenHCI specification"},
    {0x0C, "01", "ACCESS.bus"},
    {0x0C, "02", "SSA"},
    {0x0C, "03/00", "Universal Serial Bus"},
    {0x0C, "03/10", "Universal Serial Bus"},
    {0x0C, "03/20", "USB2 host controller"},
    {0x0C, "03/80", "Universal Serial Bus with no specific programming interface"},
    {0x0C, "03/FE", "USB device (not host controller)"},
    {0x0C, "04", "Fibre Channel"},
    {0x0C, "05", "SMBus"},
    {0x0C, "06", "InfiniBand"},
    {0x0C, "07/00", "IPMI SMIC Interface"},
    {0x0C, "07/01", "IPMI Kybd Controller Style Interface"},
    {0x0C, "07/02", "IPMI Block Transfer Interface"},
    {0x0C, "08", "SERCOS Interface Standard (IEC61491)"},
    {0x0C, "09", "CANbus"},
    {0x0D, "00", "iRDA compatible controller"},
    {0x0D, "01", "Consumer IR controller"},
    {0x0D, "10", "RF controller"},
    {0x0D, "11", "Bluetooth"},
    {0x0D, "12", "Broadband"},
    {0x0D, "80", "Other type of wireless controller"},
    {0x0E, "00", "Intelligent I/O"},
    {0x0F, "01", "TV"},
    {0x0F, "02", "Audio"},
    {0x0F, "03", "Voice"},
    {0x0F, "04", "Data"},
    {0x10, "00", "Network and computing en/decryption"},
    {0x10, "10", "Entertainment en/decryption"},
    {0x10, "80", "Other en/decryption"},
    {0x11, "00", "DPIO modules"},
    {0x11, "01", "Performance counters"},
    {0x11, "10", "Communications synchronization plus time and frequency test/measurement"},
    {0x11, "20", "Management card"},
    {0x11, "80", "Other data acquisition/signal processing controllers"},
};

bool Matches(const Row& row, const Code& code) {
    char* end = nullptr;
    if (std::strtoul(row.match, &end, 16) != code.subClass) return false;
    return *end == '\0' || std::strtoul(end + 1, nullptr, 16) == code.progIf;
}

// What the rows of one class make of a text.
void Apply(unsigned classCode, const Code& code, std::string& type) {
    for (const Row& row : kRows)
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
    for (const Row& row : kRows) {
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
