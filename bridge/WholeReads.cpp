// SPDX-License-Identifier: MIT
//
// The two reads that come in pieces: Get SDR (IPMI 2.0, 33.12), which takes a reservation, and Read
// FRU Data (34.2).

#include "bridge/WholeReads.h"

#include <algorithm>

#include "bridge/IpmiCodes.h"

namespace bridge {
namespace {

// Get SDR: reservation, record ID, offset, count; answered by the next record's ID and the bytes.
constexpr std::size_t kRecordRequestSize = 6;
constexpr std::size_t kRecordOffset = 4;
constexpr std::uint8_t kUpToTheEnd = 0xFF;  // as a count
constexpr std::size_t kNextIdSize = 2;
constexpr unsigned kHeaderSize = 5;       // record ID, version, type, length of what follows
constexpr unsigned kLengthInHeader = 4;   // IPMI 2.0, 43
constexpr unsigned kRecordReach = 0x100;  // the offset is one byte

// Read FRU Data: device, offset in two bytes, count; answered by the count returned and the bytes.
constexpr std::size_t kInventoryRequestSize = 4;
constexpr std::size_t kInventoryOffset = 1;
constexpr unsigned kInventoryReach = 0x10000;

// What every BMC returns at once; the smallest buffer, that of IPMB, is 32 bytes.
constexpr unsigned kPieceSize = 16;

// Programs beside the bridge may reserve the repository too. One of them is through before this.
constexpr int kReadsPerRecord = 8;

// To the BMC itself: the other LUNs have commands of their own.
bool Is(const Request& request, std::uint8_t command, std::size_t size) {
    return request.netFn == kStorage && request.lun == kBmcLun && request.command == command &&
           request.data.size() == size;
}

// In both requests the count is the last byte. A caller that counts a record's bytes reads in
// pieces of its own and learns from a refusal how long they may be.
bool IsWholeRecord(const Request& request) {
    return Is(request, kGetRecord, kRecordRequestSize) && request.data.back() == kUpToTheEnd;
}

bool IsLongInventory(const Request& request) {
    return Is(request, kReadInventory, kInventoryRequestSize) && request.data.back() > kPieceSize;
}

bool TooLong(std::uint8_t completion) {
    return completion == kCannotReturnSoMuch || completion == kLengthLimitExceeded ||
           completion == kLengthInvalid;
}

// A read in pieces: the request, which takes a new offset and count for each, and the limit on
// their size, which falls where a BMC refuses 16 bytes too.
class Pieces {
public:
    Pieces(Controller& bmc, const Request& request, Deadline deadline)
        : bmc_(bmc), request_(request), deadline_(deadline) {}

    Bytes& Data() { return request_.data; }

    // Asks for at most `wanted` bytes from the offset in the request on.
    [[nodiscard]] int Read(unsigned wanted, Response& response) {
        for (;;) {
            request_.data.back() = static_cast<std::uint8_t>(std::min(wanted, limit_));
            if (const int error = bmc_.Exchange(request_, deadline_, response)) return error;
            if (!TooLong(response.completion) || limit_ == 1) return 0;
            limit_ /= 2;
        }
    }

