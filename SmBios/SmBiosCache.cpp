// SPDX-License-Identifier: MIT
//
// Caches of a processor: reached through the handles in the processor's structure (7.5, 7.8).

#include <cstring>

#include "SmBios/SmBios.h"
#include "SmBios/SmBiosText.h"
#include "SmBios/StructureWalk.h"

using namespace talvane;

namespace {

constexpr std::size_t kProcessorL1Handle = 26;  // L2 and L3 follow, two bytes each
constexpr unsigned kNoCache = 0xFFFF;

constexpr std::size_t kDesignation = 4;
constexpr std::size_t kMaxSize = 7;
constexpr std::size_t kInstalledSize = 9;
constexpr std::size_t kSpeed = 15;  // ns

// A cache size (7.8.1): kilobytes, or units of 64 when the top bit is set.
void WriteCacheSize(char* buf, unsigned size) {
    constexpr unsigned kGranularity64 = 0x8000;
    const unsigned kilobytes = size < kGranularity64 ? size : (size & ~kGranularity64) << 6;
    WriteNumber(buf, static_cast<int>(kilobytes), " KB");
}

unsigned CacheHandle(ByteView processor, int level) {
    // Levels are not checked; those that lie outside the structure read as handle 0.
    const long long offset = kProcessorL1Handle + 2LL * level;
    if (offset < 0 || offset >= static_cast<long long>(processor.size())) return 0;
    return Le16(processor, static_cast<std::size_t>(offset));
}

// The text for a cache that a processor has not: before SMBIOS 2.3 the handle 0xFFFF says that
// there is none, from then on also that the firmware does not tell. Null for tables of another
// major version and for legacy DMI tables.
const char* AbsentCacheText(const SmBiosTableEntryPoint& entry) {
    if (entry.MajorVersion != 2) return nullptr;
    return entry.MinorVersion < 3 ? "None" : "Bios Not Provide";
}

}  // namespace

// Finds the handle of a processor's cache. Returns -1 without such a processor, 0 when `handle` is
// set, 1 when the processor has no cache of this level.
int SmBios::FindCache(int cpu, int level, unsigned& handle) {
    const ItemPtr processor = ItemAt(TYPE_PROCESSOR_INFO, cpu);
    if (processor == nullptr) return -1;
    handle = CacheHandle(FormattedArea(processor), level);
    return handle < kNoCache ? 0 : 1;
}

int SmBios::GetCacheText(int cpu, int level, char* buf, CacheGetter getter) {
    unsigned handle = 0;
    switch (FindCache(cpu, level, handle)) {
        case 0:
            return (this->*getter)(handle, buf);
        case 1:
            // Kept: the longer text is longer than the record's field and runs into the next one.
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
            return 0;  // 0 without a text, too
        default:
            return -1;
    }
}

int SmBios::GetCacheMaxSize(int cpu, int level, char* buf) {
    return GetCacheText(cpu, level, buf, &SmBios::GetCacheMaxSizePrivate);
}

int SmBios::GetCacheInstalledSize(int cpu, int level, char* buf) {
    return GetCacheText(cpu, level, buf, &SmBios::GetCacheInstalledSizePrivate);
}

int SmBios::GetCacheSpeed(int cpu, int level, char* buf) {
    return GetCacheText(cpu, level, buf, &SmBios::GetCacheSpeedPrivate);
}

int SmBios::GetCacheDesignationPrivate(unsigned handle, char* buf, unsigned size) {
    return CopyStringAt(ItemWithHandle(handle, Structures(TYPE_CACHE_INFO)), kDesignation, buf,
                        size);
}

int SmBios::GetCacheMaxSizePrivate(unsigned handle, char* buf) {
    const ItemPtr cache = ItemWithHandle(handle, Structures(TYPE_CACHE_INFO));
    if (cache == nullptr) return -1;
    WriteCacheSize(buf, Le16(FormattedArea(cache), kMaxSize));
    return 0;
}

int SmBios::GetCacheInstalledSizePrivate(unsigned handle, char* buf) {
    const ItemPtr cache = ItemWithHandle(handle, Structures(TYPE_CACHE_INFO));
    if (cache == nullptr) return -1;
    WriteCacheSize(buf, Le16(FormattedArea(cache), kInstalledSize));
    return 0;
}

int SmBios::GetCacheSpeedPrivate(unsigned handle, char* buf) {
    const ItemPtr cache = ItemWithHandle(handle, Structures(TYPE_CACHE_INFO));
    if (cache == nullptr) return -1;
    const unsigned char nanoseconds = ByteAt(FormattedArea(cache), kSpeed);
    if (nanoseconds == 0) {
        std::strcpy(buf, "Unknown");
        return -1;
    }
    WriteNumber(buf, nanoseconds, "ns");
    return 0;
}
