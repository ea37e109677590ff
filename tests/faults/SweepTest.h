// SPDX-License-Identifier: MIT
//
// Fixture of the sweeps: what the library prints is caught, and what did not hold is reported.
#ifndef TALVANE_TESTS_FAULTS_SWEEPTEST_H
#define TALVANE_TESTS_FAULTS_SWEEPTEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "faults/Sweep.h"

namespace faults {

// Sweeps the operations; the test fails for each thing that did not hold, and when there were fewer
// runs than expected, which means that faults did not strike.
inline void ExpectAllHolds(sim::SimulatedServer& server, const std::vector<Operation>& operations,
                           int leastRuns) {
    SweepResult result;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    for (const Operation& operation : operations) Sweep(server, operation, result);
    (void)testing::internal::GetCapturedStderr();  // results not used: other tests check the texts
    (void)testing::internal::GetCapturedStdout();
    EXPECT_THAT(result.complaints, testing::IsEmpty());
    EXPECT_GE(result.runs, leastRuns);
    testing::Test::RecordProperty("runs", result.runs);
}

}  // namespace faults

#endif
