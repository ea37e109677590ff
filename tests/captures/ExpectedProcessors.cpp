// SPDX-License-Identifier: MIT
//
// Processors and their caches.

#include <algorithm>

#include "CodeNames.h"
#include "Expectation.h"

namespace captures {

namespace {

constexpr std::size_t kMostProcessors = 16;
constexpr std::size_t kStatus = 24;  // SMBIOS 7.5

// SMBIOS 7.8.
constexpr std::size_t kMaxSize = 7;
constexpr std::size_t kInstalledSize = 9;
constexpr std::size_t kCacheSpeed = 15;

// "900 MHz" as the library writes it; any other text as it is.
std::string Megahertz(const std::string& clock) {
    const auto number = LeadingNumber(clock);
    return number ? std::to_string(*number) + " MHZ" : clock;
}

void ExpectStatus(const PeerStructure& processor, const std::string& prefix,
                  ExpectedFields& fields) {
    const std::string status = processor.text.value("Status");
    ExpectedField& unknown = fields.add(prefix + "IsUHT", status.ends_with(", Unknown"));
    ExpectedField& disabled =
        fields.add(prefix + "IsDisabled", status.find(", Disabled By") != std::string::npos);
    if (status == "Unpopulated") {
        const unsigned bits = processor.raw.byte(kStatus) & 7u;
        unknown.by(Rule::unpopulatedStatus, bits == 0 ? "1" : "0");
        disabled.by(Rule::unpopulatedStatus, bits == 2 || bits == 3 ? "1" : "0");
    }
}

struct CacheTexts {
    ExpectedField& designation;
    ExpectedField& installedSize;
    ExpectedField& maxSize;
    ExpectedField& speed;
};

CacheTexts AddCache(const std::string& prefix, const std::string& all, ExpectedFields& fields) {
    return {fields.add(prefix + "designation", all), fields.add(prefix + "InstalledSize", all),
            fields.add(prefix + "MaxSize", all), fields.add(prefix + "speed", all)};
}

// The processor has no cache of this level, as `why` words it.
void ExpectMissingCache(const PeerTable& peer, const std::string& prefix, const std::string& why,
                        ExpectedFields& fields) {
    const bool notProvided = why == "Not Provided";
    CacheTexts cache = AddCache(prefix, notProvided ? why : "None", fields);
    for (ExpectedField* text :
         {&cache.designation, &cache.installedSize, &cache.maxSize, &cache.speed}) {
        if (peer.legacy())
            text->by(Rule::cacheTextLegacy, "");
        else if (peer.major() != 2)
            text->by(Rule::cacheTextVersion3, "");
        else if (notProvided)
            text->by(Rule::cacheNotProvided, "Bios Not Provide");
    }
    // MaxSize is written after InstalledSize, speed after designation, 16 characters each.
    if (cache.maxSize.exact().size() == 16) {
        cache.installedSize.by(Rule::cacheTextOverruns, "");
        cache.designation.by(Rule::cacheTextOverruns, "");
    }
}

std::string CacheKilobytes(const std::string& size) {
    const auto kilobytes = Kilobytes(size);
    return kilobytes ? std::to_string(*kilobytes) + " KB" : size;
}

// The same from the 16-bit field, whose bit 15 stands for units of 64 KB.
std::string CacheKilobytes(std::uint16_t field) {
    const unsigned size = field & 0x7FFFu;
    return std::to_string((field & 0x8000u) != 0 ? size << 6 : size) + " KB";
}

std::string CacheNanoseconds(const PeerStructure& cache) {
    const auto speed = cache.text.find("Speed");
    if (!speed) return cache.raw.byte(kCacheSpeed) == 0 ? "Unknown" : "";
    const auto number = LeadingNumber(*speed);
    return number ? std::to_string(*number) + "ns" : *speed;
}

void ExpectCache(const PeerTable& peer, const PeerStructure& processor, std::size_t level,
                 const std::string& prefix, ExpectedFields& fields) {
    const std::string name = "L" + std::to_string(level) + " Cache";
    const std::string handle = processor.text.value(name + " Handle");
    if (handle == "Not Provided" || handle == "No " + name) {
        ExpectMissingCache(peer, prefix, handle, fields);
        return;
    }
    // A processor structure too short for the handle counts as one with handle 0.
    const PeerStructure* cache =
        peer.byHandle(7, static_cast<unsigned>(LeadingNumber(handle).value_or(0)));
    if (cache == nullptr) return;
    cache->addText(fields, prefix + "designation", "Socket Designation", 4, 32);
    fields.add(prefix + "InstalledSize", CacheKilobytes(cache->text.value("Installed Size")))
        .by(Rule::cacheSize16Bit, CacheKilobytes(cache->raw.word(kInstalledSize)));
    fields.add(prefix + "MaxSize", CacheKilobytes(cache->text.value("Maximum Size")))
        .by(Rule::cacheSize16Bit, CacheKilobytes(cache->raw.word(kMaxSize)));
    fields.add(prefix + "speed", CacheNanoseconds(*cache));
}

void ExpectProcessor(const PeerTable& peer, const PeerStructure& processor,
                     const std::string& prefix, ExpectedFields& fields) {
    const DmidecodeStructure& text = processor.text;
    const std::string family = text.value("Family");
    const auto name = OurName(Families(), family);
    if (name)
        fields.add(prefix + "family", family)
            .by(*name == "Unknown" ? Rule::familyNewer : Rule::familyName, *name);
    processor.addText(fields, prefix + "manufacturer", "Manufacturer", 7, 48);
    fields.add(prefix + "MaxSpeed", Megahertz(text.value("Max Speed")));
    fields.add(prefix + "CurrentSpeed", Megahertz(text.value("Current Speed")));
    ExpectedField& clock =
        fields.add(prefix + "ExternalClock", Megahertz(text.value("External Clock")));
    if (clock.meaning() == "Unknown") clock.by(Rule::zeroClock, "0 MHZ");
    ExpectStatus(processor, prefix, fields);
    for (std::size_t level = 1; level <= 3; ++level)
        ExpectCache(peer, processor, level, prefix + Element("cache", level), fields);
}

}  // namespace

void ExpectProcessors(const PeerTable& peer, ExpectedFields& fields) {
    const std::vector<const PeerStructure*> processors = peer.ofType(4);
    const std::size_t count = std::min(processors.size(), kMostProcessors);
    fields.add("processors.quantity", processors.size())
        .by(Rule::sixteenProcessors, std::to_string(count));
    for (std::size_t i = 0; i < count; ++i)
        ExpectProcessor(peer, *processors[i], Element("cpu", i + 1), fields);
}

}  // namespace captures
