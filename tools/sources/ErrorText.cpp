// SPDX-License-Identifier: MIT
//
// The advice for each errno.

#include "tools/sources/ErrorText.h"

#include <cerrno>
#include <cstring>

namespace tool {

std::string ErrorText(int error, const char* whyAbsent) {
    std::string text = std::strerror(error);
    if (error == EACCES) text += " (run as root)";
    if (error == EPERM) text += " (it takes root with CAP_SYS_RAWIO and a kernel that allows it)";
    if (error == ENOENT) text += std::string(" (") + whyAbsent + ")";
    return text;
}

}  // namespace tool
