// SPDX-License-Identifier: MIT
//
// The file /proc/stat of a simulated server, which changes with the machine's virtual time.
#ifndef TALVANE_SIMULATOR_MACHINE_PROCSTAT_H
#define TALVANE_SIMULATOR_MACHINE_PROCSTAT_H

#include <chrono>
#include <cstdint>
#include <map>
#include <string>

namespace sim {

class ProcStat {
public:
    // The ticks that a processor spends on each kind of work per second.
    struct Rates {
        std::uint32_t user = 0;
        std::uint32_t nice = 0;
        std::uint32_t system = 0;
        std::uint32_t idle = 100;
    };

    // Adds a processor that works at these rates. Its counters start as if the server had been up
    // for a thousand seconds.
    void SetRates(unsigned cpu, const Rates& rates) { rates_[cpu] = rates; }

    // From the moment `from` on the file holds this text, whatever the rates are.
    void SetText(std::chrono::seconds from, std::string text) { texts_[from] = std::move(text); }

    // After the last text its numbers go on changing as from the text before it to this one, if
    // both have the same words and as many numbers. Else the last text stays.
    void Continue() { continues_ = true; }

    // The file's contents at `now`.
    std::string Text(std::chrono::seconds now) const;

private:
    std::map<unsigned, Rates> rates_;
    std::string LaterText(std::chrono::seconds now) const;

    std::map<std::chrono::seconds, std::string> texts_;
    bool continues_ = false;
};

}  // namespace sim

#endif
