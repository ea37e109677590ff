// SPDX-License-Identifier: MIT
//
// The state shared by the exported IPMI functions. Hidden in the library, so that no other module
// of the process can take its place or change it.

#include "interface/IpmiState.h"

#include <memory>

#include "IPMI/IPMIsupport.h"
#include "Talvane.h"
#include "interface/ReentryGuard.h"

using namespace talvane;

int NoEnterIPMI = 0;
int NoEnterWatchDogTimer = 0;
int IPMIGetSensorInfoOK = 0;

namespace {

IPMIsupport* pIPMI = nullptr;
int creating = 0;

}  // namespace

IPMIsupport& Ipmi() {
    if (pIPMI == nullptr) {
        const ReentryGuard guard(creating);
        pIPMI = new IPMIsupport;
    }
    return *pIPMI;
}

void ReleaseIpmi() {
    const std::unique_ptr<IPMIsupport> last(pIPMI);
    pIPMI = nullptr;
}

int IsIpmiSupport(void) {
    if (creating != 0) return 0;  // a call from within the creation: there is no second object
    return Ipmi().IsInitOK() != 0 ? 1 : 0;
}
