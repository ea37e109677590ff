// SPDX-License-Identifier: MIT
//
// Compression by the system's gzip, and files that are no whole gzip files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/time.h>

#include <csignal>
#include <cstdlib>
#include <system_error>

#include "archive/Gzip.h"
#include "tests/support/DescriptorLimit.h"
#include "tests/support/ErrorText.h"

namespace {

using archive::Bytes;

std::string Complaint(const Bytes& gzip, std::size_t limit) {
    return ErrorText<archive::Error>([&] { return archive::Decompress(gzip, limit); });
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

TEST(GzipTest, TwoBytesTellAGzipFile) {
    EXPECT_TRUE(archive::IsGzip(Bytes{0x1F, 0x8B}));
    for (const Bytes& other : {Bytes{}, Bytes{0x1F}, Bytes{0x1F, 0x8C}, Bytes{0x1E, 0x8B}})
        EXPECT_FALSE(archive::IsGzip(other));
}

// What the system refuses, as the error that names the call.
std::string Refusal(const Bytes& bytes) {
    return ErrorText<std::system_error>([&] { return archive::Compress(bytes); });
}

TEST(GzipTest, WithoutDescriptorsTheErrorNamesTheCall) {
    if (kChecksNeedDescriptors) GTEST_SKIP() << "the sanitizer would end the program";
    std::string text;
    {
        const DescriptorLimit none(0);
        text = Refusal({1});
    }
    EXPECT_EQ(text, "memfd_create: Too many open files");
    {
        const DescriptorLimit one(1);
        text = Refusal({1});
    }
    EXPECT_EQ(text, "pipe2: Too many open files");
}

TEST(GzipTest, BytesForWhichThereIsNoRoomAreAnError) {
    ASSERT_NE(std::signal(SIGXFSZ, SIG_IGN), SIG_ERR);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{1000, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string text = Refusal(Bytes(2000));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(text, "a file in memory: File too large");
}

TEST(GzipTest, SignalsWhileItRunsDoNotDisturbIt) {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    ASSERT_EQ(sigaction(SIGALRM, &action, nullptr), 0);
    const itimerval often{{0, 1000}, {0, 1000}};
    ASSERT_EQ(setitimer(ITIMER_REAL, &often, nullptr), 0);
    Bytes bytes;
    for (unsigned i = 0; i < 3000000; ++i) bytes.push_back(static_cast<std::uint8_t>(i * i >> 7));
    const Bytes gzip = archive::Compress(bytes);
    const itimerval never{};
    ASSERT_EQ(setitimer(ITIMER_REAL, &never, nullptr), 0);
    EXPECT_EQ(archive::Decompress(gzip), bytes);
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
