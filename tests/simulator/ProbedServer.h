// SPDX-License-Identifier: MIT
//
// A simulated server that observes the probe library.
#ifndef TALVANE_TESTS_SIMULATOR_PROBEDSERVER_H
#define TALVANE_TESTS_SIMULATOR_PROBEDSERVER_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Probe.h"
#include "simulator/SimulatedServer.h"

class ProbedServer : public testing::Test {
protected:
    ProbedServer() { server.Observe("libprobe.so"); }

    sim::SimulatedServer server;
};

#endif
