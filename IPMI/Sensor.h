// SPDX-License-Identifier: MIT
//
// The sensors of a BMC. A walk reads the sensor data record repository once and keeps an entry for
// each sensor; the entries are sorted into tables; the tables are asked for current readings,
// states and thresholds.
//
// Rules of all operations, unless one says otherwise:
//  - They return 0. They return -1 and write nothing when no system interface has been found or an
//    output pointer is null. When the controller does not answer a request, the response reads as
//    zeros.
//  - Table indexes count from 0. The getters of a table return -1 for an index outside of its 64
//    entries. Entries without a sensor are zero.
//  - Texts are NUL-terminated.
// Section numbers are those of IPMI 2.0.
#ifndef TALVANE_IPMI_SENSOR_H
#define TALVANE_IPMI_SENSOR_H

#include "../Export.h"
#include "IPMIbase.h"
#include "SDR.h"
#include "SensorRecords.h"

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // see IPMIbase
#endif

class TALVANE_EXPORT Sensor : public IPMIbase {
public:
    // Sensor types (42.2) and entities (43.14).
    enum SensorType {
        SENSOR_TYPE_TEMPERATURE = 1,
        SENSOR_TYPE_VOLTAGE = 2,
        SENSOR_TYPE_FAN = 4,
        SENSOR_TYPE_PROCESSOR = 7,
        SENSOR_TYPE_POWER_SUPPLY = 8,
        SENSOR_TYPE_POWER_UNIT = 9,
        SENSOR_TYPE_COOLING_DEVICE = 10
    };

    enum EntityID {
        ENTITY_PROCESSOR = 3,
        ENTITY_DISK = 4,
        ENTITY_PERIPHERAL = 5,
        ENTITY_SYSTEM_BOARD = 7,
        ENTITY_MEMORY_MODULE = 8,
        ENTITY_POWER_SUPPLY = 10,
        ENTITY_FAN = 29
    };

    // Opens the IPMI device unless it is open already.
    Sensor();
    ~Sensor();

    // Commands of the repository (33.9, 33.11, 33.12) and the raw reading of a sensor (35.14).
    int GetSDRRepositoryInfo(int& recordCount, int& sdrVersion);
    int ReserveSDRRepository(unsigned short& reservation);
    // Copies `count` bytes from the beginning of the record to `out`; bytes past the response are
    // 0. Returns the ID of the next record, which is 0xFFFF (-1) after the last record. Returns -1
    // also for a negative ID.
    short GetSDR(unsigned short reservation, int recordID, unsigned char* out, int count);
    int ReadSensor(unsigned char sensorNumber, unsigned char& reading);

    // The revision of the firmware (20.1). The minor revision is a number from 0 to 99.
    int GetDeviceID(unsigned char* majorFirmwareRevision, unsigned char* minorFirmwareRevision);

    // Walks over `n` records of the repository and keeps an entry for each full sensor record that
    // names a sensor. A later walk replaces the entries; all are freed with the object.
    int GetSensorNumbers(int n);

    // Fill a table from the first `n` entries of the walk. Return -1 when n is below 1. A second
    // call writes the same table entries again and adds to the table's quantity.
    int GetTemSensorsInfo(int n);  // only sensors with an analog reading
    int GetVoltSensorsInfo(int n);
    int GetFanSensorsInfo(int n);
    int GetProcessorSensorInfo(int n);

    // Entries of the walk. Return -1 for an index past the last one. GetSensorNumberInfo lists the
    // first 64 matches among the first `n` entries and always returns 0.
    int GetSensorNumberInfo(unsigned char entityID, unsigned char sensorType, int n,
                            SensorNumberInfo& info);
    int GetSensorFormulaParameter(unsigned char index, SensorFormulaParameter& out);
    int GetThreshold(int index, SensorThresholdInfoRaw& raw,
                     SensorThresholdInfoConverted& converted);

    // Both write nothing and return 0.
    int GetProcessorTemperature(char* out);
    int GetProcessorVoltage(char* out);

