// SPDX-License-Identifier: MIT
//
// Runs the built talvane and compares what it writes with recorded files.
#ifndef TALVANE_TESTS_TOOLS_RUNTOOL_H
#define TALVANE_TESTS_TOOLS_RUNTOOL_H

#include <filesystem>
#include <string>
#include <vector>

struct ToolRun {
    int status;  // of the process; -1 when a signal ended it
    std::string out;
    std::string err;
};

ToolRun RunTool(const std::vector<std::string>& arguments);

// A folder that lives as long as this object.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

    void Write(const std::string& file, const std::string& text) const;
    std::string Read(const std::string& file) const;

private:
    std::filesystem::path path_;
};

// A folder with the description of a machine.
class MachineFolder : public TemporaryFolder {
public:
    explicit MachineFolder(const std::string& description) { Write("machine.txt", description); }

    // Runs a command on this machine.
    ToolRun Run(std::vector<std::string> arguments) const;
};

// The recorded text golden/NAME. With TALVANE_RECORD=1 in the environment `actual` is recorded
// first.
std::string Golden(const std::string& name, const std::string& actual);

#endif
