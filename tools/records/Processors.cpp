// SPDX-License-Identifier: MIT
//
// Reads and shows TALVANE_PROCESSORS.

#include "tools/records/Processors.h"

#include <cstddef>
#include <nlohmann/json.hpp>

#include "Talvane.h"
#include "tools/base/JsonValue.h"
#include "tools/base/Layout.h"
#include "tools/base/Text.h"
#include "tools/library/WideRecord.h"

namespace tool {
namespace {

constexpr std::size_t kMaxProcessors = 16;

std::vector<Cache> CachesOf(const CPU& cpu) {
    std::vector<Cache> caches;
    int level = 0;
    for (const CACHE& cache : cpu.cache) {
        Cache known{.level = ++level,
                    .designation = FieldText(cache.designation),
                    .installedSize = FieldText(cache.InstalledSize),
                    .maximumSize = FieldText(cache.MaxSize),
                    .speed = FieldText(cache.speed)};
        const std::string all =
            known.designation + known.installedSize + known.maximumSize + known.speed;
        if (!all.empty()) caches.push_back(known);
    }
    return caches;
}

Json DisabledJson(const Processor& processor) {
    if (!processor.disabled && processor.statusUnknown) return {};
    return processor.disabled;
}

// A clock of 0 is one that the firmware does not know (SMBIOS 7.5).
Json ClockJson(const std::string& text) {
    return text == "0 MHZ" ? QuantityJson(std::nullopt, "", text) : QuantityJson(text);
}

Json ToJson(const Cache& cache) {
    return {{"level", cache.level},
            {"designation", TextJson(cache.designation)},
            {"installedSize", QuantityJson(cache.installedSize)},
            {"maximumSize", QuantityJson(cache.maximumSize)},
            {"speed", QuantityJson(cache.speed)}};
}

}  // namespace

std::optional<Processors> ReadProcessors() {
    WideRecord<ProcessorInformation, CPU> record(offsetof(ProcessorInformation, cpu),
                                                 kMaxProcessors);
    if (GetInfo(TALVANE_PROCESSORS, record.Data()) != 0) return std::nullopt;
    Processors processors;
    for (const CPU& cpu : record.Elements(record.Head().quantity))
        processors.push_back(
            {// The longest family name runs on into the next field.
             .family = TextWithin(cpu, offsetof(CPU, family), offsetof(CPU, MaxSpeed)),
             .manufacturer = FieldText(cpu.manufacturer),
             .currentSpeed = FieldText(cpu.CurrentSpeed),
             .maximumSpeed = FieldText(cpu.MaxSpeed),
             .externalClock = FieldText(cpu.ExternalClock),
             .disabled = cpu.IsDisabled != 0,
             .statusUnknown = cpu.IsUHT != 0,
             .caches = CachesOf(cpu)});
    return processors;
}

const char* DisabledText(const Processor& processor) {
    if (processor.disabled) return "yes";
    return processor.statusUnknown ? "unknown" : "no";
}

std::string ToText(const Processors& processors) {
    std::vector<Row> rows;
    std::vector<Row> cacheRows;
    for (const Processor& processor : processors) {
        const std::string number = std::to_string(rows.size() + 1);
        rows.push_back({number, processor.family, processor.manufacturer, processor.currentSpeed,
                        processor.maximumSpeed, processor.externalClock, DisabledText(processor)});
        for (const Cache& cache : processor.caches)
            cacheRows.push_back({number, "L" + std::to_string(cache.level), cache.designation,
                                 cache.installedSize, cache.maximumSize, cache.speed});
    }
    constexpr auto kRight = Column::Align::kRight;
    return Section("Processors", {TableBlock({{"No.", kRight},
                                              {"Family"},
                                              {"Manufacturer"},
                                              {"Speed", kRight},
                                              {"Maximum", kRight},
                                              {"Ext. clock", kRight},
                                              {"Disabled"}},
                                             rows)}) +
           '\n' +
           Section("Caches", {TableBlock({{"CPU", kRight},
                                          {"Level"},
                                          {"Designation"},
                                          {"Installed", kRight},
                                          {"Maximum", kRight},
                                          {"Speed", kRight}},
                                         cacheRows)});
}

Json ToJson(const Processors& processors) {
    Json list = Json::array();
    for (const Processor& processor : processors) {
        Json caches = Json::array();
        for (const Cache& cache : processor.caches) caches.push_back(ToJson(cache));
        list.push_back({{"family", TextJson(processor.family)},
                        {"manufacturer", TextJson(processor.manufacturer)},
                        {"currentSpeed", ClockJson(processor.currentSpeed)},
                        {"maximumSpeed", ClockJson(processor.maximumSpeed)},
                        {"externalClock", ClockJson(processor.externalClock)},
                        {"disabled", DisabledJson(processor)},
                        {"caches", caches}});
    }
    return list;
}

}  // namespace tool
