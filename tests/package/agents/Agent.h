// SPDX-License-Identifier: MIT
//
// What the agents of this folder share, in C and in C++: the library's calls, and how they
// complain. With AGENT_LOADS an agent loads the library itself. Its arguments are then "local" or
// "global", and the library's file.
#ifndef TALVANE_TESTS_PACKAGE_AGENTS_AGENT_H
#define TALVANE_TESTS_PACKAGE_AGENTS_AGENT_H

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "Talvane.h"

#define CHECK(condition)   \
    ((condition) ? (void)0 \
                 : (fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition), exit(1)))

#ifdef AGENT_LOADS

#include <dlfcn.h>

static int (*CallGetInfo)(unsigned long, void*);
static int (*CallIsIpmiSupport)(void);
static int (*CallRelease)(void);

static void* SymbolOf(void* library, const char* name) {
    void* const symbol = dlsym(library, name);
    if (symbol == NULL) fprintf(stderr, "%s\n", dlerror());
    CHECK(symbol != NULL);
    return symbol;
}

static void FindCalls(int argc, char** argv) {
    CHECK(argc == 3);
    const int scope = strcmp(argv[1], "global") == 0 ? RTLD_GLOBAL : RTLD_LOCAL;
    void* const library = dlopen(argv[2], RTLD_NOW | scope);
    if (library == NULL) fprintf(stderr, "%s\n", dlerror());
    CHECK(library != NULL);
    void* const getInfo = SymbolOf(library, "GetInfo");
    void* const isIpmiSupport = SymbolOf(library, "IsIpmiSupport");
    void* const releaseAll = SymbolOf(library, "release");
    memcpy(&CallGetInfo, &getInfo, sizeof getInfo);
    memcpy(&CallIsIpmiSupport, &isIpmiSupport, sizeof isIpmiSupport);
    memcpy(&CallRelease, &releaseAll, sizeof releaseAll);
}

#else

#define CallGetInfo       GetInfo
#define CallIsIpmiSupport IsIpmiSupport
#define CallRelease       release

static void FindCalls(int argc, char** argv) {
    (void)argc;
    (void)argv;
}

#endif

// Asks for the board and for the PCI functions of the server, and for a BMC, which it does not
// have.
static void CheckReports(void) {
    CHECK(CallIsIpmiSupport() == 0);
    static BaseBoardInformation board;
    CHECK(CallGetInfo(TALVANE_BOARD, &board) == 0);
    CHECK(strcmp(board.Manufacturer, "Acme") == 0);

    static DeviceInformation devices;
    CHECK(CallGetInfo(TALVANE_PCI, &devices) == 0);
    CHECK(devices.quantity == 1);
    CHECK(strcmp(devices.dev[0].desc, "bus:0, dev:3, func:0") == 0);
}

#endif
