// SPDX-License-Identifier: MIT
//
// Permission to use I/O ports: an object has it from the kernel for as long as it lives.
#ifndef TALVANE_PCI_IOPRIVILEGE_H
#define TALVANE_PCI_IOPRIVILEGE_H

namespace talvane {

// Raises the I/O privilege level to 3. Sets it to 0 at the end, even when raising it was refused.
class IoPrivilege {
public:
    IoPrivilege();
    ~IoPrivilege();
    IoPrivilege(const IoPrivilege&) = delete;
    IoPrivilege& operator=(const IoPrivilege&) = delete;

    [[nodiscard]] bool IsRaised() const { return raised_; }

private:
    bool raised_;
};

}  // namespace talvane

#endif
