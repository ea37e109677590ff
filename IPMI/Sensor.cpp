// SPDX-License-Identifier: MIT
//
// The commands that read the sensor data record repository, a sensor and the device ID.

#include "IPMI/Sensor.h"

#include <cstring>

#include "base/Bytes.h"

using namespace talvane;

Sensor::Sensor() : TSInfo(), VSInfo(), FSInfo(), PSInfo(), SensorsInformation(nullptr) {
    sdr = nullptr;
    (void)InitIpmiBase();  // result not used: IsInitOK tells
}

Sensor::~Sensor() {
    FreeWalks();
}

int Sensor::GetSDRRepositoryInfo(int& recordCount, int& sdrVersion) {
    if (Exchange(STORAGE_CMD, Get_SDR_RepositoryInfo, ANY_ADDRESS, {}) != 0) return -1;
    const ByteView response(ResponseBuffer, RESPONSE_SIZE);
    recordCount = Le16(response, 1);
    sdrVersion = ByteAt(response, 0);
    return 0;
}

int Sensor::ReserveSDRRepository(unsigned short& reservation) {
    if (Exchange(STORAGE_CMD, Reserve_SDR_Repository, ANY_ADDRESS, {}) != 0) return -1;
    reservation = Le16(ByteView(ResponseBuffer, RESPONSE_SIZE), 0);
    return 0;
}

short Sensor::GetSDR(unsigned short reservation, int recordID, unsigned char* out, int count) {
    if (recordID < 0 || out == nullptr) return -1;
    constexpr unsigned char kFromStart = 0;
    if (Exchange(STORAGE_CMD, Get_SDR, ANY_ADDRESS,
                 {LowByte(reservation), HighByte(reservation), LowByte(recordID),
                  HighByte(recordID), kFromStart, LowByte(count)}) != 0)
        return -1;
    constexpr std::size_t kRecord = 2;
    const ByteView response(ResponseBuffer, RESPONSE_SIZE);
    for (int i = 0; i < count; ++i) out[i] = ByteAt(response, kRecord + static_cast<unsigned>(i));
    return static_cast<short>(Le16(response, 0));
}

int Sensor::ReadSensor(unsigned char sensorNumber, unsigned char& reading) {
    if (Exchange(SENSER_EVENT_CMD, Get_sensor_reading, ANY_ADDRESS, {sensorNumber}) != 0) return -1;
    reading = ResponseBuffer[0];
    return 0;
}

int Sensor::GetDeviceID(unsigned char* majorFirmwareRevision,
                        unsigned char* minorFirmwareRevision) {
    if (majorFirmwareRevision == nullptr || minorFirmwareRevision == nullptr) return -1;
    if (Exchange(APP_CMD, get_device_id, BMC_ADDRESS, {}) != 0) return -1;
    constexpr int kMajor = 0x7F;  // without the bit "device available"
    *majorFirmwareRevision = static_cast<unsigned char>(ResponseBuffer[2] & kMajor);
    const int digits = ResponseBuffer[3];  // two, in BCD
    *minorFirmwareRevision = static_cast<unsigned char>((digits >> 4) * 10 + (digits & 0x0F));
    return 0;
}
