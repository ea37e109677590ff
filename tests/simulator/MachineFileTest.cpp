// SPDX-License-Identifier: MIT
//
// Machines described in text: what each statement makes.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "MachineFolder.h"
#include "simulator/description/MachineFile.h"
#include "simulator/machine/Machine.h"
#include "simulator/machine/SmbiosTable.h"

namespace {

using sim::Bytes;

class MachineFileTest : public testing::Test {
protected:
    void Load(std::string_view description) {
        LoadMachine(MachineFolder(description).path, machine);
    }

    Bytes At(std::uint32_t address, std::size_t size) {
        Bytes bytes(size);
        EXPECT_TRUE(machine.GetMemory().Read(address, bytes));
        return bytes;
    }

    std::string TextAt(std::uint32_t address, std::size_t size) {
        const Bytes bytes = At(address, size);
        return std::string(bytes.begin(), bytes.end());
    }

    sim::Machine machine;
};

TEST_F(MachineFileTest, EmptyDescriptionIsAPlainMachine) {
    Load("");
    EXPECT_EQ(machine.GetMemory().Size(), 64u << 20);
}

TEST_F(MachineFileTest, MemorySizeWithASuffixIsInItsUnit) {
    for (const auto& [text, size] :
         {std::pair<const char*, std::uint64_t>{"memory 1048576", 1u << 20},
          {"memory 640K", 640u << 10},
          {"memory 512M", 512u << 20},
          {"memory 0x10M", 16u << 20},
          {"memory 0X10M", 16u << 20},
          {"memory 4G", std::uint64_t{4} << 30}}) {
        sim::Machine sized;
        LoadMachine(MachineFolder(text).path, sized);
        EXPECT_EQ(sized.GetMemory().Size(), size) << text;
    }
}

TEST_F(MachineFileTest, CommentsBlanksAndLineEndsAreSkipped) {
    Load("# a machine\r\n\n  \t memory\t128M# enough\r\n   # done");
    EXPECT_EQ(machine.GetMemory().Size(), 128u << 20);
}

TEST_F(MachineFileTest, StructuresBecomeATable) {
    Load(R"(smbios version 2.4
structure 4 handle 0x0400 length 35   # a processor
  byte 5 3
  word 18 0x85
  dword 8 305419896
  bytes 12 01 f 02
  string 7 "In\"t\\e\x6c # "
  string "unreferenced"# to the end of the line
structure 0x7F handle 32512 length 4
)");
    sim::SmbiosTable table;
    table.Add(4, 0x0400, 35)
        .Byte(5, 3)
        .Word(18, 133)
        .Dword(8, 0x12345678)
        .Byte(12, 1)
        .Byte(13, 0xF)
        .Byte(14, 2)
        .String(7, "In\"t\\el # ")
        .String("unreferenced");
    table.Add(127, 0x7F00, 4);
    sim::PhysicalMemory expected;
    expected.PlaceSmbios(table.Image(), {.major = 2, .minor = 4});
    Bytes segment(65536);
    ASSERT_TRUE(expected.Read(0xF0000, segment));
    EXPECT_EQ(At(0xF0000, 65536), segment);
}

TEST_F(MachineFileTest, OptionsPlaceTheTable) {
    Load(
        "smbios version 2.0 table 0x8000 anchor dmi structures 9 entry 0xFFFE0 length 77\n"
        "structure 1 handle 1 length 8\n");
    const Bytes entry = At(0xFFFE0, 15);
    EXPECT_EQ(TextAt(0xFFFE0, 5), "_DMI_");
    EXPECT_EQ(entry[6], 77);
    EXPECT_EQ(entry[12], 9);
    EXPECT_EQ(entry[14], 0x20);
    EXPECT_EQ(At(0x8000, 2), (Bytes{1, 8}));
}

TEST_F(MachineFileTest, CapturesAreReadFromTheFolder) {
    const MachineFolder folder("pages 0x300000 \"some page.bin\"\nsegment low.bin\n");
    folder.Write("some page.bin", "page");
    folder.Write("low.bin", "_SM_" + std::string(65532, '.'));
    LoadMachine(folder.path, machine);
    EXPECT_EQ(TextAt(0x300000, 5), std::string("page\0", 5));
    EXPECT_EQ(TextAt(0xF0000, 5), "_SM_.");
}

TEST_F(MachineFileTest, PagesLieOverTheSegment) {
    const MachineFolder folder("pages 0xF0004 page.bin\nsegment low.bin\n");
    folder.Write("page.bin", "page");
    folder.Write("low.bin", std::string(65536, '.'));
    LoadMachine(folder.path, machine);
    EXPECT_EQ(TextAt(0xF0003, 6), ".page.");
}

TEST_F(MachineFileTest, DumpIsPlacedWithAnEntryPoint) {
    sim::SmbiosTable table;
    table.Add(1, 2, 8);
    const Bytes bytes = table.Image();
    std::string dump = "_SM3_" + std::string(27, '\0') + std::string(bytes.begin(), bytes.end());
    dump[0x0C] = static_cast<char>(bytes.size());
    dump[0x10] = 32;
    const MachineFolder folder("smbios dump table.bin");
    folder.Write("table.bin", dump);
    LoadMachine(folder.path, machine);
    EXPECT_EQ(TextAt(0xF0010, 4), "_SM_");
    EXPECT_EQ(At(0xF0030, bytes.size()), bytes);
}

TEST_F(MachineFileTest, DumpOfADmiTableKeepsItsEntryPointWhenAsked) {
    sim::SmbiosTable table;
    table.Add(1, 2, 8);
    const Bytes bytes = table.Image();
    std::string dump = "_DMI_" + std::string(27, '\0') + std::string(bytes.begin(), bytes.end());
    dump[6] = static_cast<char>(bytes.size());
    dump[8] = 32;
    dump[12] = 9;
    dump[14] = 0x21;
    const MachineFolder folder("smbios dump table.bin anchor dmi");
    folder.Write("table.bin", dump);
    LoadMachine(folder.path, machine);
    EXPECT_EQ(TextAt(0xF0010, 5), "_DMI_");
    const Bytes entry = At(0xF0010, 15);
    EXPECT_EQ(entry[12], 9);
    EXPECT_EQ(entry[14], 0x21);
    EXPECT_EQ(At(0xF0020, bytes.size()), bytes);
    folder.Write("table.bin", "_SM_" + dump.substr(4));
    sim::Machine other;
    EXPECT_THROW(LoadMachine(folder.path, other), sim::MachineError);
}

TEST_F(MachineFileTest, WayIsKeptForWhoAsks) {
    EXPECT_EQ(machine.Ways(), "");
    Load(
        "way pci host \"/sys\" note \"1 left out\" problem \"no rights\"\nway load direct "
        "\"/proc\"\nway drives host \"/sys/block\" unopened \"/dev/sda, /dev/sdb\" \"no rights\"");
    EXPECT_EQ(machine.Ways(),
              "pci\thost\t/sys\t1 left out\tno rights\t\t\nload\tdirect\t/proc\t\t\t\t\n"
              "drives\thost\t/sys/block\t\t\t/dev/sda, /dev/sdb\tno rights\n");
    for (const char* const refused :
         {"way spoons host \"/sys\"", "way pci there \"/sys\"", "way pci host \"\\x1B[2J\"",
          "way pci host \"\\x7F\"", "way drives host \"/sys\" unopened \"/dev/sda\"",
          "way pci host \"a\"\nway pci host \"a\""}) {
        sim::Machine other;
        EXPECT_THROW(LoadMachine(MachineFolder(refused).path, other), sim::MachineError) << refused;
    }
}

TEST_F(MachineFileTest, WithoutPortsTheProgramCannotRaiseItsPrivilege) {
    EXPECT_EQ(machine.SetPrivilege(3).error, 0);
    sim::Machine refusing;
    LoadMachine(MachineFolder("without ports EPERM").path, refusing);
    EXPECT_EQ(refusing.SetPrivilege(3).error, EPERM);
    EXPECT_EQ(refusing.SetPrivilege(0).error, 0);
}

TEST_F(MachineFileTest, WithoutMakesADeviceFailToOpen) {
    Load("without /dev/mem EACCES\nwithout /proc/stat\nwithout /dev/hda EIO");
    EXPECT_EQ(machine.Open({}, "/dev/mem", O_RDONLY)->error, EACCES);
    EXPECT_EQ(machine.Open({}, "/proc/stat", O_RDONLY)->error, ENOENT);
    EXPECT_EQ(machine.Open({}, "/dev/hda", O_RDONLY)->error, EIO);
}

}  // namespace
