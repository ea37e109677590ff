// SPDX-License-Identifier: MIT
//
// Which getters a command calls, in order: an agent may have put its own in front of them. This
// program is such an agent, whose getters note the call and where in the record it writes.
#include "support/GetterCallsTest.h"

namespace {

using ::testing::ElementsAre;

std::string Where(const char* buf, unsigned size) {
    return "+" + std::to_string(buf - record) + " " + std::to_string(size);
}

int Note(const std::string& getter, const std::string& arguments) {
    calls.push_back(arguments.empty() ? getter : getter + " " + arguments);
    return 0;
}

int NoteSupply(const std::string& getter, int mask, int n, const std::string& place) {
    return Note(getter, std::to_string(mask) + " " + std::to_string(n) + " " + place);
}

}  // namespace

int SmBios::GetBiosVendor(char* buf, unsigned size) {
    return Note("GetBiosVendor", Where(buf, size));
}
int SmBios::GetBiosVersion(char* buf, unsigned size) {
    return Note("GetBiosVersion", Where(buf, size));
}
int SmBios::GetBiosReleaseDate(char* buf, unsigned size) {
    return Note("GetBiosReleaseDate", Where(buf, size));
}
int SmBios::GetBoardManufacturer(char* buf, unsigned size) {
    return Note("GetBoardManufacturer", Where(buf, size));
}
int SmBios::GetBoardProduct(char* buf, unsigned size) {
    return Note("GetBoardProduct", Where(buf, size));
}
int SmBios::GetBoardVersion(char* buf, unsigned size) {
    return Note("GetBoardVersion", Where(buf, size));
}
int SmBios::GetBoardSerialNo(char* buf, unsigned size) {
    return Note("GetBoardSerialNo", Where(buf, size));
}
int SmBios::GetBoardAssetTag(char* buf, unsigned size) {
    return Note("GetBoardAssetTag", Where(buf, size));
}

int SmBios::GetPSQuantity(int typeMask) {
    Note("GetPSQuantity", std::to_string(typeMask));
    return 2;
}
int SmBios::GetPSRedundantQuantity() {
    Note("GetPSRedundantQuantity", "");
    return 7;
}
int SmBios::GetPSDeviceName(int typeMask, int n, char* buf, unsigned size) {
    return NoteSupply("GetPSDeviceName", typeMask, n, Where(buf, size));
}
int SmBios::GetPSManufacturer(int typeMask, int n, char* buf, unsigned size) {
    return NoteSupply("GetPSManufacturer", typeMask, n, Where(buf, size));
}
int SmBios::GetPSSerialNo(int typeMask, int n, char* buf, unsigned size) {
    return NoteSupply("GetPSSerialNo", typeMask, n, Where(buf, size));
}
int SmBios::GetPSStatus(int typeMask, int n, char* buf) {
    return NoteSupply("GetPSStatus", typeMask, n, "+" + std::to_string(buf - record));
}

namespace {

class CallOrderTest : public GetterCallsTest {};

TEST_F(CallOrderTest, BoardAsksForTheMakerAndTheReleaseDateTwice) {
    EXPECT_TRUE(SameBytes(RecordImage(208), Answer(0x10000, 208)));
    EXPECT_THAT(calls, ElementsAre("GetBoardManufacturer +160 32",  //
                                   "GetBoardProduct +0 32",         //
                                   "GetBiosReleaseDate +64 16",     //
                                   "GetBiosVendor +80 32",          //
                                   "GetBiosVersion +32 32",         //
                                   "GetBiosReleaseDate +64 16",     //
                                   "GetBoardManufacturer +160 32",  //
                                   "GetBoardSerialNo +112 16"));
}

TEST_F(CallOrderTest, PowerSuppliesAreCountedBeforeTheRedundantOnesAndTheirTexts) {
    const RecordImage expected = RecordImage(1224).Number(0, 2).Number(4, 7);
    EXPECT_TRUE(SameBytes(expected, Answer(0x800000, 1224)));
    EXPECT_THAT(calls, ElementsAre("GetPSQuantity 15",                //
                                   "GetPSRedundantQuantity",          //
                                   "GetPSDeviceName 15 1 +72 32",     //
                                   "GetPSManufacturer 15 1 +8 32",    //
                                   "GetPSSerialNo 15 1 +120 16",      //
                                   "GetPSStatus 15 1 +136",           //
                                   "GetPSDeviceName 15 2 +224 32",    //
                                   "GetPSManufacturer 15 2 +160 32",  //
                                   "GetPSSerialNo 15 2 +272 16",      //
                                   "GetPSStatus 15 2 +288"));
}

TEST_F(CallOrderTest, UpsSuppliesAreAskedForWithTheirTypeAndWithoutTheRedundantOnes) {
    EXPECT_TRUE(SameBytes(RecordImage(1224).Number(0, 2), Answer(0x1000000, 1224)));
    EXPECT_THAT(calls, ElementsAre("GetPSQuantity 6",                //
                                   "GetPSDeviceName 6 1 +72 32",     //
                                   "GetPSManufacturer 6 1 +8 32",    //
                                   "GetPSSerialNo 6 1 +120 16",      //
                                   "GetPSStatus 6 1 +136",           //
                                   "GetPSDeviceName 6 2 +224 32",    //
                                   "GetPSManufacturer 6 2 +160 32",  //
                                   "GetPSSerialNo 6 2 +272 16",      //
                                   "GetPSStatus 6 2 +288"));
}

}  // namespace
