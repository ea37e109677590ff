// SPDX-License-Identifier: MIT
//
// Makes the requests of files that record_requests.c wrote, and nothing else, and prints the
// milliseconds that each file took. A reservation of the repository is a new one, so the requests
// that name it are changed to that.
#include "requests.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <time.h>

enum {
    kMaxRequests = 4096,
    kMaxData = 64,
    kTimeOut = 3000,
    kStorage = 0x0A,
    kReserveRepository = 0x22,
    kGetRecord = 0x23,
};

static struct Message messages[kMaxRequests];
static unsigned char data[kMaxRequests][kMaxData];

static int ReadRequests(const char* path) {
    char line[1024];
    int count = 0;
    FILE* const file = fopen(path, "r");
    if (file == NULL) return -1;
    while (count < kMaxRequests && fgets(line, sizeof line, file) != NULL) {
        struct Message* const message = &messages[count];
        char* at = line;
        memset(message, 0, sizeof *message);
        message->netFn = (unsigned char)strtoul(at, &at, 16);
        message->command = (unsigned char)strtoul(at, &at, 16);
        for (char* end; message->length < kMaxData; at = end) {
            const unsigned long byte = strtoul(at, &end, 16);
            if (end == at) break;
            data[count][message->length++] = (unsigned char)byte;
        }
        message->responder = 0xFF;
        message->data = message->length == 0 ? NULL : data[count];
        message->timeOut = kTimeOut;
        ++count;
    }
    fclose(file);
    return count;
}

static double Now(void) {
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return (double)now.tv_sec * 1e3 + (double)now.tv_nsec / 1e6;
}

int main(int argc, char** argv) {
    static unsigned char response[256];
    unsigned char reservation[2] = {0, 0};
    const int device = open("/dev/ipmi", O_RDONLY);
    if (device < 0) {
        perror("/dev/ipmi");
        return 1;
    }
    for (int i = 1; i < argc; ++i) {
        const int count = ReadRequests(argv[i]);
        if (count < 0) {
            perror(argv[i]);
            return 1;
        }
        const double start = Now();
        for (int k = 0; k < count; ++k) {
            struct Message* const message = &messages[k];
            message->response = response;
            if (message->netFn == kStorage && message->command == kGetRecord)
                memcpy(message->data, reservation, sizeof reservation);
            memset(response, 0, sizeof response);
            (void)ioctl(device, kSendMessage, message);  // result not used, as in the library
            if (message->netFn == kStorage && message->command == kReserveRepository)
                memcpy(reservation, response, sizeof reservation);
        }
        printf("%.3f\n", Now() - start);
    }
    return 0;
}