    // Values of the table entries, from the walk.
    int GetFanEntityID(int i, unsigned char& entityID);
    int GetVoltageEntityID(int i, unsigned char& entityID);
    int GetTemperatureEntityID(int i, unsigned char& entityID);
    int GetFanSensorNumber(int i, unsigned char& number);
    int GetVoltageSensorNumber(int i, unsigned char& number);
    int GetTemperatureSensorNumber(int i, unsigned char& number);
    int GetFanSensorType(int i, unsigned char& type);
    int GetVoltageSensorType(int i, unsigned char& type);
    int GetTemperatureSensorType(int i, unsigned char& type);
    int GetFanIDString(int i, char* out);  // up to 16 bytes
    int GetVoltageIDString(int i, char* out);
    int GetTemperatureIDString(int i, char* out);
    int GetVoltageMax(int i, char* out);  // up to 64 bytes
    int GetVoltageMin(int i, char* out);
    int GetFanSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                              SensorThresholdInfoConverted& converted);
    int GetVoltageSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                                  SensorThresholdInfoConverted& converted);
    int GetTemperatureSensorThreshold(int i, SensorThresholdInfoRaw& raw,
                                      SensorThresholdInfoConverted& converted);

    // The current reading with its unit, up to 64 bytes, or "Unknown" when the sensor has none or
    // cannot be read. Return -1 only for a null pointer.
    int GetFanSpeed(int i, char* out);
    int GetVoltageCurrent(int i, char* out);
    int GetTemperatureCurrent(int i, char* out);

    // STATUS_NORMAL when the fan's reading is not 0, else STATUS_ERROR.
    int GetFanStatus(int i, char& status);

    // The current state of a discrete sensor as text, up to 64 bytes. Empty when there is no state.
    int GetFanStatusDescription(int i, char* out);
    int GetVoltageStatusDescription(int i, char* out);
    int GetTemperatureStatusDescription(int i, char* out);

    // The first eight state bits (35.14) of a sensor whose event/reading type `code` is 2 to 11 or
    // 0x6F. For any other type the state is 0.
    int GetSensorStatus(unsigned char sensorNumber, unsigned char code, unsigned char& state);

    // The text of the lowest bit that is set in `state`. Returns -1 for state 0xFF.
    int GetDeviceStatus(unsigned char code, unsigned char state, char* out);

    // Conversion of raw readings into values and back (36.3). Those that return an int return 0 in
    // every case.
    double GetFormulaInput(SensorFormulaParameter p, unsigned char x);  // only the linear formula
    double ReadingConversion(SensorFormulaParameter p, unsigned char raw);
    int GetReadingConversion(SensorFormulaParameter p, unsigned char raw, double& value);
    int GetRawValue(SensorFormulaParameter p, double y, unsigned char& raw);
    int ValueConversion(SensorFormulaParameter p, unsigned char& raw);
    int GetValueConversion(SensorFormulaParameter p, unsigned char& raw, double value);

    // Texts of the sensor data record that the walk loaded last. A rate and a unit of the unit
    // table are not NUL-terminated: pass `size` zeroed bytes. The maximum and the minimum have up
    // to 64 bytes and the unit of walk entry k.
    int GetSensorUnit(char* out, int size);
    int ReadSensorMax(int k, char* out);
    int ReadSensorMin(int k, char* out);

    // The thresholds of a sensor (35.8, 35.9). Return -1 for sensor 0xFF. Neither tests whether a
    // system interface has been found. Without one all raw thresholds read 0, and the converted
    // ones are the value of a raw 0.
    int GetSensorThreshold(unsigned char sensor, SensorFormulaParameter p,
                           SensorThresholdInfoRaw& raw, SensorThresholdInfoConverted& converted);
    int SetSensorThreshold(unsigned char sensor, SensorThresholdInfoRaw raw);

private:
    friend class IPMIsupport;

    Sensor(const Sensor&);             // not copyable
    Sensor& operator=(const Sensor&);  // not assignable

    // Helpers of the operations; not exported.
    TALVANE_LOCAL void FillWalkEntry(int k, SensorDescription& entry);
    TALVANE_LOCAL int WriteLimit(int k, unsigned char raw, char* out);
    TALVANE_LOCAL bool IsInService(const SensorDescription& sensor);
    TALVANE_LOCAL bool ReadCurrent(const SensorDescription* sensor, unsigned char& raw);
    TALVANE_LOCAL int WriteReading(const SensorDescription* sensor, char* out);
    TALVANE_LOCAL int WriteSpeed(const SensorDescription& sensor, unsigned char raw, char* out);
    TALVANE_LOCAL int WriteState(const SensorDescription* sensor, char* out);

    SDR sdr;  // the sensor data record that the walk loaded last
    TemSensorsInfo TSInfo;
    VoltSensorsInfo VSInfo;
    FanSensorsInfo FSInfo;
    ProcessorSensorsInfo PSInfo;
    SensorDescription* SensorsInformation;  // the entries of the walk that ended last
};
static_assert(sizeof(Sensor) == 32 + 68 + 4 * 28932 + 4, "the members above, in this order");

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

#endif
