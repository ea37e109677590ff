// SPDX-License-Identifier: MIT
//
// The statements about IDE drives: drive, entry, ide.

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

#include "simulator/description/MachineDraft.h"
#include "simulator/description/SectorText.h"

namespace sim {
namespace {

constexpr std::uint32_t kMost = 0xFFFFFFFF;

char driveLetter(MachineLine& line) {
    const std::string name = line.word("the drive");
    if (name.size() != 3 || !name.starts_with("hd") || name[2] < 'a' || name[2] > 'd')
        line.fail("the drive \"" + name + "\" is none of hda to hdd");
    return name[2];
}

DriveDraft& addDrive(MachineDraft& draft, char letter, const MachineLine& line) {
    const auto [drive, fresh] = draft.drives.try_emplace(letter, DriveDraft{line});
    if (!fresh)
        line.fail(std::string("the drive hd") + letter + " was given in line " +
                  std::to_string(drive->second.line.number()));
    return drive->second;
}

void readIdentity(MachineLine& line, const MachineDraft& draft, IdeDrive& drive) {
    const Bytes bytes = draft.capture(line);
    DriveIdentity identity;
    if (bytes.size() != identity.size()) line.fail("an identity block has 512 bytes");
    std::copy(bytes.begin(), bytes.end(), identity.begin());
    drive.identity = identity;
}

void readDump(MachineLine& line, const MachineDraft& draft, DriveDraft& drive) {
    const Bytes bytes = draft.capture(line);
    try {
        drive.sectors = readSectorText({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    } catch (const std::exception& error) {
        line.fail(error.what());
    }
}

void readOption(const std::string& option, MachineLine& line, const MachineDraft& draft,
                DriveDraft& drive, DriveTexts& texts) {
    if (option == "media") {
        drive.drive.files["media"] = line.text("the media") + "\n";
    } else if (option == "model") {
        texts.model = line.text("the model");
        drive.drive.files["model"] = texts.model + "\n";
    } else if (option == "serial") {
        texts.serial = line.text("the serial number");
    } else if (option == "firmware") {
        texts.firmware = line.text("the firmware version");
    } else if (option == "sectors") {
        drive.size = line.number("the number of sectors", kMost);
        drive.drive.files["capacity"] = std::to_string(*drive.size) + "\n";
    } else if (option == "identity") {
        readIdentity(line, draft, drive.drive);
    } else if (option == "image") {
        drive.image = draft.captureFile(line);
    } else if (option == "dump") {
        readDump(line, draft, drive);
    } else {
        line.fail("\"" + option +
                  "\" is none of media, model, serial, firmware, sectors, identity, image, dump");
    }
}

void readDrive(MachineLine& line, MachineDraft& draft) {
    const char letter = driveLetter(line);
    DriveDraft& drive = addDrive(draft, letter, line);
    drive.drive.files["media"] = "disk\n";
    DriveTexts texts;
    std::set<std::string> seen;
    while (line.more()) {
        const std::string option = line.word("the option");
        if (!seen.insert(option).second) line.fail("\"" + option + "\" is given twice");
        readOption(option, line, draft, drive, texts);
    }
    if (seen.contains("image") && seen.contains("dump"))
        line.fail("a drive has an image or a dump, not both");
    if (!seen.contains("sectors") && !seen.contains("image"))
        line.fail("a drive has a number of sectors or an image");
    if (!drive.drive.identity)
        drive.drive.identity = makeIdentity(texts.serial, texts.firmware, texts.model);
}

void readEntry(MachineLine& line, MachineDraft& draft) {
    const char letter = driveLetter(line);
    const std::uint32_t sector = line.number("the boot record's sector", kMost);
    const std::uint32_t number = line.number("the entry's number", 4);
    if (number == 0) line.fail("a partition table has the entries 1 to 4");
    TableEntry entry;
    entry.type = line.byte("the type");
    entry.start = line.number("the start", kMost);
    entry.sectors = line.number("the number of sectors", kMost);
    draft.entries.push_back({letter, sector, number, entry, line});
}

// A folder with what lies below /proc/ide of a machine: ide0/hda/media and so on.
void readIde(MachineLine& line, MachineDraft& draft) {
    const std::filesystem::path folder = draft.captureFile(line);
    bool found = false;
    for (char letter = 'a'; letter <= 'd'; ++letter) {
        const std::filesystem::path drive =
            folder / ("ide" + std::to_string((letter - 'a') / 2)) / (std::string("hd") + letter);
        if (!std::filesystem::is_directory(drive)) continue;
        found = true;
        IdeDrive& target = addDrive(draft, letter, line).drive;
        for (const auto& file : std::filesystem::directory_iterator(drive)) {
            std::ifstream stream(file.path(), std::ios::binary);
            std::ostringstream text;
            text << stream.rdbuf();
            target.files[file.path().filename().string()] = text.str();
        }
    }
    if (!found) line.fail(folder.string() + ": holds no ide0/hda to ide1/hdd");
}

constexpr MachineStatement kStatements[] = {
    {"drive", readDrive}, {"entry", readEntry}, {"ide", readIde}};

}  // namespace

std::span<const MachineStatement> driveStatements() {
    return kStatements;
}

}  // namespace sim
