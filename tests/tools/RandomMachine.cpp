// SPDX-License-Identifier: MIT
//
// Each part of a machine is there or not, and its numbers are anything that a statement takes.

#include "tests/tools/RandomMachine.h"

#include <cstdio>
#include <initializer_list>
#include <random>
#include <set>

namespace {

class MachineWriter {
public:
    explicit MachineWriter(unsigned seed) : random_(seed) {}

    std::string Write() {
        WriteTable();
        WriteController();
        WritePci();
        WriteDrives();
        WriteLoad();
        for (const char* const device :
             {"/dev/mem", "/dev/ipmi", "/proc/ide", "/dev/hda", "/proc/stat"})
            if (Once(12)) Line(std::string("without ") + device + (Once(2) ? "" : " EACCES"));
        if (Once(12)) Line("without ports EPERM");
        return text_;
    }

private:
    unsigned Below(unsigned limit) { return static_cast<unsigned>(random_()) % limit; }
    bool Once(unsigned in) { return Below(in) == 0; }
    std::string Number(unsigned limit) { return std::to_string(Below(limit)); }
    void Line(const std::string& line) { text_ += line + '\n'; }

    unsigned OneOf(std::initializer_list<unsigned> values) {
        return values.begin()[Below(static_cast<unsigned>(values.size()))];
    }

    std::string Hex(unsigned value, const char* format) {
        char text[16];
        std::snprintf(text, sizeof text, format, value);
        return text;
    }

    std::string Text(unsigned most) {
        std::string text = "\"";
        for (unsigned left = 1 + Below(most); left != 0; --left) {
            const unsigned c = Once(30) ? 1 + Below(255) : 0x20 + Below(0x5F);
            text += c == '"' || c == '\\' || c < 0x20 || c > 0x7E
                        ? Hex(c, "\\x%02X")
                        : std::string(1, static_cast<char>(c));
        }
        return text + '"';
    }

    void WriteTable() {
        if (Once(8)) return;
        std::string line = "smbios version 2." + Number(9);
        if (Once(3)) line += " anchor dmi";
        if (Once(4)) line += " entry " + Hex(0xF0000 + 16 * Below(0xFFE), "0x%X");
        if (Once(6)) line += " structures " + Number(40);
        if (Once(6)) line += " length " + Number(3000);
        if (Once(6)) line += " table " + Hex(0x200000 + Below(0x3000000), "0x%X");
        Line(line);
        for (unsigned structures = Below(40); structures != 0; --structures) {
            const unsigned type = OneOf(
                {0, 1, 2, 3, 4, 4, 5, 6, 7, 8, 9, 16, 17, 17, 22, 26, 27, 28, 29, 39, 11, 130});
            const unsigned length = 4 + Below(60);
            Line("structure " + std::to_string(type) + " handle " + Number(0x10000) + " length " +
                 std::to_string(length));
            std::set<unsigned> set;
            for (unsigned texts = Below(5); texts != 0 && length > 4; --texts) {
                const unsigned at = 4 + Below(length - 4);
                if (set.insert(at).second) Line("  string " + std::to_string(at) + ' ' + Text(30));
            }
            for (unsigned at = 4; at < length; ++at)
                if (!set.contains(at) && !Once(4))
                    Line("  byte " + std::to_string(at) + ' ' + Number(256));
        }
    }

    void WriteController() {
        if (Once(6)) return;
        static constexpr const char* kInterfaceWords[] = {"kcs", "smic", "both", "kcs", "none"};
        Line(std::string("bmc ") + kInterfaceWords[Below(5)] + " firmware " + Number(128) + ' ' +
             Number(100));
        for (unsigned sensors = Below(14); sensors != 0; --sensors) WriteSensor();
        if (Once(3)) Line("record 0x12 20 00 00 00 00 00");
        if (Once(4))
            Line(
                "record 2 20 00 80 20 01 00 00 0C 6F 00 00 00 00 63 00 C0 00 00 14 80 00 00 00 00 "
                "00 00 C5 44 49 4D 4D 2D");
        if (Once(4)) Line("repository count " + Number(30));
        if (Once(5)) Line("watchdog action " + Number(4) + " seconds " + Number(6000));
        if (Once(2)) Line("channel " + std::to_string(1 + Below(7)) + " 4 1");
        static constexpr const char* kFaultyCommands[] = {
            "Get SDR Repository Info", "Get Sensor Reading", "Get Sensor Thresholds",
            "Get Device ID",           "Get Watchdog Timer", "Get FRU Inventory Area Info"};
        if (Once(4))
            Line(std::string("fault \"") + kFaultyCommands[Below(6)] + "\" every " +
                 (Once(2) ? "refused 0xC0" : "short " + Number(4)));
    }

