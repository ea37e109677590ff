// SPDX-License-Identifier: MIT
//
// Port connectors (SMBIOS 7.9).

#include <cstring>

#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"
#include "base/CodeName.h"

using namespace talvane;

namespace {

// Offsets in the structure.
namespace port_connector {
constexpr std::size_t kExternalDesignator = 6;  // string
constexpr std::size_t kPortType = 8;
}  // namespace port_connector

constexpr int kMaxPorts = 128;

constexpr CodeName kPortTypes[] = {
    {0, "None"},
    {1, "Parallel Port XT/AT Compatible"},
    {2, "Parallel Port PS/2"},
    {3, "Parallel Port ECP"},
    {4, "Parallel Port EPP"},
    {5, "Parallel Port ECP/EPP"},
    {6, "Serial Port XT/AT Compatible"},
    {7, "Serial Port 16450 Compatible"},
    {8, "Serial Port 16550 Compatible"},
    {9, "Serial Port 16550A Compatible"},
    {10, "SCSI Port"},
    {11, "MIDI Port"},
    {12, "Joy Stick Port"},
    {13, "Keyboard Port"},
    {14, "Mouse Port"},
    {15, "SSA SCSI"},
    {16, "USB"},
    {17, "FireWire (IEEE P1394)"},
    {18, "PCMCIA Type II"},  // Kept: type I has the name of type II.
    {19, "PCMCIA Type II"},
    {20, "PCMCIA Type III"},
    {21, "Cardbus"},
    {22, "Access Bus Port"},
    {23, "SCSI II"},
    {24, "SCSI Wide"},
    {25, "PC-98"},
    {26, "PC-98-Hireso"},
    {27, "PC-H98"},
    {28, "Video Port"},
    {29, "Audio Port"},
    {30, "Modem Port"},
    {31, "Network Port"},
    {160, "8251 Compatible"},
    {161, "8251 FIFO Compatible"},
    {255, "Other"},
};
static_assert(StrictlyAscending(kPortTypes));

const char* PortTypeName(unsigned code) {
    return NameOf(kPortTypes, code, "Unknown");
}

}  // namespace

int SmBios::GetPortQuantity() {
    return CountUpTo(kMaxPorts, Structures(TYPE_PORT_CONNECTOR_INFO));
}

int SmBios::GetPortType(int port, char* buf) {
    const ItemPtr connector = ItemAt(TYPE_PORT_CONNECTOR_INFO, port);
    if (connector == nullptr) return -1;
    std::strcpy(buf, PortTypeName(ByteAt(FormattedArea(connector), port_connector::kPortType)));
    return 0;
}

int SmBios::GetPortDecription(int port, char* buf, unsigned size) {
    constexpr char kShortened[] = "...";
    const ItemPtr connector = ItemAt(TYPE_PORT_CONNECTOR_INFO, port);
    const char* designator = StringAt(connector, port_connector::kExternalDesignator);
    if (designator == nullptr) return -1;
    if (size < sizeof kShortened) return 0;
    if (std::strlen(designator) < size) return CopyText(designator, buf, size);
    std::memcpy(buf, designator, size - sizeof kShortened);
    std::memcpy(buf + size - sizeof kShortened, kShortened, sizeof kShortened);
    return 0;
}
