// SPDX-License-Identifier: MIT
//
// The reads of physical memory that an inventory of SMBIOS makes, and nothing else: the segment of
// the BIOS, and the blocks from its start address on.
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

enum {
    kSegment = 0xF0000,
    kSegmentSize = 0xFFF0,
    kTableAddress = 24,  // in the entry point (SMBIOS 2.3, 2.1.1)
    kBlock = 0x10000,
};

int main(void) {
    static unsigned char segment[kSegmentSize];
    const int memory = open("/dev/mem", O_RDONLY);
    if (memory < 0 || lseek(memory, kSegment, SEEK_SET) < 0 ||
        read(memory, segment, sizeof segment) != sizeof segment) {
        perror("/dev/mem");
        return 1;
    }
    size_t at = 0;
    while (at < sizeof segment && memcmp(segment + at, "_SM_", 4) != 0) at += 16;
    if (at + kTableAddress + 4 > sizeof segment) {
        fprintf(stderr, "memory: no entry point\n");
        return 1;
    }
    unsigned table = 0;
    memcpy(&table, segment + at + kTableAddress, sizeof table);
    const unsigned base = table & ~(kBlock - 1U);
    const size_t size = (size_t)base + kBlock;
    unsigned char* const copy = malloc(size);
    if (copy == NULL || lseek(memory, (off_t)base, SEEK_SET) < 0 || read(memory, copy, size) <= 0) {
        perror("/dev/mem");
        return 1;
    }
    free(copy);
    return close(memory);
}
