// SPDX-License-Identifier: MIT
//
// The table of the sub-classes and its lookup. The rows follow the class codes of the PCI Code and
// ID Assignment Specification (PCI 3.0, appendix D). The texts are part of the interface and
// spelled as agents know them.

#include "PCI/SubClassName.h"

#include <cstddef>

namespace talvane {
namespace {

constexpr int kAny = -1;  // every programming interface

struct SubClassRow {
    int classCode;
    int subClass;
    int progIf;
    const char* name;
};

constexpr SubClassRow kSubClasses[] = {
    // 00: Old devices
    {0x00, 0x00, kAny, "Old Non VGA-compatible devices"},
    {0x00, 0x01, kAny, "Old VGA-compatible device"},
    // 01: Mass storage controller
    {0x01, 0x00, kAny, "SCSI bus controller"},
    {0x01, 0x01, kAny, "IDE controller"},
    {0x01, 0x02, kAny, "Floppy disk controller"},
    {0x01, 0x03, kAny, "IPI bus controller"},
    {0x01, 0x04, kAny, "RAID controller"},
    {0x01, 0x05, 0x20, "ATA controller with single DMA"},
    {0x01, 0x05, 0x30, "ATA controller with chained DMA"},
    {0x01, 0x80, kAny, "Other mass storage controller"},
    // 02: Network controller
    {0x02, 0x00, kAny, "Ethernet controller"},
    {0x02, 0x01, kAny, "Token Ring controller"},
    {0x02, 0x02, kAny, "FDDI controller"},
    {0x02, 0x03, kAny, "ATM controller"},
    {0x02, 0x04, kAny, "ISDN controller"},
    {0x02, 0x05, kAny, "WorldFip controller"},
    {0x02, 0x06, kAny, "PICMG 2.14 Multi Computing"},
    {0x02, 0x80, kAny, "Other network controller"},
    // 03: Display controller
    {0x03, 0x00, 0x00, "VGA-compatible controller"},
    {0x03, 0x00, 0x01, "8514-compatible controller"},
    {0x03, 0x01, kAny, "XGA controller"},
    {0x03, 0x02, kAny, "3D controller"},
    {0x03, 0x80, kAny, "Other display controller"},
    // 04: Multimedia device
    {0x04, 0x00, kAny, "Video device"},
    {0x04, 0x01, kAny, "Audio device"},
    {0x04, 0x02, kAny, "Computer telephony device"},
    {0x04, 0x80, kAny, "Other multimedia device"},
    // 05: Memory controller
    {0x05, 0x00, kAny, "RAM"},
    {0x05, 0x01, kAny, "Flash"},
    {0x05, 0x80, kAny, "Other memory controller"},
    // 06: Bridge device
    {0x06, 0x00, kAny, "Host bridge"},
    {0x06, 0x01, kAny, "ISA bridge"},
    {0x06, 0x02, kAny, "EISA bridge"},
    {0x06, 0x03, kAny, "MCA bridge"},
    {0x06, 0x04, 0x00, "PCI-to-PCI bridge"},
    {0x06, 0x04, 0x01, "Subtractive Decode PCI-to-PCI bridge"},
    {0x06, 0x05, kAny, "PCMCIA bridge"},
    {0x06, 0x06, kAny, "NuBus bridge"},
    {0x06, 0x07, kAny, "CardBus bridge"},
    {0x06, 0x08, kAny, "RACEway bridge"},
    {0x06, 0x09, kAny, "PCI-to-PCI bridge"},
    {0x06, 0x0A, kAny, "InfniBand-to-PCI host bridge"},
    {0x06, 0x80, kAny, "Other bridge device"},
    // 07: Simple communication controllers
    {0x07, 0x00, 0x00, "Generic XT-compatible serial controller"},
    {0x07, 0x00, 0x01, "16450-compatible serial controller"},
    {0x07, 0x00, 0x02, "16550-compatible serial controller"},
    {0x07, 0x00, 0x03, "16650-compatible serial controller"},
    {0x07, 0x00, 0x04, "16750-compatible serial controller"},
    {0x07, 0x00, 0x05, "16850-compatible serial controller"},
    {0x07, 0x00, 0x06, "16950-compatible serial controller"},
    {0x07, 0x01, 0x00, "Parallel port"},
    {0x07, 0x01, 0x01, "Bi-directional parallel port"},
    {0x07, 0x01, 0x02, "ECP 1.X compliant parallel port"},
    {0x07, 0x01, 0x03, "IEEE1284 controller"},
    {0x07, 0x01, 0xFE, "IEEE1284 target device (not a controller)"},
    {0x07, 0x02, kAny, "Multiport serial controller"},
    {0x07, 0x03, 0x00, "Generic modem"},
    {0x07, 0x03, 0x01, "Hayes compatible modem, 16450-compatible interface"},
    {0x07, 0x03, 0x02, "Hayes compatible modem, 16550-compatible interface"},
    {0x07, 0x03, 0x03, "Hayes compatible modem, 16650-compatible interface"},
    {0x07, 0x03, 0x04, "Hayes compatible modem, 16750-compatible interface"},
    {0x07, 0x04, kAny, "GPIB (IEEE 488.1/2) controller"},
    {0x07, 0x80, kAny, "Other communications device"},
    // 08: Base system peripherals
    {0x08, 0x00, 0x00, "Generic 8259 PIC"},
    {0x08, 0x00, 0x01, "ISA PIC"},
    {0x08, 0x00, 0x02, "EISA PIC"},
    {0x08, 0x00, 0x10, "I/O APIC interrupt controller"},
    {0x08, 0x00, 0x20, "I/O(x) APIC interrupt controller"},
    {0x08, 0x01, 0x00, "Generic 8237 DMA controller"},
    {0x08, 0x01, 0x01, "ISA DMA controller"},
    {0x08, 0x01, 0x02, "EISA DMA controller"},
    {0x08, 0x02, 0x00, "Generic 8254 system timer"},
    {0x08, 0x02, 0x01, "ISA system timer"},
    {0x08, 0x02, 0x02, "EISA system timers (two timers)"},
    {0x08, 0x03, 0x00, "Generic RTC controller"},
    {0x08, 0x03, 0x01, "ISA RTC controller"},
    {0x08, 0x04, kAny, "Generic PCI Hot-Plug controller"},
    {0x08, 0x80, kAny, "Other system peripheral"},
    // 09: Input devices
    {0x09, 0x00, kAny, "Keyboard controller"},
    {0x09, 0x01, kAny, "Digitizer (pen)"},
    {0x09, 0x02, kAny, "Mouse controller"},
    {0x09, 0x03, kAny, "Scanner controller"},
    {0x09, 0x04, kAny, "Gameport controller"},
    {0x09, 0x80, kAny, "Other input controller"},
    // 0A: Docking stations
    {0x0A, 0x00, kAny, "Generic docking station"},
    {0x0A, 0x80, kAny, "Other type of docking station"},
    // 0B: Processors
    {0x0B, 0x00, kAny, "386"},
    {0x0B, 0x01, kAny, "486"},
    {0x0B, 0x02, kAny, "Pentium"},
    {0x0B, 0x10, kAny, "Alpha"},
    {0x0B, 0x20, kAny, "PowerPC"},
    {0x0B, 0x30, kAny, "MIPS"},
    {0x0B, 0x40, kAny, "Co-processor"},
    // 0C: Serial bus controllers
    {0x0C, 0x00, 0x00, "IEEE 1394 (FireWire)"},
    {0x0C, 0x00, 0x01, "IEEE 1394 following the 1394 OpenHCI specification"},
    {0x0C, 0x01, kAny, "ACCESS.bus"},
    {0x0C, 0x02, kAny, "SSA"},
    {0x0C, 0x03, 0x00, "Universal Serial Bus"},
    {0x0C, 0x03, 0x10, "Universal Serial Bus"},
    {0x0C, 0x03, 0x20, "USB2 host controller"},
    {0x0C, 0x03, 0x80, "Universal Serial Bus with no specific programming interface"},
    {0x0C, 0x03, 0xFE, "USB device (not host controller)"},
    {0x0C, 0x04, kAny, "Fibre Channel"},
    {0x0C, 0x05, kAny, "SMBus"},
    {0x0C, 0x06, kAny, "InfiniBand"},
    {0x0C, 0x07, 0x00, "IPMI SMIC Interface"},
    {0x0C, 0x07, 0x01, "IPMI Kybd Controller Style Interface"},
    {0x0C, 0x07, 0x02, "IPMI Block Transfer Interface"},
    {0x0C, 0x08, kAny, "SERCOS Interface Standard (IEC61491)"},
    {0x0C, 0x09, kAny, "CANbus"},
    // 0D: Wireless controller
    {0x0D, 0x00, kAny, "iRDA compatible controller"},
    {0x0D, 0x01, kAny, "Consumer IR controller"},
    {0x0D, 0x10, kAny, "RF controller"},
    {0x0D, 0x11, kAny, "Bluetooth"},
    {0x0D, 0x12, kAny, "Broadband"},
    {0x0D, 0x80, kAny, "Other type of wireless controller"},
    // 0E: Intelligent I/O controllers
    {0x0E, 0x00, kAny, "Intelligent I/O"},
    // 0F: Satellite communication controllers
    {0x0F, 0x01, kAny, "TV"},
    {0x0F, 0x02, kAny, "Audio"},
    {0x0F, 0x03, kAny, "Voice"},
    {0x0F, 0x04, kAny, "Data"},
    // 10: Encryption/Decryption controllers
    {0x10, 0x00, kAny, "Network and computing en/decryption"},
    {0x10, 0x10, kAny, "Entertainment en/decryption"},
    {0x10, 0x80, kAny, "Other en/decryption"},
    // 11: Data acquisition and signal processing controllers
    {0x11, 0x00, kAny, "DPIO modules"},
    {0x11, 0x01, kAny, "Performance counters"},
    {0x11, 0x10, kAny, "Communications synchronization plus time and frequency test/measurement"},
    {0x11, 0x20, kAny, "Management card"},
    {0x11, 0x80, kAny, "Other data acquisition/signal processing controllers"},
};

consteval bool SubClassesAscend() {
    for (std::size_t i = 1; i < sizeof kSubClasses / sizeof kSubClasses[0]; ++i) {
        const SubClassRow& before = kSubClasses[i - 1];
        const SubClassRow& row = kSubClasses[i];
        if (before.classCode != row.classCode ? before.classCode > row.classCode
            : before.subClass != row.subClass ? before.subClass > row.subClass
                                              : before.progIf >= row.progIf)
            return false;
    }
    return true;
}
static_assert(SubClassesAscend(), "rows in the order of their codes, none twice");

constexpr int kWireless = 0x0D;
constexpr int kIntelligentIo = 0x0E;
constexpr int kSatellite = 0x0F;

// The last class whose rows are applied to a function of the class. Kept: a wireless controller
// also gets the rows of intelligent I/O and of satellite controllers, and an intelligent I/O
// controller those of satellite controllers. Every other class has its own rows only.
constexpr int LastClassFor(int classCode) {
    return classCode == kWireless || classCode == kIntelligentIo ? kSatellite : classCode;
}

}  // namespace

const char* SubClassName(const PciClass& function) {
    const char* name = nullptr;
    for (const SubClassRow& row : kSubClasses) {
        if (row.classCode < function.classCode) continue;
        if (row.classCode > LastClassFor(function.classCode)) break;
        const bool matches = row.subClass == function.subClass &&
                             (row.progIf == kAny || row.progIf == function.progIf);
        if (matches) name = row.name;  // a later row counts more
    }
    return name;
}

}  // namespace talvane
