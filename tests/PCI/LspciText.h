// SPDX-License-Identifier: MIT
//
// What `lspci -vvnn` says of a machine's functions, as far as the report has it.
#ifndef TALVANE_TESTS_PCI_LSPCITEXT_H
#define TALVANE_TESTS_PCI_LSPCITEXT_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct LspciFunction {
    unsigned bus = 0, device = 0, function = 0;
    std::string className;  // "PCI bridge"
    unsigned classCode = 0, subClass = 0, progIf = 0;
    unsigned revision = 0;
    std::string status;           // "Cap+ 66MHz- ... INTx-"
    std::optional<unsigned> irq;  // absent: the function has no interrupt
    std::string firstRegion;      // "Memory at fd700000 (32-bit, prefetchable)"; may be absent
    bool hasFirstRegion = false;
};

// The functions of domain 0.
std::vector<LspciFunction> ReadLspci(std::string_view text);

#endif
