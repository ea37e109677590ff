// SPDX-License-Identifier: MIT

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

// A text that can run on into the fields behind its own, up to the end of the element at `last`.
std::string RunningText(const char* first, const char* last) {
    return std::string(first, std::find(first, last, '\0'));
}

class Asker {
public:
    explicit Asker(Answers& answers) : answers_(answers) {}

    template <class Record>
    void ask(const char* name, unsigned long command, Record& record) {
        set(std::string(name) + ".result", GetInfo(command, &record));
    }

    void set(const std::string& name, int value) { answers_[name] = std::to_string(value); }
    void set(const std::string& name, const std::string& value) { answers_[name] = value; }

private:
    Answers& answers_;
};

std::string At(const char* array, int number) {
    return std::string(array) + "[" + std::to_string(number) + "].";
}

void AskBoardAndSystem(Asker& asker) {
    BaseBoardInformation board{};
    asker.ask("board", TALVANE_BOARD, board);
    asker.set("board.ProductName", Text(board.ProductName));
    asker.set("board.RomVersion", Text(board.RomVersion));
    asker.set("board.RomReleaseDate", Text(board.RomReleaseDate));
    asker.set("board.RomVendor", Text(board.RomVendor));
    asker.set("board.SerialNo", Text(board.SerialNo));
    asker.set("board.AssetTag", Text(board.AssetTag));
    asker.set("board.Manufacturer", Text(board.Manufacturer));
    asker.set("board.RevisionLevel", Text(board.RevisionLevel));

    SysInformation system{};
    asker.ask("system", TALVANE_SYSTEM, system);
    asker.set("system.SysProductName", Text(system.SysProductName));
    asker.set("system.manufacturer", Text(system.manufacturer));
    asker.set("system.version", Text(system.version));
}

void AskProcessors(Asker& asker) {
    LongProcessors record{};
    asker.ask("processors", TALVANE_PROCESSORS, record);
    asker.set("processors.quantity", record.quantity);
    for (int i = 0; i < std::min(record.quantity, LongProcessors::kRoom); ++i) {
        const CPU& cpu = record.cpu[i];
        const std::string prefix = At("cpu", i + 1);
        asker.set(prefix + "family", Text(cpu.family));
        asker.set(prefix + "stepping", Text(cpu.stepping));
        asker.set(prefix + "MaxSpeed", Text(cpu.MaxSpeed));
        asker.set(prefix + "CurrentSpeed", Text(cpu.CurrentSpeed));
        asker.set(prefix + "ExternalClock", Text(cpu.ExternalClock));
        asker.set(prefix + "manufacturer", Text(cpu.manufacturer));
        asker.set(prefix + "UsageRate", Text(cpu.UsageRate));
        asker.set(prefix + "IsUHT", cpu.IsUHT);
        asker.set(prefix + "IsDisabled", cpu.IsDisabled);
        for (int level = 0; level < 3; ++level) {
            const CACHE& cache = cpu.cache[level];
            const std::string cachePrefix = prefix + At("cache", level + 1);
            asker.set(cachePrefix + "MaxSize", Text(cache.MaxSize));
            asker.set(cachePrefix + "InstalledSize", Text(cache.InstalledSize));
            asker.set(cachePrefix + "speed", Text(cache.speed));
            asker.set(cachePrefix + "designation", Text(cache.designation));
        }
    }
}

void AskMemory(Asker& asker) {
    MemoryInformation record{};
    asker.ask("memory", TALVANE_MEMORY, record);
    asker.set("memory.TotalSize", record.TotalSize);
    asker.set("memory.quantity", record.quantity);
    for (int i = 0; i < 16; ++i) {
        const BANK& bank = record.bank[i];
        const std::string prefix = At("bank", i + 1);
        asker.set(prefix + "size", Text(bank.size));
        asker.set(prefix + "speed", Text(bank.speed));
        asker.set(prefix + "type", Text(bank.type));
        asker.set(prefix + "TypeDetail", Text(bank.TypeDetail));
        asker.set(prefix + "manufacturer", Text(bank.manufacturer));
        asker.set(prefix + "SlotNumber", bank.SlotNumber);
    }
}

void AskPorts(Asker& asker) {
    LongPorts record{};
    asker.ask("ports", TALVANE_PORTS, record);
    asker.set("ports.quantity", record.quantity);
    for (int i = 0; i < std::min(record.quantity, LongPorts::kRoom); ++i) {
        asker.set(At("port", i + 1) + "type", Text(record.port[i].type));
        asker.set(At("port", i + 1) + "description", Text(record.port[i].description));
    }
}

void AskSupplies(Asker& asker, const char* name, const char* element, unsigned long command) {
    LongPower record{};
    asker.ask(name, command, record);
    asker.set(std::string(name) + ".TotalNumber", record.TotalNumber);
    asker.set(std::string(name) + ".RedundantNumber", record.RedundantNumber);
    for (int i = 0; i < std::min(record.TotalNumber, LongPower::kRoom); ++i) {
        const SYS_POWER& supply = record.PowerSupply[i];
        const std::string prefix = At(element, i + 1);
        asker.set(prefix + "manufacturer", Text(supply.manufacturer));
        asker.set(prefix + "ProductName", Text(supply.ProductName));
        asker.set(prefix + "DeviceName", Text(supply.DeviceName));
        asker.set(prefix + "ProductVersion", Text(supply.ProductVersion));
        asker.set(prefix + "SerialNo", Text(supply.SerialNo));
        asker.set(prefix + "status", RunningText(supply.status, std::end(supply.BiosEnable)));
    }
}

void AskFans(Asker& asker) {
    LongFans record{};
    asker.ask("fans", TALVANE_FANS, record);
    asker.set("fans.quantity", record.quantity);
    for (int i = 0; i < std::min(record.quantity, LongFans::kRoom); ++i) {
        const FAN_DEVICE& fan = record.fan[i];
        asker.set(At("fan", i + 1) + "speed", RunningText(fan.speed, std::end(fan.max)));
        asker.set(At("fan", i + 1) + "IdString", Text(fan.IdString));
    }
}

void AskProbes(Asker& asker) {
    VoltageInformation voltages{};
    asker.ask("voltages", TALVANE_VOLTAGES, voltages);
    asker.set("voltages.quantity", voltages.quantity);
    asker.set("voltages.CurrentVoltage", Text(voltages.voltage[0].CurrentVoltage));
    asker.set("voltages.max", Text(voltages.voltage[0].max));
    asker.set("voltages.min", Text(voltages.voltage[0].min));

    TemperatureInformation temperatures{};
    asker.ask("temperatures", TALVANE_TEMPERATURES, temperatures);
    asker.set("temperatures.quantity", temperatures.quantity);
    asker.set("temperatures.CurrentTemperature",
              Text(temperatures.temperature[0].CurrentTemperature));
}

}  // namespace

Answers AskEverything() {
    Answers answers;
    Asker asker(answers);
    release();
    asker.set("IsSmBiosSupport", IsSmBiosSupport());
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
