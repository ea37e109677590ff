// SPDX-License-Identifier: MIT
//
// An agent that loads the library, asks it, releases it and unloads it, 50 times or as often as its
// third argument says: neither descriptors nor memory nor mappings grow. Arguments: "local" or
// "global", the library's file, the number of rounds.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <malloc.h>

#define AGENT_LOADS
#include "Agent.h"

// What the process holds.
struct Holdings {
    int descriptors;
    int mappings;
    size_t bytes;  // of allocated blocks
};

static int CountMappings(void) {
    char line[512];
    int count = 0;
    FILE* const maps = fopen("/proc/self/maps", "r");
    CHECK(maps != NULL);
    while (fgets(line, sizeof line, maps) != NULL) ++count;
    fclose(maps);
    return count;
}

static struct Holdings Count(void) {
    struct Holdings holdings = {0, 0, 0};
    for (int descriptor = 0; descriptor < 256; ++descriptor)
        if (fcntl(descriptor, F_GETFD) != -1) ++holdings.descriptors;
    holdings.mappings = CountMappings();
    holdings.bytes = mallinfo2().uordblks;
    return holdings;
}

static void UseOnce(int argc, char** argv) {
    FindCalls(argc, argv);
    CheckReports();
    CHECK(CallRelease() == 0);
    void* const library = dlopen(argv[2], RTLD_NOW | RTLD_NOLOAD);
    CHECK(library != NULL);
    CHECK(dlclose(library) == 0 && dlclose(library) == 0);  // this handle and that of FindCalls
    CHECK(dlopen(argv[2], RTLD_NOW | RTLD_NOLOAD) == NULL);
}

int main(int argc, char** argv) {
    const int rounds = argc > 3 ? atoi(argv[3]) : 50;
    const int arguments = 3;
    CHECK(argc >= arguments);
    // The C library keeps the first seven freed blocks of a size, and counts them as in use.
    for (int i = 0; i < 10; ++i) UseOnce(arguments, argv);
    const struct Holdings before = Count();
    for (int i = 0; i < rounds; ++i) UseOnce(arguments, argv);
    const struct Holdings after = Count();
    CHECK(after.descriptors == before.descriptors);
    CHECK(after.mappings == before.mappings);
    CHECK(after.bytes == before.bytes);
    return 0;
}
