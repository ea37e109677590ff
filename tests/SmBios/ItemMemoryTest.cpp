// SPDX-License-Identifier: MIT
//
// The items that GetItem hands back: whose memory they are, and what happens when there is none.
#include "support/SmBiosTest.h"

namespace {

class ItemMemoryTest : public SmBiosTest {
protected:
    std::size_t AllocationsSince(std::size_t before) { return server.Allocations() - before; }
};

TEST_F(ItemMemoryTest, ItemEndsInsideTheTableCopy) {
    table.Add(4, 1, 4);
    table.Add(4, 2, 4);
    Open();
    const auto item = Item(4, 2);
    EXPECT_EQ(item->GetEndAddress(), reader->BiosData + 11);
}

TEST_F(ItemMemoryTest, EveryCallHandsBackAFreshItem) {
    table.Add(4, 1, 4).String("text");
    Open();
    const auto first = Item(4, 1);
    const auto second = Item(4, 1);
    EXPECT_NE(first.get(), second.get());
    EXPECT_NE(first->GetFormatedData(), second->GetFormatedData());
    EXPECT_NE(first->GetString(1), second->GetString(1));
    first->GetString(1)[0] = 'n';
    EXPECT_STREQ(second->GetString(1), "text");
}

TEST_F(ItemMemoryTest, ItemThatFindsNoMemoryIsNull) {
    table.Add(4, 1, 4).String("text");
    Open();
    server.FailAllocation(1);
    EXPECT_EQ(Item(4, 1), nullptr);
    EXPECT_NE(Item(4, 1), nullptr);
}

TEST_F(ItemMemoryTest, ItemWhoseFormattedAreaFindsNoMemoryIsPartlyBuilt) {
    table.Add(4, 7, 4).String("text");
    Open();
    server.FailAllocation(2);
    const auto item = Item(4, 1);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->GetType(), 4);
    EXPECT_EQ(item->GetHandle(), 7);
    EXPECT_EQ(item->GetFormatedData(), nullptr);
    EXPECT_EQ(item->GetString(1), nullptr);
    EXPECT_EQ(item->GetEndAddress(), nullptr);
    EXPECT_EQ(item->StringBufferLength, 0u);
}

TEST_F(ItemMemoryTest, ItemWhoseStringsFindNoMemoryHasNone) {
    table.Add(4, 7, 4).String("text");
    Open();
    server.FailAllocation(3);
    const auto item = Item(4, 1);
    ASSERT_NE(item, nullptr);
    EXPECT_NE(item->GetFormatedData(), nullptr);
    EXPECT_EQ(item->GetString(1), nullptr);
}

TEST_F(ItemMemoryTest, GettersSurviveEveryFailedAllocation) {
    table.Add(0, 0, 9).String(4, "Vendor");
    table.Add(1, 1, 8).String(4, "Maker");
    Open();
    const std::size_t before = server.Allocations();
    EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 32), Copied("Maker"));
    const int needed = static_cast<int>(AllocationsSince(before));
    for (int nth = 1; nth <= needed; ++nth) {
        server.FailAllocation(nth);
        EXPECT_EQ(Ask(&SmBios::GetSysManufacturer, 32), Missing()) << nth;
    }
    EXPECT_EQ(Ask(&SmBios::GetBiosVendor, 32), Copied("Vendor"));
}

TEST_F(ItemMemoryTest, DevicesSuppliesAndCachesThatFindNoMemoryAreMissing) {
    table.Add(10, 1, 6).Byte(4, 0x83).String(5, "Video");
    table.Add(39, 2, 22).String(6, "Supply").Word(14, 0x1000);
    table.Add(7, 3, 19).String(4, "L1");
    Open();
    const auto expectMissingWithoutMemory = [&](const std::string& what, auto ask) {
        EXPECT_EQ(ask().result, 0) << what;
        server.FailAllocation(1);
        EXPECT_EQ(ask(), Missing()) << what;
        EXPECT_EQ(ask().result, 0) << what;
    };
    expectMissingWithoutMemory("device", [&] { return Ask(&SmBios::GetOnBoardDevDescription, 1); });
    expectMissingWithoutMemory("supply", [&] {
        return AskWith(Buffer::kMarked,
                       [&](char* b) { return reader->GetPSDeviceName(0x0E, 1, b, 32); });
    });
    expectMissingWithoutMemory(
        "cache", [&] { return AskHandle(&SmBios::GetCacheDesignationPrivate, 3, 32); });
}

TEST_F(ItemMemoryTest, DeviceWhoseTextsFindNoMemoryHasNoLocator) {
    table.Add(17, 1, 27).String(16, "DIMM1");
    Open();
    char locator[] = "DIMM1";
    EXPECT_EQ(reader->GetProperMemDev(locator), 1);
    for (int nth = 1; nth <= 3; ++nth) {  // the item, its formatted area, its strings
        server.FailAllocation(nth);
        EXPECT_EQ(reader->GetProperMemDev(locator), 0) << nth;
    }
    EXPECT_EQ(reader->GetProperMemDev(locator), 1);
}

TEST_F(ItemMemoryTest, StructuresPassedOverCostNoMemory) {
    for (int i = 0; i < 200; ++i) table.Add(9, 0, 4);
    for (int i = 0; i < 200; ++i) table.Add(4, static_cast<std::uint16_t>(1000 + i), 4);
    Open();
    const std::size_t before = server.Allocations();
    const auto item = Item(4, 100);
    EXPECT_EQ(AllocationsSince(before), 3u);  // the item, its formatted area, its strings
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->GetHandle(), 1099);
    EXPECT_EQ(Item(5, 1), nullptr);
    EXPECT_EQ(AllocationsSince(before), 3u);
}

}  // namespace
