// SPDX-License-Identifier: MIT
//
// PCI functions, drives and load of described machines: what each statement makes.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "MachineFolder.h"
#include "simulator/description/MachineError.h"
#include "simulator/description/MachineFile.h"
#include "simulator/machine/Machine.h"

namespace {

using ::testing::HasSubstr;

class InventoryStatementsTest : public testing::Test {
protected:
    void Load(std::string_view description) { Load(MachineFolder(description)); }
    void Load(const MachineFolder& folder) { LoadMachine(folder.path, machine); }

    // The error text about a description; "none" when there is none.
    static std::string Complaint(const MachineFolder& folder) {
        sim::Machine refused;
        try {
            LoadMachine(folder.path, refused);
        } catch (const sim::MachineError& error) {
            return std::string(error.what()).substr((folder.path / "machine.txt:").string().size());
        }
        return "none";
    }
    static std::string Complaint(std::string_view description) {
        return Complaint(MachineFolder(description));
    }

    std::uint32_t PciDword(std::uint32_t address) {
        machine.GetPci().Out(0xCF8, 4, 0x80000000 | address);
        return machine.GetPci().In(0xCFC, 4);
    }

    // The file's first bytes; "error ENOENT" and the like when it cannot be opened.
    std::string Content(const char* path, std::size_t size = 4096) {
        const sim::Answer opened = *machine.Open({}, path, O_RDONLY);
        if (!opened.Ok()) return "error " + std::to_string(opened.error);
        const int descriptor = static_cast<int>(opened.value);
        std::string text(size, '\0');
        const sim::Answer read = *machine.Read({}, descriptor, text.data(), size);
        text.resize(static_cast<std::size_t>(read.value));
        (void)machine.Close({}, descriptor);
        return text;
    }

