// SPDX-License-Identifier: MIT
//
// Tar files that a stranger may have made: each danger is refused, and its entry is named.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "archive/Tar.h"
#include "tests/support/ErrorText.h"
#include "tests/support/TarEntry.h"

namespace {

using archive::Bytes;
using archive::Files;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Key;
using testing::StartsWith;

std::string Complaint(const Bytes& tar) {
    return ErrorText<archive::Error>([&] { return archive::ReadTar(tar); });
}

std::string ComplaintAbout(const TarEntry& entry) {
    return Complaint(TarOf({{"first"}, entry}));
}

TEST(TarReaderTest, FoldersAndPathsFromHereAreAccepted) {
    const Files files = archive::ReadTar(TarOf({{"./", "", '5'},
                                                {"./a/", "", '5'},
                                                {"./a/b", "text"},
                                                {"old", "", '\0'},
                                                {"c", "", '0', "", "long/folder"}}));
    EXPECT_THAT(files, ElementsAre(Key("a/b"), Key("long/folder/c"), Key("old")));
    EXPECT_EQ(files.at("a/b"), (Bytes{'t', 'e', 'x', 't'}));
}

TEST(TarReaderTest, HeadersOfGnuTarAreAccepted) {
    TarEntry entry{"a", "1"};
    entry.magic = std::string("ustar  ", 8);
    entry.prefix = "is another field there";
    EXPECT_THAT(archive::ReadTar(TarOf({entry})), ElementsAre(Key("a")));
}

TEST(TarReaderTest, TheFolderItselfAndSizesBetweenBlanksAreAccepted) {
    EXPECT_THAT(archive::ReadTar(TarOf({{".", "", '5'}, {"a", "text", '0', "      4    "}})),
                ElementsAre(Key("a")));
}

TEST(TarReaderTest, SizesThatAreNoOctalNumbersAreRefused) {
    const std::string complaint = ComplaintAbout({"a", "", '0', "x"});
    for (const std::string size : {"   ", "000000000000", "8", "/"})
        EXPECT_EQ(ComplaintAbout({"a", "", '0', size}), complaint) << size;
}

TEST(TarReaderTest, ControlCharactersOfAPathAreRefusedAndShownAsNumbers) {
    EXPECT_EQ(ComplaintAbout({"a\nb"}), "a\\x0Ab: the path has control characters");
    EXPECT_EQ(ComplaintAbout({"a\x7F"}), "a\\x7F: the path has control characters");
    EXPECT_EQ(ComplaintAbout({"/\xE9"}), "/\\xE9: the path is absolute");
}

TEST(TarReaderTest, PathsThatLeaveTheArchiveAreRefused) {
    EXPECT_EQ(ComplaintAbout({"/etc/shadow"}), "/etc/shadow: the path is absolute");
    EXPECT_EQ(ComplaintAbout({"../x"}), "../x: the path leads out of the archive");
    EXPECT_EQ(ComplaintAbout({"a/../../x"}), "a/../../x: the path leads out of the archive");
    EXPECT_EQ(ComplaintAbout({"a/.."}), "a/..: the path leads out of the archive");
    EXPECT_EQ(ComplaintAbout({"./../x"}), "./../x: the path leads out of the archive");
    EXPECT_EQ(ComplaintAbout({"x", "", '0', "", "/etc"}), "/etc/x: the path is absolute");
    EXPECT_EQ(ComplaintAbout({"../", "", '5'}), "../: the path leads out of the archive");
}

TEST(TarReaderTest, PathsThatOtherProgramsReadDifferentlyAreRefused) {
    EXPECT_EQ(ComplaintAbout({"a//b"}), "a//b: the path has an empty part");
    EXPECT_EQ(ComplaintAbout({"a/./b"}), "a/./b: the path has an empty part");
    EXPECT_EQ(ComplaintAbout({"a\nb\x1B"}), "a\\x0Ab\\x1B: the path has control characters");
    EXPECT_EQ(ComplaintAbout({""}), ": is a file with the name of a folder");
    EXPECT_EQ(ComplaintAbout({"a/"}), "a/: is a file with the name of a folder");
}

TEST(TarReaderTest, LinksDevicesAndOtherTypesAreRefused) {
    EXPECT_EQ(ComplaintAbout({"x", "", '1'}), "x: is a link");
    EXPECT_EQ(ComplaintAbout({"x", "", '2'}), "x: is a link");
    EXPECT_EQ(ComplaintAbout({"x", "", '3'}), "x: is a device");
    EXPECT_EQ(ComplaintAbout({"x", "", '4'}), "x: is a device");
    EXPECT_EQ(ComplaintAbout({"x", "", '6'}), "x: is a FIFO");
    for (const char type : {'7', 'L', 'K', 'S', 'x', 'g'})
        EXPECT_EQ(ComplaintAbout({"x", "", type}),
                  std::string("x: is neither a file nor a folder: type ") + type);
}

TEST(TarReaderTest, NamesThatAreThereTwiceAreRefused) {
    EXPECT_EQ(Complaint(TarOf({{"x"}, {"./x"}})), "./x: is in the archive twice");
    EXPECT_EQ(Complaint(TarOf({{"x"}, {"x/y"}})), "x: is a file and a folder");
    EXPECT_EQ(Complaint(TarOf({{"x"}, {"x/", "", '5'}})), "x: is a file and a folder");
}

TEST(TarReaderTest, SizesBeyondTheLimitsAreRefusedBeforeTheyAreRead) {
    EXPECT_EQ(ComplaintAbout({"x", "", '0', "00040000001"}), "x: is larger than 8388608 bytes");
    EXPECT_EQ(ComplaintAbout({"x", "", '0', "77777777777"}), "x: is larger than 8388608 bytes");
    EXPECT_EQ(ComplaintAbout({"x", "", '0', "\x80\x01"}), "x: its size is not a number");
    EXPECT_EQ(ComplaintAbout({"x", "", '0', "-1"}), "x: its size is not a number");
    EXPECT_EQ(ComplaintAbout({"x/", "", '5', "1"}), "x/: is a folder with a size");
    const std::string most(archive::kMaxFileSize, ' ');
    EXPECT_EQ(Complaint(TarOf({{"a", most}, {"b", most}, {"c", most}, {"d", most}, {"e", "1"}})),
              "e: the files are larger than 33554432 bytes together");
    EXPECT_EQ(Complaint(TarOf({{"a", most}, {"b", most}, {"c", most}, {"d", most}})),
              "no complaint");
}

TEST(TarReaderTest, TooManyEntriesAreRefused) {
    std::vector<TarEntry> entries;
    for (std::size_t i = 0; i < archive::kMaxEntries; ++i)
        entries.push_back({"e" + std::to_string(i)});
    EXPECT_EQ(Complaint(TarOf(entries)), "no complaint");
    entries.push_back({"last/", "", '5'});
    EXPECT_EQ(Complaint(TarOf(entries)), "last/: the archive has more than 1024 entries");
}

TEST(TarReaderTest, DamagedHeadersAreRefused) {
    TarEntry entry{"x", "1"};
    entry.checksumError = 1;
    EXPECT_EQ(ComplaintAbout(entry), "x: this is no header of a tar file, or it is damaged");
    entry.checksumError = 0;
    entry.magic = "";
    EXPECT_EQ(ComplaintAbout(entry), "x: this is no header of a tar file, or it is damaged");
}

TEST(TarReaderTest, EveryCutIsNoticed) {
    const Bytes tar = TarOf({{"first", "1"}, {"second", std::string(600, '2')}});
    for (std::size_t size = 0; size + 2 * archive::kTarBlock <= tar.size(); ++size)
        ASSERT_NE(Complaint(Bytes(tar.begin(), tar.begin() + static_cast<std::ptrdiff_t>(size))),
                  "no complaint")
            << size;
    EXPECT_EQ(Complaint(Bytes(tar.begin(), tar.begin() + 1600)),
              "second: the archive ends within it");
    EXPECT_EQ(Complaint(Bytes(tar.begin(), tar.begin() + 1024)),
              "the archive ends too early after first");
    EXPECT_EQ(Complaint({}), "the archive ends too early");
}

TEST(TarReaderTest, EveryChangedByteOfAHeaderIsNoticed) {
    const Bytes tar = TarOf({{"name", "content"}});
    for (std::size_t at = 0; at < archive::kTarBlock; ++at) {
        Bytes damaged = tar;
        damaged[at] ^= 0x01;
        // Blanks and zeros around the checksum's digits mean nothing.
        if (at >= archive::kTarChecksum.at + 6 && at < archive::kTarType.at) continue;
        ASSERT_NE(Complaint(damaged), "no complaint") << at;
    }
}

TEST(TarReaderTest, BytesAfterTheEndAreRefused) {
    Bytes tar = TarOf({{"x"}});
    tar.back() = 1;
    EXPECT_EQ(Complaint(tar), "the archive goes on after its end after x");
    tar.back() = 0;
    tar.resize(tar.size() + 10240);
    EXPECT_EQ(Complaint(tar), "no complaint");
}

}  // namespace
