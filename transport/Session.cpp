// SPDX-License-Identifier: MIT
//
// The way of one request, from the caller's record to the bytes of its answer.

#include "transport/Session.h"

#include <algorithm>
#include <cerrno>

#include "transport/CallerRecord.h"

namespace transport {

int Session::Serve(std::span<const std::uint8_t> call, Bytes& answer,
                   std::optional<Deadline> stated) {
    if (call.size() < kRecordSize) return EINVAL;
    CallerRecord record;
    if (const int error = DecodeRecord(call.first<kRecordSize>(), record)) return error;
    const auto data = call.subspan(kRecordSize);
    if (data.size() != record.dataLength)
        return EINVAL;  // the caller has changed the record since it was first read

    const Deadline deadline = stated.value_or(Deadline::clock::now() + record.timeout);
    const std::unique_lock<std::timed_mutex> lock(oneAtATime_, deadline);
    if (!lock) return ETIMEDOUT;
    const Request request{record.netFn, record.lun, record.command,
                          Bytes(data.begin(), data.end())};
    Response response;
    if (const int error = reads_.Exchange(request, deadline, response)) return error;

    const std::size_t length = std::min(response.data.size(), kMaxResponse);
    answer.assign(call.begin(), call.begin() + kRecordSize);
    StoreResult(std::span(answer).first<kRecordSize>(), response.completion,
                static_cast<std::uint32_t>(length));
    answer.insert(answer.end(), response.data.begin(),
                  response.data.begin() + static_cast<std::ptrdiff_t>(length));
    ++served_;
    return 0;
}

}  // namespace transport
