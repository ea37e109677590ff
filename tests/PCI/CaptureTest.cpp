// SPDX-License-Identifier: MIT
//
// Captured machines, function by function beside what lspci says of them.
#include <cctype>
#include <cstdio>
#include <tuple>

#include "PCI/LspciText.h"
#include "PCI/PciTest.h"
#include "simulator/description/PciText.h"
#include "support/SharedData.h"

namespace {

constexpr unsigned kLastBus = 10;
constexpr std::size_t kMaxFunctions = 64;

// lspci's name of a class, without or with an interface, and the report's of the same. Empty: the
// report has none.
struct Names {
    unsigned classAndSub;
    int progIf;  // -1: any
    const char* lspci;
    const char* model;
    const char* type;
};

constexpr Names kNames[] = {
    {0x0100, -1, "SCSI storage controller", "Mass storage controller", "SCSI bus controller"},
    {0x0101, -1, "IDE interface", "Mass storage controller", "IDE controller"},
    {0x0104, -1, "RAID bus controller", "Mass storage controller", "RAID controller"},
    {0x0106, -1, "SATA controller", "Mass storage controller", ""},
    {0x0107, -1, "Serial Attached SCSI controller", "Mass storage controller", ""},
    {0x0108, -1, "Non-Volatile memory controller", "Mass storage controller", ""},
    {0x0200, -1, "Ethernet controller", "Network controller", "Ethernet controller"},
    {0x0280, -1, "Network controller", "Network controller", "Other network controller"},
    {0x0300, 0, "VGA compatible controller", "Display controller", "VGA-compatible controller"},
    {0x0302, -1, "3D controller", "Display controller", "3D controller"},
    {0x0380, -1, "Display controller", "Display controller", "Other display controller"},
    {0x0403, -1, "Audio device", "Multimedia device", ""},
    {0x0502, -1, "CXL", "Memory controller", ""},
    {0x0600, -1, "Host bridge", "Bridge device", "Host bridge"},
    {0x0601, -1, "ISA bridge", "Bridge device", "ISA bridge"},
    {0x0604, 0x00, "PCI bridge", "Bridge device", "PCI-to-PCI bridge"},
    {0x0604, 0x01, "PCI bridge", "Bridge device", "Subtractive Decode PCI-to-PCI bridge"},
    {0x0604, 0x0F, "PCI bridge", "Bridge device", ""},
    {0x0607, -1, "CardBus bridge", "Bridge device", "CardBus bridge"},
    {0x0680, -1, "Bridge", "Bridge device", "Other bridge device"},
    {0x0700, 2, "Serial controller", "Simple communication controllers",
     "16550-compatible serial controller"},
    {0x0780, -1, "Communication controller", "Simple communication controllers",
     "Other communications device"},
    {0x0800, 0x00, "PIC", "Base system peripherals", "Generic 8259 PIC"},
    {0x0800, 0x20, "PIC", "Base system peripherals", "I/O(x) APIC interrupt controller"},
    {0x0805, -1, "SD Host controller", "Base system peripherals", ""},
    {0x0880, -1, "System peripheral", "Base system peripherals", "Other system peripheral"},
    {0x0B40, -1, "Co-processor", "Processors", "Co-processor"},
    {0x0C00, 0x10, "FireWire (IEEE 1394)", "Serial bus controllers", ""},
    {0x0C03, 0x00, "USB controller", "Serial bus controllers", "Universal Serial Bus"},
    {0x0C03, 0x10, "USB controller", "Serial bus controllers", "Universal Serial Bus"},
    {0x0C03, 0x20, "USB controller", "Serial bus controllers", "USB2 host controller"},
    {0x0C03, 0x30, "USB controller", "Serial bus controllers", ""},
    {0x0C05, -1, "SMBus", "Serial bus controllers", "SMBus"},
    {0x0C06, -1, "InfiniBand", "Serial bus controllers", "InfiniBand"},
    {0x1101, -1, "Performance counters", "Data acquisition and signal processing controllers",
     "Performance counters"},
    {0xFF00, -1, "Unassigned class", "", ""},
};

const Names* NamesOf(const LspciFunction& function) {
    for (const Names& row : kNames)
        if (row.classAndSub == (function.classCode << 8 | function.subClass) &&
            (row.progIf < 0 || row.progIf == static_cast<int>(function.progIf)))
            return &row;
    return nullptr;
}

bool Has(const LspciFunction& function, const char* flag) {
    return (" " + function.status + " ").find(std::string(" ") + flag + " ") != std::string::npos;
}

// lspci's status flags in the report's words.
std::string StatusOf(const LspciFunction& function) {
    constexpr std::pair<const char*, const char*> flags[] = {
        {"INTx+", "Interrupt Status;"},
        {"Cap+", "Capabilities List;"},
        {"66MHz+", "66 MHz Capable;"},
        {"FastB2B+", "Fast Back-to-Back Capable;"},
        {"ParErr+", "Master Data Parity Error;"},
        {"DEVSEL=fast", "Speed=Fast;"},
        {"DEVSEL=medium", "Speed=Medium;"},
        {"DEVSEL=slow", "Speed=Slow;"},
        {">TAbort+", "Signaled Target Abort;"},
        {"<TAbort+", "Received Target Abort;"},
        {"<MAbort+", "Received Master Abort;"},
        {">SERR+", "Signaled system Error;"},
        {"<PERR+", "Detected Parity Error;"},
    };
    std::string text;
    for (const auto& [flag, word] : flags)
        if (Has(function, flag)) text += word;
    return text;
}

// lspci shows an address without its flag bits, joins the upper half of a 64-bit one to it, and
// leaves out registers that hold nothing.
void ExpectFirstRegion(const LspciFunction& function, long ioBase) {
    const auto value = static_cast<unsigned long>(ioBase);
    unsigned long long address = 0;
    if (std::sscanf(function.firstRegion.c_str(), "I/O ports at %llx", &address) == 1) {
        EXPECT_EQ(value & 3, 1u);
        EXPECT_EQ(value & ~3ul, address);
    } else if (std::sscanf(function.firstRegion.c_str(), "Memory at %llx", &address) == 1) {
        EXPECT_EQ(value & 1, 0u);
        EXPECT_EQ(value & ~0xFul, address & 0xFFFFFFFF);
    }
}

void ExpectSame(const LspciFunction& function, const DEV& entry) {
    char location[32];
    (void)std::snprintf(location, sizeof location, "bus:%u, dev:%u, func:%u", function.bus,
                        function.device, function.function);
    SCOPED_TRACE(location);
    EXPECT_STREQ(entry.desc, location);
    EXPECT_EQ(static_cast<unsigned>(entry.revision), function.revision);
    EXPECT_EQ(entry.status, StatusOf(function));
    const unsigned irq = function.irq.value_or(0);
    EXPECT_EQ(static_cast<unsigned>(entry.IRQ), irq == 255 ? 0 : irq);
    if (function.hasFirstRegion) ExpectFirstRegion(function, entry.IOBase);

    const Names* const names = NamesOf(function);
    ASSERT_NE(names, nullptr) << "no names for " << function.className;
    EXPECT_EQ(function.className, names->lspci);
    EXPECT_STREQ(entry.model, names->model);
    EXPECT_STREQ(entry.type, names->type);
}

// The functions that the report lists, in its order.
std::vector<LspciFunction> ReportedFunctions(const std::string& name) {
    std::vector<LspciFunction> functions =
        ReadLspci(ContentOf(SharedData("pci") / (name + ".lspci-vvnn.txt")));
    std::erase_if(functions, [](const LspciFunction& f) { return f.bus > kLastBus; });
    std::sort(
        functions.begin(), functions.end(), [](const LspciFunction& a, const LspciFunction& b) {
            return std::tie(a.bus, a.device, a.function) < std::tie(b.bus, b.device, b.function);
        });
    return functions;
}

class PciCaptureTest : public ::testing::Test, public ::testing::WithParamInterface<std::string> {};

TEST_P(PciCaptureTest, IsReportedAsLspciShowsIt) {
    if (GetParam().empty()) GTEST_SKIP() << kNoCaptures;
    const std::vector<LspciFunction> functions = ReportedFunctions(GetParam());
    sim::SimulatedServer server;
    for (const auto& [location, bytes] :
         sim::ReadPciText(ContentOf(SharedData("pci") / (GetParam() + ".txt"))))
        server.GetPci().Set(location, bytes);
    DeviceInformation record{};
    if (functions.size() > kMaxFunctions) {
        EXPECT_EQ(GetPciInfo(&record), -1);
        return;
    }
    ASSERT_EQ(GetPciInfo(&record), 0);
    ASSERT_EQ(static_cast<std::size_t>(record.quantity), functions.size());
    for (std::size_t i = 0; i < functions.size(); ++i) ExpectSame(functions[i], record.dev[i]);
}

INSTANTIATE_TEST_SUITE_P(Machines, PciCaptureTest,
                         ::testing::ValuesIn(CapturesOrNone("pci", ".lspci-vvnn.txt")),
                         [](const auto& machine) {
                             std::string name = machine.param.empty() ? "None" : machine.param;
                             for (char& c : name)
                                 if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
                             return name;
                         });

}  // namespace
