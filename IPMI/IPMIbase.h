// SPDX-License-Identifier: MIT
//
// The transport to the baseboard management controller (BMC): one request and its response over the
// kernel's IPMI device. All objects of the process share the device. Base of Sensor, FRU and
// IPMIsupport.
#ifndef TALVANE_IPMI_IPMIBASE_H
#define TALVANE_IPMI_IPMIBASE_H

#include <initializer_list>

#include "../Export.h"

// Shared by all IPMIbase objects of the process.
extern TALVANE_EXPORT int hDevice;  // descriptor of /dev/ipmi; negative before it is opened
extern TALVANE_EXPORT int InitOK;   // 1 once a system interface (KCS or SMIC) has answered, else 0

// One request.
struct IMBPREQUESTDATA {
    unsigned char cmdType;
    unsigned char rsSa;  // responder address; the transport sends 0xFF instead
    unsigned char busType;
    unsigned char netFn;
    unsigned char rsLun;
    unsigned char* data;  // null when the command has no data
    int dataLength;
};
static_assert(sizeof(IMBPREQUESTDATA) == 16, "three bytes of padding before the pointer");

// Kept: the destructors are not virtual. The virtual table has the two slots that agents know, and
// no object is deleted through a pointer to its base.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

class TALVANE_EXPORT IPMIbase {
public:
    // Command codes (IPMI 2.0, appendix G). Commands of different network functions can have the
    // same code.
    enum command {
        get_device_id = 1,
        Get_FRU_info = 16,
        Read_FRU_info = 17,
        Get_SDR_RepositoryInfo = 32,
        Reserve_SDR_Repository = 34,
        reset_watchdog_timer = 34,
        Get_SDR = 35,
        set_watchdog_timer = 36,
        get_watchdog_timer = 37,
        set_sensor_threshold = 38,
        get_sensor_threshold = 39,
        Get_sensor_reading = 45,
        Get_channel_auth_capability = 56,
        Get_session_challenge = 57,
        Activate_session = 58,
        Set_session_priviledge_level = 59,
        close_session = 60,
        Get_session_info = 61,
        Get_auth_code = 63,
        Set_channel_access = 64,
        get_SEL_info = 64,
        Get_channel_access = 65,
        get_SEL_alloc_info = 65,
        Get_channel_info = 66,
        reserve_SEL = 66,
        Set_user_access = 67,
        get_SEL_entry = 67,
        Get_user_access = 68,
        add_SEL_entry = 68,
        Set_user_name = 69,
        partial_add_SEL_entry = 69,
        Get_user_name = 70,
        delete_SEL_entry = 70,
        Set_user_passwd = 71,
        clear_SEL = 71,
        get_SEL_time = 72,
        set_SEL_time = 73,
        get_aux_log_status = 90,
        set_aux_log_status = 91
    };

    // Network functions (IPMI 2.0, 5.1).
    enum NetFunCode {
        CHASSIS_CMD = 0,
        CHASSIS_REP = 1,
        BRIDGE_CMD = 2,
        BRIDGE_REP = 3,
        SENSER_EVENT_CMD = 4,
        SENSER_EVENT_REP = 5,
        APP_CMD = 6,
        APP_REP = 7,
        FIRMWARE_CMD = 8,
        FIRMWARE_REP = 9,
        STORAGE_CMD = 10,
        STORAGE_REP = 11,
        TRASPORT_CMD = 12,
        TRANPORT_REP = 13,
        OEM_CMD = 48
    };

    enum LUNs { BMC_LUN = 0, OEM_LUN1 = 1, SMS_LUN = 2, OEM_LUN2 = 3 };
    enum BusTypeCode { PUBLIC_BUS = 0 };
    enum DeviceStatus { STATUS_NORMAL = 1, STATUS_ERROR = 2 };
    enum ChannelProtocolType { IPMB_10 = 1 };
    enum channelMediaType { LAN_802_3 = 4 };

    // Does not open the device.
    IPMIbase();

    // Closes the device for all objects and leaves hDevice and InitOK as they are. An object that
    // is created later takes the device for open, and its requests are not answered.
    ~IPMIbase();

    // Returns InitOK: non-zero once a system interface has been found.
    virtual int IsInitOK();

    // Opens the device and looks for a system interface, unless an earlier call found one. Returns
    // -1 when the device cannot be opened or the I/O ports cannot be used. Returns 0 otherwise,
    // also when no interface answers.
    virtual int InitIpmiBase();

    // Sends one request and waits for its response. The driver writes the response to `response`,
    // beginning with the first byte after the completion code. Returns the driver's result, or -1
    // while no system interface has been found. Leaves `responseLength` and `completionCode`
    // untouched.
    int SendTimedImbpRequest(IMBPREQUESTDATA* imbRequest, int timeout, unsigned char* response,
                             int* responseLength, unsigned char* completionCode);

    // Copies at most destinationSize - 1 of the sourceLength bytes and adds a NUL. Returns 0, or -1
    // when a pointer is null.
    int IpmiSrtringCopy(char* destination, char* source, int destinationSize, int sourceLength);

    int ShutDownSystem(int, int);  // declared only: it has no body, and nothing calls it

protected:
    enum { kResponseSize = 256, kBmcAddress = 0x20, kAnyAddress = 0xFF };

    // The steps of a command; not exported. Each step that sends a request returns 0, or -1 when
    // the completion code is not 0. The response is in ResponseBuffer; bytes that the controller
    // did not send are 0.

    // The whole command: test whether the transport is ready (-1 if not), send the request, take
    // the response, free the request's data.
    TALVANE_LOCAL int Exchange(int netFn, int code, int responder,
                               std::initializer_list<unsigned char> data);

    // The same without the test whether the transport is ready.
    TALVANE_LOCAL int ExchangeUnchecked(int netFn, int code, int responder,
                                        std::initializer_list<unsigned char> data);

    // Only the request and its response. On return the request record still points at `data`, which
    // the caller frees.
    TALVANE_LOCAL int Transact(int netFn, int code, int responder, unsigned char* data, int length);

    TALVANE_LOCAL void ClearResponse();

    // A byte or a 16-bit value (low byte first) of the response. Offsets count from 0; bytes past
    // the response buffer read as 0.
    TALVANE_LOCAL unsigned char ResponseByte(unsigned offset) const;
    TALVANE_LOCAL unsigned short ResponseLe16(unsigned offset) const;

    int IsSupportKCS;
    int IsSupportSMIC;
    IMBPREQUESTDATA request;
    unsigned char* ResponseBuffer;  // kResponseSize bytes

private:
    IPMIbase(const IPMIbase&);             // not copyable
    IPMIbase& operator=(const IPMIbase&);  // not assignable
};
static_assert(sizeof(IPMIbase) == 32, "the virtual table, then the members above in this order");

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

#endif
