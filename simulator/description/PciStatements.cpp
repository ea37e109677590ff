// SPDX-License-Identifier: MIT
//
// The statement about PCI functions: pci, which names a capture of lspci or spells one function
// out.

#include <array>
#include <charconv>
#include <set>

#include "simulator/description/MachineDraft.h"
#include "simulator/description/MachineError.h"
#include "simulator/description/PciText.h"

namespace sim {
namespace {

constexpr std::size_t kPciHeaderSize = 64;  // PCI 3.0, 6.1

// Offsets of header fields.
constexpr std::size_t kCommandRegister = 4;
constexpr std::size_t kStatusRegister = 6;
constexpr std::size_t kRevision = 8;
constexpr std::size_t kProgIf = 9;
constexpr std::size_t kSubClass = 10;
constexpr std::size_t kClassCode = 11;
constexpr std::size_t kHeaderType = 14;
constexpr std::size_t kBaseAddresses = 16;
constexpr std::size_t kInterruptLine = 60;

void PutHeaderField(Bytes& header, std::size_t offset, std::uint32_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        header[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

// Takes a word of N hexadecimal numbers with these separators between them, each up to its limit.
template <std::size_t N>
std::array<unsigned, N> TakeParts(MachineLine& line, const char* what, const char* format,
                                  const char (&separators)[N],
                                  const std::array<unsigned, N>& limits) {
    const std::string word = line.TakeWord(what);
    std::array<unsigned, N> values{};
    const char* at = word.data();
    const char* const end = at + word.size();
    for (std::size_t i = 0; i < N; ++i) {
        const auto [stop, error] = std::from_chars(at, end, values[i], 16);
        const bool separated = i + 1 < N ? stop != end && *stop == separators[i] : stop == end;
        if (error != std::errc() || !separated || values[i] > limits[i])
            line.Fail(std::string(what) + " \"" + word + "\" is not " + format);
        at = stop + 1;
    }
    return values;
}

void AddFunction(MachineDraft& draft, const MachineLine& line, const PciLocation& location,
                 Bytes bytes) {
    const auto [function, fresh] =
        draft.pci.try_emplace(location, PciDraft{std::move(bytes), line.LineNumber()});
    if (!fresh)
        line.Fail("the function " + location.Text() + " was given in line " +
                  std::to_string(function->second.line));
}

void ReadPciCapture(MachineLine& line, MachineDraft& draft) {
    const Bytes bytes = draft.Capture(line);
    try {
        for (auto& [location, configuration] :
             ReadPciText({reinterpret_cast<const char*>(bytes.data()), bytes.size()}))
            AddFunction(draft, line, location, configuration);
    } catch (const MachineError&) {
        throw;
    } catch (const std::exception& error) {
        line.Fail(error.what());
    }
}

void ReadFunctionOption(const std::string& option, MachineLine& line, Bytes& header) {
    if (option == "class") {
        const auto [code, sub, interface] =
            TakeParts<3>(line, "the class", "CLASS.SUB.INTERFACE", "..", {0xFF, 0xFF, 0xFF});
        PutHeaderField(header, kClassCode, code, 1);
        PutHeaderField(header, kSubClass, sub, 1);
        PutHeaderField(header, kProgIf, interface, 1);
    } else if (option == "revision") {
        PutHeaderField(header, kRevision, line.TakeNumber("the revision", 0xFF), 1);
    } else if (option == "command") {
        PutHeaderField(header, kCommandRegister, line.TakeNumber("the command register", 0xFFFF),
                       2);
    } else if (option == "status") {
        PutHeaderField(header, kStatusRegister, line.TakeNumber("the status register", 0xFFFF), 2);
    } else if (option == "header") {
        PutHeaderField(header, kHeaderType, line.TakeNumber("the header type", 0xFF), 1);
    } else if (option == "irq") {
        PutHeaderField(header, kInterruptLine, line.TakeNumber("the interrupt line", 0xFF), 1);
    } else if (option.size() == 4 && option.starts_with("bar") && option[3] >= '0' &&
               option[3] <= '5') {
        const std::size_t index = static_cast<std::size_t>(option[3] - '0');
        PutHeaderField(header, kBaseAddresses + 4 * index,
                       line.TakeNumber("the base address", 0xFFFFFFFF), 4);
    } else {
        line.Fail("\"" + option +
                  "\" is none of class, revision, command, status, header, irq, bar0 to bar5");
    }
}

void ReadPciFunction(MachineLine& line, MachineDraft& draft) {
    const auto [bus, device, function] =
        TakeParts<3>(line, "the location", "BUS:DEVICE.FUNCTION", ":.", {0xFF, 0x1F, 7});
    const auto [vendor, id] =
        TakeParts<2>(line, "the identity", "VENDOR:DEVICE", ":", {0xFFFF, 0xFFFF});
    Bytes header(kPciHeaderSize);
    PutHeaderField(header, 0, vendor, 2);
    PutHeaderField(header, 2, id, 2);
    std::set<std::string> seen;
    while (line.HasMore()) {
        const std::string option = line.TakeWord("the option");
        if (!seen.insert(option).second) line.Fail("\"" + option + "\" is given twice");
        ReadFunctionOption(option, line, header);
    }
    AddFunction(draft, line, {bus, device, function}, std::move(header));
}

void ReadPci(MachineLine& line, MachineDraft& draft) {
    if (line.TakeIf("capture"))
        ReadPciCapture(line, draft);
    else
        ReadPciFunction(line, draft);
}

constexpr MachineStatement kPciStatements[] = {{"pci", ReadPci}};

}  // namespace

std::span<const MachineStatement> PciStatements() {
    return kPciStatements;
}

}  // namespace sim
