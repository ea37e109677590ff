// SPDX-License-Identifier: MIT
//
// The firmware's SMBIOS (or older DMI) structure table. The constructor finds it and copies it out
// of physical memory once; the getters below read the copy, which never changes.
//
// Rules of all getters, unless one says otherwise:
//  - They return 0. When the structure or the string is missing they return -1 and write nothing.
//  - Structure indexes count from 1 and are taken modulo 256; index 0 is never found.
//  - With a `size` they copy at most size - 1 bytes and write no terminator: pass a zero-filled
//    buffer. Without a `size` the text is NUL-terminated and as long as it comes.
//  - Bytes for which a structure is too short are zero.
// Section numbers are those of DSP0134 (SMBIOS 3.x).
#ifndef TALVANE_SMBIOS_SMBIOS_H
#define TALVANE_SMBIOS_SMBIOS_H

#include <memory>

#include "../Export.h"
#include "BiosDataItem.h"
#include "EntryPoint.h"
#include "LocalMemInfo.h"

namespace talvane {
class StructureWalk;
}

class TALVANE_EXPORT SmBios {
public:
    // Structure types (section 7).
    enum type {
        TYPE_BIOS_INFO = 0,
        TYPE_SYSTEM_INFO = 1,
        TYPE_BASE_BOARD = 2,
        TYPE_SYSTEM_ENCLOSURE = 3,
        TYPE_PROCESSOR_INFO = 4,
        TYPE_MEMORY_CONTROLLER = 5,
        TYPE_MEMORY_MODULE = 6,
        TYPE_CACHE_INFO = 7,
        TYPE_PORT_CONNECTOR_INFO = 8,
        TYPE_SYSTEM_SLOTS = 9,
        TYPE_ON_BOARD_DEVICE_INFO = 10,
        TYPE_OEM_STRINGS = 11,
        TYPE_SYSTEM_CONFIGURE_OPTION = 12,
        TYPE_BIOS_LANGUAGE_INFO = 13,
        TYPE_GROUP_ASSOCIATIONS = 14,
        TYPE_SYSTEM_EVENT_LOG = 15,
        TYPE_PHSICAL_MEMORY_ARRAY = 16,
        TYPE_MEMORY_DEVICE = 17,
        TYPE_MEMEORY_ARRAY_MAPPED_ADDR = 19,
        TYPE_MEMEORY_DEVICE_MAPPED_ADDR = 20,
        TYPE_BUILDING_IN_POINTING_DEVICE = 21,
        TYPE_PORTABLE_BATTERY = 22,
        TYPE_SYSTEM_RESET = 23,
        TYPE_HARDWARE_SEQURITY = 24,
        TYPE_SYSTEM_POWER_CONTROL = 25,
        TYPE_VOLTAGE_PROBE = 26,
        TYPE_COOLING_DEVICE = 27,
        TYPE_TEMPERATURE_PROBE = 28,
        TYPE_ELECTRICAL_CURRENT_PROBE = 29,
        TYPE_OUT_OF_BAND_REMOTE_ACCESS = 30,
        TYPE_BIS_ENTRY_POINT = 31,
        TYPE_SYSTEM_BOOT_INFO = 32,
        TYPE_BIT64_MEMORY_ERROR_INFO = 33,
        TYPE_MANAGEMENT_DEVICE = 34,
        TYPE_MANAGEMENT_DEVICE_COMPONENT = 35,
        TYPE_MANAGEMENT_DEVICE_THRESHOLD = 36,
        TYPE_MEMORY_CHANNEL = 37,
        TYPE_IPMI_DEVICE_INFO = 38,
        TYPE_SYSTEM_POWER_SUPPLY = 39,
        TYPE_INACTIVE = 126,
        TYPE_END_OF_TABLE = 127
    };

    // Power supply types (section 7.40.1), used as a mask by the GetPS getters.
    enum ps {
        PS_OTHER = 1,
        PS_UNKNOWN = 2,
        PS_LINEAR = 3,
        PS_SWITCHING = 4,
        PS_BATTERY = 5,
        PS_UPS = 6,
        PS_CONVERTER = 7,
        PS_REGULATOR = 8
    };

    // Locations of voltage and temperature probes (sections 7.27.1 and 7.29.1).
    enum temperature {
        TnV_OTHER = 1,
        TnV_UNKNOWN = 2,
        TnV_PROCESSOR = 3,
        TnV_DISK = 4,
        TnV_PERIPHERAL_BAY = 5,
        TnV_SYSTEM_MANAGEMENT_MODULE = 6,
        TnV_MOTHER_BOARD = 7,
        TnV_MEMORY = 8,
        TnV_PROCESSOR_MODULE = 9,
        TnV_POWER_UNIT = 10,
        TnV_ADDIN_CARD = 11,
        TnV_FRONT_PANEL_BOARD = 12,
        TnV_BACK_PANEL_BOARD = 13,
        TnV_POWER_SYSTEM_BOARD = 14,
        TnV_DRIVE_BACK_PLANE = 15
    };

