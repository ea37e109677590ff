// SPDX-License-Identifier: MIT
//
// The machine's parts as metrics: what they are as information metrics, sizes and speeds in bytes
// and hertz.
#ifndef TALVANE_TOOLS_METRICS_INVENTORYMETRICS_H
#define TALVANE_TOOLS_METRICS_INVENTORYMETRICS_H

#include "tools/library/IdeDrives.h"
#include "tools/metrics/MetricPage.h"
#include "tools/records/Bmc.h"
#include "tools/records/Board.h"
#include "tools/records/Memory.h"
#include "tools/records/Partitions.h"
#include "tools/records/Pci.h"
#include "tools/records/Power.h"
#include "tools/records/Processors.h"
#include "tools/records/System.h"

namespace tool {

// Parts that can be several of a kind are numbered from 1, as in the text output. A size or a speed
// that the firmware does not know is left out.
void AddInventory(MetricPage& page, const System& system);
void AddInventory(MetricPage& page, const Board& board);
void AddInventory(MetricPage& page, const Bmc& bmc);
void AddInventory(MetricPage& page, const Processors& processors);
void AddInventory(MetricPage& page, const Memory& memory);
void AddInventory(MetricPage& page, const Power& power);
void AddInventory(MetricPage& page, const PciFunctions& functions);
void AddInventory(MetricPage& page, const Drives& drives);
void AddInventory(MetricPage& page, const Partitions& partitions);

}  // namespace tool

#endif
