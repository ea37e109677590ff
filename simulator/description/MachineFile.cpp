// SPDX-License-Identifier: MIT
//
// Reads a machine description line by line: the first word selects the statement.

#include "simulator/description/MachineFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <string>

#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

const MachineStatement* find(std::string_view word) {
    for (const auto topic :
         {memoryStatements(), smbiosStatements(), deviceStatements(), bmcStatements(),
          bmcRecordStatements(), bmcSensorStatements(), bmcFaultStatements(), pciStatements(),
          driveStatements(), loadStatements()}) {
        const auto row =
            std::find_if(topic.begin(), topic.end(),
                         [&](const MachineStatement& next) { return next.word == word; });
        if (row != topic.end()) return &*row;
    }
    return nullptr;
}

void readLine(MachineLine& line, MachineDraft& draft) {
    if (!line.more()) return;
    const std::string word = line.word("the statement");
    const MachineStatement* const statement = find(word);
    if (statement == nullptr) line.fail("unknown statement \"" + word + "\"");
    statement->read(line, draft);
    line.end();
}

}  // namespace

void loadMachine(const std::filesystem::path& folder, Machine& machine) {
    const std::string file = (folder / "machine.txt").string();
    std::ifstream stream(file);
    if (!stream) throw MachineError(file + ": " + std::strerror(errno));
    MachineDraft draft;
    draft.folder = folder;
    std::string text;
    for (int number = 1; std::getline(stream, text); ++number) {
        MachineLine line(file, number, text);
        readLine(line, draft);
    }
    if (stream.bad()) throw MachineError(file + ": cannot be read");
    draft.build(machine);
}

}  // namespace sim
