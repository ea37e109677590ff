// SPDX-License-Identifier: MIT
//
// The two reads that can be done in pieces: Get SDR (IPMI 2.0, 33.12), which needs a reservation,
// and Read FRU Data (34.2).

#include "transport/WholeReads.h"

#include <algorithm>

#include "transport/IpmiCodes.h"

namespace transport {
namespace {

// Get SDR. Request: reservation, record ID, offset, count. Response: the next record's ID, the
// bytes.
constexpr std::size_t kRecordRequestSize = 6;
constexpr std::size_t kRecordOffset = 4;
constexpr std::uint8_t kUpToTheEnd = 0xFF;  // as a count
constexpr std::size_t kNextIdSize = 2;
constexpr unsigned kHeaderSize = 5;       // record ID, version, type, length of what follows
constexpr unsigned kLengthInHeader = 4;   // IPMI 2.0, 43
constexpr unsigned kRecordReach = 0x100;  // the offset is one byte

// Read FRU Data. Request: device, offset in two bytes, count. Response: the count, the bytes.
constexpr std::size_t kInventoryRequestSize = 4;
constexpr std::size_t kInventoryOffset = 1;
constexpr unsigned kInventoryReach = 0x10000;

// Every BMC can return this much at once: the smallest buffer, that of IPMB, has 32 bytes.
constexpr unsigned kPieceSize = 16;

// Other programs may reserve the repository, too. They are done before so many tries are used up.
constexpr int kReadsPerRecord = 8;

// Whether this is a command for the BMC itself: the other LUNs have commands of their own.
bool Is(const Request& request, std::uint8_t command, std::size_t size) {
    return request.netFn == kStorage && request.lun == kBmcLun && request.command == command &&
           request.data.size() == size;
}

// In both requests the count is the last byte. A caller that asks for a certain number of bytes of
// a record reads in pieces itself, and learns from a refusal how long they may be.
bool IsWholeRecord(const Request& request) {
    return Is(request, kGetRecord, kRecordRequestSize) && request.data.back() == kUpToTheEnd;
}

bool IsLongInventory(const Request& request) {
    return Is(request, kReadInventory, kInventoryRequestSize) && request.data.back() > kPieceSize;
}

bool IsTooLong(std::uint8_t completion) {
    return completion == kCannotReturnSoMuch || completion == kLengthLimitExceeded ||
           completion == kLengthInvalid;
}

// A read in pieces: the request, which gets a new offset and count for each piece, and the limit on
// their size, which is halved whenever the BMC refuses a piece.
class Pieces {
public:
    Pieces(Controller& bmc, const Request& request, Deadline deadline)
        : bmc_(bmc), request_(request), deadline_(deadline) {}

    Bytes& Data() { return request_.data; }

    // Asks for at most `wanted` bytes, starting at the offset in the request.
    [[nodiscard]] int Read(unsigned wanted, Response& response) {
        for (;;) {
            request_.data.back() = static_cast<std::uint8_t>(std::min(wanted, limit_));
            if (const int error = bmc_.Exchange(request_, deadline_, response)) return error;
            if (!IsTooLong(response.completion) || limit_ == 1) return 0;
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

// Appends the record's bytes up to `end` to those in `record`, which start at `offset`. `last` is
// the response to the last piece. Its completion code is that of the whole read.
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

// Reads one record under the reservation in the request. The record's header has its length.
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

// Reads an area of the inventory. When the device ends within the area, returns what there is.
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
        // For a device that is accessed by words the count is in words, so there may be twice as
        // many bytes.
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
        if (!IsTooLong(response.completion)) return 0;
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
    // A caller with its own reservation is told when it is cancelled, and starts over itself.
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

}  // namespace transport
