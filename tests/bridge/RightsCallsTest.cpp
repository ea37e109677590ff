// SPDX-License-Identifier: MIT
//
// The calls that drop a process's rights, and what happens when one of them fails. They are
// answered here, so that no process loses anything.

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <grp.h>
#include <linux/capability.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <string>
#include <vector>

#include "bridge/Rights.h"

namespace {

using ::testing::ElementsAre;

// While it exists, the calls do nothing. One of them fails with an errno.
class Calls {
public:
    explicit Calls(std::string failing = "", int error = 0)
        : failing_(std::move(failing)), error_(error) {
        current = this;
    }
    ~Calls() { current = nullptr; }
    Calls(const Calls&) = delete;
    Calls& operator=(const Calls&) = delete;

    int Answer(const std::string& name) {
        made.push_back(name);
        if (name != failing_) return 0;
        errno = error_;
        return -1;
    }

    static inline Calls* current = nullptr;
    std::vector<std::string> made;

private:
    std::string failing_;
    int error_;
};

template <typename Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// The user "agent", of whom no call needs more than the numbers.
passwd* Agent() {
    static char name[] = "agent";
    static passwd agent{};
    agent.pw_name = name;
    agent.pw_uid = 1234;
    agent.pw_gid = 1234;
    return &agent;
}

}  // namespace

extern "C" {

int prctl(int option, ...) {
    va_list arguments;
    va_start(arguments, option);
    const unsigned long first = va_arg(arguments, unsigned long);
    va_end(arguments);
    if (Calls::current == nullptr)
        return Real<int(int, unsigned long, long, long, long)>("prctl")(option, first, 0, 0, 0);
    constexpr unsigned long kCapabilities = 2;  // that this kernel knows
    if (option == PR_CAPBSET_READ) return first < kCapabilities ? 1 : -1;
    return Calls::current->Answer(option == PR_CAPBSET_DROP ? "drop" : "no new privileges");
}

passwd* getpwnam(const char* name) {
    if (Calls::current == nullptr) return Real<passwd*(const char*)>("getpwnam")(name);
    return Calls::current->Answer("getpwnam") == 0 ? Agent() : nullptr;
}

int initgroups(const char* user, gid_t group) {
    if (Calls::current == nullptr) return Real<int(const char*, gid_t)>("initgroups")(user, group);
    return Calls::current->Answer("initgroups");
}

int setresgid(gid_t real, gid_t effective, gid_t saved) noexcept {
    if (Calls::current == nullptr)
        return Real<int(gid_t, gid_t, gid_t)>("setresgid")(real, effective, saved);
    return Calls::current->Answer("setresgid");
}

int setresuid(uid_t real, uid_t effective, uid_t saved) noexcept {
    if (Calls::current == nullptr)
        return Real<int(uid_t, uid_t, uid_t)>("setresuid")(real, effective, saved);
    return Calls::current->Answer("setresuid");
}

long syscall(long number, ...) noexcept {
    va_list arguments;
    va_start(arguments, number);
    long words[6];
    for (long& word : words) word = va_arg(arguments, long);
    va_end(arguments);
    if (Calls::current != nullptr && number == SYS_capset) return Calls::current->Answer("capset");
    return Real<long(long, ...)>("syscall")(number, words[0], words[1], words[2], words[3],
                                            words[4], words[5]);
}

}  // extern "C"

namespace {

TEST(RightsCallsTest, TheBoundingSetGoesBeforeTheUserAndTheCapabilitiesGoLast) {
    Calls calls;
    EXPECT_EQ(bridge::DropRights("agent"), 0);
    EXPECT_THAT(calls.made, ElementsAre("no new privileges", "drop", "drop", "getpwnam",
                                        "initgroups", "setresgid", "setresuid", "capset"));
}

TEST(RightsCallsTest, WithoutAUserTheUserRemains) {
    Calls calls;
    EXPECT_EQ(bridge::DropRights(""), 0);
    EXPECT_THAT(calls.made, ElementsAre("no new privileges", "drop", "drop", "capset"));
}

TEST(RightsCallsTest, AnyCallThatFailsIsTheErrorAndTheLast) {
    for (const char* const failing : {"no new privileges", "drop", "getpwnam", "initgroups",
                                      "setresgid", "setresuid", "capset"}) {
        Calls calls(failing, EIO);
        EXPECT_EQ(bridge::DropRights("agent"), EIO) << failing;
        EXPECT_EQ(calls.made.back(), failing);
    }
}

TEST(RightsCallsTest, ABoundingSetThatMayNotBeChangedIsLeft) {
    Calls calls("drop", EPERM);
    EXPECT_EQ(bridge::DropRights("agent"), 0);
    EXPECT_EQ(calls.made.back(), "capset");
}

TEST(RightsCallsTest, AnUnknownUserWithoutAnErrnoIsEnoent) {
    Calls calls("getpwnam", 0);
    EXPECT_EQ(bridge::DropRights("agent"), ENOENT);
}

}  // namespace
