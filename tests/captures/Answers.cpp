// SPDX-License-Identifier: MIT
//
// Asks every command once and names each field of its record.

#include "Answers.h"

#include <algorithm>
#include <cstring>

#include "Talvane.h"
#include "captures/LongRecords.h"

namespace captures {

namespace {

// A text field; it need not be terminated when it is full.
template <std::size_t N>
std::string Text(const char (&field)[N]) {
    return std::string(field, std::find(field, field + N, '\0'));
}

// A text that can run on into the fields after its own, up to the end of the element at `last`.
std::string RunningText(const char* first, const char* last) {
    return std::string(first, std::find(first, last, '\0'));
}

class Asker {
public:
    explicit Asker(Answers& answers) : answers_(answers) {}

    template <class Record>
    void Ask(const char* name, unsigned long command, Record& record) {
        Set(std::string(name) + ".result", GetInfo(command, &record));
    }

    void Set(const std::string& name, int value) { answers_[name] = std::to_string(value); }
    void Set(const std::string& name, const std::string& value) { answers_[name] = value; }

private:
    Answers& answers_;
};

std::string At(const char* array, int number) {
    return std::string(array) + "[" + std::to_string(number) + "].";
}

void AskBoardAndSystem(Asker& asker) {
    BaseBoardInformation board{};
    asker.Ask("board", TALVANE_BOARD, board);
    asker.Set("board.ProductName", Text(board.ProductName));
    asker.Set("board.RomVersion", Text(board.RomVersion));
    asker.Set("board.RomReleaseDate", Text(board.RomReleaseDate));
    asker.Set("board.RomVendor", Text(board.RomVendor));
    asker.Set("board.SerialNo", Text(board.SerialNo));
    asker.Set("board.AssetTag", Text(board.AssetTag));
    asker.Set("board.Manufacturer", Text(board.Manufacturer));
    asker.Set("board.RevisionLevel", Text(board.RevisionLevel));

    SysInformation system{};
    asker.Ask("system", TALVANE_SYSTEM, system);
    asker.Set("system.SysProductName", Text(system.SysProductName));
    asker.Set("system.manufacturer", Text(system.manufacturer));
    asker.Set("system.version", Text(system.version));
}

void AskProcessors(Asker& asker) {
    LongProcessors record{};
    asker.Ask("processors", TALVANE_PROCESSORS, record);
    asker.Set("processors.quantity", record.quantity);
    for (int i = 0; i < std::min(record.quantity, LongProcessors::kRoom); ++i) {
        const CPU& cpu = record.cpu[i];
        const std::string prefix = At("cpu", i + 1);
        asker.Set(prefix + "family", Text(cpu.family));
        asker.Set(prefix + "stepping", Text(cpu.stepping));
        asker.Set(prefix + "MaxSpeed", Text(cpu.MaxSpeed));
        asker.Set(prefix + "CurrentSpeed", Text(cpu.CurrentSpeed));
        asker.Set(prefix + "ExternalClock", Text(cpu.ExternalClock));
        asker.Set(prefix + "manufacturer", Text(cpu.manufacturer));
        asker.Set(prefix + "UsageRate", Text(cpu.UsageRate));
        asker.Set(prefix + "IsUHT", cpu.IsUHT);
        asker.Set(prefix + "IsDisabled", cpu.IsDisabled);
        for (int level = 0; level < 3; ++level) {
            const CACHE& cache = cpu.cache[level];
            const std::string cachePrefix = prefix + At("cache", level + 1);
            asker.Set(cachePrefix + "MaxSize", Text(cache.MaxSize));
            asker.Set(cachePrefix + "InstalledSize", Text(cache.InstalledSize));
            asker.Set(cachePrefix + "speed", Text(cache.speed));
            asker.Set(cachePrefix + "designation", Text(cache.designation));
        }
    }
}

void AskMemory(Asker& asker) {
    MemoryInformation record{};
    asker.Ask("memory", TALVANE_MEMORY, record);
    asker.Set("memory.TotalSize", record.TotalSize);
    asker.Set("memory.quantity", record.quantity);
    for (int i = 0; i < 16; ++i) {
        const BANK& bank = record.bank[i];
        const std::string prefix = At("bank", i + 1);
        asker.Set(prefix + "size", Text(bank.size));
        asker.Set(prefix + "speed", Text(bank.speed));
        asker.Set(prefix + "type", Text(bank.type));
        asker.Set(prefix + "TypeDetail", Text(bank.TypeDetail));
        asker.Set(prefix + "manufacturer", Text(bank.manufacturer));
        asker.Set(prefix + "SlotNumber", bank.SlotNumber);
    }
}

void AskPorts(Asker& asker) {
    LongPorts record{};
    asker.Ask("ports", TALVANE_PORTS, record);
    asker.Set("ports.quantity", record.quantity);
    for (int i = 0; i < std::min(record.quantity, LongPorts::kRoom); ++i) {
        asker.Set(At("port", i + 1) + "type", Text(record.port[i].type));
        asker.Set(At("port", i + 1) + "description", Text(record.port[i].description));
    }
}

void AskSupplies(Asker& asker, const char* name, const char* element, unsigned long command) {
    LongPower record{};
    asker.Ask(name, command, record);
    asker.Set(std::string(name) + ".TotalNumber", record.TotalNumber);
    asker.Set(std::string(name) + ".RedundantNumber", record.RedundantNumber);
    for (int i = 0; i < std::min(record.TotalNumber, LongPower::kRoom); ++i) {
        const SYS_POWER& supply = record.PowerSupply[i];
        const std::string prefix = At(element, i + 1);
        asker.Set(prefix + "manufacturer", Text(supply.manufacturer));
        asker.Set(prefix + "ProductName", Text(supply.ProductName));
        asker.Set(prefix + "DeviceName", Text(supply.DeviceName));
        asker.Set(prefix + "ProductVersion", Text(supply.ProductVersion));
        asker.Set(prefix + "SerialNo", Text(supply.SerialNo));
        asker.Set(prefix + "status", RunningText(supply.status, std::end(supply.BiosEnable)));
    }
}

void AskFans(Asker& asker) {
    LongFans record{};
    asker.Ask("fans", TALVANE_FANS, record);
    asker.Set("fans.quantity", record.quantity);
    for (int i = 0; i < std::min(record.quantity, LongFans::kRoom); ++i) {
        const FAN_DEVICE& fan = record.fan[i];
        asker.Set(At("fan", i + 1) + "speed", RunningText(fan.speed, std::end(fan.max)));
        asker.Set(At("fan", i + 1) + "IdString", Text(fan.IdString));
    }
}

void AskProbes(Asker& asker) {
    VoltageInformation voltages{};
    asker.Ask("voltages", TALVANE_VOLTAGES, voltages);
    asker.Set("voltages.quantity", voltages.quantity);
    asker.Set("voltages.CurrentVoltage", Text(voltages.voltage[0].CurrentVoltage));
    asker.Set("voltages.max", Text(voltages.voltage[0].max));
    asker.Set("voltages.min", Text(voltages.voltage[0].min));

    TemperatureInformation temperatures{};
    asker.Ask("temperatures", TALVANE_TEMPERATURES, temperatures);
    asker.Set("temperatures.quantity", temperatures.quantity);
    asker.Set("temperatures.CurrentTemperature",
              Text(temperatures.temperature[0].CurrentTemperature));
}

}  // namespace

Answers AskEverything() {
    Answers answers;
    Asker asker(answers);
    release();
    asker.Set("IsSmBiosSupport", IsSmBiosSupport());
    AskBoardAndSystem(asker);
    AskProcessors(asker);
    AskMemory(asker);
    AskPorts(asker);
    AskSupplies(asker, "power", "supply", TALVANE_POWER);
    AskSupplies(asker, "ups", "ups", TALVANE_UPS);
    AskFans(asker);
    AskProbes(asker);
    release();
    return answers;
}

}  // namespace captures
