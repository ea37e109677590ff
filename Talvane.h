// SPDX-License-Identifier: MIT
//
// The exported interface of libTalvane: what hardware this machine holds and how it is doing.
// Serves C99, C++98 and later, on 32-bit x86 Linux.
//
// Unless a function says otherwise it returns
//    0  success,
//   -1  failure,
//    1  busy: called from inside a call of its own kind; nothing was done.
// Everything happens on the caller's thread. The functions are meant for one thread at a time: the
// busy answer stops a nested call (from a signal handler, say), not a second thread.
//
// Reading the machine takes root; what cannot be read is answered with -1 or left unwritten. The
// library sends nothing to a log. Diagnostics are few: on standard error "open /dev/mem" and
// "lseek /dev/mem" and "/proc/stat", each with the reason; on standard output "No ide devices.",
// "File open failed!" and "File is not exist!".
#ifndef TALVANE_H
#define TALVANE_H

#include "InformationRecords.h"

#if defined(__GNUC__)
#define TALVANE_API __attribute__((visibility("default")))
#else
#define TALVANE_API
#endif

/* Commands of GetInfo, each with the record that it fills. */
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

/* Fills the record of one command. `buffer` points at a whole record of the command's kind,
   zero-filled by the caller: texts are written without a terminator where they fill their field up
   to its last byte, and fields that the machine has no answer for are not written. A command is one
   of the codes above exactly; any other code writes nothing and returns 0.

   The counts of processors, ports, power supplies and fans are the firmware's, and as many elements
   are written as they say. A machine can state more than the record has room for (up to 16
   processors, 128 ports, 32 power supplies, 63 fans): a careful caller allocates for those.

   TALVANE_PCI, TALVANE_DRIVES and TALVANE_PARTITIONS need no SMBIOS table. With more PCI functions
   than the record holds it tries three times, pauses 5000 seconds after each, and leaves the record
   untouched. The entry behind the last drive may have its `type` overwritten.

   Returns 0, -1 when the machine has no readable SMBIOS or DMI table, or 1 when busy. */
TALVANE_API int GetInfo(unsigned long command, void* buffer);

/* Non-zero when the firmware has an SMBIOS entry point (a legacy DMI one alone does not count),
   whether or not its table could be read. */
TALVANE_API int IsSmBiosSupport(void);

/* Non-zero when the machine has a baseboard management controller (BMC) behind /dev/ipmi. */
TALVANE_API int IsIpmiSupport(void);

/* Fills the record of TALVANE_FANS, TALVANE_VOLTAGES or TALVANE_TEMPERATURES from the BMC's
   sensors. The first call reads the BMC's whole sensor repository, unless a threshold function has
   read it before: that one keeps no list of sensors, and every GetIpmiInfo behind it finds none. So
   call GetIpmiInfo first. `quantity` is the count of all sensors of the kind, of which the first 16
   fans or 32 others are written. Texts are terminated; a sensor that cannot be read reads
   "Unknown". The thresholds of every voltage and temperature are those of the first one of its
   kind.

   Returns 0, also for any other command, which writes nothing; -1 when there is no sensor of the
   kind, or none can be read, or there is no BMC; 1 when busy. After the first call without a BMC
   every later one is answered 1. */
TALVANE_API int GetIpmiInfo(unsigned long command, void* buffer);

/* Lists the thresholds of the first 64 records of the sensor repository in a record that is cleared
   first. Like the two functions below it reads the repository when nothing has read it before;
   after that GetIpmiInfo finds no sensor. Returns 0, or -1 without a BMC or with a null pointer.
   Never busy. */
TALVANE_API int GetAllThresholdInfo(SensorThresholdInformation* buffer);

/* The same for the sensors of one entity (`deviceID`) and sensor type. Returns -1 in any case:
   `quantity` tells what was found. */
TALVANE_API int GetThresholdInfo(int deviceID, int sensorType, SensorThresholdInformation* buffer);

/* Sets one threshold, a ThresholdFlag, of all sensors of one entity and sensor type, in the
   sensors' unit. Thresholds that would be out of order are moved along; a threshold that a sensor
   does not let be set is left out. Returns 0, also when no sensor matches, -1 on failure, 1 when
   busy. */
TALVANE_API int SetThresholdInfo(int deviceID, int sensorType, int thresholdFlag,
                                 double thresholdValue);

/* The BMC's watchdog timer, which is to be reset before it has counted down. Times are in
   milliseconds, from 10000 to 999000, counted by the BMC in tenths of a second. Actions: 0 none,
   1 hard reset, 2 power down, 3 power cycle.
   Set: sets the timer and starts it. Reset: starts it over. Stop: stops it. Get: the settings and
   what is left; a null pointer skips an answer. All return 0, -1 or 1.

   A Set or Get that answers 1 leaves GetIpmiInfo busy until a later one of them is done. */
TALVANE_API int SetWatchDogTimer(int timerAction, int timeOutValue);
TALVANE_API int ResetWatchDogTimer(void);
TALVANE_API int StopWatchDogTimer(void);
TALVANE_API int GetWatchDogTimer(unsigned char* timerAcion, int* timeOutValue,
                                 int* presentTimerOutValue);

/* The revision of the BMC's firmware; the minor one from 0 to 99. Returns 0, -1 or 1. */
TALVANE_API int GetBMCVersion(unsigned char* majorFirmwareRevision,
                              unsigned char* minorFirmwareRevision);

/* Measures how busy the processors are during a sleep of `interval` seconds, which must be
   positive: a processor without a tick in that time ends the program by a division by zero. Clears
   the record first, then fills in the busy share of each processor in percent, rounded up. The
   processors are counted in the first call of the process, up to 8, out of the first 1024 bytes of
   /proc/stat. Returns 0, or -1 with a cleared record when a counted processor is no longer there.
 */
TALVANE_API int GetCpuUsageRate(int interval, CpuUsageRageInformation* buffer);

/* The share of the memory in use, buffers and page cache included, in whole percent. Runs free and
   awk in a shell and lets them write the file Memusage_dat in the working directory, which is
   removed again: one call at a time in one folder. Returns 0 when the file cannot be made. */
TALVANE_API int GetMemUsageRate(void);

/* Frees what the library keeps between calls; the next call reads the machine anew. Kept: the
   sensor repository is read once in a process, and the BMC is not found again: after a release no
   sensor is known. Not to be called from inside another call (by a signal handler, say), which
   would go on with what is freed. Returns 0. */
TALVANE_API int release(void);

#ifdef __cplusplus
}
#endif

#endif
