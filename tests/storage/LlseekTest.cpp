// SPDX-License-Identifier: MIT
//
// The system call that moves by 64 bits, on descriptors of the test's own.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>

#include "storage/GetAllPartitionInfo.h"

namespace {

class LlseekTest : public ::testing::Test {
protected:
    LlseekTest() : fd(memfd_create("disk", 0)) {}
    ~LlseekTest() override { close(fd); }

    int fd;
    long long result = -7;
};

TEST_F(LlseekTest, PositionAboveFourGibibytesIsReached) {
    EXPECT_EQ(_llseek(static_cast<unsigned>(fd), 1, 2, &result, SEEK_SET), 0);
    EXPECT_EQ(result, 0x100000002);
}

TEST_F(LlseekTest, UnknownDescriptorFails) {
    errno = 0;
    EXPECT_EQ(_llseek(static_cast<unsigned>(-1), 0, 0, &result, SEEK_SET), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(result, -7);
}

TEST_F(LlseekTest, UnknownOriginFails) {
    errno = 0;
    EXPECT_EQ(_llseek(static_cast<unsigned>(fd), 0, 0, &result, 99), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(result, -7);
}

}  // namespace
