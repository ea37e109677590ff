// SPDX-License-Identifier: MIT
//
// Each file is a header, its bytes, and zeros up to the next block. Two blocks of zeros end it all.

#include <cstdio>
#include <stdexcept>
#include <string_view>

#include "archive/Tar.h"
#include "archive/TarHeader.h"

namespace archive {
namespace {

using Header = std::vector<std::uint8_t>;

void PutTarText(Header& header, TarField field, std::string_view text) {
    std::copy(text.begin(), text.end(), header.begin() + static_cast<std::ptrdiff_t>(field.at));
}

// In as many digits as the field has, but for the NUL at its end.
void PutTarNumber(Header& header, TarField field, unsigned long long value) {
    char text[24];
    const int length =
        std::snprintf(text, sizeof text, "%0*llo", static_cast<int>(field.size - 1), value);
    PutTarText(header, field, {text, static_cast<std::size_t>(length)});
}

Header HeaderOf(const std::string& name, std::size_t size, std::time_t time) {
    constexpr unsigned kOwnerOnly = 0600;
    if (name.size() > kTarName.size) throw std::length_error(name + ": the name is too long");
    Header header(kTarBlock);
    PutTarText(header, kTarName, name);
    PutTarNumber(header, kTarMode, kOwnerOnly);
    PutTarNumber(header, kTarUser, 0);
    PutTarNumber(header, kTarGroup, 0);
    PutTarNumber(header, kTarSize, size);
    PutTarNumber(header, kTarTime, static_cast<unsigned long long>(time));
    PutTarText(header, kTarType, {&kTarRegularFile, 1});
    PutTarText(header, kTarMagic, {"ustar\00000", kTarMagic.size});
    // Six digits, a NUL and a blank.
    char sum[8];
    std::snprintf(sum, sizeof sum, "%06o", TarChecksum(header));
    PutTarText(header, kTarChecksum, {sum, 7});
    header[kTarChecksum.at + 7] = ' ';
    return header;
}

}  // namespace

Bytes WriteTar(const Files& files, std::time_t time) {
    Bytes tar;
    for (const auto& [name, bytes] : files) {
        const Header header = HeaderOf(name, bytes.size(), time);
        tar.insert(tar.end(), header.begin(), header.end());
        tar.insert(tar.end(), bytes.begin(), bytes.end());
        tar.resize(tar.size() + TarPadding(bytes.size()));
    }
    tar.resize(tar.size() + 2 * kTarBlock);
    return tar;
}

}  // namespace archive
