// SPDX-License-Identifier: MIT
//
// Permission to use I/O ports, asked of the kernel for as long as an object lives.
#ifndef TALVANE_PCI_IOPRIVILEGE_H
#define TALVANE_PCI_IOPRIVILEGE_H

// Raises the I/O privilege level to 3 and sets it to 0 on every way out, also when raising it was
// refused.
class IoPrivilege {
public:
    IoPrivilege();
    ~IoPrivilege();
    IoPrivilege(const IoPrivilege&) = delete;
    IoPrivilege& operator=(const IoPrivilege&) = delete;

    [[nodiscard]] bool IsRaised() const { return raised; }

private:
    bool raised;
};

#endif
