// SPDX-License-Identifier: MIT
//
// Descriptions that cannot be used: each is refused with the line at fault and the reason.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "MachineFolder.h"
#include "simulator/description/MachineFile.h"
#include "simulator/machine/Machine.h"

namespace {

// The error text about a description, without the name of its folder; empty when there is none.
std::string Complaint(const MachineFolder& folder) {
    try {
        sim::Machine machine;
        LoadMachine(folder.path, machine);
    } catch (const sim::MachineError& error) {
        const std::string text = error.what();
        const std::string start = folder.path.string() + "/";
        EXPECT_EQ(text.substr(0, start.size()), start);
        std::string rest = text.substr(start.size());
        for (std::size_t at = rest.find(start); at != std::string::npos; at = rest.find(start))
            rest.erase(at, start.size());
        return rest;
    }
    return "";
}

struct BadDescription {
    const char* text;
    const char* complaint;
};

void PrintTo(const BadDescription& bad, std::ostream* out) {
    *out << bad.text;
}

class MachineErrorTest : public testing::TestWithParam<BadDescription> {};

TEST_P(MachineErrorTest, MistakeIsReportedWithItsLine) {
    EXPECT_EQ(Complaint(MachineFolder(GetParam().text)),
              std::string("machine.txt:") + GetParam().complaint);
}

constexpr BadDescription kWords[] = {
    {"memroy 1M", "1: unknown statement \"memroy\""},
    {"\"memory\" 1M", "1: the statement takes no quotes"},
    {"\n\nmemory", "3: the memory size is missing"},
    {"memory 1M 2M", "1: nothing may follow here, but \"2M\" does"},
    {"pages 0", "1: the file name is missing"},
    {"memory \"1M\"", "1: the memory size takes no quotes"},
    {"memory 1M\nmemory 1M", "2: the memory size was given in line 1"},
    {"memory M", "1: the memory size \"\" is not a number"},
    {"memory 0x", "1: the memory size \"0x\" is not a number"},
    {"memory 0Xg", "1: the memory size \"0Xg\" is not a number"},
    {"memory -1", "1: the memory size \"-1\" is not a number"},
    {"memory 1T", "1: the memory size \"1T\" is not a number"},
    {"memory 0M", "1: the memory size 0M is not between 1 and 4294967296"},
    {"memory 5G", "1: the memory size 5G is not between 1 and 4294967296"},
    {"memory 99999999999999999999", "1: the memory size 99999999999999999999 is too large"},
    {"pages 0x100000000 x", "1: the address 0x100000000 is above 4294967295"},
    {"pages 0 none.bin", "1: none.bin: No such file or directory"},
    {"segment .", "1: .: not a regular file"},
    {"without /dev/mem EWHAT",
     "1: the error \"EWHAT\" is none of ENOENT EACCES EPERM ENXIO ENODEV EBUSY EIO"},
    {"without /dev/null", "1: no server has a device /dev/null"},
    {"without /dev/mem\nwithout /dev/mem EIO", "2: the machine is without /dev/mem already"},
};
INSTANTIATE_TEST_SUITE_P(Words, MachineErrorTest, testing::ValuesIn(kWords));

#define TABLE     "smbios version 2.3\n"
#define STRUCTURE TABLE "structure 1 handle 1 length 8\n"

constexpr BadDescription kSmbios[] = {
    {"smbios", "1: \"dump\" or \"version\" is missing"},
    {"smbios table", "1: smbios is followed by \"dump\" or \"version\", not by \"table\""},
    {"smbios version", "1: the version is missing"},
    {"smbios version 2", "1: the version \"2\" is not MAJOR.MINOR"},
    {"smbios version 2.x", "1: the version \"2.x\" is not MAJOR.MINOR"},
    {"smbios version 2:3", "1: the version \"2:3\" is not MAJOR.MINOR"},
    {"smbios version 2.", "1: the version \"2.\" is not MAJOR.MINOR"},
    {"smbios version 2.3x", "1: the version \"2.3x\" is not MAJOR.MINOR"},
    {"smbios version 2.300", "1: the version \"2.300\" is not MAJOR.MINOR"},
    {"smbios version 2.3 anchor sm", "1: the word \"dmi\" was expected, not \"sm\""},
    {"smbios version 2.3 entry 0xF0008",
     "1: an entry point lies on a multiple of 16 from 0xF0000 to 0xFFFE0"},
    {"smbios version 2.3 entry 0xE0000",
     "1: an entry point lies on a multiple of 16 from 0xF0000 to 0xFFFE0"},
    {"smbios version 2.3 entry 0xFFFF0",
     "1: an entry point lies on a multiple of 16 from 0xF0000 to 0xFFFE0"},
    {"smbios version 2.3 table 0", "1: a table does not lie at address 0"},
    {"smbios version 2.3 structures 65536", "1: the structure count 65536 is above 65535"},
    {"smbios version 2.3 table 0x8000 table 0x9000", "1: \"table\" is given twice"},
    {"smbios version 2.3 place 0x8000",
     "1: \"place\" is none of anchor, entry, table, structures, length"},
    {TABLE TABLE, "2: the machine's SMBIOS was given in line 1"},
    {"structure 1 handle 1 length 8", "1: structures follow an \"smbios version\" line"},
    {"segment machine.txt\nstructure 1 handle 1 length 8",
     "2: structures follow an \"smbios version\" line"},
    {"byte 4 1", "1: fields and strings follow a \"structure\" line"},
    {TABLE "string \"x\"", "2: fields and strings follow a \"structure\" line"},
    {TABLE "structure 256 handle 1 length 8", "2: the type 256 is above 255"},
    {TABLE "structure 1 handle 65536 length 8", "2: the handle 65536 is above 65535"},
    {TABLE "structure 1 handle 1 length 3",
     "2: a structure is at least as long as its header of 4 bytes"},
    {TABLE "structure 1 length 8", "2: the word \"handle\" was expected, not \"length\""},
    {STRUCTURE "byte 8 1", "3: offset 8 with 1 bytes is past the formatted area of 8 bytes"},
    {STRUCTURE "word 7 1", "3: offset 7 with 2 bytes is past the formatted area of 8 bytes"},
    {STRUCTURE "byte 4 256", "3: the value 256 is above 255"},
    {STRUCTURE "word 4 0x10000", "3: the value 0x10000 is above 65535"},
    {STRUCTURE "word 4 1\nbyte 5 1", "4: the byte at offset 5 was set in line 3"},
    {STRUCTURE "bytes 4", "3: the byte is missing"},
    {STRUCTURE "bytes 4 100", "3: the byte \"100\" is not two hexadecimal digits"},
    {STRUCTURE "bytes 4 0x", "3: the byte \"0x\" is not two hexadecimal digits"},
    {STRUCTURE "string 4", "3: the string is missing"},
    {STRUCTURE "string 4 Intel", "3: the string must be in double quotes"},
    {STRUCTURE "string 4 \"\"", "3: the string is empty"},
    {STRUCTURE "string 4 \"Intel", "3: the text has no closing quote"},
    {STRUCTURE "string 4 \"Intel\"x", "3: a blank must follow the closing quote"},
    {STRUCTURE "string 4\"Intel\"", "3: a blank must precede the opening quote"},
    {STRUCTURE "string \"\\n\"", "3: the escapes of a text are \\\" \\\\ and \\xHH"},
    {STRUCTURE "string \"\\x0\"", "3: \\x needs two hexadecimal digits other than 00"},
    {STRUCTURE "string \"\\x00\"", "3: \\x needs two hexadecimal digits other than 00"},
    {STRUCTURE "string \"\\xyz\"", "3: \\x needs two hexadecimal digits other than 00"},
    {"memory 640K\n" TABLE, "2: 65536 bytes at 0xF0000 are past the end of the memory at 0xA0000"},
    {"smbios version 2.3 table 0x4000000\nstructure 1 handle 1 length 8",
     "1: 10 bytes at 0x4000000 are past the end of the memory at 0x4000000"},
};
INSTANTIATE_TEST_SUITE_P(Smbios, MachineErrorTest, testing::ValuesIn(kSmbios));

TEST(MachineCaptureTest, CaptureThatDoesNotFitIsReportedWithItsLine) {
    const MachineFolder segment("memory 1G\nsegment low.bin");
    segment.Write("low.bin", "short");
    EXPECT_EQ(Complaint(segment), "machine.txt:2: a segment image has 65536 bytes, this one has 5");
    const MachineFolder dump("smbios dump low.bin");
    dump.Write("low.bin", "short");
    EXPECT_EQ(
        Complaint(dump),
        "machine.txt:1: not an SMBIOS dump: it does not start with a whole _SM_, _SM3_ or _DMI_ "
        "entry point");
    const MachineFolder pages("pages 0x4000 low.bin\npages 0x3FFF low.bin");
    pages.Write("low.bin", "short");
    EXPECT_EQ(Complaint(pages), "machine.txt:2: these bytes overlap those of line 1");
    const MachineFolder outside("pages 0x3FFFFFC low.bin");
    outside.Write("low.bin", "short");
    EXPECT_EQ(Complaint(outside),
              "machine.txt:1: 5 bytes at 0x3FFFFFC are past the end of the memory at 0x4000000");
}

// The process's own memory is a regular file, and nothing is at its start.
TEST(MachineCaptureTest, CaptureThatCannotBeReadIsNamed) {
    const MachineFolder folder("pages 0 memory");
    std::filesystem::create_symlink("/proc/self/mem", folder.path / "memory");
    EXPECT_EQ(Complaint(folder), "machine.txt:1: memory: cannot be read");
}

TEST(MachineCaptureTest, EmptyCaptureIsRefused) {
    const MachineFolder folder("pages 0 empty.bin");
    folder.Write("empty.bin", "");
    EXPECT_EQ(Complaint(folder), "machine.txt:1: empty.bin: is empty");
}

TEST(MachineCaptureTest, SecondSourceOfSmbiosIsRefused) {
    const MachineFolder folder("segment low.bin\nsmbios dump low.bin");
    folder.Write("low.bin", "short");
    EXPECT_EQ(Complaint(folder), "machine.txt:2: the machine's SMBIOS was given in line 1");
}

TEST(MachineCaptureTest, FolderWithoutADescriptionIsRefused) {
    const MachineFolder folder("");
    std::filesystem::remove(folder.path / "machine.txt");
    EXPECT_EQ(Complaint(folder), "machine.txt: No such file or directory");
}

TEST(MachineCaptureTest, DescriptionThatWouldWaitForAWriterIsRefused) {
    const MachineFolder folder("");
    std::filesystem::remove(folder.path / "machine.txt");
    ASSERT_EQ(mkfifo((folder.path / "machine.txt").c_str(), 0600), 0);
    EXPECT_EQ(Complaint(folder), "machine.txt: not a regular file");
}

TEST(MachineCaptureTest, CaptureThatWouldWaitForAWriterIsRefused) {
    for (const char* const statement :
         {"segment fifo", "bmc kcs\ninventory fifo", "drive hda sectors 9 dump fifo",
          "bmc kcs\ncontrol fifo", "stat fifo", "pci capture fifo", "smbios dump fifo",
          "ide tree"}) {
        const MachineFolder folder(statement);
        const bool isTree = std::string_view(statement) == "ide tree";
        const std::string fifo = isTree ? "tree/ide0/hda/media" : "fifo";
        std::filesystem::create_directories(folder.path / "tree/ide0/hda");
        ASSERT_EQ(mkfifo((folder.path / fifo).c_str(), 0600), 0);
        EXPECT_THAT(Complaint(folder), testing::EndsWith(": " + fifo + ": not a regular file"));
    }
}

// The rest of such a line would be missing from an error text.
TEST(MachineLineTest, LineWithAZeroByteIsRefused) {
    using namespace std::string_view_literals;
    EXPECT_EQ(Complaint(MachineFolder("memory 1M\ncpu\0 0"sv)),
              "machine.txt:2: the line holds a byte 00, so it is not text");
}

TEST(MachineErrorTest, ControlCharactersOfTheDescriptionDoNotReachATerminal) {
    EXPECT_EQ(Complaint(MachineFolder("\x1B]0;title\x07")),
              R"(machine.txt:1: unknown statement "\x1B]0;title\x07")");
    EXPECT_THAT(Complaint(MachineFolder(R"(pages 0 "\x1B[31m\xC2\x9Bx")")),
                testing::HasSubstr(R"(\x1B[31m\xC2)"));
    EXPECT_EQ(Complaint(MachineFolder("rub\x7Fout")),
              R"(machine.txt:1: unknown statement "rub\x7Fout")");
    EXPECT_EQ(Complaint(MachineFolder("caf\xC3\xA9")),
              "machine.txt:1: unknown statement \"caf\xC3\xA9\"");
}

TEST(MachineErrorTest, BytesThatMakeNoControlCharacterAreShownAsTheyAre) {
    for (const std::string word : {"\xC2\xA3", "\xC2x", "\xC2\xC2"})
        EXPECT_EQ(Complaint(MachineFolder(word)),
                  "machine.txt:1: unknown statement \"" + word + "\"");
    EXPECT_EQ(sim::MachineError("cut off \xC2").what(), std::string("cut off \xC2"));
}

}  // namespace
