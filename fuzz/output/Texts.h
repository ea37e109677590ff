// SPDX-License-Identifier: MIT
//
// What holds for everything that the tool writes, whatever the machine says. Each function ends the
// process when it does not: a finding.
#ifndef TALVANE_FUZZ_OUTPUT_TEXTS_H
#define TALVANE_FUZZ_OUTPUT_TEXTS_H

#include <string>

#include "tools/base/Json.h"

namespace fuzz {

// A text for a terminal: UTF-8 without controls but line feeds.
void ExpectPrintable(const std::string& text);

// JSON that can be written, in ASCII, and that reads as what was written.
void ExpectWritable(const tool::Json& json);

// A page: its elements are those of such pages and closed in order, every attribute's value is in
// quotes, and every reference is whole. Texts of the machine add none of them.
void ExpectWellFormed(const std::string& page);

}  // namespace fuzz

#endif
