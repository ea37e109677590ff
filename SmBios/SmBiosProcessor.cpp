// SPDX-License-Identifier: MIT
//
// Processors (7.5).

#include <cstring>

#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"
#include "base/CodeName.h"

using namespace talvane;

namespace {

constexpr std::size_t kFamily = 6;
constexpr std::size_t kManufacturer = 7;
constexpr std::size_t kVersion = 16;
constexpr std::size_t kVoltage = 17;
constexpr std::size_t kExternalClock = 18;  // MHz, as the other two
constexpr std::size_t kMaxSpeed = 20;
constexpr std::size_t kCurrentSpeed = 22;
constexpr std::size_t kStatus = 24;
constexpr std::size_t kSerialNumber = 32;

constexpr unsigned char kSocketPopulated = 0x40;
constexpr unsigned char kCpuStatus = 0x07;  // 0: unknown
constexpr unsigned char kVoltageCode =
    0x0F;  // bit 7, the other form of the field, is not looked at

constexpr int kMostProcessors = 16;

constexpr CodeName kFamilies[] = {
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
static_assert(StrictlyAscending(kFamilies));

const char* FamilyName(unsigned code) {
    return NameOf(kFamilies, code, "Unknown");
}

constexpr CodeName kVoltages[] = {
    {1, "5V"}, {2, "3.3V"}, {3, "5V or 3.3V"}, {4, "2.9V"}, {6, "2.9V or 3.3V"},
};
static_assert(StrictlyAscending(kVoltages));

const char* VoltageName(unsigned code) {
    return NameOf(kVoltages, code, "Unknown");
}

// A speed of 0 is unknown.
int WriteSpeed(char* buf, int megahertz) {
    if (megahertz == 0) {
        std::strcpy(buf, "Unknown");
        return -1;
    }
    WriteNumber(buf, megahertz, " MHZ");
    return 0;
}

}  // namespace

int SmBios::GetProcessorQuantity() {
    StructureWalk walk = Structures(TYPE_PROCESSOR_INFO);
    int count = 0;
    for (int index = 1; index <= kMostProcessors; ++index) {
        const unsigned char* processor = walk.Next();
        if (processor == nullptr) break;
        const unsigned char status = ByteAt(FormattedAreaOf(processor), kStatus);
        if ((status & kSocketPopulated) != 0 && (status & kCpuStatus) != 0) ++count;
    }
    return count;
}

int SmBios::GetProcessorVirtualQuantity() {
    return CountUpTo(kMostProcessors, Structures(TYPE_PROCESSOR_INFO));
}

int SmBios::GetProcessorFamily(int cpu, char* buf) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    std::strcpy(buf, FamilyName(ByteAt(FormattedArea(processor), kFamily)));
    return 0;
}

int SmBios::GetProcessorManufacturer(int cpu, char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_PROCESSOR_INFO, cpu), kManufacturer, buf, size);
}

int SmBios::GetProcessorVersion(int cpu, char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_PROCESSOR_INFO, cpu), kVersion, buf, size);
}

int SmBios::GetProcessorSerialNo(int cpu, char* buf, unsigned size) {
    return CopyStringAt(ItemAt(TYPE_PROCESSOR_INFO, cpu), kSerialNumber, buf, size);
}

int SmBios::GetProcessorVoltage(int cpu, char* buf) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    std::strcpy(buf, VoltageName(ByteAt(FormattedArea(processor), kVoltage) & kVoltageCode));
    return 0;
}

// Unlike the speeds, a clock of 0 is written as a number.
int SmBios::GetProcessorExternalClock(int cpu, char* buf) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    WriteNumber(buf, Le16(FormattedArea(processor), kExternalClock), " MHZ");
    return 0;
}

int SmBios::GetProcessorMaxSpeed(int cpu, char* buf) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    return WriteSpeed(buf, Le16(FormattedArea(processor), kMaxSpeed));
}

int SmBios::GetProcessorCurrentSpeed(int cpu, char* buf) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    return WriteSpeed(buf, Le16(FormattedArea(processor), kCurrentSpeed));
}

int SmBios::GetProcessorStatus(int cpu, unsigned char* status) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    *status = ByteAt(FormattedArea(processor), kStatus);
    return 0;
}
