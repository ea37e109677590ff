// SPDX-License-Identifier: MIT
//
// Names of what a PCI function is, by the three bytes of its class code register.
#ifndef TALVANE_PCI_SUBCLASSNAME_H
#define TALVANE_PCI_SUBCLASSNAME_H

struct PciClass {
    unsigned char classCode;
    unsigned char subClass;
    unsigned char progIf;
};

// The name of the sub-class, or null when there is none for it.
[[nodiscard]] const char* SubClassName(const PciClass& function);

#endif
