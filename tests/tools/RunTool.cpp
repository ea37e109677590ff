// SPDX-License-Identifier: MIT
//
// Starts the tool as a process, with its output in files or on a terminal.

#include "tests/tools/RunTool.h"

#include <fcntl.h>
#include <pty.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace {

// The names of this system's pci.ids are in no expected output.
const int kWithoutPciNames = setenv("TALVANE_PCI_IDS", "", 0);

class FileActions {
public:
    FileActions() { posix_spawn_file_actions_init(&actions_); }
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    void SendTo(int descriptor, const std::string& file) {
        posix_spawn_file_actions_addopen(&actions_, descriptor, file.c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
    }
    const posix_spawn_file_actions_t* Get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_;
};

}  // namespace

ToolRun RunTool(const std::vector<std::string>& arguments) {
    const TemporaryFolder folder;
    FileActions actions;
    actions.SendTo(STDOUT_FILENO, folder.Path() / "out");
    actions.SendTo(STDERR_FILENO, folder.Path() / "err");

    std::vector<std::string> words{TALVANE_TOOL};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    pid_t child = 0;
    const int error =
        posix_spawn(&child, TALVANE_TOOL, actions.Get(), nullptr, argv.data(), environ);
    if (error != 0) throw std::system_error(error, std::generic_category(), TALVANE_TOOL);
    int status = 0;
    if (waitpid(child, &status, 0) != child)
        throw std::system_error(errno, std::generic_category(), "waitpid");
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(folder.Path() / "out"),
            ReadFile(folder.Path() / "err")};
}

std::string RunToolOnTerminal(const std::vector<std::string>& arguments, unsigned short columns) {
    std::vector<std::string> words{TALVANE_TOOL};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    int terminal = -1;
    winsize size{};
    size.ws_col = columns;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child < 0) throw std::system_error(errno, std::generic_category(), "forkpty");
    if (child == 0) {
        (void)execv(TALVANE_TOOL, argv.data());
        _exit(127);
    }
    std::string shown;
    char part[256];
    // The end of the child reads as an error of the terminal.
    for (ssize_t got = 0; (got = read(terminal, part, sizeof part)) > 0;)
        shown.append(part, static_cast<std::size_t>(got));
    (void)close(terminal);
    int status = 0;
    if (waitpid(child, &status, 0) != child)
        throw std::system_error(errno, std::generic_category(), "waitpid");
    std::erase(shown, '\r');
    return shown;
}

std::string ReadFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + file.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

void WriteFile(const std::filesystem::path& file, const std::string& text) {
    std::ofstream out(file, std::ios::binary);
    if (!(out << text).flush()) throw std::runtime_error("cannot write " + file.string());
}

TemporaryFolder::TemporaryFolder() {
    std::string name = std::filesystem::temp_directory_path() / "talvane-tool-XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), name);
    path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

ToolRun MachineFolder::Run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--machine", Path().string()});
    return RunTool(arguments);
}
