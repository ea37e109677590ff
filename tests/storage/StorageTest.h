// SPDX-License-Identifier: MIT
//
// Fixture of the storage tests: a simulated server and drives to put into it.
#ifndef TALVANE_TESTS_STORAGE_STORAGETEST_H
#define TALVANE_TESTS_STORAGE_STORAGETEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "simulator/SimulatedServer.h"
#include "simulator/machine/IdeDrive.h"
#include "simulator/machine/Machine.h"
#include "storage/GetAllPartitionInfo.h"
#include "storage/GetStorageInfo.h"

class StorageTest : public ::testing::Test {
protected:
    void Put(char letter, const sim::IdeDrive& drive) {
        sim::InstallDrive(server.GetMachine(), letter, drive);
    }

    sim::SimulatedServer server;
};

#endif
