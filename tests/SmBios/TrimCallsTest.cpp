// SPDX-License-Identifier: MIT
//
// Locators go through trim before they are compared or searched for a slot number. The library's
// own leaves them as they are; this program is an agent whose trim cuts a text at its first blank.
#include <cstring>

#include "support/MemorySummaryTest.h"

void SmBios::trim(char* text) {
    if (char* const blank = std::strchr(text, ' ')) *blank = '\0';
}

namespace {

class TrimCallsTest : public MemorySummaryTest {
protected:
    int Proper(std::string locator) { return reader->GetProperMemDev(locator.data()); }
};

TEST_F(TrimCallsTest, SearchForADeviceTrimsTheLocatorItIsGiven) {
    AddDevice(256, "DIMM1", "Bank");
    AddDevice(256, "DIMM2", "Bank");
    Open();
    EXPECT_EQ(Proper("DIMM2 upper row"), 2);
    EXPECT_EQ(Proper("DIMM3 upper row"), 0);
}

TEST_F(TrimCallsTest, SearchForADeviceTrimsTheLocatorOfEachDevice) {
    AddDevice(256, "DIMM1 upper row", "Bank");
    AddDevice(256, "DIMM2 upper row", "Bank");
    Open();
    EXPECT_EQ(Proper("DIMM1"), 1);
    EXPECT_EQ(Proper("DIMM2"), 2);
}

TEST_F(TrimCallsTest, SummaryOfDevicesTrimsTheLocatorBeforeItLooksForTheSlot) {
    AddDevice(256, "DIMM3 upper row", "Bank");
    AddDevice(256, "DIMM1B lower row", "Bank");
    EXPECT_EQ(Summarise(), 0);
    EXPECT_EQ(info.quantity, 2);
    EXPECT_EQ(info.bank[0].SlotNumber, 3);
    EXPECT_EQ(info.bank[1].SlotNumber, 6);
}

}  // namespace
