// SPDX-License-Identifier: MIT
//
// Reads a machine description line by line: the first word selects the statement.

#include "simulator/description/MachineFile.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <stdexcept>
#include <string>

#include "simulator/description/MachineDraft.h"

namespace sim {
namespace {

const MachineStatement* FindStatement(std::string_view word) {
    for (const auto topic :
         {MemoryStatements(), SmbiosStatements(), DeviceStatements(), BmcStatements(),
          BmcRecordStatements(), BmcReadingStatements(), BmcFaultStatements(), PciStatements(),
          DriveStatements(), LoadStatements()}) {
        const auto row =
            std::find_if(topic.begin(), topic.end(),
                         [&](const MachineStatement& next) { return next.word == word; });
        if (row != topic.end()) return &*row;
    }
    return nullptr;
}

void ReadStatementLine(MachineLine& line, MachineDraft& draft) {
    if (!line.HasMore()) return;
    const std::string word = line.TakeWord("the statement");
    const MachineStatement* const statement = FindStatement(word);
    if (statement == nullptr) line.Fail("unknown statement \"" + word + "\"");
    statement->read(line, draft);
    line.ExpectEnd();
}

}  // namespace

void LoadMachine(const std::filesystem::path& place, Machine& machine) {
    MachineDraft draft{MachineFiles(place)};
    const std::string file = draft.files.PathOf(kDescriptionName).string();
    Bytes description;
    try {
        description = draft.files.Read(kDescriptionName);
    } catch (const std::runtime_error& error) {
        throw MachineError(error.what());
    }
    std::istringstream stream(std::string(description.begin(), description.end()));
    std::string text;
    for (int number = 1; std::getline(stream, text); ++number) {
        MachineLine line(file, number, text);
        ReadStatementLine(line, draft);
    }
    draft.Build(machine);
}

}  // namespace sim
