// SPDX-License-Identifier: MIT
//
// An agent for measuring: asks for temperatures, voltages and fans as often as its argument says,
// and prints the milliseconds that each time took.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include "Talvane.h"

static double Now(void) {
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return (double)now.tv_sec * 1e3 + (double)now.tv_nsec / 1e6;
}

int main(int argc, char** argv) {
    static TemperatureInformation temperatures;
    static VoltageInformation voltages;
    static FanInformation fans;
    const int times = argc == 2 ? atoi(argv[1]) : 0;
    for (int i = 0; i < times; ++i) {
        memset(&temperatures, 0, sizeof temperatures);
        memset(&voltages, 0, sizeof voltages);
        memset(&fans, 0, sizeof fans);
        const double start = Now();
        if (GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures) != 0 ||
            GetIpmiInfo(TALVANE_VOLTAGES, &voltages) != 0 ||
            GetIpmiInfo(TALVANE_FANS, &fans) != 0) {
            fprintf(stderr, "sensors: no answer\n");
            return 1;
        }
        printf("%.3f\n", Now() - start);
    }
    return release();
}
