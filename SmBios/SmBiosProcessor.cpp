// SPDX-License-Identifier: MIT
//
// Processors (SMBIOS 7.5).

#include <cstring>

#include "SmBios/ProcessorStatus.h"
#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"
#include "base/CodeName.h"

using namespace talvane;

namespace {

// Offsets in the structure.
namespace processor_information {
constexpr std::size_t kFamily = 6;
constexpr std::size_t kManufacturer = 7;  // string
constexpr std::size_t kVersion = 16;      // string
constexpr std::size_t kVoltage = 17;
constexpr std::size_t kExternalClock = 18;  // MHz
constexpr std::size_t kMaximumSpeed = 20;   // MHz
constexpr std::size_t kCurrentSpeed = 22;   // MHz
constexpr std::size_t kStatus = 24;
constexpr std::size_t kSerialNumber = 32;  // string
}  // namespace processor_information

// Kept: bit 7, with which the byte holds a number instead of a code, is not looked at.
constexpr unsigned char kVoltageCodeBits = 0x0F;

constexpr int kMaxProcessors = 16;

constexpr CodeName kProcessorFamilies[] = {
    {1, "Other"},
    {3, "8086"},
    {4, "80286"},
    {5, "Intel386 processor"},
    {6, "Intel486 processor"},
    {7, "8087"},
    {8, "80287"},
    {9, "80387"},
    {10, "80487"},
    {11, "Pentium processor Family"},
    {12, "Pentium Pro processor"},
    {13, "Pentium II processor"},
    {14, "Pentium processor with MMX technology"},
    {15, "Celeron processor"},
    {16, "Pentium II Xeon processor"},
    {17, "Pentium III processor"},
    {18, "M1 Family"},
    {19, "M2 Family"},
    {24, "AMD Duron Processor Family"},
    {25, "K5 Family"},
    {26, "K6 Family"},
    {27, "K6-2"},
    {28, "K6-3"},
    {29, "AMD Athlon Processor Family"},
    {30, "AMD2900 Family"},
    {31, "K6-2+"},
    {32, "Power PC Family"},
    {33, "Power PC 601"},
    {34, "Power PC 603"},
    {35, "Power PC 603+"},
    {36, "Power PC 604"},
    {37, "Power PC 620"},
    {38, "Power PC x704"},
    {39, "Power PC 750"},
    {48, "Alpha Family3"},
    {49, "Alpha 21064"},
    {50, "Alpha 21066"},
    {51, "Alpha 21164"},
    {52, "Alpha 21164PC"},
    {53, "Alpha 21164a"},
    {54, "Alpha 21264"},
    {55, "Alpha 21364"},
    {176, "Pentium III Xeoprocessor"},
    {177, "Pentium III Processor with Intel SpeedStep Technology"},
    {178, "Pentium 4 Processor"},
    {179, "Intel Xeon"},
    {180, "AS400 Family"},
    {181, "Intel Xeon processor MP"},
    {182, "AMD AthlonXP Processor Family"},
    {183, "AMD AthlonMP Processor Family"},
    {200, "IBM390 Family"},
    {201, "G4"},
    {202, "G5"},
};
static_assert(StrictlyAscending(kProcessorFamilies));

const char* ProcessorFamilyName(unsigned code) {
    return NameOf(kProcessorFamilies, code, "Unknown");
}

constexpr CodeName kProcessorVoltages[] = {
    {1, "5V"}, {2, "3.3V"}, {3, "5V or 3.3V"}, {4, "2.9V"}, {6, "2.9V or 3.3V"},
};
static_assert(StrictlyAscending(kProcessorVoltages));

const char* ProcessorVoltageName(unsigned byte) {
    return NameOf(kProcessorVoltages, byte & kVoltageCodeBits, "Unknown");
}

// A speed of 0 is unknown.
int WriteProcessorSpeed(char* buf, int megahertz) {
    if (megahertz == 0) return WriteUnknown(buf);
    WriteNumber(buf, megahertz, " MHZ");
    return 0;
}

}  // namespace

int SmBios::GetProcessorQuantity() {
    StructureWalk walk = Structures(TYPE_PROCESSOR_INFO);
    int count = 0;
    for (int index = 1; index <= kMaxProcessors; ++index) {
        const unsigned char* processor = walk.Next();
        if (processor == nullptr) break;
        const unsigned char status =
            ByteAt(FormattedAreaOf(processor), processor_information::kStatus);
        const bool isPopulated = (status & processor_status::kSocketPopulated) != 0;
        const bool isKnown = (status & processor_status::kState) != processor_status::kUnknown;
        if (isPopulated && isKnown) ++count;
    }
    return count;
}

int SmBios::GetProcessorVirtualQuantity() {
    return CountUpTo(kMaxProcessors, Structures(TYPE_PROCESSOR_INFO));
}

int SmBios::GetProcessorFamily(int cpu, char* buf) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    std::strcpy(
        buf, ProcessorFamilyName(ByteAt(FormattedArea(processor), processor_information::kFamily)));
    return 0;
}

int SmBios::GetProcessorManufacturer(int cpu, char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_PROCESSOR_INFO, cpu), processor_information::kManufacturer, buf,
                        size);
}

int SmBios::GetProcessorVersion(int cpu, char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_PROCESSOR_INFO, cpu), processor_information::kVersion, buf,
                        size);
}

int SmBios::GetProcessorSerialNo(int cpu, char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_PROCESSOR_INFO, cpu), processor_information::kSerialNumber, buf,
                        size);
}

int SmBios::GetProcessorVoltage(int cpu, char* buf) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    std::strcpy(buf, ProcessorVoltageName(
                         ByteAt(FormattedArea(processor), processor_information::kVoltage)));
    return 0;
}

// Kept: unlike a speed, a clock of 0 is written as a number.
int SmBios::GetProcessorExternalClock(int cpu, char* buf) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    WriteNumber(buf, Le16(FormattedArea(processor), processor_information::kExternalClock), " MHZ");
    return 0;
}

int SmBios::GetProcessorMaxSpeed(int cpu, char* buf) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    return WriteProcessorSpeed(
        buf, Le16(FormattedArea(processor), processor_information::kMaximumSpeed));
}

int SmBios::GetProcessorCurrentSpeed(int cpu, char* buf) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    return WriteProcessorSpeed(
        buf, Le16(FormattedArea(processor), processor_information::kCurrentSpeed));
}

int SmBios::GetProcessorStatus(int cpu, unsigned char* status) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    *status = ByteAt(FormattedArea(processor), processor_information::kStatus);
    return 0;
}
