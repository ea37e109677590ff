// SPDX-License-Identifier: MIT
//
// GetInfo and IsSmBiosSupport while each call of the machine fails in turn.
#include <filesystem>

#include "Talvane.h"
#include "captures/HostileServer.h"
#include "captures/LongRecords.h"
#include "faults/SweepTest.h"
#include "simulator/machine/IdeDrive.h"

namespace faults {
namespace {

// The calls by which the reader is made: the object, the BIOS segment, the table and the memory
// around it are allocated in this order.
constexpr int kReaderAllocations = 4;
constexpr int kReaderSeeks = 2;

bool Strikes(const Fault& fault, int nth) {
    return fault.nth == nth || (fault.IsForEver() && fault.nth < nth);
}

// What a command of the structure table answers: -1 when the reader could not be made.
bool TableCommandMayAnswer(const Fault& fault, int result) {
    if (fault.Is(kAllocation)) {
        if (fault.nth == 1) return result == kThrew;
        return result == -1 && fault.nth <= kReaderAllocations;
    }
    if (fault.Is("open")) return result == -1;
    if (fault.Is("lseek")) return result == -1 && fault.nth <= kReaderSeeks;
    if (fault.Is("read")) return result == -1;
    // Of the segment, bytes before the entry point hold none; of the table, any byte counts.
    if (fault.Is(kShortRead)) return result == -1 && (Strikes(fault, 1) || fault.value == 0);
    return false;
}

Operation TableCommand(const std::string& name, unsigned long command, std::size_t size,
                       std::size_t first = 0, std::size_t elementSize = 0) {
    Operation operation;
    operation.name = name;
    operation.recordSize = size;
    operation.run = [command](void* record) { return GetInfo(command, record); };
    operation.firstElement = first;
    operation.elementSize = elementSize;
    operation.mayAnswer = TableCommandMayAnswer;
    operation.restart = [] { (void)release(); };
    return operation;
}

// Commands that need no table always answer 0; without memory the PCI report throws.
Operation MachineCommand(const std::string& name, unsigned long command, std::size_t size,
                         std::size_t first, std::size_t elementSize) {
    Operation operation = TableCommand(name, command, size, first, elementSize);
    operation.mayAnswer = [](const Fault& fault, int result) {
        return fault.Is(kAllocation) && result == kThrew;
    };
    operation.restart = nullptr;
    return operation;
}

class InventoryFaultsTest : public testing::Test {
protected:
    // The table is moved down, where the library reads 64 KiB to get it and not 1 MiB.
    InventoryFaultsTest() {
        const captures::TableImage image = captures::ImageOf(server.GetMemory());
        sim::SmbiosPlacement low;
        low.table = 0x8000;
        server.GetMemory().PlaceSmbios(image.table, low);
    }

