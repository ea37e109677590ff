// SPDX-License-Identifier: MIT
//
// The request as the library's transport takes it.

#include "tools/library/BmcMessage.h"

namespace tool {

void Send(IPMIbase& transport, BmcMessage message, AnswerBuffer& answer) {
    constexpr int kTimeoutMilliseconds = 3000;
    IMBPREQUESTDATA request{static_cast<unsigned char>(message.command),
                            0,  // the transport fills the responder in
                            IPMIbase::PUBLIC_BUS,
                            static_cast<unsigned char>(message.netFunction),
                            static_cast<unsigned char>(message.lun),
                            message.data.data(),
                            static_cast<int>(message.data.size())};
    int length = 0;
    unsigned char completion = 0;
    // Results not used: what has not arrived is seen in the answer.
    (void)transport.SendTimedImbpRequest(&request, kTimeoutMilliseconds, answer.data(), &length,
                                         &completion);
}

}  // namespace tool
