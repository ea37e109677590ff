// SPDX-License-Identifier: MIT
//
// Preloaded to an agent, writes each request that it makes to /dev/ipmi as a line of hexadecimal
// bytes to the file that BENCH_REQUESTS names: network function, command, data.
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "requests.h"

int ioctl(int descriptor, unsigned long code, ...) {
    va_list list;
    va_start(list, code);
    void* const argument = va_arg(list, void*);
    va_end(list);
    if (code == kSendMessage) {
        const struct Message* const message = argument;
        FILE* const file = fopen(getenv("BENCH_REQUESTS"), "a");
        if (file == NULL) abort();
        fprintf(file, "%02x %02x", message->netFn, message->command);
        for (unsigned i = 0; i < message->length; ++i) fprintf(file, " %02x", message->data[i]);
        fprintf(file, "\n");
        fclose(file);
    }
    return (int)syscall(SYS_ioctl, descriptor, code, argument);
}
