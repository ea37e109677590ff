// SPDX-License-Identifier: MIT
//
// An agent with threads. Its first call comes from another thread than the main one, which is
// allowed. Then two threads call at once, which is not: a call may be answered as busy, but nothing
// outside of the callers' records is written, and later calls work.
#define _GNU_SOURCE
#include <pthread.h>

#include "Agent.h"

enum { kRounds = 200, kGuardSize = 64, kGuard = 0x5A };

struct Guarded {
    unsigned char before[kGuardSize];
    BaseBoardInformation board;
    unsigned char after[kGuardSize];
};

static pthread_barrier_t start;

static void CheckGuard(const unsigned char* guard) {
    for (int i = 0; i < kGuardSize; ++i) CHECK(guard[i] == kGuard);
}

static void* CallOnce(void* unused) {
    CheckReports();
    return unused;
}

static void* CallOften(void* unused) {
    struct Guarded guarded;
    for (int i = 0; i < kRounds; ++i) {
        memset(&guarded, kGuard, sizeof guarded);
        memset(&guarded.board, 0, sizeof guarded.board);
        pthread_barrier_wait(&start);
        const int result = CallGetInfo(TALVANE_BOARD, &guarded.board);
        CHECK(result == 0 || result == 1);
        const char* const expected = result == 0 ? "Acme" : "";
        CHECK(strcmp(guarded.board.Manufacturer, expected) == 0);
        CheckGuard(guarded.before);
        CheckGuard(guarded.after);
    }
    return unused;
}

static void Run(int threads, void* (*call)(void*)) {
    pthread_t thread[2];
    for (int i = 0; i < threads; ++i) CHECK(pthread_create(&thread[i], NULL, call, NULL) == 0);
    for (int i = 0; i < threads; ++i) CHECK(pthread_join(thread[i], NULL) == 0);
}

int main(int argc, char** argv) {
    FindCalls(argc, argv);
    Run(1, CallOnce);
    CheckReports();
    CHECK(CallRelease() == 0);
    CHECK(pthread_barrier_init(&start, NULL, 2) == 0);
    Run(2, CallOften);
    CheckReports();
    CHECK(CallRelease() == 0);
    return 0;
}
