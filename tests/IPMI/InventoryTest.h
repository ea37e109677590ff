// SPDX-License-Identifier: MIT
//
// Fixture of the tests of the inventory device: areas made of fields, placed after a header.
#ifndef TALVANE_TESTS_IPMI_INVENTORYTEST_H
#define TALVANE_TESTS_IPMI_INVENTORYTEST_H

#include <string>

#include "support/IpmiTest.h"

// A field with its type/length byte, 8-bit text by default.
inline std::string Field(const std::string& text, int type = 3) {
    return static_cast<char>(type << 6 | static_cast<int>(text.size())) + text;
}

// A getter of a text, and the text that it is expected to write.
struct TextGetter {
    const char* name;
    int (IPMIsupport::*read)(char*);
    const char* text;
};

class InventoryTest : public IpmiTest {
protected:
    // An area of whole blocks of eight bytes.
    static std::string Area(std::string bytes, int blocks = -1) {
        bytes += '\xC1';
        while (bytes.size() % 8 != 7) bytes += '\0';
        bytes += '\0';
        bytes[1] = static_cast<char>(blocks < 0 ? static_cast<int>(bytes.size() / 8) : blocks);
        return bytes;
    }
    static std::string BoardArea(const std::string& fields, int language = 0) {
        return Area(std::string("\x01\0", 2) + static_cast<char>(language) +
                    std::string("\0\0\0", 3) + fields);
    }
    static std::string OtherArea(const std::string& fields, int third = 0) {
        return Area(std::string("\x01\0", 2) + static_cast<char>(third) + fields);
    }

    void Place(const std::string& chassis, const std::string& board, const std::string& product) {
        std::string image(8, '\0');
        image[0] = 1;
        const auto append = [&](std::size_t slot, const std::string& area) {
            image[slot] = static_cast<char>(image.size() / 8);
            image += area;
        };
        append(2, chassis);
        append(3, board);
        append(4, product);
        bmc.SetInventory(sim::Bytes(image.begin(), image.end()));
    }
    void PlaceAll() {
        Place(OtherArea(Field("CH-PN") + Field("CH-SN"), 0x17),
              BoardArea(Field("Maker") + Field("Board") + Field("B-SN") + Field("B-PN")),
              OtherArea(Field("Acme") + Field("Server") + Field("P-PN") + Field("V1") +
                        Field("P-SN") + Field("TAG")));
    }

    FRU& Fru() { return Support().fru; }
    Answer AskText(int (IPMIsupport::*getter)(char*)) {
        return AskWith(Buffer::kMarked, [&](char* out) { return (Support().*getter)(out); });
    }
    template <std::size_t N>
    void ExpectEach(const TextGetter (&getters)[N]) {
        for (const TextGetter& getter : getters)
            EXPECT_EQ(AskText(getter.read), Terminated(getter.text)) << getter.name;
    }
};

#endif
