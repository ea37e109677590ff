// SPDX-License-Identifier: MIT
//
// A small server, preloaded to the agents of this folder: a board in an SMBIOS table, and one PCI
// function. It is written in C and brings no C++ runtime library along, which the simulated server
// does: so these agents are as bare as those in the field.
#define _GNU_SOURCE
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

enum {
    kMemorySize = 0x100000,
    kEntryPoint = 0xF0000,
    kEntryPointLength = 0x1F,
    kIntermediateAnchor = 0x10,
    kTable = 0xF0020,
};

static const char kStructures[] =
    "\2\x8\0\1\1\2\0\0Acme\0Board One\0"  // base board: handle 0x0100, manufacturer, product
    "\0\x7F\4\0\2";                       // end of table
enum { kStructureCount = 2 };

static void PutLe(unsigned char* at, unsigned long value, int bytes) {
    for (int i = 0; i < bytes; ++i) at[i] = (unsigned char)(value >> (8 * i));
}

static unsigned char Checksum(const unsigned char* bytes, int length) {
    unsigned sum = 0;
    for (int i = 0; i < length; ++i) sum += bytes[i];
    return (unsigned char)-sum;
}

// SMBIOS 2.3, 2.1.1.
static void FillMemory(unsigned char* memory) {
    unsigned char* const entry = memory + kEntryPoint;
    memcpy(memory + kTable, kStructures, sizeof kStructures);
    memcpy(entry, "_SM_", 4);
    entry[5] = kEntryPointLength;
    entry[6] = 2;
    entry[7] = 3;
    memcpy(entry + kIntermediateAnchor, "_DMI_", 5);
    PutLe(entry + 22, sizeof kStructures, 2);
    PutLe(entry + 24, kTable, 4);
    PutLe(entry + 28, kStructureCount, 2);
    entry[21] = Checksum(entry + kIntermediateAnchor, kEntryPointLength - kIntermediateAnchor);
    entry[4] = Checksum(entry, kEntryPointLength);
}

static int OpenMemory(void) {
    static unsigned char memory[kMemorySize];
    FillMemory(memory);
    FILE* const file = tmpfile();
    if (file == NULL) return -1;
    fwrite(memory, 1, sizeof memory, file);
    rewind(file);
    const int descriptor = dup(fileno(file));
    fclose(file);
    return descriptor;
}

// The C library's functions that the library calls, under names of this file's own.
int Open(const char* path, int flags, ...) __asm__("open");
int Iopl(int level) __asm__("iopl");

int Open(const char* path, int flags, ...) {
    if (strcmp(path, "/dev/mem") == 0) return OpenMemory();
    if (strcmp(path, "/dev/ipmi") == 0) return -1;
    va_list list;
    va_start(list, flags);
    const int mode = va_arg(list, int);
    va_end(list);
    return (int)syscall(SYS_open, path, flags, mode);
}

int Iopl(int level) {
    (void)level;
    return 0;
}

// PCIscan::out and PCIscan::in. Function 00:03.0 answers, an Ethernet controller.
void PciOut(void* scan, unsigned short port, unsigned long value) __asm__("_ZN7PCIscan3outEtm");
unsigned long PciIn(void* scan, unsigned short port) __asm__("_ZN7PCIscan2inEt");

static unsigned long address;

void PciOut(void* scan, unsigned short port, unsigned long value) {
    (void)scan;
    (void)port;
    address = value;
}

unsigned long PciIn(void* scan, unsigned short port) {
    (void)scan;
    (void)port;
    if ((address & ~0xFFUL) != 0x80001800UL) return 0xFFFFFFFFUL;
    switch (address & 0xFF) {
        case 0:
            return 0x100E8086UL;
        case 8:
            return 0x02000003UL;
        default:
            return 0;
    }
}
