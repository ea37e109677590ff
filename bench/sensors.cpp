// SPDX-License-Identifier: MIT
//
// An agent for measuring sensors: asks for the controller's fans, voltages and temperatures as
// often as its argument says. Without an argument it prints the size of the library's object. It
// opens the IPMI device in place of the library and leaves the ports alone, since port instructions
// trap and do not run under callgrind.
#include <fcntl.h>

#include <cstdio>
#include <cstdlib>

#include "IPMI/IPMIsupport.h"
#include "Talvane.h"

int IPMIbase::InitIpmiBase() {
    if (InitOK != 0) return 0;
    hDevice = open("/dev/ipmi", O_RDONLY);
    InitOK = hDevice >= 0 ? 1 : 0;
    return hDevice >= 0 ? 0 : -1;
}

int main(int argc, char** argv) {
    static FanInformation fans;
    static VoltageInformation voltages;
    static TemperatureInformation temperatures;
    if (argc < 2) {
        std::printf("%zu\n", sizeof(IPMIsupport));
        return 0;
    }
    for (int rounds = std::atoi(argv[1]); rounds > 0; --rounds) {
        // Results not used: -1 means that there is no sensor of that kind.
        (void)GetIpmiInfo(TALVANE_FANS, &fans);
        (void)GetIpmiInfo(TALVANE_VOLTAGES, &voltages);
        (void)GetIpmiInfo(TALVANE_TEMPERATURES, &temperatures);
    }
    if (fans.quantity == 0) {
        std::fprintf(stderr, "sensors: no fan\n");
        return 1;
    }
    return release();
}
