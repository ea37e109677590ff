// SPDX-License-Identifier: MIT
//
// The tables of names. The comment after each line is the code of the line's first name.

#include "IPMI/SensorNames.h"

// clang-format off
const char* const SensorsUnit[91] = {
    "unspecified", "degree C", "degree F", "degree K", "V",                            //  0
    "Amps", "Watts", "Joules", "Coulombs", "VA",                                       //  5
    "Nits", "lumen", "lux", "Candela", "kPa",                                          // 10
    "PSI", "Newton", "CFM", "RPM", "Hz",                                               // 15
    "microsecond", "millisecond", "second", "minute", "hour",                          // 20
    "day", "week", "mil", "inches", "feet",                                            // 25
    "cu in", "cu feet", "mm", "cm", "m",                                               // 30
    "cu cm", "cu m", "liters", "fluid ounce", "radians",                               // 35
    "steradians", "revolutions", "cycles", "gravities", "ounce",                       // 40
    "pound", "ft-lb", "oz-in", "gauss", "gilberts",                                    // 45
    "henry", "millihenry", "farad", "microfarad", "ohms",                              // 50
    "siements", "mole", "becquerel", "PPM", "reserved",                                // 55
    "Decibels", "DbA", "DbC", "gray", "sievert",                                       // 60
    "color temp deg K", "bit", "kliobit", "megabit", "gigabit",                        // 65
    "byte", "kilobyte", "megabyte", "gigabyte", "word",                                // 70
    "dword", "qword", "line", "hit", "miss",                                           // 75
    "retry", "reset", "overrun/overflow", "underrun", "collision",                     // 80
    "packets", "messages", "characters", "error", "correctable error",                 // 85
    "uncorrectable error",                                                             // 90
};

const char* const SensorsType[42] = {
    "reserved", "Temperature", "Voltage", "Current", "Fan",                            //  0
    "Physical Security", "Platform Security Violation Attempt", "Processor",           //  5
    "Power Supply", "Power Unit",                                                      //  8
    "Cooling Device", "other Units-based Sensor", "Memory", "Drive Slot",              // 10
    "POST Memory Resize",                                                              // 14
    "System Firmware Progress", "Event Logging Disabled", "Watchdog1", "System Event", // 15
    "Critical Interrupt",                                                              // 19
    "Button", "Module/Board", "Microcontroller/Coprocessor", "Add-in Card", "Chassis", // 20
    "Chip Set", "Other FRU", "Cable/Interconnect", "Terminator",                       // 25
    "System Boot Initiated",                                                           // 29
    "Boot Error", "OS Boot", "OS Critical Stop", "Slot/Connector",                     // 30
    "System ACPI Power State",                                                         // 34
    "Watchdog2", "Platform Alert", "Entity Presence", "Monitor ASIC/IC", "LAN",        // 35
    "Management Subsystem Health", "Battery",                                          // 40
};

const char* const SensorsEntityID[41] = {
    "unspecified", "other", "Unknown", "processor", "disk/disk bay",                   //  0
    "periphereral bay", "system management module", "system board",                    //  5
    "memory module", "processor module",                                               //  8
    "power supply", "add-in card", "front panel board", "back panel board",            // 10
    "power system board",                                                              // 14
    "drive backplane", "system internal expansion board", "other system board",        // 15
    "processor board", "power unit/power domain",                                      // 18
    "power module/DC-to-DC converter", "power management/power distribution board",    // 20
    "chassis back panel board", "system chassis", "sub-chassis",                       // 22
    "other chassis board", "Disk Drive Bay", "Peripheral Bay", "Device Bay",           // 25
    "fan/cooling device",                                                              // 29
    "cooling unit", "cable/interconnect", "memory device",                             // 30
    "System Management Software", "BIOS",                                              // 33
    "Operating System", "system bus", "Group",                                         // 35
    "Remote Management Communication Device", "External Environment", "battery",       // 38
};
// clang-format on
