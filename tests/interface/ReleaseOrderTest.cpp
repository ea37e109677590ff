// SPDX-License-Identifier: MIT
//
// What release does in which order. This program is an agent that puts a destructor of its own in
// front of the SMBIOS reader's; it notes what has happened until then.
#include <dlfcn.h>

#include <functional>
#include <string>

#include "SmBios/SmBios.h"
#include "support/InterfaceTest.h"

namespace {

std::function<void()> whenTheReaderIsDestroyed;

}  // namespace

// Stands for SmBios::~SmBios: a method takes its object as first argument.
extern "C" void AgentsDestructor(SmBios* reader) asm("_ZN6SmBiosD1Ev");

extern "C" void AgentsDestructor(SmBios* reader) {
    if (whenTheReaderIsDestroyed) whenTheReaderIsDestroyed();
    const auto destructorOfTheLibrary =
        reinterpret_cast<decltype(&AgentsDestructor)>(dlsym(RTLD_NEXT, "_ZN6SmBiosD1Ev"));
    destructorOfTheLibrary(reader);
}

namespace {

class ReleaseOrderTest : public InterfaceTest {
protected:
    ReleaseOrderTest() {
        table.Add(1, 1, 8).String(4, "Maker");
        Place();
        server.GetBmc();
    }
    ~ReleaseOrderTest() override { whenTheReaderIsDestroyed = nullptr; }

    std::size_t ClosesOfTheController() {
        std::size_t count = 0;
        for (const std::string& line : server.GetLog().Lines())
            if (line.starts_with("close /dev/ipmi")) ++count;
        return count;
    }
};

TEST_F(ReleaseOrderTest, SmBiosReaderIsFreedBeforeTheIpmiObject) {
    EXPECT_EQ(IsIpmiSupport(), 1);
    EXPECT_EQ(IsSmBiosSupport(), 1);
    server.GetLog().Clear();
    int destroyed = 0;
    std::size_t closedBefore = 99;
    whenTheReaderIsDestroyed = [&] {
        ++destroyed;
        closedBefore = ClosesOfTheController();
    };
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(closedBefore, 0u);
    EXPECT_GT(ClosesOfTheController(), 0u);
}

TEST_F(ReleaseOrderTest, ReaderIsForgottenBeforeItIsDestroyed) {
    EXPECT_EQ(IsSmBiosSupport(), 1);
    EXPECT_EQ(server.GetLog().Count("open"), 1u);
    int nested = -99;
    whenTheReaderIsDestroyed = [&] {
        whenTheReaderIsDestroyed = nullptr;
        nested = IsSmBiosSupport();
    };
    EXPECT_EQ(release(), 0);
    EXPECT_EQ(nested, 1);
    EXPECT_EQ(server.GetLog().Count("open"), 2u);  // the nested call made a reader of its own
    EXPECT_EQ(IsSmBiosSupport(), 1);
    EXPECT_EQ(server.GetLog().Count("open"), 2u);
}

}  // namespace
