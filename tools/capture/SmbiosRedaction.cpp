// SPDX-License-Identifier: MIT
//
// Walks over the structures of a table and marks texts by the fields that refer to them.

#include <algorithm>
#include <iterator>

#include "tools/capture/Redaction.h"

namespace tool {
namespace {

constexpr std::size_t kHeaderSize = 4;

// Fields that hold the number of a text (DSP0134 3.1, section 7).
struct TextField {
    int type;
    std::size_t at;
};
constexpr TextField kSecretTexts[] = {
    {1, 0x07},               // system: serial number
    {2, 0x07},  {2, 0x08},   // board: serial number, asset tag
    {3, 0x07},  {3, 0x08},   // chassis: the same
    {4, 0x20},  {4, 0x21},   // processor: the same
    {17, 0x18}, {17, 0x19},  // memory device: the same
    {22, 0x07},              // portable battery: serial number
    {39, 0x08}, {39, 0x09},  // power supply: serial number, asset tag
};

// Fields that hold the value itself.
struct ByteField {
    int type;
    std::size_t at;
    std::size_t size;
};
constexpr ByteField kSecretBytes[] = {
    {1, 0x08, 16},  // system: UUID
    {22, 0x10, 2},  // portable battery: serial number
};

// Structures all of whose texts are marked. An inactive one keeps the texts of another type.
constexpr int kOemStrings = 11;
constexpr int kInactive = 126;
constexpr int kFirstVendorType = 128;

// A management controller's host interface: its data, after type and length of the interface, hold
// the UUID of a service, host names and addresses (DSP0270 1.3, section 8).
constexpr int kHostInterface = 42;
constexpr std::size_t kHostInterfaceDataAt = 6;

class Structure {
public:
    // REQUIRES: a whole header at `at`.
    Structure(CapturedBytes& table, std::size_t at)
        : table_(table), at_(at), textsAt_(std::min(at + table[at + 1], table.size())) {
        // As the library does: the first two zeros end the texts, and a zero by itself is an empty
        // text.
        constexpr std::uint8_t kEndOfTexts[] = {0, 0};
        const auto last = std::search(table.begin() + static_cast<std::ptrdiff_t>(textsAt_),
                                      table.end(), std::begin(kEndOfTexts), std::end(kEndOfTexts));
        const auto lastAt = static_cast<std::size_t>(last - table.begin());
        for (std::size_t text = textsAt_; text < lastAt; text = EndOfText(text) + 1)
            texts_.push_back(text);
        end_ = std::min(lastAt + std::size(kEndOfTexts), table.size());
    }

    std::size_t End() const { return end_; }

    void Redact(Secrets& secrets) {
        const int type = table_[at_];
        for (const TextField& field : kSecretTexts)
            if (field.type == type && HasBytes(field.at, 1))
                MarkText(table_[at_ + field.at], secrets);
        for (const ByteField& field : kSecretBytes)
            if (field.type == type && HasBytes(field.at, field.size))
                MarkBytes(at_ + field.at, field.size);
        if (type == kHostInterface && at_ + kHostInterfaceDataAt < textsAt_)
            MarkBytes(at_ + kHostInterfaceDataAt, textsAt_ - at_ - kHostInterfaceDataAt);
        if (type == kOemStrings || type == kInactive || type >= kFirstVendorType)
            for (std::size_t number = 1; number <= texts_.size(); ++number)
                MarkText(number, secrets);
    }

private:
    std::size_t EndOfText(std::size_t text) const {
        const auto begin = table_.begin() + static_cast<std::ptrdiff_t>(text);
        return static_cast<std::size_t>(std::find(begin, table_.end(), 0) - table_.begin());
    }

    bool HasBytes(std::size_t at, std::size_t size) const { return at_ + at + size <= textsAt_; }

    void MarkText(std::size_t number, Secrets& secrets) {
        if (number == 0 || number > texts_.size()) return;
        const std::size_t text = texts_[number - 1];
        const std::size_t end = EndOfText(text);
        secrets.insert(std::string(table_.begin() + static_cast<std::ptrdiff_t>(text),
                                   table_.begin() + static_cast<std::ptrdiff_t>(end)));
        MarkBytes(text, end - text);
    }

    // All zeros and all ones say that there is no value.
    void MarkBytes(std::size_t at, std::size_t size) {
        const auto begin = table_.begin() + static_cast<std::ptrdiff_t>(at);
        const auto end = begin + static_cast<std::ptrdiff_t>(size);
        const bool isNone = std::all_of(begin, end, [](std::uint8_t byte) { return byte == 0; }) ||
                            std::all_of(begin, end, [](std::uint8_t byte) { return byte == 0xFF; });
        if (!isNone) std::fill(begin, end, kMark);
    }

    CapturedBytes& table_;
    std::size_t at_;
    std::size_t textsAt_;
    std::vector<std::size_t> texts_;
    std::size_t end_ = 0;
};

}  // namespace

void RedactSmbiosTable(CapturedBytes& table, Secrets& secrets) {
    for (std::size_t at = 0; at + kHeaderSize <= table.size();) {
        Structure structure(table, at);
        structure.Redact(secrets);
        at = structure.End();
    }
}

}  // namespace tool
