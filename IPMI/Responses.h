// SPDX-License-Identifier: MIT
//
// Where the values stand in the responses to the commands that the library sends. Offsets count
// from 0 at the first byte after the completion code. Section numbers are those of IPMI 2.0; its
// tables count the completion code as byte 1, so their byte n is offset n - 2 here.
#ifndef TALVANE_IPMI_RESPONSES_H
#define TALVANE_IPMI_RESPONSES_H

namespace talvane {

// Get Device ID (20.1).
struct DeviceIdResponse {
    static constexpr unsigned kMajorRevision = 2;  // of the firmware: bits 6-0
    static constexpr unsigned char kMajorRevisionBits = 0x7F;
    static constexpr unsigned kMinorRevision = 3;  // two BCD digits
};

// Get Channel Info (22.24).
struct ChannelInfoResponse {
    static constexpr unsigned kMedium = 1;
    static constexpr unsigned kProtocol = 2;
};

// Get Watchdog Timer (27.7). Countdowns have 16 bits and count tenths of a second.
struct WatchdogResponse {
    static constexpr unsigned kAction = 1;  // bits 2-0
    static constexpr unsigned kInitialCountdown = 4;
    static constexpr unsigned kPresentCountdown = 6;
};

// Get SDR Repository Info (33.9).
struct RepositoryInfoResponse {
    static constexpr unsigned kVersion = 0;
    static constexpr unsigned kRecordCount = 1;  // 16 bits
};

// Reserve SDR Repository (33.11).
struct ReservationResponse {
    static constexpr unsigned kReservation = 0;  // 16 bits
};

// Get SDR (33.12).
struct RecordResponse {
    static constexpr unsigned kNextRecord = 0;  // 16 bits
    static constexpr unsigned kRecord = 2;      // the record's bytes, to the response's end
};

// Get FRU Inventory Area Info (34.1).
struct InventoryInfoResponse {
    static constexpr unsigned kSize = 0;    // 16 bits
    static constexpr unsigned kAccess = 2;  // bit 0: by words
    static constexpr unsigned char kAccessByWords = 0x01;
};

// Read FRU Data (34.2).
struct InventoryDataResponse {
    static constexpr unsigned kData = 1;  // after the count of bytes
};

// Get Sensor Thresholds (35.9).
struct ThresholdsResponse {
    static constexpr unsigned kReadable = 0;  // mask
    static constexpr unsigned kLowerNonCritical = 1;
    static constexpr unsigned kLowerCritical = 2;
    static constexpr unsigned kLowerNonRecoverable = 3;
    static constexpr unsigned kUpperNonCritical = 4;
    static constexpr unsigned kUpperCritical = 5;
    static constexpr unsigned kUpperNonRecoverable = 6;
};

// Get Sensor Reading (35.14).
struct ReadingResponse {
    static constexpr unsigned kReading = 0;
    static constexpr unsigned kStates = 2;  // the first eight state bits
};

}  // namespace talvane

#endif
