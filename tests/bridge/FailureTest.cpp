// SPDX-License-Identifier: MIT
//
// What a caller gets when the bridge itself has run out of something.

#include <gmock/gmock.h>

#include <cerrno>
#include <new>
#include <stdexcept>
#include <system_error>

#include "bridge/Failure.h"

namespace {

using bridge::ErrorOf;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

TEST(FailureTest, WithoutMemoryTheCallerGetsEnomem) {
    CaptureStderr();
    EXPECT_EQ(ErrorOf(std::bad_alloc()), ENOMEM);
    EXPECT_EQ(GetCapturedStderr(), "talvane-ipmi-bridge: out of memory\n");
}

TEST(FailureTest, AThreadThatTheSystemRefusesIsItsErrno) {
    CaptureStderr();
    EXPECT_EQ(ErrorOf(std::system_error(EAGAIN, std::generic_category(), "thread")), EAGAIN);
    EXPECT_EQ(GetCapturedStderr(),
              "talvane-ipmi-bridge: thread: Resource temporarily unavailable\n");
}

TEST(FailureTest, ASystemErrorWithoutAnErrnoIsEio) {
    CaptureStderr();
    EXPECT_EQ(ErrorOf(std::system_error(0, std::generic_category(), "thread")), EIO);
    EXPECT_EQ(GetCapturedStderr(), "talvane-ipmi-bridge: thread: Success\n");
}

TEST(FailureTest, AnythingElseIsEio) {
    CaptureStderr();
    EXPECT_EQ(ErrorOf(std::runtime_error("such and such")), EIO);
    EXPECT_EQ(GetCapturedStderr(), "talvane-ipmi-bridge: such and such\n");
}

}  // namespace
