// SPDX-License-Identifier: MIT
//
// The layout of the SMBIOS classes and their records, which agents were built with. The table's
// entry points are asserted where they are declared.
#include <algorithm>
#include <iterator>

#include "SmBios/PrivateCalls.h"
#include "support/OpenSmBios.h"
#include "support/RecordLayout.h"

namespace {

static_assert(std::ranges::count(kPrivateCalls<SmBios>, false) == 0,
              "with the private members open, every call compiles");

TEST(SmBiosLayoutTest, ReaderHasTheLayoutThatAgentsUse) {
    ExpectLayout("SmBios", sizeof(SmBios),
                 {{offsetof(SmBios, InitOK), 4},
                  {offsetof(SmBios, BiosData), 4},
                  {offsetof(SmBios, BiosDataLength), 2},
                  {offsetof(SmBios, MatchSMBIOS), 1},
                  {offsetof(SmBios, MatchDMI), 1},
                  {offsetof(SmBios, SmBiosEntry), 31},
                  {offsetof(SmBios, DmiEntry), 15 + 2}},  // and padding
                 60);
}

TEST(SmBiosLayoutTest, StructureHasTheLayoutThatAgentsUse) {
    ExpectLayout(
        "HEADER", sizeof(HEADER),
        {{offsetof(HEADER, type), 1}, {offsetof(HEADER, length), 1}, {offsetof(HEADER, handle), 2}},
        4);
    ExpectLayout("BiosDataItem", sizeof(BiosDataItem),
                 {{offsetof(BiosDataItem, header), 4},
                  {offsetof(BiosDataItem, FormatedData), 4},
                  {offsetof(BiosDataItem, StringBuffer), 4},
                  {offsetof(BiosDataItem, EndAddress), 4},
                  {offsetof(BiosDataItem, StringBufferLength), 4}},
                 20);
}

TEST(SmBiosLayoutTest, MemorySummaryHasTheLayoutThatAgentsUse) {
    ExpectLayout("BankInfo", sizeof(BankInfo),
                 {{offsetof(BankInfo, size), 16},
                  {offsetof(BankInfo, speed), 16},
                  {offsetof(BankInfo, type), 24},
                  {offsetof(BankInfo, TypeDetail), 32},
                  {offsetof(BankInfo, manufacturer), 32},
                  {offsetof(BankInfo, SlotNumber), 4}},
                 124);
    ExpectLayout("LocalMemInfo", sizeof(LocalMemInfo),
                 {{offsetof(LocalMemInfo, TotalSize), 4},
                  {offsetof(LocalMemInfo, quantity), 4},
                  {offsetof(LocalMemInfo, bank), 16 * 124}},
                 1992);
}

}  // namespace
