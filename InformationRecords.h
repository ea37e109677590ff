// SPDX-License-Identifier: MIT
//
// The records that cross the library's boundary. The caller allocates one whole record, fills it
// with zeros and passes its address. The library writes the fields for which the command has an
// answer and leaves every other byte untouched.
//
// The layout is that of 32-bit x86 (int and long have 4 bytes, a double is aligned to 4) and part
// of the binary interface. Sizes and offsets are checked below each record, so a build for another
// layout stops here. For C99, C++98 and later.
#ifndef TALVANE_INFORMATION_RECORDS_H
#define TALVANE_INFORMATION_RECORDS_H

#include <stddef.h>

#if defined(__cplusplus) && __cplusplus >= 201103L
#define TALVANE_CHECK(condition, name) static_assert(condition, #name)
#else
#define TALVANE_CHECK(condition, name) typedef char name[(condition) ? 1 : -1]
#endif
#define TALVANE_SIZE(record, size) TALVANE_CHECK(sizeof(record) == (size), record##_size)
#define TALVANE_AT(record, field, offset) \
    TALVANE_CHECK(offsetof(record, field) == (offset), record##_##field##_offset)

/* The thresholds of a sensor, as SetThresholdInfo names them. */
enum ThresholdFlag {
    THRESHOLD_LOWER_WARNING = 0,
    THRESHOLD_LOWER_CRITICAL = 1,
    THRESHOLD_LOWER_NON_RECOVERABLE = 2,
    THRESHOLD_UPPER_WARNING = 3,
    THRESHOLD_UPPER_CRITICAL = 4,
    THRESHOLD_UPPER_NON_RECOVERABLE = 5
};

/* The shortest and the longest time-out that SetWatchDogTimer accepts, in milliseconds. */
#define TALVANE_WATCHDOG_SHORTEST 10000
#define TALVANE_WATCHDOG_LONGEST  999000

#ifdef __cplusplus
extern "C" {
#endif

/* Processors and their caches: GetInfo 0x20000. */

typedef struct CACHE {
    char MaxSize[16];
    char InstalledSize[16];
    char speed[16];
    char designation[32]; /* socket designation */
} CACHE;
TALVANE_SIZE(CACHE, 80);
TALVANE_AT(CACHE, MaxSize, 0);
TALVANE_AT(CACHE, InstalledSize, 16);
TALVANE_AT(CACHE, speed, 32);
TALVANE_AT(CACHE, designation, 48);

typedef struct CPU {
    char family[48];
    char stepping[16]; /* untouched, but a family name of 48 characters or more runs into it */
    char MaxSpeed[16];
    char CurrentSpeed[16];
    char ExternalClock[16];
    char manufacturer[48];
    char UsageRate[16]; /* untouched */
    CACHE cache[3];     /* levels 1, 2 and 3 */
    int IsUHT;          /* 1 when the processor's status is unknown */
    int IsDisabled;     /* 1 when the user or the BIOS has disabled it */
} CPU;
TALVANE_SIZE(CPU, 424);
TALVANE_AT(CPU, family, 0);
TALVANE_AT(CPU, stepping, 48);
TALVANE_AT(CPU, MaxSpeed, 64);
TALVANE_AT(CPU, CurrentSpeed, 80);
TALVANE_AT(CPU, ExternalClock, 96);
TALVANE_AT(CPU, manufacturer, 112);
TALVANE_AT(CPU, UsageRate, 160);
TALVANE_AT(CPU, cache, 176);
TALVANE_AT(CPU, IsUHT, 416);
TALVANE_AT(CPU, IsDisabled, 420);

typedef struct ProcessorInformation {
    int quantity; /* up to 16: a caller that expects more than 8 passes a longer record */
    CPU cpu[8];
} ProcessorInformation;
TALVANE_SIZE(ProcessorInformation, 3396);
TALVANE_AT(ProcessorInformation, quantity, 0);
TALVANE_AT(ProcessorInformation, cpu, 4);

/* Memory: GetInfo 0x40000. */

typedef struct BANK {
    char size[16];
    char speed[16];
    char type[24];
    char TypeDetail[32];
    char manufacturer[32];
    int SlotNumber;
} BANK;
TALVANE_SIZE(BANK, 124);
TALVANE_AT(BANK, size, 0);
TALVANE_AT(BANK, speed, 16);
TALVANE_AT(BANK, type, 32);
TALVANE_AT(BANK, TypeDetail, 56);
TALVANE_AT(BANK, manufacturer, 88);
TALVANE_AT(BANK, SlotNumber, 120);

typedef struct MemoryInformation {
    int TotalSize; /* megabytes, modulo 65536 */
    int quantity;
    BANK bank[16];
} MemoryInformation;
TALVANE_SIZE(MemoryInformation, 1992);
TALVANE_AT(MemoryInformation, TotalSize, 0);
TALVANE_AT(MemoryInformation, quantity, 4);
TALVANE_AT(MemoryInformation, bank, 8);

/* Port connectors: GetInfo 0x80000. */

typedef struct PORT {
    char type[48];
    char description[32];
} PORT;
TALVANE_SIZE(PORT, 80);
TALVANE_AT(PORT, type, 0);
TALVANE_AT(PORT, description, 48);

typedef struct IOInformation {
    int quantity; /* up to 128: a caller that expects more than 32 passes a longer record */
    PORT port[32];
} IOInformation;
TALVANE_SIZE(IOInformation, 2564);
TALVANE_AT(IOInformation, quantity, 0);
TALVANE_AT(IOInformation, port, 4);

/* Power supplies: GetInfo 0x800000 (all types) and 0x1000000 (UPS). */

typedef struct SYS_POWER {
    char manufacturer[32];
    char ProductName[32]; /* untouched */
    char DeviceName[32];
    char ProductVersion[16]; /* untouched */
    char SerialNo[16];
    char status[16];
    char BiosEnable[8]; /* untouched, but the longest status text runs into it */
} SYS_POWER;
TALVANE_SIZE(SYS_POWER, 152);
TALVANE_AT(SYS_POWER, manufacturer, 0);
TALVANE_AT(SYS_POWER, ProductName, 32);
TALVANE_AT(SYS_POWER, DeviceName, 64);
TALVANE_AT(SYS_POWER, ProductVersion, 96);
TALVANE_AT(SYS_POWER, SerialNo, 112);
TALVANE_AT(SYS_POWER, status, 128);
TALVANE_AT(SYS_POWER, BiosEnable, 144);

typedef struct SystemPowerInformation {
    int TotalNumber;     /* up to 32: a caller that expects more than 8 passes a longer record */
    int RedundantNumber; /* written only by 0x800000 */
    SYS_POWER PowerSupply[8];
} SystemPowerInformation;
TALVANE_SIZE(SystemPowerInformation, 1224);
TALVANE_AT(SystemPowerInformation, TotalNumber, 0);
TALVANE_AT(SystemPowerInformation, RedundantNumber, 4);
TALVANE_AT(SystemPowerInformation, PowerSupply, 8);

/* Sensor thresholds, in the sensor's engineering unit. */

typedef struct SensorThresholdInfo {
    int DeviceID; /* entity */
    int SensorType;
    double UpperNonRecoverThresholdValue;
    double UpperCriticalThresholdValue;
    double UpperNonCriticalThresholdValue;
    double LowerNonRecoverThreshold;
    double LowerCriticalThreshold;
    double LowerNonCriticalThreshold;
    double MaxThreshold; /* highest value that the sensor can report */
    double MinThreshold; /* lowest value that the sensor can report */
    char readableFlag;   /* untouched */
    char settableFlag;   /* untouched */
} SensorThresholdInfo;
TALVANE_SIZE(SensorThresholdInfo, 76);
TALVANE_AT(SensorThresholdInfo, DeviceID, 0);
TALVANE_AT(SensorThresholdInfo, SensorType, 4);
TALVANE_AT(SensorThresholdInfo, UpperNonRecoverThresholdValue, 8);
TALVANE_AT(SensorThresholdInfo, UpperCriticalThresholdValue, 16);
TALVANE_AT(SensorThresholdInfo, UpperNonCriticalThresholdValue, 24);
TALVANE_AT(SensorThresholdInfo, LowerNonRecoverThreshold, 32);
TALVANE_AT(SensorThresholdInfo, LowerCriticalThreshold, 40);
TALVANE_AT(SensorThresholdInfo, LowerNonCriticalThreshold, 48);
TALVANE_AT(SensorThresholdInfo, MaxThreshold, 56);
TALVANE_AT(SensorThresholdInfo, MinThreshold, 64);
TALVANE_AT(SensorThresholdInfo, readableFlag, 72);
TALVANE_AT(SensorThresholdInfo, settableFlag, 73);

typedef struct SensorThresholdInformation {
    int quantity; /* sensors whose thresholds were read, at most 64 */
    SensorThresholdInfo SensorThreshold[64];
} SensorThresholdInformation;
TALVANE_SIZE(SensorThresholdInformation, 4868);
TALVANE_AT(SensorThresholdInformation, quantity, 0);
TALVANE_AT(SensorThresholdInformation, SensorThreshold, 4);

/* One sensor. The three kinds share one layout and differ in the name of the reading. The SMBIOS
   commands write only the reading, and min and max of a voltage. */

typedef struct FAN_DEVICE {
    unsigned char sensorNumber;
    char status; /* untouched */
    int DeviceID;
    int SensorType;
    char desc[64];
    char speed[16]; /* the long SMBIOS fan texts run into min and max */
    char min[16];
    char max[16];
    char IdString[16];
    SensorThresholdInfo sti;
} FAN_DEVICE;
TALVANE_SIZE(FAN_DEVICE, 216);
TALVANE_AT(FAN_DEVICE, sensorNumber, 0);
TALVANE_AT(FAN_DEVICE, status, 1);
TALVANE_AT(FAN_DEVICE, DeviceID, 4);
TALVANE_AT(FAN_DEVICE, SensorType, 8);
TALVANE_AT(FAN_DEVICE, desc, 12);
TALVANE_AT(FAN_DEVICE, speed, 76);
TALVANE_AT(FAN_DEVICE, min, 92);
TALVANE_AT(FAN_DEVICE, max, 108);
TALVANE_AT(FAN_DEVICE, IdString, 124);
TALVANE_AT(FAN_DEVICE, sti, 140);

typedef struct VOLTAGE_PROBE {
    unsigned char sensorNumber;
    char status; /* untouched */
    int DeviceID;
    int SensorType;
    char desc[64];
    char CurrentVoltage[16];
    char min[16];
    char max[16];
    char IdString[16];
    SensorThresholdInfo sti;
} VOLTAGE_PROBE;
TALVANE_SIZE(VOLTAGE_PROBE, 216);
TALVANE_AT(VOLTAGE_PROBE, sensorNumber, 0);
TALVANE_AT(VOLTAGE_PROBE, status, 1);
TALVANE_AT(VOLTAGE_PROBE, DeviceID, 4);
TALVANE_AT(VOLTAGE_PROBE, SensorType, 8);
TALVANE_AT(VOLTAGE_PROBE, desc, 12);
TALVANE_AT(VOLTAGE_PROBE, CurrentVoltage, 76);
TALVANE_AT(VOLTAGE_PROBE, min, 92);
TALVANE_AT(VOLTAGE_PROBE, max, 108);
TALVANE_AT(VOLTAGE_PROBE, IdString, 124);
TALVANE_AT(VOLTAGE_PROBE, sti, 140);

typedef struct TEMPERATURE_PROBE {
    unsigned char sensorNumber;
    char status; /* untouched */
    int DeviceID;
    int SensorType;
    char desc[64];
    char CurrentTemperature[16];
    char min[16];
    char max[16];
    char IdString[16];
    SensorThresholdInfo sti;
} TEMPERATURE_PROBE;
TALVANE_SIZE(TEMPERATURE_PROBE, 216);
TALVANE_AT(TEMPERATURE_PROBE, sensorNumber, 0);
TALVANE_AT(TEMPERATURE_PROBE, status, 1);
TALVANE_AT(TEMPERATURE_PROBE, DeviceID, 4);
TALVANE_AT(TEMPERATURE_PROBE, SensorType, 8);
TALVANE_AT(TEMPERATURE_PROBE, desc, 12);
TALVANE_AT(TEMPERATURE_PROBE, CurrentTemperature, 76);
TALVANE_AT(TEMPERATURE_PROBE, min, 92);
TALVANE_AT(TEMPERATURE_PROBE, max, 108);
TALVANE_AT(TEMPERATURE_PROBE, IdString, 124);
TALVANE_AT(TEMPERATURE_PROBE, sti, 140);

/* quantity is the number that the source reports, even where the array has no room for as many. */

typedef struct FanInformation {
    int quantity; /* up to 63 from SMBIOS: a caller that expects more than 16 passes a longer record
                   */
    FAN_DEVICE fan[16];
} FanInformation;
TALVANE_SIZE(FanInformation, 3460);
TALVANE_AT(FanInformation, quantity, 0);
TALVANE_AT(FanInformation, fan, 4);

typedef struct VoltageInformation {
    int quantity;
    VOLTAGE_PROBE voltage[32];
} VoltageInformation;
TALVANE_SIZE(VoltageInformation, 6916);
TALVANE_AT(VoltageInformation, quantity, 0);
TALVANE_AT(VoltageInformation, voltage, 4);

typedef struct TemperatureInformation {
    int quantity;
    TEMPERATURE_PROBE temperature[32];
} TemperatureInformation;
TALVANE_SIZE(TemperatureInformation, 6916);
TALVANE_AT(TemperatureInformation, quantity, 0);
TALVANE_AT(TemperatureInformation, temperature, 4);

/* Board and BIOS: GetInfo 0x10000. */

typedef struct BaseBoardInformation {
    char ProductName[32];
    char RomVersion[32];
    char RomReleaseDate[16];
    char RomVendor[32];
    char SerialNo[16];
    char AssetTag[32]; /* untouched */
    char Manufacturer[32];
    char RevisionLevel[16]; /* untouched */
} BaseBoardInformation;
TALVANE_SIZE(BaseBoardInformation, 208);
TALVANE_AT(BaseBoardInformation, ProductName, 0);
TALVANE_AT(BaseBoardInformation, RomVersion, 32);
TALVANE_AT(BaseBoardInformation, RomReleaseDate, 64);
TALVANE_AT(BaseBoardInformation, RomVendor, 80);
TALVANE_AT(BaseBoardInformation, SerialNo, 112);
TALVANE_AT(BaseBoardInformation, AssetTag, 128);
TALVANE_AT(BaseBoardInformation, Manufacturer, 160);
TALVANE_AT(BaseBoardInformation, RevisionLevel, 192);

/* System: GetInfo 0x10000000. */

typedef struct SysInformation {
    char SysProductName[32];
    char manufacturer[32];
    char version[16];
} SysInformation;
TALVANE_SIZE(SysInformation, 80);
TALVANE_AT(SysInformation, SysProductName, 0);
TALVANE_AT(SysInformation, manufacturer, 32);
TALVANE_AT(SysInformation, version, 64);

/* PCI functions: GetInfo 0x100000. */

typedef struct DEV {
    int BiosEnable;   /* untouched */
    char model[64];   /* class name */
    char type[64];    /* sub-class name */
    char desc[32];    /* bus, device and function */
    int IRQ;          /* interrupt line, 0 when there is none */
    long MemBase;     /* untouched */
    long IOBase;      /* first base address register, flag bits included */
    int DMAChannel;   /* untouched */
    int Duplex;       /* untouched */
    int revision;     /* revision identifier */
    char status[256]; /* texts of the status register, each ended by a semicolon */
} DEV;
TALVANE_SIZE(DEV, 444);
TALVANE_AT(DEV, BiosEnable, 0);
TALVANE_AT(DEV, model, 4);
TALVANE_AT(DEV, type, 68);
TALVANE_AT(DEV, desc, 132);
TALVANE_AT(DEV, IRQ, 164);
TALVANE_AT(DEV, MemBase, 168);
TALVANE_AT(DEV, IOBase, 172);
TALVANE_AT(DEV, DMAChannel, 176);
TALVANE_AT(DEV, Duplex, 180);
TALVANE_AT(DEV, revision, 184);
TALVANE_AT(DEV, status, 188);

typedef struct DeviceInformation {
    int quantity;
    DEV dev[64];
} DeviceInformation;
TALVANE_SIZE(DeviceInformation, 28420);
TALVANE_AT(DeviceInformation, quantity, 0);
TALVANE_AT(DeviceInformation, dev, 4);

/* IDE drives: GetInfo 0x200000. */

typedef struct DriveInfo {
    int isRaid;               /* untouched */
    unsigned long driveOrder; /* untouched */
    char type[64];
    char size[64]; /* bytes, decimal */
    char model[64];
    char ControllerType[64];
    char ControllerNo[64];
    char SerialNo[64];
    char FirmwareVersion[64]; /* untouched */
} DriveInfo;
TALVANE_SIZE(DriveInfo, 456);
TALVANE_AT(DriveInfo, isRaid, 0);
TALVANE_AT(DriveInfo, driveOrder, 4);
TALVANE_AT(DriveInfo, type, 8);
TALVANE_AT(DriveInfo, size, 72);
TALVANE_AT(DriveInfo, model, 136);
TALVANE_AT(DriveInfo, ControllerType, 200);
TALVANE_AT(DriveInfo, ControllerNo, 264);
TALVANE_AT(DriveInfo, SerialNo, 328);
TALVANE_AT(DriveInfo, FirmwareVersion, 392);

typedef struct StorageInformation {
    int quantityIDE;
    int quantitySCSI; /* untouched */
    DriveInfo driveArray[24];
} StorageInformation;
TALVANE_SIZE(StorageInformation, 10952);
TALVANE_AT(StorageInformation, quantityIDE, 0);
TALVANE_AT(StorageInformation, quantitySCSI, 4);
TALVANE_AT(StorageInformation, driveArray, 8);

/* Partitions of the IDE drives: GetInfo 0x400000. */

typedef struct PARTITION {
    char description[64]; /* device path and partition number */
    char label[64];       /* untouched */
    char size[64];        /* bytes, decimal */
    char used[64];        /* untouched */
    char FileSystem[64];
    int isSystem; /* untouched */
} PARTITION;
TALVANE_SIZE(PARTITION, 324);
TALVANE_AT(PARTITION, description, 0);
TALVANE_AT(PARTITION, label, 64);
TALVANE_AT(PARTITION, size, 128);
TALVANE_AT(PARTITION, used, 192);
TALVANE_AT(PARTITION, FileSystem, 256);
TALVANE_AT(PARTITION, isSystem, 320);

typedef struct PartitionInformation {
    int quantity;
    PARTITION partition[26];
} PartitionInformation;
TALVANE_SIZE(PartitionInformation, 8428);
TALVANE_AT(PartitionInformation, quantity, 0);
TALVANE_AT(PartitionInformation, partition, 4);

/* Processor load: GetCpuUsageRate. */

typedef struct CpuUsageRageInformation { /* Kept: agents know the record under this spelling. */
    int quantity;
    int UsageRate[8]; /* busy percentage, 0 to 100 */
} CpuUsageRageInformation;
TALVANE_SIZE(CpuUsageRageInformation, 36);
TALVANE_AT(CpuUsageRageInformation, quantity, 0);
TALVANE_AT(CpuUsageRageInformation, UsageRate, 4);

/* Uninterruptible power supplies as agents declare them. No command fills these two records. */

typedef struct UPSInfor {
    char DeviceName[16];
    char SerialNo[32];
    char ProductName[16];
    char BiosStatus[16];
    char Remain[16];
    char current[16];
} UPSInfor;
TALVANE_SIZE(UPSInfor, 112);
TALVANE_AT(UPSInfor, DeviceName, 0);
TALVANE_AT(UPSInfor, SerialNo, 16);
TALVANE_AT(UPSInfor, ProductName, 48);
TALVANE_AT(UPSInfor, BiosStatus, 64);
TALVANE_AT(UPSInfor, Remain, 80);
TALVANE_AT(UPSInfor, current, 96);

typedef struct UPSInformation {
    int quantity;
    UPSInfor ups[16];
} UPSInformation;
TALVANE_SIZE(UPSInformation, 1796);
TALVANE_AT(UPSInformation, quantity, 0);
TALVANE_AT(UPSInformation, ups, 4);

#ifdef __cplusplus
}
#endif

#undef TALVANE_AT
#undef TALVANE_SIZE
#undef TALVANE_CHECK

#endif
