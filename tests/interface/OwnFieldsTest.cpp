// SPDX-License-Identifier: MIT
//
// The exported functions go by the reader's own fields: this program is an agent that puts the
// methods of the same names in front of the library's.
#include "SmBios/SmBios.h"
#include "support/InterfaceTest.h"

namespace {

int agentsAnswer = 0;

}  // namespace

int SmBios::IsInitOK() {
    return agentsAnswer;
}

unsigned char SmBios::IsMatchSmBios() {
    return static_cast<unsigned char>(agentsAnswer);
}

namespace {

class OwnFieldsTest : public InterfaceTest {};

TEST_F(OwnFieldsTest, ReaderWithATableAnswersWhateverTheMethodsSay) {
    table.Add(1, 1, 8).String(4, "Maker");
    Place();
    for (const int answer : {0, 1}) {
        agentsAnswer = answer;
        ExpectRecord(kSystem, RecordImage(80), RecordImage(80).Copied(32, "Maker"));
        EXPECT_EQ(IsSmBiosSupport(), 1);
    }
}

TEST_F(OwnFieldsTest, ReaderWithoutATableFailsWhateverTheMethodsSay) {
    for (const int answer : {0, 1}) {
        agentsAnswer = answer;
        RecordImage record(80);
        EXPECT_EQ(Get(kSystem, record), -1);
        EXPECT_EQ(IsSmBiosSupport(), 0);
    }
}

}  // namespace
