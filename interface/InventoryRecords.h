// SPDX-License-Identifier: MIT
//
// Filling the inventory records from the SMBIOS reader: one function per command of GetInfo.
// `record` points at the caller's record of the command's kind. What the reader has no answer for
// stays as the caller gave it.
#ifndef TALVANE_INTERFACE_INVENTORYRECORDS_H
#define TALVANE_INTERFACE_INVENTORYRECORDS_H

class SmBios;

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

#endif
