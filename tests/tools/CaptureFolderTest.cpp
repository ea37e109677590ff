// SPDX-License-Identifier: MIT
//
// What a capture writes down as statements.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/capture/MachineFolder.h"

namespace {

TEST(CaptureFolderTest, WayIsWrittenWithTheDisksThatCannotBeOpened) {
    const tool::Way way{"drives",   false, "/sys/block", "2 left out", "", "/dev/sda, /dev/sdb",
                        "no rights"};
    const archive::Files files = tool::MachineFolderOf({}, {}, {way});
    const archive::Bytes& bytes = files.at("machine.txt");
    EXPECT_THAT(std::string(bytes.begin(), bytes.end()),
                testing::StartsWith("way drives host \"/sys/block\" note \"2 left out\" "
                                    "unopened \"/dev/sda, /dev/sdb\" \"no rights\"\n"));
}

}  // namespace
