// SPDX-License-Identifier: MIT
//
// Access to the entries of the four sensor tables, whose types differ only in their names.
#ifndef TALVANE_IPMI_SENSORTABLE_H
#define TALVANE_IPMI_SENSORTABLE_H

#include <iterator>

#include "IPMI/SensorRecords.h"

namespace talvane {

// Entry i, counted from 0. Null outside of the table.
template <class Table>
const SensorDescription* EntryOf(const Table& table, int i) {
    return i >= 0 && i < static_cast<int>(std::size(table.sd)) ? &table.sd[i] : nullptr;
}

}  // namespace talvane

#endif