    // Finds the entry point and copies the table. Never throws. A failure leaves InitOK 0.
    SmBios();

    // Kept: reads no table, whatever the argument. An object made this way says that it is
    // initialised and finds no structure.
    explicit SmBios(char* ignored);

    ~SmBios();
    SmBios(const SmBios&) = delete;
    SmBios& operator=(const SmBios&) = delete;

    int IsInitOK();                 // 1 once the table has been copied
    unsigned char IsMatchSmBios();  // 1 if an SMBIOS entry point was found
    unsigned char IsMatchDMI();     // 1 if only a legacy DMI entry point was found

    // InitOK and MatchSMBIOS as the exported functions see them. A program can put functions of its
    // own in front of the methods above, but not in front of these two, which are hidden.
    TALVANE_LOCAL bool IsUsable() const { return InitOK != 0; }
    TALVANE_LOCAL unsigned char HasSmBiosEntryPoint() const { return MatchSMBIOS; }

    // BIOS (7.1), system (7.2) and base board (7.3). Of several boards the first one that contains
    // no other objects is read.
    int GetBiosVendor(char* buf, unsigned size);
    int GetBiosVersion(char* buf, unsigned size);
    int GetBiosReleaseDate(char* buf, unsigned size);
    int GetSysManufacturer(char* buf, unsigned size);
    int GetSysProductname(char* buf, unsigned size);
    int GetSysVersion(char* buf, unsigned size);
    int GetSystemSerialNumber(char* buf, unsigned size);
    int GetBoardManufacturer(char* buf, unsigned size);
    int GetBoardProduct(char* buf, unsigned size);
    int GetBoardVersion(char* buf, unsigned size);
    int GetBoardSerialNo(char* buf, unsigned size);
    int GetBoardAssetTag(char* buf, unsigned size);

    // Processors (7.5).
    int GetProcessorQuantity();         // of the first 16, those populated with a known status
    int GetProcessorVirtualQuantity();  // of the first 16, all
    int GetProcessorFamily(int cpu, char* buf);
    int GetProcessorManufacturer(int cpu, char* buf, unsigned size);
    int GetProcessorVersion(int cpu, char* buf, unsigned size);
    int GetProcessorSerialNo(int cpu, char* buf, unsigned size);
    int GetProcessorVoltage(int cpu, char* buf);
    int GetProcessorExternalClock(int cpu, char* buf);
    int GetProcessorMaxSpeed(int cpu, char* buf);  // a speed of 0 writes "Unknown" and returns -1
    int GetProcessorCurrentSpeed(int cpu, char* buf);  // likewise
    int GetProcessorStatus(int cpu, unsigned char* status);

    // Caches (7.8) of a processor; level 0, 1 and 2 are L1, L2 and L3. For a processor without a
    // cache of that level they return 0 and write a text that depends on the table's version.
    int GetCacheDesignation(int cpu, int level, char* buf, unsigned size);
    int GetCacheMaxSize(int cpu, int level, char* buf);
    int GetCacheInstalledSize(int cpu, int level, char* buf);
    int GetCacheSpeed(int cpu, int level, char* buf);  // of 0: writes "Unknown" and returns -1

    // Memory (7.6, 7.7, 7.18, 7.21).
    int GetMemoryTotalSize();                      // megabytes, modulo 65536
    int GetMemoryInformation(LocalMemInfo* info);  // -1 when nothing describes the memory

    // Port connectors (7.9). A designator of `size` characters or more is shortened with "...".
    int GetPortQuantity();
    int GetPortType(int port, char* buf);
    int GetPortDecription(int port, char* buf, unsigned size);

    // Power supplies (7.40). Only those whose type bits are a subset of `typeMask` count; n counts
    // them from 1.
    int GetPSQuantity(int typeMask);
    int GetPSRedundantQuantity();  // supplies that belong to a power unit group
    int GetPSManufacturer(int typeMask, int n, char* buf, unsigned size);
    int GetPSDeviceName(int typeMask, int n, char* buf, unsigned size);
    int GetPSSerialNo(int typeMask, int n, char* buf, unsigned size);
    int GetPSStatus(int typeMask, int n, char* buf);
    int GetPSBiosEnable();  // always -1

