// SPDX-License-Identifier: MIT
//
// Caches of a processor (SMBIOS 7.8), reached through the handles in its structure (7.5).

#include <cstring>

#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"

using namespace talvane;

namespace {

// In the processor's structure the handle of the L1 cache; those of L2 and L3 follow.
constexpr std::size_t kL1CacheHandle = 26;
constexpr int kHandleSize = 2;
constexpr unsigned kNoCacheHandle = 0xFFFF;

// Offsets in the cache structure.
namespace cache_information {
constexpr std::size_t kDesignation = 4;  // string
constexpr std::size_t kMaximumSize = 7;
constexpr std::size_t kInstalledSize = 9;
constexpr std::size_t kSpeed = 15;  // ns
}  // namespace cache_information

// A cache size (7.8.1) is in kilobytes, or in units of 64 kilobytes when the top bit is set.
void WriteCacheSize(char* buf, unsigned size) {
    constexpr unsigned kUnitBit = 0x8000;
    constexpr unsigned kUnit = 64;
    const unsigned kilobytes = size < kUnitBit ? size : (size & ~kUnitBit) * kUnit;
    WriteNumber(buf, static_cast<int>(kilobytes), " KB");
}

unsigned CacheHandle(ByteView processor, int level) {
    // The level is not checked; one outside the structure reads as handle 0.
    const long long offset = kL1CacheHandle + 1LL * kHandleSize * level;
    if (offset < 0 || offset >= static_cast<long long>(processor.size())) return 0;
    return Le16(processor, static_cast<std::size_t>(offset));
}

// The text for a cache without a handle. Before SMBIOS 2.3 the handle 0xFFFF says that there is no
// such cache; from then on it can also mean that the firmware does not describe it. Null for tables
// of another major version and for legacy DMI tables.
const char* AbsentCacheText(const SmBiosTableEntryPoint& entry) {
    if (entry.MajorVersion != 2) return nullptr;
    return entry.MinorVersion < 3 ? "None" : "Bios Not Provide";
}

}  // namespace

// Finds the handle of a processor's cache. Returns 0 when it has set `handle`, 1 when the processor
// has no cache of this level, -1 when there is no such processor.
int SmBios::FindCache(int cpu, int level, unsigned& handle) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    handle = CacheHandle(FormattedArea(processor), level);
    return handle < kNoCacheHandle ? 0 : 1;
}

// The getter is called by its name, so that the dynamic linker looks it up at its first call. A
// pointer to it would be looked up at the start of every agent.
template <SmBios::CacheGetter getter>
int SmBios::GetCacheText(int cpu, int level, char* buf) {
    unsigned handle = 0;
    switch (FindCache(cpu, level, handle)) {
        case 0:
            return (this->*getter)(handle, buf);
        case 1:
            // Kept: the longer text does not fit the record's field and runs into the next one.
            if (const char* text = AbsentCacheText(SmBiosEntry)) std::strcpy(buf, text);
            return 0;
        default:
            return -1;
    }
}

int SmBios::GetCacheDesignation(int cpu, int level, char* buf, unsigned size) {
    unsigned handle = 0;
    switch (FindCache(cpu, level, handle)) {
        case 0:
            return GetCacheDesignationPrivate(handle, buf, size);
        case 1:
            (void)CopyText(AbsentCacheText(SmBiosEntry), buf, size);
            return 0;  // even where there is no text
        default:
            return -1;
    }
}

int SmBios::GetCacheMaxSize(int cpu, int level, char* buf) {
    return GetCacheText<&SmBios::GetCacheMaxSizePrivate>(cpu, level, buf);
}

int SmBios::GetCacheInstalledSize(int cpu, int level, char* buf) {
    return GetCacheText<&SmBios::GetCacheInstalledSizePrivate>(cpu, level, buf);
}

int SmBios::GetCacheSpeed(int cpu, int level, char* buf) {
    return GetCacheText<&SmBios::GetCacheSpeedPrivate>(cpu, level, buf);
}

int SmBios::GetCacheDesignationPrivate(unsigned handle, char* buf, unsigned size) {
    return CopyStringAt(ItemWithHandle(handle, Structures(TYPE_CACHE_INFO)),
                        cache_information::kDesignation, buf, size);
}

int SmBios::GetCacheMaxSizePrivate(unsigned handle, char* buf) {
    const ItemPtr cache = ItemWithHandle(handle, Structures(TYPE_CACHE_INFO));
    if (cache == nullptr) return -1;
    WriteCacheSize(buf, Le16(FormattedArea(cache), cache_information::kMaximumSize));
    return 0;
}

int SmBios::GetCacheInstalledSizePrivate(unsigned handle, char* buf) {
    const ItemPtr cache = ItemWithHandle(handle, Structures(TYPE_CACHE_INFO));
    if (cache == nullptr) return -1;
    WriteCacheSize(buf, Le16(FormattedArea(cache), cache_information::kInstalledSize));
    return 0;
}

int SmBios::GetCacheSpeedPrivate(unsigned handle, char* buf) {
    const ItemPtr cache = ItemWithHandle(handle, Structures(TYPE_CACHE_INFO));
    if (cache == nullptr) return -1;
    const unsigned char nanoseconds = ByteAt(FormattedArea(cache), cache_information::kSpeed);
    if (nanoseconds == 0) return WriteUnknownValue(buf);
    WriteNumber(buf, nanoseconds, "ns");
    return 0;
}
