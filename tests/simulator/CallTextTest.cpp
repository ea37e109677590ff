// SPDX-License-Identifier: MIT
//
// How calls are shown in the log.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

#include "simulator/base/CallText.h"

namespace {

TEST(CallTextTest, ErrorHasItsNameOrElseItsNumber) {
    EXPECT_EQ(sim::ErrorName(ENOENT), "ENOENT");
    EXPECT_EQ(sim::ErrorName(9999), "errno 9999");
}

TEST(CallTextTest, FlagsOfOpenHaveOneModeAndTheirNames) {
    EXPECT_EQ(sim::OpenFlags(O_RDONLY), "O_RDONLY");
    EXPECT_EQ(sim::OpenFlags(O_WRONLY | O_CREAT | O_TRUNC), "O_WRONLY|O_CREAT|O_TRUNC");
    EXPECT_EQ(sim::OpenFlags(O_RDWR | O_CLOEXEC), "O_RDWR|O_CLOEXEC");
}

TEST(CallTextTest, SeekTargetIsAnAddressOrADistance) {
    EXPECT_EQ(sim::SeekTarget(0xF0000, SEEK_SET), "0xF0000");
    EXPECT_EQ(sim::SeekTarget(-1, SEEK_SET), "0xFFFFFFFF");
    EXPECT_EQ(sim::SeekTarget(2, SEEK_CUR), "+2");
    EXPECT_EQ(sim::SeekTarget(-2, SEEK_CUR), "-2");
    EXPECT_EQ(sim::SeekTarget(-2, SEEK_END), "END-2");
}

TEST(CallTextTest, TextIsQuotedUnlessItIsMissing) {
    EXPECT_EQ(sim::Quoted("/dev/mem"), "\"/dev/mem\"");
    EXPECT_EQ(sim::Quoted(nullptr), "NULL");
}

}  // namespace
