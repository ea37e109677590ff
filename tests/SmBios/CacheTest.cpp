// SPDX-License-Identifier: MIT
//
// Caches of a processor, and the cache structures that their handles name.
#include <climits>

#include "support/SmBiosTest.h"

namespace {

class CacheTest : public SmBiosTest {
protected:
    sim::SmbiosStructure& AddCache(int handle) {
        return table.Add(7, static_cast<std::uint16_t>(handle), 19);
    }
    sim::SmbiosStructure& AddProcessor(int l1, int l2, int l3) {
        return table.Add(4, 0x400, 35)
            .Word(26, static_cast<std::uint16_t>(l1))
            .Word(28, static_cast<std::uint16_t>(l2))
            .Word(30, static_cast<std::uint16_t>(l3));
    }

    // All four getters of one level.
    void ExpectCache(int cpu, int level, const Answer& designation, const Answer& maxSize,
                     const Answer& installed, const Answer& speed) {
        EXPECT_EQ(AskNth(&SmBios::GetCacheDesignation, cpu, level, 32), designation);
        EXPECT_EQ(AskNth(&SmBios::GetCacheMaxSize, cpu, level), maxSize);
        EXPECT_EQ(AskNth(&SmBios::GetCacheInstalledSize, cpu, level), installed);
        EXPECT_EQ(AskNth(&SmBios::GetCacheSpeed, cpu, level), speed);
    }
    void ExpectAll(int cpu, int level, const Answer& answer) {
        ExpectCache(cpu, level, answer, answer, answer, answer);
    }
};

TEST_F(CacheTest, EachLevelIsReadFromItsHandle) {
    AddCache(0x701).String(4, "L3 Cache").Word(7, 2048).Word(9, 1024).Byte(15, 12);
    AddCache(0x702).String(4, "L1 Cache").Word(7, 16).Word(9, 8).Byte(15, 2);
    AddCache(0x703).String(4, "L2 Cache").Word(7, 512).Word(9, 256).Byte(15, 5);
    AddProcessor(0x702, 0x703, 0x701);
    Open();
    ExpectCache(1, 0, Copied("L1 Cache"), Terminated("16 KB"), Terminated("8 KB"),
                Terminated("2ns"));
    ExpectCache(1, 1, Copied("L2 Cache"), Terminated("512 KB"), Terminated("256 KB"),
                Terminated("5ns"));
    ExpectCache(1, 2, Copied("L3 Cache"), Terminated("2048 KB"), Terminated("1024 KB"),
                Terminated("12ns"));
}

TEST_F(CacheTest, EachProcessorHasItsOwnHandles) {
    AddCache(0x701).String(4, "one");
    AddCache(0x702).String(4, "two");
    AddProcessor(0x701, 0xFFFF, 0xFFFF);
    AddProcessor(0x702, 0xFFFF, 0xFFFF);
    Open();
    EXPECT_EQ(AskNth(&SmBios::GetCacheDesignation, 1, 0, 32), Copied("one"));
    EXPECT_EQ(AskNth(&SmBios::GetCacheDesignation, 2, 0, 32), Copied("two"));
}

TEST_F(CacheTest, MaxSize8010GivesOneMebibyteInKilobytes) {
    AddCache(0x701).Word(7, 0x8010).Word(9, 0x8008);
    Open();
    EXPECT_EQ(AskHandle(&SmBios::GetCacheMaxSizePrivate, 0x701), Terminated("1024 KB"));
    EXPECT_EQ(AskHandle(&SmBios::GetCacheInstalledSizePrivate, 0x701), Terminated("512 KB"));
}

TEST_F(CacheTest, SizesBelow8000AreKilobytesAndOthersMultiplesOfSixtyFour) {
    const std::vector<std::pair<int, std::string>> sizes = {
        {0, "0 KB"},       {1, "1 KB"},          {0x7FFF, "32767 KB"},   {0x8000, "0 KB"},
        {0x8001, "64 KB"}, {0x8100, "16384 KB"}, {0xFFFF, "2097088 KB"},
    };
    for (const auto& [size, text] : sizes) {
        NewTable();
        AddCache(1).Word(7, static_cast<std::uint16_t>(size));
        AddCache(2).Word(9, static_cast<std::uint16_t>(size));
        Open();
        EXPECT_EQ(AskHandle(&SmBios::GetCacheMaxSizePrivate, 1), Terminated(text)) << size;
        EXPECT_EQ(AskHandle(&SmBios::GetCacheInstalledSizePrivate, 2), Terminated(text)) << size;
    }
}

TEST_F(CacheTest, SpeedIsWrittenWithoutABlankAndZeroIsUnknown) {
    AddCache(1).Byte(15, 255);
    AddCache(2).Byte(15, 0);
    AddProcessor(1, 2, 0xFFFF);
    Open();
    EXPECT_EQ(AskHandle(&SmBios::GetCacheSpeedPrivate, 1), Terminated("255ns"));
    EXPECT_EQ(AskHandle(&SmBios::GetCacheSpeedPrivate, 2), Refused("Unknown"));
    EXPECT_EQ(AskNth(&SmBios::GetCacheSpeed, 1, 1), Refused("Unknown"));
}

TEST_F(CacheTest, DesignationIsABoundedCopy) {
    AddCache(1).String(4, "0123456789");
    AddCache(2);
    AddProcessor(1, 2, 0xFFFF);
    Open();
    EXPECT_EQ(AskHandle(&SmBios::GetCacheDesignationPrivate, 1, 11), Copied("0123456789"));
    EXPECT_EQ(AskHandle(&SmBios::GetCacheDesignationPrivate, 1, 10), Copied("012345678"));
    EXPECT_EQ(AskNth(&SmBios::GetCacheDesignation, 1, 0, 5), Copied("0123"));
    EXPECT_EQ(AskHandle(&SmBios::GetCacheDesignationPrivate, 2, 32), Missing());
}

TEST_F(CacheTest, UnknownHandleAnswersMinusOne) {
    AddCache(0x701);
    AddProcessor(0x702, 0, 0xFFFE);
    Open();
    EXPECT_EQ(AskHandle(&SmBios::GetCacheDesignationPrivate, 0x702, 32), Missing());
    EXPECT_EQ(AskHandle(&SmBios::GetCacheMaxSizePrivate, 0x702), Missing());
    EXPECT_EQ(AskHandle(&SmBios::GetCacheInstalledSizePrivate, 0x702), Missing());
    EXPECT_EQ(AskHandle(&SmBios::GetCacheSpeedPrivate, 0x702), Missing());
    for (int level = 0; level < 3; ++level) ExpectAll(1, level, Missing());
}

TEST_F(CacheTest, HandleOfAnotherTypeIsNoCache) {
    table.Add(8, 0x701, 19).Word(7, 16);
    Open();
    EXPECT_EQ(AskHandle(&SmBios::GetCacheMaxSizePrivate, 0x701), Missing());
}

TEST_F(CacheTest, FirstOfTwoCachesWithOneHandleIsTaken) {
    AddCache(0x701).Word(7, 16);
    AddCache(0x701).Word(7, 32);
    Open();
    EXPECT_EQ(AskHandle(&SmBios::GetCacheMaxSizePrivate, 0x701), Terminated("16 KB"));
}

TEST_F(CacheTest, HandleZeroIsAHandleLikeAnyOther) {
    AddCache(0).Word(7, 16);
    AddProcessor(0, 0xFFFF, 0xFFFF);
    Open();
    EXPECT_EQ(AskNth(&SmBios::GetCacheMaxSize, 1, 0), Terminated("16 KB"));
}

TEST_F(CacheTest, PrivateGettersLookForHandleFFFFToo) {
    AddCache(0xFFFF).Word(7, 16);
    Open();
    EXPECT_EQ(AskHandle(&SmBios::GetCacheMaxSizePrivate, 0xFFFF), Terminated("16 KB"));
    EXPECT_EQ(AskHandle(&SmBios::GetCacheMaxSizePrivate, 0x1FFFF), Missing());
}

TEST_F(CacheTest, WalkEndsAfterTwoHundredFiftyFiveCaches) {
    for (int i = 1; i <= 256; ++i) AddCache(i).Word(7, static_cast<std::uint16_t>(i));
    Open();
    EXPECT_EQ(AskHandle(&SmBios::GetCacheMaxSizePrivate, 255), Terminated("255 KB"));
    EXPECT_EQ(AskHandle(&SmBios::GetCacheMaxSizePrivate, 256), Missing());
}

TEST_F(CacheTest, AbsentLevelIsNoneBefore23AndNotProvidedFrom23On) {
    AddProcessor(0xFFFF, 0xFFFF, 0xFFFF);
    for (int minor = 0; minor < 256; ++minor) {
        OpenVersion(2, minor);
        const std::string text = minor < 3 ? "None" : "Bios Not Provide";
        for (int level = 0; level < 3; ++level)
            ExpectCache(1, level, Copied(text), Terminated(text), Terminated(text),
                        Terminated(text));
    }
}

TEST_F(CacheTest, AbsentL2Under23GivesBiosNotProvideAndUnder22None) {
    AddProcessor(0x701, 0xFFFF, 0x701);
    OpenVersion(2, 3);
    EXPECT_EQ(AskNth(&SmBios::GetCacheMaxSize, 1, 1), Terminated("Bios Not Provide"));
    OpenVersion(2, 2);
    EXPECT_EQ(AskNth(&SmBios::GetCacheMaxSize, 1, 1), Terminated("None"));
}

TEST_F(CacheTest, AbsentLevelUnderAnotherMajorVersionWritesNothing) {
    AddProcessor(0xFFFF, 0xFFFF, 0xFFFF);
    for (const int major : {0, 1, 3, 255}) {
        OpenVersion(major, 3);
        ExpectAll(1, 1, NothingWritten());
    }
}

TEST_F(CacheTest, AbsentLevelUnderALegacyDmiEntryPointWritesNothing) {
    AddProcessor(0xFFFF, 0xFFFF, 0xFFFF);
    OpenDmi();
    for (int level = 0; level < 3; ++level) ExpectAll(1, level, NothingWritten());
}

TEST_F(CacheTest, FallbackDesignationIsCutToTheSize) {
    AddProcessor(0xFFFF, 0xFFFF, 0xFFFF);
    OpenVersion(2, 3);
    EXPECT_EQ(AskNth(&SmBios::GetCacheDesignation, 1, 0, 17), Copied("Bios Not Provide"));
    EXPECT_EQ(AskNth(&SmBios::GetCacheDesignation, 1, 0, 16), Copied("Bios Not Provid"));
    OpenVersion(2, 2);
    EXPECT_EQ(AskNth(&SmBios::GetCacheDesignation, 1, 0, 3), Copied("No"));
}

TEST_F(CacheTest, MissingProcessorAnswersMinusOne) {
    AddCache(0).String(4, "found by mistake").Word(7, 16).Word(9, 8).Byte(15, 1);
    AddCache(0x701);
    AddProcessor(0x701, 0xFFFF, 0xFFFF);
    Open();
    ExpectAll(2, 0, Missing());
    ExpectAll(0, 0, Missing());
}

TEST_F(CacheTest, LevelIsNotRangeChecked) {
    AddCache(0x701).String(4, "c").Word(7, 16).Word(9, 8).Byte(15, 1);
    AddProcessor(0xFFFF, 0xFFFF, 0xFFFF).Word(32, 0x701).Word(24, 0x701);
    Open();
    ExpectCache(1, 3, Copied("c"), Terminated("16 KB"), Terminated("8 KB"), Terminated("1ns"));
    ExpectCache(1, -1, Copied("c"), Terminated("16 KB"), Terminated("8 KB"), Terminated("1ns"));
}

TEST_F(CacheTest, LevelAtTheStartOfTheStructureReadsItsTypeAndLengthAsTheHandle) {
    AddCache(35 << 8 | 4).Word(7, 16);
    AddProcessor(0xFFFF, 0xFFFF, 0xFFFF);
    Open();
    EXPECT_EQ(AskNth(&SmBios::GetCacheMaxSize, 1, -13), Terminated("16 KB"));
}

TEST_F(CacheTest, LevelsOutsideTheStructureReadAHandleOfZero) {
    AddCache(0x701).Word(7, 16);
    AddProcessor(0xFFFF, 0xFFFF, 0xFFFF);
    Open();
    constexpr int kOutside[] = {5, 1000, INT_MAX, -14, -1000, INT_MIN};
    for (const int level : kOutside) ExpectAll(1, level, Missing());
    AddCache(0).Word(7, 32);
    Open();
    for (const int level : kOutside)
        EXPECT_EQ(AskNth(&SmBios::GetCacheMaxSize, 1, level), Terminated("32 KB")) << level;
}

TEST_F(CacheTest, ShortProcessorStructureReadsAHandleOfZero) {
    table.Add(4, 1, 26);
    Open();
    ExpectAll(1, 0, Missing());
}

}  // namespace
