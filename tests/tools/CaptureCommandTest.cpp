// SPDX-License-Identifier: MIT
//
// The command capture: what it writes, what it says, and what it refuses.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cctype>
#include <nlohmann/json.hpp>

#include "archive/Gzip.h"
#include "archive/Tar.h"
#include "tests/tools/FileText.h"
#include "tests/tools/RunTool.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Key;
using testing::Not;
using testing::StartsWith;

archive::Files FilesIn(const std::filesystem::path& file) {
    const std::string bytes = ReadFile(file);
    return archive::ReadTar(archive::Decompress(archive::Bytes(bytes.begin(), bytes.end())));
}

class CaptureCommandTest : public testing::Test {
protected:
    ToolRun Capture(const std::string& machine, std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {"capture", file_});
        options.insert(options.end(),
                       {"--machine",
                        machine.front() == '/' ? machine : TALVANE_SOURCE "/machines/" + machine});
        return RunTool(options);
    }

    const TemporaryFolder folder_;
    const std::string file_ = folder_.Path() / "box.tar.gz";
};

TEST_F(CaptureCommandTest, ArchiveHoldsTheFormatsOfTheField) {
    const ToolRun run = Capture("full-server");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out + run.err, "");
    const archive::Files files = FilesIn(file_);
    EXPECT_THAT(
        files,
        ElementsAre(Key("machine/free.txt"), Key("machine/fru.bin"), Key("machine/hda.identity"),
                    Key("machine/hda.sectors"), Key("machine/ide/ide0/hda/capacity"),
                    Key("machine/ide/ide0/hda/media"), Key("machine/ide/ide0/hda/model"),
                    Key("machine/ide/ide0/hdb/capacity"), Key("machine/ide/ide0/hdb/media"),
                    Key("machine/ide/ide0/hdb/model"), Key("machine/machine.txt"),
                    Key("machine/pci.txt"), Key("machine/sdr.bin"), Key("machine/smbios.bin"),
                    Key("machine/stat-0.txt"), Key("machine/stat-1.txt")));
    EXPECT_THAT(FileText(files, "machine/smbios.bin"), StartsWith("_SM_"));
    EXPECT_THAT(FileText(files, "machine/pci.txt"),
                StartsWith("00:00.0 0600: 8086:2540 (rev 03)\n00: 86 80 40 25 00 00 90 20 "));
    EXPECT_THAT(FileText(files, "machine/machine.txt"),
                testing::ContainsRegex("^# Captured by talvane [0-9.]+ on "
                                       "20[0-9-]+T[0-9:]+Z\\.\n# Kernel: Linux "));
    EXPECT_EQ(FileText(files, "machine/fru.bin"),
              ReadFile(TALVANE_SOURCE "/machines/full-server/inventory.fru"));
    struct stat status {};
    ASSERT_EQ(stat(file_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777u, 0600u);
}

TEST_F(CaptureCommandTest, SourcesThatCannotBeReadAreNamedAndTheRestIsWritten) {
    const ToolRun run = Capture("qemu-4-sockets");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err,
              "talvane: cannot open /dev/ipmi: No such file or directory (no BMC, or its driver is "
              "not loaded)\n"
              "talvane: cannot open /proc/ide: No such file or directory (no IDE controller, or a "
              "kernel from 5.14 on)\n");
    const archive::Files files = FilesIn(file_);
    EXPECT_THAT(files, testing::Contains(Key("machine/smbios.bin")));
    EXPECT_THAT(FileText(files, "machine/machine.txt"),
                HasSubstr("# Not read: cannot open /dev/ipmi: "));
}

TEST_F(CaptureCommandTest, DisksThatCannotBeOpenedAreNamedInOneLine) {
    const MachineFolder machine(
        "drive hda sectors 1000\n"
        "drive hdb sectors 1000\n"
        "without /dev/hda EACCES\n"
        "without /dev/hdb EACCES\n"
        "bmc kcs\n"
        "sensor 1 \"T\"\n"
        "smbios version 2.3\n");
    const ToolRun run = Capture(machine.Path());
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "talvane: cannot open /dev/hda: Permission denied (run as root)\n");
    const std::string description = FileText(FilesIn(file_), "machine/machine.txt");
    EXPECT_THAT(description, HasSubstr("# Not read: cannot open /dev/hda: Permission denied (run "
                                       "as root)\nsmbios"));
    EXPECT_THAT(description, HasSubstr("without /dev/hda EACCES\nwithout /dev/hdb EACCES\n"));
}

TEST_F(CaptureCommandTest, RefusesWhatItCannotWrite) {
    const std::string machine = TALVANE_SOURCE "/machines/no-smbios";
    const auto capture = [&](const std::string& file) {
        return RunTool({"capture", file, "--machine", machine});
    };
    const std::string nowhere = folder_.Path() / "no" / "box.tar.gz";
    EXPECT_EQ(capture(nowhere).err,
              "talvane: cannot write " + nowhere + ": No such file or directory\n");
    EXPECT_EQ(capture(nowhere).status, 2);
    EXPECT_EQ(capture("/dev/null").err, "talvane: cannot write /dev/null: not a regular file\n");
    EXPECT_EQ(capture("/dev/null").status, 2);
    EXPECT_EQ(capture(folder_.Path()).status, 2);
    EXPECT_TRUE(std::filesystem::is_empty(folder_.Path()));
}

