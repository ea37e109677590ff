// SPDX-License-Identifier: MIT
//
// The name and the statement of each rule.

#include "Rules.h"

#include <algorithm>

namespace captures {

namespace {

constexpr RuleText kRules[] = {
    {Rule::kCutToField, "cut-to-field", "a text keeps the bytes that its field has room for"},
    {Rule::kFirstStructureIsBios, "first-structure-is-bios",
     "BIOS texts come from the first structure of the table, whatever its type"},
    {Rule::kBoardSelection, "board-selection",
     "of several boards, the first that contains no objects is reported"},
    {Rule::kSixteenProcessors, "sixteen-processors", "processors are counted up to 16"},
    {Rule::kUnpopulatedStatus, "unpopulated-status",
     "the status bits of an empty socket are reported like those of a processor"},
    {Rule::kZeroClock, "zero-clock", "an unknown external clock reads 0 MHZ"},
    {Rule::kFamilyName, "family-name", "processor families carry the names of this library"},
    {Rule::kFamilyNewer, "family-newer", "processor families without a name here are Unknown"},
    {Rule::kCacheSize16Bit, "cache-size-16-bit",
     "a cache size is read from its 16-bit field, also where a 32-bit one follows"},
    {Rule::kCacheNotProvided, "cache-not-provided",
     "a cache that SMBIOS 2.3 or later does not provide reads Bios Not Provide"},
    {Rule::kCacheTextOverruns, "cache-text-overruns",
     "Bios Not Provide fills its field, so its terminator empties the next one"},
    {Rule::kCacheTextVersion3, "cache-text-version-3",
     "the texts of an absent cache stay untouched in tables of version 3"},
    {Rule::kCacheTextLegacy, "cache-text-legacy",
     "the texts of an absent cache stay untouched under a legacy DMI entry point"},
    {Rule::kBankLocatorNeeded, "bank-locator-needed",
     "memory devices count only when a locator names a Bank or a DIMM"},
    {Rule::kSixteenBanks, "sixteen-banks", "memory banks are listed up to 16"},
    {Rule::kMemoryTypeNewer, "memory-type-newer", "memory types after DDR are Unknown"},
    {Rule::kTypeDetailName, "type-detail-name",
     "type details carry the words of this library, without blanks between them"},
    {Rule::kTypeDetailNewer, "type-detail-newer", "type details after Non-volatile are left out"},
    {Rule::kUnknownSpeedEmpty, "unknown-speed-empty", "an unknown memory speed stays untouched"},
    {Rule::kSizeBeyond32GiB, "size-beyond-32-gib",
     "a memory device of 32 GiB or more counts as 32767 MB"},
    {Rule::kModuleTypeHighestBit, "module-type-highest-bit",
     "of a memory module's types, the highest bit is named"},
    {Rule::kModuleTypeName, "module-type-name", "module types carry the names of this library"},
    {Rule::kSlotDigit, "slot-digit",
     "the slot comes from a digit at the locator's end, or from a digit before A or B"},
    {Rule::kTotalFromModules, "total-from-modules",
     "the total is that of the modules where there are any"},
    {Rule::kTotalModulo65536, "total-modulo-65536", "the total is counted modulo 65536 MB"},
    {Rule::kPortTypeName, "port-type-name", "port types carry the names of this library"},
    {Rule::kPortTypeNewer, "port-type-newer", "port types without a name here are Unknown"},
    {Rule::kEllipsis, "ellipsis", "a designator that is too long for its field ends in ..."},
    {Rule::kPowerStatusCombination, "power-status-combination",
     "a supply in several states, or in none, is Other"},
    {Rule::kUpsMask, "ups-mask",
     "supplies whose type bits are a subset of the UPS mask pass for a UPS"},
    {Rule::kFanSpeedText, "fan-speed-text", "a fan without a known speed says so in a sentence"},
    {Rule::kProbeNeverFound, "probe-never-found",
     "probes are counted, and their values stay untouched"},
    {Rule::kNoSmbios3Entry, "no-smbios-3-entry", "an _SM3_ entry point alone is not read"},
    {Rule::kTableNearMemoryEnd, "table-near-memory-end",
     "the one read of the table must end inside memory, also for a table near its end"},
    {Rule::kWalksPastDamage, "walks-past-damage",
     "the walk goes on after a structure of impossible length, where dmidecode stops"},
};

}  // namespace

std::span<const RuleText> AllRules() {
    return kRules;
}

const RuleText& TextOf(Rule rule) {
    return *std::ranges::find(kRules, rule, &RuleText::rule);
}

}  // namespace captures
