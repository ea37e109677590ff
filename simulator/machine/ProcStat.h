// SPDX-License-Identifier: MIT
//
// /proc/stat of a simulated server: a course over its virtual time, which each sleep moves on.
#ifndef TALVANE_SIMULATOR_MACHINE_PROCSTAT_H
#define TALVANE_SIMULATOR_MACHINE_PROCSTAT_H

#include <chrono>
#include <cstdint>
#include <map>
#include <string>

namespace sim {

class ProcStat {
public:
    // What a processor does with each second, in ticks.
    struct Rates {
        std::uint32_t user = 0;
        std::uint32_t nice = 0;
        std::uint32_t system = 0;
        std::uint32_t idle = 100;
    };

    // The server has been up for a thousand seconds when its time starts. A processor without
    // rates is not there.
    void SetRates(unsigned cpu, const Rates& rates) { rates_[cpu] = rates; }

    // From this moment on the file holds this text, whatever the rates say.
    void SetText(std::chrono::seconds from, std::string text) { texts_[from] = std::move(text); }

    std::string Text(std::chrono::seconds now) const;

private:
    std::map<unsigned, Rates> rates_;
    std::map<std::chrono::seconds, std::string> texts_;
};

}  // namespace sim

#endif
