// SPDX-License-Identifier: MIT
//
// Visibility of the classes that the library exports. The library is built with hidden visibility;
// a name is exported only where one of these marks says so.
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
