// SPDX-License-Identifier: MIT
//
// Channels, users and LAN configuration of the controller.

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <utility>

#include "IPMI/IPMIsupport.h"
#include "IPMI/RequestData.h"

using namespace talvane;

namespace {

// Parameters of a LAN channel (IPMI 2.0, 23.2, table 23-4).
constexpr unsigned char kSetInProgress = 0;
constexpr unsigned char kAddress = 3;
constexpr unsigned char kAddressSource = 4;
constexpr unsigned char kMacAddress = 5;
constexpr unsigned char kSubnetMask = 6;
constexpr unsigned char kIpv4Header = 7;
constexpr unsigned char kPrimaryPort = 8;
constexpr unsigned char kSecondaryPort = 9;
constexpr unsigned char kArpControl = 10;
constexpr unsigned char kArpInterval = 11;

constexpr unsigned char kComplete = 0;
constexpr unsigned char kInProgress = 1;
constexpr unsigned char kCommit = 2;

constexpr unsigned char kSetByFirmware = 3;
constexpr unsigned char kTimeToLive = 0x40;
constexpr unsigned char kDontFragment = 0x40;
constexpr unsigned char kTypeOfService = 0x10;
constexpr unsigned char kGratuitousArp = 0x01;
constexpr unsigned char kTwoSeconds = 4;  // of 500 milliseconds each

}  // namespace

int IPMIsupport::GetChannelInfo(unsigned char channelNum, ChannelInfo* pCI) {
    if (pCI == nullptr) return -1;
    if (Exchange(APP_CMD, Get_channel_info, kBmcAddress, {channelNum}) != 0) return -1;
    pCI->channelNumber = channelNum;  // Kept: not the number in the response.
    pCI->channelMediatype = ResponseBuffer[1];
    pCI->channelProtocoltype = ResponseBuffer[2];
    return 0;
}

int IPMIsupport::GetLANChannelInfo(ChannelInfo* pCI) {
    if (pCI == nullptr) return -1;
    constexpr unsigned char kFirst = 1;
    constexpr unsigned char kLast = 7;
    ChannelInfo channel{};
    for (unsigned char number = kFirst; number <= kLast; ++number) {
        if (GetChannelInfo(number, &channel) != 0) return -1;
        if (channel.channelMediatype == LAN_802_3) break;
    }
    *pCI = channel;
    return 0;
}

int IPMIsupport::SetUserInfo(unsigned char userID, const char* userName, const char* passward) {
    if (userName == nullptr || passward != nullptr || IsInitOK() == 0) return -1;
    constexpr std::size_t kLongestName = 16;
    constexpr int kLength = 1 + kLongestName;
    // One byte more than is sent: the password's place starts a byte later than the name's.
    RequestData user = std::make_unique<unsigned char[]>(kLength + 1);
    user[0] = userID;
    std::memcpy(&user[1], userName, std::min(std::strlen(userName), kLongestName));
    // Kept: the name goes out under the code of another command.
    int result = Transact(APP_CMD, Get_channel_info, kBmcAddress, user.get(), kLength);
    if (result == 0) {
        // Kept: the operation byte behind the user is 0, and the password, which is empty here,
        // leaves the others zero.
        std::fill_n(user.get(), kLength, static_cast<unsigned char>(0));
        user[0] = userID;
        result = Transact(APP_CMD, Set_user_passwd, kBmcAddress, user.get(), kLength);
    }
    return Settled(result, std::move(user), request.data);
}

int IPMIsupport::SetLANParameter(LANParameter lp) {
    if (IsInitOK() == 0) return -1;
    const unsigned char channel = lp.channelNumber;
    const unsigned char* const ip = lp.IPAddress;
    const unsigned char* const mac = lp.MACAddress;
    const unsigned char* const mask = lp.SubnetMask;
    const auto set = [this](std::initializer_list<unsigned char> data) {
        return Request(TRASPORT_CMD, Set_LAN_parameter, data) == 0;
    };
    const bool accepted =
        set({channel, kSetInProgress, kInProgress}) &&
        set({channel, kAddress, ip[0], ip[1], ip[2], ip[3]}) &&
        set({channel, kAddressSource, kSetByFirmware}) &&
        set({channel, kMacAddress, mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]}) &&
        set({channel, kSubnetMask, mask[0], mask[1], mask[2], mask[3]}) &&
        set({channel, kIpv4Header, kTimeToLive, kDontFragment, kTypeOfService}) &&
        set({channel, kPrimaryPort, 0x6F, 0x02}) &&    // 623
        set({channel, kSecondaryPort, 0x98, 0x02}) &&  // 664
        set({channel, kArpControl, kGratuitousArp}) && set({channel, kArpInterval, kTwoSeconds}) &&
        set({channel, kSetInProgress, kCommit}) && set({channel, kSetInProgress, kComplete});
    return accepted ? 0 : -1;
}
