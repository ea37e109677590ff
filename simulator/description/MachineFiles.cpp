// SPDX-License-Identifier: MIT
//
// Names in an archive are looked up among its entries alone.

#include "simulator/description/MachineFiles.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>

#include "archive/Gzip.h"
#include "archive/Tar.h"
#include "simulator/description/MachineError.h"
#include "simulator/description/RegularFile.h"

namespace sim {
namespace {

[[noreturn]] void FailAt(const std::filesystem::path& path, const std::string& what) {
    throw std::runtime_error(path.string() + ": " + what);
}

Bytes BytesOfFile(const std::filesystem::path& path) {
    if (IsNotRegular(path)) FailAt(path, kNotRegular);
    std::ifstream stream(path, std::ios::binary);
    if (!stream) FailAt(path, std::strerror(errno));
    try {
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    } catch (const std::ios_base::failure&) {
        FailAt(path, "cannot be read");
    }
}

// The files without the folder that they all lie in, if there is one.
archive::Files WithoutOuterFolder(archive::Files files) {
    if (files.empty() || files.contains(kDescriptionName)) return files;
    const std::string first = files.begin()->first;
    const std::string folder = first.substr(0, first.find('/') + 1);
    if (!files.contains(folder + kDescriptionName)) return files;
    archive::Files inside;
    for (auto& [path, bytes] : files) {
        if (!path.starts_with(folder))
            throw archive::Error(path + ": lies outside of the machine's folder " + folder);
        inside.emplace(path.substr(folder.size()), std::move(bytes));
    }
    return inside;
}

archive::Files FilesOf(const std::filesystem::path& place) {
    if (std::filesystem::file_size(place) > archive::kMaxGzipSize)
        throw archive::Error("larger than " + std::to_string(archive::kMaxGzipSize) + " bytes");
    const Bytes bytes = BytesOfFile(place);
    if (!archive::IsGzip(bytes))
        throw archive::Error("neither a machine's folder nor an archive of one (.tar.gz)");
    archive::Files files = WithoutOuterFolder(archive::ReadTar(archive::Decompress(bytes)));
    if (!files.contains(kDescriptionName))
        throw archive::Error(std::string("holds no ") + kDescriptionName);
    return files;
}

}  // namespace

MachineFiles::MachineFiles(const std::filesystem::path& place) : place_(place) {
    std::error_code ignored;  // of a place that is not there, which is found when it is read
    if (!std::filesystem::is_regular_file(place, ignored)) return;
    try {
        archive_ = FilesOf(place);
    } catch (const archive::Error& error) {
        throw MachineError(place.string() + ": " + error.what());
    }
}

Bytes MachineFiles::Read(const std::string& name) const {
    if (!archive_) return BytesOfFile(PathOf(name));
    const auto file = archive_->find(name);
    // operator/ would show an absolute name alone.
    if (file == archive_->end()) FailAt(place_, "there is no " + name + " in this archive");
    taken_ += file->second.size();
    if (taken_ > archive::kMaxTotalSize)
        FailAt(place_, "the description takes more than " + std::to_string(archive::kMaxTotalSize) +
                           " bytes of the archive's files");
    return file->second;
}

std::vector<std::string> MachineFiles::List(const std::string& folder) const {
    std::vector<std::string> names;
    if (!archive_) {
        for (const auto& file : std::filesystem::directory_iterator(PathOf(folder)))
            names.push_back(file.path().filename().string());
        return names;
    }
    const std::string start = folder + '/';
    for (const auto& [path, bytes] : *archive_)
        if (path.starts_with(start) && path.find('/', start.size()) == std::string::npos)
            names.push_back(path.substr(start.size()));
    return names;
}

bool MachineFiles::HasFolder(const std::string& folder) const {
    if (!archive_) return std::filesystem::is_directory(PathOf(folder));
    const std::string start = folder + '/';
    const auto first = archive_->lower_bound(start);
    return first != archive_->end() && first->first.starts_with(start);
}

}  // namespace sim
