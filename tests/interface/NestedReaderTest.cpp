// SPDX-License-Identifier: MIT
//
// Calls from within the creation of the reader: they find no reader and make none.
#include "support/InterfaceTest.h"

namespace {

constexpr unsigned long kPciFunctions = 0x100000;
const char* const kAccesses[] = {"open", "lseek", "read", "close"};

// What a call from inside a simulated call answered. The server's hook takes no argument.
int nestedAnswer = 0;
RecordImage recordOfNestedCall(64);

void AskForSupport() {
    nestedAnswer = IsSmBiosSupport();
}
void AskForTheSystem() {
    nestedAnswer = GetInfo(kSystem, recordOfNestedCall.Data());
}
void AskForPciFunctions() {
    nestedAnswer = GetInfo(kPciFunctions, recordOfNestedCall.Data());
}
void AskReaderForNothing() {
    nestedAnswer = GetInfo(0, recordOfNestedCall.Data());
}
void Release() {
    nestedAnswer = release();
}

class NestedReaderTest : public InterfaceTest {
protected:
    NestedReaderTest() {
        table.Add(0, 0, 20);
        table.Add(1, 1, 8).String(4, "Maker");
        Place();
    }

    // Has the next call of the machine named `call` run the action first.
    void During(const char* call, void (*action)()) {
        nestedAnswer = -99;
        recordOfNestedCall = RecordImage(32768);
        server.During(call, action);
    }

    void ExpectSystemAnswered() {
        ExpectRecord(kSystem, RecordImage(80), RecordImage(80).Copied(32, "Maker"));
    }
};

TEST_F(NestedReaderTest, SupportQueryWithinTheFirstGetInfoAnswersZeroAndMakesNoReader) {
    std::size_t readers = 0;
    for (const char* call : kAccesses) {
        release();
        During(call, AskForSupport);
        ExpectSystemAnswered();
        EXPECT_EQ(nestedAnswer, 0) << call;
        EXPECT_EQ(server.GetLog().Count("open"), ++readers) << call;
        EXPECT_EQ(IsSmBiosSupport(), 1) << call;
    }
}

TEST_F(NestedReaderTest, SupportQueryWithinASupportQueryAnswersZeroAndMakesNoReader) {
    During("read", AskForSupport);
    EXPECT_EQ(IsSmBiosSupport(), 1);
    EXPECT_EQ(nestedAnswer, 0);
    EXPECT_EQ(server.GetLog().Count("open"), 1u);
}

TEST_F(NestedReaderTest, GetInfoWithinASupportQueryIsBusyMakesNoReaderAndLeavesNoFlagSet) {
    std::size_t readers = 0;
    for (const char* call : kAccesses) {
        release();
        During(call, AskForTheSystem);
        EXPECT_EQ(IsSmBiosSupport(), 1) << call;
        EXPECT_EQ(nestedAnswer, 1) << call;
        EXPECT_TRUE(SameBytes(RecordImage(32768), recordOfNestedCall)) << call;
        EXPECT_EQ(server.GetLog().Count("open"), ++readers) << call;
        ExpectSystemAnswered();
    }
}

TEST_F(NestedReaderTest, EveryCommandWithinASupportQueryIsBusy) {
    for (void (*const action)() : {AskForPciFunctions, AskReaderForNothing}) {
        release();
        During("read", action);
        EXPECT_EQ(IsSmBiosSupport(), 1);
        EXPECT_EQ(nestedAnswer, 1);
        EXPECT_TRUE(SameBytes(RecordImage(32768), recordOfNestedCall));
    }
    EXPECT_EQ(server.GetLog().Count("iopl"), 0u);
}

TEST_F(NestedReaderTest, ReleaseWithinTheCreationFreesNothing) {
    During("read", Release);
    EXPECT_EQ(IsSmBiosSupport(), 1);
    EXPECT_EQ(nestedAnswer, 0);
    ExpectSystemAnswered();
    EXPECT_EQ(server.GetLog().Count("open"), 1u);
}

TEST_F(NestedReaderTest, CreationThatEndsInAnExceptionLeavesNoFlagSet) {
    server.FailAllocation(1);  // the reader itself
    EXPECT_THROW(IsSmBiosSupport(), std::bad_alloc);
    ExpectSystemAnswered();
    EXPECT_EQ(IsSmBiosSupport(), 1);
}

}  // namespace
