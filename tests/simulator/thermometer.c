// SPDX-License-Identifier: MIT
//
// A program that knows nothing of simulated servers: asks the BMC for the reading of sensor 1.
#include <fcntl.h>
#include <stdio.h>
#include <sys/ioctl.h>
#include <unistd.h>

struct Message {
    unsigned char command, responder, bus, netFn, lun;
    const unsigned char* data;
    unsigned length, timeout;
    unsigned char* response;
    unsigned responseLength;
    unsigned char completion;
};

int main(void) {
    const unsigned char sensor = 1;
    unsigned char response[256] = {0};
    struct Message message = {0x2D, 0x20, 0, 4, 0, &sensor, 1, 3000, response, 0, 0xEE};
    const int bmc = open("/dev/ipmi", O_RDONLY);
    if (bmc < 0 || ioctl(bmc, 0xC0045301, &message) != 0) {
        perror("bmc");
        return 1;
    }
    (void)close(bmc);
    printf("completion 0x%X, reading %d\n", (unsigned)message.completion, response[0]);
    return 0;
}
