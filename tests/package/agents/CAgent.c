// SPDX-License-Identifier: MIT
//
// An agent in C, in whose process there is no C++ runtime library: the library works without one,
// and ends the process when memory runs out.
#define _GNU_SOURCE
#include <signal.h>
#include <stddef.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Agent.h"

static int allocationsLeft = -1;  // negative: any number

void* __libc_malloc(size_t size);  // the C library's own

void* malloc(size_t size) {
    if (allocationsLeft == 0) return NULL;
    if (allocationsLeft > 0) --allocationsLeft;
    return __libc_malloc(size);
}

static void CheckThatNoRuntimeIsLoaded(void) {
    char line[512];
    FILE* const maps = fopen("/proc/self/maps", "r");
    CHECK(maps != NULL);
    while (fgets(line, sizeof line, maps) != NULL) {
        CHECK(strstr(line, "libstdc++") == NULL);
        CHECK(strstr(line, "libgcc_s") == NULL);
    }
    fclose(maps);
}

// A scan of PCI needs memory for each function that it finds, and has no way to go on without.
static void CheckThatTheProcessEndsWithoutMemory(void) {
    const pid_t child = fork();
    CHECK(child >= 0);
    if (child == 0) {
        static DeviceInformation devices;
        allocationsLeft = 0;
        (void)CallGetInfo(TALVANE_PCI, &devices);
        _exit(0);
    }
    int status = 0;
    CHECK(waitpid(child, &status, 0) == child);
    CHECK(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT);
}

// Reading the table needs memory too; without it the board is not known.
static void CheckThatARefusedTableIsReported(void) {
    const pid_t child = fork();
    CHECK(child >= 0);
    if (child == 0) {
        static BaseBoardInformation board;
        allocationsLeft = 1;  // for the reader, none for the table
        _exit(CallGetInfo(TALVANE_BOARD, &board) == 0);
    }
    int status = 0;
    CHECK(waitpid(child, &status, 0) == child);
    CHECK(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

int main(int argc, char** argv) {
    FindCalls(argc, argv);
    CheckThatNoRuntimeIsLoaded();
    CheckThatTheProcessEndsWithoutMemory();
    CheckThatARefusedTableIsReported();
    CheckReports();
    CHECK(CallRelease() == 0);
    CheckReports();
    CheckThatNoRuntimeIsLoaded();
    return 0;
}
