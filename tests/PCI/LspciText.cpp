// SPDX-License-Identifier: MIT
//
// Takes the text of lspci apart, line by line.

#include "PCI/LspciText.h"

#include <cstdio>
#include <sstream>

namespace {

// The number after a word such as "(rev ", else 0.
unsigned HexAfter(const std::string& line, const std::string& word) {
    const std::size_t at = line.find(word);
    return at == std::string::npos
               ? 0
               : static_cast<unsigned>(std::stoul(line.substr(at + word.size(), 2), nullptr, 16));
}

// A line such as "00:1f.1 IDE interface [0101]: Maker Name [8086:24db] (rev 02) (prog-if 8a [..])",
// with or without a domain in front. Returns whether it is one.
bool ReadHead(const std::string& line, LspciFunction& to, unsigned& domain) {
    int end = 0;
    const char* text = line.c_str();
    if (std::sscanf(text, "%x:%2x:%2x.%1u %n", &domain, &to.bus, &to.device, &to.function, &end) !=
        4) {
        domain = 0;
        if (std::sscanf(text, "%2x:%2x.%1u %n", &to.bus, &to.device, &to.function, &end) != 3)
            return false;
    }
    const std::size_t code = line.find(" [", static_cast<std::size_t>(end));
    if (code == std::string::npos) return false;
    to.className = line.substr(static_cast<std::size_t>(end), code - static_cast<std::size_t>(end));
    to.revision = HexAfter(line, "(rev ");
    to.progIf = HexAfter(line, "(prog-if ");
    return std::sscanf(text + code, " [%2x%2x]:", &to.classCode, &to.subClass) == 2;
}

}  // namespace

std::vector<LspciFunction> ReadLspci(std::string_view text) {
    std::vector<LspciFunction> functions;
    LspciFunction elsewhere;  // of another domain
    LspciFunction* current = &elsewhere;
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        LspciFunction head;
        unsigned domain = 0;
        unsigned irq = 0;
        if (!line.starts_with('\t') && ReadHead(line, head, domain)) {
            current = domain == 0 ? &functions.emplace_back(head) : &elsewhere;
        } else if (line.starts_with("\tStatus: ")) {
            current->status = line.substr(9);
        } else if (std::sscanf(line.c_str(), "\tInterrupt: pin %*c routed to IRQ %u", &irq) == 1) {
            current->irq = irq;
        } else if (line.starts_with("\tRegion 0: ")) {
            current->firstRegion = line.substr(11);
            current->hasFirstRegion = true;
        }
    }
    return functions;
}
