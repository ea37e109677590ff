// SPDX-License-Identifier: MIT
//
// The codes of the IPMI classes, which agents were compiled with, in numbers of their own.

#include "support/IpmiNumbers.h"
#include "support/OpenIpmi.h"

namespace {

constexpr Same kCommands[] = {
    {IPMIbase::get_device_id, 1},
    {IPMIbase::Get_FRU_info, 16},
    {IPMIbase::Read_FRU_info, 17},
    {IPMIbase::Get_SDR_RepositoryInfo, 32},
    {IPMIbase::Reserve_SDR_Repository, 34},
    {IPMIbase::reset_watchdog_timer, 34},
    {IPMIbase::Get_SDR, 35},
    {IPMIbase::set_watchdog_timer, 36},
    {IPMIbase::get_watchdog_timer, 37},
    {IPMIbase::set_sensor_threshold, 38},
    {IPMIbase::get_sensor_threshold, 39},
    {IPMIbase::Get_sensor_reading, 45},
    {IPMIbase::Get_channel_auth_capability, 56},
    {IPMIbase::Get_session_challenge, 57},
    {IPMIbase::Activate_session, 58},
    {IPMIbase::Set_session_priviledge_level, 59},
    {IPMIbase::close_session, 60},
    {IPMIbase::Get_session_info, 61},
    {IPMIbase::Get_auth_code, 63},
    {IPMIbase::Set_channel_access, 64},
    {IPMIbase::get_SEL_info, 64},
    {IPMIbase::Get_channel_access, 65},
    {IPMIbase::get_SEL_alloc_info, 65},
    {IPMIbase::Get_channel_info, 66},
    {IPMIbase::reserve_SEL, 66},
    {IPMIbase::Set_user_access, 67},
    {IPMIbase::get_SEL_entry, 67},
    {IPMIbase::Get_user_access, 68},
    {IPMIbase::add_SEL_entry, 68},
    {IPMIbase::Set_user_name, 69},
    {IPMIbase::partial_add_SEL_entry, 69},
    {IPMIbase::Get_user_name, 70},
    {IPMIbase::delete_SEL_entry, 70},
    {IPMIbase::Set_user_passwd, 71},
    {IPMIbase::clear_SEL, 71},
    {IPMIbase::get_SEL_time, 72},
    {IPMIbase::set_SEL_time, 73},
    {IPMIbase::get_aux_log_status, 90},
    {IPMIbase::set_aux_log_status, 91},
};
static_assert(AllSame(kCommands), "command codes");

constexpr Same kFunctions[] = {
    {IPMIbase::CHASSIS_CMD, 0},   {IPMIbase::CHASSIS_REP, 1},      {IPMIbase::BRIDGE_CMD, 2},
    {IPMIbase::BRIDGE_REP, 3},    {IPMIbase::SENSER_EVENT_CMD, 4}, {IPMIbase::SENSER_EVENT_REP, 5},
    {IPMIbase::APP_CMD, 6},       {IPMIbase::APP_REP, 7},          {IPMIbase::FIRMWARE_CMD, 8},
    {IPMIbase::FIRMWARE_REP, 9},  {IPMIbase::STORAGE_CMD, 10},     {IPMIbase::STORAGE_REP, 11},
    {IPMIbase::TRASPORT_CMD, 12}, {IPMIbase::TRANPORT_REP, 13},    {IPMIbase::OEM_CMD, 48},
};
static_assert(AllSame(kFunctions), "network functions");

constexpr Same kTransport[] = {
    {IPMIbase::BMC_LUN, 0},      {IPMIbase::OEM_LUN1, 1},   {IPMIbase::SMS_LUN, 2},
    {IPMIbase::OEM_LUN2, 3},     {IPMIbase::PUBLIC_BUS, 0}, {IPMIbase::STATUS_NORMAL, 1},
    {IPMIbase::STATUS_ERROR, 2}, {IPMIbase::IPMB_10, 1},    {IPMIbase::LAN_802_3, 4},
};
static_assert(AllSame(kTransport), "units, bus, states and channels");

constexpr Same kSupportCommands[] = {
    {IPMIsupport::Get_SDR_RepositoryInfo, 32},
    {IPMIsupport::Get_SDR, 35},
    {IPMIsupport::Get_sensor_reading, 45},
    {IPMIsupport::Get_channel_auth_capability, 56},
    {IPMIsupport::Get_session_challenge, 57},
    {IPMIsupport::Activate_session, 58},
    {IPMIsupport::Set_session_priviledge_level, 59},
    {IPMIsupport::close_session, 60},
    {IPMIsupport::Get_session_info, 61},
    {IPMIsupport::Get_auth_code, 63},
    {IPMIsupport::Set_channel_access, 64},
    {IPMIsupport::Get_channel_access, 65},
    {IPMIsupport::Get_channel_info, 66},
    {IPMIsupport::Set_user_access, 67},
    {IPMIsupport::Get_user_access, 68},
    {IPMIsupport::Set_user_name, 69},
    {IPMIsupport::Get_user_name, 70},
    {IPMIsupport::Set_user_passwd, 71},
    {IPMIsupport::Set_LAN_parameter, 1},
};
static_assert(AllSame(kSupportCommands), "command codes of the facade");

constexpr Same kSupport[] = {
    {IPMIsupport::CHASSIS_CMD, 0},      {IPMIsupport::CHASSIS_REP, 1},
    {IPMIsupport::BRIDGE_CMD, 2},       {IPMIsupport::BRIDGE_REP, 3},
    {IPMIsupport::SENSER_EVENT_CMD, 4}, {IPMIsupport::SENSER_EVENT_REP, 5},
    {IPMIsupport::APP_CMD, 6},          {IPMIsupport::APP_REP, 7},
    {IPMIsupport::FIRMWARE_CMD, 8},     {IPMIsupport::FIRMWARE_REP, 9},
    {IPMIsupport::STORAGE_CMD, 10},     {IPMIsupport::STORAGE_REP, 11},
    {IPMIsupport::TRASPORT_CMD, 12},    {IPMIsupport::TRANPORT_REP, 13},
    {IPMIsupport::OEM_CMD, 48},         {IPMIsupport::BMC_LUN, 0},
    {IPMIsupport::OEM_LUN1, 1},         {IPMIsupport::SMS_LUN, 2},
    {IPMIsupport::OEM_LUN2, 3},         {IPMIsupport::PUBLIC_BUS, 0},
    {IPMIsupport::IPMB_10, 1},          {IPMIsupport::LAN_802_3, 4},
};
static_assert(AllSame(kSupport), "its other codes");

constexpr Same kSensors[] = {
    {Sensor::SENSOR_TYPE_TEMPERATURE, 1},
    {Sensor::SENSOR_TYPE_VOLTAGE, 2},
    {Sensor::SENSOR_TYPE_FAN, 4},
    {Sensor::SENSOR_TYPE_PROCESSOR, 7},
    {Sensor::SENSOR_TYPE_POWER_SUPPLY, 8},
    {Sensor::SENSOR_TYPE_POWER_UNIT, 9},
    {Sensor::SENSOR_TYPE_COOLING_DEVICE, 10},
    {Sensor::ENTITY_PROCESSOR, 3},
    {Sensor::ENTITY_DISK, 4},
    {Sensor::ENTITY_PERIPHERAL, 5},
    {Sensor::ENTITY_SYSTEM_BOARD, 7},
    {Sensor::ENTITY_MEMORY_MODULE, 8},
    {Sensor::ENTITY_POWER_SUPPLY, 10},
    {Sensor::ENTITY_FAN, 29},
};
static_assert(AllSame(kSensors), "sensor types and entities");

constexpr Same kRecords[] = {
    {SDR::FULL_SENSOR_RECORD, 1},
    {FRU::FIELD_EMPTY, 0},
    {FRU::FIELD_END, 1},
};
static_assert(AllSame(kRecords), "record type and field states");

}  // namespace
