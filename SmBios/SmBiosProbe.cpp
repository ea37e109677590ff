// SPDX-License-Identifier: MIT
//
// Voltage probes (SMBIOS 7.27) and temperature probes (7.29).

#include <cstring>

#include "SmBios/DeviceStatus.h"
#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"

using namespace talvane;

namespace {

// Offsets in both structures.
namespace probe_structure {
constexpr std::size_t kDescription = 4;  // string
constexpr std::size_t kLocationAndStatus = 5;
constexpr std::size_t kMaximumValue = 6;
constexpr std::size_t kMinimumValue = 8;
constexpr std::size_t kNominalValue = 20;
}  // namespace probe_structure

constexpr int kMaxProbes = 127;

// Writes the value at `offset` and its unit. Writes "Unknown" and returns -1 where it is unknown.
int WriteProbeValue(const std::unique_ptr<BiosDataItem>& probe, std::size_t offset,
                    const char* unit, char* buf) {
    const int value = Le16(FormattedArea(probe), offset);
    if (value == kUnknownValue) return WriteUnknown(buf);
    WriteNumber(buf, value, unit);
    return 0;
}

// Writes the nominal value as the current one, from a structure that is long enough to have it.
int WriteProbeCurrent(const std::unique_ptr<BiosDataItem>& probe, const char* unit, char* buf) {
    if (probe->GetFormatedDataLength() <= probe_structure::kNominalValue)
        return WriteNotSupplied(buf);
    return WriteProbeValue(probe, probe_structure::kNominalValue, unit, buf);
}

int WriteProbeStatus(const std::unique_ptr<BiosDataItem>& probe, char* buf) {
    const unsigned char byte = ByteAt(FormattedArea(probe), probe_structure::kLocationAndStatus);
    std::strcpy(buf, DeviceStatusText(byte));
    return 0;
}

}  // namespace

int SmBios::GetVoltageProbeQuantity() {
    return CountUpTo(kMaxProbes, Structures(TYPE_VOLTAGE_PROBE));
}

int SmBios::GetTemperatureProbeQuantity() {
    return CountUpTo(kMaxProbes, Structures(TYPE_TEMPERATURE_PROBE));
}

// The first probe whose location bits include `location`. Kept: the walk starts at index 0, which
// is never found, so no probe is ever found. Agents take probe readings from the BMC.
SmBios::ItemPtr SmBios::Probe(unsigned char structureType, int location) {
    for (int index = 0;; ++index) {
        ItemPtr probe = ItemAt(structureType, index);
        if (probe == nullptr) return nullptr;
        const int byte = ByteAt(FormattedArea(probe), probe_structure::kLocationAndStatus);
        if ((byte & location) == location) return probe;
    }
}

int SmBios::GetVoltageDescription(int location, char* buf, unsigned size) {
    return CopyStringAt(Probe(TYPE_VOLTAGE_PROBE, location), probe_structure::kDescription, buf,
                        size);
}

int SmBios::GetVoltageStatus(int location, char* buf) {
    const ItemPtr probe = Probe(TYPE_VOLTAGE_PROBE, location);
    return probe == nullptr ? -1 : WriteProbeStatus(probe, buf);
}

int SmBios::GetVoltageCurrent(int location, char* buf) {
    const ItemPtr probe = Probe(TYPE_VOLTAGE_PROBE, location);
    return probe == nullptr ? -1 : WriteProbeCurrent(probe, " mv", buf);
}

int SmBios::GetVoltageMax(int location, char* buf) {
    const ItemPtr probe = Probe(TYPE_VOLTAGE_PROBE, location);
    return probe == nullptr ? -1
                            : WriteProbeValue(probe, probe_structure::kMaximumValue, " mv", buf);
}

int SmBios::GetVoltageMin(int location, char* buf) {
    const ItemPtr probe = Probe(TYPE_VOLTAGE_PROBE, location);
    return probe == nullptr ? -1
                            : WriteProbeValue(probe, probe_structure::kMinimumValue, " mv", buf);
}

int SmBios::GetTemperatureDescription(int location, char* buf, unsigned size) {
    return CopyStringAt(Probe(TYPE_TEMPERATURE_PROBE, location), probe_structure::kDescription, buf,
                        size);
}

int SmBios::GetTemperatureStatus(int location, char* buf) {
    const ItemPtr probe = Probe(TYPE_TEMPERATURE_PROBE, location);
    return probe == nullptr ? -1 : WriteProbeStatus(probe, buf);
}

int SmBios::GetTemperatureCurrent(int location, char* buf) {
    const ItemPtr probe = Probe(TYPE_TEMPERATURE_PROBE, location);
    return probe == nullptr ? -1 : WriteProbeCurrent(probe, " C", buf);
}
