// SPDX-License-Identifier: MIT
//
// Whether each call of a private member of the reader compiles where this header is included: never
// for an agent, always with the members open. The tests ask both ways, so that a misspelt name
// cannot pass for a private one.
#ifndef TALVANE_TESTS_SMBIOS_PRIVATECALLS_H
#define TALVANE_TESTS_SMBIOS_PRIVATECALLS_H

namespace {

// One call a line.
// clang-format off
template <class Reader>
constexpr bool kPrivateCalls[] = {
    requires(Reader r) { r.GetItem(1, 1); },
    requires(Reader r, char* s) { r.trim(s); },
    requires(Reader r, char* s) { r.GetCacheDesignationPrivate(1u, s, 1u); },
    requires(Reader r, char* s) { r.GetCacheMaxSizePrivate(1u, s); },
    requires(Reader r, char* s) { r.GetCacheInstalledSizePrivate(1u, s); },
    requires(Reader r, char* s) { r.GetCacheSpeedPrivate(1u, s); },
    requires(Reader r) { r.ExistMemCtl(); },
    requires(Reader r) { r.ExistMemModule(); },
    requires(Reader r) { r.ExistMemDev(); },
    requires(Reader r) { r.GetValidMemModuleHandle(1); },
    requires(Reader r) { r.GetMemModuleQuantity(); },
    requires(Reader r, char* s) { r.GetMemModuleSize(1, s); },
    requires(Reader r, char* s) { r.GetMemModuleSpeed(1, s); },
    requires(Reader r, char* s) { r.GetMemModuleType(1, s); },
    requires(Reader r) { r.GetMemBankConnector(1); },
    requires(Reader r, char* s) { r.GetMemModuleLocate(1, s, 1u); },
    requires(Reader r, char* s) { r.GetProperMemDev(s); },
    requires(Reader r, char* s) { r.GetMemDevManufacturer(1, s, 1u); },
    requires(Reader r, char* s) { r.GetMemDevSpeed(1, s); },
    requires(Reader r, char* s) { r.GetMemDevSize(1, s); },
    requires(Reader r) { r.GetMemDevSize(1); },
    requires(Reader r, char* s) { r.GetMemDevType(1, s); },
    requires(Reader r, char* s) { r.GetMemDevTypeDetail(1, s); },
    requires(Reader r, char* s) { r.GetMemDevLocator(1, s, 1u); },
};
// clang-format on

}  // namespace

#endif
