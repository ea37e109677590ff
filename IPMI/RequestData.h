// SPDX-License-Identifier: MIT
//
// The data bytes of a request, owned by the command that sends it. The request record only points
// at them: a call from within the request may make the record point at its own data.
#ifndef TALVANE_IPMI_REQUESTDATA_H
#define TALVANE_IPMI_REQUESTDATA_H

#include <algorithm>
#include <initializer_list>
#include <memory>

namespace talvane {

using RequestData = std::unique_ptr<unsigned char[]>;

// Null when there are no bytes.
inline RequestData CopyOf(std::initializer_list<unsigned char> bytes) {
    if (bytes.size() == 0) return nullptr;
    RequestData copy(new unsigned char[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), copy.get());
    return copy;
}

}  // namespace talvane

#endif
