// SPDX-License-Identifier: MIT
//
// The walk over all functions that there can be, and the two ports that give access to their
// configuration space. The build optimises this file for speed, because of the 45,000 registers
// that a scan reads.

#include "PCI/PCIscan.h"

#include <cstdint>
#include <cstring>

#include "base/OwnCode.h"
#include "base/PortIo.h"

using namespace talvane;

namespace {

constexpr unsigned long kConfigAddressPort = 0xCF8;
constexpr unsigned long kConfigDataPort = 0xCFC;

// The address word (PCI 3.0, 3.2.2.3.2).
constexpr unsigned long kEnable = 0x80000000;
constexpr int kBusShift = 16;
constexpr int kDeviceShift = 11;
constexpr int kFunctionShift = 8;

constexpr unsigned long kNoAnswer = 0xFFFFFFFF;
// Vendor identifiers of absent functions.
constexpr unsigned kNoVendor = 0xFFFF;
constexpr unsigned kZeroVendor = 0;

constexpr int kLastBus = 10;  // Kept: higher buses are not looked at.
constexpr int kLastDevice = 31;
constexpr int kLastFunction = 7;
constexpr unsigned kMaxDevices = 64;

// The word that selects the first double word of a function.
unsigned long AddressOf(unsigned char bus, unsigned char dev, unsigned char func) {
    return kEnable | (static_cast<unsigned long>(bus) << kBusShift) |
           (static_cast<unsigned long>(dev) << kDeviceShift) |
           (static_cast<unsigned long>(func) << kFunctionShift);
}

// Whether the two port methods are this library's, and not an agent's of the same names.
bool HasOwnPortMethods() {
    return IsOwnCode(&PCIscan::out) && IsOwnCode(&PCIscan::in);
}

// The double word that an address selects.
unsigned long ReadByMethods(PCIscan& scan, unsigned long address) {
    if (scan.m_InitOK == 0) return kNoAnswer;
    scan.out(static_cast<unsigned short>(scan.m_ConfigAddress), address);
    return scan.in(static_cast<unsigned short>(scan.m_DataAddress));
}

// The same with port access, and without the calls.
unsigned long ReadByPorts(const PCIscan& scan, unsigned long address) {
    WritePort32(static_cast<std::uint16_t>(scan.m_ConfigAddress),
                static_cast<std::uint32_t>(address));
    return ReadPort32(static_cast<std::uint16_t>(scan.m_DataAddress));
}

// The header whose double words `readRegister` answers.
template <class ReadRegister>
_HEADER ReadHeader(ReadRegister readRegister) {
    _HEADER header;
    for (unsigned reg = 0; reg < sizeof header; reg += 4) {
        const unsigned long value = readRegister(reg);
        std::memcpy(reinterpret_cast<char*>(&header) + reg, &value, sizeof value);
    }
    return header;
}

// Calls visit(bus, device, function) for every function that there can be, until it returns true.
// Kept: all eight function numbers are tried, whether or not a device says that it has several.
template <class Visit>
bool AnyFunction(Visit visit) {
    for (int bus = 0; bus <= kLastBus; ++bus)
        for (int device = 0; device <= kLastDevice; ++device)
            for (int function = 0; function <= kLastFunction; ++function)
                if (visit(static_cast<unsigned char>(bus), static_cast<unsigned char>(device),
                          static_cast<unsigned char>(function)))
                    return true;
    return false;
}

}  // namespace

PCIscan::PCIscan()
    : m_InitOK(0),
      m_RetrieveFunction(0),
      m_ConfigAddress(kConfigAddressPort),
      m_DataAddress(kConfigDataPort) {}

int PCIscan::isInitOK() {
    return m_InitOK;
}

int PCIscan::searchDevice(short classCode, short subClassCode) {
    return AnyFunction([&](unsigned char bus, unsigned char dev, unsigned char func) {
        (void)readPCIheader(bus, dev, func);  // result not used: an absent function counts
        return m_dev.getClassCode() == classCode && m_dev.getSubClassCode() == subClassCode;
    });
}

int PCIscan::getAllDevice(std::list<PCIdevice>& devices) {
    devices.clear();
    const bool tooMany = AnyFunction([&](unsigned char bus, unsigned char dev, unsigned char func) {
        if (readPCIheader(bus, dev, func) != 0) return false;
        if (devices.size() == kMaxDevices) return true;
        devices.push_back(m_dev);
        return false;
    });
    return tooMany ? -1 : 0;
}

int PCIscan::readPCIheader(unsigned char bus, unsigned char dev, unsigned char func) {
    const unsigned long address = AddressOf(bus, dev, func);
    if (m_InitOK != 0 && HasOwnPortMethods())
        m_dev.header = ReadHeader([&](unsigned reg) { return ReadByPorts(*this, address | reg); });
    else
        m_dev.header =
            ReadHeader([&](unsigned reg) { return ReadByMethods(*this, address | reg); });
    const unsigned vendor = m_dev.header.VendorID;
    if (vendor == kNoVendor || vendor == kZeroVendor) return -1;
    m_dev.setBusNo(bus);
    m_dev.setDevNo(dev);
    m_dev.setFuncNo(func);
    return 0;
}

unsigned long PCIscan::readPCIDeviceRegister(unsigned char bus, unsigned char dev,
                                             unsigned char func, unsigned char reg) {
    return ReadByMethods(*this, makeAddress(bus, dev, func, reg));
}

unsigned long PCIscan::makeAddress(unsigned char bus, unsigned char dev, unsigned char func,
                                   unsigned char reg) {
    return AddressOf(bus, dev, func) | reg;
}

void PCIscan::out(unsigned short port, unsigned long value) {
    WritePort32(port, value);
}

unsigned long PCIscan::in(unsigned short port) {
    return ReadPort32(port);
}
