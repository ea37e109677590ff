// SPDX-License-Identifier: MIT
//
// Preloaded into a test program: runs parts of its tests in a process each, all forked from one
// that has started. Each line on standard input is the seconds that such a process may take, a
// space, and the GoogleTest filter that chooses its tests. A line after what the tests print
// answers it: "FORKED", "passed" or "failed", the seconds that it took, and the offsets of the
// library's functions that it reached, where these were compiled to tell that. Stops after the
// first part that fails, unless FORK_TESTS is "all".

#define _GNU_SOURCE
#include <dlfcn.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

typedef int Main(int, char**, char**);

enum { kMaxLibrarySize = 4 << 20 };

// How much longer than its processor time a process may take: it waits, or the computer is busy.
static const double kMaxWaiting = 10;

static Main* programMain;
static unsigned char* reached;  // one byte for each offset; shared with the forked processes
static char* libraryStart;

void __cyg_profile_func_enter(void* function, void* callSite);
void __cyg_profile_func_exit(void* function, void* callSite);

// What the compiler calls first in each function of a library built with -finstrument-functions.
void __cyg_profile_func_enter(void* function, void* callSite) {
    (void)callSite;
    Dl_info library;
    if (libraryStart == NULL && dladdr(function, &library)) libraryStart = library.dli_fbase;
    const size_t offset = (size_t)((char*)function - libraryStart);
    if (reached != NULL && offset < kMaxLibrarySize) reached[offset] = 1;
}

void __cyg_profile_func_exit(void* function, void* callSite) {
    (void)function;
    (void)callSite;
}

static double Seconds(void) {
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return (double)now.tv_sec + (double)now.tv_nsec / 1e9;
}

// Whether the process ends well in time. Its own children end with it.
static int EndsWell(pid_t process, double seconds, const sigset_t* childEnds) {
    const double end = Seconds() + seconds;
    int status = 0;
    for (;;) {
        if (waitpid(process, &status, WNOHANG) == process) break;
        if (Seconds() > end) {
            kill(-process, SIGKILL);
            waitpid(process, &status, 0);
            break;
        }
        const struct timespec pause = {1, 0};
        sigtimedwait(childEnds, NULL, &pause);
    }
    kill(-process, SIGKILL);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

static int RunTests(char* filter, double seconds, char** argv, char** environment,
                    const sigset_t* oldMask) {
    static char endAtFailure[] = "--gtest_break_on_failure";
    char* arguments[] = {argv[0], filter, reached == NULL ? endAtFailure : NULL, NULL};
    const rlim_t limit = (rlim_t)seconds + 1;
    const struct rlimit processorTime = {limit, limit};
    setrlimit(RLIMIT_CPU, &processorTime);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpgid(0, 0);
    sigprocmask(SIG_SETMASK, oldMask, NULL);
    dup2(STDERR_FILENO, STDIN_FILENO);
    return programMain(3, arguments, environment);
}

static void PrintReached(void) {
    for (size_t i = 0; i < kMaxLibrarySize; i += sizeof(long)) {
        long word;
        memcpy(&word, reached + i, sizeof word);
        if (word == 0) continue;
        for (size_t j = i; j < i + sizeof word; ++j)
            if (reached[j]) printf(" %zx", j);
        memset(reached + i, 0, sizeof word);
    }
}

static int RunEach(int argc, char** argv, char** environment) {
    (void)argc;
    const char* mode = getenv("FORK_TESTS");
    const int goesOn = mode != NULL && strcmp(mode, "all") == 0;
    unsetenv("LD_PRELOAD");
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (goesOn) {
        void* shared =
            mmap(NULL, kMaxLibrarySize, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        reached = shared == MAP_FAILED ? NULL : shared;
    }
    sigset_t childEnds, oldMask;
    sigemptyset(&childEnds);
    sigaddset(&childEnds, SIGCHLD);
    sigprocmask(SIG_BLOCK, &childEnds, &oldMask);

    static const char kOption[] = "--gtest_filter=";
    char* line = NULL;
    size_t size = 0;
    while (getline(&line, &size, stdin) > 0) {
        line[strcspn(line, "\n")] = '\0';
        char* name = strchr(line, ' ');
        if (name == NULL) break;
        const double limit = atof(line);
        char* filter = malloc(sizeof kOption + strlen(++name));
        if (filter == NULL) break;
        strcat(strcpy(filter, kOption), name);
        fflush(stdout);
        const double start = Seconds();
        const pid_t process = fork();
        if (process == 0) exit(RunTests(filter, limit, argv, environment, &oldMask));
        const int passed = process > 0 && EndsWell(process, kMaxWaiting * limit, &childEnds);
        free(filter);
        printf("\nFORKED %s %.3f", passed ? "passed" : "failed", Seconds() - start);
        if (reached != NULL) PrintReached();
        printf("\n");
        if (!passed && !goesOn) break;
    }
    free(line);
    fflush(stdout);
    _exit(0);
}

int __libc_start_main(Main* main, int argc, char** argv, void (*init)(void), void (*fini)(void),
                      void (*loaderFini)(void), void* stackEnd);

// The first function that a program calls; it calls `main`.
int __libc_start_main(Main* main, int argc, char** argv, void (*init)(void), void (*fini)(void),
                      void (*loaderFini)(void), void* stackEnd) {
    typedef int Start(Main*, int, char**, void (*)(void), void (*)(void), void (*)(void), void*);
    programMain = main;
    Start* start = (Start*)dlsym(RTLD_NEXT, "__libc_start_main");
    return start(RunEach, argc, argv, init, fini, loaderFini, stackEnd);
}
