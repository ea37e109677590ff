// SPDX-License-Identifier: MIT
//
// Processors and their caches.

#include <algorithm>

#include "CodeNames.h"
#include "Expectation.h"

namespace captures {

namespace {

constexpr std::size_t kMaxProcessors = 16;
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
    const std::string status = processor.text.Value("Status");
    ExpectedField& unknown = fields.Add(prefix + "IsUHT", status.ends_with(", Unknown"));
    ExpectedField& disabled =
        fields.Add(prefix + "IsDisabled", status.find(", Disabled By") != std::string::npos);
    if (status == "Unpopulated") {
        const unsigned bits = processor.raw.Byte(kStatus) & 7u;
        unknown.By(Rule::kUnpopulatedStatus, bits == 0 ? "1" : "0");
        disabled.By(Rule::kUnpopulatedStatus, bits == 2 || bits == 3 ? "1" : "0");
    }
}

struct CacheTexts {
    ExpectedField& designation;
    ExpectedField& installedSize;
    ExpectedField& maxSize;
    ExpectedField& speed;
};

CacheTexts AddCache(const std::string& prefix, const std::string& all, ExpectedFields& fields) {
    return {fields.Add(prefix + "designation", all), fields.Add(prefix + "InstalledSize", all),
            fields.Add(prefix + "MaxSize", all), fields.Add(prefix + "speed", all)};
}

// The processor has no cache of this level, as `why` words it.
void ExpectMissingCache(const PeerTable& peer, const std::string& prefix, const std::string& why,
                        ExpectedFields& fields) {
    const bool notProvided = why == "Not Provided";
    CacheTexts cache = AddCache(prefix, notProvided ? why : "None", fields);
    for (ExpectedField* text :
         {&cache.designation, &cache.installedSize, &cache.maxSize, &cache.speed}) {
        if (peer.Legacy())
            text->By(Rule::kCacheTextLegacy, "");
        else if (peer.Major() != 2)
            text->By(Rule::kCacheTextVersion3, "");
        else if (notProvided)
            text->By(Rule::kCacheNotProvided, "Bios Not Provide");
    }
    // MaxSize is written after InstalledSize, speed after designation, 16 characters each.
    if (cache.maxSize.Exact().size() == 16) {
        cache.installedSize.By(Rule::kCacheTextOverruns, "");
        cache.designation.By(Rule::kCacheTextOverruns, "");
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
    const auto speed = cache.text.Find("Speed");
    if (!speed) return cache.raw.Byte(kCacheSpeed) == 0 ? "Unknown" : "";
    const auto number = LeadingNumber(*speed);
    return number ? std::to_string(*number) + "ns" : *speed;
}

void ExpectCache(const PeerTable& peer, const PeerStructure& processor, std::size_t level,
                 const std::string& prefix, ExpectedFields& fields) {
    const std::string name = "L" + std::to_string(level) + " Cache";
    const std::string handle = processor.text.Value(name + " Handle");
    if (handle == "Not Provided" || handle == "No " + name) {
        ExpectMissingCache(peer, prefix, handle, fields);
        return;
    }
    // A processor structure too short for the handle counts as one with handle 0.
    const PeerStructure* cache =
        peer.ByHandle(7, static_cast<unsigned>(LeadingNumber(handle).value_or(0)));
    if (cache == nullptr) return;
    cache->AddText(fields, prefix + "designation", "Socket Designation", 4, 32);
    fields.Add(prefix + "InstalledSize", CacheKilobytes(cache->text.Value("Installed Size")))
        .By(Rule::kCacheSize16Bit, CacheKilobytes(cache->raw.Word(kInstalledSize)));
    fields.Add(prefix + "MaxSize", CacheKilobytes(cache->text.Value("Maximum Size")))
        .By(Rule::kCacheSize16Bit, CacheKilobytes(cache->raw.Word(kMaxSize)));
    fields.Add(prefix + "speed", CacheNanoseconds(*cache));
}

void ExpectProcessor(const PeerTable& peer, const PeerStructure& processor,
                     const std::string& prefix, ExpectedFields& fields) {
    const DmidecodeStructure& text = processor.text;
    const std::string family = text.Value("Family");
    const auto name = OurName(Families(), family);
    if (name)
        fields.Add(prefix + "family", family)
            .By(*name == "Unknown" ? Rule::kFamilyNewer : Rule::kFamilyName, *name);
    processor.AddText(fields, prefix + "manufacturer", "Manufacturer", 7, 48);
    fields.Add(prefix + "MaxSpeed", Megahertz(text.Value("Max Speed")));
    fields.Add(prefix + "CurrentSpeed", Megahertz(text.Value("Current Speed")));
    ExpectedField& clock =
        fields.Add(prefix + "ExternalClock", Megahertz(text.Value("External Clock")));
    if (clock.Meaning() == "Unknown") clock.By(Rule::kZeroClock, "0 MHZ");
    ExpectStatus(processor, prefix, fields);
    for (std::size_t level = 1; level <= 3; ++level)
        ExpectCache(peer, processor, level, prefix + Element("cache", level), fields);
}

}  // namespace

void ExpectProcessors(const PeerTable& peer, ExpectedFields& fields) {
    const std::vector<const PeerStructure*> processors = peer.OfType(4);
    const std::size_t count = std::min(processors.size(), kMaxProcessors);
    fields.Add("processors.quantity", processors.size())
        .By(Rule::kSixteenProcessors, std::to_string(count));
    for (std::size_t i = 0; i < count; ++i)
        ExpectProcessor(peer, *processors[i], Element("cpu", i + 1), fields);
}

}  // namespace captures