    // Cooling devices (7.28).
    int GetFanQuantity();
    int GetFanStatus(int fan, char* buf);
    int GetFanDescription(int fan, char* buf);
    int GetFanSpeed(int fan, char* buf);  // without a speed: writes a text that says so, returns -1

    // On-board devices (7.11); n counts from 1 over all structures.
    int GetOnBoardDevQuantity();
    int GetOnBoardDevBiosEnable(int n, int& enabled);
    int GetOnBoardDevType(int n, char* buf);
    int GetOnBoardDevDescription(int n, char* buf);

    // Voltage (7.27) and temperature (7.29) probes. The quantities count the structures. Kept:
    // every other getter finds no probe and returns -1.
    int GetVoltageProbeQuantity();
    int GetVoltageDescription(int location, char* buf, unsigned size);
    int GetVoltageStatus(int location, char* buf);
    int GetVoltageCurrent(int location, char* buf);
    int GetVoltageMax(int location, char* buf);
    int GetVoltageMin(int location, char* buf);
    int GetTemperatureProbeQuantity();
    int GetTemperatureDescription(int location, char* buf, unsigned size);
    int GetTemperatureStatus(int location, char* buf);
    int GetTemperatureCurrent(int location, char* buf);

private:
    // Structure `index` (from 1) of a type, or null. The caller owns it. For type 0 it is the first
    // structure of the table, whatever its type and the index.
    BiosDataItem* GetItem(unsigned char type, unsigned char index);

    void trim(char* s);  // leaves the text as it is

    // The getters of the cache structure with this handle.
    int GetCacheDesignationPrivate(unsigned handle, char* buf, unsigned size);
    int GetCacheMaxSizePrivate(unsigned handle, char* buf);
    int GetCacheInstalledSizePrivate(unsigned handle, char* buf);
    int GetCacheSpeedPrivate(unsigned handle, char* buf);

    // Each answers 1 or 0: whether there is a memory controller, whether it lists modules, whether
    // the memory devices describe the memory.
    int ExistMemCtl();
    int ExistMemModule();
    int ExistMemDev();

    // Memory modules (7.7), reached through the slot list of the memory controller (7.6).
    int GetValidMemModuleHandle(int i);  // handle of slot i, from 0; 0 when there is none
    int GetMemModuleQuantity();
    int GetMemModuleSize(int handle, char* buf);
    int GetMemModuleSpeed(int handle, char* buf);
    int GetMemModuleType(int handle, char* buf);
    int GetMemBankConnector(int handle);
    int GetMemModuleLocate(int handle, char* buf, unsigned size);

    // Memory devices (7.18).
    int GetProperMemDev(char* locator);  // index of the device with this locator, or 0
    int GetMemDevManufacturer(int dev, char* buf, unsigned size);
    int GetMemDevSpeed(int dev, char* buf);
    int GetMemDevSize(int dev, char* buf);  // returns 1 for an empty socket
    int GetMemDevSize(int dev);             // returns megabytes
    int GetMemDevType(int dev, char* buf);
    int GetMemDevTypeDetail(int dev, char* buf);  // appends to `buf`
    int GetMemDevLocator(int dev, char* buf, unsigned size);

    // Helpers of the getters, not exported. An item is null when its structure is missing.
    typedef std::unique_ptr<BiosDataItem> ItemPtr;
    typedef int (SmBios::*CacheGetter)(unsigned handle, char* buf);
    TALVANE_LOCAL talvane::StructureWalk Structures(unsigned char structureType) const;
    TALVANE_LOCAL ItemPtr ItemAt(unsigned char structureType, int index);
    TALVANE_LOCAL ItemPtr Board();
    TALVANE_LOCAL ItemPtr Module(int handle) const;
    TALVANE_LOCAL ItemPtr Probe(unsigned char structureType, int location);
    TALVANE_LOCAL int FindCache(int cpu, int level, unsigned& handle);
    template <CacheGetter getter>
    TALVANE_LOCAL int GetCacheText(int cpu, int level, char* buf);
    TALVANE_LOCAL void SummariseModules(LocalMemInfo& info);
    TALVANE_LOCAL void SummariseDevices(LocalMemInfo& info);
    TALVANE_LOCAL void WriteTypeDetail(int device, BankInfo& bank);

    int InitOK;
    unsigned char* BiosData;  // the copy of the table; zero bytes follow it
    unsigned short BiosDataLength;
    unsigned char MatchSMBIOS;
    unsigned char MatchDMI;
    SmBiosTableEntryPoint SmBiosEntry;
    DMITableEntryPoint DmiEntry;
};
static_assert(sizeof(SmBios) == 60, "the members above, and two bytes at the end");

// Writes `value` in decimal; `radix` is ignored.
TALVANE_EXPORT void itoa(int value, char* out, int radix);

#endif
