// SPDX-License-Identifier: MIT
//
// The drive inventory of files of any length and with any last byte: nothing outside the fields is
// written, and texts end within theirs. Each call opens real folders, so not every byte is tried in
// every place.
#include <cstring>

#include "storage/StorageTest.h"
#include "support/GuardedRecord.h"

namespace {

constexpr std::size_t kFieldSize = 64;

// The text that a file's content makes: at most 64 bytes up to a zero byte, less one line feed.
std::string TextOf(const std::string& content) {
    std::string text = content.substr(0, kFieldSize);
    text = text.c_str();
    if (!text.empty() && text.back() == '\n') text.pop_back();
    return text.substr(0, kFieldSize - 1);
}

struct HostileFile {
    const char* name;
    const char* text;  // repeated up to the longest content
};

class HostileFilesTest : public StorageTest, public ::testing::WithParamInterface<HostileFile> {
protected:
    HostileFilesTest() : drive(sim::MakeDisk("Model", 1000, "1")) {
        drive.image.reset();
        for (char* field : {marked.info.driveArray[0].type, marked.info.driveArray[0].size,
                            marked.info.driveArray[0].model})
            std::strcpy(field, "before");
        box = marked;
        while (usual.size() < kFieldSize + 1) usual += GetParam().text;
        usual.resize(kFieldSize + 1);
    }

    void ReadWith(const std::string& content) {
        drive.files[GetParam().name] = content;
        Put('a', drive);
        std::memcpy(&box, &marked, kAfterFirstEntry);
        GetStorageInfo(&box.info);
        server.GetLog().Clear();
        ASSERT_NO_FATAL_FAILURE(CheckRecord(content));
    }

    void CheckRecord(const std::string& content) {
        const std::string file = GetParam().name;
        const DriveInfo& entry = box.info.driveArray[0];
        ASSERT_EQ(box.info.quantityIDE, file != "media" || TextOf(content) == "disk" ? 1 : 0);
        ASSERT_TRUE(Terminated(entry.type, kFieldSize) && Terminated(entry.size, kFieldSize) &&
                    Terminated(entry.model, kFieldSize));
        if (file == "model" && !content.empty()) {
            ASSERT_EQ(entry.model, TextOf(content));
        }
        if (file == "media" && box.info.quantityIDE == 0 && !content.empty()) {
            ASSERT_EQ(entry.type, TextOf(content));
        }
        ASSERT_LE(std::strlen(entry.size), 12u);
        const DriveInfo& before = marked.info.driveArray[0];
        ASSERT_EQ(entry.isRaid, before.isRaid);
        ASSERT_EQ(entry.driveOrder, before.driveOrder);
        ASSERT_EQ(std::memcmp(entry.SerialNo, before.SerialNo, 2 * kFieldSize), 0);
        ASSERT_EQ(std::memcmp(reinterpret_cast<const char*>(&box) + kAfterFirstEntry,
                              reinterpret_cast<const char*>(&marked) + kAfterFirstEntry,
                              sizeof box - kAfterFirstEntry),
                  0);
    }

    static constexpr std::size_t kAfterFirstEntry =
        offsetof(StorageInformation, driveArray) + sizeof(DriveInfo);

    sim::IdeDrive drive;
    std::string usual;
    GuardedRecord<StorageInformation> marked = Marked<StorageInformation>();
    GuardedRecord<StorageInformation> box = marked;
};

TEST_P(HostileFilesTest, AnyLengthAndLastByteStaysInTheField) {
    ASSERT_NO_FATAL_FAILURE(ReadWith(""));
    for (std::size_t length = 1; length <= usual.size(); ++length)
        for (const char last : {'\0', '\n', '\xFF'}) {
            std::string content = usual.substr(0, length);
            content.back() = last;
            ASSERT_NO_FATAL_FAILURE(ReadWith(content)) << length << " " << int{last};
        }
}

TEST_P(HostileFilesTest, AnyLastByteOfAFullFieldStaysInTheField) {
    std::string content = usual.substr(0, kFieldSize);
    for (int value = 0; value < 0x100; ++value) {
        content.back() = static_cast<char>(value);
        ASSERT_NO_FATAL_FAILURE(ReadWith(content)) << value;
    }
}

INSTANTIATE_TEST_SUITE_P(Files, HostileFilesTest,
                         ::testing::Values(HostileFile{"media", "disk"},
                                           HostileFile{"model", "ST340014A "},
                                           HostileFile{"capacity", "78165360"}),
                         [](const auto& file) { return std::string(file.param.name); });

}  // namespace
