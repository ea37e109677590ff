// SPDX-License-Identifier: MIT
//
// talvane metrics: what is known of the machine, for Prometheus.
#ifndef TALVANE_TOOLS_METRICSCOMMAND_H
#define TALVANE_TOOLS_METRICSCOMMAND_H

#include <filesystem>
#include <ostream>

#include "tools/base/Settings.h"

namespace tool {

inline constexpr const char* kMetrics = "metrics";

struct MetricsOrder {
    std::filesystem::path rules;   // of the verdicts; empty for none
    std::filesystem::path output;  // the file to be replaced; empty for `out`
    bool isWithoutPci = false;     // leaves out the PCI functions, whose scan takes the most
};

// Writes the metrics. A source that cannot be read is a metric and no failure. Throws
// std::runtime_error when the rules cannot be read or the file cannot be written.
void WriteMetrics(const MetricsOrder& order, const Settings& settings, std::ostream& out);

}  // namespace tool

#endif
