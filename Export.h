// SPDX-License-Identifier: MIT
//
// Marks for the visibility of names. The library is built with hidden visibility: it exports only
// what TALVANE_EXPORT marks, and TALVANE_LOCAL hides a member of an exported class.
#ifndef TALVANE_EXPORT_H
#define TALVANE_EXPORT_H

#if defined(__GNUC__)
#define TALVANE_EXPORT __attribute__((visibility("default")))
#define TALVANE_LOCAL  __attribute__((visibility("hidden")))
#else
#define TALVANE_EXPORT
#define TALVANE_LOCAL
#endif

#endif