    [[nodiscard]] unsigned Asked() const { return request_.data.back(); }

private:
    Controller& bmc_;
    Request request_;
    Deadline deadline_;
    unsigned limit_ = kPieceSize;
};

// Appends the record's bytes up to `end` to those in `record`, the first of which is that at
// `offset`. `last` is the response to the last piece, and tells by its completion code how it went.
[[nodiscard]] int AppendRecord(Pieces& pieces, unsigned offset, unsigned end, Bytes& record,
                               Response& last) {
    unsigned at = offset + static_cast<unsigned>(record.size());
    while (at < end) {
        pieces.Data()[kRecordOffset] = static_cast<std::uint8_t>(at);
        if (const int error = pieces.Read(end - at, last)) return error;
        if (last.completion != kDone) return 0;
        if (last.data.size() <= kNextIdSize) {
            last.completion = kUnspecified;
            return 0;
        }
        const auto count = std::min<std::size_t>(last.data.size() - kNextIdSize, pieces.Asked());
        const auto from = last.data.begin() + kNextIdSize;
        record.insert(record.end(), from, from + static_cast<std::ptrdiff_t>(count));
        at += static_cast<unsigned>(count);
    }
    return 0;
}

// One record under the reservation in the request. How long it is stands in its header.
[[nodiscard]] int ReadReserved(Controller& bmc, const Request& request, Deadline deadline,
                               Response& response) {
    Pieces pieces(bmc, request, deadline);
    Bytes header;
    if (const int error = AppendRecord(pieces, 0, kHeaderSize, header, response)) return error;
    if (response.completion != kDone) return 0;

    const unsigned offset = request.data[kRecordOffset];
    const unsigned length = kHeaderSize + header[kLengthInHeader];
    if (offset >= length) {
        response = {kOutOfRange, {}};
        return 0;
    }
    const unsigned end = std::min({offset + kUpToTheEnd, length, kRecordReach});
    Bytes record = offset == 0 ? header : Bytes();
    if (const int error = AppendRecord(pieces, offset, end, record, response)) return error;
    if (response.completion != kDone) {
        response.data.clear();
        return 0;
    }
    response.data.resize(kNextIdSize);
    response.data.insert(response.data.end(), record.begin(), record.end());
    return 0;
}

// An area of the inventory. Where the device ends before the area does, what there is of it.
[[nodiscard]] int ReadInventory(Controller& bmc, const Request& request, Deadline deadline,
                                Response& response) {
    Pieces pieces(bmc, request, deadline);
    const auto low = request.data[kInventoryOffset];
    const auto high = request.data[kInventoryOffset + 1];
    const unsigned offset = low + 256U * high;
    const unsigned wanted = std::min<unsigned>(request.data.back(), kInventoryReach - offset);
    Bytes area(1);  // the count comes first
    unsigned done = 0;
    while (done < wanted) {
        const unsigned at = offset + done;
        pieces.Data()[kInventoryOffset] = static_cast<std::uint8_t>(at);
        pieces.Data()[kInventoryOffset + 1] = static_cast<std::uint8_t>(at >> 8);
        if (const int error = pieces.Read(wanted - done, response)) return error;
        if (response.completion == kOutOfRange && done != 0) break;
        if (response.completion != kDone) return 0;
        // Counted in words where the device is accessed by words, so the bytes may be twice as
        // many.
        const unsigned count = response.data.empty() ? 0 : response.data[0];
        if (count > pieces.Asked() || response.data.size() < count + std::size_t{1}) {
            response = {kUnspecified, {}};
            return 0;
        }
        if (count == 0) break;
        area.insert(area.end(), response.data.begin() + 1, response.data.end());
        done += count;
    }
    area[0] = static_cast<std::uint8_t>(done);
    response = {kDone, std::move(area)};
    return 0;
}

}  // namespace

int WholeReads::Exchange(const Request& request, Deadline deadline, Response& response) {
    const bool record = IsWholeRecord(request);
    if (!record && !IsLongInventory(request)) return Pass(request, deadline, response);

    bool& refused = record ? recordsRefused_ : inventoryRefused_;
    if (!refused) {
        if (const int error = bmc_.Exchange(request, deadline, response)) return error;
        if (!TooLong(response.completion)) return 0;
        refused = true;
    }
    return record ? ReadRecord(request, deadline, response)
                  : ReadInventory(bmc_, request, deadline, response);
}

int WholeReads::Pass(const Request& request, Deadline deadline, Response& response) {
    if (const int error = bmc_.Exchange(request, deadline, response)) return error;
    if (AsksForReservation(request)) reservation_.GrantedToCaller(response);
    return 0;
}

int WholeReads::ReadRecord(const Request& request, Deadline deadline, Response& response) {
    // A caller with a reservation of its own learns that it is cancelled and starts over itself.
    if (request.data[0] != 0 || request.data[1] != 0)
        return ReadReserved(bmc_, request, deadline, response);

    for (int reads = 0; reads < kReadsPerRecord; ++reads) {
        std::uint16_t id = 0;
        if (const int error = reservation_.Get(bmc_, deadline, id)) return error;
        Request reserved = request;
        reserved.data[0] = static_cast<std::uint8_t>(id);
        reserved.data[1] = static_cast<std::uint8_t>(id >> 8);
        if (const int error = ReadReserved(bmc_, reserved, deadline, response)) return error;
        if (response.completion != kReservationCancelled) return 0;
        reservation_.Cancelled(id);
    }
    return 0;
}

}  // namespace bridge
