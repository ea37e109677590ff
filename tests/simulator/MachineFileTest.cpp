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

class MachineFile : public testing::Test {
protected:
    void load(std::string_view description) {
        loadMachine(MachineFolder(description).path, machine);
    }

    Bytes at(std::uint32_t address, std::size_t size) {
        Bytes bytes(size);
        EXPECT_TRUE(machine.memory().read(address, bytes));
        return bytes;
    }

    std::string textAt(std::uint32_t address, std::size_t size) {
        const Bytes bytes = at(address, size);
        return std::string(bytes.begin(), bytes.end());
    }

    sim::Machine machine;
};

TEST_F(MachineFile, AnEmptyDescriptionIsAPlainMachine) {
    load("");
    EXPECT_EQ(machine.memory().size(), 64u << 20);
}

TEST_F(MachineFile, MemorySizesHaveSuffixes) {
    for (const auto& [text, size] :
         {std::pair<const char*, std::uint64_t>{"memory 1048576", 1u << 20},
          {"memory 640K", 640u << 10},
          {"memory 512M", 512u << 20},
          {"memory 0x10M", 16u << 20},
          {"memory 4G", std::uint64_t{4} << 30}}) {
        sim::Machine sized;
        loadMachine(MachineFolder(text).path, sized);
        EXPECT_EQ(sized.memory().size(), size) << text;
    }
}

TEST_F(MachineFile, CommentsBlanksAndLineEndsAreFree) {
    load("# a machine\r\n\n  \t memory\t128M# enough\r\n   # done");
    EXPECT_EQ(machine.memory().size(), 128u << 20);
}

TEST_F(MachineFile, StructuresBecomeATable) {
    load(R"(smbios version 2.4
structure 4 handle 0x0400 length 35   # a processor
  byte 5 3
  word 18 0x85
  dword 8 305419896
  bytes 12 01 f 02
  string 7 "In\"t\\e\x6c # "
  string "unreferenced"
structure 0x7F handle 32512 length 4
)");
    sim::SmbiosTable table;
    table.add(4, 0x0400, 35)
        .byte(5, 3)
        .word(18, 133)
        .dword(8, 0x12345678)
        .byte(12, 1)
        .byte(13, 0xF)
        .byte(14, 2)
        .string(7, "In\"t\\el # ")
        .string("unreferenced");
    table.add(127, 0x7F00, 4);
    sim::PhysicalMemory expected;
    expected.placeSmbios(table.bytes(), {.major = 2, .minor = 4});
    Bytes segment(65536);
    ASSERT_TRUE(expected.read(0xF0000, segment));
    EXPECT_EQ(at(0xF0000, 65536), segment);
}

TEST_F(MachineFile, OptionsPlaceTheTable) {
    load(
        "smbios version 2.0 table 0x8000 anchor dmi structures 9 entry 0xFFFE0 length 77\n"
        "structure 1 handle 1 length 8\n");
    const Bytes entry = at(0xFFFE0, 15);
    EXPECT_EQ(textAt(0xFFFE0, 5), "_DMI_");
    EXPECT_EQ(entry[6], 77);
    EXPECT_EQ(entry[12], 9);
    EXPECT_EQ(entry[14], 0x20);
    EXPECT_EQ(at(0x8000, 2), (Bytes{1, 8}));
}

TEST_F(MachineFile, CapturesComeFromTheFolder) {
    const MachineFolder folder("pages 0x300000 \"some page.bin\"\nsegment low.bin\n");
    folder.write("some page.bin", "page");
    folder.write("low.bin", "_SM_" + std::string(65532, '.'));
    loadMachine(folder.path, machine);
    EXPECT_EQ(textAt(0x300000, 5), std::string("page\0", 5));
    EXPECT_EQ(textAt(0xF0000, 5), "_SM_.");
}

TEST_F(MachineFile, PagesLieOverTheSegment) {
    const MachineFolder folder("pages 0xF0004 page.bin\nsegment low.bin\n");
    folder.write("page.bin", "page");
    folder.write("low.bin", std::string(65536, '.'));
    loadMachine(folder.path, machine);
    EXPECT_EQ(textAt(0xF0003, 6), ".page.");
}

TEST_F(MachineFile, ADumpIsPlaced) {
    sim::SmbiosTable table;
    table.add(1, 2, 8);
    const Bytes bytes = table.bytes();
    std::string dump = "_SM3_" + std::string(27, '\0') + std::string(bytes.begin(), bytes.end());
    dump[0x0C] = static_cast<char>(bytes.size());
    dump[0x10] = 32;
    const MachineFolder folder("smbios dump table.bin");
    folder.write("table.bin", dump);
    loadMachine(folder.path, machine);
    EXPECT_EQ(textAt(0xF0010, 4), "_SM_");
    EXPECT_EQ(at(0xF0030, bytes.size()), bytes);
}

TEST_F(MachineFile, AMachineCanBeWithoutDevices) {
    load("without /dev/mem EACCES\nwithout /proc/stat\nwithout /dev/hda EIO");
    EXPECT_EQ(machine.open({}, "/dev/mem", O_RDONLY)->error, EACCES);
    EXPECT_EQ(machine.open({}, "/proc/stat", O_RDONLY)->error, ENOENT);
    EXPECT_EQ(machine.open({}, "/dev/hda", O_RDONLY)->error, EIO);
}

}  // namespace
