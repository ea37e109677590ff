// SPDX-License-Identifier: MIT
//
// Two kinds of lines count: a function's, which starts with [DOMAIN:]BUS:DEVICE.FUNCTION, and its
// bytes', which start with an offset.

#include "PciText.h"

#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>

namespace sim {
namespace {

const std::regex& functionLine() {
    static const std::regex pattern(
        "(?:([0-9a-f]+):)?([0-9a-f]{2}):([0-9a-f]{2})\\.([0-7])(?: .*)?");
    return pattern;
}

const std::regex& bytesLine() {
    static const std::regex pattern("([0-9a-f]{2,3}):((?: [0-9a-f]{2}){1,16}) *");
    return pattern;
}

unsigned hexadecimal(const std::string& digits) {
    return static_cast<unsigned>(std::stoul(digits, nullptr, 16));
}

class Reader {
public:
    void read(const std::string& line) {
        std::smatch part;
        if (line.empty() || line.front() == ' ' || line.front() == '\t') return;
        if (std::regex_match(line, part, functionLine()))
            startFunction(part);
        else if (std::regex_match(line, part, bytesLine()))
            addBytes(part);
        else
            throw std::runtime_error("neither a function nor its bytes");
    }

    std::map<PciLocation, Bytes> functions;

private:
    void startFunction(const std::smatch& part) {
        const PciLocation location = {hexadecimal(part[2]), hexadecimal(part[3]),
                                      hexadecimal(part[4])};
        expected_ = 0;
        if (location.device > 31) throw std::runtime_error("there is no device above 1f");
        if (part[1].matched && hexadecimal(part[1]) != 0) {
            current_ = &outOfReach_;
            return;
        }
        const auto [function, fresh] = functions.try_emplace(location);
        if (!fresh) throw std::runtime_error("the function " + location.text() + " is here twice");
        current_ = &function->second;
    }

    void addBytes(const std::smatch& part) {
        if (current_ == nullptr) throw std::runtime_error("bytes before the first function");
        if (hexadecimal(part[1]) != expected_) throw std::runtime_error("bytes are missing");
        std::istringstream bytes(part[2]);
        for (std::string digits; bytes >> digits; ++expected_)
            if (expected_ < PciBus::kConfigurationSize)
                current_->push_back(static_cast<std::uint8_t>(hexadecimal(digits)));
    }

    Bytes* current_ = nullptr;
    Bytes outOfReach_;
    unsigned expected_ = 0;  // offset of the next byte
};

}  // namespace

std::map<PciLocation, Bytes> readPciText(std::string_view text) {
    Reader reader;
    std::istringstream lines{std::string(text)};
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        try {
            reader.read(line);
        } catch (const std::runtime_error& error) {
            throw std::runtime_error("line " + std::to_string(number) + ": " + error.what());
        }
    }
    if (reader.functions.empty()) throw std::runtime_error("no function of domain 0");
    return std::move(reader.functions);
}

}  // namespace sim
