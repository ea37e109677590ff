// SPDX-License-Identifier: MIT
//
// Construction, and the commands that read the sensor data record repository, a sensor and the
// device ID.

#include "IPMI/Sensor.h"

#include "IPMI/Responses.h"
#include "IPMI/WalkEntries.h"
#include "base/Bytes.h"

using namespace talvane;

Sensor::Sensor() : TSInfo(), VSInfo(), FSInfo(), PSInfo(), SensorsInformation(nullptr) {
    sdr = nullptr;
    (void)InitIpmiBase();  // result not used: IsInitOK answers whether it worked
}

Sensor::~Sensor() {
    WalkEntries(SensorsInformation).FreeAll();
}

int Sensor::GetSDRRepositoryInfo(int& recordCount, int& sdrVersion) {
    if (Exchange(STORAGE_CMD, Get_SDR_RepositoryInfo, kAnyAddress, {}) != 0) return -1;
    recordCount = ResponseLe16(RepositoryInfoResponse::kRecordCount);
    sdrVersion = ResponseByte(RepositoryInfoResponse::kVersion);
    return 0;
}

int Sensor::ReserveSDRRepository(unsigned short& reservation) {
    if (Exchange(STORAGE_CMD, Reserve_SDR_Repository, kAnyAddress, {}) != 0) return -1;
    reservation = ResponseLe16(ReservationResponse::kReservation);
    return 0;
}

short Sensor::GetSDR(unsigned short reservation, int recordID, unsigned char* out, int count) {
    if (recordID < 0 || out == nullptr) return -1;
    constexpr unsigned char kFromStart = 0;
    if (Exchange(STORAGE_CMD, Get_SDR, kAnyAddress,
                 {LowByte(reservation), HighByte(reservation), LowByte(recordID),
                  HighByte(recordID), kFromStart, LowByte(count)}) != 0)
        return -1;
    const ByteView response(ResponseBuffer, kResponseSize);
    for (int i = 0; i < count; ++i)
        out[i] = ByteAt(response, RecordResponse::kRecord + static_cast<unsigned>(i));
    return static_cast<short>(ResponseLe16(RecordResponse::kNextRecord));
}

int Sensor::ReadSensor(unsigned char sensorNumber, unsigned char& reading) {
    if (Exchange(SENSER_EVENT_CMD, Get_sensor_reading, kAnyAddress, {sensorNumber}) != 0) return -1;
    reading = ResponseByte(ReadingResponse::kReading);
    return 0;
}

int Sensor::GetDeviceID(unsigned char* majorFirmwareRevision,
                        unsigned char* minorFirmwareRevision) {
    using Response = DeviceIdResponse;
    if (majorFirmwareRevision == nullptr || minorFirmwareRevision == nullptr) return -1;
    if (Exchange(APP_CMD, get_device_id, kBmcAddress, {}) != 0) return -1;
    *majorFirmwareRevision = static_cast<unsigned char>(ResponseByte(Response::kMajorRevision) &
                                                        Response::kMajorRevisionBits);
    const int digits = ResponseByte(Response::kMinorRevision);
    *minorFirmwareRevision = static_cast<unsigned char>((digits >> 4) * 10 + (digits & 0x0F));
    return 0;
}
