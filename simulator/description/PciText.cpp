// SPDX-License-Identifier: MIT
//
// Reads two kinds of lines: one that names a function as [DOMAIN:]BUS:DEVICE.FUNCTION, and those
// with its bytes, which start with an offset.

#include "simulator/description/PciText.h"

#include <charconv>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>

namespace sim {
namespace {

// Takes a hexadecimal number of at most `digits` digits, and the separator after it, off the front
// of the text. Returns nothing and leaves the text unchanged when it does not begin like that.
std::optional<unsigned> TakeHexNumber(std::string_view& text, std::size_t digits, char separator) {
    unsigned value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, 16);
    const auto length = static_cast<std::size_t>(stop - text.data());
    if (error != std::errc() || length > digits || stop == end || *stop != separator)
        return std::nullopt;
    text.remove_prefix(length + 1);
    return value;
}

struct FunctionLine {
    unsigned domain = 0;
    PciLocation location;
};

std::optional<FunctionLine> ParseFunctionLine(std::string_view line) {
    FunctionLine result;
    std::optional<unsigned> bus = TakeHexNumber(line, 8, ':');
    if (!bus) return std::nullopt;
    std::optional<unsigned> device = TakeHexNumber(line, 2, ':');
    if (device) {
        result.domain = *bus;
        bus = device;
    }
    device = TakeHexNumber(line, 2, '.');
    const std::string withBlank = std::string(line) + ' ';  // the line may end after the function
    std::string_view rest = withBlank;
    const std::optional<unsigned> function = TakeHexNumber(rest, 1, ' ');
    if (!device || !function || *bus > 0xFF || *function > 7) return std::nullopt;
    result.location = {*bus, *device, *function};
    return result;
}

struct BytesLine {
    unsigned offset = 0;
    Bytes bytes;
};

std::optional<BytesLine> ParseBytesLine(std::string_view line) {
    BytesLine result;
    const std::optional<unsigned> offset = TakeHexNumber(line, 3, ':');
    if (!offset) return std::nullopt;
    result.offset = *offset;
    std::istringstream words{std::string(line)};
    for (std::string word; words >> word;) {
        word += ' ';
        std::string_view digits = word;
        const std::optional<unsigned> byte = TakeHexNumber(digits, 2, ' ');
        if (!byte) return std::nullopt;
        result.bytes.push_back(static_cast<std::uint8_t>(*byte));
    }
    return result;
}

class LspciReader {
public:
    void Read(const std::string& line) {
        if (line.empty() || line.front() == ' ' || line.front() == '\t') return;
        if (const auto function = ParseFunctionLine(line))
            StartFunction(*function);
        else if (const auto bytes = ParseBytesLine(line))
            AddBytes(*bytes);
        else
            throw std::runtime_error("neither a function nor its bytes");
    }

    std::map<PciLocation, Bytes> functions;

private:
    void StartFunction(const FunctionLine& line) {
        expected_ = 0;
        if (line.location.device > 31) throw std::runtime_error("there is no device above 1f");
        if (line.domain != 0) {
            current_ = &outOfReach_;
            return;
        }
        const auto [function, fresh] = functions.try_emplace(line.location);
        if (!fresh)
            throw std::runtime_error("the function " + line.location.Text() + " is here twice");
        current_ = &function->second;
    }

    void AddBytes(const BytesLine& line) {
        if (current_ == nullptr) throw std::runtime_error("bytes before the first function");
        if (line.offset != expected_) throw std::runtime_error("bytes are missing");
        for (const std::uint8_t byte : line.bytes)
            if (expected_++ < PciBus::kConfigurationSize) current_->push_back(byte);
    }

    Bytes* current_ = nullptr;
    Bytes outOfReach_;
    unsigned expected_ = 0;  // the offset of the next byte
};

}  // namespace

std::map<PciLocation, Bytes> ReadPciText(std::string_view text) {
    LspciReader reader;
    std::istringstream lines{std::string(text)};
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        try {
            reader.Read(line);
        } catch (const std::runtime_error& error) {
            throw std::runtime_error("line " + std::to_string(number) + ": " + error.what());
        }
    }
    if (reader.functions.empty()) throw std::runtime_error("no function of domain 0");
    return std::move(reader.functions);
}

}  // namespace sim
