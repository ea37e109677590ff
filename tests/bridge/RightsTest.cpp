// SPDX-License-Identifier: MIT
//
// What is left of a process's rights, as the kernel tells it.

#include <gmock/gmock.h>
#include <grp.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <string>

#include "bridge/Rights.h"

namespace {

// Of /proc/self/status, without the blanks before the value.
std::string Status(const std::string& name) {
    std::ifstream file("/proc/self/status");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with(name + ':')) return line.substr(line.find_last_of(" \t") + 1);
    return "missing";
}

// In a process of its own, since rights do not come back.
TEST(RightsTest, NoCapabilityIsLeftAndNoneCanBeGained) {
    const auto drop = [] {
        const bool dropped = bridge::DropRights("") == 0;
        const bool none =
            Status("CapEff") == "0000000000000000" && Status("CapPrm") == "0000000000000000" &&
            Status("CapInh") == "0000000000000000" && Status("CapAmb") == "0000000000000000";
        // Only who may change the bounding set needs to.
        const bool bounded = getuid() != 0 || Status("CapBnd") == "0000000000000000";
        _exit(dropped && none && bounded && Status("NoNewPrivs") == "1" ? 0 : 1);
    };
    EXPECT_EXIT(drop(), ::testing::ExitedWithCode(0), "");
}

TEST(RightsTest, AProcessWithoutRightsHasNoneToDropAndBecomesNobodyElse) {
    const auto drop = [] {
        const bool once = bridge::DropRights("") == 0;
        const bool twice = bridge::DropRights("") == 0;
        _exit(once && twice && bridge::DropRights("root") == EPERM ? 0 : 1);
    };
    EXPECT_EXIT(drop(), ::testing::ExitedWithCode(0), "");
}

// Of the name's value in /proc/self/status, all four users or groups: real, effective, saved and
// that of files.
bool AllAre(const std::string& name, const std::string& id) {
    std::ifstream file("/proc/self/status");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with(name + ':'))
            return line == name + ":\t" + id + '\t' + id + '\t' + id + '\t' + id;
    return false;
}

TEST(RightsTest, TheUserIsChangedForGood) {
    if (getuid() != 0) GTEST_SKIP() << "only root becomes another user";
    const auto drop = [] {
        std::array<gid_t, 2> groups{0, 4};
        (void)setgroups(groups.size(), groups.data());  // result not used: root may
        const bool dropped = bridge::DropRights("nobody") == 0;
        const bool own = getgroups(groups.size(), groups.data()) == 1 && groups[0] == 65534;
        const bool become = AllAre("Uid", "65534") && AllAre("Gid", "65534");
        const bool back = setresuid(0, 0, 0) == 0;
        const bool none = Status("CapEff") == "0000000000000000" &&
                          Status("CapPrm") == "0000000000000000" &&
                          Status("CapBnd") == "0000000000000000";
        _exit(dropped && become && !back && none && own ? 0 : 1);
    };
    EXPECT_EXIT(drop(), ::testing::ExitedWithCode(0), "");
}

TEST(RightsTest, AUserThatDoesNotExistIsAnError) {
    const auto drop = [] { _exit(bridge::DropRights("no such user") == ENOENT ? 0 : 1); };
    EXPECT_EXIT(drop(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
