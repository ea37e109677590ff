// SPDX-License-Identifier: MIT
//
// The rules of the comparison with dmidecode: why an answer of the library may differ from what
// dmidecode prints about the same table. Each difference has a rule. A rule states exactly what the
// library answers instead. An answer that no rule leads to is a defect of one of the two.
#ifndef TALVANE_TESTS_RULES_H
#define TALVANE_TESTS_RULES_H

#include <span>
#include <string_view>

namespace captures {

enum class Rule {
    kCutToField,
    kFirstStructureIsBios,
    kBoardSelection,
    kSixteenProcessors,
    kUnpopulatedStatus,
    kZeroClock,
    kFamilyName,
    kFamilyNewer,
    kCacheSize16Bit,
    kCacheNotProvided,
    kCacheTextOverruns,
    kCacheTextVersion3,
    kCacheTextLegacy,
    kBankLocatorNeeded,
    kSixteenBanks,
    kMemoryTypeNewer,
    kTypeDetailName,
    kTypeDetailNewer,
    kUnknownSpeedEmpty,
    kSizeBeyond32GiB,
    kModuleTypeHighestBit,
    kModuleTypeName,
    kSlotDigit,
    kTotalFromModules,
    kTotalModulo65536,
    kPortTypeName,
    kPortTypeNewer,
    kEllipsis,
    kPowerStatusCombination,
    kUpsMask,
    kFanSpeedText,
    kProbeNeverFound,
    kNoSmbios3Entry,
    kTableNearMemoryEnd,
    kWalksPastDamage,
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
