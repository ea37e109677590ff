// SPDX-License-Identifier: MIT
//
// The state that the exported IPMI functions share. It is hidden in the library, so that no other
// module of the process can replace or change it.

#include "interface/IpmiState.h"

#include <memory>

#include "IPMI/IPMIsupport.h"
#include "Talvane.h"
#include "interface/ReentryGuard.h"

namespace talvane {

int NoEnterIPMI = 0;
int NoEnterWatchDogTimer = 0;
int IPMIGetSensorInfoOK = 0;

namespace {

IPMIsupport* pIPMI = nullptr;
int creatingIpmi = 0;

}  // namespace

IPMIsupport& Ipmi() {
    if (pIPMI == nullptr) {
        const ReentryGuard guard(creatingIpmi);
        pIPMI = new IPMIsupport;
    }
    return *pIPMI;
}

bool IsIpmiBeingCreated() {
    return creatingIpmi != 0;
}

void ReleaseIpmi() {
    // The pointer is cleared before the object is destroyed: a call from within the destruction
    // creates another object.
    const std::unique_ptr<IPMIsupport> last(pIPMI);
    pIPMI = nullptr;
}

}  // namespace talvane

int IsIpmiSupport(void) {
    if (talvane::IsIpmiBeingCreated()) return 0;
    return talvane::Ipmi().IsInitOK() != 0 ? 1 : 0;
}
