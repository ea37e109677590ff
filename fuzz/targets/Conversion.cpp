// SPDX-License-Identifier: MIT
//
// From a raw reading to its value and back. The results may not depend on the direction in which
// the processor rounds. Input: the eight bytes of a formula, a raw reading, the eight bytes of a
// value.

#include <bit>
#include <cfenv>
#include <cstdlib>
#include <tuple>

#include "IPMI/Sensor.h"
#include "fuzz/Input.h"

namespace {

struct Question {
    SensorFormulaParameter formula;
    unsigned char raw;
    double value;
};

Question QuestionOf(fuzz::Input input) {
    Question question{};
    question.formula.Unit1 = input.TakeByte();
    question.formula.SensorLinearization = input.TakeByte();
    question.formula.M = static_cast<short>(input.TakeLe16());
    question.formula.B = static_cast<short>(input.TakeLe16());
    question.formula.BExp = static_cast<signed char>(input.TakeByte());
    question.formula.RExp = static_cast<signed char>(input.TakeByte());
    question.raw = input.TakeByte();
    const std::uint64_t low = input.TakeLe32();
    question.value = std::bit_cast<double>(low | std::uint64_t{input.TakeLe32()} << 32);
    return question;
}

// The bits of all answers: the value of the reading, its raw byte again, and that of the value.
using Answers = std::tuple<std::uint64_t, unsigned char, unsigned char>;

Answers Ask(Sensor& sensor, const Question& question) {
    const double value = sensor.ReadingConversion(question.formula, question.raw);
    unsigned char again = 0;
    unsigned char ofValue = 0;
    (void)sensor.GetValueConversion(question.formula, again, value);
    (void)sensor.GetValueConversion(question.formula, ofValue, question.value);
    return {std::bit_cast<std::uint64_t>(value), again, ofValue};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InitOK = 1;  // so that the object does not look for a BMC
    static Sensor sensor;
    const Question question = QuestionOf({data, size});
    const Answers answers = Ask(sensor, question);
    (void)std::fesetround(FE_UPWARD);
    const Answers roundedUp = Ask(sensor, question);
    (void)std::fesetround(FE_TONEAREST);
    if (roundedUp != answers) std::abort();
    return 0;
}
