// SPDX-License-Identifier: MIT
//
// Why an answer of the library may differ from what dmidecode prints about the same table. Each
// difference has a rule, and a rule states what the library answers instead, to the letter: an
// answer that no rule leads to is a defect of one of the two.
#ifndef TALVANE_TESTS_RULES_H
#define TALVANE_TESTS_RULES_H

#include <span>
#include <string_view>

namespace captures {

enum class Rule {
    cutToField,
    firstStructureIsBios,
    boardSelection,
    sixteenProcessors,
    unpopulatedStatus,
    zeroClock,
    familyName,
    familyNewer,
    cacheSize16Bit,
    cacheNotProvided,
    cacheTextOverruns,
    cacheTextVersion3,
    cacheTextLegacy,
    bankLocatorNeeded,
    sixteenBanks,
    memoryTypeNewer,
    typeDetailName,
    typeDetailNewer,
    unknownSpeedEmpty,
    sizeBeyond32GiB,
    moduleTypeHighestBit,
    moduleTypeName,
    slotDigit,
    totalFromModules,
    totalModulo65536,
    portTypeName,
    portTypeNewer,
    ellipsis,
    powerStatusCombination,
    upsMask,
    fanSpeedText,
    probeNeverFound,
    noSmbios3Entry,
    tableNearMemoryEnd,
    walksPastDamage,
};

struct RuleText {
    Rule rule;
    std::string_view name;  // stable; docs/behaviour.md explains it under this name
    std::string_view says;
};

std::span<const RuleText> AllRules();
const RuleText& TextOf(Rule rule);

}  // namespace captures

#endif