    sim::SimulatedServer server{std::filesystem::path(TALVANE_MACHINES) / "full-server"};
};

TEST_F(InventoryFaultsTest, RecordsOfTheBoardTheSystemAndThePortsStayWithinTheirFields) {
    ExpectAllHolds(server,
                   {TableCommand("board", TALVANE_BOARD, sizeof(BaseBoardInformation)),
                    TableCommand("system", TALVANE_SYSTEM, sizeof(SysInformation)),
                    TableCommand("ports", TALVANE_PORTS, sizeof(captures::LongPorts),
                                 offsetof(IOInformation, port), sizeof(PORT))},
                   200);
}

TEST_F(InventoryFaultsTest, RecordsOfProcessorsStayWithinTheirFields) {
    Operation processors =
        TableCommand("processors", TALVANE_PROCESSORS, sizeof(captures::LongProcessors),
                     offsetof(ProcessorInformation, cpu), sizeof(CPU));
    // A status that cannot be read counts as unknown.
    processors.otherFields = {{offsetof(CPU, IsUHT), sizeof(CPU::IsUHT)},
                              {offsetof(CPU, cache), sizeof(CPU::cache)}};
    ExpectAllHolds(server, {processors}, 200);
}

TEST_F(InventoryFaultsTest, RecordsOfMemoryStayWithinTheirFields) {
    Operation memory = TableCommand("memory", TALVANE_MEMORY, sizeof(MemoryInformation),
                                    offsetof(MemoryInformation, bank), sizeof(BANK));
    // Where the modules cannot be read, the devices fill the banks with longer texts.
    memory.otherFields = {{0, sizeof(BANK)}};
    ExpectAllHolds(server, {memory}, 200);
}

TEST_F(InventoryFaultsTest, RecordsOfPowerFansAndProbesStayWithinTheirFields) {
    ExpectAllHolds(
        server,
        {TableCommand("power", TALVANE_POWER, sizeof(captures::LongPower),
                      offsetof(SystemPowerInformation, PowerSupply), sizeof(SYS_POWER)),
         TableCommand("ups", TALVANE_UPS, sizeof(captures::LongPower),
                      offsetof(SystemPowerInformation, PowerSupply), sizeof(SYS_POWER)),
         TableCommand("fans", TALVANE_FANS, sizeof(captures::LongFans),
                      offsetof(FanInformation, fan), sizeof(FAN_DEVICE)),
         TableCommand("voltages", TALVANE_VOLTAGES, sizeof(VoltageInformation),
                      offsetof(VoltageInformation, voltage), sizeof(VOLTAGE_PROBE)),
         TableCommand("temperatures", TALVANE_TEMPERATURES, sizeof(TemperatureInformation),
                      offsetof(TemperatureInformation, temperature), sizeof(TEMPERATURE_PROBE))},
        200);
}

TEST_F(InventoryFaultsTest, SupportQueryAnswersWhetherTheSegmentWasRead) {
    Operation operation;
    operation.name = "IsSmBiosSupport";
    operation.run = [](void*) { return IsSmBiosSupport(); };
    operation.mayAnswer = [](const Fault& fault, int result) {
        if (fault.Is(kAllocation)) return result == (fault.nth == 1 ? kThrew : 0);
        return result == 0;
    };
    operation.restart = [] { (void)release(); };
    ExpectAllHolds(server, {operation}, 50);
}

TEST(PciFaultsTest, FunctionsAreListedOrNot) {
    sim::SimulatedServer server;
    server.GetPci().Set({0, 0, 0}, {0x86, 0x80, 0x01, 0x00});
    server.GetPci().Set({0, 31, 1}, {0x86, 0x80, 0x02, 0x00});
    Operation pci = MachineCommand("pci", TALVANE_PCI, sizeof(DeviceInformation),
                                   offsetof(DeviceInformation, dev), sizeof(DEV));
    pci.slow = true;
    ExpectAllHolds(server, {pci}, 8);
}

// Two small disks; the first has a chain of two logical partitions. A walk takes a call for each
// cylinder before a record.
class StorageFaultsTest : public testing::Test {
protected:
    static constexpr std::uint32_t kCylinder = 255 * 63;

    StorageFaultsTest() {
        const sim::IdeDrive first = sim::MakeDisk("First", 20 * kCylinder, "1");
        first.image->SetEntry(0, 1, {0x83, 63, kCylinder});
        first.image->SetEntry(0, 2, {0x0F, 2 * kCylinder, 8 * kCylinder});
        first.image->SetEntry(0, 4, {0x82, 12 * kCylinder, kCylinder});
        first.image->SetEntry(2 * kCylinder, 1, {0x83, 63, kCylinder - 63});
        first.image->SetEntry(2 * kCylinder, 2, {0x05, kCylinder, kCylinder});
        first.image->SetEntry(3 * kCylinder, 1, {0x0B, 63, kCylinder - 63});
        InstallDrive(server.GetMachine(), 'a', first);
        const sim::IdeDrive second = sim::MakeDisk("Second", 2 * kCylinder, "2");
        second.image->SetEntry(0, 3, {0x07, 63, kCylinder});
        InstallDrive(server.GetMachine(), 'd', second);
    }

    sim::SimulatedServer server;
};

TEST_F(StorageFaultsTest, DrivesStayWithinTheFieldsOfTheirRecord) {
    ExpectAllHolds(server,
                   {MachineCommand("drives", TALVANE_DRIVES, sizeof(StorageInformation),
                                   offsetof(StorageInformation, driveArray), sizeof(DriveInfo))},
                   200);
}

TEST_F(StorageFaultsTest, PartitionsStayWithinTheFieldsOfTheirRecord) {
    ExpectAllHolds(server,
                   {MachineCommand("partitions", TALVANE_PARTITIONS, sizeof(PartitionInformation),
                                   offsetof(PartitionInformation, partition), sizeof(PARTITION))},
                   300);
}

}  // namespace
}  // namespace faults
