// SPDX-License-Identifier: MIT
//
// Compression by the system's gzip, and files that are no whole gzip files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

#include "archive/Gzip.h"

namespace {

using archive::Bytes;

std::string Complaint(const Bytes& gzip, std::size_t limit) {
    try {
        (void)archive::Decompress(gzip, limit);
    } catch (const archive::Error& error) {
        return error.what();
    }
    return "no complaint";
}

TEST(GzipTest, WhatWasCompressedComesBack) {
    Bytes bytes;
    for (unsigned i = 0; i < 300000; ++i) bytes.push_back(static_cast<std::uint8_t>(i * i >> 7));
    const Bytes gzip = archive::Compress(bytes);
    EXPECT_TRUE(archive::IsGzip(gzip));
    EXPECT_LT(gzip.size(), bytes.size());
    EXPECT_EQ(archive::Decompress(gzip), bytes);
    EXPECT_EQ(archive::Decompress(archive::Compress({})), Bytes());
}

TEST(GzipTest, ProcessesThatIgnoreTheirChildrenCanUseIt) {
    ASSERT_NE(std::signal(SIGCHLD, SIG_IGN), SIG_ERR);
    EXPECT_EQ(archive::Decompress(archive::Compress(Bytes{1, 2, 3})), (Bytes{1, 2, 3}));
    EXPECT_EQ(std::signal(SIGCHLD, SIG_DFL), SIG_IGN) << "as it was";
}

TEST(GzipTest, FileHoldsNoTime) {
    const Bytes gzip = archive::Compress(Bytes{1, 2, 3});
    EXPECT_EQ(Bytes(gzip.begin() + 3, gzip.begin() + 8), Bytes(5));  // flags and time
}

TEST(GzipTest, OptionsOfTheEnvironmentAreNotTaken) {
    const std::string path = std::getenv("PATH");
    ASSERT_EQ(setenv("GZIP", "--no-such-option", 1), 0);
    ASSERT_EQ(setenv("PATH", "/nowhere", 1), 0);
    EXPECT_EQ(archive::Decompress(archive::Compress(Bytes{1})), Bytes{1});
    ASSERT_EQ(setenv("PATH", path.c_str(), 1), 0);
}

TEST(GzipTest, BombIsRefusedAtTheLimit) {
    const Bytes bomb = archive::Compress(Bytes(std::size_t{30} << 20));
    ASSERT_LT(bomb.size(), 40000u);
    EXPECT_EQ(Complaint(bomb, 1000000), "it unpacks to more than 1000000 bytes");
    EXPECT_EQ(Complaint(archive::Compress(Bytes(1000)), 1000), "no complaint");
    EXPECT_EQ(Complaint(archive::Compress(Bytes(1001)), 1000),
              "it unpacks to more than 1000 bytes");
}

TEST(GzipTest, DamagedFilesAreRefused) {
    const Bytes gzip = archive::Compress(Bytes(5000, 'x'));
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{2}, std::size_t{12}, gzip.size() / 2, gzip.size() - 1})
        EXPECT_EQ(
            Complaint(Bytes(gzip.begin(), gzip.begin() + static_cast<std::ptrdiff_t>(size)), 10000),
            "it is no whole gzip file")
            << size;
    for (const std::size_t at : {std::size_t{2}, std::size_t{11}, gzip.size() - 6}) {
        Bytes damaged = gzip;
        damaged[at] ^= 0x40;
        EXPECT_EQ(Complaint(damaged, 10000), "it is no whole gzip file") << at;
    }
    Bytes longer = gzip;
    longer.insert(longer.end(), {'m', 'o', 'r', 'e'});
    EXPECT_EQ(Complaint(longer, 10000), "it is no whole gzip file");
}

}  // namespace
