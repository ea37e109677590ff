// SPDX-License-Identifier: MIT
//
// The exported interface of libTalvane: what hardware this machine holds and how it is doing.
// For C99, C++98 and later, on 32-bit x86 Linux.
//
// Unless a function says otherwise it returns
//    0  success,
//   -1  failure,
//    1  busy: it was called from inside a call of its own kind, and nothing was done.
// Everything happens on the caller's thread. Only one thread may call at a time: the busy answer
// stops a nested call (from a signal handler, for example), not a second thread.
//
// Reading the machine needs root. Where something cannot be read, a function returns -1 or leaves
// the field untouched. When memory runs out, a C++ program may get std::bad_alloc from any
// function, which may have filled a part of the record; no flag stays set, and the next call tries
// again. Memory that runs out while the BMC is
// first looked for can end IPMI for the process: then no request reaches the BMC. A C program ends.
// The library writes no log, only a few diagnostics: on standard error "open /dev/mem", "lseek
// /dev/mem" and "/proc/stat", each with the reason; on standard output "No ide devices.", "File
// open failed!" and "File is not exist!".
#ifndef TALVANE_H
#define TALVANE_H

#include "InformationRecords.h"

#if defined(__GNUC__)
#define TALVANE_API __attribute__((visibility("default")))
#else
#define TALVANE_API
#endif

/* The commands of GetInfo, each with the record that it fills. */
#define TALVANE_BOARD        0x10000UL    /* BaseBoardInformation */
#define TALVANE_PROCESSORS   0x20000UL    /* ProcessorInformation */
#define TALVANE_MEMORY       0x40000UL    /* MemoryInformation */
#define TALVANE_PORTS        0x80000UL    /* IOInformation */
#define TALVANE_PCI          0x100000UL   /* DeviceInformation */
#define TALVANE_DRIVES       0x200000UL   /* StorageInformation */
#define TALVANE_PARTITIONS   0x400000UL   /* PartitionInformation */
#define TALVANE_POWER        0x800000UL   /* SystemPowerInformation */
#define TALVANE_UPS          0x1000000UL  /* SystemPowerInformation */
#define TALVANE_FANS         0x2000000UL  /* FanInformation */
#define TALVANE_VOLTAGES     0x4000000UL  /* VoltageInformation */
#define TALVANE_TEMPERATURES 0x8000000UL  /* TemperatureInformation */
#define TALVANE_SYSTEM       0x10000000UL /* SysInformation */

