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
// library sends nothing to a log. Two diagnostics go to standard error: "open /dev/mem" and
// "lseek /dev/mem", each with the reason.
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

   TALVANE_PCI needs no SMBIOS table. With more PCI functions than the record holds it tries three
   times, pauses 5000 seconds after each, and leaves the record untouched.

   Returns 0, -1 when the machine has no readable SMBIOS or DMI table, or 1 when busy. */
TALVANE_API int GetInfo(unsigned long command, void* buffer);

/* Non-zero when the firmware has an SMBIOS entry point (a legacy DMI one alone does not count),
   whether or not its table could be read. */
TALVANE_API int IsSmBiosSupport(void);

/* Frees what the library keeps between calls; the next call reads the machine anew. Returns 0. */
TALVANE_API int release(void);

#ifdef __cplusplus
}
#endif

#endif