TEST_F(CaptureCommandTest, RefusesACommandLineThatMakesNoSense) {
    const ToolRun without = RunTool({"capture"});
    EXPECT_EQ(without.status, 2);
    EXPECT_THAT(without.err, HasSubstr("FILE is required"));
    EXPECT_THAT(RunTool({"capture", ""}).err, HasSubstr("FILE: an empty name"));
    EXPECT_THAT(RunTool({"capture", "-"}).err, HasSubstr("FILE: an archive goes into a file"));
    const ToolRun json = RunTool({"capture", file_, "--json"});
    EXPECT_EQ(json.status, 2);
    EXPECT_THAT(json.err, HasSubstr("capture excludes --json"));
}

TEST_F(CaptureCommandTest, ShowsItsProgressOnATerminalAlone) {
    const std::string shown =
        RunToolOnTerminal({"capture", file_, "--machine", TALVANE_SOURCE "/machines/full-server"});
    EXPECT_EQ(shown,
              "\x1B[KReading SMBIOS ...\x1B[KReading the BMC ...\x1B[KReading PCI functions ..."
              "\x1B[KReading drives ...\x1B[KReading the load ...\x1B[K");
}

TEST_F(CaptureCommandTest, StrangersArchiveIsRefusedAndItsEntryNamed) {
    const archive::Bytes bytes =
        archive::Compress(archive::WriteTar({{"machine.txt", {}}, {"a/../../x", {}}}, 0));
    WriteFile(file_, std::string(bytes.begin(), bytes.end()));
    const ToolRun run = RunTool({"board", "--machine", file_});
    EXPECT_EQ(run.err, "talvane: " + file_ + ": a/../../x: the path leads out of the archive\n");
    EXPECT_EQ(run.status, 2);
}

// Texts of JSON members whose names speak of a secret.
void CollectSecrets(const nlohmann::json& json, const std::string& name,
                    std::set<std::string>& secrets) {
    std::string lower;
    for (const char c : name) lower += static_cast<char>(std::tolower(c));
    const bool isSecret = lower.find("serial") != std::string::npos ||
                          lower.find("asset") != std::string::npos ||
                          lower.find("uuid") != std::string::npos;
    if (json.is_string() && isSecret) secrets.insert(json.get<std::string>());
    if (json.is_array())
        for (const auto& element : json) CollectSecrets(element, name, secrets);
    if (json.is_object())
        for (const auto& [member, value] : json.items()) CollectSecrets(value, member, secrets);
}

class RedactedCaptureTest : public CaptureCommandTest,
                            public testing::WithParamInterface<const char*> {};

// Those that the report does not show, as the descriptions have them.
const std::map<std::string, std::vector<std::string>> kOtherSecrets = {
    {"full-server",
     {"KB27A0440187", "VMC-0099120", "VM27-000193", "EP500-00412", "BW15-7730", "MD40-0012283"}},
    {"qemu-4-sockets", {"HS800-0042", "QB4-00077", "Rack-7", "HX-1", "M0001"}},
    {"qemu-legacy", {"M100-3"}},
};

TEST_P(RedactedCaptureTest, NoOriginalValueIsInTheArchive) {
    const std::string machine = TALVANE_SOURCE "/machines/" + std::string(GetParam());
    std::set<std::string> secrets;
    CollectSecrets(nlohmann::json::parse(RunTool({"report", "--json", "--machine", machine}).out),
                   "", secrets);
    if (const auto others = kOtherSecrets.find(GetParam()); others != kOtherSecrets.end())
        secrets.insert(others->second.begin(), others->second.end());
    EXPECT_NE(Capture(GetParam()).status, 2);
    const archive::Files plain = FilesIn(file_);
    EXPECT_NE(Capture(GetParam(), {"--redact"}).status, 2);
    const archive::Files redacted = FilesIn(file_);
    std::string all;
    std::string allPlain;
    for (const auto& [name, bytes] : redacted) all.append(bytes.begin(), bytes.end());
    for (const auto& [name, bytes] : plain) allPlain.append(bytes.begin(), bytes.end());
    for (const std::string& secret : secrets) {
        constexpr std::size_t kLeast = 4;  // a shorter one is part of other words
        if (secret.size() < kLeast) continue;
        EXPECT_EQ(all.find(secret), std::string::npos) << secret;
    }
    if (const auto others = kOtherSecrets.find(GetParam()); others != kOtherSecrets.end()) {
        for (const std::string& secret : others->second)
            EXPECT_NE(allPlain.find(secret), std::string::npos) << secret;
    }
    // Nothing changes its place.
    ASSERT_EQ(redacted.size(), plain.size());
    for (const auto& [name, bytes] : plain) {
        if (name == "machine/machine.txt") continue;
        EXPECT_EQ(redacted.at(name).size(), bytes.size()) << name;
    }
    const ToolRun replay = RunTool({"report", "--machine", file_});
    EXPECT_NE(replay.status, 2) << replay.err;
}

INSTANTIATE_TEST_SUITE_P(Machines, RedactedCaptureTest,
                         testing::Values("failing-server", "full-server", "legacy-dmi", "no-smbios",
                                         "qemu-4-sockets", "qemu-high-table", "qemu-legacy",
                                         "qemu-small", "tired-bmc"),
                         [](const auto& machine) {
                             std::string name = machine.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

}  // namespace
