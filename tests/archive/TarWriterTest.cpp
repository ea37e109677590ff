// SPDX-License-Identifier: MIT
//
// Tar files as the writer makes them, read by another reader and by the reader.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "archive/Tar.h"

namespace {

using archive::Bytes;
using archive::Files;

Bytes BytesOf(const std::string& text) {
    return Bytes(text.begin(), text.end());
}

TEST(TarWriterTest, ReaderGivesBackTheSameFiles) {
    const Files files = {{"a/empty", {}},
                         {"a/block", Bytes(512, 0xFF)},
                         {"a/more", Bytes(513, 0x01)},
                         {"b", BytesOf("text\n")}};
    EXPECT_EQ(archive::ReadTar(archive::WriteTar(files, 1000000000)), files);
    EXPECT_EQ(archive::ReadTar(archive::WriteTar({}, 0)), Files());
}

// By the tarfile module of Python, which every computer with the other tests' programs has.
constexpr const char* kLister =
    "import sys,tarfile\n"
    "for e in tarfile.open(sys.argv[1]):\n"
    "    print(e.name, e.type, oct(e.mode), e.uid, e.gid, e.size, e.mtime)\n";

TEST(TarWriterTest, AnotherReaderListsOwnerModeAndTime) {
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("tar-" + std::to_string(getpid()));
    const Bytes tar = archive::WriteTar({{"machine/b", BytesOf("12")}, {"machine/a", {}}}, 86400);
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(tar.data()), static_cast<std::streamsize>(tar.size()));
    FILE* const pipe = popen(
        ("python3 -c '" + std::string(kLister) + "' " + file.string() + " 2>&1").c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string listed;
    char line[256];
    while (std::fgets(line, sizeof line, pipe) != nullptr) listed += line;
    EXPECT_EQ(pclose(pipe), 0);
    std::filesystem::remove(file);
    EXPECT_EQ(listed,
              "machine/a b'0' 0o600 0 0 0 86400\n"
              "machine/b b'0' 0o600 0 0 2 86400\n");
}

TEST(TarWriterTest, NameOfMoreThanAHundredBytesIsRefused) {
    EXPECT_NO_THROW((void)archive::WriteTar({{std::string(100, 'n'), {}}}, 0));
    EXPECT_THROW((void)archive::WriteTar({{std::string(101, 'n'), {}}}, 0), std::length_error);
}

}  // namespace
