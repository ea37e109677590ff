// SPDX-License-Identifier: MIT
//
// A program that knows nothing of machines: reads the SMBIOS anchor and a port, and asks a child
// for its environment.
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/io.h>
#include <unistd.h>

int main(void) {
    char anchor[5] = "";
    const int memory = open("/dev/mem", O_RDONLY);
    if (memory < 0 || lseek(memory, 0xF0010, SEEK_SET) != 0xF0010 || read(memory, anchor, 4) != 4) {
        perror("memory");
        return 1;
    }
    (void)close(memory);
    if (iopl(3) != 0) {
        perror("iopl");
        return 1;
    }
    printf("anchor %s, port 0x%X\n", anchor, (unsigned)inb(0xCA3));
    (void)fflush(stdout);
    return system("! env | grep -e TALVANE_HOST -e LD_PRELOAD") == 0 ? 0 : 1;
}
