// SPDX-License-Identifier: MIT
//
// A program that knows nothing of simulated servers: looks for the SMBIOS anchor at the start of
// the table segment, asks a child for its environment, and sleeps for a day.
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/io.h>
#include <unistd.h>

int main(int argc, char** argv) {
    char anchor[5] = "";
    const int memory = open("/dev/mem", O_RDONLY);
    if (memory < 0) {
        perror("open");
        return 1;
    }
    if (lseek(memory, 0xF0010, SEEK_SET) != 0xF0010 || read(memory, anchor, 4) != 4) {
        perror("read");
        return 1;
    }
    (void)close(memory);
    if (iopl(3) != 0) {
        perror("iopl");
        return 1;
    }
    printf("anchor %s, port 0x%X, %d arguments\n", anchor, (unsigned)inb(0xCA3), argc - 1);
    printf("%s, %s\n", argc > 1 ? argv[1] : "-", sleep(86400) == 0 ? "a day later" : "woken early");
    (void)fflush(stdout);
    return system("env | grep -c -e TALVANE_MACHINE -e LD_PRELOAD; exit 3") == 3 << 8 ? 0 : 1;
}
