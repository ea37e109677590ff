// SPDX-License-Identifier: MIT
//
// Runs the built talvane on machines described in folders.
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

// On a terminal of so many columns (0: it does not say), nothing being typed: what it showed, lines
// ending in '\n' alone.
std::string RunToolOnTerminal(const std::vector<std::string>& arguments,
                              unsigned short columns = 0);

// Whole files; std::runtime_error names the file that cannot be read or written.
std::string ReadFile(const std::filesystem::path& file);
void WriteFile(const std::filesystem::path& file, const std::string& text);

// A folder that lives as long as this object.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

// A folder with the description of a machine.
class MachineFolder : public TemporaryFolder {
public:
    explicit MachineFolder(const std::string& description) {
        WriteFile(Path() / "machine.txt", description);
    }

    // Runs a command on this machine.
    ToolRun Run(std::vector<std::string> arguments) const;
};

#endif
