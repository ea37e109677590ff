// SPDX-License-Identifier: MIT
//
// The table of the status bits and their texts.

#include "PCI/StatusText.h"

#include <cstring>

namespace talvane {
namespace {

// Has its text when the bits of the mask have the value.
struct StatusRow {
    unsigned short mask;
    unsigned short value;
    const char* text;
};

// Status register (PCI 3.0, 6.2.3), in the order of the bits. DEVSEL timing 3 is reserved and has
// no text.
constexpr StatusRow kStatusRows[] = {
    {0x0008, 0x0008, "Interrupt Status;"},
    {0x0010, 0x0010, "Capabilities List;"},
    {0x0020, 0x0020, "66 MHz Capable;"},
    {0x0080, 0x0080, "Fast Back-to-Back Capable;"},
    {0x0100, 0x0100, "Master Data Parity Error;"},
    {0x0600, 0x0000, "Speed=Fast;"},
    {0x0600, 0x0200, "Speed=Medium;"},
    {0x0600, 0x0400, "Speed=Slow;"},
    {0x0800, 0x0800, "Signaled Target Abort;"},
    {0x1000, 0x1000, "Received Target Abort;"},
    {0x2000, 0x2000, "Received Master Abort;"},
    {0x4000, 0x4000, "Signaled system Error;"},
    {0x8000, 0x8000, "Detected Parity Error;"},
};

consteval std::size_t LongestStatusText() {
    std::size_t length = 0;
    for (const StatusRow& row : kStatusRows)
        for (const char* c = row.text; *c != '\0'; ++c) ++length;
    return length;
}
static_assert(LongestStatusText() < kStatusTextSize, "all texts at once fit");

}  // namespace

void AppendStatusTexts(unsigned short status, char* text) {
    for (const StatusRow& row : kStatusRows)
        if ((status & row.mask) == row.value) std::strcat(text, row.text);
}

}  // namespace talvane