    sim::Machine machine;
};

TEST_F(InventoryStatementsTest, PciFunctionShowsItsHeaderFields) {
    Load(
        "pci 0a:1f.7 8086:24db class 01.01.8a revision 2 command 0x0005 status 0x0280 header 0x80 "
        "irq 14 bar0 0x1F1 bar5 0xFEB00000");
    constexpr std::uint32_t at = 0x0A << 16 | 0x1F << 11 | 7 << 8;
    EXPECT_EQ(PciDword(at), 0x24DB8086u);
    EXPECT_EQ(PciDword(at | 4), 0x02800005u);
    EXPECT_EQ(PciDword(at | 8), 0x01018A02u);
    EXPECT_EQ(PciDword(at | 12), 0x00800000u);
    EXPECT_EQ(PciDword(at | 16), 0x1F1u);
    EXPECT_EQ(PciDword(at | 36), 0xFEB00000u);
    EXPECT_EQ(PciDword(at | 60), 14u);
    EXPECT_EQ(PciDword(at | 64), 0u);
    EXPECT_EQ(PciDword(0), 0xFFFFFFFFu);
}

TEST_F(InventoryStatementsTest, PciCaptureShowsItsFunctions) {
    const MachineFolder folder("pci capture lspci.txt");
    folder.Write("lspci.txt",
                 "00:1f.1 IDE interface: of a maker\n"
                 "\tControl: I/O+\n"
                 "00: 86 80 db 24 05 00 80 02 02 8a 01 01 00 00 00 00\n"
                 "10: f1 01 00 00\n"
                 "\n"
                 "0001:00:1f.2 of another domain\n"
                 "00: 01 02 03 04\n"
                 "0000:01:00.0 without words\r\n"
                 "00: 11 22 33 44\r\n");
    Load(folder);
    EXPECT_EQ(PciDword(0xF900), 0x24DB8086u);
    EXPECT_EQ(PciDword(0xF910), 0x1F1u);
    EXPECT_EQ(PciDword(0xF914), 0u);
    EXPECT_EQ(PciDword(0xFA00), 0xFFFFFFFFu);
    EXPECT_EQ(PciDword(0x10000), 0x44332211u);
}

TEST_F(InventoryStatementsTest, PciCaptureOfMoreThan256BytesIsCutToThem) {
    const MachineFolder folder("pci capture lspci.txt");
    std::string text = "00:00.0 of PCI Express\n00:";
    for (int i = 0; i < 256; ++i) text += " 5a";
    folder.Write("lspci.txt", text + "\n100: 11 22 33 44\n104: 55\n");
    Load(folder);
    EXPECT_EQ(PciDword(0xFC), 0x5A5A5A5Au);
    EXPECT_EQ(PciDword(0), 0x5A5A5A5Au);
}

TEST_F(InventoryStatementsTest, FunctionOfAPciCaptureThatIsThereAlreadyIsRefused) {
    const MachineFolder folder("pci 00:1f.0 8086:1\npci capture lspci.txt");
    folder.Write("lspci.txt", "00:1f.0 x\n00: 11\n");
    EXPECT_EQ(Complaint(folder), "2: the function 00:1f.0 was given in line 1");
}

TEST_F(InventoryStatementsTest, TextThatIsNotAPciCaptureIsRefused) {
    for (const auto& [text, complaint] :
         {std::pair<const char*, const char*>{"words", "line 1: neither a function nor its bytes"},
          {"00: 11 22\n", "line 1: bytes before the first function"},
          {"00:00.0 x\n10: 11\n", "line 2: bytes are missing"},
          {"00:20.0 x\n", "line 1: there is no device above 1f"},
          {"00:00.8 x\n", "line 1: neither a function nor its bytes"},
          {"00\n", "line 1: neither a function nor its bytes"},
          {"00:00.g x\n", "line 1: neither a function nor its bytes"},
          {"00:00 x\n", "line 1: neither a function nor its bytes"},
          {"100:00.0 x\n", "line 1: neither a function nor its bytes"},
          {"00:000.0 x\n", "line 1: neither a function nor its bytes"},
          {"00:00.0 x\n00: 100\n", "line 2: neither a function nor its bytes"},
          {"00:00.0 x\n00: 1g\n", "line 2: neither a function nor its bytes"},
          {"00:00.0 x\n00:00.0 y\n", "line 2: the function 00:00.0 is here twice"},
          {"0001:00:00.0 x\n", "no function of domain 0"},
          {" blank\n\ttab\n", "no function of domain 0"},
          {"\n", "no function of domain 0"}}) {
        const MachineFolder folder("pci capture lspci.txt");
        folder.Write("lspci.txt", text);
        EXPECT_EQ(Complaint(folder), std::string("1: ") + complaint);
    }
}

TEST_F(InventoryStatementsTest, ImpossiblePciFunctionIsRefused) {
    EXPECT_EQ(Complaint("pci 00:20.0 8086:1"),
              "1: the location \"00:20.0\" is not BUS:DEVICE.FUNCTION");
    EXPECT_EQ(Complaint("pci 00:1f.8 8086:1"),
              "1: the location \"00:1f.8\" is not BUS:DEVICE.FUNCTION");
    EXPECT_EQ(Complaint("pci :1f.0 8086:1"),
              "1: the location \":1f.0\" is not BUS:DEVICE.FUNCTION");
    EXPECT_EQ(Complaint("pci 00-1f.0 8086:1"),
              "1: the location \"00-1f.0\" is not BUS:DEVICE.FUNCTION");
    EXPECT_EQ(Complaint("pci 00:1f.0 8086"), "1: the identity \"8086\" is not VENDOR:DEVICE");
    EXPECT_EQ(Complaint("pci 00:1f.0 8086:1:2"),
              "1: the identity \"8086:1:2\" is not VENDOR:DEVICE");
    EXPECT_EQ(Complaint("pci 00:1f.0 8086:1 class 01.01"),
              "1: the class \"01.01\" is not CLASS.SUB.INTERFACE");
    EXPECT_EQ(Complaint("pci 00:1f.0 8086:1 irq 1 irq 2"), "1: \"irq\" is given twice");
    EXPECT_EQ(Complaint("pci 00:1f.0 8086:10000"),
              "1: the identity \"8086:10000\" is not VENDOR:DEVICE");
    for (const std::string option : {"bar6", "bar/", "bar", "revs"})
        EXPECT_THAT(Complaint("pci 00:1f.0 8086:1 " + option + " 1"),
                    HasSubstr('"' + option + "\" is none of class"));
    EXPECT_EQ(Complaint("pci 00:1f.0 8086:1\npci 0:1f.0 8086:2"),
              "2: the function 00:1f.0 was given in line 1");
    EXPECT_EQ(Complaint("pci capture nothing.txt").substr(0, 3), "1: ");
}

TEST_F(InventoryStatementsTest, DriveHasItsFilesAndItsSectors) {
    Load(
        "drive hdc model \"ST340014A\" sectors 78165360 serial \"5JX7\" firmware \"8.01\"\n"
        "entry hdc 0 2 0x83 63 0x12345678\n"
        "entry hdc 78165359 1 7 1 2");
    EXPECT_EQ(Content("/proc/ide/ide1/hdc/media"), "disk\n");
    EXPECT_EQ(Content("/proc/ide/ide1/hdc/model"), "ST340014A\n");
    EXPECT_EQ(Content("/proc/ide/ide1/hdc/capacity"), "78165360\n");
    const std::string sector = Content("/dev/hdc", 512);
    EXPECT_EQ(sector.substr(446 + 16, 16),
              std::string("\0\0\0\0\x83\0\0\0\x3F\0\0\0\x78\x56\x34\x12", 16));
    EXPECT_EQ(sector.substr(0, 446 + 16), std::string(446 + 16, '\0'));

    const int descriptor = static_cast<int>(machine.Open({}, "/dev/hdc", O_RDONLY)->value);
    char identity[512] = {};
    EXPECT_TRUE(machine.Ioctl({}, descriptor, 0x30D, identity)->Ok());
    EXPECT_EQ(std::string(identity + 20, 20), "5JX7                ");
    EXPECT_EQ(std::string(identity + 46, 8), "8.01    ");
    EXPECT_EQ(std::string(identity + 54, 40), "ST340014A" + std::string(31, ' '));
    EXPECT_EQ(machine.Seek({}, descriptor, 78165359LL * 512 + 450, SEEK_SET)->value,
              78165359LL * 512 + 450);
    char type = 0;
    EXPECT_EQ(machine.Read({}, descriptor, &type, 1)->value, 1);
    EXPECT_EQ(type, 7);
    (void)machine.Close({}, descriptor);
}

TEST_F(InventoryStatementsTest, DriveWithAMediaShowsIt) {
    Load("drive hda media \"cdrom\" model \"SAMSUNG CD-ROM\" sectors 100");
    EXPECT_EQ(Content("/proc/ide/ide0/hda/media"), "cdrom\n");
}

TEST_F(InventoryStatementsTest, DriveFromAnImageShowsItsSize) {
    const MachineFolder folder("drive hda image disk.img");
    folder.Write("disk.img", "boot" + std::string(1020, '\1'));
    Load(folder);
    EXPECT_EQ(Content("/proc/ide/ide0/hda/capacity"), "2\n");
    EXPECT_EQ(Content("/dev/hda", 6), "boot\1\1");
    EXPECT_EQ(Content("/dev/hda").size(), 1024u);
}

TEST_F(InventoryStatementsTest, DriveFromADumpHasItsSectors) {
    const MachineFolder folder("drive hda sectors 1000 dump sectors.txt identity id.bin");
    folder.Write("sectors.txt", "2 " + std::string(1022, '0') + "aF\n");
    folder.Write("id.bin", std::string(512, 'I'));
    Load(folder);
    const std::string disk = Content("/dev/hda");
    EXPECT_EQ(disk.substr(0, 3 * 512 - 1), std::string(3 * 512 - 1, '\0'));
    EXPECT_EQ(disk.substr(3 * 512 - 1, 2), std::string("\xAF\0", 2));
    const int descriptor = static_cast<int>(machine.Open({}, "/dev/hda", O_RDONLY)->value);
    char identity[512] = {};
    EXPECT_TRUE(machine.Ioctl({}, descriptor, 0x30D, identity)->Ok());
    EXPECT_EQ(std::string(identity, 512), std::string(512, 'I'));
    (void)machine.Close({}, descriptor);
}

TEST_F(InventoryStatementsTest, DrivesFromAFolderHaveItsFilesAndNoMedium) {
    const MachineFolder folder("ide tree");
    std::filesystem::create_directories(folder.path / "tree/ide1/hdd");
    folder.Write("tree/ide1/hdd/media", "cdrom\n");
    folder.Write("tree/ide1/hdd/driver", "ide-cdrom version 4.59\n");
    Load(folder);
    EXPECT_EQ(Content("/proc/ide/ide1/hdd/driver"), "ide-cdrom version 4.59\n");
    EXPECT_EQ(Content("/dev/hdd"), "error " + std::to_string(ENOMEDIUM));
}

TEST_F(InventoryStatementsTest, ImpossibleDriveIsRefused) {
    EXPECT_EQ(Complaint("drive hde sectors 1"), "1: the drive \"hde\" is none of hda to hdd");
    EXPECT_EQ(Complaint("drive \"none\""), "1: the drive takes no quotes");
    EXPECT_EQ(Complaint("drive hd sectors 1"), "1: the drive \"hd\" is none of hda to hdd");
    EXPECT_EQ(Complaint("drive sda sectors 1"), "1: the drive \"sda\" is none of hda to hdd");
    EXPECT_EQ(Complaint("drive hd0 sectors 1"), "1: the drive \"hd0\" is none of hda to hdd");
    EXPECT_EQ(Complaint("drive hda identity machine.txt"), "1: an identity block has 512 bytes");
    EXPECT_THAT(Complaint("drive hda image nowhere"), HasSubstr("nowhere: No such file"));
    EXPECT_EQ(Complaint("drive hda"), "1: a drive has a number of sectors or an image");
    EXPECT_EQ(Complaint("drive hda sectors 1\ndrive hda sectors 1"),
              "2: the drive hda was given in line 1");
    EXPECT_EQ(Complaint("drive hda sectors 1 sectors 2"), "1: \"sectors\" is given twice");
    EXPECT_THAT(Complaint("drive hda size 1"), HasSubstr("\"size\" is none of media"));
    EXPECT_EQ(Complaint("entry hda 0 1 0x83 63 1"), "1: the machine has no disk hda");
    EXPECT_EQ(Complaint("drive hda sectors 1\nentry hda 1 1 0x83 63 1"),
              "2: a disk of 1 sectors does not have these bytes");
    EXPECT_EQ(Complaint("drive hda sectors 1\nentry hda 0 0 0x83 63 1"),
              "2: a partition table has the entries 1 to 4");
    EXPECT_EQ(Complaint("drive hda sectors 1\nentry hda 0 1 0x100 63 1"),
              "2: the type 0x100 is above 255");
    EXPECT_THAT(Complaint("ide nowhere"), HasSubstr("nowhere: No such file"));
    EXPECT_THAT(Complaint("ide machine.txt"), HasSubstr("machine.txt: holds no ide0/hda"));
    const MachineFolder folder("drive hda sectors 10 dump d");
    const std::string zeros = ' ' + std::string(1024, '0') + '\n';
    for (const auto& [text, complaint] : {
             std::pair<std::string, const char*>{"1 00\n", "line 1: a sector has 512 bytes"},
             {"first 00\n", "line 1: a line is a sector's number, a blank and its bytes"},
             {"1\n", "line 1: a line is a sector's number, a blank and its bytes"},
             {"1:" + zeros, "line 1: a line is a sector's number, a blank and its bytes"},
             {"1 " + std::string(1024, 'g') + "\n", "line 1: bytes are hexadecimal digits"},
             {"1 0g" + std::string(1022, '0') + "\n", "line 1: bytes are hexadecimal digits"},
             {"10" + zeros, "a disk of 10 sectors does not have these bytes"},
             {"1" + zeros + "1" + zeros, "line 2: the sector is here twice"},
             {"281474976710656" + zeros, "line 1: no disk has this sector"},
             {"\n", "line 1: a line is a sector's number, a blank and its bytes"},
         }) {
        folder.Write("d", text);
        EXPECT_EQ(Complaint(folder), std::string("1: ") + complaint);
    }
    folder.Write("d", "");
    EXPECT_EQ(Complaint(folder), "1: " + (folder.path / "d").string() + ": is empty");
    const MachineFolder both("drive hda image d dump d");
    both.Write("d", "1" + zeros);
    EXPECT_EQ(Complaint(both), "1: a drive has an image or a dump, not both");
}

TEST_F(InventoryStatementsTest, EntryOfADriveWithoutSectorsOfItsOwnIsRefused) {
    const MachineFolder image("drive hda image disk\nentry hda 0 1 0x83 63 1");
    image.Write("disk", std::string(512, 'd'));
    EXPECT_EQ(Complaint(image), "2: " + (image.path / "disk").string() +
                                    " is an image in a file, which is never written to");
    const MachineFolder folder("drive hdd files d\nentry hdd 0 1 0x83 63 1");
    std::filesystem::create_directories(folder.path / "d");
    EXPECT_EQ(Complaint(folder), "2: the machine has no disk hdd");
}

TEST_F(InventoryStatementsTest, DriveWithoutAnIdentityBlockAnswersNoMessage) {
    const MachineFolder folder("drive hdc files c sectors 9");
    std::filesystem::create_directories(folder.path / "c");
    Load(folder);
    const int descriptor = static_cast<int>(machine.Open({}, "/dev/hdc", O_RDONLY)->value);
    char identity[512] = "untouched";
    EXPECT_EQ(machine.Ioctl({}, descriptor, 0x30D, identity)->error, ENOMSG);
    EXPECT_STREQ(identity, "untouched");
    (void)machine.Close({}, descriptor);
}

TEST_F(InventoryStatementsTest, RequestToADriveOtherThanThatForItsIdentityEndsTheProcess) {
    Load("drive hda sectors 9");
    const int descriptor = static_cast<int>(machine.Open({}, "/dev/hda", O_RDONLY)->value);
    char geometry[512] = {};
    EXPECT_DEATH(
        (void)machine.Ioctl({}, descriptor, 0x301, geometry),
        "the program asked for ioctl\\(\"/dev/hda\", 0x301\\), which this machine does not "
        "have");
    (void)machine.Close({}, descriptor);
}

TEST_F(InventoryStatementsTest, ProcessorsWorkAtTheirRates) {
    Load("cpu 0 user 12 system 3 idle 85\ncpu 1 nice 100");
    EXPECT_EQ(Content("/proc/stat"),
              "cpu  12000 100000 3000 85000\ncpu0 12000 0 3000 85000\ncpu1 0 100000 0 0\n");
    (void)machine.Sleep(10);
    EXPECT_EQ(Content("/proc/stat"),
              "cpu  12120 101000 3030 85850\ncpu0 12120 0 3030 85850\ncpu1 0 101000 0 0\n");
}

TEST_F(InventoryStatementsTest, StatTextsFollowTheirMoments) {
    const MachineFolder folder("cpu 0 idle 1\nstat a\nstat at 5 b");
    folder.Write("a", "first\n");
    folder.Write("b", "second\n");
    Load(folder);
    EXPECT_EQ(Content("/proc/stat"), "first\n");
    (void)machine.Sleep(4);
    EXPECT_EQ(Content("/proc/stat"), "first\n");
    (void)machine.Sleep(1);
    EXPECT_EQ(Content("/proc/stat"), "second\n");
}

TEST_F(InventoryStatementsTest, StatShowsTheRatesUntilItsFirstText) {
    const MachineFolder folder("cpu 0 idle 1\nstat at 5 b");
    folder.Write("b", "second\n");
    Load(folder);
    EXPECT_EQ(Content("/proc/stat"), "cpu  0 0 0 1000\ncpu0 0 0 0 1000\n");
    (void)machine.Sleep(5);
    EXPECT_EQ(Content("/proc/stat"), "second\n");
}

TEST_F(InventoryStatementsTest, StatContinuesAfterItsLastText) {
    const MachineFolder folder("stat a\nstat at 2 b\nstat continues");
    folder.Write("a", "cpu  100 5\ncpu0 100 5\nprocs x\n");
    folder.Write("b", "cpu  120 4\ncpu0 120 4\nprocs x\n");
    Load(folder);
    EXPECT_EQ(Content("/proc/stat"), "cpu  100 5\ncpu0 100 5\nprocs x\n");
    (void)machine.Sleep(2);
    EXPECT_EQ(Content("/proc/stat"), "cpu  120 4\ncpu0 120 4\nprocs x\n");
    (void)machine.Sleep(4);
    EXPECT_EQ(Content("/proc/stat"), "cpu  160 2\ncpu0 160 2\nprocs x\n");
    (void)machine.Sleep(100);
    EXPECT_EQ(Content("/proc/stat"), "cpu  1160 0\ncpu0 1160 0\nprocs x\n");
}

TEST_F(InventoryStatementsTest, StatWithOtherWordsStaysAsItIs) {
    const MachineFolder folder("stat a\nstat at 1 b\nstat continues");
    folder.Write("a", "cpu 1\n");
    folder.Write("b", "cpu 2\nmore 3\n");
    Load(folder);
    (void)machine.Sleep(5);
    EXPECT_EQ(Content("/proc/stat"), "cpu 2\nmore 3\n");
}

TEST_F(InventoryStatementsTest, StatWithMoreOrOtherPartsStaysAsItIs) {
    for (const auto& [before, last] : {std::pair<const char*, const char*>{"cpu 1 2", "cpu 3"},
                                       {"cpu 1", "cpu 3 4"},
                                       {"cpu one", "cpu 3"},
                                       {"cpu 1", "3 4"},
                                       {"cpu 99999999999999999999", "cpu 1"}}) {
        const MachineFolder folder("stat a\nstat at 1 b\nstat continues");
        folder.Write("a", before);
        folder.Write("b", last);
        sim::Machine described;
        LoadMachine(folder.path, described);
        (void)described.Sleep(5);
        EXPECT_EQ(described.GetStat().Text(described.Clock()), last) << before;
    }
}

TEST_F(InventoryStatementsTest, DriveShowsTheFilesOfItsFolderAlone) {
    const MachineFolder folder("drive hdc files c sectors 9\ndrive hdd files d");
    std::filesystem::create_directories(folder.path / "c");
    std::filesystem::create_directories(folder.path / "d");
    folder.Write("c/media", "disk");
    folder.Write("d/media", "cdrom\n");
    Load(folder);
    EXPECT_EQ(Content("/proc/ide/ide1/hdc/media"), "disk");
    EXPECT_EQ(Content("/proc/ide/ide1/hdc/capacity"), "error " + std::to_string(ENOENT));
    EXPECT_EQ(Content("/dev/hdc", 9999).size(), 9 * 512u);
    EXPECT_EQ(Content("/dev/hdd"), "error " + std::to_string(ENOMEDIUM));
    EXPECT_THAT(Complaint("drive hdc files nowhere"), HasSubstr("nowhere: No such file"));
    folder.Write("machine.txt", "drive hdc files c model \"x\"");
    EXPECT_EQ(Complaint(folder), "1: a drive has files or model, not both");
}

TEST_F(InventoryStatementsTest, MachineCanHaveTheFolderOfDrivesAndNone) {
    EXPECT_FALSE(machine.OpenDirectory({}, "/proc/ide")->Ok());
    Load("drive none");
    EXPECT_TRUE(machine.OpenDirectory({}, "/proc/ide")->Ok());
    EXPECT_FALSE(machine.OpenDirectory({}, "/proc/ide/ide0")->Ok());
}

// A text can come from a stranger's archive.
TEST_F(InventoryStatementsTest, TextOfFreeRunsNothingInTheShell) {
    const MachineFolder folder("free output");
    const std::string planted = (folder.path / "planted").string();
    const std::string text = "it's\nEND OF FREE\n}\n'; touch " + planted + "; $(touch " + planted +
                             ") `touch " + planted + "` \\' %s %n\n";
    folder.Write("output", text);
    Load(folder);
    const std::string command = machine.GetFreeProgram().DefineBefore("free");
    FILE* const pipe = popen(command.c_str(), "r");
    std::string printed;
    for (int c = 0; (c = std::fgetc(pipe)) != EOF;) printed += static_cast<char>(c);
    EXPECT_EQ(pclose(pipe), 0);
    EXPECT_EQ(printed, text);
    EXPECT_FALSE(std::filesystem::exists(planted));
    folder.Write("output", std::string("Mem: \0 1\n", 9));
    EXPECT_EQ(Complaint(folder), "1: what free prints has no byte 00");
}

TEST_F(InventoryStatementsTest, CommandThatStartsWithFreeRunsIt) {
    EXPECT_FALSE(machine.GetFreeProgram().IsRunBy("free")) << "it prints nothing yet";
    Load("free total 10 used 1");
    const sim::FreeProgram& free = machine.GetFreeProgram();
    for (const char* const command : {"free", "free -k", "free|awk 1"})
        EXPECT_TRUE(free.IsRunBy(command)) << command;
    for (const char* const command : {"", "df", "freedom", "/usr/bin/free"})
        EXPECT_FALSE(free.IsRunBy(command)) << command;
    EXPECT_FALSE(free.IsRunBy(nullptr));
}

TEST_F(InventoryStatementsTest, EmptyDescriptionHasOneIdleProcessorAndFreeMemory) {
    Load("memory 512M");
    EXPECT_EQ(Content("/proc/stat"), "cpu  0 0 0 100000\ncpu0 0 0 0 100000\n");
    EXPECT_THAT(machine.GetFreeProgram().DefineBefore("free"),
                HasSubstr("Mem:        524288          0"));
}

TEST_F(InventoryStatementsTest, FreePrintsItsDescribedText) {
    Load("free total 1000 used 250");
    EXPECT_THAT(machine.GetFreeProgram().DefineBefore("free"),
                HasSubstr("Mem:          1000        250        750"));
    const MachineFolder folder("free output");
    folder.Write("output", "Mem: 1 2 3");
    LoadMachine(folder.path, machine);
    EXPECT_THAT(machine.GetFreeProgram().DefineBefore("free"), HasSubstr("'Mem: 1 2 3\n'"));
}

TEST_F(InventoryStatementsTest, ImpossibleLoadIsRefused) {
    EXPECT_EQ(Complaint("cpu 0"), "1: the counter is missing");
    EXPECT_EQ(Complaint("cpu 0 user"), "1: the ticks a second is missing");
    EXPECT_THAT(Complaint("cpu 0 busy 1"), HasSubstr("\"busy\" is none of user"));
    EXPECT_EQ(Complaint("cpu 0 user 1 user 2"), "1: \"user\" is given twice");
    EXPECT_EQ(Complaint("cpu 0 user 1\ncpu 0 user 1"), "2: the processor 0 was given already");
    EXPECT_EQ(Complaint("free total 10 used 11"), "1: the used memory 11 is above 10");
    EXPECT_EQ(Complaint("free total 10 used 1\nfree total 10 used 1"),
              "2: what free prints was given already");
    EXPECT_EQ(Complaint("free total 10"), "1: the word \"used\" is missing");
    EXPECT_THAT(Complaint("stat nothing"), HasSubstr("nothing: No such file"));
    const MachineFolder folder("stat a\nstat at 0 a");
    folder.Write("a", "text");
    EXPECT_EQ(Complaint(folder), "2: the text from second 0 on was given already");
}

}  // namespace
