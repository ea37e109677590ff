// SPDX-License-Identifier: MIT
//
// Included before every source of the library. The compiler refers by itself to these parts of the
// C++ runtime library: how exceptions pass through a function, and what dynamic_cast asks of a
// type. As weak references they are bound in a program that has that library, of whatever version,
// and null in a C program. There nobody uses them: nothing throws, and no class is cast.
#ifndef TALVANE_BASE_RUNTIMEREFERENCES_H
#define TALVANE_BASE_RUNTIMEREFERENCES_H

asm(".weak __gxx_personality_v0\n"
    ".weak _Unwind_Resume\n"
    ".weak _ZSt7nothrow\n"
    ".weak _ZTVN10__cxxabiv117__class_type_infoE\n"       // vtable of the type of a class
    ".weak _ZTVN10__cxxabiv120__si_class_type_infoE\n");  // ... with one base class

#endif
