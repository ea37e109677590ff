// SPDX-License-Identifier: MIT
//
// Prints the results of the library's conversions in a program of this one's build.

#include <cstdio>

#include "Grid.h"
#include "IPMI/Linearization.h"
#include "IPMI/UnitText.h"

namespace {

using namespace talvane;

class PlainConversions : public Conversions {
public:
    double ValueOf(const GridFormula& formula, unsigned char raw) override {
        const DataFormat format = DataFormatOf(formula.unit1);
        const bool analog = format != DataFormat::kNoAnalogReading;
        const double y = analog ? LinearValue(LinearOf(formula), Complemented(format, raw)) : 0.0;
        return Linearized(formula.linearization, y);
    }

    unsigned char RawOf(const GridFormula& formula, double value) override {
        const std::optional<double> y = Delinearized(formula.linearization, value);
        if (!y) return 0;
        return Complemented(DataFormatOf(formula.unit1), LinearCount(LinearOf(formula), *y));
    }

    void WriteUnit(unsigned char unit1, unsigned char base, unsigned char modifier, char* out,
                   int size) override {
        if (!WriteUnitWithoutCodes(unit1, out, size))
            WriteUnitOfCodes(unit1, base, modifier, out, size);
    }

private:
    static LinearFormula LinearOf(const GridFormula& formula) {
        return {formula.m, formula.b, formula.bExponent, formula.resultExponent};
    }
};

}  // namespace

int main() {
    PlainConversions conversions;
    return std::fputs(ConversionGrid(conversions).c_str(), stdout) < 0 || std::fflush(stdout) != 0;
}
