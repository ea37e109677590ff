// SPDX-License-Identifier: MIT
//
// Which getters the processor, memory, port and system commands call, in order: an agent may have
// put its own in front of them. This program is such an agent, whose getters note each call with
// its arguments and where in the record it writes.
#include <cstring>

#include "support/GetterCallsTest.h"

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

// What the agent's getters answer.
int modules = 0;
int devices = 0;
bool firstModuleIsEmpty = false;
bool firstSocketIsEmpty = false;

int Note(const std::string& call, int answer = 0) {
    calls.push_back(call);
    return answer;
}

std::string Number(int number) {
    return " " + std::to_string(number);
}
std::string Place(const char* buf) {
    return " +" + std::to_string(buf - record);
}
std::string Place(const char* buf, unsigned size) {
    return Place(buf) + " " + std::to_string(size);
}
std::string Size(unsigned size) {
    return " " + std::to_string(size);
}

}  // namespace

int SmBios::GetProcessorVirtualQuantity() {
    return Note("GetProcessorVirtualQuantity", 2);
}
int SmBios::GetProcessorStatus(int cpu, unsigned char*) {
    return Note("GetProcessorStatus" + Number(cpu));
}
int SmBios::GetProcessorMaxSpeed(int cpu, char* buf) {
    return Note("GetProcessorMaxSpeed" + Number(cpu) + Place(buf));
}
int SmBios::GetProcessorCurrentSpeed(int cpu, char* buf) {
    return Note("GetProcessorCurrentSpeed" + Number(cpu) + Place(buf));
}
int SmBios::GetProcessorExternalClock(int cpu, char* buf) {
    return Note("GetProcessorExternalClock" + Number(cpu) + Place(buf));
}
int SmBios::GetProcessorFamily(int cpu, char* buf) {
    return Note("GetProcessorFamily" + Number(cpu) + Place(buf));
}
int SmBios::GetProcessorManufacturer(int cpu, char* buf, unsigned size) {
    return Note("GetProcessorManufacturer" + Number(cpu) + Place(buf, size));
}
int SmBios::GetCacheDesignation(int cpu, int level, char* buf, unsigned size) {
    return Note("GetCacheDesignation" + Number(cpu) + Number(level) + Place(buf, size));
}
int SmBios::GetCacheInstalledSize(int cpu, int level, char* buf) {
    return Note("GetCacheInstalledSize" + Number(cpu) + Number(level) + Place(buf));
}
int SmBios::GetCacheMaxSize(int cpu, int level, char* buf) {
    return Note("GetCacheMaxSize" + Number(cpu) + Number(level) + Place(buf));
}
int SmBios::GetCacheSpeed(int cpu, int level, char* buf) {
    return Note("GetCacheSpeed" + Number(cpu) + Number(level) + Place(buf));
}

int SmBios::GetPortQuantity() {
    return Note("GetPortQuantity", 2);
}
int SmBios::GetPortType(int port, char* buf) {
    return Note("GetPortType" + Number(port) + Place(buf));
}
int SmBios::GetPortDecription(int port, char* buf, unsigned size) {
    return Note("GetPortDecription" + Number(port) + Place(buf, size));
}

int SmBios::GetSysManufacturer(char* buf, unsigned size) {
    return Note("GetSysManufacturer" + Place(buf, size));
}
int SmBios::GetSysProductname(char* buf, unsigned size) {
    return Note("GetSysProductname" + Place(buf, size));
}
int SmBios::GetSysVersion(char* buf, unsigned size) {
    return Note("GetSysVersion" + Place(buf, size));
}