    void WriteSensor() {
        const std::string number = Number(Once(2) ? 16 : 255);
        if (!sensors_.insert(number).second) return;
        Line("sensor " + number + ' ' + Text(16));
        Line("  type " + std::to_string(OneOf({1, 1, 2, 2, 4, 4, 7, 8, 16, 0xC5})));
        Line("  entity " + Number(60) + ' ' + Number(128));
        if (Once(4)) Line("  event " + std::to_string(OneOf({0x01, 0x03, 0x0A, 0x6F, 0x70})));
        Line("  unit " + Number(92));
        Line("  format " + Number(256));
        Line("  factors " + std::to_string(static_cast<int>(Below(1024)) - 512) + " 5 -2 1");
        if (Once(4)) Line("  linearization " + Number(12));
        Line("  masks " + Number(64) + ' ' + Number(64));
        if (Once(6)) Line("  delivered " + Number(65));
        if (!Once(4)) Line("reading " + number + (Once(5) ? " unavailable " : " ") + Number(256));
        if (Once(3)) Line("states " + number + ' ' + Number(256) + ' ' + Number(256));
        if (Once(2))
            Line("thresholds " + number + ' ' + Number(64) + ' ' + Number(256) + ' ' + Number(256) +
                 ' ' + Number(256) + ' ' + Number(256) + ' ' + Number(256) + ' ' + Number(256));
    }

    void WritePci() {
        std::set<unsigned> places;
        for (unsigned functions = Once(10) ? 80 : Below(20); functions != 0; --functions) {
            const unsigned place = Below(12 << 8);
            if (!places.insert(place).second) continue;
            Line("pci " + Hex(place >> 8, "%02x") + ':' + Hex(place >> 3 & 31, "%02x") + '.' +
                 Hex(place & 7, "%x") + ' ' + Hex(Below(0x10000), "%04x") + ':' +
                 Hex(Below(0x10000), "%04x") + " class " + Hex(Below(0x13), "%02x") + '.' +
                 Hex(Below(0x81), "%02x") + '.' + Hex(Below(256), "%02x") + " status " +
                 Number(0x10000) + " header " + Number(3) + " irq " + Number(256) + " bar0 " +
                 Number(0x7FFFFFFF) + " bar2 " + Number(0x7FFFFFFF));
        }
    }

    void WriteDrives() {
        for (char letter = 'a'; letter <= 'd'; ++letter) {
            if (!Once(3)) continue;
            const std::string name = std::string("hd") + letter;
            Line("drive " + name + " sectors " + std::to_string(200000000 + Below(100000000)) +
                 " model " + Text(40) + " serial " + Text(20) +
                 (Once(4) ? " media \"cdrom\"" : ""));
            for (unsigned entry = 1; entry <= 4; ++entry)
                if (!Once(3)) WriteEntry(name, entry);
        }
    }

    // With logical partitions along the cylinders where the library looks for them, and some that
    // lead nowhere.
    void WriteEntry(const std::string& drive, unsigned entry) {
        const unsigned type = OneOf({0x83, 0x82, 0x07, 0x0B, 0x0F, 0x0F, 0x05, 0x00, 0xEE});
        unsigned cylinder = Once(8) ? 0 : 1 + Below(3000);
        Line("entry " + drive + " 0 " + std::to_string(entry) + ' ' + std::to_string(type) + ' ' +
             std::to_string(cylinder * 16065 + Below(16065)) + ' ' + Number(100000000));
        if (type != 0x0F) return;
        for (unsigned links = Below(6); links != 0 && cylinder < 12000; --links) {
            const unsigned length = Below(20) * 16065 + Below(16065);
            const std::string record =
                "entry " + drive + ' ' + std::to_string(cylinder * 16065) + ' ';
            if (cylinder != 0 && used_.insert(drive + std::to_string(cylinder)).second) {
                Line(record + "1 " +
                     std::to_string(OneOf({0x83, 0x82, 0x06, 0x0C, 0x16, 0x99, 0x00})) + " 63 " +
                     std::to_string(length));
                if (links != 1)
                    Line(record + "2 " + std::to_string(OneOf({0x05, 0x0F, 0x83})) + " 1 2");
            }
            cylinder += length / 16065 + 1;
        }
    }

    void WriteLoad() {
        for (unsigned cpu = Below(10); cpu != 0; --cpu)
            Line("cpu " + std::to_string(cpu - 1) + " user " + Number(100) + " nice " + Number(9) +
                 " system " + Number(50) + " idle " + Number(200));
        if (!Once(4)) {
            const unsigned total = 1 + Below(8000000);
            Line("free total " + std::to_string(total) + " used " + Number(total));
        }
    }

    std::mt19937 random_;
    std::string text_;
    std::set<std::string> sensors_;
    std::set<std::string> used_;
};

}  // namespace

std::string RandomMachine(unsigned seed) {
    return MachineWriter(seed).Write();
}
