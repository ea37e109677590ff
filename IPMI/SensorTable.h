// SPDX-License-Identifier: MIT
//
// Entries of the sensor tables, which differ in their type's name only.
#ifndef TALVANE_IPMI_SENSORTABLE_H
#define TALVANE_IPMI_SENSORTABLE_H

#include <iterator>

#include "IPMI/SensorRecords.h"

// Entry i, counted from 0; null outside of the table.
template <class Table>
const SensorDescription* EntryOf(const Table& table, int i) {
    return i >= 0 && i < static_cast<int>(std::size(table.sd)) ? &table.sd[i] : nullptr;
}

#endif
