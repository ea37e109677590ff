// SPDX-License-Identifier: MIT
//
// Put before the sources of PCI in a build of 64 bits: the image of a configuration header has
// members of the type long, which has 32 bits where the library runs. The standard headers come
// first and keep their own long.
#ifndef TALVANE_FUZZ_PORTS_LONGOF32BITS_H
#define TALVANE_FUZZ_PORTS_LONGOF32BITS_H

#include <stddef.h>
#include <sys/io.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

// clang reads its stddef.h anew each time.
#undef __SIZE_TYPE__
#undef __PTRDIFF_TYPE__
#define __SIZE_TYPE__    std::size_t
#define __PTRDIFF_TYPE__ std::ptrdiff_t

#pragma clang diagnostic ignored "-Wkeyword-macro"
#define long int

#endif