// The memory summary is the library's own and calls these; it writes to a record of its own.
int SmBios::ExistMemCtl() {
    return Note("ExistMemCtl", modules != 0 ? 1 : 0);
}
int SmBios::ExistMemModule() {
    return Note("ExistMemModule", 1);
}
int SmBios::ExistMemDev() {
    return Note("ExistMemDev", devices != 0 ? 1 : 0);
}
int SmBios::GetMemModuleQuantity() {
    return Note("GetMemModuleQuantity", modules);
}
int SmBios::GetValidMemModuleHandle(int i) {
    return Note("GetValidMemModuleHandle" + Number(i), 100 + i);
}
int SmBios::GetMemModuleSize(int handle, char* buf) {
    if (handle != 100 || !firstModuleIsEmpty) std::strcpy(buf, "1 MB");
    return Note("GetMemModuleSize" + Number(handle));
}
int SmBios::GetMemModuleType(int handle, char* buf) {
    std::strcpy(buf, "DIMM");
    return Note("GetMemModuleType" + Number(handle));
}
int SmBios::GetMemModuleSpeed(int handle, char*) {
    return Note("GetMemModuleSpeed" + Number(handle));
}
int SmBios::GetMemModuleLocate(int handle, char*, unsigned size) {
    return Note("GetMemModuleLocate" + Number(handle) + Size(size));
}
int SmBios::GetProperMemDev(char*) {
    return Note("GetProperMemDev", 7);
}
int SmBios::GetMemDevSize(int dev, char* buf) {
    const bool isEmpty = dev == 1 && firstSocketIsEmpty;
    if (!isEmpty) std::strcpy(buf, "1 MB");
    return Note("GetMemDevSize" + Number(dev), dev > devices ? -1 : isEmpty ? 1 : 0);
}
int SmBios::GetMemDevType(int dev, char* buf) {
    std::strcpy(buf, "DDR");
    return Note("GetMemDevType" + Number(dev));
}
int SmBios::GetMemDevTypeDetail(int dev, char*) {
    return Note("GetMemDevTypeDetail" + Number(dev));
}
int SmBios::GetMemDevSpeed(int dev, char*) {
    return Note("GetMemDevSpeed" + Number(dev));
}
int SmBios::GetMemDevManufacturer(int dev, char*, unsigned size) {
    return Note("GetMemDevManufacturer" + Number(dev) + Size(size));
}
int SmBios::GetMemDevLocator(int dev, char*, unsigned size) {
    return Note("GetMemDevLocator" + Number(dev) + Size(size));
}
int SmBios::GetMemoryTotalSize() {
    return Note("GetMemoryTotalSize", 5);
}

