// SPDX-License-Identifier: MIT
//
// Changes the user through the C library, and the capability sets through the kernel's interface.

#include "bridge/Rights.h"

#include <grp.h>
#include <linux/capability.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace bridge {
namespace {

// Empties the bounding set, up to the last capability that this kernel knows.
int EmptyBoundingSet() {
    for (unsigned long capability = 0; prctl(PR_CAPBSET_READ, capability, 0, 0, 0) >= 0;
         ++capability) {
        // A process that may not change the set has no capability that it could regain from it.
        if (prctl(PR_CAPBSET_DROP, capability, 0, 0, 0) != 0 && errno != EPERM) return errno;
    }
    return 0;
}

int Become(const std::string& name) {
    errno = 0;
    const passwd* const user = getpwnam(name.c_str());  // no other thread runs yet
    if (user == nullptr) return errno == 0 ? ENOENT : errno;
    if (initgroups(user->pw_name, user->pw_gid) != 0) return errno;
    if (setresgid(user->pw_gid, user->pw_gid, user->pw_gid) != 0) return errno;
    return setresuid(user->pw_uid, user->pw_uid, user->pw_uid) == 0 ? 0 : errno;
}

}  // namespace

int DropRights(const std::string& user) {
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return errno;
    if (const int error = EmptyBoundingSet())
        return error;  // before Become, which loses the capability for it
    if (!user.empty())
        if (const int error = Become(user)) return error;
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3]{};
    // The C library has no function for it. The ambient set becomes empty with the permitted set.
    return syscall(SYS_capset, &header, none) == 0 ? 0 : errno;
}

}  // namespace bridge
