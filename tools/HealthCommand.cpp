// SPDX-License-Identifier: MIT
//
// Reads rules and sensors, and writes the verdict in the form that is asked for.

#include "tools/HealthCommand.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>

#include "tools/base/Descriptor.h"
#include "tools/base/Source.h"
#include "tools/base/Text.h"
#include "tools/health/HealthText.h"
#include "tools/records/Sensors.h"

namespace tool {
namespace {

// The whole file; nothing, with errno set, when it cannot be read.
std::optional<std::string> TextOf(const std::filesystem::path& file) {
    const Descriptor descriptor(file.c_str(), O_RDONLY);
    if (!descriptor.IsOpen()) return std::nullopt;
    std::string text;
    char piece[4096];
    while (true) {
        const ssize_t got = read(descriptor.Get(), piece, sizeof piece);
        if (got < 0) return std::nullopt;
        if (got == 0) return text;
        text.append(piece, static_cast<std::size_t>(got));
    }
}

// std::runtime_error says which file is wrong and why.
Rules RulesIn(const std::filesystem::path& file) {
    if (file.empty()) return {};
    const auto text = TextOf(file);
    if (!text) throw std::runtime_error(file.string() + ": " + std::strerror(errno));
    try {
        return ParseRules(*text);
    } catch (const RulesError& error) {
        throw std::runtime_error(file.string() + ':' + error.what());
    }
}

int ShowProblem(const std::string& source, const std::string& problem, const HealthOrder& order,
                Format format, std::ostream& out, std::ostream& err) {
    if (order.isNagios)
        out << "SENSORS UNKNOWN - " << problem << '\n';
    else if (format == Format::kJson)
        DumpJson({{"schema", kJsonSchema},
                  {kHealth, Json()},
                  {"errors", {{{"source", source}, {"message", Utf8(problem)}}}}},
                 out);
    err << "talvane: " << problem << '\n';
    return kHealthUnknown;
}

}  // namespace

int ShowHealth(const HealthOrder& order, Format format, std::ostream& out, std::ostream& err) {
    if (order.showStates) {
        if (format == Format::kJson)
            DumpJson(
                {{"schema", kJsonSchema}, {"states", StateTableJson()}, {"errors", Json::array()}},
                out);
        else
            out << StateTableText();
        return 0;
    }
    Rules rules;
    try {
        rules = RulesIn(order.rules);
    } catch (const std::runtime_error& error) {
        return ShowProblem("rules", error.what(), order, format, out, err);
    }
    const auto sensors = ReadSensors();
    if (!sensors) return ShowProblem(kBmc.name, kBmc.whyNotRead(), order, format, out, err);
    const Health health = Judge(*sensors, rules);
    if (order.isNagios)
        out << ToNagios(health);
    else if (format == Format::kJson)
        DumpJson({{"schema", kJsonSchema}, {kHealth, ToJson(health)}, {"errors", Json::array()}},
                 out);
    else
        out << ToText(health);
    return static_cast<int>(health.verdict);
}

}  // namespace tool
