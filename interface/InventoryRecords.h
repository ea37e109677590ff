// SPDX-License-Identifier: MIT
//
// Fills the inventory records from the SMBIOS reader: one function per command of GetInfo that
// needs the structure table. `record` points at the caller's record of the command's kind. A field
// for which the reader has no answer stays as the caller gave it.
#ifndef TALVANE_INTERFACE_INVENTORYRECORDS_H
#define TALVANE_INTERFACE_INVENTORYRECORDS_H

class SmBios;

namespace talvane {

void FillBoard(SmBios& reader, void* record);
void FillProcessors(SmBios& reader, void* record);
void FillMemory(SmBios& reader, void* record);
void FillPorts(SmBios& reader, void* record);
void FillPowerSupplies(SmBios& reader, void* record);
void FillUps(SmBios& reader, void* record);
void FillFans(SmBios& reader, void* record);
void FillVoltages(SmBios& reader, void* record);
void FillTemperatures(SmBios& reader, void* record);
void FillSystem(SmBios& reader, void* record);

}  // namespace talvane

#endif
