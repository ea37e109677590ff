// SPDX-License-Identifier: MIT
//
// Nested calls of GetInfo: refused while one is in progress, served again afterwards.
#include <new>

#include "support/InterfaceTest.h"

namespace {

// What a call from inside a simulated call answered. The server's hook takes no argument.
int nested = 0;
RecordImage nestedRecord(64);

void AskAgain() {
    nested = GetInfo(kSystem, nestedRecord.Data());
}
void AskForNothing() {
    nested = GetInfo(0, nestedRecord.Data());
}
void AskForPorts() {
    nested = GetInfo(0x80000, nestedRecord.Data());
}

class GuardTest : public InterfaceTest {
protected:
    GuardTest() {
        nested = -99;
        nestedRecord = RecordImage(4096);
        table.Add(0, 0, 20);
        table.Add(1, 1, 8).String(4, "Maker");
    }

    void ExpectServed() {
        ExpectRecord(kSystem, RecordImage(80), RecordImage(80).Copied(32, "Maker"));
    }
};

TEST_F(GuardTest, SecondGetInfoWhileOneIsInProgressReturnsOneAndLaterItWorksAgain) {
    Place();
    server.During("read", AskAgain);
    ExpectServed();
    EXPECT_EQ(nested, 1);
    EXPECT_TRUE(SameBytes(RecordImage(4096), nestedRecord));
    ExpectServed();
}

TEST_F(GuardTest, NestedCallIsRefusedInsideEveryAccess) {
    Place();
    for (const char* call : {"open", "lseek", "read", "close"}) {
        release();
        nested = -99;
        server.During(call, AskAgain);
        ExpectServed();
        EXPECT_EQ(nested, 1) << call;
    }
}

TEST_F(GuardTest, EveryCommandIsRefused) {
    Place();
    for (void (*const action)() : {AskForNothing, AskForPorts}) {
        release();
        nested = -99;
        server.During("read", action);
        ExpectServed();
        EXPECT_EQ(nested, 1);
    }
    EXPECT_TRUE(SameBytes(RecordImage(4096), nestedRecord));
}

TEST_F(GuardTest, NestedCallMakesNoReaderOfItsOwn) {
    Place();
    server.During("read", AskAgain);
    ExpectServed();
    EXPECT_EQ(server.GetLog().Count("open"), 1u);
}

TEST_F(GuardTest, RefusedReaderFreesTheGuard) {
    server.Refuse("/dev/mem");
    testing::internal::CaptureStderr();
    RecordImage record(80);
    EXPECT_EQ(Get(kSystem, record), -1);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(Get(kSystem, record), -1);
    EXPECT_EQ(Get(0, record), 0);
}

TEST_F(GuardTest, UnknownCommandFreesTheGuard) {
    Place();
    RecordImage record(80);
    EXPECT_EQ(Get(0x30000, record), 0);
    ExpectServed();
}

TEST_F(GuardTest, FailedMemorySummaryFreesTheGuard) {
    Place();
    RecordImage record(1992);
    EXPECT_EQ(Get(0x40000, record), 0);
    ExpectServed();
}

TEST_F(GuardTest, ExceptionPassesToTheCallerAndFreesTheGuard) {
    Place();
    RecordImage record(80);
    server.FailAllocation(1);  // the reader itself
    EXPECT_THROW(Get(kSystem, record), std::bad_alloc);
    EXPECT_TRUE(SameBytes(RecordImage(80), record));
    EXPECT_TRUE(server.GetLog().Accesses().empty());
    ExpectServed();
}

}  // namespace
