// SPDX-License-Identifier: MIT
//
// Compression by the system's program gzip. It runs as a child process with nothing of this
// process's environment.
#ifndef TALVANE_ARCHIVE_GZIP_H
#define TALVANE_ARCHIVE_GZIP_H

#include <span>

#include "archive/Files.h"

namespace archive {

// Whether these are the first bytes of a gzip file (RFC 1952, 2.3.1).
bool IsGzip(std::span<const std::uint8_t> bytes);

// The same bytes give the same file: it holds neither name nor time. Throws std::system_error or
// std::runtime_error when the program cannot be run.
Bytes Compress(std::span<const std::uint8_t> bytes);

// The bytes of a gzip file that may come from a stranger. Throws Error when it is damaged, goes on
// after its end, or holds more than `limit` bytes; the program is ended then. Exceptions else as
// above.
Bytes Decompress(std::span<const std::uint8_t> gzip, std::size_t limit = kMaxTarSize);

}  // namespace archive

#endif