#ifdef __cplusplus
extern "C" {
#endif

/* Fills the record of one command. `buffer` points to a whole record of the command's kind, which
   the caller has filled with zeros: many texts are written without a terminator, and fields for
   which the machine has no answer stay untouched. A command must equal one of the codes above; for
   any other code nothing is written and 0 is returned.

   The numbers of processors, ports, power supplies and fans come from the firmware, and that many
   elements are written. A machine can state more than the record has room for (up to 16
   processors, 128 ports, 32 power supplies, 63 fans): a careful caller allocates room for those.

   TALVANE_PCI, TALVANE_DRIVES and TALVANE_PARTITIONS need no SMBIOS table. With more PCI functions
   than the record holds, GetInfo tries three times, pauses for 5000 seconds after each time, leaves
   the record untouched and returns 0. The entry after the last drive may have its `type`
   overwritten.

   Returns 0, -1 when the machine has no readable SMBIOS or DMI table, or 1 when busy. A call from
   within IsSmBiosSupport, while that reads the table, is busy as well. */
TALVANE_API int GetInfo(unsigned long command, void* buffer);

/* Returns non-zero when the firmware has an SMBIOS entry point, whether or not its table could be
   read. A legacy DMI entry point alone does not count. A call from within another call that is
   reading the table returns 0. */
TALVANE_API int IsSmBiosSupport(void);

/* Returns non-zero when the machine has a baseboard management controller (BMC) that /dev/ipmi
   leads to. A call from within another call that is looking for the BMC returns 0. Where the device
   opens and no interface answers, or the process may not look at I/O ports, two descriptors stay
   open until the process ends. */
TALVANE_API int IsIpmiSupport(void);

/* Fills the record of TALVANE_FANS, TALVANE_VOLTAGES or TALVANE_TEMPERATURES from the BMC's
   sensors. The first call reads the BMC's whole sensor repository. Call it before the threshold
   functions: when one of those has read the repository first, it has kept no list of sensors, and
   every later GetIpmiInfo finds none. `quantity` is the number of all sensors of the kind; the
   first 16 fans or 32 others are written. Texts are NUL-terminated. The reading of a sensor that
   cannot be read is "Unknown". Every voltage and temperature has the thresholds of the first sensor
   of its kind.

   Returns 0, even for any other command, for which nothing is written. Returns -1 when there is no
   sensor of the kind, when the repository cannot be read, or when there is no BMC. Returns 1 when
   busy. After the first call on a machine without a BMC every later call returns 1. */
TALVANE_API int GetIpmiInfo(unsigned long command, void* buffer);

/* Clears the record and lists in it the thresholds of the first 64 records of the sensor
   repository. Like the two functions below it reads the repository when no call has read it before;
   after that GetIpmiInfo finds no sensor. Returns 0, or -1 without a BMC, with a null pointer, or
   when the repository cannot be read. Never busy. */
TALVANE_API int GetAllThresholdInfo(SensorThresholdInformation* buffer);

/* Does the same for the sensors of one entity (`deviceID`) and sensor type. Always returns -1:
   `quantity` says how many sensors were found. */
TALVANE_API int GetThresholdInfo(int deviceID, int sensorType, SensorThresholdInformation* buffer);

/* Sets one threshold (a ThresholdFlag) of all sensors of one entity and sensor type. The value is
   in the sensors' unit. Other thresholds that would then be out of order are moved along; a
   threshold that a sensor does not allow to be set is left out. Returns 0, even when no sensor
   matches, -1 on failure, or 1 when busy. */
TALVANE_API int SetThresholdInfo(int deviceID, int sensorType, int thresholdFlag,
                                 double thresholdValue);

/* The BMC's watchdog timer. The BMC takes the action when nobody resets the timer before it has
   counted down. Times are in milliseconds, from 10000 to 999000; the BMC counts in tenths of a
   second. Actions: 0 none, 1 hard reset, 2 power down, 3 power cycle.
   Set sets the timer and starts it. Reset starts it over. Stop stops it. Get answers the settings
   and the time that is left; it skips an answer whose pointer is null. All return 0, -1 or 1.

   A Set or Get that returns 1 leaves GetIpmiInfo busy until a later Set or Get has succeeded or
   failed. */
TALVANE_API int SetWatchDogTimer(int timerAction, int timeOutValue);
TALVANE_API int ResetWatchDogTimer(void);
TALVANE_API int StopWatchDogTimer(void);
TALVANE_API int GetWatchDogTimer(unsigned char* timerAcion, int* timeOutValue,
                                 int* presentTimerOutValue);

/* Answers the revision of the BMC's firmware; the minor one is from 0 to 99. Returns 0, -1 or 1. */
TALVANE_API int GetBMCVersion(unsigned char* majorFirmwareRevision,
                              unsigned char* minorFirmwareRevision);

/* Measures how busy the processors are while it sleeps for `interval` seconds. The interval must be
   positive: a processor without a tick in that time ends the program by a division by zero. Signals
   do not shorten the sleep. Clears the record first, then fills in the busy share of each processor
   in percent, rounded up. The first call of the process counts the processors, up to 8, in the
   first 1024 bytes of /proc/stat; while the file cannot be read, it counts one that is not there.
   Returns 0, or -1 and a cleared record when a counted processor is not there. */
TALVANE_API int GetCpuUsageRate(int interval, CpuUsageRageInformation* buffer);

/* Returns the share of the memory in use, buffers and page cache included, in whole percent. Runs
   free and awk in a shell. They write the file Memusage_dat to the working directory, and the
   function removes it again: only one call at a time in one folder. Returns 0 when the file cannot
   be created. */
TALVANE_API int GetMemUsageRate(void);

/* Frees what the library keeps between calls: call it once, at the end. A later call reads the
   SMBIOS table again. Kept: in one process the library looks for the BMC and reads the sensor
   repository only once, so after a release no request reaches the BMC and no sensor is known. What
   is asked of the BMC then goes to the old descriptor's number, and so does the next release's
   closing; another file may have that number by then. A program that unloads the library calls this
   first: what the library keeps is not freed by dlclose. Must
   not be called from inside another call (by a signal handler, for example): that call would use
   freed memory. Returns 0. */
TALVANE_API int release(void);

#ifdef __cplusplus
}
#endif

#endif
