// SPDX-License-Identifier: MIT
//
// An agent in miniature: asks libTalvane for the board, the system, the processors and the memory
// of this machine and prints them. Needs root on a real machine, since the answers lie in physical
// memory.
#include <Talvane.h>
#include <stdio.h>
#include <stdlib.h>

// A text field. It is NUL-terminated unless it is filled to its last byte.
#define TEXT(field) (int)sizeof(field), field

// The library fills as many processors as the firmware states. That can be 16, twice as many as the
// record holds.
enum { kMaxProcessors = 16 };

// A zero-filled record, since the library does not terminate the texts that it writes.
static void* NewRecord(size_t size) {
    void* record = calloc(1, size);
    if (record == NULL) {
        perror("agent");
        exit(EXIT_FAILURE);
    }
    return record;
}

static void PrintSystem(void) {
    BaseBoardInformation* board = NewRecord(sizeof *board);
    SysInformation* system = NewRecord(sizeof *system);
    if (GetInfo(TALVANE_BOARD, board) == 0 && GetInfo(TALVANE_SYSTEM, system) == 0) {
        printf("System: %.*s %.*s\n", TEXT(system->manufacturer), TEXT(system->SysProductName));
        printf("Board: %.*s %.*s, serial number %.*s\n", TEXT(board->Manufacturer),
               TEXT(board->ProductName), TEXT(board->SerialNo));
        printf("Firmware: %.*s %.*s of %.*s\n", TEXT(board->RomVendor), TEXT(board->RomVersion),
               TEXT(board->RomReleaseDate));
    }
    free(system);
    free(board);
}

static void PrintProcessors(void) {
    ProcessorInformation* processors =
        NewRecord(offsetof(ProcessorInformation, cpu) + kMaxProcessors * sizeof(CPU));
    if (GetInfo(TALVANE_PROCESSORS, processors) == 0) {
        printf("Processors: %d\n", processors->quantity);
        for (int i = 0; i < processors->quantity; ++i) {
            const CPU* cpu = processors->cpu + i;
            printf("  %.*s, %.*s%s\n", TEXT(cpu->family), TEXT(cpu->CurrentSpeed),
                   cpu->IsDisabled ? ", disabled" : "");
        }
    }
    free(processors);
}

static void PrintMemory(void) {
    MemoryInformation* memory = NewRecord(sizeof *memory);
    if (GetInfo(TALVANE_MEMORY, memory) == 0) {
        printf("Memory: %d MB in %d banks\n", memory->TotalSize, memory->quantity);
        for (int i = 0; i < memory->quantity; ++i) {
            const BANK* bank = memory->bank + i;
            printf("  slot %d: %.*s, %.*s\n", bank->SlotNumber, TEXT(bank->size), TEXT(bank->type));
        }
    }
    free(memory);
}

int main(void) {
    SysInformation probe = {{0}, {0}, {0}};
    if (GetInfo(TALVANE_SYSTEM, &probe) != 0) {
        fprintf(stderr, "agent: no readable SMBIOS table (on a real machine this needs root)\n");
        return EXIT_FAILURE;
    }
    PrintSystem();
    PrintProcessors();
    PrintMemory();
    return release();
}
