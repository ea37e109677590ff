// SPDX-License-Identifier: MIT
//
// Lets an agent that links this read physical memory from the file that BENCH_MEMORY names: the
// accesses are then real system calls that cost what they do on a server.
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

int open(const char* path, int flags, ...) {
    const char* memory = getenv("BENCH_MEMORY");
    if (memory != NULL && strcmp(path, "/dev/mem") == 0) path = memory;
    return (int)syscall(SYS_open, path, flags, 0);
}
