// SPDX-License-Identifier: MIT
//
// Tables of fields: each row gives a field's name, the value that it has and the value that it
// ought to have. A failure names the field.
#ifndef TALVANE_TESTS_SUPPORT_FIELDTABLE_H
#define TALVANE_TESTS_SUPPORT_FIELDTABLE_H

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

// Every field of the records fits a double exactly.
struct NumberField {
    template <class Value>
    NumberField(const char* field, Value isNow, double ought)
        : name(field), value(static_cast<double>(isNow)), expected(ought) {}

    const char* name;
    double value;
    double expected;
};

struct TextField {
    const char* name;
    std::string value;
    std::string expected;
};

inline void ExpectNumbers(std::initializer_list<NumberField> fields) {
    for (const NumberField& field : fields) {
        SCOPED_TRACE(field.name);
        EXPECT_EQ(field.value, field.expected);
    }
}

inline void ExpectTexts(std::initializer_list<TextField> fields) {
    for (const TextField& field : fields) {
        SCOPED_TRACE(field.name);
        EXPECT_EQ(field.value, field.expected);
    }
}

#endif
