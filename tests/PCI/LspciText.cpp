// SPDX-License-Identifier: MIT

#include "PCI/LspciText.h"

#include <regex>
#include <sstream>

namespace {

unsigned Hex(const std::string& digits) {
    return static_cast<unsigned>(std::stoul(digits, nullptr, 16));
}

// The number behind a word such as "(rev ", else 0.
unsigned HexBehind(const std::string& line, const std::string& word) {
    const std::size_t at = line.find(word);
    return at == std::string::npos ? 0 : Hex(line.substr(at + word.size(), 2));
}

}  // namespace

std::vector<LspciFunction> ReadLspci(std::string_view text) {
    static const std::regex head(
        "(?:([0-9a-f]+):)?([0-9a-f]{2}):([0-9a-f]{2})\\.([0-7]) (.*?) \\[([0-9a-f]{2})([0-9a-f]{2})"
        "\\]: .*");
    static const std::regex interrupt("\tInterrupt: pin . routed to IRQ (\\d+)");
    std::vector<LspciFunction> functions;
    LspciFunction elsewhere;  // of another domain
    LspciFunction* current = &elsewhere;
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        std::smatch part;
        if (std::regex_match(line, part, head)) {
            current = &elsewhere;
            if (part[1].matched && Hex(part[1]) != 0) continue;
            current = &functions.emplace_back();
            current->bus = Hex(part[2]);
            current->device = Hex(part[3]);
            current->function = Hex(part[4]);
            current->className = part[5];
            current->classCode = Hex(part[6]);
            current->subClass = Hex(part[7]);
            current->revision = HexBehind(line, "(rev ");
            current->progIf = HexBehind(line, "(prog-if ");
        } else if (line.starts_with("\tStatus: ")) {
            current->status = line.substr(9);
        } else if (std::regex_match(line, part, interrupt)) {
            current->irq = static_cast<unsigned>(std::stoul(part[1]));
        } else if (line.starts_with("\tRegion 0: ")) {
            current->firstRegion = line.substr(11);
            current->hasFirstRegion = true;
        }
    }
    return functions;
}
