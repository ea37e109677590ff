// SPDX-License-Identifier: MIT
//
// Checks each header before it believes it, and each size before it takes the bytes.

#include <algorithm>
#include <cstdio>
#include <optional>
#include <set>
#include <string_view>

#include "archive/Tar.h"
#include "archive/TarHeader.h"

namespace archive {
namespace {

using View = std::span<const std::uint8_t>;

// A name as a message shows it: in one line, and at most so long.
std::string Shown(std::string_view name) {
    constexpr std::size_t kMaxShown = 255;
    std::string text;
    for (const char c : name.substr(0, kMaxShown)) {
        char escaped[8];
        const auto byte = static_cast<unsigned char>(c);
        std::snprintf(escaped, sizeof escaped, "\\x%02X", byte);
        text += byte < 0x20 || byte >= 0x7F ? escaped : std::string(1, c);
    }
    return text;
}

[[noreturn]] void Refuse(std::string_view name, const std::string& why) {
    throw Error(Shown(name) + ": " + why);
}

std::string_view FieldOf(View header, TarField field) {
    const std::string_view bytes(reinterpret_cast<const char*>(header.data()) + field.at,
                                 field.size);
    return bytes.substr(0, bytes.find('\0'));
}

// Octal digits, with blanks before and after them. Nothing for other bytes, among them the binary
// numbers of GNU tar, which no file within the limits needs.
std::optional<std::size_t> NumberIn(View header, TarField field) {
    std::string_view digits = FieldOf(header, field);
    while (digits.starts_with(' ')) digits.remove_prefix(1);
    while (digits.ends_with(' ')) digits.remove_suffix(1);
    if (digits.empty() || digits.size() > 11) return std::nullopt;
    unsigned long long value = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '7') return std::nullopt;
        value = value * 8 + static_cast<unsigned>(digit - '0');
    }
    return static_cast<std::size_t>(std::min<unsigned long long>(value, SIZE_MAX));
}

bool HasMagic(View header) {
    constexpr std::string_view kPosix{"ustar\00000", 8};
    constexpr std::string_view kGnu{"ustar  ", 8};  // with its NUL
    const std::string_view magic(reinterpret_cast<const char*>(header.data()) + kTarMagic.at,
                                 kTarMagic.size);
    return magic == kPosix || magic == kGnu;
}

std::string FullName(View header) {
    std::string name(FieldOf(header, kTarName));
    const std::string_view prefix = FieldOf(header, kTarPrefix);
    const bool isPosix = header[kTarMagic.at + 5] == 0;  // GNU tar has other fields there
    return isPosix && !prefix.empty() ? std::string(prefix) + '/' + name : name;
}

// The path without "./" in front and '/' at its end; empty for the archive's own folder.
std::string CheckedPath(const std::string& name) {
    std::string_view path = name;
    if (path.starts_with('/')) Refuse(name, "the path is absolute");
    while (path.starts_with("./")) path.remove_prefix(2);
    if (path.ends_with('/')) path.remove_suffix(1);
    if (path == ".") return "";
    for (std::string_view rest = path; !rest.empty();) {
        const std::size_t end = std::min(rest.find('/'), rest.size());
        const std::string_view part = rest.substr(0, end);
        if (part == "..") Refuse(name, "the path leads out of the archive");
        if (part.empty() || part == ".") Refuse(name, "the path has an empty part");
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    const bool isPlain = std::all_of(path.begin(), path.end(), [](char c) {
        return static_cast<unsigned char>(c) >= 0x20 && c != 0x7F;
    });
    if (!isPlain) Refuse(name, "the path has control characters");
    return std::string(path);
}

constexpr char kFolder = '5';

void RefuseType(const std::string& name, char type) {
    switch (type) {
        case '1':
        case '2':
            Refuse(name, "is a link");
        case '3':
        case '4':
            Refuse(name, "is a device");
        case '6':
            Refuse(name, "is a FIFO");
        default:
            Refuse(name, "is neither a file nor a folder: type " + Shown({&type, 1}));
    }
}

class TarReader {
public:
    explicit TarReader(View tar) : rest_(tar) {}

    Files Read() {
        while (!IsAtEnd()) ReadEntry();
        RequireTree();
        return std::move(files_);
    }

private:
    View Take(std::size_t size) {
        const View taken = rest_.first(size);
        rest_ = rest_.subspan(size);
        return taken;
    }

    static bool IsZero(View bytes) {
        return std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte == 0; });
    }

    // A block of zeros ends the archive. What follows can only be more of them.
    bool IsAtEnd() const {
        const std::string after = last_.empty() ? "" : " after " + Shown(last_);
        if (rest_.size() < kTarBlock) throw Error("the archive ends too early" + after);
        if (!IsZero(rest_.first(kTarBlock))) return false;
        if (!IsZero(rest_)) throw Error("the archive goes on after its end" + after);
        return true;
    }

    void ReadEntry() {
        const View header = Take(kTarBlock);
        const std::string name = FullName(header);
        if (!HasMagic(header) || NumberIn(header, kTarChecksum) != TarChecksum(header))
            Refuse(name, "this is no header of a tar file, or it is damaged");
        last_ = name;
        if (++entries_ > kMaxEntries)
            Refuse(name, "the archive has more than " + std::to_string(kMaxEntries) + " entries");
        const std::string path = CheckedPath(name);
        const char type = static_cast<char>(header[kTarType.at]);
        const auto size = NumberIn(header, kTarSize);
        if (!size) Refuse(name, "its size is not a number");
        if (type == kFolder) {
            if (*size != 0) Refuse(name, "is a folder with a size");
            folders_.insert(path);
            return;
        }
        if (type != kTarRegularFile && type != '\0') RefuseType(name, type);
        AddFile(name, path, *size);
    }

    void AddFile(const std::string& name, const std::string& path, std::size_t size) {
        if (path.empty() || name.ends_with('/'))
            Refuse(name, "is a file with the name of a folder");
        if (size > kMaxFileSize)
            Refuse(name, "is larger than " + std::to_string(kMaxFileSize) + " bytes");
        total_ += size;
        if (total_ > kMaxTotalSize)
            Refuse(name, "the files are larger than " + std::to_string(kMaxTotalSize) +
                             " bytes together");
        if (size + TarPadding(size) > rest_.size()) Refuse(name, "the archive ends within it");
        const View bytes = Take(size);
        (void)Take(TarPadding(size));
        if (!files_.emplace(path, Bytes(bytes.begin(), bytes.end())).second)
            Refuse(name, "is in the archive twice");
    }

    // No path may be that of a file and of a folder.
    void RequireTree() const {
        for (const std::string& folder : folders_)
            if (files_.contains(folder)) Refuse(folder, "is a file and a folder");
        for (const auto& [path, bytes] : files_)
            for (std::size_t at = path.find('/'); at != std::string::npos;
                 at = path.find('/', at + 1))
                if (files_.contains(path.substr(0, at)))
                    Refuse(path.substr(0, at), "is a file and a folder");
    }

    View rest_;
    Files files_;
    std::set<std::string> folders_;
    std::string last_;  // the name of the last entry
    std::size_t entries_ = 0;
    std::size_t total_ = 0;
};

}  // namespace

Files ReadTar(std::span<const std::uint8_t> tar) {
    return TarReader(tar).Read();
}

}  // namespace archive
