// SPDX-License-Identifier: MIT
//
// One message to the BMC through the library's transport, for what its classes do not ask.
#ifndef TALVANE_TOOLS_LIBRARY_BMCMESSAGE_H
#define TALVANE_TOOLS_LIBRARY_BMCMESSAGE_H

#include <array>
#include <vector>

#include "IPMI/IPMIbase.h"

namespace tool {

struct BmcMessage {
    int netFunction;
    int command;
    int lun;
    std::vector<unsigned char> data;
};

using AnswerBuffer = std::array<unsigned char, 256>;

// Waits up to 3 seconds. The bytes after the completion code are written over the start of
// `answer`; the rest of it stays, and all of it where the BMC refuses the request or does not
// answer.
void Send(IPMIbase& transport, BmcMessage message, AnswerBuffer& answer);

// The flags in the answer to a Get Sensor Reading (IPMI 2.0, 35.14).
struct ReadingFlags {
    static constexpr std::size_t kAt = 1;  // from the first byte after the completion code

    explicit ReadingFlags(unsigned char flags)
        : isScanned((flags & kScanned) != 0), isUnavailable((flags & kUnavailable) != 0) {}

    bool isScanned;
    bool isUnavailable;

private:
    static constexpr unsigned char kUnavailable = 0x20;
    static constexpr unsigned char kScanned = 0x40;
};

}  // namespace tool

#endif