namespace {

class GetterOrderTest : public GetterCallsTest {
protected:
    // The calls for processor `index`, whose element starts at `at` in the record.
    static std::vector<std::string> CallsOfProcessor(int index, int at) {
        const std::string cpu = Number(index);
        const auto field = [at](int offset) { return " +" + std::to_string(at + offset); };
        std::vector<std::string> expected = {
            "GetProcessorStatus" + cpu,
            "GetProcessorMaxSpeed" + cpu + field(64),
            "GetProcessorCurrentSpeed" + cpu + field(80),
            "GetProcessorExternalClock" + cpu + field(96),
            "GetProcessorFamily" + cpu + field(0),
            "GetProcessorManufacturer" + cpu + field(112) + " 48",
        };
        for (int level = 0; level < 3; ++level) {
            const std::string cache = cpu + Number(level);
            const int start = 176 + 80 * level;
            expected.push_back("GetCacheDesignation" + cache + field(start + 48) + " 32");
            expected.push_back("GetCacheInstalledSize" + cache + field(start + 16));
            expected.push_back("GetCacheMaxSize" + cache + field(start));
            expected.push_back("GetCacheSpeed" + cache + field(start + 32));
        }
        return expected;
    }
};

TEST_F(GetterOrderTest, ProcessorsAreCountedThenAskedForStatusSpeedsNamesAndCachesInTurn) {
    EXPECT_EQ(Answer(0x20000, 3396).NumberAt(0), 2);
    std::vector<std::string> expected = {"GetProcessorVirtualQuantity"};
    for (const std::string& call : CallsOfProcessor(1, 4)) expected.push_back(call);
    for (const std::string& call : CallsOfProcessor(2, 4 + 424)) expected.push_back(call);
    EXPECT_THAT(calls, ElementsAreArray(expected));
}

TEST_F(GetterOrderTest, PortsAreCountedThenAskedForTypeAndDesignator) {
    EXPECT_EQ(Answer(0x80000, 2564).NumberAt(0), 2);
    EXPECT_THAT(calls, ElementsAre("GetPortQuantity",             //
                                   "GetPortType 1 +4",            //
                                   "GetPortDecription 1 +52 32",  //
                                   "GetPortType 2 +84",           //
                                   "GetPortDecription 2 +132 32"));
}

TEST_F(GetterOrderTest, SystemIsAskedForManufacturerProductAndVersion) {
    EXPECT_TRUE(SameBytes(RecordImage(80), Answer(0x10000000, 80)));
    EXPECT_THAT(calls, ElementsAre("GetSysManufacturer +32 32",  //
                                   "GetSysProductname +0 32",    //
                                   "GetSysVersion +64 16"));
}

TEST_F(GetterOrderTest,
       ModuleIsAskedForSizeTypeSpeedAndLocatorThenItsDeviceForDetailAndManufacturer) {
    modules = 1;
    devices = 1;
    const RecordImage answer = Answer(0x40000, 1992);
    EXPECT_EQ(answer.NumberAt(0), 5);
    EXPECT_EQ(answer.NumberAt(4), 1);
    EXPECT_THAT(calls, ElementsAre("ExistMemCtl",                //
                                   "ExistMemModule",             //
                                   "GetMemModuleQuantity",       //
                                   "GetValidMemModuleHandle 0",  //
                                   "GetMemModuleSize 100",       //
                                   "GetMemModuleType 100",       //
                                   "GetMemModuleSpeed 100",      //
                                   "GetMemModuleLocate 100 64",  //
                                   "ExistMemDev",                //
                                   "GetProperMemDev",            //
                                   "GetMemDevTypeDetail 7",      //
                                   "GetMemDevManufacturer 7 32", "GetMemoryTotalSize"));
}

TEST_F(GetterOrderTest, ModuleWithoutASizeIsAskedForNothingElseAndNoneAfterTheLastIsAskedFor) {
    modules = 2;
    devices = 0;
    firstModuleIsEmpty = true;
    EXPECT_EQ(Answer(0x40000, 1992).NumberAt(4), 1);
    EXPECT_THAT(calls, ElementsAre("ExistMemCtl",                //
                                   "ExistMemModule",             //
                                   "GetMemModuleQuantity",       //
                                   "GetValidMemModuleHandle 0",  //
                                   "GetMemModuleSize 100",       //
                                   "GetValidMemModuleHandle 1",  //
                                   "GetMemModuleSize 101",       //
                                   "GetMemModuleType 101",       //
                                   "GetMemModuleSpeed 101",      //
                                   "GetMemModuleLocate 101 64",  //
                                   "ExistMemDev",                //
                                   "GetMemoryTotalSize"));
}

TEST_F(GetterOrderTest, DeviceIsAskedForSizeTypeDetailSpeedManufacturerAndLocator) {
    modules = 0;
    devices = 2;
    firstSocketIsEmpty = true;
    EXPECT_EQ(Answer(0x40000, 1992).NumberAt(4), 1);
    EXPECT_THAT(calls, ElementsAre("ExistMemCtl",                 //
                                   "ExistMemDev",                 //
                                   "GetMemDevSize 1",             //
                                   "GetMemDevSize 2",             //
                                   "GetMemDevType 2",             //
                                   "GetMemDevTypeDetail 2",       //
                                   "GetMemDevSpeed 2",            //
                                   "GetMemDevManufacturer 2 32",  //
                                   "GetMemDevLocator 2 64",       //
                                   "GetMemDevSize 3",             //
                                   "GetMemoryTotalSize"));
}

TEST_F(GetterOrderTest, MemoryThatNothingDescribesIsSummedAllTheSame) {
    modules = 0;
    devices = 0;
    EXPECT_TRUE(SameBytes(RecordImage(1992), Answer(0x40000, 1992)));
    EXPECT_THAT(calls, ElementsAre("ExistMemCtl", "ExistMemDev", "GetMemoryTotalSize"));
}

}  // namespace
