// SPDX-License-Identifier: MIT
//
// The statements about IDE drives: drive, entry, ide.

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

#include "simulator/description/MachineDraft.h"
#include "simulator/description/RegularFile.h"
#include "simulator/description/SectorText.h"

namespace sim {
namespace {

constexpr std::uint32_t kMaxNumber = 0xFFFFFFFF;

char TakeDriveLetter(MachineLine& line) {
    const std::string name = line.TakeWord("the drive");
    if (name.size() != 3 || !name.starts_with("hd") || name[2] < 'a' || name[2] > 'd')
        line.Fail("the drive \"" + name + "\" is none of hda to hdd");
    return name[2];
}

DriveDraft& AddDrive(MachineDraft& draft, char letter, const MachineLine& line) {
    const auto [drive, fresh] = draft.drives.try_emplace(letter, DriveDraft{line});
    if (!fresh)
        line.Fail(std::string("the drive hd") + letter + " was given in line " +
                  std::to_string(drive->second.line.LineNumber()));
    return drive->second;
}

void ReadIdentity(MachineLine& line, const MachineDraft& draft, IdeDrive& drive) {
    const Bytes bytes = draft.Capture(line);
    DriveIdentity identity;
    if (bytes.size() != identity.size()) line.Fail("an identity block has 512 bytes");
    std::copy(bytes.begin(), bytes.end(), identity.begin());
    drive.identity = identity;
}

void ReadSectorDump(MachineLine& line, const MachineDraft& draft, DriveDraft& drive) {
    const Bytes bytes = draft.Capture(line);
    try {
        drive.sectors = ReadSectorText({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    } catch (const std::exception& error) {
        line.Fail(error.what());
    }
}

void ReadDriveOption(const std::string& option, MachineLine& line, const MachineDraft& draft,
                     DriveDraft& drive, DriveTexts& texts) {
    if (option == "media") {
        drive.drive.files["media"] = line.TakeText("the media") + "\n";
    } else if (option == "model") {
        texts.model = line.TakeText("the model");
        drive.drive.files["model"] = texts.model + "\n";
    } else if (option == "serial") {
        texts.serial = line.TakeText("the serial number");
    } else if (option == "firmware") {
        texts.firmware = line.TakeText("the firmware version");
    } else if (option == "sectors") {
        drive.size = line.TakeNumber("the number of sectors", kMaxNumber);
        drive.drive.files["capacity"] = std::to_string(*drive.size) + "\n";
    } else if (option == "identity") {
        ReadIdentity(line, draft, drive.drive);
    } else if (option == "image") {
        drive.image = draft.CaptureFile(line);
    } else if (option == "dump") {
        ReadSectorDump(line, draft, drive);
    } else {
        line.Fail("\"" + option +
                  "\" is none of media, model, serial, firmware, sectors, identity, image, dump");
    }
}

void ReadDrive(MachineLine& line, MachineDraft& draft) {
    const char letter = TakeDriveLetter(line);
    DriveDraft& drive = AddDrive(draft, letter, line);
    drive.drive.files["media"] = "disk\n";
    DriveTexts texts;
    std::set<std::string> seen;
    while (line.HasMore()) {
        const std::string option = line.TakeWord("the option");
        if (!seen.insert(option).second) line.Fail("\"" + option + "\" is given twice");
        ReadDriveOption(option, line, draft, drive, texts);
    }
    if (seen.contains("image") && seen.contains("dump"))
        line.Fail("a drive has an image or a dump, not both");
    if (!seen.contains("sectors") && !seen.contains("image"))
        line.Fail("a drive has a number of sectors or an image");
    if (!drive.drive.identity)
        drive.drive.identity = MakeIdentity(texts.serial, texts.firmware, texts.model);
}

void ReadEntry(MachineLine& line, MachineDraft& draft) {
    const char letter = TakeDriveLetter(line);
    const std::uint32_t sector = line.TakeNumber("the boot record's sector", kMaxNumber);
    const std::uint32_t number = line.TakeNumber("the entry's number", 4);
    if (number == 0) line.Fail("a partition table has the entries 1 to 4");
    TableEntry entry;
    entry.type = line.TakeByte("the type");
    entry.start = line.TakeNumber("the start", kMaxNumber);
    entry.sectors = line.TakeNumber("the number of sectors", kMaxNumber);
    draft.entries.push_back({letter, sector, number, entry, line});
}

// A folder with a copy of a machine's /proc/ide: ide0/hda/media and so on.
void ReadIde(MachineLine& line, MachineDraft& draft) {
    const std::filesystem::path folder = draft.CaptureFile(line);
    bool found = false;
    for (char letter = 'a'; letter <= 'd'; ++letter) {
        const std::filesystem::path drive =
            folder / ("ide" + std::to_string((letter - 'a') / 2)) / (std::string("hd") + letter);
        if (!std::filesystem::is_directory(drive)) continue;
        found = true;
        IdeDrive& target = AddDrive(draft, letter, line).drive;
        for (const auto& file : std::filesystem::directory_iterator(drive)) {
            if (IsNotRegular(file.path())) line.Fail(file.path().string() + ": " + kNotRegular);
            std::ifstream stream(file.path(), std::ios::binary);
            std::ostringstream text;
            text << stream.rdbuf();
            target.files[file.path().filename().string()] = text.str();
        }
    }
    if (!found) line.Fail(folder.string() + ": holds no ide0/hda to ide1/hdd");
}

constexpr MachineStatement kDriveStatements[] = {
    {"drive", ReadDrive}, {"entry", ReadEntry}, {"ide", ReadIde}};

}  // namespace

std::span<const MachineStatement> DriveStatements() {
    return kDriveStatements;
}

}  // namespace sim
