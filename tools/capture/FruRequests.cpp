// SPDX-License-Identifier: MIT
//
// The library asks for what the answers before say, of whose bytes those that are missing count as
// 0.

#include "tools/capture/FruRequests.h"

#include <algorithm>

#include "base/Bytes.h"

namespace tool {
namespace {

constexpr std::size_t kFirstByte = 1;  // after the count
constexpr std::size_t kBlockSize = 8;

CapturedBytes ReadOf(std::size_t offset, std::size_t count) {
    const int first = static_cast<int>(offset);
    return {0, talvane::LowByte(first), talvane::HighByte(first),
            talvane::LowByte(static_cast<int>(count))};
}

std::size_t ByteOf(const BmcExchange& exchange, std::size_t at) {
    const std::size_t place = kFirstByte + at;
    return place < exchange.answer.size() ? exchange.answer[place] : 0;
}

}  // namespace

CapturedBytes ReadFruImage(const CapturedBytes& info, const ReadFru& read) {
    constexpr std::size_t kPiece = 16;
    CapturedBytes image;
    if (info.size() < 2) return image;
    const std::size_t size = talvane::Le16(talvane::ByteView(info), 0);
    while (image.size() < size) {
        const std::size_t wanted = std::min(kPiece, size - image.size());
        const CapturedBytes answer = read(ReadOf(image.size(), wanted)).answer;
        if (answer.size() <= kFirstByte) break;
        const std::size_t got = std::min(answer.size() - kFirstByte, wanted);
        const auto begin = answer.begin() + kFirstByte;
        image.insert(image.end(), begin, begin + static_cast<std::ptrdiff_t>(got));
    }
    return image;
}

std::vector<BmcExchange> FruRequestsOfLibrary(const ReadFru& read) {
    constexpr std::size_t kHeaderSize = 8;
    constexpr std::size_t kHeadSize = 2;
    constexpr std::size_t kLengthAt = 1;
    constexpr std::size_t kAreasAt[] = {3, 2, 4};  // board, chassis, product
    std::vector<BmcExchange> exchanges{read(ReadOf(0, kHeaderSize))};
    const BmcExchange header = exchanges.front();
    for (const std::size_t area : kAreasAt) {
        const std::size_t offset = ByteOf(header, area) * kBlockSize;
        exchanges.push_back(read(ReadOf(offset, kHeadSize)));
        const std::size_t length = ByteOf(exchanges.back(), kLengthAt) * kBlockSize;
        exchanges.push_back(read(ReadOf(offset, length)));
    }
    return exchanges;
}

CapturedBytes AnswerFromFruImage(const CapturedBytes& image, const CapturedBytes& data) {
    const std::size_t offset = talvane::Le16(talvane::ByteView(data), 1);
    if (offset >= image.size()) return {};
    const std::size_t count = std::min<std::size_t>(data[3], image.size() - offset);
    CapturedBytes answer{static_cast<std::uint8_t>(count)};
    const auto begin = image.begin() + static_cast<std::ptrdiff_t>(offset);
    answer.insert(answer.end(), begin, begin + static_cast<std::ptrdiff_t>(count));
    return answer;
}

}  // namespace tool
