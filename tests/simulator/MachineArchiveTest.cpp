// SPDX-License-Identifier: MIT
//
// Machines in archives: what is accepted, and how a stranger's archive cannot reach other files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "MachineFolder.h"
#include "archive/Gzip.h"
#include "archive/Tar.h"
#include "simulator/description/MachineFile.h"
#include "simulator/machine/Machine.h"
#include "tests/support/TarEntry.h"

namespace {

using testing::HasSubstr;

class MachineArchive {
public:
    explicit MachineArchive(const std::vector<TarEntry>& entries) {
        Write(archive::Compress(TarOf(entries)));
    }
    ~MachineArchive() { std::filesystem::remove(path); }
    MachineArchive(const MachineArchive&) = delete;
    MachineArchive& operator=(const MachineArchive&) = delete;

    void Write(const archive::Bytes& bytes) const {
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }

    // What is wrong with it, without its own path.
    std::string Complaint() const {
        sim::Machine machine;
        try {
            sim::LoadMachine(path, machine);
        } catch (const sim::MachineError& error) {
            const std::string text = error.what();
            EXPECT_THAT(text, testing::StartsWith(path.string()));
            return text.substr(path.string().size());
        }
        return "";
    }

    const std::filesystem::path path = std::filesystem::temp_directory_path() /
                                       ("machine-" + std::to_string(getpid()) + ".tar.gz");
};

std::string ComplaintAbout(const std::string& description) {
    return MachineArchive({{"machine.txt", description}, {"here", "bytes"}}).Complaint();
}

std::uint8_t ByteAt(const sim::Machine& machine, std::uint64_t address) {
    std::uint8_t byte = 0;
    EXPECT_TRUE(const_cast<sim::Machine&>(machine).GetMemory().Read(address, {&byte, 1}));
    return byte;
}

TEST(MachineArchiveTest, CapturesOfTheArchiveAreRead) {
    for (const std::string folder : {"", "./", "server/", "./server/"}) {
        const MachineArchive archive(
            {{folder + "machine.txt", "pages 0x1000 sub/a\n"}, {folder + "sub/a", "\x5A"}});
        sim::Machine machine;
        sim::LoadMachine(archive.path, machine);
        EXPECT_EQ(ByteAt(machine, 0x1000), 0x5A) << folder;
    }
}

TEST(MachineArchiveTest, FilesAndImageOfADriveAreRead) {
    const MachineArchive archive({{"machine.txt", "drive hda image disk\nide tree\n"},
                                  {"disk", std::string(1024, 'd')},
                                  {"tree/ide0/hdb/media", "cdrom\n"}});
    EXPECT_EQ(archive.Complaint(), "");
    sim::Machine machine;
    sim::LoadMachine(archive.path, machine);
    EXPECT_TRUE(machine.OpenDirectory("", "/proc/ide/ide0/hdb")->Ok());
    const int disk = static_cast<int>(machine.Open("", "/dev/hda", 0)->value);
    char bytes[2048];
    EXPECT_EQ(::pread(disk, bytes, sizeof bytes, 0), 1024);
    EXPECT_EQ(bytes[1023], 'd');
    (void)machine.Close("", disk);
}

TEST(MachineArchiveTest, SlashesAfterTheNameOfAFolderChangeNothing) {
    for (const std::string statement :
         {"ide tree/", "ide tree//", "drive hdb files tree/ide0/hdb/"}) {
        const MachineArchive archive(
            {{"machine.txt", statement + "\n"}, {"tree/ide0/hdb/media", "cdrom\n"}});
        sim::Machine machine;
        sim::LoadMachine(archive.path, machine);
        EXPECT_TRUE(machine.OpenDirectory("", "/proc/ide/ide0/hdb")->Ok()) << statement;
        const auto media = machine.Open("", "/proc/ide/ide0/hdb/media", 0);
        EXPECT_EQ(media->error, 0) << statement;
        (void)machine.Close("", static_cast<int>(media->value));
    }
    EXPECT_THAT(ComplaintAbout("ide /\n"), HasSubstr(": No such file or directory"));
}

TEST(MachineArchiveTest, FilesOfADriveAreThoseInItsFolderItself) {
    const MachineArchive archive({{"machine.txt", "drive hdb files b\n"},
                                  {"b/media", "cdrom\n"},
                                  {"b/settings/speed", "fast\n"}});
    sim::Machine machine;
    sim::LoadMachine(archive.path, machine);
    const auto media = machine.Open("", "/proc/ide/ide0/hdb/media", 0);
    EXPECT_EQ(media->error, 0);
    (void)machine.Close("", static_cast<int>(media->value));
    EXPECT_EQ(machine.Open("", "/proc/ide/ide0/hdb/speed", 0)->error, ENOENT);
    EXPECT_EQ(machine.Open("", "/proc/ide/ide0/hdb/settings/speed", 0)->error, ENOENT);
}

TEST(MachineArchiveTest, NamesThatAreNotInTheArchiveReachNoFile) {
    for (const std::string name : {"/etc/passwd", "../x", "sub/../here", "./here", "missing"}) {
        for (const std::string statement :
             {"pages 0x1000 ", "segment ", "smbios dump ", "sdr ", "inventory ", "pci capture ",
              "drive hda image ", "drive hda sectors 1 identity ", "drive hda sectors 1 dump ",
              "stat ", "free "})
            EXPECT_THAT(ComplaintAbout("bmc kcs\n" + statement + name + "\n"),
                        HasSubstr("/machine.txt:2: "))
                << statement << name;
        EXPECT_THAT(ComplaintAbout("pages 0x1000 " + name + "\n"),
                    HasSubstr(": there is no " + name + " in this archive"));
    }
    EXPECT_THAT(ComplaintAbout("ide /proc\n"), HasSubstr("/machine.txt:1: /proc: No such file"));
    EXPECT_THAT(ComplaintAbout("drive hda files ../..\n"), HasSubstr("../..: No such file"));
}

TEST(MachineArchiveTest, ControlFileIsRefused) {
    EXPECT_EQ(ComplaintAbout("bmc kcs\ncontrol here\n"),
              "/machine.txt:2: a machine in an archive has no control file");
}

TEST(MachineArchiveTest, HostileEntryIsNamed) {
    EXPECT_EQ(MachineArchive({{"machine.txt"}, {"../x"}}).Complaint(),
              ": ../x: the path leads out of the archive");
    EXPECT_EQ(MachineArchive({{"machine.txt"}, {"x", "", '2'}}).Complaint(), ": x: is a link");
    EXPECT_EQ(MachineArchive({{"a/machine.txt"}, {"b/x"}}).Complaint(),
              ": b/x: lies outside of the machine's folder a/");
}

TEST(MachineArchiveTest, FilesThatAreNoArchiveAreRefused) {
    EXPECT_EQ(MachineArchive({{"other"}}).Complaint(), ": holds no machine.txt");
    EXPECT_EQ(MachineArchive({}).Complaint(), ": holds no machine.txt");
    const MachineArchive archive({});
    archive.Write({'t', 'e', 'x', 't'});
    EXPECT_EQ(archive.Complaint(), ": neither a machine's folder nor an archive of one (.tar.gz)");
    archive.Write({0x1F, 0x8B, 8});
    EXPECT_EQ(archive.Complaint(), ": it is no whole gzip file");
    archive.Write(archive::Compress(archive::Bytes(100, 'x')));
    EXPECT_EQ(archive.Complaint(), ": the archive ends too early");
    std::filesystem::resize_file(archive.path, archive::kMaxGzipSize + 1);
    EXPECT_EQ(archive.Complaint(), ": larger than 16777216 bytes");
}

TEST(MachineArchiveTest, BombIsRefused) {
    const MachineArchive archive({});
    archive.Write(archive::Compress(archive::Bytes(archive::kMaxTarSize + 512)));
    EXPECT_EQ(archive.Complaint(), ": it unpacks to more than 41943040 bytes");
}

TEST(MachineArchiveTest, FileThatIsNamedAgainAndAgainIsRefused) {
    const TarEntry large{"large", std::string(archive::kMaxFileSize, 'x')};
    std::string description = "memory 4G\n";
    for (const char digit : {'1', '2', '3', '4'})
        description += std::string("pages 0x") + digit + "000000 large\n";
    EXPECT_EQ(MachineArchive({{"machine.txt", description}, large}).Complaint().substr(0, 15),
              "/machine.txt:5:");
    EXPECT_THAT(
        MachineArchive({{"machine.txt", description}, large}).Complaint(),
        HasSubstr(": the description takes more than 33554432 bytes of the archive's files"));
}

TEST(MachineArchiveTest, OverlapIsFoundAmongVeryManyPiecesOfMemory) {
    std::string description = "memory 4G\n";
    for (int i = 0; i < 20000; ++i) description += "pages " + std::to_string(i) + " byte\n";
    description += "pages 5 byte\n";
    EXPECT_EQ(MachineArchive({{"machine.txt", description}, {"byte", "x"}}).Complaint(),
              "/machine.txt:20002: these bytes overlap those of line 7");
}

}  // namespace
