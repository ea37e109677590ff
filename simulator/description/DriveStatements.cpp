// SPDX-License-Identifier: MIT
//
// The statements about IDE drives: drive, entry, ide.

#include <algorithm>
#include <filesystem>
#include <set>

#include "simulator/description/MachineDraft.h"
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

// A folder's name without slashes at its end: those of the files below it follow after one slash,
// and in an archive they are looked up as they are.
std::string TakeFolder(MachineLine& line, const char* what) {
    std::string folder = line.TakeName(what);
    while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
    return folder;
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

void ReadImage(MachineLine& line, const MachineDraft& draft, DriveDraft& drive) {
    const std::string name = line.TakeName("the file name");
    if (draft.files.IsArchive()) {
        drive.archivedImage = draft.CaptureNamed(name, line);
        return;
    }
    drive.image = draft.files.PathOf(name);
    std::error_code error;
    (void)std::filesystem::status(drive.image, error);
    if (error) line.Fail(drive.image.string() + ": " + error.message());
}

void RequireThere(const std::string& folder, const MachineLine& line, const MachineDraft& draft) {
    const std::filesystem::path path = draft.files.PathOf(folder);
    const bool isInFiles = !draft.files.IsArchive() && std::filesystem::exists(path);
    if (!isInFiles && !draft.files.HasFolder(folder))
        line.Fail(path.string() + ": No such file or directory");
}

// The files in a copy of a drive's folder in /proc/ide.
std::map<std::string, std::string> FilesOfDrive(const std::string& folder, const MachineLine& line,
                                                const MachineDraft& draft) {
    RequireThere(folder, line, draft);
    std::map<std::string, std::string> files;
    try {
        for (const std::string& name : draft.files.List(folder)) {
            const Bytes bytes = draft.files.Read(folder + "/" + name);
            files[name] = std::string(bytes.begin(), bytes.end());
        }
    } catch (const std::exception& error) {
        line.Fail(error.what());
    }
    return files;
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
        if (!drive.hasOwnFiles) drive.drive.files["capacity"] = std::to_string(*drive.size) + "\n";
    } else if (option == "identity") {
        ReadIdentity(line, draft, drive.drive);
    } else if (option == "image") {
        ReadImage(line, draft, drive);
    } else if (option == "dump") {
        ReadSectorDump(line, draft, drive);
    } else if (option == "files") {
        drive.drive.files = FilesOfDrive(TakeFolder(line, "the folder"), line, draft);
        drive.hasOwnFiles = true;
    } else {
        line.Fail("\"" + option +
                  "\" is none of media, model, serial, firmware, sectors, identity, image, dump, "
                  "files");
    }
}

// With its own files a drive is exactly what they, the identity block and the sectors say.
void CompleteDrive(const std::set<std::string>& options, const MachineLine& line,
                   const DriveTexts& texts, DriveDraft& drive) {
    if (options.contains("image") && options.contains("dump"))
        line.Fail("a drive has an image or a dump, not both");
    if (drive.hasOwnFiles) {
        for (const char* const option : {"media", "model", "serial", "firmware"})
            if (options.contains(option))
                line.Fail(std::string("a drive has files or ") + option + ", not both");
        return;
    }
    if (!options.contains("sectors") && !options.contains("image"))
        line.Fail("a drive has a number of sectors or an image");
    if (!drive.drive.identity)
        drive.drive.identity = MakeIdentity(texts.serial, texts.firmware, texts.model);
}

void ReadDrive(MachineLine& line, MachineDraft& draft) {
    if (line.TakeIf("none")) {
        draft.isWithoutDrives = true;
        return;
    }
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
    CompleteDrive(seen, line, texts, drive);
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
    const std::string folder = TakeFolder(line, "the file name");
    RequireThere(folder, line, draft);
    bool found = false;
    for (char letter = 'a'; letter <= 'd'; ++letter) {
        const std::string drive =
            folder + "/ide" + std::to_string((letter - 'a') / 2) + "/hd" + letter;
        if (!draft.files.HasFolder(drive)) continue;
        found = true;
        AddDrive(draft, letter, line).drive.files = FilesOfDrive(drive, line, draft);
    }
    if (!found) line.Fail(draft.files.PathOf(folder).string() + ": holds no ide0/hda to ide1/hdd");
}

constexpr MachineStatement kDriveStatements[] = {
    {"drive", ReadDrive}, {"entry", ReadEntry}, {"ide", ReadIde}};

}  // namespace

std::span<const MachineStatement> DriveStatements() {
    return kDriveStatements;
}

}  // namespace sim
