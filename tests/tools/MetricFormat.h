// SPDX-License-Identifier: MIT
//
// Reads a page of metrics as strictly as the text exposition format is defined, and as the tool
// promises beyond it.
#ifndef TALVANE_TESTS_TOOLS_METRICFORMAT_H
#define TALVANE_TESTS_TOOLS_METRICFORMAT_H

#include <map>
#include <string>
#include <vector>

struct MetricSample {
    std::string name;
    std::map<std::string, std::string> labels;  // values without their escapes
    std::string value;
};

struct MetricFile {
    std::vector<MetricSample> samples;
    std::vector<std::string> problems;  // "LINE: what is wrong"; empty for a page without fault

    // The value of the one sample with this name and at least these labels; empty for none, and
    // "several" for more than one.
    std::string Value(const std::string& name,
                      const std::map<std::string, std::string>& labels = {}) const;
};

// Faults are, beside what no parser takes: a family without samples, without help, of another type
// than gauge, or out of order; a series twice; NaN and infinities; a time stamp; and text with
// control characters.
MetricFile ParseMetrics(const std::string& text);

#endif
