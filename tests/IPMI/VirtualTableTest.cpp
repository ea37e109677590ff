// SPDX-License-Identifier: MIT
//
// The virtual tables of the IPMI classes: agents compiled their calls as slot numbers.

#include <cstring>

#include "support/IpmiTest.h"

namespace {

// A virtual function as the table of an i386 object holds it: the object is its only argument.
using Slot = int (*)(void* object);

template <class Object>
int CallSlot(Object& object, std::size_t slot) {
    const Slot* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
    return table[slot](&object);
}

class VirtualTableTest : public IpmiTest {
protected:
    // The first slot says whether the object is ready, the second one probes for an interface.
    template <class Object>
    void ExpectSlots(Object& object) {
        constexpr int kReadiness = 7;
        InitOK = kReadiness;
        EXPECT_EQ(CallSlot(object, 0), kReadiness);
        const std::size_t opened = server.GetLog().Count("open");
        EXPECT_EQ(CallSlot(object, 1), 0) << "is ready";
        EXPECT_EQ(server.GetLog().Count("open"), opened);
        InitOK = 0;
        EXPECT_EQ(CallSlot(object, 0), 0);
        EXPECT_EQ(CallSlot(object, 1), 0);
        EXPECT_EQ(server.GetLog().Count("open"), opened + 1);
        EXPECT_EQ(InitOK, 1) << "the probe has found the interface";
    }
};

TEST_F(VirtualTableTest, EveryClassHasTheReadinessFirstAndTheProbeSecond) {
    IPMIbase base;
    ExpectSlots(base);
    ExpectSlots(Support());
    ExpectSlots(Support().sensor);
    ExpectSlots(Support().fru);
}

}  // namespace
