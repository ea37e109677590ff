// SPDX-License-Identifier: MIT
//
// Names of the kinds of PCI functions, by the three bytes of the class code register.
#ifndef TALVANE_PCI_SUBCLASSNAME_H
#define TALVANE_PCI_SUBCLASSNAME_H

namespace talvane {

struct PciClass {
    unsigned char classCode;
    unsigned char subClass;
    unsigned char progIf;
};

// The name of the sub-class, or null when it has none.
[[nodiscard]] const char* SubClassName(const PciClass& function);

}  // namespace talvane

#endif
