// SPDX-License-Identifier: MIT
//
// Conversions give the same bits in the library, in programs of every optimisation level and in a
// 64-bit program.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Grid.h"
#include "simulator/SimulatedServer.h"
#include "support/OpenIpmi.h"

namespace {

using Lines = std::vector<std::string>;

Lines LinesOf(const std::string& text) {
    Lines lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

struct Printed {
    int status;  // of the program; the shell's where it cannot start it
    Lines lines;
};

Printed RunProgram(const std::string& program) {
    std::FILE* const output = popen(("exec '" + program + "'").c_str(), "r");
    if (output == nullptr) throw std::runtime_error("cannot run a shell");
    std::string text;
    char piece[4096];
    for (std::size_t size; (size = std::fread(piece, 1, sizeof piece, output)) != 0;)
        text.append(piece, size);
    const int status = pclose(output);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, LinesOf(text)};
}

// The library's own, as the methods that agents call.
class LibraryConversions : public Conversions {
public:
    double ValueOf(const GridFormula& formula, unsigned char raw) override {
        double value = 0.0;
        (void)sensor_.GetReadingConversion(ParameterOf(formula), raw, value);
        return value;
    }

    unsigned char RawOf(const GridFormula& formula, double value) override {
        unsigned char raw = 0;
        (void)sensor_.GetValueConversion(ParameterOf(formula), raw, value);
        return raw;
    }

    void WriteUnit(unsigned char unit1, unsigned char base, unsigned char modifier, char* out,
                   int size) override {
        unsigned char record[64] = {};
        sensor_.sdr = record;
        sensor_.sdr.body.unit1 = unit1;
        sensor_.sdr.body.BaseUnit = base;
        sensor_.sdr.body.ModifierUnit = modifier;
        (void)sensor_.GetSensorUnit(out, size);
    }

private:
    static SensorFormulaParameter ParameterOf(const GridFormula& formula) {
        SensorFormulaParameter parameter{};
        parameter.Unit1 = formula.unit1;
        parameter.SensorLinearization = formula.linearization;
        parameter.M = static_cast<short>(formula.m);
        parameter.B = static_cast<short>(formula.b);
        parameter.BExp = static_cast<signed char>(formula.bExponent);
        parameter.RExp = static_cast<signed char>(formula.resultExponent);
        return parameter;
    }

    Sensor sensor_;
};

class SameBitsTest : public ::testing::Test {
protected:
    void SetUp() override {
        constexpr int kCannotExecute = 126;
        Printed printed = RunProgram(CONVERSIONS_64);
        if (printed.status == kCannotExecute)
            GTEST_SKIP() << "this kernel does not run 64-bit programs";
        ASSERT_EQ(printed.status, 0);
        expected = std::move(printed.lines);
    }
    void ExpectSame(const Lines& lines) const {
        ASSERT_EQ(lines.size(), expected.size());
        const auto [different, theirs] =
            std::mismatch(lines.begin(), lines.end(), expected.begin());
        if (different != lines.end()) {
            EXPECT_EQ(*different, *theirs);
        }
    }
    Lines expected;
};

TEST_F(SameBitsTest, TheProgramComparedWithIsOf64Bits) {
    char identification[5] = "";
    std::ifstream(CONVERSIONS_64, std::ios::binary).read(identification, sizeof identification);
    EXPECT_EQ(identification[4], 2) << "ELFCLASS64";
    EXPECT_GT(expected.size(), 400u);
    EXPECT_NE(expected.front(), expected.back());
}

TEST_F(SameBitsTest, LibraryGivesTheSameBits) {
    const sim::SimulatedServer server;
    LibraryConversions conversions;
    ExpectSame(LinesOf(ConversionGrid(conversions)));
}

TEST_F(SameBitsTest, ProgramsOfEveryOptimisationLevelGiveTheSameBits) {
    for (const char* const program : {CONVERSIONS_O0, CONVERSIONS_O2, CONVERSIONS_O3}) {
        SCOPED_TRACE(program);
        const Printed printed = RunProgram(program);
        EXPECT_EQ(printed.status, 0);
        ExpectSame(printed.lines);
    }
}

}  // namespace
