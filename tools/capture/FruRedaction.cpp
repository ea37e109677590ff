// SPDX-License-Identifier: MIT
//
// Walks over the areas of an inventory ("Platform Management FRU Information Storage
// Definition" 1.0, whose sections are cited).

#include <algorithm>
#include <iterator>

#include "tools/capture/Redaction.h"

namespace tool {
namespace {

constexpr std::size_t kFruBlockSize = 8;
constexpr std::size_t kFruHeaderSize = 8;

// Places of the areas in the common header (8), and what is secret among their fields (10 to 12).
// The fields from `firstVendorField` on are defined by vendors.
struct InfoArea {
    std::size_t headerAt;
    std::size_t firstFieldAt;
    std::set<std::size_t> secretFields;
    std::size_t firstVendorField;
};
const InfoArea kInfoAreas[] = {
    {2, 3, {1}, 2},     // chassis: serial number
    {3, 6, {2}, 5},     // board: serial number
    {4, 3, {4, 5}, 7},  // product: serial number, asset tag
};
constexpr std::size_t kInternalUseAt = 1;
constexpr std::size_t kMultiRecordsAt = 5;

class FruImage {
public:
    FruImage(CapturedBytes& image, Secrets& secrets)
        : image_(image), secrets_(secrets), isKnown_(image.size()) {}

    void Redact() {
        Know(0, kFruHeaderSize);
        for (const InfoArea& area : kInfoAreas)
            if (const std::size_t at = AreaAt(area.headerAt)) RedactArea(area, at);
        if (const std::size_t at = AreaAt(kMultiRecordsAt)) RedactRecords(at);
        // The area for internal use is the vendor's, but for its version.
        if (const std::size_t at = AreaAt(kInternalUseAt)) Know(at, 1);
        for (std::size_t i = 0; i < image_.size(); ++i)
            if (!isKnown_[i]) image_[i] = 0;
    }

private:
    std::uint8_t At(std::size_t at) const { return at < image_.size() ? image_[at] : 0; }

    // 0 for an area that is not there.
    std::size_t AreaAt(std::size_t headerAt) const { return At(headerAt) * kFruBlockSize; }

    void Know(std::size_t at, std::size_t size) {
        for (std::size_t i = at; i < std::min(at + size, image_.size()); ++i) isKnown_[i] = true;
    }

    std::uint8_t Sum(std::size_t at, std::size_t size) const {
        std::uint8_t sum = 0;
        for (std::size_t i = at; i < at + size; ++i) sum = static_cast<std::uint8_t>(sum + At(i));
        return sum;
    }

    // Changes the byte at `checksumAt` so that the bytes have the sum that they had.
    void KeepSum(std::uint8_t before, std::size_t at, std::size_t size, std::size_t checksumAt) {
        if (checksumAt < image_.size())
            image_[checksumAt] =
                static_cast<std::uint8_t>(image_[checksumAt] + before - Sum(at, size));
    }

    void RedactArea(const InfoArea& area, std::size_t at) {
        constexpr std::uint8_t kEndOfFields = 0xC1;
        constexpr std::uint8_t kLengthBits = 0x3F;
        const std::size_t size = At(at + 1) * kFruBlockSize;
        const std::size_t end = std::min(at + size, image_.size());
        if (size == 0) return;
        const std::uint8_t before = Sum(at, size);
        std::size_t field = at + area.firstFieldAt;
        for (std::size_t number = 0; field + 1 < end && image_[field] != kEndOfFields; ++number) {
            const std::size_t length = image_[field] & kLengthBits;
            const std::size_t room = std::min(length, end - 1 - (field + 1));
            if (area.secretFields.contains(number) || number >= area.firstVendorField)
                MarkField(image_[field] >> 6, field + 1, room);
            field += 1 + length;
        }
        Know(at, end - at);
        // What follows the last field is filled with zeros, but for the checksum.
        for (std::size_t i = field + 1; i + 1 < end; ++i) image_[i] = 0;
        KeepSum(before, at, size, at + size - 1);
    }

    // By the field's encoding (13).
    void MarkField(int encoding, std::size_t at, std::size_t size) {
        constexpr int kBcdPlus = 1;
        constexpr int kSixBit = 2;
        constexpr int kLatin = 3;
        constexpr std::uint8_t kSixBitMarks[] = {0x38, 0x8E, 0xE3};  // four times 'X'
        const auto begin = image_.begin() + static_cast<std::ptrdiff_t>(at);
        if (encoding == kLatin)
            secrets_.insert(std::string(begin, begin + static_cast<std::ptrdiff_t>(size)));
        for (std::size_t i = 0; i < size; ++i)
            image_[at + i] = encoding == kBcdPlus  ? std::uint8_t{0}
                             : encoding == kSixBit ? kSixBitMarks[i % std::size(kSixBitMarks)]
                                                   : kMark;
    }

    // Records of vendors, and those of management access, which hold addresses and UUIDs (16, 18).
    void RedactRecords(std::size_t at) {
        constexpr std::size_t kRecordHeader = 5;
        constexpr std::uint8_t kManagementAccess = 0x03;
        constexpr std::uint8_t kFirstVendorRecord = 0xC0;
        constexpr std::uint8_t kLastOfList = 0x80;
        constexpr std::size_t kDataSumAt = 3;
        constexpr std::size_t kHeaderSumAt = 4;
        for (bool isLast = false; !isLast && at + kRecordHeader <= image_.size();) {
            const std::size_t size = std::min<std::size_t>(At(at + 2), image_.size() - at - 5);
            const std::size_t data = at + kRecordHeader;
            const std::uint8_t type = At(at);
            isLast = (At(at + 1) & kLastOfList) != 0;
            Know(at, kRecordHeader + size);
            if (type == kManagementAccess || type >= kFirstVendorRecord) {
                const std::uint8_t dataBefore = Sum(data, size);
                const std::uint8_t headerBefore = Sum(at, kRecordHeader);
                std::fill_n(image_.begin() + static_cast<std::ptrdiff_t>(data), size, kMark);
                KeepSum(dataBefore, data, size, at + kDataSumAt);
                KeepSum(headerBefore, at, kRecordHeader, at + kHeaderSumAt);
            }
            at = data + size;
        }
    }

    CapturedBytes& image_;
    Secrets& secrets_;
    std::vector<bool> isKnown_;
};

}  // namespace

void RedactFruImage(CapturedBytes& image, Secrets& secrets) {
    FruImage(image, secrets).Redact();
}

}  // namespace tool
