// SPDX-License-Identifier: MIT
//
// The PCI report of headers with any byte in any place, of more functions than the record holds and
// of locations that no bus has: nothing outside the fields is written, and texts end within theirs.
#include <climits>
#include <cstring>

#include "PCI/PciTest.h"
#include "PCI/ReplacedScan.h"
#include "support/GuardedRecord.h"

namespace {

class HostilePciTest : public PciTest {
protected:
    HostilePciTest() { functionsFound.clear(); }

    // Whether everything from the entry of this index on is as it was before the report.
    bool UntouchedFrom(std::size_t index) {
        const std::size_t at = offsetof(DeviceInformation, dev) + index * sizeof(DEV);
        return std::memcmp(reinterpret_cast<const char*>(&box) + at,
                           reinterpret_cast<const char*>(&marked) + at, sizeof box - at) == 0;
    }

    // The report writes into `box`; `marked` is what it holds before.
    GuardedRecord<DeviceInformation> marked = Marked<DeviceInformation>();
    GuardedRecord<DeviceInformation> box = marked;
};

TEST_F(HostilePciTest, AnyByteOfAHeaderStaysInTheFieldsOfItsEntry) {
    std::strcpy(marked.info.dev[0].model, "model before");
    std::strcpy(marked.info.dev[0].type, "type before");
    DEV& entry = box.info.dev[0];
    const DEV& before = marked.info.dev[0];
    PciHeader usual;
    for (std::size_t at = 0; at < usual.Image().size(); ++at)
        for (unsigned value = 0; value < 0x100; ++value) {
            PciHeader header = usual;
            header.Byte(at, static_cast<std::uint8_t>(value));
            PCIdevice function;
            function = reinterpret_cast<const char*>(header.Image().data());
            functionsFound.assign(1, function);
            std::memcpy(&box, &marked, offsetof(DeviceInformation, dev) + sizeof(DEV));
            ASSERT_EQ(GetPciInfo(&box.info), 0) << at << " " << value;

            ASSERT_EQ(box.info.quantity, 1) << at << " " << value;
            ASSERT_TRUE(Terminated(entry.model, sizeof entry.model)) << at << " " << value;
            ASSERT_TRUE(Terminated(entry.type, sizeof entry.type)) << at << " " << value;
            ASSERT_TRUE(Terminated(entry.status, sizeof entry.status)) << at << " " << value;
            ASSERT_STREQ(entry.desc, "bus:0, dev:0, func:0") << at << " " << value;
            ASSERT_EQ(entry.revision, at == 8 ? static_cast<int>(value) : 0) << at << " " << value;
            ASSERT_EQ(entry.BiosEnable, before.BiosEnable) << at << " " << value;
            ASSERT_EQ(entry.MemBase, before.MemBase) << at << " " << value;
            ASSERT_EQ(entry.DMAChannel, before.DMAChannel) << at << " " << value;
            ASSERT_EQ(entry.Duplex, before.Duplex) << at << " " << value;
            ASSERT_TRUE(UntouchedFrom(1)) << at << " " << value;
            server.GetLog().Clear();
        }
}

TEST_F(HostilePciTest, OfMoreFunctionsThanTheRecordHoldsTheFirstAreReported) {
    for (int i = 0; i < 65; ++i) {
        PCIdevice function;
        function.setBusNo(i);
        functionsFound.push_back(function);
    }
    EXPECT_EQ(GetPciInfo(&box.info), 0);
    EXPECT_EQ(box.info.quantity, 64);
    EXPECT_STREQ(box.info.dev[63].desc, "bus:63, dev:0, func:0");
    EXPECT_TRUE(UntouchedFrom(64));
}

TEST_F(HostilePciTest, LocationLongerThanItsFieldIsCut) {
    PCIdevice function;
    function.setBusNo(INT_MIN);
    function.setDevNo(INT_MIN);
    function.setFuncNo(INT_MIN);
    functionsFound.push_back(function);
    EXPECT_EQ(GetPciInfo(&box.info), 0);
    EXPECT_STREQ(box.info.dev[0].desc, "bus:-2147483648, dev:-214748364");
    EXPECT_EQ(box.info.dev[0].IRQ, 0);
}

}  // namespace
