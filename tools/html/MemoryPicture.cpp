// SPDX-License-Identifier: MIT
//
// Draws a module with its chips and contacts, or the outline of an empty slot.

#include "tools/html/MemoryPicture.h"

#include "tools/html/Escape.h"

namespace tool {
namespace {

// Without a size, or with one of 0, there is no module.
bool IsEmptySlot(const Bank& bank) {
    return bank.size.find_first_of("123456789") == std::string::npos;
}

std::string SlotName(const Bank& bank) {
    return bank.slot == 0 ? "Slot without a number" : "Slot " + std::to_string(bank.slot);
}

std::string ChipsMarkup() {
    constexpr int kChips = 8;
    std::string markup;
    for (int i = 0; i < kChips; ++i)
        markup += "<rect class=\"chip\" x=\"" +
                  std::to_string(12 + i * 27 + (i >= kChips / 2) * 8) +
                  "\" y=\"10\" width=\"19\" height=\"26\" rx=\"2\"/>";
    return markup;
}

std::string SlotMarkup(const Bank& bank) {
    const bool isEmpty = IsEmptySlot(bank);
    const std::string label =
        SlotName(bank) + ": " + (isEmpty ? "empty" : "a module of " + bank.size);
    std::string markup = "<svg class=\"module" + std::string(isEmpty ? " empty" : "") +
                         "\" role=\"img\" viewBox=\"0 0 240 60\" aria-label=\"" + Escaped(label) +
                         "\">\n<path class=\"board\" d=\"M4 3h232v18a4 4 0 0 0 0 8v19H4V29a4 4 0 0 "
                         "0 0-8z\"/>\n";
    if (!isEmpty)
        markup +=
            ChipsMarkup() +
            "\n<path class=\"contacts\" d=\"M12 53H112M126 53H228\" stroke-dasharray=\"4 2\"/>\n";
    return markup + "</svg>\n";
}

// "SDRAM, Synchronous, 8 ns, Tarn Memory Company"
std::string DetailsOf(const Bank& bank) {
    std::string details;
    for (const std::string* text :
         {&bank.type, &bank.typeDetail, &bank.speed, &bank.manufacturer}) {
        const std::string escaped = Escaped(*text);
        if (escaped.empty()) continue;
        details += (details.empty() ? "" : ", ") + escaped;
    }
    return details;
}

}  // namespace

std::string MemoryPicture(const Memory& memory) {
    if (memory.banks.empty()) return "";
    std::string markup = "<ul class=\"slots\">\n";
    for (const Bank& bank : memory.banks) {
        const std::string size = IsEmptySlot(bank) ? "empty" : EscapedOrDash(bank.size);
        markup += "<li><figure>\n" + SlotMarkup(bank) + "<figcaption><strong>" + size +
                  "</strong> <span class=\"place\">" + SlotName(bank) +
                  "</span><span class=\"details\">" + DetailsOf(bank) +
                  "</span></figcaption>\n</figure></li>\n";
    }
    return markup + "</ul>\n";
}

}  // namespace tool
