// SPDX-License-Identifier: MIT
//
// A page in Prometheus' text exposition format, version 0.0.4. All metrics are gauges.
#ifndef TALVANE_TOOLS_METRICS_METRICPAGE_H
#define TALVANE_TOOLS_METRICS_METRICPAGE_H

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

// Metrics of one name.
struct MetricFamily {
    const char* name;
    const char* help;  // one line without a backslash
};

struct MetricLabel {
    const char* name;
    std::string value;  // as the firmware has it, with any bytes
};

using MetricLabels = std::vector<MetricLabel>;

class MetricPage {
public:
    // Adds a sample. A value that is not finite is left out, and so is a sample whose labels the
    // family already has: either would make the whole page unreadable or be an invention. A label
    // without a value is not written, which means the same to Prometheus.
    void Add(const MetricFamily& family, const MetricLabels& labels, double value);

    // An information metric: the labels say it, and the value is 1. Left out when they say nothing.
    void AddInfo(const MetricFamily& family, const MetricLabels& labels);

    // The families by name, each with its help and type, and its samples as they were added. Text
    // of the firmware is valid UTF-8; its control characters but the line feed stand as \xHH.
    std::string Text() const;

private:
    struct Samples {
        const char* help;
        std::set<std::string> known;  // their labels
        std::string lines;
    };
    std::map<std::string_view, Samples> families_;
};

// The number in decimal: a whole number in full, any other in at most ten digits.
std::string MetricNumber(double value);

}  // namespace tool

#endif
