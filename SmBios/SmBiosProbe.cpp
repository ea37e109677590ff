// SPDX-License-Identifier: MIT
//
// Voltage (7.27) and temperature (7.29) probes.

#include <cstring>

#include "SmBios/SmBios.h"
#include "SmBios/SmBiosStatus.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"

using namespace talvane;

namespace {

constexpr std::size_t kDescription = 4;
constexpr std::size_t kLocationAndStatus = 5;
constexpr std::size_t kMaximumValue = 6;
constexpr std::size_t kMinimumValue = 8;
constexpr std::size_t kNominalValue = 20;

constexpr int kUnknownValue = 0x8000;

constexpr int kMostProbes = 127;

// The value at `offset` with its unit, or "Unknown" and -1.
int WriteValue(const std::unique_ptr<BiosDataItem>& probe, std::size_t offset, const char* unit,
               char* buf) {
    const int value = Le16(FormattedArea(probe), offset);
    if (value == kUnknownValue) {
        std::strcpy(buf, "Unknown");
        return -1;
    }
    WriteNumber(buf, value, unit);
    return 0;
}

// The nominal value stands for the current one, in structures long enough to have it.
int WriteCurrent(const std::unique_ptr<BiosDataItem>& probe, const char* unit, char* buf) {
    if (probe->GetFormatedDataLength() <= kNominalValue) {
        std::strcpy(buf, "SmBios can not supply this information");
        return -1;
    }
    return WriteValue(probe, kNominalValue, unit, buf);
}

int WriteStatus(const std::unique_ptr<BiosDataItem>& probe, char* buf) {
    std::strcpy(buf, StatusText(ByteAt(FormattedArea(probe), kLocationAndStatus)));
    return 0;
}

}  // namespace

int SmBios::GetVoltageProbeQuantity() {
    return CountUpTo(kMostProbes, Structures(TYPE_VOLTAGE_PROBE));
}

int SmBios::GetTemperatureProbeQuantity() {
    return CountUpTo(kMostProbes, Structures(TYPE_TEMPERATURE_PROBE));
}

// The first probe whose location bits include `location`. Kept: the walk starts at index 0, which
// is no structure, and so finds no probe; agents take probe readings from the BMC.
SmBios::ItemPtr SmBios::Probe(unsigned char structureType, int location) {
    for (int index = 0;; ++index) {
        ItemPtr probe = ItemAt(structureType, index);
        if (probe == nullptr) return nullptr;
        if ((ByteAt(FormattedArea(probe), kLocationAndStatus) & location) == location) return probe;
    }
}

int SmBios::GetVoltageDescription(int location, char* buf, unsigned size) {
    return CopyStringAt(Probe(TYPE_VOLTAGE_PROBE, location), kDescription, buf, size);
}

int SmBios::GetVoltageStatus(int location, char* buf) {
    const ItemPtr probe = Probe(TYPE_VOLTAGE_PROBE, location);
    return probe == nullptr ? -1 : WriteStatus(probe, buf);
}

int SmBios::GetVoltageCurrent(int location, char* buf) {
    const ItemPtr probe = Probe(TYPE_VOLTAGE_PROBE, location);
    return probe == nullptr ? -1 : WriteCurrent(probe, " mv", buf);
}

int SmBios::GetVoltageMax(int location, char* buf) {
    const ItemPtr probe = Probe(TYPE_VOLTAGE_PROBE, location);
    return probe == nullptr ? -1 : WriteValue(probe, kMaximumValue, " mv", buf);
}

int SmBios::GetVoltageMin(int location, char* buf) {
    const ItemPtr probe = Probe(TYPE_VOLTAGE_PROBE, location);
    return probe == nullptr ? -1 : WriteValue(probe, kMinimumValue, " mv", buf);
}

int SmBios::GetTemperatureDescription(int location, char* buf, unsigned size) {
    return CopyStringAt(Probe(TYPE_TEMPERATURE_PROBE, location), kDescription, buf, size);
}

int SmBios::GetTemperatureStatus(int location, char* buf) {
    const ItemPtr probe = Probe(TYPE_TEMPERATURE_PROBE, location);
    return probe == nullptr ? -1 : WriteStatus(probe, buf);
}

int SmBios::GetTemperatureCurrent(int location, char* buf) {
    const ItemPtr probe = Probe(TYPE_TEMPERATURE_PROBE, location);
    return probe == nullptr ? -1 : WriteCurrent(probe, " C", buf);
}
