// SPDX-License-Identifier: MIT
//
// A flag that one thread raises and another one polls for, beside other descriptors.
#ifndef TALVANE_TRANSPORT_FLAG_H
#define TALVANE_TRANSPORT_FLAG_H

#include <atomic>

namespace transport {

class Flag {
public:
    // Throws std::system_error when the process can have no more descriptors.
    Flag();
    ~Flag();
    Flag(const Flag&) = delete;
    Flag& operator=(const Flag&) = delete;

    void Raise();
    void Lower();

    [[nodiscard]] bool IsRaised() const { return raised_; }
    // Readable while the flag is raised.
    [[nodiscard]] int Descriptor() const { return descriptor_; }

private:
    std::atomic<bool> raised_ = false;
    int descriptor_;
};

}  // namespace transport

#endif
