// SPDX-License-Identifier: MIT
//
// Damage to every byte of a table and its entry point, and tables that end too early. Worth most
// in a build with sanitizers, which see what the fences around the records cannot.

#include <gtest/gtest.h>

#include <cstdlib>
#include <numeric>

#include "Capture.h"
#include "HostileServer.h"
#include "TestName.h"

#ifdef __SANITIZE_ADDRESS__
// The library asks for as much memory as the table's address says and takes a refusal; without
// this the sanitizer ends the process instead of refusing.
extern "C" const char* __asan_default_options();  // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
#endif

namespace captures {
namespace {

constexpr std::size_t kMaxComplaints = 10;

struct Source {
    const char* name;
    bool bundled;  // a machine of this repository, else a capture
};

void PrintTo(const Source& source, std::ostream* out) {
    *out << source.name;
}

// Small and with many types, of each kind.
constexpr Source kSources[] = {{"full-server", true},
                               {"legacy-dmi", true},
                               {"qemu-12-isapc", false},
                               {"vmware-vm-2008", false}};

class HostileTableTest : public testing::TestWithParam<Source> {
protected:
    void SetUp() override {
        if (GetParam().bundled) {
            sim::SimulatedServer machine(std::filesystem::path(TALVANE_MACHINES) / GetParam().name);
            image_ = ImageOf(machine.GetMemory());
            return;
        }
        for (const Capture& capture : AllCaptures()) {
            if (capture.name != GetParam().name) continue;
            sim::SimulatedServer machine;
            capture.LoadInto(machine);
            image_ = ImageOf(machine.GetMemory());
        }
        if (image_.entry.empty())
            GTEST_SKIP() << "no capture " << GetParam().name << " in " << CaptureFolder();
    }

    // One round; `what` names it.
    void Ask(HostileServer& server, const std::string& what) {
        for (const std::string& wrong : server.Ask()) {
            ADD_FAILURE() << what << ": " << wrong;
            ++complaints_;
        }
        ASSERT_LT(complaints_, kMaxComplaints) << "too many to go on";
    }

    TableImage image_;

private:
    std::size_t complaints_ = 0;
};

// The values that a byte gets in turn: some, or with TALVANE_EXHAUSTIVE all.
std::vector<std::uint8_t> HostileValues(std::uint8_t value) {
    if (std::getenv("TALVANE_EXHAUSTIVE") != nullptr) {
        std::vector<std::uint8_t> all(256);
        std::iota(all.begin(), all.end(), std::uint8_t{0});
        return all;
    }
    return {0x00,
            0x01,
            0x7F,
            0x80,
            0xFE,
            0xFF,
            static_cast<std::uint8_t>(value ^ 0x01),
            static_cast<std::uint8_t>(value ^ 0x80)};
}

std::string Change(const char* where, std::size_t offset, std::uint8_t value) {
    return std::string(where) + " byte " + std::to_string(offset) + " set to " +
           std::to_string(value);
}

TEST_P(HostileTableTest, IsSurvivedWithAnyByteDamaged) {
    HostileServer server(image_);
    for (std::size_t offset = 0; offset < image_.table.size(); ++offset) {
        for (const std::uint8_t value : HostileValues(image_.table[offset])) {
            server.SetTableByte(offset, value);
            ASSERT_NO_FATAL_FAILURE(Ask(server, Change("table", offset, value)));
        }
        server.SetTableByte(offset, image_.table[offset]);
    }
}

TEST_P(HostileTableTest, IsSurvivedWithAnyByteOfItsEntryPointDamaged) {
    HostileServer server(image_);
    for (std::size_t offset = 0; offset < image_.entry.size(); ++offset) {
        for (const std::uint8_t value : HostileValues(image_.entry[offset])) {
            server.SetEntryByte(offset, value);
            ASSERT_NO_FATAL_FAILURE(Ask(server, Change("entry point", offset, value)));
        }
        server.Restore();
    }
}

TEST_P(HostileTableTest, IsSurvivedWithAnyLengthStated) {
    HostileServer server(image_);
    for (std::size_t length = 0; length <= image_.table.size(); ++length) {
        server.StateLength(static_cast<std::uint16_t>(length));
        ASSERT_NO_FATAL_FAILURE(Ask(server, "length " + std::to_string(length)));
    }
}

TEST_P(HostileTableTest, IsSurvivedWhereItEndsTooEarly) {
    for (const std::uint8_t filler : {std::uint8_t{0x00}, std::uint8_t{0xFF}, std::uint8_t{'A'}}) {
        HostileServer server(image_);
        for (std::size_t end = image_.table.size() + 1; end-- > 0;) {
            server.FillFrom(end, filler);
            ASSERT_NO_FATAL_FAILURE(
                Ask(server, std::to_string(filler) + " from byte " + std::to_string(end) + " on"));
        }
    }
}

std::string NameOfSource(const testing::TestParamInfo<Source>& source) {
    return TestName(source.param.name);
}

INSTANTIATE_TEST_SUITE_P(Smbios, HostileTableTest, testing::ValuesIn(kSources), NameOfSource);

}  // namespace
}  // namespace captures
