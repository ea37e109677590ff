// SPDX-License-Identifier: MIT
//
// Opens the IPMI device, probes the ports of the system interfaces, and carries out the steps that
// every command shares. The only file of the IPMI subsystem that touches the machine.

#include "IPMI/IPMIbase.h"

#include <fcntl.h>
#include <sys/io.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "IPMI/RequestData.h"
#include "base/Bytes.h"
#include "base/PortIo.h"

using namespace talvane;

int hDevice = -1;
int InitOK = 0;

namespace {

// The ports of the system interfaces: the KCS status register (IPMI 2.0, 9.5) and the SMIC flags
// register (10.2). A port where no device answers reads all ones.
constexpr std::uint16_t kKcsStatusPort = 0xCA3;
constexpr std::uint16_t kSmicFlagsPort = 0xCAA;
constexpr unsigned char kNoDevice = 0xFF;

constexpr int kRequestTimeOut = 3000;  // milliseconds

// The driver's request "send and wait": read and write, 4 bytes, type 'S', number 1.
constexpr unsigned long kSendMessage = 0xC0045301;

// The argument of kSendMessage, in the layout of a 32-bit kernel and under the driver's own names.
struct ipmi_request_data {
    unsigned char cmd_type;
    unsigned char resp_slave_addr;
    unsigned char bus_type;
    unsigned char net_func;
    unsigned char resp_lun;
    unsigned char* data;
    unsigned data_length;
};
static_assert(sizeof(ipmi_request_data) == 16);
static_assert(offsetof(ipmi_request_data, data) == 8);
static_assert(offsetof(ipmi_request_data, data_length) == 12);

struct ipmi_send_message {
    ipmi_request_data req;
    unsigned timeout;
    unsigned char* resp_data_ptr;
    unsigned resp_data_len;         // left 0; the driver does not use it
    unsigned char completion_code;  // the library does not read it back
};
static_assert(sizeof(ipmi_send_message) == 32);
static_assert(offsetof(ipmi_send_message, timeout) == 16);
static_assert(offsetof(ipmi_send_message, resp_data_ptr) == 20);
static_assert(offsetof(ipmi_send_message, resp_data_len) == 24);
static_assert(offsetof(ipmi_send_message, completion_code) == 28);

}  // namespace

IPMIbase::IPMIbase()
    : IsSupportKCS(0),
      IsSupportSMIC(0),
      request(),
      ResponseBuffer(new unsigned char[kResponseSize]()) {}

IPMIbase::~IPMIbase() {
    if (hDevice >= 0) (void)close(hDevice);  // result not used: nothing was written
    delete[] ResponseBuffer;
}

int IPMIbase::IsInitOK() {
    return InitOK;
}

int IPMIbase::InitIpmiBase() {
    if (InitOK != 0) return 0;
    hDevice = open("/dev/ipmi", O_RDONLY);
    if (hDevice < 0) return -1;
    if (iopl(3) != 0) return -1;
    IsSupportKCS = ReadPort8(kKcsStatusPort) != kNoDevice ? 1 : 0;
    IsSupportSMIC = ReadPort8(kSmicFlagsPort) != kNoDevice ? 1 : 0;
    (void)iopl(0);  // result not used: lowering the level needs no permission
    InitOK = IsSupportKCS != 0 || IsSupportSMIC != 0 ? 1 : 0;
    return 0;
}

int IPMIbase::SendTimedImbpRequest(IMBPREQUESTDATA* imbRequest, int timeout,
                                   unsigned char* response, int*, unsigned char*) {
    if (InitOK == 0) return -1;
    ipmi_send_message message{};
    message.req.cmd_type = imbRequest->cmdType;
    message.req.resp_slave_addr = kAnyAddress;  // Kept: whatever the request says.
    message.req.bus_type = imbRequest->busType;
    message.req.net_func = imbRequest->netFn;
    message.req.resp_lun = imbRequest->rsLun;
    message.req.data = imbRequest->data;
    message.req.data_length = static_cast<unsigned>(imbRequest->dataLength);
    message.timeout = static_cast<unsigned>(timeout);
    message.resp_data_ptr = response;
    return ioctl(hDevice, kSendMessage, &message);
}

int IPMIbase::IpmiSrtringCopy(char* destination, char* source, int destinationSize,
                              int sourceLength) {
    if (destination == nullptr || source == nullptr) return -1;
    if (destinationSize < 1 || sourceLength < 0) return 0;  // no room, or no text
    const int length = std::min(sourceLength, destinationSize - 1);
    std::strncpy(destination, source, static_cast<std::size_t>(length));
    destination[length] = '\0';
    return 0;
}

int IPMIbase::Transact(int netFn, int code, int responder, unsigned char* data, int length) {
    request.cmdType = static_cast<unsigned char>(code);
    request.rsSa = static_cast<unsigned char>(responder);
    request.busType = PUBLIC_BUS;
    request.netFn = static_cast<unsigned char>(netFn);
    request.rsLun = BMC_LUN;
    request.data = data;
    request.dataLength = length;
    ClearResponse();
    unsigned char completion = 0;
    int responseLength = 0;
    // Result not used: when the driver refuses a request, the response stays all zeros.
    (void)SendTimedImbpRequest(&request, kRequestTimeOut, ResponseBuffer, &responseLength,
                               &completion);
    // Kept: the library's transport leaves this byte untouched, an agent's own may write it.
    return completion == 0 ? 0 : -1;
}

void IPMIbase::ClearResponse() {
    std::memset(ResponseBuffer, 0, kResponseSize);
}

unsigned char IPMIbase::ResponseByte(unsigned offset) const {
    return ByteAt(ByteView(ResponseBuffer, kResponseSize), offset);
}

unsigned short IPMIbase::ResponseLe16(unsigned offset) const {
    return Le16(ByteView(ResponseBuffer, kResponseSize), offset);
}

int IPMIbase::ExchangeUnchecked(int netFn, int code, int responder,
                                std::initializer_list<unsigned char> data) {
    const RequestData sent = CopyOf(data);
    const int result = Transact(netFn, code, responder, sent.get(), static_cast<int>(data.size()));
    request.data = nullptr;
    return result;
}

int IPMIbase::Exchange(int netFn, int code, int responder,
                       std::initializer_list<unsigned char> data) {
    if (IsInitOK() == 0) return -1;
    return ExchangeUnchecked(netFn, code, responder, data);
}
