// SPDX-License-Identifier: MIT
//
// An agent for measuring: runs the commands of GetInfo that its arguments name, or every one of the
// SMBIOS table for "all", and prints each text that they answer, unless the first argument is
// "--quiet". Without arguments it only starts and ends.
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "Talvane.h"

// A record is a head. If `stride` is not 0, elements follow: as many as the int at `count` says.
typedef struct {
    const char* name;
    unsigned long code;
    size_t head;
    size_t stride;
    size_t count;
    int alone;  // not among "all", which is about the SMBIOS table
} Command;

#define ELEMENTS(record, count, array) \
    offsetof(record, array), sizeof(((record*)0)->array[0]), offsetof(record, count)

static const Command kCommands[] = {
    {"board", TALVANE_BOARD, sizeof(BaseBoardInformation), 0, 0, 0},
    {"processors", TALVANE_PROCESSORS, ELEMENTS(ProcessorInformation, quantity, cpu), 0},
    {"memory", TALVANE_MEMORY, ELEMENTS(MemoryInformation, quantity, bank), 0},
    {"ports", TALVANE_PORTS, ELEMENTS(IOInformation, quantity, port), 0},
    {"power", TALVANE_POWER, ELEMENTS(SystemPowerInformation, TotalNumber, PowerSupply), 0},
    {"ups", TALVANE_UPS, ELEMENTS(SystemPowerInformation, TotalNumber, PowerSupply), 0},
    {"fans", TALVANE_FANS, ELEMENTS(FanInformation, quantity, fan), 0},
    {"voltages", TALVANE_VOLTAGES, ELEMENTS(VoltageInformation, quantity, voltage), 0},
    {"temperatures", TALVANE_TEMPERATURES, ELEMENTS(TemperatureInformation, quantity, temperature),
     0},
    {"system", TALVANE_SYSTEM, sizeof(SysInformation), 0, 0, 0},
    {"pci", TALVANE_PCI, ELEMENTS(DeviceInformation, quantity, dev), 1},
    {"drives", TALVANE_DRIVES, ELEMENTS(StorageInformation, quantityIDE, driveArray), 1},
    {"partitions", TALVANE_PARTITIONS, ELEMENTS(PartitionInformation, quantity, partition), 1},
};
enum { kCommandCount = sizeof kCommands / sizeof kCommands[0] };

// More than any command writes: 63 fans, 128 ports. All zeros before each command.
static char record[0x10000];

// Prints each run of bytes of the record that is a text.
static void PrintTexts(size_t size) {
    size_t start = 0;
    for (size_t end = 0; end <= size; ++end) {
        if (end < size && record[end] >= ' ') continue;
        if (end - start > 1) printf("\t%.*s\n", (int)(end - start), record + start);
        start = end + 1;
    }
}

static int Run(const Command* command, int quiet) {
    if (GetInfo(command->code, record) != 0) return -1;

    size_t size = command->head;
    int count = 0;
    if (command->stride != 0) {
        memcpy(&count, record + command->count, sizeof count);
        size += command->stride * (size_t)count;
        if (size > sizeof record) size = sizeof record;
    }
    if (!quiet) {
        printf(command->stride != 0 ? "%s: %d\n" : "%s\n", command->name, count);
        PrintTexts(size);
    }
    memset(record, 0, size);
    return 0;
}

int main(int argc, char** argv) {
    const int quiet = argc > 1 && strcmp(argv[1], "--quiet") == 0;
    for (int i = 1 + quiet; i < argc; ++i) {
        int found = 0;
        for (size_t k = 0; k < kCommandCount; ++k) {
            if (strcmp(argv[i], "all") == 0 ? kCommands[k].alone
                                            : strcmp(argv[i], kCommands[k].name) != 0)
                continue;
            found = 1;
            if (Run(&kCommands[k], quiet) != 0) {
                fprintf(stderr, "inventory: %s failed\n", kCommands[k].name);
                return 1;
            }
        }
        if (!found) {
            fprintf(stderr, "inventory: no command is named '%s'\n", argv[i]);
            return 2;
        }
    }
    return argc > 1 ? release() : 0;
}
