// SPDX-License-Identifier: MIT
//
// The sensors of a BMC: read out of its sensor data record repository once, sorted into tables, and
// then asked for their current readings, states and thresholds.
//
// Rules of all operations, unless one says otherwise:
//  - They return 0, or -1 when no system interface has been found or an output pointer is null;
//    then nothing is written. A request that the controller does not answer reads as zeros.
//  - Table indexes count from 0. The getters of a table answer -1 to an index outside of its 64
//    entries; entries that no sensor has filled are zero.
//  - Texts are terminated.
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
    // Sensor types (42.2) and entities (43.14) that are told apart.
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

    // Opens the IPMI device unless it is open.
    Sensor();
    ~Sensor();

    // Repository commands (33.9, 33.11, 33.12) and the reading of a sensor (35.14).
    int GetSDRRepositoryInfo(int& recordCount, int& sdrVersion);
    int ReserveSDRRepository(unsigned short& reservation);
    // Copies `count` bytes from the record's start to `out`, zeros past the response. Returns the
    // next record's ID, 0xFFFF (-1) for the last one; -1 also for a negative ID.
    short GetSDR(unsigned short reservation, int recordID, unsigned char* out, int count);
    int ReadSensor(unsigned char sensorNumber, unsigned char& reading);

    // The firmware revision (20.1); the minor one as a number from 0 to 99.
    int GetDeviceID(unsigned char* majorFirmwareRevision, unsigned char* minorFirmwareRevision);

    // Walks over `n` records and keeps each full sensor record that names a sensor. A walk replaces
    // the entries of the one before; those are freed with the object.
    int GetSensorNumbers(int n);

    // Fill a table from the first `n` entries of the walk. Return -1 when n is below 1. A second
    // build writes the same entries again and adds to the table's quantity.
    int GetTemSensorsInfo(int n);  // those with an analog reading
    int GetVoltSensorsInfo(int n);
    int GetFanSensorsInfo(int n);
    int GetProcessorSensorInfo(int n);

    // Entries of the walk. An index past them answers -1.
    int GetSensorNumberInfo(unsigned char entityID, unsigned char sensorType, int n,
                            SensorNumberInfo& info);  // the first 64 matches; always 0
    int GetSensorFormulaParameter(unsigned char index, SensorFormulaParameter& out);
    int GetThreshold(int index, SensorThresholdInfoRaw& raw,
                     SensorThresholdInfoConverted& converted);

    // Write nothing, return 0.
    int GetProcessorTemperature(char* out);
    int GetProcessorVoltage(char* out);

    // Table entries as the walk left them.
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

    // The current reading with its unit, up to 64 bytes; "Unknown" when there is none, whatever the
    // reason. Only a null pointer answers -1.
    int GetFanSpeed(int i, char* out);
    int GetVoltageCurrent(int i, char* out);
    int GetTemperatureCurrent(int i, char* out);

    // STATUS_NORMAL for a fan that turns, else STATUS_ERROR.
    int GetFanStatus(int i, char& status);

    // The current state of a discrete sensor as text, up to 64 bytes; empty when there is none.
    int GetFanStatusDescription(int i, char* out);
    int GetVoltageStatusDescription(int i, char* out);
    int GetTemperatureStatusDescription(int i, char* out);

    // The first eight state bits (35.14) of a sensor whose event/reading type is 2 to 11 or 0x6F;
    // 0 for any other.
    int GetSensorStatus(unsigned char sensorNumber, unsigned char code, unsigned char& state);

    // The text of the lowest bit in `state`. Returns -1 for state 0xFF.
    int GetDeviceStatus(unsigned char code, unsigned char state, char* out);

    // Conversion (36.3) of raw readings and back. The `int` ones always return 0.
    double GetFormulaInput(SensorFormulaParameter p, unsigned char x);  // the linear formula
    double ReadingConversion(SensorFormulaParameter p, unsigned char raw);
    int GetReadingConversion(SensorFormulaParameter p, unsigned char raw, double& value);
    int GetRawValue(SensorFormulaParameter p, double y, unsigned char& raw);
    int ValueConversion(SensorFormulaParameter p, unsigned char& raw);
    int GetValueConversion(SensorFormulaParameter p, unsigned char& raw, double value);

    // Texts of the record that the walk has loaded last. The unit is copied without a terminator
    // where it comes from the unit table: pass `size` zeroed bytes. Maximum and minimum take the
    // unit of walk entry k and up to 64 bytes.
    int GetSensorUnit(char* out, int size);
    int ReadSensorMax(int k, char* out);
    int ReadSensorMin(int k, char* out);

    // The thresholds of a sensor (35.8, 35.9). Return -1 for sensor 0xFF. Neither looks whether
    // there is a system interface; without one all raw thresholds read zero, and the converted ones
    // are what zero stands for.
    int GetSensorThreshold(unsigned char sensor, SensorFormulaParameter p,
                           SensorThresholdInfoRaw& raw, SensorThresholdInfoConverted& converted);
    int SetSensorThreshold(unsigned char sensor, SensorThresholdInfoRaw raw);

private:
    friend class IPMIsupport;

    Sensor(const Sensor&);             // not copyable
    Sensor& operator=(const Sensor&);  // not assignable

    // The operations' own helpers, not exported.
    TALVANE_LOCAL SensorDescription* WalkEntry(int index);  // null past the walk's entries
    TALVANE_LOCAL void FreeWalks();
    template <class Table>
    TALVANE_LOCAL int Collect(Table& table, int n, int type, bool analogOnly);
    TALVANE_LOCAL void DescribeRecord(int k, SensorDescription& entry);
    TALVANE_LOCAL int WriteLimit(int k, unsigned char raw, char* out);
    TALVANE_LOCAL bool ReadAnalog(const SensorDescription* sensor, unsigned char& raw);
    TALVANE_LOCAL bool IsProcessorAbsent(const SensorDescription& sensor) const;
    TALVANE_LOCAL bool IsInService(const SensorDescription& sensor);
    TALVANE_LOCAL int WriteReading(const SensorDescription* sensor, char* out);
    TALVANE_LOCAL int WriteSpeed(const SensorDescription& sensor, unsigned char raw, char* out);
    TALVANE_LOCAL int WriteState(const SensorDescription* sensor, char* out);

    SDR sdr;  // the record that the walk is at
    TemSensorsInfo TSInfo;
    VoltSensorsInfo VSInfo;
    FanSensorsInfo FSInfo;
    ProcessorSensorsInfo PSInfo;
    SensorDescription* SensorsInformation;  // of the walk that ended last
};
static_assert(sizeof(Sensor) == 32 + 68 + 4 * 28932 + 4, "the members above, in this order");

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

#endif
