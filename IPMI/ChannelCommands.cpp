// SPDX-License-Identifier: MIT
//
// The channels, the users and the LAN configuration of the controller.

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "IPMI/IPMIsupport.h"
#include "IPMI/RequestData.h"
#include "IPMI/Responses.h"
#include "base/Bytes.h"

using namespace talvane;

namespace {

// Parameters of a LAN channel and their values (IPMI 2.0, 23.2, table 23-4).
struct LanParameterCode {
    static constexpr unsigned char kSetInProgress = 0;
    static constexpr unsigned char kAddress = 3;
    static constexpr unsigned char kAddressSource = 4;
    static constexpr unsigned char kMacAddress = 5;
    static constexpr unsigned char kSubnetMask = 6;
    static constexpr unsigned char kIpv4Header = 7;
    static constexpr unsigned char kPrimaryPort = 8;
    static constexpr unsigned char kSecondaryPort = 9;
    static constexpr unsigned char kArpControl = 10;
    static constexpr unsigned char kArpInterval = 11;
};

constexpr unsigned char kSetComplete = 0;
constexpr unsigned char kSetStarted = 1;
constexpr unsigned char kSetCommitted = 2;

constexpr unsigned char kSourceIsSystemSoftware = 3;
constexpr unsigned char kTimeToLive = 0x40;
constexpr unsigned char kDontFragment = 0x40;
constexpr unsigned char kTypeOfService = 0x10;
constexpr int kPrimaryRmcpPort = 623;
constexpr int kSecondaryRmcpPort = 664;
constexpr unsigned char kGratuitousArp = 0x01;
constexpr unsigned char kTwoSeconds = 4;  // times 500 milliseconds

}  // namespace

int IPMIsupport::GetChannelInfo(unsigned char channelNum, ChannelInfo* pCI) {
    if (pCI == nullptr) return -1;
    if (Exchange(APP_CMD, Get_channel_info, kBmcAddress, {channelNum}) != 0) return -1;
    pCI->channelNumber = channelNum;  // Kept: not the number in the response.
    pCI->channelMediatype = ResponseByte(ChannelInfoResponse::kMedium);
    pCI->channelProtocoltype = ResponseByte(ChannelInfoResponse::kProtocol);
    return 0;
}

int IPMIsupport::GetLANChannelInfo(ChannelInfo* pCI) {
    if (pCI == nullptr) return -1;
    constexpr unsigned char kFirstChannel = 1;
    constexpr unsigned char kLastChannel = 7;
    ChannelInfo channel{};
    for (unsigned char number = kFirstChannel; number <= kLastChannel; ++number) {
        if (GetChannelInfo(number, &channel) != 0) return -1;
        if (channel.channelMediatype == LAN_802_3) break;
    }
    *pCI = channel;
    return 0;
}

int IPMIsupport::SetUserInfo(unsigned char userID, const char* userName, const char* passward) {
    if (userName == nullptr || passward != nullptr || IsInitOK() == 0) return -1;
    constexpr std::size_t kMaxName = 16;
    constexpr int kLength = 1 + kMaxName;
    // One byte more than is sent: the place of the password begins one byte after that of the name.
    RequestData user = std::make_unique<unsigned char[]>(kLength + 1);
    user[0] = userID;
    std::memcpy(&user[1], userName, std::min(std::strlen(userName), kMaxName));
    // Kept: the name is sent with the code of another command.
    int result = Transact(APP_CMD, Get_channel_info, kBmcAddress, user.get(), kLength);
    if (result == 0) {
        // Kept: the byte after the user, which states the operation, is 0. The password is empty,
        // so the other bytes are 0, too.
        std::fill_n(user.get(), kLength, static_cast<unsigned char>(0));
        user[0] = userID;
        result = Transact(APP_CMD, Set_user_passwd, kBmcAddress, user.get(), kLength);
    }
    return FinishSetting(result, std::move(user));
}

int IPMIsupport::SetLANParameter(LANParameter lp) {
    using Code = LanParameterCode;
    if (IsInitOK() == 0) return -1;
    const unsigned char channel = lp.channelNumber;
    const unsigned char* const ip = lp.IPAddress;
    const unsigned char* const mac = lp.MACAddress;
    const unsigned char* const mask = lp.SubnetMask;
    const auto set = [this](std::initializer_list<unsigned char> data) {
        return SendSetting(TRASPORT_CMD, Set_LAN_parameter, data) == 0;
    };
    const bool accepted =
        set({channel, Code::kSetInProgress, kSetStarted}) &&
        set({channel, Code::kAddress, ip[0], ip[1], ip[2], ip[3]}) &&
        set({channel, Code::kAddressSource, kSourceIsSystemSoftware}) &&
        set({channel, Code::kMacAddress, mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]}) &&
        set({channel, Code::kSubnetMask, mask[0], mask[1], mask[2], mask[3]}) &&
        set({channel, Code::kIpv4Header, kTimeToLive, kDontFragment, kTypeOfService}) &&
        set({channel, Code::kPrimaryPort, LowByte(kPrimaryRmcpPort), HighByte(kPrimaryRmcpPort)}) &&
        set({channel, Code::kSecondaryPort, LowByte(kSecondaryRmcpPort),
             HighByte(kSecondaryRmcpPort)}) &&
        set({channel, Code::kArpControl, kGratuitousArp}) &&
        set({channel, Code::kArpInterval, kTwoSeconds}) &&
        set({channel, Code::kSetInProgress, kSetCommitted}) &&
        set({channel, Code::kSetInProgress, kSetComplete});
    return accepted ? 0 : -1;
}
